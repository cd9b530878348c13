#include "report/lum_chart_commands.hh"

#include <tcl.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

std::string lum_command_from_words(const std::vector<std::string>& words) {
  std::vector<const char*> argv;
  argv.reserve(words.size());
  for (const std::string& word : words) argv.push_back(word.c_str());
  char* merged = Tcl_Merge(static_cast<int>(argv.size()), argv.data());
  std::string line = merged ? merged : "";
  Tcl_Free(merged);
  return line;
}

std::string lum_command_number(double value) {
  if (!std::isfinite(value)) return "0";
  char text[64];
  // Times come from bin edges stored to a fixed number of decimals; nine
  // decimals keep them exact without writing binary noise.
  std::snprintf(text, sizeof text, "%.9f", value);
  std::string number = text;
  while (!number.empty() && number.back() == '0') number.pop_back();
  if (!number.empty() && number.back() == '.') number.pop_back();
  if (number == "-0" || number.empty()) number = "0";
  return number;
}

namespace {

std::vector<std::string> split_command(const std::string& line) {
  std::vector<std::string> words;
  int count = 0;
  const char** elements = nullptr;
  if (Tcl_SplitList(nullptr, line.c_str(), &count, &elements) != TCL_OK) return words;
  for (int i = 0; i < count; ++i) words.emplace_back(elements[i]);
  Tcl_Free(reinterpret_cast<char*>(elements));
  return words;
}

}  // namespace

std::string lum_slack_range_command(const std::string& histogram_command, const LUM_SLACK_RANGE& range,
                                    std::string* why) {
  auto refuse = [why](const std::string& reason) {
    if (why) *why = reason;
    return std::string();
  };
  if (range.count <= 0) return refuse("no end point has its slack in this range");
  const std::vector<std::string> words = split_command(histogram_command);
  if (words.empty() || words[0] != "create_slack_histogram")
    return refuse("the histogram was not made by create_slack_histogram");
  std::string clock;
  std::string analysis = "-setup";
  for (size_t i = 1; i < words.size(); ++i) {
    if (words[i] == "-clock_name" && i + 1 < words.size())
      clock = words[++i];
    else if (words[i] == "-hold" || words[i] == "-recovery" || words[i] == "-removal" || words[i] == "-setup")
      analysis = words[i];
    else if (words[i] == "-num_bins" || words[i] == "-min_slack" || words[i] == "-max_slack" ||
             words[i] == "-panel_name")
      ++i;  // an option with a value this command does not need
  }
  if (clock.empty()) return refuse("the histogram's command names no clock");

  std::vector<std::string> command = {"report_timing", "-to_clock", clock, analysis};
  const bool has_from = std::isfinite(range.from);
  const bool has_to = std::isfinite(range.to);
  if (has_from) {
    command.push_back("-min_slack");
    command.push_back(lum_command_number(range.from));
  }
  if (has_to) {
    // The last bin holds its upper edge: ask for slacks below the next
    // representable step above it.
    const double upper = range.to_inclusive ? range.to + std::max(1e-9, std::fabs(range.to) * 1e-9) : range.to;
    command.push_back("-less_than_slack");
    command.push_back(lum_command_number(upper));
  }
  command.push_back("-npaths");
  command.push_back(std::to_string(range.count));
  std::string panel = "Slack " + (has_from ? lum_command_number(range.from) : std::string("-inf")) + " to " +
                      (has_to ? lum_command_number(range.to) : std::string("inf"));
  if (!range.unit.empty()) panel += " " + range.unit;
  panel += " (" + clock + ")";
  command.push_back("-panel_name");
  command.push_back(panel);
  return lum_command_from_words(command);
}
