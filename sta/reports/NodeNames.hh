// Resolution of the node and clock names given to report options.
//
// A report option such as -from or -to takes design names: pins
// ("u1/A"), top-level ports ("clk"), instances ("acc_reg[3]") and, where it
// makes sense, nets; each may also be a glob pattern ("acc_reg*"). Names are
// looked up in that order, so a port and a net of the same name resolve to
// the port. A name that matches nothing is an error: reports never silently
// widen a query the user narrowed.
#pragma once

#include <string>
#include <vector>

namespace sta {
class Sta;
class Pin;
class Instance;
class Net;
class Clock;
}

namespace vexa {

struct ResolvedNodes
{
  std::vector<sta::Pin *> pins;
  std::vector<sta::Instance *> instances;
  std::vector<sta::Net *> nets;
  bool empty() const { return pins.empty() && instances.empty() && nets.empty(); }
};

// Throws ReportError naming the first name that matches nothing. `option`
// ("-from") is used in the message.
ResolvedNodes resolve_nodes(sta::Sta *sta, const std::vector<std::string> &names,
                            const char *option, bool allow_nets);

// Throws ReportError for a clock that does not exist.
std::vector<sta::Clock *> resolve_clocks(sta::Sta *sta, const std::vector<std::string> &names,
                                         const char *option);

} // namespace vexa
