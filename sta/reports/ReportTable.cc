#include "reports/ReportTable.hh"

#include "rdb/rdb_writer.hh"
#include "shell/Interrupt.hh"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>

namespace vexa {

void ReportTable::add_row(std::vector<std::string> cells, std::vector<RDB_CELL_COLOR> row_colors)
{
  rows.push_back(std::move(cells));
  if (!row_colors.empty()) {
    colors.resize(rows.size());
    colors.back() = std::move(row_colors);
  }
}

void write_table(RDB_PANEL_WRITER &panel, const std::string &where, const ReportTable &table)
{
  RDB_TABLE_WRITER writer = table.kind == RDB_KIND_TCL_TABLE
                              ? panel.add_tcl_table(where, table.columns, table.commands)
                              : panel.add_table(where, table.kind, table.columns);
  static const std::vector<RDB_CELL_COLOR> no_colors;
  for (size_t i = 0; i < table.rows.size(); i++, check_interrupt())
    writer.add_row(table.rows[i], i < table.colors.size() ? table.colors[i] : no_colors);
}

namespace {

size_t text_width(const std::string &text)
{
  size_t width = 0;
  for (unsigned char ch : text)
    if ((ch & 0xc0) != 0x80)
      ++width;
  return width;
}

bool is_number(const std::string &text)
{
  if (text.empty())
    return false;
  char *end = nullptr;
  std::strtod(text.c_str(), &end);
  return *end == '\0';
}

} // namespace

void write_rows_text(std::ostream &out, const std::vector<std::string> &columns,
                     const std::vector<std::vector<std::string>> &rows)
{
  const size_t count = columns.size();
  std::vector<size_t> widths(count);
  std::vector<bool> numeric(count, true);
  std::vector<bool> any_value(count, false);
  for (size_t c = 0; c < count; c++)
    widths[c] = text_width(columns[c]);
  for (const auto &row : rows)
    for (size_t c = 0; c < count && c < row.size(); c++) {
      widths[c] = std::max(widths[c], text_width(row[c]));
      if (!row[c].empty()) {
        any_value[c] = true;
        if (!is_number(row[c]))
          numeric[c] = false;
      }
    }
  auto line = [&](const std::vector<std::string> &cells) {
    std::string text;
    for (size_t c = 0; c < count; c++) {
      const std::string empty;
      const std::string &cell = c < cells.size() ? cells[c] : empty;
      std::string pad(widths[c] - text_width(cell), ' ');
      if (c)
        text += "  ";
      text += numeric[c] && any_value[c] ? pad + cell : cell + pad;
    }
    while (!text.empty() && text.back() == ' ')
      text.pop_back();
    out << text << '\n';
  };
  line(columns);
  size_t total = 0;
  for (size_t c = 0; c < count; c++)
    total += widths[c] + (c ? 2 : 0);
  out << std::string(total, '-') << '\n';
  for (const auto &row : rows) {
    check_interrupt();
    line(row);
  }
}

void write_table_text(std::ostream &out, const ReportTable &table)
{
  if (!table.title.empty())
    out << table.title << '\n' << std::string(text_width(table.title), '=') << '\n';
  write_rows_text(out, table.columns, table.rows);
}

std::string format_time(double value)
{
  if (!std::isfinite(value))
    return value > 0 ? "inf" : "-inf";
  // Hundreds of thousands of times per large report: std::to_chars gives the
  // same text as printf's "%.3f" without the locale and format parsing.
  // 320 characters hold any finite double in this form.
  char text[320];
  auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 3);
  std::string result(text, error == std::errc() ? end : text);
  if (result == "-0.000")
    result = "0.000";
  return result;
}

std::string format_count(long long value)
{
  return std::to_string(value);
}

} // namespace vexa
