#include "rdb/rdb_tcl_cmd.hh"

#include "rdb/rdb_object.hh"

#include <charconv>

std::string rdb_tcl_quote(std::string_view text) {
  if (text.empty())
    return "{}";
  bool special = text[0] == '#';
  // Backslashes keep their meaning next to braces and newlines even inside
  // braces, so text with one is always backslash-quoted.
  bool brace_safe = text.find('\\') == std::string_view::npos;
  int depth = 0;
  for (char ch : text) {
    switch (ch) {
    case ' ': case '\t': case '\n': case '\r': case '\f': case '\v':
    case '[': case ']': case '$': case ';': case '"': case '\\':
      special = true;
      break;
    case '{':
      special = true;
      ++depth;
      break;
    case '}':
      special = true;
      if (--depth < 0)
        brace_safe = false;
      break;
    default:
      break;
    }
  }
  if (depth != 0)
    brace_safe = false;
  if (!special)
    return std::string(text);
  if (brace_safe) {
    // (Appended piece by piece: GCC 12 warns wrongly about "{" + text + "}".)
    std::string braced;
    braced.reserve(text.size() + 2);
    braced += '{';
    braced += text;
    braced += '}';
    return braced;
  }
  std::string out;
  for (char ch : text) {
    switch (ch) {
    case '\n': out += "\\n"; break;
    case '\t': out += "\\t"; break;
    case '\r': out += "\\r"; break;
    case '\f': out += "\\f"; break;
    case '\v': out += "\\v"; break;
    case ' ': case '[': case ']': case '$': case ';': case '"': case '\\':
    case '{': case '}': case '#':
      out += '\\';
      out += ch;
      break;
    default:
      out += ch;
    }
  }
  return out;
}

namespace {
// Column index of a placeholder's reference: a number from 0 or a title.
int resolve_column(std::string_view reference, const std::vector<std::string>& columns) {
  int index = -1;
  auto result = std::from_chars(reference.data(), reference.data() + reference.size(), index);
  if (result.ec == std::errc() && result.ptr == reference.data() + reference.size())
    return index >= 0 && index < static_cast<int>(columns.size()) ? index : -1;
  for (size_t c = 0; c < columns.size(); ++c)
    if (columns[c] == reference)
      return static_cast<int>(c);
  return -1;
}
}  // namespace

std::string rdb_fill_command_template(std::string_view command_template,
                                      const std::vector<std::string>& columns,
                                      const std::vector<std::string>& cells,
                                      std::string* error) {
  std::string out;
  size_t pos = 0;
  while (pos < command_template.size()) {
    char ch = command_template[pos];
    bool raw = false;
    size_t open = std::string_view::npos;
    if (ch == '%' && pos + 1 < command_template.size()) {
      if (command_template[pos + 1] == '{') {
        open = pos + 1;
      } else if (command_template[pos + 1] == 'r' && pos + 2 < command_template.size() &&
                 command_template[pos + 2] == '{') {
        open = pos + 2;
        raw = true;
      }
    }
    size_t close = open == std::string_view::npos ? open : command_template.find('}', open);
    if (close == std::string_view::npos) {
      out += ch;
      ++pos;
      continue;
    }
    std::string_view reference = command_template.substr(open + 1, close - open - 1);
    int column = resolve_column(reference, columns);
    if (column < 0) {
      if (error && error->empty())
        *error = "the placeholder \"" + std::string(command_template.substr(pos, close + 1 - pos)) +
                 "\" names no column";
    } else {
      std::string_view cell =
          column < static_cast<int>(cells.size()) ? std::string_view(cells[column]) : "";
      out += raw ? std::string(cell) : rdb_tcl_quote(cell);
    }
    pos = close + 1;
  }
  return out;
}

std::string RDB_TCL_TABLE_OBJECT::build_cmd(int command, int row) const {
  if (command < 0 || command >= get_number_of_cmds() || row < 0 ||
      row >= get_number_of_rows() || (has_header() && row == 0))
    return std::string();
  std::vector<std::string> cells;
  for (int c = 0; c < get_number_of_columns(); ++c)
    cells.push_back(get_data(row, c));
  return rdb_fill_command_template(m_commands[command].command_template, get_column_names(),
                                   cells);
}
