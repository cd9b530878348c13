#include "report/lum_stored_command.hh"

#include <tcl.h>

#include <algorithm>

const std::vector<std::string>& lum_engine_report_commands() {
  // The commands the engine registers for reports that write panels
  // (sta/reports/report_commands.cc); deleting panels is not among them.
  static const std::vector<std::string> commands = {
      "create_timing_summary", "report_clocks",          "report_clock_transfers",
      "report_sdc",            "report_ucp",             "report_timing",
      "report_net_timing",     "report_min_pulse_width", "create_slack_histogram",
  };
  return commands;
}

namespace {

// The literal value of a word made only of text and backslash sequences;
// false when any part is a substitution.
bool literal_value(const Tcl_Token* word, std::string* value, std::string* reason) {
  value->clear();
  if (word->type == TCL_TOKEN_EXPAND_WORD) {
    *reason = "it expands a word with {*}";
    return false;
  }
  for (int i = 1; i <= word->numComponents; ++i) {
    const Tcl_Token& part = word[i];
    switch (part.type) {
      case TCL_TOKEN_TEXT:
        value->append(part.start, static_cast<size_t>(part.size));
        break;
      case TCL_TOKEN_BS: {
        char bytes[TCL_UTF_MAX + 1] = {};
        int length = Tcl_UtfBackslash(part.start, nullptr, bytes);
        value->append(bytes, static_cast<size_t>(length));
        break;
      }
      case TCL_TOKEN_COMMAND:
        *reason = "it runs a command substitution";
        return false;
      case TCL_TOKEN_VARIABLE:
        *reason = "it reads a variable";
        return false;
      default:
        *reason = "a word is not literal";
        return false;
    }
    // A variable token's own components are counted in numComponents too;
    // they are never reached because the variable is refused first.
  }
  return true;
}

bool is_file_option(const std::string& word) {
  static const std::string file = "-file";
  return word.size() >= 2 && file.compare(0, word.size(), word) == 0;
}

}  // namespace

bool lum_stored_command_is_runnable(const std::string& command, std::string* reason_out) {
  std::string reason;
  auto refuse = [&](const char* why) {
    reason = why;
    if (reason_out) *reason_out = reason;
    return false;
  };
  if (command.find('\0') != std::string::npos) return refuse("it holds a NUL byte");
  if (command.find_first_of("\n\r") != std::string::npos) return refuse("it spans more than one line");
  if (command.compare(0, 4, "lum_") == 0) return refuse("it is a command of the front end");

  Tcl_Parse parse;
  if (Tcl_ParseCommand(nullptr, command.data(), static_cast<int>(command.size()), 0, &parse) != TCL_OK)
    return refuse("it is not a well-formed Tcl command");
  struct FREE {
    Tcl_Parse* parse;
    ~FREE() { Tcl_FreeParse(parse); }
  } free_parse{&parse};

  if (parse.commentSize > 0) return refuse("it holds a comment");
  if (parse.numWords == 0) return refuse("it is empty");
  const char* end = parse.commandStart + parse.commandSize;
  const char* text_end = command.data() + command.size();
  // Only the command's own terminator and blanks may follow it.
  while (end < text_end && (*end == ' ' || *end == '\t')) ++end;
  if (end != text_end) return refuse("it holds a second command");

  std::vector<std::string> words;
  const Tcl_Token* token = parse.tokenPtr;
  for (int w = 0; w < parse.numWords; ++w) {
    std::string value;
    if (!literal_value(token, &value, &reason)) {
      if (reason_out) *reason_out = reason;
      return false;
    }
    words.push_back(std::move(value));
    token += token->numComponents + 1;
  }
  const std::vector<std::string>& allowed = lum_engine_report_commands();
  if (std::find(allowed.begin(), allowed.end(), words[0]) == allowed.end())
    return refuse("it is not one of the engine's report commands");
  for (size_t w = 1; w < words.size(); ++w)
    if (is_file_option(words[w])) return refuse("it writes a file (-file)");
  return true;
}
