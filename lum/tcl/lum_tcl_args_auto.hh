// The package "::vexa::lum" 1.0: its command table, the argument definitions
// of its 23 commands and the lookup of argument names.
//
// Argument names are looked up per command in two steps: the exact name in the
// global table of all 83 names (whichever command it belongs to), then, only
// if unknown, the command's own abbreviation table. A command's abbreviation
// table holds every proper prefix of its argument names and of "h", "help" and
// "long_help" that begins no other of those names, so an ambiguous
// abbreviation is simply absent (0, not found).
//
// The command number (0 to 22, the order of the table) indexes
// LUM_AUTO_MANAGER's slots. The argument library then decides whether the
// name belongs to the command, and enforces kinds, required arguments and
// groups (platform/atcl_args.hh).
#pragma once

#include <tcl.h>

#include <memory>
#include <string>
#include <unordered_map>

#include "platform/atcl.hh"
#include "platform/atcl_args.hh"

enum LUM_AUTO_ARGUMENT_ENUM {
  LUM_AUTO_ARG_NOT_FOUND = 0,
  LUM_AUTO_ARG_H = 1,
  LUM_AUTO_ARG_HELP = 2,
  LUM_AUTO_ARG_LONG_HELP = 3,
  LUM_AUTO_ARG_ADD_DELAY = 4,
  LUM_AUTO_ARG_ALL_FAILING = 5,
  LUM_AUTO_ARG_APPEND = 6,
  LUM_AUTO_ARG_BATCH_MODE_START = 7,
  LUM_AUTO_ARG_BATCH_MODE_STOP = 8,
  LUM_AUTO_ARG_CCPP = 9,
  LUM_AUTO_ARG_CHIP_EDITOR = 10,
  LUM_AUTO_ARG_CLOCK = 11,
  LUM_AUTO_ARG_CLOCK_FALL = 12,
  LUM_AUTO_ARG_CLOCK_NAME = 13,
  LUM_AUTO_ARG_DELAY = 14,
  LUM_AUTO_ARG_DIVIDE_BY = 15,
  LUM_AUTO_ARG_DUTY_CYCLE = 16,
  LUM_AUTO_ARG_EARLY = 17,
  LUM_AUTO_ARG_EDGE_LIST = 18,
  LUM_AUTO_ARG_EDGE_SHIFT = 19,
  LUM_AUTO_ARG_END = 20,
  LUM_AUTO_ARG_FALL = 21,
  LUM_AUTO_ARG_FALL_FROM = 22,
  LUM_AUTO_ARG_FALL_TO = 23,
  LUM_AUTO_ARG_FILE = 24,
  LUM_AUTO_ARG_FLED = 25,
  LUM_AUTO_ARG_FROM = 26,
  LUM_AUTO_ARG_FROM_CLOCK = 27,
  LUM_AUTO_ARG_HOLD = 28,
  LUM_AUTO_ARG_INVERT = 29,
  LUM_AUTO_ARG_LATE = 30,
  LUM_AUTO_ARG_LESS_THAN_SLACK = 31,
  LUM_AUTO_ARG_LOCATE = 32,
  LUM_AUTO_ARG_LOCATIONS = 33,
  LUM_AUTO_ARG_MASTER_CLOCK = 34,
  LUM_AUTO_ARG_MAX = 35,
  LUM_AUTO_ARG_MAX_SLACK = 36,
  LUM_AUTO_ARG_MIN = 37,
  LUM_AUTO_ARG_MIN_SLACK = 38,
  LUM_AUTO_ARG_MULTIPLY_BY = 39,
  LUM_AUTO_ARG_NAME = 40,
  LUM_AUTO_ARG_NAMES = 41,
  LUM_AUTO_ARG_NETLIST_IS_CREATED = 42,
  LUM_AUTO_ARG_NETLIST_IS_UP_TO_DATE = 43,
  LUM_AUTO_ARG_NPATHS = 44,
  LUM_AUTO_ARG_NUM_BINS = 45,
  LUM_AUTO_ARG_NWORST = 46,
  LUM_AUTO_ARG_NWORST_DELAY = 47,
  LUM_AUTO_ARG_NWORST_FANOUT = 48,
  LUM_AUTO_ARG_OFFSET = 49,
  LUM_AUTO_ARG_OPEN_PANEL = 50,
  LUM_AUTO_ARG_PANEL_NAME = 51,
  LUM_AUTO_ARG_PERCENT_COMPLETE = 52,
  LUM_AUTO_ARG_PERIOD = 53,
  LUM_AUTO_ARG_PHASE = 54,
  LUM_AUTO_ARG_PROJECT_IS_OPEN = 55,
  LUM_AUTO_ARG_VPF = 56,
  LUM_AUTO_ARG_RECOVERY = 57,
  LUM_AUTO_ARG_REFERENCE_PIN = 58,
  LUM_AUTO_ARG_REMOVAL = 59,
  LUM_AUTO_ARG_REMOVE = 60,
  LUM_AUTO_ARG_REVISION = 61,
  LUM_AUTO_ARG_RISE = 62,
  LUM_AUTO_ARG_RISE_FROM = 63,
  LUM_AUTO_ARG_RISE_TO = 64,
  LUM_AUTO_ARG_SDC_FILE_IS_LOADED = 65,
  LUM_AUTO_ARG_SETUP = 66,
  LUM_AUTO_ARG_SHOW_ROUTING = 67,
  LUM_AUTO_ARG_SOURCE = 68,
  LUM_AUTO_ARG_SOURCE_OBJECTS = 69,
  LUM_AUTO_ARG_START = 70,
  LUM_AUTO_ARG_STDOUT = 71,
  LUM_AUTO_ARG_SUMMARY = 72,
  LUM_AUTO_ARG_TARGETS = 73,
  LUM_AUTO_ARG_TEXT = 74,
  LUM_AUTO_ARG_THRU = 75,
  LUM_AUTO_ARG_TO = 76,
  LUM_AUTO_ARG_TO_CLOCK = 77,
  LUM_AUTO_ARG_TYPE = 78,
  LUM_AUTO_ARG_UNCERTAINTY = 79,
  LUM_AUTO_ARG_UNIT = 80,
  LUM_AUTO_ARG_VALUE = 81,
  LUM_AUTO_ARG_X_AXIS_MAX_OPEN = 82,
  LUM_AUTO_ARG_X_AXIS_MIN_OPEN = 83,
  LUM_AUTO_ARG_NULL_NAME = 84,  // a null or empty name
};

// Number of entries of the global name table (values 0 to 83).
constexpr int LUM_AUTO_ARGUMENT_COUNT = 84;

// The commands: X(number, command name, stem, STEM, handler). The stem is the
// handler's name less its first "lum_"; it names the translator
// (LUM_AUTO_<STEM>_TRANSLATOR), the argument initialiser (lum_init_<stem>),
// the string-to-enum function (lum_auto_get_<stem>_argument_enum_by_string)
// and the definition (lum_auto_<stem>_definition).
#define LUM_AUTO_COMMANDS(X) \
  X(0, lum_reload_sta_report, lum_reload_sta_report, LUM_RELOAD_STA_REPORT, lum_lum_reload_sta_report) \
  X(1, lum_tcl_prompt, lum_tcl_prompt, LUM_TCL_PROMPT, lum_lum_tcl_prompt) \
  X(2, lum_tcl_cont_prompt, lum_tcl_cont_prompt, LUM_TCL_CONT_PROMPT, lum_lum_tcl_cont_prompt) \
  X(3, lum_report_status, lum_report_status, LUM_REPORT_STATUS, lum_lum_report_status) \
  X(4, lum_echo_stdout, lum_echo_stdout, LUM_ECHO_STDOUT, lum_lum_echo_stdout) \
  X(5, lum_set_state, lum_set_state, LUM_SET_STATE, lum_lum_set_state) \
  X(6, lum_set_time_unit, set_time_unit, SET_TIME_UNIT, lum_set_time_unit) \
  X(7, lum_open_project, open_project, OPEN_PROJECT, lum_open_project) \
  X(8, lum_register_clock, lum_register_clock, LUM_REGISTER_CLOCK, lum_lum_register_clock) \
  X(9, lum_edit_clock, edit_clock, EDIT_CLOCK, lum_edit_clock) \
  X(10, lum_set_clock_latency, set_clock_latency, SET_CLOCK_LATENCY, lum_set_clock_latency) \
  X(11, lum_set_clock_uncertainty, set_clock_uncertainty, SET_CLOCK_UNCERTAINTY, lum_set_clock_uncertainty) \
  X(12, lum_set_input_delay, set_input_delay, SET_INPUT_DELAY, lum_set_input_delay) \
  X(13, lum_set_output_delay, set_output_delay, SET_OUTPUT_DELAY, lum_set_output_delay) \
  X(14, lum_set_false_path, set_false_path, SET_FALSE_PATH, lum_set_false_path) \
  X(15, lum_set_multicycle_path, set_multicycle_path, SET_MULTICYCLE_PATH, lum_set_multicycle_path) \
  X(16, lum_set_max_delay, set_max_delay, SET_MAX_DELAY, lum_set_max_delay) \
  X(17, lum_set_min_delay, set_min_delay, SET_MIN_DELAY, lum_set_min_delay) \
  X(18, lum_report_timing, report_timing, REPORT_TIMING, lum_report_timing) \
  X(19, lum_report_net_timing, report_net_timing, REPORT_NET_TIMING, lum_report_net_timing) \
  X(20, lum_report_min_pulse_width, report_min_pulse_width, REPORT_MIN_PULSE_WIDTH, lum_report_min_pulse_width) \
  X(21, lum_create_slack_histogram, create_slack_histogram, CREATE_SLACK_HISTOGRAM, lum_create_slack_histogram) \
  X(22, lum_locate, locate, LOCATE, lum_locate)

constexpr int LUM_AUTO_COMMAND_COUNT = 23;

// The global name table as a hash, a process-wide single instance.
class LUM_AUTO_TRANSLATOR {
 public:
  static LUM_AUTO_TRANSLATOR& get_instance();

  // Index = enum value; entry 0 is the empty text.
  static const char* const m_argument_enum_string_table[LUM_AUTO_ARGUMENT_COUNT];

  void init_argument_enum_by_string();
  // Enters entries 1 to count of table into hash (value = index).
  static void init_hash_from_table(std::unordered_map<std::string, int>& hash, const char* const* table, int count);
  bool exists_argument_enum_by_string(const char* name) const;
  // 1 to 83 for a known name, 0 for an unknown one, 84 for a null or empty name.
  LUM_AUTO_ARGUMENT_ENUM get_argument_enum_by_string(const char* name) const;
  // The name of a value; "" outside the table.
  const char* get_string_by_argument_enum(int value) const;

 private:
  LUM_AUTO_TRANSLATOR();
  std::unordered_map<std::string, int> m_hash;
};

// A command's abbreviation table (see the top of this file).
class LUM_AUTO_COMMAND_TRANSLATOR {
 public:
  explicit LUM_AUTO_COMMAND_TRANSLATOR(const ATCL_ARG_RECORD* arguments);
  virtual ~LUM_AUTO_COMMAND_TRANSLATOR() = default;
  void init_argument_enum_by_substring();
  // The argument an abbreviation stands for, or 0.
  LUM_AUTO_ARGUMENT_ENUM get_argument_enum_by_substring(const char* name) const;
  // Exact lookup, then abbreviation: the command's string-to-enum function.
  LUM_AUTO_ARGUMENT_ENUM lookup(const char* name) const;
  size_t abbreviation_count() const { return m_hash.size(); }

 private:
  const ATCL_ARG_RECORD* m_arguments;
  std::unordered_map<std::string, int> m_hash;
};

#define LUM_AUTO_DECLARE_COMMAND(number, name, stem, STEM, handler)                     \
  class LUM_AUTO_##STEM##_TRANSLATOR : public LUM_AUTO_COMMAND_TRANSLATOR {              \
   public:                                                                             \
    static LUM_AUTO_##STEM##_TRANSLATOR& get_instance();                               \
                                                                                       \
   private:                                                                            \
    LUM_AUTO_##STEM##_TRANSLATOR();                                                    \
  };                                                                                   \
  extern "C" int lum_auto_get_##stem##_argument_enum_by_string(const char* arg_name);  \
  extern const ATCL_CMD_DEFINITION lum_auto_##stem##_definition;                       \
  int lum_init_##stem(ATCL_ARGS* args, bool* help_shown, int argc, const char* const* argv); \
  int handler(ClientData client_data, Tcl_Interp* interp, int argc, const char* argv[]);
LUM_AUTO_COMMANDS(LUM_AUTO_DECLARE_COMMAND)
#undef LUM_AUTO_DECLARE_COMMAND

extern "C" {
bool lum_auto_exists_argument_enum_by_string(const char* arg_name);
int lum_auto_get_argument_enum_by_string(const char* arg_name);
const char* lum_auto_get_string_by_argument_enum(int value);
}

// The definition of a command by number, or null.
const ATCL_CMD_DEFINITION* lum_auto_get_definition(int command_number);

// One ATCL_CMD per command number, made from its definition on first use.
class LUM_AUTO_MANAGER {
 public:
  static LUM_AUTO_MANAGER& get_instance();
  // The slot's command, made from definition if the slot is empty.
  ATCL_CMD* register_command(int command_number, const ATCL_CMD_DEFINITION* definition);

 private:
  LUM_AUTO_MANAGER() = default;
  std::unique_ptr<ATCL_CMD> m_commands[LUM_AUTO_COMMAND_COUNT];
};

// The command table of the package, ended by an all-null entry.
extern const ATCL_CALLBACK lum_lum_tcl_callbacks[LUM_AUTO_COMMAND_COUNT + 1];

// The package init for Tcl_StaticPackage ("Lum"): sets the package up in the
// front end's interpreter (with the message commands msg_post and
// msg_internal_error beside it) and provides "::vexa::lum" 1.0. Returns 0.
extern "C" int Lum_Init(Tcl_Interp* interp);
// The same set-up called directly by the front end; returns Tcl_PkgProvide's result.
int lum_lum_register_tcl();
