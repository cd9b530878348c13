#include "reports/ReportPanels.hh"

#include "rdb/rdb_writer.hh"

#include <cmath>
#include <cstdio>
#include <algorithm>
#include <map>
#include <ostream>

namespace vexa {

namespace {

std::vector<RDB_CELL_COLOR> red_if_negative(double value, int column)
{
  if (value < 0)
    return {{column, violation_color, RDB_NO_COLOR}};
  return {};
}

std::string format_fixed(double value, int digits)
{
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

} // namespace

ReportTable domain_summary_table(const std::vector<DomainSummaryRow> &rows, Analysis analysis)
{
  ReportTable table;
  table.title = std::string("Summary (") + analysis_title(analysis) + ")";
  table.kind = RDB_KIND_TCL_TABLE;
  table.columns = {"Clock", "Slack", "TNS", "Failing End Points", "End Points"};
  const std::string flag = std::string(" -") + analysis_name(analysis);
  const std::string title = analysis_title(analysis);
  table.commands = {
    {"Report Worst Paths",
     "report_timing -to_clock %l{Clock}" + flag + " -npaths 10 -panel_name {Worst " + title +
       " Paths (%r{Clock})}"},
    {"Report Slack Histogram",
     "create_slack_histogram -clock_name %{Clock}" + flag},
  };
  for (const DomainSummaryRow &row : rows) {
    std::vector<RDB_CELL_COLOR> colors = red_if_negative(row.worst_slack, 1);
    for (const RDB_CELL_COLOR &color : red_if_negative(row.total_negative_slack, 2))
      colors.push_back(color);
    table.add_row({row.clock, format_time(row.worst_slack), format_time(row.total_negative_slack),
                   format_count(row.failing_endpoints), format_count(row.endpoints)},
                  colors);
  }
  return table;
}

ReportTable clocks_table(const std::vector<ClockRow> &rows)
{
  ReportTable table;
  table.title = "Clocks";
  table.columns = {"Clock Name", "Type", "Period", "Frequency (MHz)", "Rise", "Fall",
                   "Duty Cycle (%)", "Master Clock", "Sources"};
  for (const ClockRow &row : rows)
    table.add_row({row.name, row.type, format_time(row.period),
                   row.frequency_mhz > 0 ? format_fixed(row.frequency_mhz, 2) : "",
                   format_time(row.rise), format_time(row.fall), format_fixed(row.duty_cycle, 2),
                   row.master, row.sources});
  return table;
}

ReportTable clock_transfers_table(const std::vector<ClockTransferRow> &rows)
{
  ReportTable table;
  table.title = "Clock Transfers";
  table.kind = RDB_KIND_TCL_TABLE;
  table.columns = {"From Clock", "To Clock", "Setup Paths", "Hold Paths", "Recovery Paths",
                   "Removal Paths"};
  for (const char *analysis : {"Setup", "Hold"}) {
    std::string flag = analysis[0] == 'S' ? "-setup" : "-hold";
    table.commands.push_back(
      {std::string("Report Worst ") + analysis + " Paths",
       "report_timing -from_clock %l{From Clock} -to_clock %l{To Clock} " + flag +
         " -npaths 10 -panel_name {" + analysis + " Transfer (%r{From Clock} to %r{To Clock})}"});
  }
  for (const ClockTransferRow &row : rows)
    table.add_row({row.from_clock, row.to_clock, format_count(row.setup_paths),
                   format_count(row.hold_paths), format_count(row.recovery_paths),
                   format_count(row.removal_paths)});
  return table;
}

std::vector<ReportTable> sdc_tables(const std::vector<std::string> &lines)
{
  std::vector<ReportTable> tables;
  std::map<std::string, size_t> index_of;
  std::vector<std::vector<ConstraintEntry>> entries;
  for (const std::string &line : lines) {
    ConstraintEntry entry = parse_constraint(line);
    std::string title = constraint_table_title(entry.command);
    auto [it, fresh] = index_of.try_emplace(title, tables.size());
    if (fresh) {
      tables.emplace_back();
      tables.back().title = title;
      entries.emplace_back();
    }
    entries[it->second].push_back(std::move(entry));
  }
  for (size_t t = 0; t < tables.size(); t++) {
    ReportTable &table = tables[t];
    // Columns: a leading value, the options in order of first use, then the
    // targets.
    std::vector<std::string> options;
    for (const ConstraintEntry &entry : entries[t])
      for (const auto &option : entry.options)
        if (std::find(options.begin(), options.end(), option.first) == options.end())
          options.push_back(option.first);
    bool other = table.title == "Other Constraints";
    bool any_value = false;
    for (const ConstraintEntry &entry : entries[t])
      any_value = any_value || !entry.value.empty();
    if (other)
      table.columns.push_back("Command");
    if (any_value)
      table.columns.push_back("Value");
    for (const std::string &option : options)
      table.columns.push_back(option.substr(1));
    table.columns.push_back("Targets");
    // Commands of unknown shape keep their whole text, so nothing an option
    // parser could miss is lost.
    if (other)
      table.columns.push_back("SDC Command");
    for (const ConstraintEntry &entry : entries[t]) {
      std::vector<std::string> cells;
      if (other)
        cells.push_back(entry.command);
      if (any_value)
        cells.push_back(entry.value);
      for (const std::string &option : options) {
        std::string cell;
        for (const auto &given : entry.options)
          if (given.first == option)
            cell = given.second.empty() ? "yes" : given.second;
        cells.push_back(cell);
      }
      cells.push_back(entry.targets);
      if (other)
        cells.push_back(entry.line);
      table.add_row(std::move(cells));
    }
  }
  return tables;
}

ReportTable unconstrained_table(const std::vector<UnconstrainedPointRow> &rows)
{
  ReportTable table;
  table.title = "Unconstrained Paths";
  table.columns = {"Kind", "Node"};
  for (const UnconstrainedPointRow &row : rows)
    table.add_row({row.kind, row.node});
  return table;
}

ReportTable net_timing_table(const std::vector<NetTimingRow> &rows)
{
  ReportTable table;
  table.title = "Net Timing";
  table.columns = {"Net", "Driver", "Fanout", "Worst Delay", "Worst Load"};
  for (const NetTimingRow &row : rows)
    table.add_row({row.net, row.driver, format_count(row.fanout), format_time(row.worst_delay),
                   row.worst_load});
  return table;
}

ReportTable pulse_width_table(const std::vector<PulseWidthRow> &rows)
{
  ReportTable table;
  table.title = "Minimum Pulse Width";
  table.columns = {"Pin", "Clock", "Pulse", "Required Width", "Actual Width", "Slack"};
  for (const PulseWidthRow &row : rows)
    table.add_row({row.pin, row.clock, row.edge, format_time(row.required),
                   format_time(row.actual), format_time(row.slack)},
                  red_if_negative(row.slack, 5));
  return table;
}

namespace {

// Bin edges are stored in thousandths of the time unit (the viewer divides
// by the scale), so edges keep picosecond precision in a nanosecond design.
constexpr int histogram_scale = 1000;

} // namespace

void write_slack_histogram(RDB_PANEL_WRITER &panel, const std::string &where,
                           const std::vector<HistogramBinRow> &bins, Analysis analysis,
                           const std::string &time_unit)
{
  std::vector<RDB_HISTOGRAM_BIN> stored;
  stored.reserve(bins.size());
  for (const HistogramBinRow &bin : bins) {
    RDB_HISTOGRAM_BIN out;
    out.from = std::round(bin.from * histogram_scale);
    out.to = std::round(bin.to * histogram_scale);
    out.value = bin.count;
    out.color = bin.from < 0 ? negative_bin_color : RDB_NO_COLOR;
    stored.push_back(out);
  }
  panel.add_histogram(where, std::string(analysis_title(analysis)) + " Slack",
                      "Number of End Points", histogram_scale, time_unit, stored);
}

void write_slack_histogram_text(std::ostream &out, const std::vector<HistogramBinRow> &bins,
                                Analysis analysis, const std::string &time_unit)
{
  ReportTable table;
  table.title = std::string(analysis_title(analysis)) + " Slack Histogram";
  table.columns = {"From (" + time_unit + ")", "To (" + time_unit + ")", "End Points"};
  for (const HistogramBinRow &bin : bins)
    table.add_row({format_time(bin.from), format_time(bin.to), format_count(bin.count)});
  write_table_text(out, table);
}

} // namespace vexa
