#include "reports/NodeNames.hh"

#include "reports/PathFinder.hh"

#include "Machine.hh"
#include "Clock.hh"
#include "Network.hh"
#include "PatternMatch.hh"
#include "Sdc.hh"
#include "Sta.hh"

#include <set>

namespace vexa {

namespace {

bool has_wildcard(const std::string &name)
{
  return name.find_first_of("*?") != std::string::npos;
}

template <class T>
void add_unique(std::vector<T *> &list, std::set<const void *> &seen, T *item)
{
  if (seen.insert(item).second)
    list.push_back(item);
}

} // namespace

ResolvedNodes resolve_nodes(sta::Sta *sta, const std::vector<std::string> &names,
                            const char *option, bool allow_nets)
{
  ResolvedNodes nodes;
  sta::Network *network = sta->sdcNetwork();
  if (network == nullptr || network->topInstance() == nullptr)
    throw ReportError("No netlist is loaded.");
  sta::Instance *top = network->topInstance();
  std::set<const void *> seen;
  for (const std::string &name : names) {
    if (name.empty())
      continue;
    size_t before = seen.size();
    if (!has_wildcard(name)) {
      if (sta::Pin *pin = network->findPin(top, name.c_str()))
        add_unique(nodes.pins, seen, pin);
      else if (sta::Pin *pin = network->findPin(name.c_str()))
        add_unique(nodes.pins, seen, pin);
      else if (sta::Instance *inst = network->findInstance(name.c_str()))
        add_unique(nodes.instances, seen, inst);
      else if (sta::Net *net = allow_nets ? network->findNet(name.c_str()) : nullptr)
        add_unique(nodes.nets, seen, net);
    } else {
      sta::PatternMatch pattern(name.c_str(), false, false, nullptr);
      sta::PinSeq pins;
      network->findPinsMatching(top, &pattern, &pins);
      if (name.find('/') != std::string::npos)
        network->findPinsHierMatching(top, &pattern, &pins);
      for (sta::Pin *pin : pins)
        add_unique(nodes.pins, seen, pin);
      if (pins.empty()) {
        sta::InstanceSeq insts;
        network->findInstancesHierMatching(top, &pattern, &insts);
        for (sta::Instance *inst : insts)
          add_unique(nodes.instances, seen, inst);
      }
      if (seen.size() == before && allow_nets) {
        sta::NetSeq nets;
        network->findNetsHierMatching(top, &pattern, &nets);
        for (sta::Net *net : nets)
          add_unique(nodes.nets, seen, net);
      }
    }
    if (seen.size() == before)
      throw ReportError(std::string("option ") + option + ": no pin, port, instance" +
                        (allow_nets ? " or net" : "") + " matches \"" + name + "\".");
  }
  return nodes;
}

std::vector<sta::Clock *> resolve_clocks(sta::Sta *sta, const std::vector<std::string> &names,
                                         const char *option)
{
  std::vector<sta::Clock *> clocks;
  std::set<const void *> seen;
  for (const std::string &name : names) {
    if (name.empty())
      continue;
    size_t before = seen.size();
    if (!has_wildcard(name)) {
      if (sta::Clock *clock = sta->sdc()->findClock(name.c_str()))
        add_unique(clocks, seen, clock);
    } else {
      sta::PatternMatch pattern(name.c_str(), false, false, nullptr);
      sta::ClockSeq matches;
      sta->sdc()->findClocksMatching(&pattern, &matches);
      for (sta::Clock *clock : matches)
        add_unique(clocks, seen, clock);
    }
    if (seen.size() == before)
      throw ReportError(std::string("option ") + option + ": no clock matches \"" + name +
                        "\".");
  }
  return clocks;
}

} // namespace vexa
