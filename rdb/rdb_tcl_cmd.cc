#include "rdb/rdb_tcl_cmd.hh"

#include "rdb/rdb_object.hh"

#include <charconv>
#include <cstdlib>

#include <tcl.h>

std::string rdb_tcl_quote(std::string_view text, bool first) {
  // Tcl keeps NUL as the two bytes C0 80 inside its strings.
  std::string source;
  source.reserve(text.size());
  for (char ch : text) {
    if (ch == '\0') source += "\xC0\x80";
    else source += ch;
  }
  const int length = static_cast<int>(source.size());
  int flags = first ? 0 : TCL_DONT_QUOTE_HASH;
  Tcl_ScanCountedElement(source.data(), length, &flags);
  // Braces around a line break would carry the command onto a second line.
  if (source.find_first_of("\n\r") != std::string::npos) flags |= TCL_DONT_USE_BRACES;
  if (!first) flags |= TCL_DONT_QUOTE_HASH;
  std::string out(2 * source.size() + 3, '\0');
  out.resize(static_cast<size_t>(Tcl_ConvertCountedElement(source.data(), length, out.data(), flags)));
  return out;
}

namespace {
// Stands for a placeholder while the template is split into words.
constexpr char PLACEHOLDER_MARK = '\x01';

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
  auto fail = [error](const std::string& message) {
    if (error && error->empty()) *error = message;
  };
  if (command_template.find(PLACEHOLDER_MARK) != std::string_view::npos) {
    fail("the template holds a control character");
    return std::string();
  }
  // First every placeholder becomes a mark that Tcl's list parser leaves
  // alone, so that a column title with blanks cannot split a word.
  std::string marked;
  size_t pos = 0;
  while (pos < command_template.size()) {
    char ch = command_template[pos];
    size_t open = std::string_view::npos;
    bool as_list = false;
    if (ch == '%' && pos + 1 < command_template.size()) {
      char kind = command_template[pos + 1];
      if (kind == '{') {
        open = pos + 1;
      } else if ((kind == 'r' || kind == 'l') && pos + 2 < command_template.size() &&
                 command_template[pos + 2] == '{') {
        open = pos + 2;
        as_list = kind == 'l';
      }
    }
    size_t close = open == std::string_view::npos ? open : command_template.find('}', open);
    if (close == std::string_view::npos) {
      marked += ch;
      ++pos;
      continue;
    }
    std::string_view reference = command_template.substr(open + 1, close - open - 1);
    int column = resolve_column(reference, columns);
    if (column < 0) {
      fail("the placeholder \"" + std::string(command_template.substr(pos, close + 1 - pos)) +
           "\" names no column");
    } else {
      marked += PLACEHOLDER_MARK;
      if (as_list) marked += 'l';
      marked += std::to_string(column);
      marked += PLACEHOLDER_MARK;
    }
    pos = close + 1;
  }
  // Then the template is read as Tcl words; each is filled with the cells'
  // texts and quoted again as one word.
  int count = 0;
  const char** words = nullptr;
  if (Tcl_SplitList(nullptr, marked.c_str(), &count, &words) != TCL_OK) {
    fail("the template is not a list of Tcl words");
    return std::string();
  }
  std::string out;
  for (int w = 0; w < count; ++w) {
    std::string_view word = words[w];
    std::string filled;
    for (size_t at = 0; at < word.size();) {
      size_t mark = word.find(PLACEHOLDER_MARK, at);
      if (mark == std::string_view::npos) {
        filled += word.substr(at);
        break;
      }
      filled += word.substr(at, mark - at);
      size_t end = word.find(PLACEHOLDER_MARK, mark + 1);
      std::string_view reference = word.substr(mark + 1, end - mark - 1);
      const bool as_list = !reference.empty() && reference[0] == 'l';
      if (as_list) reference.remove_prefix(1);
      int column = std::atoi(std::string(reference).c_str());
      if (column < static_cast<int>(cells.size()))
        filled += as_list ? rdb_tcl_quote(cells[column], true) : cells[column];
      at = end + 1;
    }
    if (w > 0) out += ' ';
    out += rdb_tcl_quote(filled, w == 0);
  }
  Tcl_Free(reinterpret_cast<char*>(words));
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
