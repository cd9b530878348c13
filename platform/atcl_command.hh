// Building Tcl command lines from words.
//
// Every command that the front end composes from names it did not choose
// (clock, port, panel and file names, values typed into dialogs, cells of a
// report table) is built here, word by word, with Tcl's own list quoting: a
// name such as `a} [exec touch x] {b` or `clk{` arrives at the engine as one
// literal word, and no name can open a brace that swallows later lines.
//
//   ATCL_COMMAND command("report_timing");
//   command.option("-to_clock", clock).flag("-setup").option("-npaths", 10);
//   console->run_command(command.str());
//
// or, for a short one, atcl_command({"delete_timing_report_panel", "-name", panel}).
//
// The line never holds a line break: a word with one is written with
// backslash sequences (\n) instead of braces, so the engine reads the whole
// command from one line. A NUL byte in a word is passed as Tcl's own
// two-byte form of it, which Tcl reads back as NUL.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// `text` as one Tcl word that reads back as exactly `text` and holds no line
// break. `first` is for the first word of a command, where a leading "#"
// would start a comment and is quoted.
std::string atcl_word(std::string_view text, bool first = false);

// The words joined into one command line, each quoted by atcl_word.
std::string atcl_command(std::initializer_list<std::string_view> words);

// The elements as one Tcl list (the value of a single word such as a -from
// set); quote the result with atcl_word when it goes into a command.
std::string atcl_list(const std::vector<std::string>& elements);

class ATCL_COMMAND {
 public:
  explicit ATCL_COMMAND(std::string_view command_name) { m_line = atcl_word(command_name, true); }

  // One more word, quoted.
  ATCL_COMMAND& word(std::string_view text);
  // A flag with no value, e.g. " -setup"; the same as word().
  ATCL_COMMAND& flag(std::string_view option) { return word(option); }
  // An option and its value, two words.
  ATCL_COMMAND& option(std::string_view option, std::string_view value) { return word(option).word(value); }
  ATCL_COMMAND& option(std::string_view option, long long value);
  // Several values as one word that is itself a Tcl list (e.g. a -from set).
  ATCL_COMMAND& list_word(const std::vector<std::string>& elements);

  const std::string& str() const { return m_line; }

 private:
  std::string m_line;
};
