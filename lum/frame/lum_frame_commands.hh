// The main frame's command table: every command identifier of the menus, the
// text and shortcut it is shown with, the engine command line it runs (when it
// is a fixed line), the report panel it asks to select, and the rule that
// enables it. The table is plain data and the enabling decision a pure function
// of the frame's state, so both are checked without a window.
#pragma once

#include <string>
#include <vector>

// Command identifiers shared with the menu definition resource and the site
// menu files; their numbers are part of the menu file format.
enum LUM_COMMAND_ID : unsigned {
  LUM_ID_CREATE_TIMING_NETLIST = 45400,
  LUM_ID_REPORT_TIMING = 45401,
  LUM_ID_OPEN_STA_REPORT = 45402,
  LUM_ID_USER_LIBRARIES = 45403,
  LUM_ID_GLOBAL_USER_LIBRARIES = 45404,
  LUM_ID_FILE_OPEN_PROJECT = 45405,
  LUM_ID_FILE_CLOSE_PROJECT = 45406,
  LUM_ID_VIEW_TASK_PANE = 45407,
  LUM_ID_VIEW_REPORT_TREE = 45408,
  LUM_ID_VIEW_CONSOLE = 45409,
  LUM_ID_RUN_TCL_SCRIPT = 45410,
  LUM_ID_FILE_CLOSE = 45411,
  LUM_ID_CREATE_CLOCK = 45412,
  LUM_ID_CREATE_GENERATED_CLOCK = 45413,
  LUM_ID_SET_CLOCK_LATENCY = 45414,
  LUM_ID_SET_CLOCK_UNCERTAINTY = 45415,
  LUM_ID_SET_INPUT_DELAY = 45416,
  LUM_ID_SET_OUTPUT_DELAY = 45417,
  LUM_ID_SET_FALSE_PATH = 45418,
  LUM_ID_SET_MULTICYCLE_PATH = 45419,
  LUM_ID_SET_MAX_DELAY = 45420,
  LUM_ID_SET_MIN_DELAY = 45421,
  LUM_ID_APP_ABOUT = 45422,
  LUM_ID_REMOVE_CLOCK = 45433,
  LUM_ID_CREATE_SLACK_HISTOGRAM = 45434,
  LUM_ID_REPORT_NET_TIMING = 45435,
  LUM_ID_CREATE_TIMING_NETLIST_RISEFALL = 45437,
  LUM_ID_CREATE_TIMING_NETLIST_NORISEFALL = 45438,
  LUM_ID_UPDATE_NETLIST = 45439,
  LUM_ID_DELETE_NETLIST = 45440,
  LUM_ID_GENERATE_SDC_FROM_VSF = 45441,
  LUM_ID_LOAD_SDC_FILE = 45442,
  LUM_ID_WRITE_SDC_FILE = 45443,
  LUM_ID_REPORT_MIN_PULSE_WIDTH = 45446,
  LUM_ID_REPORT_SETUP_SUMMARY = 45452,
  LUM_ID_REPORT_HOLD_SUMMARY = 45453,
  LUM_ID_REPORT_RECOVERY_SUMMARY = 45454,
  LUM_ID_REPORT_REMOVAL_SUMMARY = 45455,
  LUM_ID_REPORT_CLOCKS = 45456,
  LUM_ID_REPORT_CLOCK_TRANSFERS = 45457,
  LUM_ID_REPORT_SDC = 45458,
  LUM_ID_REPORT_UCP = 45459,
  LUM_ID_VIEW_NAME_FINDER = 45460,
  LUM_ID_HISTORY_RUN = 45461,
  LUM_ID_LIST_PATHS = 45462,
  LUM_ID_HELP_CONTENTS = 45470,
  LUM_ID_HELP_SEARCH = 45471,
  LUM_ID_HISTORY_SAVE_AS = 57604,

  // Recent projects: sixteen commands, of which only the first fifteen are
  // greyed while busy (kept so on purpose).
  LUM_ID_RECENT_PROJECT_FIRST = 35828,
  LUM_ID_RECENT_PROJECT_LAST = 35843,
  LUM_ID_RECENT_PROJECT_BUSY_LAST = 35842,

  // Ranges of the menu definition files and the script menus.
  LUM_ID_QUICK_COMMAND_MIN = 46100,
  LUM_ID_QUICK_COMMAND_MAX = 46199,
  LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN = 46200,
  LUM_ID_RUN_PROJECT_TCL_SCRIPT_MAX = 46398,
  LUM_ID_RUN_USER_LIBS_TCL_SCRIPT_MIN = 46400,
  LUM_ID_RUN_USER_LIBS_TCL_SCRIPT_MAX = 46598,
  LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MIN = 46600,
  LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX = 46798,
};

// Which state a command needs before it may run.
enum class LUM_ENABLE_RULE {
  ALWAYS,
  NOT_BUSY,
  // A project is open in the engine, the engine is idle, and no netlist exists.
  NO_NETLIST,
  // As NO_NETLIST, and the project's device family models rise and fall apart.
  NO_NETLIST_RISE_FALL,
  // A netlist exists but lags behind the constraints.
  STALE_NETLIST,
  // A netlist exists.
  NETLIST,
  // A netlist exists and reflects every constraint: the report commands.
  CURRENT_NETLIST,
  // A project is recorded by the front end's own project services, and idle.
  PROJECT_NOT_BUSY,
  // Commands that need the design suite around the analyzer; never enabled
  // because the analyzer always runs as a program of its own.
  HOSTED_ONLY,
  // Pane toggles: always enabled, checked while the pane shows.
  PANE_TOGGLE,
};

// Everything the enabling decision depends on. The flags hold the characters
// the engine sent ('1', '0', 'e'); '\0' means never set, which counts as
// neither true nor false.
struct LUM_ENABLE_STATE {
  char project_is_open = '\0';
  char netlist_is_created = '\0';
  char sdc_file_is_loaded = '\0';
  char netlist_is_up_to_date = '\0';
  bool busy = false;
  // The front end's own record of an open project (what the engine confirmed).
  bool project_recorded = false;
  // The open project's device family separates rise and fall delays.
  bool family_has_rise_fall = false;
  bool hosted = false;
};

struct LUM_COMMAND_DEF {
  unsigned id;
  const char* handler;       // the frame's handler name, e.g. "on_report_clocks"
  const char* label;         // menu text with "&" before the mnemonic
  const char* shortcut;      // QKeySequence text, or "" for none
  const char* status_tip;    // one line for the status bar
  LUM_ENABLE_RULE rule;
  const char* command_line;  // fixed engine command line, or null
  const char* panel_name;    // report panel to select afterwards, or null
};

// The whole fixed command table, in identifier order of the menus.
const std::vector<LUM_COMMAND_DEF>& lum_command_table();
// The entry for an identifier of the fixed table, or null.
const LUM_COMMAND_DEF* lum_find_command(unsigned id);
// The entry for a handler name, or null (used by the menu resource).
const LUM_COMMAND_DEF* lum_find_command_by_handler(const std::string& handler);

// Whether a rule holds in a state.
bool lum_rule_holds(LUM_ENABLE_RULE rule, const LUM_ENABLE_STATE& state);
// Whether a command is enabled: the fixed table, the recent-project commands
// (greyed while busy except the last one), and the quick-command and script
// ranges (enabled while idle). Unknown identifiers are disabled.
bool lum_command_is_enabled(unsigned id, const LUM_ENABLE_STATE& state);
