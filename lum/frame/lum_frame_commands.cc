#include "frame/lum_frame_commands.hh"

#include <algorithm>

namespace {

using R = LUM_ENABLE_RULE;

const std::vector<LUM_COMMAND_DEF>& table() {
  static const std::vector<LUM_COMMAND_DEF> commands = {
      // File
      {LUM_ID_FILE_OPEN_PROJECT, "on_file_open_project", "&Open Project...", "Ctrl+O",
       "Open a project (.vpf) or a revision settings file (.vsf)", R::NOT_BUSY, nullptr, nullptr},
      {LUM_ID_FILE_CLOSE_PROJECT, "on_file_close_project", "&Close Project", "Ctrl+Shift+W",
       "Close the open project", R::PROJECT_NOT_BUSY, nullptr, nullptr},
      {LUM_ID_RUN_TCL_SCRIPT, "on_run_tcl_script", "&Run Tcl Script...", "Ctrl+R",
       "Run a Tcl script in the timing engine", R::NOT_BUSY, nullptr, nullptr},
      {LUM_ID_OPEN_STA_REPORT, "on_open_sta_report", "Open Report &File",
       "", "Show the project's report file in the design suite", R::HOSTED_ONLY, nullptr, nullptr},
      {LUM_ID_USER_LIBRARIES, "on_user_libraries", "&User Libraries...", "",
       "Edit the project's user libraries in the design suite", R::HOSTED_ONLY, nullptr, nullptr},
      {LUM_ID_GLOBAL_USER_LIBRARIES, "on_global_user_libraries", "&Global User Libraries...", "",
       "Edit the global user libraries in the design suite", R::HOSTED_ONLY, nullptr, nullptr},
      {LUM_ID_FILE_CLOSE, "on_file_close", "E&xit", "Ctrl+Q", "Close the Chronel Timing Analyzer",
       R::ALWAYS, nullptr, nullptr},
      // View
      {LUM_ID_VIEW_TASK_PANE, "on_view_task_pane", "&Tasks", "Alt+1", "Show or hide the Tasks pane; bring it back docked when auto-hidden or floating",
       R::PANE_TOGGLE, nullptr, nullptr},
      {LUM_ID_VIEW_REPORT_TREE, "on_view_report_tree", "&Report", "Alt+2", "Show or hide the Report pane; bring it back docked when auto-hidden or floating",
       R::PANE_TOGGLE, nullptr, nullptr},
      {LUM_ID_VIEW_CONSOLE, "on_view_console", "&Console", "Alt+3", "Show or hide the Console pane; bring it back docked when auto-hidden or floating",
       R::PANE_TOGGLE, nullptr, nullptr},
      // Netlist
      {LUM_ID_CREATE_TIMING_NETLIST, "on_create_timing_netlist", "&Create Timing Netlist...", "Ctrl+Shift+N",
       "Build the timing netlist of the open revision", R::NO_NETLIST, nullptr, nullptr},
      {LUM_ID_CREATE_TIMING_NETLIST_RISEFALL, "on_create_timing_netlist_risefall",
       "Create Timing Netlist with &Rise/Fall Delays", "",
       "Build the timing netlist keeping rise and fall delays apart", R::NO_NETLIST_RISE_FALL,
       "create_timing_netlist -risefall", nullptr},
      {LUM_ID_CREATE_TIMING_NETLIST_NORISEFALL, "on_create_timing_netlist_norisefall",
       "Create Timing Netlist &without Rise/Fall Delays", "",
       "Build the timing netlist with one delay per arc", R::NO_NETLIST, "create_timing_netlist", nullptr},
      {LUM_ID_UPDATE_NETLIST, "on_update_netlist", "&Update Timing Netlist", "F5",
       "Bring the timing netlist up to date with the constraints", R::STALE_NETLIST, "update_timing_netlist",
       nullptr},
      {LUM_ID_DELETE_NETLIST, "on_delete_netlist", "&Delete Timing Netlist", "",
       "Discard the timing netlist", R::NETLIST, "delete_timing_netlist", nullptr},
      // Constraints
      {LUM_ID_LOAD_SDC_FILE, "on_load_sdc_file", "&Read SDC File...", "Ctrl+L",
       "Read constraints from an SDC file", R::NETLIST, nullptr, nullptr},
      {LUM_ID_WRITE_SDC_FILE, "on_write_sdc_file", "&Write SDC File...", "Ctrl+S",
       "Write the constraints of this session to an SDC file", R::NETLIST, nullptr, nullptr},
      {LUM_ID_GENERATE_SDC_FROM_VSF, "on_generate_sdc_from_vsf", "&Generate SDC from Settings", "",
       "Turn the revision's clock requirements into SDC", R::PROJECT_NOT_BUSY,
       "load_package flow; catch {execute_module -tool sta -args \"--vsf2sdc --disable_all_banners\"}",
       nullptr},
      {LUM_ID_CREATE_CLOCK, "on_create_clock", "Create &Clock...", "", "Define a clock", R::NETLIST, nullptr,
       nullptr},
      {LUM_ID_CREATE_GENERATED_CLOCK, "on_create_generated_clock", "Create &Generated Clock...", "",
       "Define a clock derived from another", R::NETLIST, nullptr, nullptr},
      {LUM_ID_REMOVE_CLOCK, "on_remove_clock", "Re&move Clock...", "", "Remove a clock", R::NETLIST, nullptr,
       nullptr},
      {LUM_ID_SET_CLOCK_LATENCY, "on_set_clock_latency", "Set Clock &Latency...", "",
       "Set the latency of a clock", R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_CLOCK_UNCERTAINTY, "on_set_clock_uncertainty", "Set Clock &Uncertainty...", "",
       "Set the uncertainty between clocks", R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_INPUT_DELAY, "on_set_input_delay", "Set &Input Delay...", "", "Constrain input ports",
       R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_OUTPUT_DELAY, "on_set_output_delay", "Set &Output Delay...", "", "Constrain output ports",
       R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_FALSE_PATH, "on_set_false_path", "Set &False Path...", "", "Exclude paths from analysis",
       R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_MULTICYCLE_PATH, "on_set_multicycle_path", "Set M&ulticycle Path...", "",
       "Allow paths several clock cycles", R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_MAX_DELAY, "on_set_max_delay", "Set Ma&ximum Delay...", "", "Limit the delay of paths",
       R::NETLIST, nullptr, nullptr},
      {LUM_ID_SET_MIN_DELAY, "on_set_min_delay", "Set Mi&nimum Delay...", "",
       "Require a minimum delay of paths", R::NETLIST, nullptr, nullptr},
      {LUM_ID_VIEW_NAME_FINDER, "on_view_name_finder", "&Name Finder...", "Ctrl+F",
       "Find ports, pins, cells, nets and clocks", R::NETLIST, nullptr, nullptr},
      // Reports
      {LUM_ID_REPORT_SETUP_SUMMARY, "on_report_setup_summary", "Report &Setup Summary", "",
       "Summarise setup slack per clock", R::CURRENT_NETLIST,
       "create_timing_summary -setup -panel_name \"Summary (Setup)\"", "Summary (Setup)"},
      {LUM_ID_REPORT_HOLD_SUMMARY, "on_report_hold_summary", "Report &Hold Summary", "",
       "Summarise hold slack per clock", R::CURRENT_NETLIST,
       "create_timing_summary -hold -panel_name \"Summary (Hold)\"", "Summary (Hold)"},
      {LUM_ID_REPORT_RECOVERY_SUMMARY, "on_report_recovery_summary", "Report Re&covery Summary", "",
       "Summarise recovery slack per clock", R::CURRENT_NETLIST,
       "create_timing_summary -recovery -panel_name \"Summary (Recovery)\"", "Summary (Recovery)"},
      {LUM_ID_REPORT_REMOVAL_SUMMARY, "on_report_removal_summary", "Report Re&moval Summary", "",
       "Summarise removal slack per clock", R::CURRENT_NETLIST,
       "create_timing_summary -removal -panel_name \"Summary (Removal)\"", "Summary (Removal)"},
      {LUM_ID_REPORT_CLOCKS, "on_report_clocks", "Report C&locks", "", "List the clocks", R::CURRENT_NETLIST,
       "report_clocks -panel_name \"Clocks Summary\"", "Clocks Summary"},
      {LUM_ID_REPORT_CLOCK_TRANSFERS, "on_report_clock_transfers", "Report Clock &Transfers", "",
       "Count paths between clock domains", R::CURRENT_NETLIST,
       "report_clock_transfers -panel_name \"Clock Transfers\"", "Clock Transfers"},
      {LUM_ID_REPORT_SDC, "on_report_sdc", "Report S&DC", "", "List the constraints in force",
       R::CURRENT_NETLIST, "report_sdc", "SDC Assignments"},
      {LUM_ID_REPORT_UCP, "on_report_ucp", "Report &Unconstrained Paths", "",
       "List the paths no constraint covers", R::CURRENT_NETLIST,
       "report_ucp -panel_name \"Unconstrained Paths\"", "Unconstrained Paths"},
      {LUM_ID_REPORT_TIMING, "on_report_timing", "Report T&iming...", "Ctrl+T",
       "Report the worst paths of a choice of clocks and nodes", R::CURRENT_NETLIST, nullptr, nullptr},
      {LUM_ID_REPORT_NET_TIMING, "on_report_net_timing", "Report &Net Timing...", "",
       "Report the timing of nets", R::CURRENT_NETLIST, nullptr, nullptr},
      {LUM_ID_REPORT_MIN_PULSE_WIDTH, "on_report_min_pulse_width", "Report Minimum &Pulse Width...", "",
       "Check minimum pulse widths", R::CURRENT_NETLIST, nullptr, nullptr},
      {LUM_ID_CREATE_SLACK_HISTOGRAM, "on_create_slack_histogram", "Create Slack His&togram...", "",
       "Draw the distribution of slack", R::CURRENT_NETLIST, nullptr, nullptr},
      {LUM_ID_LIST_PATHS, "on_list_paths", "&List Paths...", "",
       "Count and list the worst paths of chosen kinds", R::CURRENT_NETLIST, nullptr, nullptr},
      // Help
      {LUM_ID_HELP_CONTENTS, "on_help_contents", "&Contents", "F1", "Open the help pages", R::ALWAYS, nullptr,
       nullptr},
      {LUM_ID_HELP_SEARCH, "on_help_search", "&Search Help...", "Shift+F1", "Find the help pages that hold some words",
       R::ALWAYS, nullptr, nullptr},
      {LUM_ID_APP_ABOUT, "on_app_about", "&About Chronel Timing Analyzer", "",
       "Show the version of the Chronel Timing Analyzer", R::ALWAYS, nullptr, nullptr},
  };
  return commands;
}

bool is_true(char flag) { return flag == '1'; }
bool is_false(char flag) { return flag == '0'; }

}  // namespace

const std::vector<LUM_COMMAND_DEF>& lum_command_table() { return table(); }

const LUM_COMMAND_DEF* lum_find_command(unsigned id) {
  for (const LUM_COMMAND_DEF& c : table())
    if (c.id == id) return &c;
  return nullptr;
}

const LUM_COMMAND_DEF* lum_find_command_by_handler(const std::string& handler) {
  for (const LUM_COMMAND_DEF& c : table())
    if (handler == c.handler) return &c;
  return nullptr;
}

bool lum_rule_holds(LUM_ENABLE_RULE rule, const LUM_ENABLE_STATE& s) {
  const bool open_idle = is_true(s.project_is_open) && !s.busy;
  switch (rule) {
    case R::ALWAYS:
    case R::PANE_TOGGLE:
      return true;
    case R::NOT_BUSY:
      return !s.busy;
    case R::NO_NETLIST:
      return open_idle && is_false(s.netlist_is_created);
    case R::NO_NETLIST_RISE_FALL:
      return open_idle && is_false(s.netlist_is_created) && s.family_has_rise_fall;
    case R::STALE_NETLIST:
      return open_idle && is_true(s.netlist_is_created) && is_false(s.netlist_is_up_to_date);
    case R::NETLIST:
      return open_idle && is_true(s.netlist_is_created);
    case R::CURRENT_NETLIST:
      return open_idle && is_true(s.netlist_is_created) && is_true(s.netlist_is_up_to_date);
    case R::PROJECT_NOT_BUSY:
      return s.project_recorded && !s.busy;
    case R::HOSTED_ONLY:
      return s.hosted;
  }
  return false;
}

bool lum_command_is_enabled(unsigned id, const LUM_ENABLE_STATE& s) {
  if (id >= LUM_ID_RECENT_PROJECT_FIRST && id <= LUM_ID_RECENT_PROJECT_LAST)
    return !(s.busy && id <= LUM_ID_RECENT_PROJECT_BUSY_LAST);
  if ((id >= LUM_ID_QUICK_COMMAND_MIN && id <= LUM_ID_QUICK_COMMAND_MAX) ||
      (id >= LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN && id <= LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX))
    return !s.busy;
  const LUM_COMMAND_DEF* c = lum_find_command(id);
  return c != nullptr && lum_rule_holds(c->rule, s);
}
