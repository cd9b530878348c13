#include "lum_tcl_args_auto.hh"

#include <cstring>

#include "platform/msg.hh"

namespace {
const char* const MODULE = "lum_tcl_args_auto";
}

// ---- global name table --------------------------------------------------------

const char* const LUM_AUTO_TRANSLATOR::m_argument_enum_string_table[LUM_AUTO_ARGUMENT_COUNT] = {
    "",
    "h",
    "help",
    "long_help",
    "add_delay",
    "all_failing",
    "append",
    "batch_mode_start",
    "batch_mode_stop",
    "ccpp",
    "chip_editor",
    "clock",
    "clock_fall",
    "clock_name",
    "delay",
    "divide_by",
    "duty_cycle",
    "early",
    "edge_list",
    "edge_shift",
    "end",
    "fall",
    "fall_from",
    "fall_to",
    "file",
    "fled",
    "from",
    "from_clock",
    "hold",
    "invert",
    "late",
    "less_than_slack",
    "locate",
    "locations",
    "master_clock",
    "max",
    "max_slack",
    "min",
    "min_slack",
    "multiply_by",
    "name",
    "names",
    "netlist_is_created",
    "netlist_is_up_to_date",
    "npaths",
    "num_bins",
    "nworst",
    "nworst_delay",
    "nworst_fanout",
    "offset",
    "open_panel",
    "panel_name",
    "percent complete",
    "period",
    "phase",
    "project_is_open",
    "vpf",
    "recovery",
    "reference_pin",
    "removal",
    "remove",
    "revision",
    "rise",
    "rise_from",
    "rise_to",
    "sdc_file_is_loaded",
    "setup",
    "show_routing",
    "source",
    "source_objects",
    "start",
    "stdout",
    "summary",
    "targets",
    "text",
    "thru",
    "to",
    "to_clock",
    "type",
    "uncertainty",
    "unit",
    "value",
    "x_axis_max_open",
    "x_axis_min_open"
};

LUM_AUTO_TRANSLATOR& LUM_AUTO_TRANSLATOR::get_instance() {
  static LUM_AUTO_TRANSLATOR instance;
  return instance;
}

LUM_AUTO_TRANSLATOR::LUM_AUTO_TRANSLATOR() : m_hash(61) { init_argument_enum_by_string(); }

void LUM_AUTO_TRANSLATOR::init_hash_from_table(std::unordered_map<std::string, int>& hash, const char* const* table,
                                               int count) {
  hash.reserve(static_cast<size_t>(count));
  for (int i = 1; i <= count; ++i) hash.emplace(table[i], i);
}

void LUM_AUTO_TRANSLATOR::init_argument_enum_by_string() {
  init_hash_from_table(m_hash, m_argument_enum_string_table, LUM_AUTO_ARGUMENT_COUNT - 1);
}

bool LUM_AUTO_TRANSLATOR::exists_argument_enum_by_string(const char* name) const {
  return name != nullptr && m_hash.count(name) > 0;
}

LUM_AUTO_ARGUMENT_ENUM LUM_AUTO_TRANSLATOR::get_argument_enum_by_string(const char* name) const {
  if (name == nullptr || *name == 0) return LUM_AUTO_ARG_NULL_NAME;
  auto it = m_hash.find(name);
  return it == m_hash.end() ? LUM_AUTO_ARG_NOT_FOUND : static_cast<LUM_AUTO_ARGUMENT_ENUM>(it->second);
}

const char* LUM_AUTO_TRANSLATOR::get_string_by_argument_enum(int value) const {
  if (value < 0 || value >= LUM_AUTO_ARGUMENT_COUNT) return "";
  return m_argument_enum_string_table[value];
}

bool lum_auto_exists_argument_enum_by_string(const char* arg_name) {
  return LUM_AUTO_TRANSLATOR::get_instance().exists_argument_enum_by_string(arg_name);
}

int lum_auto_get_argument_enum_by_string(const char* arg_name) {
  return LUM_AUTO_TRANSLATOR::get_instance().get_argument_enum_by_string(arg_name);
}

const char* lum_auto_get_string_by_argument_enum(int value) {
  return LUM_AUTO_TRANSLATOR::get_instance().get_string_by_argument_enum(value);
}

// ---- per-command abbreviation tables ------------------------------------------

LUM_AUTO_COMMAND_TRANSLATOR::LUM_AUTO_COMMAND_TRANSLATOR(const ATCL_ARG_RECORD* arguments)
    : m_arguments(arguments), m_hash(61) {}

void LUM_AUTO_COMMAND_TRANSLATOR::init_argument_enum_by_substring() {
  std::vector<int> set = {LUM_AUTO_ARG_H, LUM_AUTO_ARG_HELP, LUM_AUTO_ARG_LONG_HELP};
  for (const ATCL_ARG_RECORD* r = m_arguments; r && r->enum_value != 0; ++r) set.push_back(r->enum_value);
  LUM_AUTO_TRANSLATOR& names = LUM_AUTO_TRANSLATOR::get_instance();
  std::unordered_map<std::string, int> prefixes;
  for (int value : set) {
    std::string name = names.get_string_by_argument_enum(value);
    for (size_t length = 1; length < name.size(); ++length) {
      std::string prefix = name.substr(0, length);
      bool unique = true;
      for (int other : set) {
        if (other == value) continue;
        if (std::strncmp(names.get_string_by_argument_enum(other), prefix.c_str(), length) == 0) {
          unique = false;
          break;
        }
      }
      if (unique) prefixes.emplace(prefix, value);
    }
  }
  m_hash.reserve(prefixes.size());
  m_hash.insert(prefixes.begin(), prefixes.end());
}

LUM_AUTO_ARGUMENT_ENUM LUM_AUTO_COMMAND_TRANSLATOR::get_argument_enum_by_substring(const char* name) const {
  if (name == nullptr) return LUM_AUTO_ARG_NOT_FOUND;
  auto it = m_hash.find(name);
  return it == m_hash.end() ? LUM_AUTO_ARG_NOT_FOUND : static_cast<LUM_AUTO_ARGUMENT_ENUM>(it->second);
}

LUM_AUTO_ARGUMENT_ENUM LUM_AUTO_COMMAND_TRANSLATOR::lookup(const char* name) const {
  LUM_AUTO_ARGUMENT_ENUM value = LUM_AUTO_TRANSLATOR::get_instance().get_argument_enum_by_string(name);
  return value != LUM_AUTO_ARG_NOT_FOUND ? value : get_argument_enum_by_substring(name);
}

// ---- argument definitions -------------------------------------------------------

namespace {

// lum_reload_sta_report
const ATCL_ARG_RECORD lum_reload_sta_report_arguments[] = {
    {LUM_AUTO_ARG_OPEN_PANEL, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_reload_sta_report_definition = {"lum", "lum_reload_sta_report", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_reload_sta_report_argument_enum_by_string, 0, 0, lum_reload_sta_report_arguments, nullptr, nullptr, {}};

// lum_tcl_prompt
const ATCL_ARG_RECORD lum_tcl_prompt_arguments[] = {
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_tcl_prompt_definition = {"lum", "lum_tcl_prompt", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_tcl_prompt_argument_enum_by_string, 0, 0, lum_tcl_prompt_arguments, nullptr, nullptr, {}};

// lum_tcl_cont_prompt
const ATCL_ARG_RECORD lum_tcl_cont_prompt_arguments[] = {
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_tcl_cont_prompt_definition = {"lum", "lum_tcl_cont_prompt", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_tcl_cont_prompt_argument_enum_by_string, 0, 0, lum_tcl_cont_prompt_arguments, nullptr, nullptr, {}};

// lum_report_status
const ATCL_ARG_RECORD lum_report_status_arguments[] = {
    {LUM_AUTO_ARG_PERCENT_COMPLETE, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_report_status_definition = {"lum", "lum_report_status", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_report_status_argument_enum_by_string, 0, 0, lum_report_status_arguments, nullptr, nullptr, {}};

// lum_echo_stdout
const ATCL_ARG_RECORD lum_echo_stdout_arguments[] = {
    {LUM_AUTO_ARG_TEXT, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_echo_stdout_definition = {"lum", "lum_echo_stdout", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_echo_stdout_argument_enum_by_string, 0, 0, lum_echo_stdout_arguments, nullptr, nullptr, {}};

// lum_set_state
const ATCL_ARG_RECORD lum_set_state_arguments[] = {
    {LUM_AUTO_ARG_NETLIST_IS_CREATED, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NETLIST_IS_UP_TO_DATE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PROJECT_IS_OPEN, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SDC_FILE_IS_LOADED, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_set_state_definition = {"lum", "lum_set_state", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_set_state_argument_enum_by_string, 0, 0, lum_set_state_arguments, nullptr, nullptr, {}};

// lum_set_time_unit
const ATCL_ARG_RECORD set_time_unit_arguments[] = {
    {LUM_AUTO_ARG_UNIT, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION set_time_unit_definition = {"lum", "lum_set_time_unit", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_time_unit_argument_enum_by_string, 0, 0, set_time_unit_arguments, nullptr, nullptr, {}};

// lum_open_project
const ATCL_ARG_RECORD open_project_arguments[] = {
    {LUM_AUTO_ARG_VPF, ATCL_ARG_STRING, 0, 0},
    {LUM_AUTO_ARG_REVISION, ATCL_ARG_STRING, 0, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION open_project_definition = {"lum", "lum_open_project", lum_auto_get_string_by_argument_enum,
    lum_auto_get_open_project_argument_enum_by_string, 0, 0, open_project_arguments, nullptr, nullptr, {}};

// lum_register_clock
const ATCL_ARG_RECORD lum_register_clock_arguments[] = {
    {LUM_AUTO_ARG_NAME, ATCL_ARG_STRING, 0, 0},
    {LUM_AUTO_ARG_REMOVE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION lum_register_clock_definition = {"lum", "lum_register_clock", lum_auto_get_string_by_argument_enum,
    lum_auto_get_lum_register_clock_argument_enum_by_string, 0, 0, lum_register_clock_arguments, nullptr, nullptr, {}};

// lum_edit_clock
const ATCL_ARG_RECORD edit_clock_arguments[] = {
    {LUM_AUTO_ARG_DIVIDE_BY, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_DUTY_CYCLE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_EDGE_LIST, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_EDGE_SHIFT, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_INVERT, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MASTER_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MULTIPLY_BY, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NAME, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_OFFSET, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PERIOD, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PHASE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SOURCE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SOURCE_OBJECTS, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TYPE, ATCL_ARG_STRING, 0, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION edit_clock_definition = {"lum", "lum_edit_clock", lum_auto_get_string_by_argument_enum,
    lum_auto_get_edit_clock_argument_enum_by_string, 0, 0, edit_clock_arguments, nullptr, nullptr, {}};

// lum_set_clock_latency
const ATCL_ARG_RECORD set_clock_latency_arguments[] = {
    {LUM_AUTO_ARG_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_EARLY, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_LATE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SOURCE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_DELAY, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {LUM_AUTO_ARG_TARGETS, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const int set_clock_latency_exclusive_0[] = {LUM_AUTO_ARG_FALL, LUM_AUTO_ARG_RISE, 0};
const int set_clock_latency_exclusive_1[] = {LUM_AUTO_ARG_EARLY, LUM_AUTO_ARG_LATE, 0};
const int* const set_clock_latency_exclusive_groups[] = {set_clock_latency_exclusive_0, set_clock_latency_exclusive_1, nullptr};
const ATCL_CMD_DEFINITION set_clock_latency_definition = {"lum", "lum_set_clock_latency", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_clock_latency_argument_enum_by_string, 0, 0, set_clock_latency_arguments, set_clock_latency_exclusive_groups, nullptr, {}};

// lum_set_clock_uncertainty
const ATCL_ARG_RECORD set_clock_uncertainty_arguments[] = {
    {LUM_AUTO_ARG_FALL_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_HOLD, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SETUP, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_UNCERTAINTY, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const int set_clock_uncertainty_exclusive_0[] = {LUM_AUTO_ARG_HOLD, LUM_AUTO_ARG_SETUP, 0};
const int set_clock_uncertainty_exclusive_1[] = {LUM_AUTO_ARG_FALL_TO, LUM_AUTO_ARG_RISE_TO, LUM_AUTO_ARG_TO, 0};
const int set_clock_uncertainty_exclusive_2[] = {LUM_AUTO_ARG_FALL_FROM, LUM_AUTO_ARG_FROM, LUM_AUTO_ARG_RISE_FROM, 0};
const int* const set_clock_uncertainty_exclusive_groups[] = {set_clock_uncertainty_exclusive_0, set_clock_uncertainty_exclusive_1, set_clock_uncertainty_exclusive_2, nullptr};
const int set_clock_uncertainty_together_0[] = {LUM_AUTO_ARG_FALL_TO, LUM_AUTO_ARG_RISE_TO, LUM_AUTO_ARG_TO, 0};
const int set_clock_uncertainty_together_1[] = {LUM_AUTO_ARG_FALL_FROM, LUM_AUTO_ARG_FROM, LUM_AUTO_ARG_RISE_FROM, 0};
const int* const set_clock_uncertainty_together_groups[] = {set_clock_uncertainty_together_0, set_clock_uncertainty_together_1, nullptr};
const ATCL_CMD_DEFINITION set_clock_uncertainty_definition = {"lum", "lum_set_clock_uncertainty", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_clock_uncertainty_argument_enum_by_string, 0, 0, set_clock_uncertainty_arguments, set_clock_uncertainty_exclusive_groups, set_clock_uncertainty_together_groups, {}};

// lum_set_input_delay
const ATCL_ARG_RECORD set_input_delay_arguments[] = {
    {LUM_AUTO_ARG_ADD_DELAY, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CLOCK_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MAX, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MIN, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_REFERENCE_PIN, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_DELAY, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {LUM_AUTO_ARG_TARGETS, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const int set_input_delay_exclusive_0[] = {LUM_AUTO_ARG_MAX, LUM_AUTO_ARG_MIN, 0};
const int set_input_delay_exclusive_1[] = {LUM_AUTO_ARG_FALL, LUM_AUTO_ARG_RISE, 0};
const int* const set_input_delay_exclusive_groups[] = {set_input_delay_exclusive_0, set_input_delay_exclusive_1, nullptr};
const ATCL_CMD_DEFINITION set_input_delay_definition = {"lum", "lum_set_input_delay", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_input_delay_argument_enum_by_string, 0, 0, set_input_delay_arguments, set_input_delay_exclusive_groups, nullptr, {}};

// lum_set_output_delay
const ATCL_ARG_RECORD set_output_delay_arguments[] = {
    {LUM_AUTO_ARG_ADD_DELAY, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CLOCK_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MAX, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MIN, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_REFERENCE_PIN, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_DELAY, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {LUM_AUTO_ARG_TARGETS, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL, 0},
    {0, 0, 0, 0},
};
const int set_output_delay_exclusive_0[] = {LUM_AUTO_ARG_MAX, LUM_AUTO_ARG_MIN, 0};
const int set_output_delay_exclusive_1[] = {LUM_AUTO_ARG_FALL, LUM_AUTO_ARG_RISE, 0};
const int* const set_output_delay_exclusive_groups[] = {set_output_delay_exclusive_0, set_output_delay_exclusive_1, nullptr};
const ATCL_CMD_DEFINITION set_output_delay_definition = {"lum", "lum_set_output_delay", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_output_delay_argument_enum_by_string, 0, 0, set_output_delay_arguments, set_output_delay_exclusive_groups, nullptr, {}};

// lum_set_false_path
const ATCL_ARG_RECORD set_false_path_arguments[] = {
    {LUM_AUTO_ARG_FALL_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_THRU, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION set_false_path_definition = {"lum", "lum_set_false_path", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_false_path_argument_enum_by_string, 0, 0, set_false_path_arguments, nullptr, nullptr, {}};

// lum_set_multicycle_path
const ATCL_ARG_RECORD set_multicycle_path_arguments[] = {
    {LUM_AUTO_ARG_END, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_HOLD, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SETUP, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_START, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_THRU, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_VALUE, ATCL_ARG_INTEGER, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const int set_multicycle_path_exclusive_0[] = {LUM_AUTO_ARG_HOLD, LUM_AUTO_ARG_SETUP, 0};
const int set_multicycle_path_exclusive_1[] = {LUM_AUTO_ARG_END, LUM_AUTO_ARG_START, 0};
const int* const set_multicycle_path_exclusive_groups[] = {set_multicycle_path_exclusive_0, set_multicycle_path_exclusive_1, nullptr};
const ATCL_CMD_DEFINITION set_multicycle_path_definition = {"lum", "lum_set_multicycle_path", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_multicycle_path_argument_enum_by_string, 0, 0, set_multicycle_path_arguments, set_multicycle_path_exclusive_groups, nullptr, {}};

// lum_set_max_delay
const ATCL_ARG_RECORD set_max_delay_arguments[] = {
    {LUM_AUTO_ARG_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_THRU, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_VALUE, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION set_max_delay_definition = {"lum", "lum_set_max_delay", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_max_delay_argument_enum_by_string, 0, 0, set_max_delay_arguments, nullptr, nullptr, {}};

// lum_set_min_delay
const ATCL_ARG_RECORD set_min_delay_arguments[] = {
    {LUM_AUTO_ARG_FALL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_THRU, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_VALUE, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION set_min_delay_definition = {"lum", "lum_set_min_delay", lum_auto_get_string_by_argument_enum,
    lum_auto_get_set_min_delay_argument_enum_by_string, 0, 0, set_min_delay_arguments, nullptr, nullptr, {}};

// lum_report_timing
const ATCL_ARG_RECORD report_timing_arguments[] = {
    {LUM_AUTO_ARG_ALL_FAILING, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_APPEND, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CCPP, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FALL_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FILE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FROM_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_HOLD, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_LESS_THAN_SLACK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NPATHS, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PANEL_NAME, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RECOVERY, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_REMOVAL, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_FROM, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_RISE_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SETUP, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SHOW_ROUTING, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_STDOUT, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_SUMMARY, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_THRU, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TO_CLOCK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const int report_timing_exclusive_0[] = {LUM_AUTO_ARG_HOLD, LUM_AUTO_ARG_RECOVERY, LUM_AUTO_ARG_REMOVAL, LUM_AUTO_ARG_SETUP, 0};
const int* const report_timing_exclusive_groups[] = {report_timing_exclusive_0, nullptr};
const ATCL_CMD_DEFINITION report_timing_definition = {"lum", "lum_report_timing", lum_auto_get_string_by_argument_enum,
    lum_auto_get_report_timing_argument_enum_by_string, 0, 0, report_timing_arguments, report_timing_exclusive_groups, nullptr, {}};

// lum_report_net_timing
const ATCL_ARG_RECORD report_net_timing_arguments[] = {
    {LUM_AUTO_ARG_LOCATE, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NWORST_DELAY, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NWORST_FANOUT, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NAME, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION report_net_timing_definition = {"lum", "lum_report_net_timing", lum_auto_get_string_by_argument_enum,
    lum_auto_get_report_net_timing_argument_enum_by_string, 0, 0, report_net_timing_arguments, nullptr, nullptr, {}};

// lum_report_min_pulse_width
const ATCL_ARG_RECORD report_min_pulse_width_arguments[] = {
    {LUM_AUTO_ARG_APPEND, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FILE, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NWORST, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PANEL_NAME, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_STDOUT, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_TARGETS, ATCL_ARG_STRING, ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION report_min_pulse_width_definition = {"lum", "lum_report_min_pulse_width", lum_auto_get_string_by_argument_enum,
    lum_auto_get_report_min_pulse_width_argument_enum_by_string, 0, 0, report_min_pulse_width_arguments, nullptr, nullptr, {}};

// lum_create_slack_histogram
const ATCL_ARG_RECORD create_slack_histogram_arguments[] = {
    {LUM_AUTO_ARG_CLOCK_NAME, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MAX_SLACK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_MIN_SLACK, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NUM_BINS, ATCL_ARG_INTEGER, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_PANEL_NAME, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_X_AXIS_MAX_OPEN, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_X_AXIS_MIN_OPEN, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const ATCL_CMD_DEFINITION create_slack_histogram_definition = {"lum", "lum_create_slack_histogram", lum_auto_get_string_by_argument_enum,
    lum_auto_get_create_slack_histogram_argument_enum_by_string, 0, 0, create_slack_histogram_arguments, nullptr, nullptr, {}};

// lum_locate
const ATCL_ARG_RECORD locate_arguments[] = {
    {LUM_AUTO_ARG_BATCH_MODE_START, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_BATCH_MODE_STOP, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_CHIP_EDITOR, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_DELAY, ATCL_ARG_STRING, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_FLED, ATCL_ARG_FLAG, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_LOCATIONS, ATCL_ARG_LIST, ATCL_ARG_OPTIONAL, 0},
    {LUM_AUTO_ARG_NAMES, ATCL_ARG_LIST, ATCL_ARG_OPTIONAL, 0},
    {0, 0, 0, 0},
};
const int locate_exclusive_0[] = {LUM_AUTO_ARG_CHIP_EDITOR, LUM_AUTO_ARG_FLED, 0};
const int locate_exclusive_1[] = {LUM_AUTO_ARG_BATCH_MODE_START, LUM_AUTO_ARG_BATCH_MODE_STOP, 0};
const int* const locate_exclusive_groups[] = {locate_exclusive_0, locate_exclusive_1, nullptr};
const int locate_together_0[] = {LUM_AUTO_ARG_NAMES, LUM_AUTO_ARG_LOCATIONS, 0};
const int locate_together_1[] = {LUM_AUTO_ARG_CHIP_EDITOR, LUM_AUTO_ARG_FLED, 0};
const int* const locate_together_groups[] = {locate_together_0, locate_together_1, nullptr};
const ATCL_CMD_DEFINITION locate_definition = {"lum", "lum_locate", lum_auto_get_string_by_argument_enum,
    lum_auto_get_locate_argument_enum_by_string, 0, 0, locate_arguments, locate_exclusive_groups, locate_together_groups, {}};
}  // namespace

#define LUM_AUTO_DEFINE_COMMAND(number, name, stem, STEM, handler)                              \
  const ATCL_CMD_DEFINITION lum_auto_##stem##_definition = stem##_definition;                   \
  LUM_AUTO_##STEM##_TRANSLATOR::LUM_AUTO_##STEM##_TRANSLATOR()                                  \
      : LUM_AUTO_COMMAND_TRANSLATOR(stem##_arguments) {                                         \
    init_argument_enum_by_substring();                                                          \
  }                                                                                             \
  LUM_AUTO_##STEM##_TRANSLATOR& LUM_AUTO_##STEM##_TRANSLATOR::get_instance() {                  \
    static LUM_AUTO_##STEM##_TRANSLATOR instance;                                               \
    return instance;                                                                            \
  }                                                                                             \
  int lum_auto_get_##stem##_argument_enum_by_string(const char* arg_name) {                     \
    return LUM_AUTO_##STEM##_TRANSLATOR::get_instance().lookup(arg_name);                       \
  }                                                                                             \
  int lum_init_##stem(ATCL_ARGS* args, bool* help_shown, int argc, const char* const* argv) {   \
    if (!MSG_ASSERT(args != 0, MODULE)) return TCL_ERROR;                                       \
    ATCL_CMD* cmd = LUM_AUTO_MANAGER::get_instance().register_command(number, &stem##_definition); \
    return args->process_tcl_command_arguments(cmd, help_shown, argc, argv);                    \
  }
LUM_AUTO_COMMANDS(LUM_AUTO_DEFINE_COMMAND)
#undef LUM_AUTO_DEFINE_COMMAND

const ATCL_CMD_DEFINITION* lum_auto_get_definition(int command_number) {
  static const ATCL_CMD_DEFINITION* const definitions[] = {
#define LUM_AUTO_DEFINITION_ENTRY(number, name, stem, STEM, handler) &stem##_definition,
      LUM_AUTO_COMMANDS(LUM_AUTO_DEFINITION_ENTRY)
#undef LUM_AUTO_DEFINITION_ENTRY
  };
  if (command_number < 0 || command_number >= LUM_AUTO_COMMAND_COUNT) return nullptr;
  return definitions[command_number];
}

// ---- manager ----------------------------------------------------------------------

LUM_AUTO_MANAGER& LUM_AUTO_MANAGER::get_instance() {
  static LUM_AUTO_MANAGER instance;
  return instance;
}

ATCL_CMD* LUM_AUTO_MANAGER::register_command(int command_number, const ATCL_CMD_DEFINITION* definition) {
  if (command_number < 0 || command_number >= LUM_AUTO_COMMAND_COUNT || definition == nullptr) return nullptr;
  if (!m_commands[command_number]) m_commands[command_number] = std::make_unique<ATCL_CMD>(definition);
  return m_commands[command_number].get();
}

// ---- package ---------------------------------------------------------------------

const ATCL_CALLBACK lum_lum_tcl_callbacks[LUM_AUTO_COMMAND_COUNT + 1] = {
#define LUM_AUTO_CALLBACK_ENTRY(number, name, stem, STEM, handler) {handler, #name, nullptr},
    LUM_AUTO_COMMANDS(LUM_AUTO_CALLBACK_ENTRY)
#undef LUM_AUTO_CALLBACK_ENTRY
    {nullptr, nullptr, nullptr},
};

namespace {

// Package set-up shared by Lum_Init and lum_lum_register_tcl; returns
// Tcl_PkgProvide's result, or TCL_ERROR without an interpreter.
int lum_setup_package() {
  atcl_begin_package_setup("::vexa::lum", "1.0");
  atcl_register_callbacks(lum_lum_tcl_callbacks);
  atcl_end_package_setup();
  Tcl_Interp* interp = atcl_get_interpreter();
  if (interp == nullptr) {
    msg_internal_error("A Tcl interpreter must exist before registering ::vexa::lum!", MODULE, __LINE__);
    return TCL_ERROR;
  }
  // The engine's message posts and internal errors arrive as these commands.
  msg_register_tcl_commands(interp);
  return Tcl_PkgProvide(interp, "::vexa::lum", "1.0");
}

// Registers the static package when the library is loaded, so that
// "load {} Lum" works in any interpreter of the process.
struct LUM_AUTO_LUM_TCL_INIT {
  LUM_AUTO_LUM_TCL_INIT() {
    if (!atcl_is_dynamically_loading()) Tcl_StaticPackage(nullptr, "Lum", Lum_Init, nullptr);
  }
} lum_auto_lum_tcl_init;

}  // namespace

int Lum_Init(Tcl_Interp* /*interp*/) {
  lum_setup_package();
  return 0;
}

int lum_lum_register_tcl() { return lum_setup_package(); }
