#include "reports/report_commands.hh"

#include "Engine.hh"
#include "TclCommand.hh"
#include "protocol/Encoder.hh"
#include "reports/DesignReports.hh"
#include "reports/NodeNames.hh"
#include "reports/PathFinder.hh"
#include "reports/PathPanel.hh"
#include "reports/ReportArgs.hh"
#include "reports/ReportOutput.hh"
#include "reports/ReportPanels.hh"
#include "reports/ReportTable.hh"

#include "rdb/rdb_writer.hh"

#include "Machine.hh"
#include "Sta.hh"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>

namespace vexa {

namespace {

// Options naming design objects may hold OpenSTA object handles (the result
// of get_pins, get_ports, get_clocks); they are turned back into names.
std::vector<std::string> object_names(Engine &engine, const std::vector<std::string> &words)
{
  static const std::regex handle("_[0-9a-f]+_p_[A-Za-z]+");
  std::vector<std::string> names;
  for (const std::string &word : words) {
    if (!std::regex_match(word, handle)) {
      names.push_back(word);
      continue;
    }
    bool clock = word.size() > 6 && word.compare(word.size() - 6, 6, "_Clock") == 0;
    std::string script = std::string(clock ? "get_name " : "get_full_name ") + word;
    if (engine.eval(script) != TCL_OK)
      throw ReportError("\"" + word + "\" is not a design object.");
    names.push_back(Tcl_GetStringResult(engine.interp()));
    Tcl_ResetResult(engine.interp());
  }
  return names;
}

std::vector<std::string> object_option(Engine &engine, const ReportArgs &args, const char *option)
{
  if (!args.has(option))
    return {};
  std::vector<std::string> names = object_names(engine, args.list(option));
  if (names.empty())
    throw ReportError(std::string(args.command()) + ": option " + option + " names nothing.");
  return names;
}

Analysis analysis_option(const ReportArgs &args)
{
  int given = 0;
  Analysis analysis = Analysis::setup;
  for (auto [option, value] : {std::make_pair("-setup", Analysis::setup),
                               std::make_pair("-hold", Analysis::hold),
                               std::make_pair("-recovery", Analysis::recovery),
                               std::make_pair("-removal", Analysis::removal)})
    if (args.has(option)) {
      analysis = value;
      given++;
    }
  if (given > 1)
    throw ReportError(std::string(args.command()) +
                      ": give only one of -setup, -hold, -recovery and -removal.");
  return analysis;
}

// report_timing takes any set of the four analyses; the others exactly one.
std::vector<Analysis> analyses_option(const ReportArgs &args)
{
  std::vector<Analysis> analyses;
  for (auto [option, value] : {std::make_pair("-setup", Analysis::setup),
                               std::make_pair("-hold", Analysis::hold),
                               std::make_pair("-recovery", Analysis::recovery),
                               std::make_pair("-removal", Analysis::removal)})
    if (args.has(option))
      analyses.push_back(value);
  if (analyses.empty())
    analyses.push_back(Analysis::setup);
  return analyses;
}

// --- create_timing_summary ----------------------------------------------------

int create_timing_summary(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("create_timing_summary", objc, objv,
                  {{"-setup", false}, {"-hold", false}, {"-recovery", false},
                   {"-removal", false}, {"-panel_name", true}, {"-file", true},
                   {"-append", false}, {"-stdout", false}},
                  0);
  ReportOutput output(engine, args);
  Analysis analysis = analysis_option(args);
  ReportTable table = domain_summary_table(domain_summary(engine.sta(), analysis), analysis);
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) { write_table_text(out, table); });
  return TCL_OK;
}

// --- report_clocks --------------------------------------------------------------

int report_clocks(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_clocks", objc, objv,
                  {{"-panel_name", true}, {"-file", true}, {"-append", false}, {"-stdout", false}},
                  0);
  ReportOutput output(engine, args);
  ReportTable table = clocks_table(clock_rows(engine.sta()));
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) { write_table_text(out, table); });
  return TCL_OK;
}

// --- report_clock_transfers ------------------------------------------------------

int report_clock_transfers(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_clock_transfers", objc, objv,
                  {{"-panel_name", true}, {"-file", true}, {"-append", false}, {"-stdout", false}},
                  0);
  ReportOutput output(engine, args);
  ReportTable table = clock_transfers_table(clock_transfers(engine.sta()));
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) { write_table_text(out, table); });
  return TCL_OK;
}

// --- report_sdc -------------------------------------------------------------------

int report_sdc(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_sdc", objc, objv,
                  {{"-panel_name", true}, {"-file", true}, {"-append", false}, {"-stdout", false}},
                  0);
  // The frame selects "SDC Assignments" after this command, which names no panel.
  ReportOutput output(engine, args, sdc_panel_name);
  std::vector<ReportTable> tables = sdc_tables(engine.constraints().lines());
  output.write(
    [&](RDB_PANEL_WRITER &panel) {
      panel.add_folder("");
      for (const ReportTable &table : tables)
        write_table(panel, table.title, table);
    },
    [&](std::ostream &out) {
      if (tables.empty())
        out << "No constraints have been entered.\n";
      for (const ReportTable &table : tables) {
        write_table_text(out, table);
        out << '\n';
      }
    });
  return TCL_OK;
}

// --- report_ucp -------------------------------------------------------------------

int report_ucp(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_ucp", objc, objv,
                  {{"-panel_name", true}, {"-file", true}, {"-append", false}, {"-stdout", false}},
                  0);
  ReportOutput output(engine, args);
  ReportTable table = unconstrained_table(unconstrained_points(engine.sta()));
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) {
                 write_table_text(out, table);
                 if (table.rows.empty())
                   out << "All start and end points are constrained.\n";
               });
  return TCL_OK;
}

// --- report_timing ------------------------------------------------------------------

int report_timing(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_timing", objc, objv,
                  {{"-from_clock", true}, {"-to_clock", true}, {"-from", true}, {"-thru", true},
                   {"-to", true}, {"-setup", false}, {"-hold", false}, {"-recovery", false},
                   {"-removal", false}, {"-npaths", true}, {"-less_than_slack", true},
                   {"-min_slack", true}, {"-summary", false}, {"-panel_name", true}, {"-file", true},
                   {"-append", false}, {"-stdout", false}, {"-show_routing", false},
                   {"-all_failing", false}, {"-ccpp", false}},
                  0);
  PathQuery query;
  const std::vector<Analysis> analyses = analyses_option(args);
  query.npaths = args.positive_int("-npaths").value_or(1);
  query.less_than_slack = args.number("-less_than_slack");
  query.min_slack = args.number("-min_slack");
  if (args.has("-all_failing")) {
    query.npaths = std::max(query.npaths, 1000000);
    if (!query.less_than_slack || *query.less_than_slack > 0)
      query.less_than_slack = 0.0;
  }
  query.with_points = !args.has("-summary");
  query.with_routing = args.has("-show_routing");
  ReportOutput output(engine, args);
  query.from_clocks = object_option(engine, args, "-from_clock");
  query.to_clocks = object_option(engine, args, "-to_clock");
  query.from = object_option(engine, args, "-from");
  query.to = object_option(engine, args, "-to");
  // Each -thru is one set of points the path must pass, in order; the
  // names of one set are joined as a list.
  for (const std::string &thru : args.values("-thru")) {
    std::vector<std::string> names = object_names(engine, split_tcl_list(thru));
    if (names.empty())
      throw ReportError("report_timing: option -thru names nothing.");
    Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
    Tcl_IncrRefCount(list);
    for (const std::string &name : names)
      Tcl_ListObjAppendElement(nullptr, list, Tcl_NewStringObj(name.c_str(), -1));
    query.thru.push_back(Tcl_GetString(list));
    Tcl_DecrRefCount(list);
  }

  sta::Sta *sta = engine.sta();
  // Common clock pessimism removal for this report only.
  bool crpr_was = sta->crprEnabled();
  if (args.has("-ccpp") && !crpr_was)
    sta->setCrprEnabled(true);
  struct RestoreCrpr
  {
    sta::Sta *sta;
    bool was;
    ~RestoreCrpr()
    {
      if (sta->crprEnabled() != was)
        sta->setCrprEnabled(was);
    }
  } restore{sta, crpr_was};

  // One analysis fills the panel itself; several give each analysis a
  // folder of the panel, named by its title, in the order setup, hold,
  // recovery, removal.
  const bool several = analyses.size() > 1;
  auto options_for = [&](Analysis analysis) {
    PathPanelOptions options;
    options.summary_only = args.has("-summary");
    options.show_routing = args.has("-show_routing");
    options.time_unit = TimeUnit(sta).name();
    if (several)
      options.folder = analysis_title(analysis);
    return options;
  };
  auto query_for = [&](Analysis analysis) {
    PathQuery one = query;
    one.analysis = analysis;
    return one;
  };
  // With only a panel to write, paths go straight from the search into the
  // panel; text needs them twice (summary first), so they are kept.
  if (!output.panel_name().empty() && !output.has_text()) {
    // Where the time goes, for the benchmark: set ::vexa::report_profile to
    // 1 and each such report posts its split.
    using Clock = std::chrono::steady_clock;
    auto seconds = [](Clock::time_point from, Clock::time_point to) {
      return std::chrono::duration<double>(to - from).count();
    };
    const Clock::time_point start = Clock::now();
    Clock::time_point walked = start;
    double searching = 0, writing = 0, draining = 0;
    size_t total = 0;
    // A failure inside (a bad name) drops the panel uncommitted.
    output.write(
      [&](RDB_PANEL_WRITER &panel) {
        panel.add_folder("");
        for (size_t k = 0; k < analyses.size(); k++) {
          PathPanelOptions options = options_for(analyses[k]);
          if (several)
            panel.add_folder(options.folder);
          PathPanelWriter writer(&panel, nullptr, options);
          // The rows of each path are written on a second thread while the
          // next paths are laid out.
          PathPanelPipeline pipeline(writer);
          size_t count = 0, done = 0;
          const Clock::time_point begun = Clock::now();
          for_each_timing_path(
            sta, query_for(analyses[k]),
            [&](size_t found) {
              count = found;
              total += found;
              searching += seconds(begun, Clock::now());
            },
            [&](TimingPathRecord &&path) {
              pipeline.add(std::move(path));
              if (count > 100 && ++done % (count / 10) == 0)
                engine.progress(
                  static_cast<int>((100 * k + 100 * done / count) / analyses.size()));
            });
          const Clock::time_point last = Clock::now();
          pipeline.finish();
          draining += seconds(last, Clock::now());
          writing += pipeline.writing_seconds();
        }
        walked = Clock::now();
      },
      [](std::ostream &) {});
    const char *profile = Tcl_GetVar(engine.interp(), "::vexa::report_profile", TCL_GLOBAL_ONLY);
    if (profile && std::string(profile) == "1") {
      char text[320];
      std::snprintf(text, sizeof text,
                    "report_timing: %zu paths; search %.3f s, path records %.3f s, database rows "
                    "%.3f s (on a second thread, %.3f s of it after the last path), commit %.3f s",
                    total, searching, seconds(start, walked) - searching - draining, writing,
                    draining, seconds(walked, Clock::now()));
      engine.post(MessageKind::info, "VSTA-1510", text);
    }
    return TCL_OK;
  }
  std::vector<std::vector<TimingPathRecord>> paths;
  for (Analysis analysis : analyses)
    paths.push_back(find_timing_paths(sta, query_for(analysis)));
  output.write(
    [&](RDB_PANEL_WRITER &panel) {
      panel.add_folder("");
      for (size_t k = 0; k < analyses.size(); k++) {
        PathPanelOptions options = options_for(analyses[k]);
        if (several)
          panel.add_folder(options.folder);
        PathPanelWriter writer(&panel, nullptr, options);
        for (const TimingPathRecord &path : paths[k])
          writer.add(path);
      }
    },
    [&](std::ostream &out) {
      for (size_t k = 0; k < analyses.size(); k++) {
        if (several)
          out << (k ? "\n" : "") << analysis_title(analyses[k]) << " analysis\n\n";
        PathPanelWriter writer(nullptr, &out, options_for(analyses[k]));
        for (const TimingPathRecord &path : paths[k])
          writer.add(path);
        writer.finish();
        if (paths[k].empty())
          out << "No paths.\n";
      }
    });
  return TCL_OK;
}

// --- report_net_timing ---------------------------------------------------------------

int report_net_timing(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_net_timing", objc, objv,
                  {{"-nworst_delay", true}, {"-nworst_fanout", true}, {"-panel_name", true},
                   {"-file", true}, {"-append", false}, {"-stdout", false}},
                  1);
  if (args.has("-nworst_delay") && args.has("-nworst_fanout"))
    throw ReportError("report_net_timing: give only one of -nworst_delay and -nworst_fanout.");
  ReportOutput output(engine, args, net_timing_panel_name);
  std::vector<std::string> nets;
  if (!args.positionals().empty())
    nets = object_names(engine, split_tcl_list(args.positionals()[0]));
  bool by_fanout = args.has("-nworst_fanout");
  std::optional<int> limit = by_fanout ? args.positive_int("-nworst_fanout")
                                       : args.positive_int("-nworst_delay");
  // Without a count or nets the report lists the ten worst nets.
  int rows_wanted = limit.value_or(nets.empty() ? 10 : 0);
  ReportTable table = net_timing_table(net_timing_rows(engine.sta(), nets, by_fanout, rows_wanted));
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) { write_table_text(out, table); });
  return TCL_OK;
}

// --- report_min_pulse_width --------------------------------------------------------------

int report_min_pulse_width(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("report_min_pulse_width", objc, objv,
                  {{"-nworst", true}, {"-panel_name", true}, {"-file", true}, {"-append", false},
                   {"-stdout", false}},
                  1);
  ReportOutput output(engine, args);
  std::vector<std::string> targets;
  if (!args.positionals().empty())
    targets = object_names(engine, split_tcl_list(args.positionals()[0]));
  int nworst = args.positive_int("-nworst").value_or(10);
  ReportTable table = pulse_width_table(pulse_width_rows(engine.sta(), targets, nworst));
  output.write([&](RDB_PANEL_WRITER &panel) { write_table(panel, "", table); },
               [&](std::ostream &out) { write_table_text(out, table); });
  return TCL_OK;
}

// --- create_slack_histogram ---------------------------------------------------------------

int create_slack_histogram(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("create_slack_histogram", objc, objv,
                  {{"-clock_name", true}, {"-num_bins", true}, {"-min_slack", true},
                   {"-max_slack", true}, {"-panel_name", true}, {"-setup", false},
                   {"-hold", false}, {"-recovery", false}, {"-removal", false},
                   {"-x_axis_min_open", false}, {"-x_axis_max_open", false}},
                  0);
  if (!args.has("-clock_name"))
    throw ReportError("create_slack_histogram: option -clock_name is required.");
  std::vector<std::string> clock = object_names(engine, {args.value("-clock_name")});
  Analysis analysis = analysis_option(args);
  // Each bin is a row in the panel and a bar of the chart: beyond this
  // many, a histogram only costs time, memory and disk.
  constexpr int max_bins = 10000;
  int num_bins = args.positive_int("-num_bins").value_or(30);
  if (num_bins > max_bins)
    throw ReportError("create_slack_histogram: -num_bins may be at most "
                      + std::to_string(max_bins) + ", not " + std::to_string(num_bins) + ".");
  std::optional<double> min_slack = args.number("-min_slack");
  std::optional<double> max_slack = args.number("-max_slack");
  std::string panel_name = "Slack Histogram (" + clock[0] + ")";
  ReportOutput output(engine, args, panel_name);
  resolve_clocks(engine.sta(), clock, "-clock_name");
  std::vector<double> slacks = endpoint_slacks(engine.sta(), analysis, clock[0]);
  std::vector<HistogramBinRow> bins = histogram_bins(slacks, num_bins, min_slack, max_slack);
  std::string unit = TimeUnit(engine.sta()).name();
  output.write(
    [&](RDB_PANEL_WRITER &panel) { write_slack_histogram(panel, "", bins, analysis, unit); },
    [&](std::ostream &out) { write_slack_histogram_text(out, bins, analysis, unit); });
  return TCL_OK;
}

// --- delete_timing_report_panel ---------------------------------------------------------------

int delete_timing_report_panel(Engine &engine, Tcl_Interp *, int objc, Tcl_Obj *const objv[])
{
  ReportArgs args("delete_timing_report_panel", objc, objv, {{"-name", true}, {"-all", false}},
                  0);
  if (!args.has("-name") && !args.has("-all"))
    throw ReportError("delete_timing_report_panel: option -name is required.");
  if (!engine.require_project("delete_timing_report_panel"))
    return TCL_ERROR;
  RDB_WRITER writer(report_database_file(engine), RDB_TIMING_REPORT);
  if (args.has("-all")) {
    writer.delete_all_panels();
  } else {
    std::string name = args.value("-name");
    if (!writer.delete_panel(name))
      throw ReportError("delete_timing_report_panel: there is no report panel \"" + name +
                        "\".");
  }
  engine.callback("lum_reload_sta_report");
  return TCL_OK;
}

// Run after every update_timing_netlist (an execution trace): the timing
// has changed, so the panels already written are out of date.
int reports_timing_updated(Engine &engine, Tcl_Interp *interp, int, Tcl_Obj *const[])
{
  try {
    mark_stale_panels(engine);
  } catch (const std::exception &error) {
    // A database that cannot be marked must not fail the update itself.
    engine.post(MessageKind::warning, "VSTA-1500",
                std::string("Report panels could not be marked out of date: ") + error.what());
  }
  Tcl_ResetResult(interp);
  return TCL_OK;
}

// Every message of a report command starts with the command's name, so a
// post in the console says which command refused.
template <CommandFunction function>
int with_command_name(Engine &engine, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  try {
    return function(engine, interp, objc, objv);
  } catch (const ReportError &error) {
    std::string name = Tcl_GetString(objv[0]);
    std::string message = error.what();
    if (message.compare(0, name.size() + 1, name + ":") != 0)
      message = name + ": " + message;
    return engine.tcl_error(message);
  } catch (const RDB_ERROR &error) {
    return engine.tcl_error(std::string(Tcl_GetString(objv[0])) + ": " + error.what());
  }
}

} // namespace

void register_report_commands(Engine &engine)
{
  add_command(engine, "create_timing_summary", with_command_name<create_timing_summary>);
  add_command(engine, "report_clocks", with_command_name<report_clocks>);
  add_command(engine, "report_clock_transfers", with_command_name<report_clock_transfers>);
  add_command(engine, "report_sdc", with_command_name<report_sdc>);
  add_command(engine, "report_ucp", with_command_name<report_ucp>);
  add_command(engine, "report_timing", with_command_name<report_timing>);
  add_command(engine, "report_net_timing", with_command_name<report_net_timing>);
  add_command(engine, "report_min_pulse_width", with_command_name<report_min_pulse_width>);
  add_command(engine, "create_slack_histogram", with_command_name<create_slack_histogram>);
  add_command(engine, "delete_timing_report_panel",
              with_command_name<delete_timing_report_panel>);
  add_command(engine, "::vexa::reports_timing_updated", reports_timing_updated);
  if (engine.eval("trace add execution update_timing_netlist leave "
                  "{apply {args {::vexa::reports_timing_updated}}}") != TCL_OK)
    engine.internal_error("report panels will not be marked out of date on "
                          "update_timing_netlist: " +
                          std::string(Tcl_GetStringResult(engine.interp())));
  Tcl_ResetResult(engine.interp());
}

} // namespace vexa
