#include "report/lum_report_rules.hh"

#include "platform/atcl.hh"

#include <algorithm>
#include <cstring>
#include <sstream>
#include <vector>

std::string lum_panel_name_from_rdb_path(const std::string& rdb_path) {
  const size_t separator = rdb_path.find("||");
  if (separator == std::string::npos) return rdb_path.empty() ? rdb_path : rdb_path.substr(1);
  return rdb_path.substr(separator + 2);
}

std::string lum_delete_panel_command(const std::string& panel_name) {
  return "delete_timing_report_panel -name \"" + atcl_transform_string(panel_name) + "\"";
}

std::string lum_export_file_name(const std::string& revision, const std::string& label) {
  std::string name = revision + "-" + label + ".rpt";
  for (char& c : name) {
    if (c != '\0' && std::strchr(":\\/\"|><*?&", c)) c = '-';
  }
  return name;
}

LUM_SPLIT_POSITIONS lum_split_positions(LUM_SPLIT_ENUM mode, int width, int height) {
  LUM_SPLIT_POSITIONS positions;
  if (mode == LUM_SPLIT_HORIZONTAL || mode == LUM_SPLIT_FOUR_WAY) positions.row = height / 2;
  if (mode == LUM_SPLIT_VERTICAL || mode == LUM_SPLIT_FOUR_WAY) positions.column = width / 2;
  // A control too small to split still splits: a position of 0 would mean
  // "not split", so the smallest real position is one pixel.
  if ((mode == LUM_SPLIT_HORIZONTAL || mode == LUM_SPLIT_FOUR_WAY) && positions.row < 1) positions.row = 1;
  if ((mode == LUM_SPLIT_VERTICAL || mode == LUM_SPLIT_FOUR_WAY) && positions.column < 1) positions.column = 1;
  return positions;
}

int lum_split_pane_count(const LUM_SPLIT_POSITIONS& positions) {
  return (positions.row > 0 ? 2 : 1) * (positions.column > 0 ? 2 : 1);
}

std::string lum_empty_table_reason(const std::string& panel_command) {
  std::vector<std::string> words;
  {
    std::istringstream in(panel_command);
    for (std::string word; in >> word;) words.push_back(word);
  }
  auto has = [&words](const char* option) { return std::find(words.begin(), words.end(), option) != words.end(); };
  const std::string command = words.empty() ? std::string() : words.front();
  if (command == "report_ucp") return "All start and end points are constrained.";
  if (command == "report_sdc") return "No constraints have been entered.";
  if (command == "report_clocks") return "No clocks are defined.";
  const char* analysis = has("-hold")       ? "hold"
                         : has("-recovery") ? "recovery"
                         : has("-removal")  ? "removal"
                                            : "setup";
  if (command == "create_timing_summary" || command == "report_timing" || command == "report_clock_transfers")
    return std::string("No ") + analysis + " paths were found.";
  return "The table has no rows.";
}
