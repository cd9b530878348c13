#include "sta_paths.hh"

#include <cmath>
#include <regex>
#include <sstream>

namespace chronel::truth {

std::string StaPath::clock_of(const std::vector<StaRow>& rows) {
  static const std::regex edge(R"(^clock (\S+) \((rise|fall) edge\)$)");
  std::smatch m;
  if (!rows.empty() && std::regex_match(rows.front().text, m, edge)) return m[1];
  return {};
}

std::string StaPath::endpoint_pin() const {
  for (auto row = arrival.rbegin(); row != arrival.rend(); ++row)
    if (!row->rise_fall.empty()) return row->text.substr(0, row->text.find(' '));
  return {};
}

bool is_silent_row(const StaRow& row) {
  return row.text == "clock reconvergence pessimism" && std::fabs(row.incr) < 5e-4;
}

std::vector<StaPath> parse_full_paths(const std::string& output, std::vector<std::string>& problems) {
  static const std::regex start(R"(^Startpoint: (\S+))");
  static const std::regex group(R"(^Path Group: (\S+))");
  static const std::regex net(R"(^\s*(\d+)\s+\S.* \(net\)$)");
  // "[delay] time [^|v] description"
  static const std::regex row(R"(^\s*(-?\d+\.\d+)?\s+(-?\d+\.\d+) ([\^v ]) (\S.*)$)");
  static const std::regex slack(R"(^\s*(-?\d+\.\d+)\s+slack \()");

  std::vector<StaPath> paths;
  enum class Part { none, heading, arrival, required, done } part = Part::none;
  bool wire = false;
  std::istringstream in(output);
  std::string line;
  std::smatch m;
  while (std::getline(in, line)) {
    if (std::regex_search(line, m, start)) {
      paths.emplace_back();
      paths.back().startpoint = m[1];
      part = Part::none;
      continue;
    }
    if (paths.empty()) continue;
    StaPath& path = paths.back();
    if (std::regex_search(line, m, group)) {
      path.group = m[1];
    } else if (part == Part::none && line.find("Time   Description") != std::string::npos) {
      part = Part::heading;
    } else if (part == Part::heading && line.rfind("-----", 0) == 0) {
      part = Part::arrival;
    } else if (part == Part::arrival || part == Part::required) {
      std::vector<StaRow>& rows = part == Part::arrival ? path.arrival : path.required;
      if (line.empty()) continue;
      if (std::regex_match(line, m, net)) {
        if (rows.empty()) problems.push_back("net line before any pin: " + line);
        else rows.back().fanout = std::stoi(m[1]);
        wire = true;
        continue;
      }
      if (!std::regex_match(line, m, row)) {
        problems.push_back("unreadable path line: " + line);
        continue;
      }
      StaRow r;
      r.total = std::stod(m[2]);
      double previous = rows.empty() ? 0.0 : rows.back().total;
      r.incr = m[1].matched ? std::stod(m[1]) : r.total - previous;
      r.rise_fall = m[3] == "^" ? "R" : m[3] == "v" ? "F" : "";
      r.text = m[4];
      r.after_wire = wire && !r.rise_fall.empty();
      wire = false;
      rows.push_back(r);
      if (r.text == "data arrival time") part = Part::required;
      if (r.text == "data required time") part = Part::done;
    } else if (part == Part::done && std::regex_search(line, m, slack)) {
      path.slack = std::stod(m[1]);
      part = Part::none;
    }
  }
  for (const StaPath& path : paths)
    if (path.arrival.empty() || path.required.empty())
      problems.push_back("path from " + path.startpoint + " has no arrival or required half");
  return paths;
}

}  // namespace chronel::truth
