#include "project/KeyValueFile.hh"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vexa {

namespace {

std::string trim(const std::string &s)
{
  size_t b = 0, e = s.size();
  while (b < e && std::isspace(static_cast<unsigned char>(s[b])))
    ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1])))
    --e;
  return s.substr(b, e - b);
}

bool valid_key(const std::string &key)
{
  if (key.empty())
    return false;
  for (char c : key)
    if (!((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_'))
      return false;
  return true;
}

// Unquotes a value that begins with '"'; false when the quote is not closed
// at the very end of the value.
bool unquote(const std::string &value, std::string &out, std::string &reason)
{
  out.clear();
  for (size_t i = 1; i < value.size(); ++i) {
    char c = value[i];
    if (c == '\\' && i + 1 < value.size() && (value[i + 1] == '"' || value[i + 1] == '\\')) {
      out.push_back(value[++i]);
    } else if (c == '"') {
      if (i + 1 != value.size()) {
        reason = "text after the closing quotation mark";
        return false;
      }
      return true;
    } else {
      out.push_back(c);
    }
  }
  reason = "missing closing quotation mark";
  return false;
}

} // namespace

std::string located_error(const std::string &path, int line, const std::string &reason)
{
  return path + ":" + std::to_string(line) + ": " + reason;
}

std::string resolve_path(const std::string &directory, const std::string &path)
{
  std::filesystem::path p(path);
  if (p.is_absolute() || directory.empty())
    return p.lexically_normal().string();
  return (std::filesystem::path(directory) / p).lexically_normal().string();
}

bool parse_key_value_text(const std::string &path, const std::string &text,
                          bool allow_sections, KeyValueFile &out, std::string &error)
{
  out.path = path;
  out.entries.clear();
  // Editors on some systems start a UTF-8 file with a byte-order mark; it
  // would otherwise become part of the first key and make it "invalid".
  std::istringstream in(text.rfind("\xEF\xBB\xBF", 0) == 0 ? text.substr(3) : text);
  std::string raw;
  std::string section;
  int line_no = 0;
  while (std::getline(in, raw)) {
    ++line_no;
    std::string line = trim(raw);
    if (line.empty() || line[0] == '#')
      continue;
    if (line[0] == '[') {
      if (!allow_sections) {
        error = located_error(path, line_no, "sections are not allowed in this file");
        return false;
      }
      if (line.back() != ']' || line.size() < 3) {
        error = located_error(path, line_no, "malformed section header \"" + line + "\"");
        return false;
      }
      section = trim(line.substr(1, line.size() - 2));
      continue;
    }
    size_t eq = line.find('=');
    if (eq == std::string::npos) {
      error = located_error(path, line_no, "expected \"key = value\" but found \"" + line + "\"");
      return false;
    }
    KeyValueEntry entry;
    entry.line = line_no;
    entry.section = section;
    entry.key = trim(line.substr(0, eq));
    if (!valid_key(entry.key)) {
      error = located_error(path, line_no, "invalid key \"" + entry.key
                            + "\" (keys are lower-case letters, digits and \"_\")");
      return false;
    }
    std::string value = trim(line.substr(eq + 1));
    if (!value.empty() && value[0] == '"') {
      std::string reason;
      if (!unquote(value, entry.value, reason)) {
        error = located_error(path, line_no, reason);
        return false;
      }
    } else {
      entry.value = value;
    }
    out.entries.push_back(std::move(entry));
  }
  return true;
}

bool read_key_value_file(const std::string &path, bool allow_sections,
                         KeyValueFile &out, std::string &error)
{
  std::error_code ec;
  if (!std::filesystem::exists(path, ec)) {
    error = path + ": file does not exist";
    return false;
  }
  if (!std::filesystem::is_regular_file(path, ec)) {
    error = path + ": not a file (a folder or a device)";
    return false;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = path + ": file cannot be read";
    return false;
  }
  std::ostringstream buf;
  buf << in.rdbuf();
  return parse_key_value_text(path, buf.str(), allow_sections, out, error);
}

} // namespace vexa
