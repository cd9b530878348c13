// Tab completion in the console's edit line, as plain functions: the word
// under the cursor, what it may become, and the part all candidates share.
// The first word of a command completes to engine command names, a word that
// starts with "-" to that command's options, any other word to object names
// (clocks, ports) the engine knows.
#pragma once

#include <map>
#include <string>
#include <vector>

struct LUM_COMPLETION_SOURCE {
  std::map<std::string, std::vector<std::string>> commands;  // command name -> its options
  std::vector<std::string> objects;                          // clock and port names
};

struct LUM_COMPLETION {
  int start = 0;  // the word replaced is [start, end) of the line
  int end = 0;
  std::string word;
  std::vector<std::string> candidates;  // sorted, no repeats
  std::string common_prefix;            // of the candidates (at least the word when there are any)
};

LUM_COMPLETION lum_complete(const std::string& line, int cursor, const LUM_COMPLETION_SOURCE& source);
std::string lum_common_prefix(const std::vector<std::string>& words);

// The hidden engine query that lists commands with their options ("C name -a -b")
// and objects ("O name"), and the reading of its answer lines.
extern const char* const LUM_COMPLETION_QUERY;
LUM_COMPLETION_SOURCE lum_read_completion_lines(const std::vector<std::string>& lines);
