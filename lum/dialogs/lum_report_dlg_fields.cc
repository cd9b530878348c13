#include "dialogs/lum_report_dlg_fields.hh"

#include <cstring>

#include "dialogs/lum_tcl_word.hh"
#include "platform/atcl.hh"

namespace {

bool holds_tcl_special(const std::string& text) {
  for (char c : text)
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || std::strchr("$[]{}\"\\;", c) != nullptr) return true;
  return false;
}

std::vector<std::string> split_blanks(const std::string& text) {
  std::vector<std::string> words;
  std::string word;
  for (char c : text) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
      if (!word.empty()) words.push_back(word);
      word.clear();
    } else {
      word += c;
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

// The panel name in double quotes; characters special inside them are escaped.
std::string quoted(const std::string& text) { return "\"" + atcl_transform_string(text) + "\""; }

}  // namespace

std::string lum_typed_word(const std::string& text) {
  if (!holds_tcl_special(text)) return text;
  return lum_tcl_word(text);
}

std::string lum_names_word(const std::string& text) {
  if (!holds_tcl_special(text)) return text;
  if (text.size() > 1 && text.front() == '[' && text.back() == ']') return text;
  std::vector<std::string> names = split_blanks(text);
  if (names.empty()) return lum_tcl_word(text);
  return lum_tcl_word(lum_tcl_list(names));
}

// ---- output ----------------------------------------------------------------------

void LUM_REPORT_OUTPUT::append_to(std::string& command) const {
  if (to_panel && !panel_name.empty()) command += " -panel_name " + quoted(panel_name);
  if (to_file) {
    if (!file_name.empty()) command += " -file " + quoted(file_name);
    if (file_mode == LUM_FILE_MODE_APPEND) command += " -append";
  }
  if (to_console && (to_panel || to_file)) command += " -stdout";
}

void LUM_REPORT_OUTPUT::apply_output_rule() {
  if (!to_panel && !to_file) to_console = true;
}

// ---- report timing ---------------------------------------------------------------

std::string LUM_REPORT_TIMING_FIELDS::compose() const {
  const LUM_REPORT_TIMING_FIELDS& f = *this;
  std::string command = "report_timing";
  if (!f.from_clock.empty()) command += " -from_clock " + lum_names_word(f.from_clock);
  if (!f.to_clock.empty()) command += " -to_clock " + lum_names_word(f.to_clock);
  if (!f.from.empty()) command += " -from " + lum_names_word(f.from);
  if (!f.thru.empty()) command += " -thru " + lum_names_word(f.thru);
  if (!f.to.empty()) command += " -to " + lum_names_word(f.to);
  if (f.setup) command += " -setup";
  if (f.hold) command += " -hold";
  if (f.recovery) command += " -recovery";
  if (f.removal) command += " -removal";
  // Written even when empty: the engine then refuses the missing count.
  command += " -npaths " + lum_typed_word(f.npaths);
  if (!f.less_than_slack.empty()) command += " -less_than_slack " + lum_typed_word(f.less_than_slack);
  if (f.detail_level == LUM_DETAIL_LEVEL_SUMMARY) command += " -summary";
  f.output.append_to(command);
  return command;
}

void LUM_REPORT_TIMING_FIELDS::detail_level_changed() {
  static const std::string ending = " Summary";
  std::string& name = output.panel_name;
  if (detail_level != LUM_DETAIL_LEVEL_FULL_PATH) {
    if (name.find(ending) == std::string::npos) name += ending;
  } else if (name.size() >= ending.size() && name.compare(name.size() - ending.size(), ending.size(), ending) == 0) {
    name.erase(name.size() - ending.size());
  }
}

// ---- minimum pulse width ---------------------------------------------------------------

std::string LUM_MIN_PULSE_WIDTH_FIELDS::compose() const {
  std::string command = "report_min_pulse_width -nworst " + lum_typed_word(nworst);
  output.append_to(command);
  if (!targets.empty()) command += " " + lum_names_word(targets);
  return command;
}

// ---- slack histogram -----------------------------------------------------------------

std::string LUM_SLACK_HISTOGRAM_FIELDS::compose() const {
  const LUM_SLACK_HISTOGRAM_FIELDS& f = *this;
  std::string command = "create_slack_histogram";
  // The engine takes one clock here, not a list.
  if (!f.clock_name.empty()) command += " -clock_name " + lum_typed_word(f.clock_name);
  if (!f.max_slack.empty()) command += " -max_slack " + lum_typed_word(f.max_slack);
  if (!f.min_slack.empty()) command += " -min_slack " + lum_typed_word(f.min_slack);
  if (!f.num_bins.empty()) command += " -num_bins " + lum_typed_word(f.num_bins);
  if (!f.panel_name.empty())
    command += " -panel_name " + (holds_tcl_special(f.panel_name) ? quoted(f.panel_name) : f.panel_name);
  return command;
}

void LUM_SLACK_HISTOGRAM_FIELDS::clock_changed() {
  panel_name = "Slack Histogram (" + clock_name + ")";
}

// ---- net timing ------------------------------------------------------------------------

std::string LUM_NET_TIMING_FIELDS::compose() const {
  const LUM_NET_TIMING_FIELDS& f = *this;
  std::string command = "report_net_timing";
  if (f.mode == LUM_NET_TIMING_BY_FANOUT) {
    if (!f.nworst_fanout.empty()) command += " -nworst_fanout " + lum_typed_word(f.nworst_fanout);
  } else if (!f.nworst_delay.empty()) {
    command += " -nworst_delay " + lum_typed_word(f.nworst_delay);
  }
  command += " " + lum_names_word(f.nets);
  return command;
}

// ---- create timing netlist ----------------------------------------------------------------

std::string LUM_TIMING_NETLIST_FIELDS::compose() const {
  const LUM_TIMING_NETLIST_FIELDS& f = *this;
  std::string command = "create_timing_netlist";
  if (f.netlist_kind == LUM_NETLIST_POST_MAP) command += " -post_map";
  if (f.delay_model == LUM_DELAY_MODEL_FAST)
    command += " -fast_model";
  else if (!f.speed_grade.empty())
    command += " -speed " + lum_typed_word(f.speed_grade) + " ";
  if (f.risefall) command += " -risefall";
  return command;
}

// ---- list paths ------------------------------------------------------------------------------

const char* lum_path_kind_name(int kind) {
  static const char* const names[LUM_PATH_KIND_COUNT] = {"tsu",     "th",          "tco",         "tpd",
                                                         "min_tco", "min_tpd",     "clock_setup", "clock_hold",
                                                         "clock_setup_io", "clock_hold_io"};
  return kind >= 0 && kind < LUM_PATH_KIND_COUNT ? names[kind] : "";
}

std::string LUM_LIST_PATHS_FIELDS::compose() const {
  const LUM_LIST_PATHS_FIELDS& f = *this;
  std::string command = "list_path -npaths " + lum_typed_word(f.npaths);
  if (!f.from.empty()) command += " -from " + atcl_transform_string(f.from);
  if (!f.to.empty()) command += " -to " + atcl_transform_string(f.to);
  if (!f.clock_filter.empty()) command += " -clock_filter " + atcl_transform_string(f.clock_filter);
  if (!f.file_name.empty()) command += " -file \"" + atcl_transform_string(f.file_name) + "\"";
  for (int kind = 0; kind < LUM_PATH_KIND_COUNT; kind++)
    if (f.kinds[kind]) command += std::string(" -") + lum_path_kind_name(kind);
  return command;
}
