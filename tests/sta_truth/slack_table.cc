#include "slack_table.hh"

#include <cmath>
#include <cstdio>
#include <regex>
#include <sstream>

namespace chronel::truth {

const char* analysis_name(Analysis a) { return a == Analysis::setup ? "setup" : "hold"; }

SlackTable parse_endpoint_reports(const std::string& output, std::vector<std::string>& problems) {
  static const std::regex heading(R"(^\s*(max_delay/setup|min_delay/hold) group (\S+)\s*$)");
  // "<endpoint> (<cell>)  <required>  <arrival>  <slack> (MET|VIOLATED)"; the
  // slack is the last number before the verdict.
  static const std::regex row(R"(\s(-?[0-9]+\.[0-9]+)\s+\((MET|VIOLATED)\)\s*$)");

  SlackTable table;
  std::optional<std::pair<Analysis, std::string>> open_group;
  auto close_group = [&] {
    if (open_group)
      problems.push_back(std::string("no slack row under the ") +
                         analysis_name(open_group->first) + " heading of group " +
                         open_group->second);
    open_group.reset();
  };

  std::istringstream in(output);
  std::string line;
  std::smatch m;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (std::regex_match(line, m, heading)) {
      close_group();
      Analysis a = m[1] == "max_delay/setup" ? Analysis::setup : Analysis::hold;
      open_group = std::make_pair(a, m[2].str());
      if (table.count(*open_group))
        problems.push_back(std::string("group ") + m[2].str() + " appears twice for " +
                           analysis_name(a));
    } else if (open_group && std::regex_search(line, m, row)) {
      table[*open_group] = std::stod(m[1].str());
      open_group.reset();
    }
  }
  close_group();
  return table;
}

std::vector<std::string> compare_slack_tables(const SlackTable& reference, const SlackTable& tested,
                                              double tolerance_ns) {
  std::vector<std::string> differences;
  auto label = [](const std::pair<Analysis, std::string>& key) {
    return key.second + " " + analysis_name(key.first);
  };
  for (const auto& [key, want] : reference) {
    auto it = tested.find(key);
    char text[256];
    if (it == tested.end()) {
      std::snprintf(text, sizeof text, "%s: sta reports %.4f ns, vexa_sta reports no such group",
                    label(key).c_str(), want);
      differences.push_back(text);
    } else if (!(std::fabs(it->second - want) < tolerance_ns)) {
      std::snprintf(text, sizeof text, "%s: sta reports %.4f ns, vexa_sta %.4f ns (%.1f ps apart)",
                    label(key).c_str(), want, it->second, std::fabs(it->second - want) * 1000.0);
      differences.push_back(text);
    }
  }
  for (const auto& [key, got] : tested) {
    if (!reference.count(key)) {
      char text[256];
      std::snprintf(text, sizeof text, "%s: vexa_sta reports %.4f ns, sta has no such group",
                    label(key).c_str(), got);
      differences.push_back(text);
    }
  }
  return differences;
}

}  // namespace chronel::truth
