// The reports that are not timing paths: clocks, unconstrained points,
// net timing, minimum pulse widths, entered constraints and slack
// histograms. Each function reads OpenSTA (or the engine's constraint
// record) and returns plain records; ReportError reports bad requests.
#pragma once

#include "reports/ReportRecords.hh"

#include <optional>
#include <string>
#include <vector>

namespace sta {
class Sta;
}

namespace vexa {

// Every clock, in the order they were defined.
std::vector<ClockRow> clock_rows(sta::Sta *sta);

// Input ports without an input delay, output ports without an output delay
// and register clock pins that no clock reaches.
std::vector<UnconstrainedPointRow> unconstrained_points(sta::Sta *sta);

// Nets with their fanout and worst driver-to-load wire delay. With `nets`
// only those nets (names or patterns; unknown ones throw ReportError),
// otherwise every net. Sorted by fanout when `by_fanout`, else by delay,
// worst first, and cut to `limit` rows when it is positive.
std::vector<NetTimingRow> net_timing_rows(sta::Sta *sta, const std::vector<std::string> &nets,
                                          bool by_fanout, int limit);

// Minimum pulse width checks, smallest slack first, at most `nworst`
// (all when 0). With `targets` (pins or instances) only their pins.
std::vector<PulseWidthRow> pulse_width_rows(sta::Sta *sta, const std::vector<std::string> &targets,
                                            int nworst);

// Bins of equal width over [min, max] (the data's range when not given).
// Throws ReportError when there are fewer than one bin or max <= min.
std::vector<HistogramBinRow> histogram_bins(const std::vector<double> &values, int num_bins,
                                            std::optional<double> min_value,
                                            std::optional<double> max_value);

// One entered constraint, split into its options for the SDC panel.
struct ConstraintEntry
{
  std::string command;                              // "create_clock"
  std::vector<std::pair<std::string, std::string>> options;  // ("-period", "10")
  std::string value;                                // a leading numeric argument
  std::string targets;                              // the other positional arguments
  std::string line;                                 // the whole command
};

// The title of the panel table that holds a constraint command's entries
// ("Clocks" for create_clock, ...); unknown commands go to "Other Constraints".
std::string constraint_table_title(const std::string &command);
ConstraintEntry parse_constraint(const std::string &line);

} // namespace vexa
