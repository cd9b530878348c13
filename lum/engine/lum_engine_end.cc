#include "engine/lum_engine_end.hh"

#include <tcl.h>

#include <algorithm>
#include <cstring>
#include <set>

std::string lum_engine_end_reason(const LUM_ENGINE_END& end) {
  if (end.signal_number > 0) {
    std::string reason = "it was ended by signal " + std::to_string(end.signal_number);
    if (const char* name = strsignal(end.signal_number)) reason += std::string(" (") + name + ")";
    return reason;
  }
  if (end.exit_code >= 0) return "it exited with status " + std::to_string(end.exit_code);
  return "it ended";
}

std::vector<std::string> lum_last_lines(const std::string& text, size_t count) {
  std::vector<std::string> lines;
  size_t end = text.size();
  while (end > 0 && lines.size() < count) {
    size_t start = text.rfind('\n', end - 1);
    start = start == std::string::npos ? 0 : start + 1;
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.find_first_not_of(" \t") != std::string::npos) lines.push_back(std::move(line));
    end = start == 0 ? 0 : start - 1;
  }
  std::reverse(lines.begin(), lines.end());
  return lines;
}

namespace {

// The engine's commands that change constraints: OpenSTA's SDC commands that
// it applies (the engine records the same set for write_sdc), its
// create_generated_clock and its own remove_clock.
const std::set<std::string>& constraint_command_names() {
  static const std::set<std::string> names = {
      "create_clock", "create_generated_clock", "remove_clock", "set_clock_latency",
      "set_clock_uncertainty", "set_input_delay", "set_output_delay", "set_false_path",
      "set_multicycle_path", "set_max_delay", "set_min_delay", "set_clock_groups",
      "set_propagated_clock", "set_load", "set_input_transition", "set_driving_cell",
      "set_case_analysis", "set_disable_timing", "set_clock_transition", "delete_clock",
      "delete_generated_clock", "unset_clock_latency", "unset_clock_uncertainty",
      "unset_propagated_clock", "set_max_time_borrow", "set_timing_derate", "set_drive",
      "set_max_transition", "set_max_fanout", "set_max_capacitance", "set_min_capacitance",
      "group_path", "set_logic_zero", "set_logic_one", "set_logic_dc", "unset_case_analysis",
      "set_min_pulse_width", "set_ideal_network", "unset_path_exceptions", "unset_clock_groups",
      "set_wire_load_mode", "set_wire_load_model", "set_operating_conditions", "set_sense",
      "set_data_check", "unset_data_check", "set_disable_inferred_clock_gating",
      "unset_disable_inferred_clock_gating", "set_resistance", "set_max_area",
      "set_port_fanout_number", "set_clock_gating_check", "unset_input_delay",
      "unset_output_delay", "unset_clock_transition", "unset_disable_timing",
      "unset_generated_clock",
  };
  return names;
}

}  // namespace

std::vector<std::string> lum_constraint_commands(const std::string& line) {
  std::vector<std::string> found;
  const char* next = line.data();
  const char* end = line.data() + line.size();
  while (next < end) {
    Tcl_Parse parse;
    if (Tcl_ParseCommand(nullptr, next, static_cast<int>(end - next), 0, &parse) != TCL_OK) return {};
    if (parse.numWords > 0 && parse.tokenPtr->type == TCL_TOKEN_SIMPLE_WORD) {
      const Tcl_Token& name = parse.tokenPtr[1];
      if (constraint_command_names().count(std::string(name.start, static_cast<size_t>(name.size)))) {
        std::string command(parse.commandStart, static_cast<size_t>(parse.commandSize));
        // Without its terminator and trailing blanks.
        while (!command.empty() && std::strchr(" \t\r\n;", command.back())) command.pop_back();
        found.push_back(std::move(command));
      }
    }
    const char* after = parse.commandStart + parse.commandSize;
    Tcl_FreeParse(&parse);
    if (after <= next) break;
    next = after;
  }
  return found;
}

std::string lum_session_sdc_text(const std::vector<std::string>& constraints) {
  std::string text =
      "# Constraint commands sent to the Chronel Timing Analyzer in this session,\n"
      "# saved after the analyzer stopped. They are in the order they were sent;\n"
      "# a command the analyzer refused is here too.\n";
  for (const std::string& command : constraints) text += command + "\n";
  return text;
}
