// Plain records of what the report commands compute.
//
// The computation layer (PathFinder, ClockReports, ...) turns OpenSTA's
// results into these records, and the panel writers turn the records into
// report-database objects or console text. Keeping the records free of
// OpenSTA and of the database lets each side be tested on its own. All times
// are in the netlist's time unit (ns for the OSU libraries), never in
// OpenSTA's internal seconds.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

// The four timing analyses a report can ask for.
enum class Analysis { setup, hold, recovery, removal };

const char *analysis_name(Analysis analysis);       // "setup", ...
const char *analysis_title(Analysis analysis);      // "Setup", ...
// Max-delay analyses compare arrival against a later edge; min-delay ones
// against the same edge.
bool analysis_is_max(Analysis analysis);

// One row of a path's arrival or required table. A report of ten thousand
// paths has hundreds of thousands of rows naming the same few thousand pins,
// so the texts are views: of constants, or of the names kept by the path
// record's `texts` (see TimingPathRecord).
struct PathPointRecord
{
  double total = 0;            // time at this point
  double incr = 0;             // increment from the previous row
  std::string_view rise_fall;  // "R", "F" or "" for rows that are no pin
  int fanout = 0;              // loads of the net driven here (driver pins only)
  std::string_view type;       // "CELL", "IC", "uTco", "uTsu", "iExt", "clock", ...
  std::string_view element;    // pin or description ("clk (rise edge)")
  std::string_view location;   // library cell of the pin's instance, "(port)" for ports
  bool is_clock_path = false;
};

struct TimingPathRecord
{
  Analysis analysis = Analysis::setup;
  double slack = 0;
  double arrival = 0;          // data arrival time
  double required = 0;         // data required time
  std::string from_node;       // start point (register or port)
  std::string to_node;         // end point pin
  std::string launch_clock;    // "" when unclocked
  std::string latch_clock;
  double relationship = 0;     // capture edge minus launch edge
  double clock_skew = 0;       // capture clock latency minus launch clock latency
  double data_delay = 0;       // arrival minus the launch clock's arrival
  double cell_delay = 0;       // sum of cell arcs on the data path
  double ic_delay = 0;         // sum of interconnect arcs on the data path
  std::string check;           // "setup", "hold", "output setup", ...
  bool violated = false;
  std::vector<PathPointRecord> arrival_points;
  std::vector<PathPointRecord> required_points;
  // Keeps alive the texts the points refer to (shared by the paths of one
  // report); copies of the record share it.
  std::shared_ptr<const void> texts;
};

// A path search. Empty lists mean "any".
struct PathQuery
{
  Analysis analysis = Analysis::setup;
  std::vector<std::string> from_clocks;
  std::vector<std::string> to_clocks;
  std::vector<std::string> from;  // pins, ports or instances
  std::vector<std::string> thru;  // each entry is one -thru point set, a Tcl list of names
  std::vector<std::string> to;
  int npaths = 1;
  std::optional<double> less_than_slack;
  // Only slacks at or above this value (the lower end of a histogram bin).
  std::optional<double> min_slack;
  // Whether to build the point tables (not needed for -summary).
  bool with_points = true;
  // Whether the point tables show interconnect rows (the load pins of the
  // data path); without them a wire's delay counts in the following cell row.
  bool with_routing = true;
};

// One clock domain of a timing summary.
struct DomainSummaryRow
{
  std::string clock;
  double worst_slack = 0;
  double total_negative_slack = 0;
  int endpoints = 0;          // checked end points in the domain
  int failing_endpoints = 0;
};

struct ClockRow
{
  std::string name;
  std::string type;           // "base", "generated", "virtual"
  double period = 0;
  double frequency_mhz = 0;   // 0 when the period is 0
  double rise = 0;
  double fall = 0;
  double duty_cycle = 0;      // percent
  std::string master;         // generated clocks only
  std::string sources;        // source pins/ports, blank-separated
};

struct ClockTransferRow
{
  std::string from_clock;
  std::string to_clock;
  int setup_paths = 0;
  int hold_paths = 0;
  int recovery_paths = 0;
  int removal_paths = 0;
};

struct UnconstrainedPointRow
{
  std::string kind;     // "Input without input delay", ...
  std::string node;
};

struct NetTimingRow
{
  std::string net;
  std::string driver;
  int fanout = 0;
  double worst_delay = 0;     // largest driver-to-load wire delay
  std::string worst_load;
};

struct PulseWidthRow
{
  std::string pin;
  std::string clock;
  std::string edge;           // "high" or "low" pulse
  double required = 0;
  double actual = 0;
  double slack = 0;
};

struct HistogramBinRow
{
  double from = 0;
  double to = 0;
  int count = 0;
};

} // namespace vexa
