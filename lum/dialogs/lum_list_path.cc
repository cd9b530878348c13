#include "dialogs/lum_list_path.hh"

#include <cstdlib>
#include <cstring>

#include "dialogs/lum_report_dlg_fields.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"

const char* const LUM_LIST_PATH_FAILED = "LUM_LIST_PATH_FAILED";

namespace {

// Start and end points of the kinds, as engine collection commands.
// A clock port among the inputs starts no data path, so it may stay in.
const char* const INPUTS = "[all_inputs]";
const char* const OUTPUTS = "[all_outputs]";
const char* const REGISTER_CLOCKS = "[all_registers -clock_pins]";
const char* const REGISTER_DATA = "[all_registers -data_pins]";

struct KIND_PLAN {
  const char* analysis;
  const char* from;  // null: anywhere
  const char* to;
};

KIND_PLAN plan_of(int kind) {
  switch (kind) {
    case LUM_PATH_TSU: return {"-setup", INPUTS, REGISTER_DATA};
    case LUM_PATH_TH: return {"-hold", INPUTS, REGISTER_DATA};
    case LUM_PATH_TCO: return {"-setup", REGISTER_CLOCKS, OUTPUTS};
    case LUM_PATH_TPD: return {"-setup", INPUTS, OUTPUTS};
    case LUM_PATH_MIN_TCO: return {"-hold", REGISTER_CLOCKS, OUTPUTS};
    case LUM_PATH_MIN_TPD: return {"-hold", INPUTS, OUTPUTS};
    case LUM_PATH_CLOCK_SETUP: return {"-setup", REGISTER_CLOCKS, REGISTER_DATA};
    case LUM_PATH_CLOCK_HOLD: return {"-hold", REGISTER_CLOCKS, REGISTER_DATA};
    case LUM_PATH_CLOCK_HOLD_IO: return {"-hold", nullptr, nullptr};
    default: return {"-setup", nullptr, nullptr};
  }
}

bool is_count(const std::string& text) {
  if (text.empty() || text.size() > 9) return false;
  for (char c : text)
    if (c < '0' || c > '9') return false;
  return std::atoi(text.c_str()) > 0;
}

// A double-quoted Tcl word (the file name).
std::string quoted_word(const std::string& text) {
  std::string word = "\"";
  for (char c : text) {
    if (std::strchr("$[]\"\\", c) != nullptr) word += '\\';
    word += c;
  }
  return word + "\"";
}

int fail(Tcl_Interp* interp, const std::string& message) {
  Tcl_SetObjResult(interp, Tcl_NewStringObj(message.c_str(), -1));
  return TCL_ERROR;
}

int list_path_command(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  std::vector<std::string> words(argv + 1, argv + argc);
  LUM_LIST_PATH_REQUEST request;
  std::string error;
  if (!lum_parse_list_path(words, &request, &error)) return fail(interp, error);
  LUM_FRAME_IFACE* frame = lum_get_frame();
  LUM_CONSOLE_CTRL* console = frame != nullptr ? frame->get_console() : nullptr;
  if (console == nullptr || !console->is_kro_running())
    return fail(interp, "list_path: the timing engine is not running.");
  if (frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) != '1')
    return fail(interp, "list_path: no project is open.");
  if (console->is_busy()) return fail(interp, "list_path: the timing engine is busy; try again when it is idle.");
  long total = 0;
  for (const std::string& script : lum_list_path_scripts(request)) {
    std::vector<std::string> lines;
    console->run_command(script, &lines);
    if (!lines.empty() && lines.front() == LUM_LIST_PATH_FAILED) {
      std::string message = "list_path:";
      for (size_t i = 1; i < lines.size(); i++) message += " " + lines[i];
      return fail(interp, message);
    }
    total += lum_count_listed_paths(lines);
  }
  Tcl_SetObjResult(interp, Tcl_NewLongObj(total));
  return TCL_OK;
}

}  // namespace

bool lum_parse_list_path(const std::vector<std::string>& words, LUM_LIST_PATH_REQUEST* request, std::string* error) {
  struct VALUE_OPTION {
    const char* name;
    std::string* field;
  } values[] = {{"-npaths", &request->npaths},
                {"-from", &request->from},
                {"-to", &request->to},
                {"-clock_filter", &request->clock_filter},
                {"-file", &request->file}};
  bool ticked[LUM_PATH_KIND_COUNT] = {};
  for (size_t i = 0; i < words.size(); i++) {
    const std::string& word = words[i];
    bool known = false;
    for (VALUE_OPTION& option : values) {
      if (word != option.name) continue;
      if (i + 1 >= words.size()) {
        *error = "list_path: option " + word + " needs a value.";
        return false;
      }
      *option.field = words[++i];
      known = true;
    }
    for (int kind = 0; kind < LUM_PATH_KIND_COUNT && !known; kind++)
      if (word == std::string("-") + lum_path_kind_name(kind)) ticked[kind] = known = true;
    if (!known) {
      *error = "list_path: unknown option or argument \"" + word +
               "\"; should be \"list_path ?-npaths N? ?-from names? ?-to names? ?-clock_filter clock? ?-file F? "
               "?-tsu? ?-th? ?-tco? ?-tpd? ?-min_tco? ?-min_tpd? ?-clock_setup? ?-clock_hold? "
               "?-clock_setup_io? ?-clock_hold_io?\"";
      return false;
    }
  }
  if (!is_count(request->npaths)) {
    *error = "list_path: -npaths needs a positive integer, not \"" + request->npaths + "\".";
    return false;
  }
  request->kinds.clear();
  for (int kind = 0; kind < LUM_PATH_KIND_COUNT; kind++)
    if (ticked[kind]) request->kinds.push_back(kind);
  return true;
}

std::vector<std::string> lum_list_path_scripts(const LUM_LIST_PATH_REQUEST& request) {
  std::vector<int> kinds = request.kinds;
  if (kinds.empty()) kinds.push_back(LUM_PATH_CLOCK_SETUP_IO);
  std::vector<std::string> scripts;
  for (int kind : kinds) {
    KIND_PLAN plan = plan_of(kind);
    // The start and end points are gathered first: a design without (say)
    // output ports has no paths of a kind that ends there, which is no error.
    std::string script = "if {[catch {set from {}; set to {}; set any 1";
    // The first kind empties the file; every kind appends its report.
    if (!request.file.empty() && scripts.empty()) script += "; close [open " + quoted_word(request.file) + " w]";
    std::string from = !request.from.empty() ? lum_names_word(request.from) : plan.from ? plan.from : "";
    std::string to = !request.to.empty() ? lum_names_word(request.to) : plan.to ? plan.to : "";
    if (!from.empty()) script += "; set from " + from + "; set any [llength $from]";
    if (!to.empty()) script += "; if {$any} {set to " + to + "; set any [llength $to]}";
    script += "; if {$any} {report_timing " + std::string(plan.analysis);
    if (!from.empty()) script += " -from $from";
    if (!to.empty()) script += " -to $to";
    if (!request.clock_filter.empty()) script += " -to_clock " + lum_names_word(request.clock_filter);
    script += " -npaths " + request.npaths + " -stdout";
    if (!request.file.empty()) script += " -file " + quoted_word(request.file) + " -append";
    script += "}} message]} {puts " + std::string(LUM_LIST_PATH_FAILED) + "; puts $message}";
    scripts.push_back(script);
  }
  return scripts;
}

int lum_count_listed_paths(const std::vector<std::string>& lines) {
  // The summary table comes first: a title, its underline, the column
  // titles, a rule of dashes, then one row per path up to a blank line.
  bool in_rows = false;
  int rows = 0;
  for (const std::string& line : lines) {
    if (!in_rows) {
      in_rows = line.size() > 1 && line.find_first_not_of('-') == std::string::npos;
      continue;
    }
    if (line.empty() || line == "{}" || line == "No paths.") break;
    rows++;
  }
  return rows;
}

void lum_register_list_path(Tcl_Interp* interp) {
  Tcl_CreateCommand(interp, "list_path", list_path_command, nullptr, nullptr);
}
