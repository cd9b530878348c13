// The panel layouts of the table reports: which columns, which cells, which
// colours and which drill-down commands. Each builder turns records into a
// ReportTable that is written to the database or printed the same way.
//
//   create_timing_summary  Tcl table: Clock, Slack, TNS, Failing End Points,
//                          End Points; row commands report the clock's worst
//                          paths and its slack histogram
//   report_clocks          Clock Name, Type, Period, Frequency (MHz), Rise, Fall,
//                          Duty Cycle (%), Master Clock, Sources
//   report_clock_transfers Tcl table: From Clock, To Clock, Setup Paths, Hold
//                          Paths, Recovery Paths, Removal Paths; row commands
//                          report the pair's worst paths
//   report_sdc             folder "SDC Assignments", one table per command kind
//   report_ucp             Kind, Node
//   report_net_timing      Net, Driver, Fanout, Worst Delay, Worst Load
//   report_min_pulse_width Pin, Clock, Pulse, Required Width, Actual Width, Slack
//   create_slack_histogram histogram of end-point slacks, negative bins red
#pragma once

#include "reports/DesignReports.hh"
#include "reports/ReportRecords.hh"
#include "reports/ReportTable.hh"

#include <iosfwd>
#include <string>
#include <vector>

class RDB_PANEL_WRITER;

namespace vexa {

inline constexpr const char *sdc_panel_name = "SDC Assignments";
inline constexpr const char *net_timing_panel_name = "Net Timing";

ReportTable domain_summary_table(const std::vector<DomainSummaryRow> &rows, Analysis analysis);
ReportTable clocks_table(const std::vector<ClockRow> &rows);
ReportTable clock_transfers_table(const std::vector<ClockTransferRow> &rows);
// One table per constraint kind, in the order the kinds first appear.
std::vector<ReportTable> sdc_tables(const std::vector<std::string> &lines);
ReportTable unconstrained_table(const std::vector<UnconstrainedPointRow> &rows);
ReportTable net_timing_table(const std::vector<NetTimingRow> &rows);
ReportTable pulse_width_table(const std::vector<PulseWidthRow> &rows);

// Colour of the bins below zero slack (0xRRGGBB).
inline constexpr uint32_t negative_bin_color = 0xe04040;
void write_slack_histogram(RDB_PANEL_WRITER &panel, const std::string &where,
                           const std::vector<HistogramBinRow> &bins, Analysis analysis,
                           const std::string &time_unit);
void write_slack_histogram_text(std::ostream &out, const std::vector<HistogramBinRow> &bins,
                                Analysis analysis, const std::string &time_unit);

} // namespace vexa
