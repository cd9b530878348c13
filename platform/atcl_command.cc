#include "platform/atcl_command.hh"

#include <tcl.h>

namespace {

// Tcl keeps NUL inside its strings as the two bytes C0 80; a plain NUL would
// end the text early on the engine's side.
std::string with_tcl_nul(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (char c : text) {
    if (c == '\0') out += "\xC0\x80";
    else out += c;
  }
  return out;
}

}  // namespace

std::string atcl_word(std::string_view text, bool first) {
  const std::string source = with_tcl_nul(text);
  const int length = static_cast<int>(source.size());
  int flags = first ? 0 : TCL_DONT_QUOTE_HASH;
  Tcl_ScanCountedElement(source.data(), length, &flags);
  // A line break inside braces would carry the command onto a second line.
  if (source.find_first_of("\n\r") != std::string::npos) flags |= TCL_DONT_USE_BRACES;
  if (!first) flags |= TCL_DONT_QUOTE_HASH;
  // The backslash form at most doubles every byte; braces add two.
  std::string out(2 * source.size() + 3, '\0');
  out.resize(static_cast<size_t>(Tcl_ConvertCountedElement(source.data(), length, out.data(), flags)));
  return out;
}

std::string atcl_command(std::initializer_list<std::string_view> words) {
  std::string line;
  bool first = true;
  for (std::string_view word : words) {
    if (!first) line += ' ';
    line += atcl_word(word, first);
    first = false;
  }
  return line;
}

std::string atcl_list(const std::vector<std::string>& elements) {
  std::string list;
  for (const std::string& element : elements) {
    if (!list.empty()) list += ' ';
    list += atcl_word(element, list.empty());
  }
  return list;
}

ATCL_COMMAND& ATCL_COMMAND::word(std::string_view text) {
  m_line += ' ';
  m_line += atcl_word(text);
  return *this;
}

ATCL_COMMAND& ATCL_COMMAND::option(std::string_view option, long long value) {
  return word(option).word(std::to_string(value));
}

ATCL_COMMAND& ATCL_COMMAND::list_word(const std::vector<std::string>& elements) {
  return word(atcl_list(elements));
}
