#include "protocol/Encoder.hh"

#include <tcl.h>

namespace vexa {

namespace {

bool is_special(char c)
{
  switch (c) {
  case '[': case ']': case '{': case '}': case '$': case '\\': case '"': case ';':
  case ' ': case '\t': case '\n': case '\r': case '\f': case '\v':
    return true;
  default:
    return false;
  }
}

bool is_word_safe(unsigned char c)
{
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')
      || c == '_' || c == '.' || c == ':' || c == '/' || c == '-' || c >= 0x80;
}

// Tcl itself decides whether "{" line "\n}" is one braced word holding exactly
// line + "\n"; hand-written brace counting would miss corner cases.
bool braces_carry(std::string_view line)
{
  // An odd run of backslashes at the end would join the closing line.
  size_t trailing = 0;
  while (trailing < line.size() && line[line.size() - 1 - trailing] == '\\')
    ++trailing;
  if (trailing % 2 == 1)
    return false;
  std::string candidate = "{";
  candidate.append(line);
  candidate.append("\n}");
  int count = 0;
  const char **elements = nullptr;
  if (Tcl_SplitList(nullptr, candidate.c_str(), &count, &elements) != TCL_OK)
    return false;
  bool exact = count == 1 && std::string_view(elements[0]) == std::string(line) + "\n";
  Tcl_Free(reinterpret_cast<char *>(elements));
  return exact;
}

} // namespace

bool is_plain_token(std::string_view text)
{
  if (text.empty())
    return false;
  for (char c : text)
    if (is_special(c))
      return false;
  return true;
}

std::string encode_text_line(std::string_view line)
{
  if (is_plain_token(line))
    return "echo_stdout  " + std::string(line) + "\n";
  if (!line.empty() && braces_carry(line))
    return "echo_stdout {" + std::string(line) + "\n}\n";
  if (line.empty())
    return "echo_stdout  {}\n";
  std::string out = "echo_stdout  ";
  for (char c : line) {
    if (!is_word_safe(static_cast<unsigned char>(c)))
      out.push_back('\\');
    out.push_back(c);
  }
  out.push_back('\n');
  return out;
}

std::string quote_word(std::string_view text)
{
  std::string out = "\"";
  for (char c : text) {
    switch (c) {
    case '$': case '[': case ']': case '"': case '\\':
      out.push_back('\\');
      out.push_back(c);
      break;
    case '\n': out += "\\n"; break;
    case '\t': out += "\\t"; break;
    case '\r': out += "\\r"; break;
    default: out.push_back(c);
    }
  }
  out.push_back('"');
  return out;
}

std::string callback_word(std::string_view text)
{
  return is_plain_token(text) ? std::string(text) : quote_word(text);
}

} // namespace vexa
