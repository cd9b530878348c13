#include "engine/lum_completion.hh"

#include <algorithm>
#include <set>
#include <sstream>

namespace {

bool separates(char c) { return c == ' ' || c == '\t' || c == ';' || c == '[' || c == '{' || c == '"' || c == '\n'; }
bool ends_command(char c) { return c == ';' || c == '[' || c == '\n'; }

void add_matching(std::set<std::string>* out, const std::vector<std::string>& words, const std::string& prefix) {
  for (const std::string& w : words)
    if (w.compare(0, prefix.size(), prefix) == 0) out->insert(w);
}

}  // namespace

const char* const LUM_COMPLETION_QUERY =
    "foreach lum_n [lsort [array names ::sta::cmd_args]] {puts \"C $lum_n [regexp -all -inline -- "
    "{-[a-z][a-z0-9_]*} $::sta::cmd_args($lum_n)]\"}; "
    "catch {foreach lum_o [all_clocks] {puts \"O [get_name $lum_o]\"}}; "
    "catch {foreach lum_o [get_ports *] {puts \"O [get_full_name $lum_o]\"}}; unset -nocomplain lum_n lum_o";

std::string lum_common_prefix(const std::vector<std::string>& words) {
  if (words.empty()) return std::string();
  std::string prefix = words.front();
  for (const std::string& w : words) {
    size_t n = 0;
    while (n < prefix.size() && n < w.size() && prefix[n] == w[n]) ++n;
    prefix.resize(n);
  }
  return prefix;
}

LUM_COMPLETION lum_complete(const std::string& line, int cursor, const LUM_COMPLETION_SOURCE& source) {
  LUM_COMPLETION result;
  cursor = std::clamp(cursor, 0, static_cast<int>(line.size()));
  int start = cursor;
  while (start > 0 && !separates(line[start - 1])) --start;
  int end = cursor;
  while (end < static_cast<int>(line.size()) && !separates(line[end])) ++end;
  result.start = start;
  result.end = end;
  result.word = line.substr(start, cursor - start);

  // The command this word belongs to: back to the nearest ';', '[' or line start.
  int command_start = start;
  while (command_start > 0 && !ends_command(line[command_start - 1])) --command_start;
  std::istringstream before(line.substr(command_start, start - command_start));
  std::string command;
  before >> command;

  std::set<std::string> found;
  if (command.empty()) {
    for (const auto& [name, options] : source.commands)
      if (name.compare(0, result.word.size(), result.word) == 0) found.insert(name);
  } else if (!result.word.empty() && result.word[0] == '-') {
    auto it = source.commands.find(command);
    if (it != source.commands.end()) add_matching(&found, it->second, result.word);
  } else {
    add_matching(&found, source.objects, result.word);
  }
  result.candidates.assign(found.begin(), found.end());
  result.common_prefix = lum_common_prefix(result.candidates);
  return result;
}

LUM_COMPLETION_SOURCE lum_read_completion_lines(const std::vector<std::string>& lines) {
  LUM_COMPLETION_SOURCE source;
  for (const std::string& line : lines) {
    std::istringstream in(line);
    std::string kind, name;
    if (!(in >> kind >> name)) continue;
    if (kind == "C") {
      std::vector<std::string>& options = source.commands[name];
      for (std::string option; in >> option;) options.push_back(option);
    } else if (kind == "O") {
      source.objects.push_back(name);
    }
  }
  return source;
}
