#include "reports/ReportTable.hh"

#include "rdb/rdb_writer.hh"
#include "shell/Interrupt.hh"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdint>
#include <cstdlib>
#include <cstring>
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

std::string_view format_time(double value, TimeText &buffer)
{
  if (!std::isfinite(value))
    return value > 0 ? "inf" : "-inf";
  // Hundreds of thousands of times per large path report. The double is
  // m * 2^e with an integer m below 2^53; for |value| < 2^52 (e < 0) its
  // thousandths, m * 1000 / 2^-e, are rounded here exactly as printf's
  // "%.3f" rounds them (to nearest, ties to even, on the exact binary
  // value) with integer arithmetic; m * 1000 stays below 2^63.
  int exponent = 0;
  const double fraction = std::frexp(std::fabs(value), &exponent);  // [0.5, 1)
  const int shift = 53 - exponent;  // value = m / 2^shift
  if (fraction == 0 || shift > 64) {
    // |value| < 2^-11 < 0.0005: zero in three decimals.
    std::memcpy(buffer, "0.000", 5);
    return std::string_view(buffer, 5);
  }
  if (shift >= 1) {
    const std::uint64_t m = static_cast<std::uint64_t>(std::ldexp(fraction, 53));
    const std::uint64_t n = m * 1000;
    std::uint64_t q = shift == 64 ? 0 : n >> shift;
    const std::uint64_t rest = shift == 64 ? n : n & ((std::uint64_t(1) << shift) - 1);
    const std::uint64_t half = std::uint64_t(1) << (shift - 1);
    if (rest > half || (rest == half && (q & 1)))
      q++;
    char digits[24];
    auto [end, error] = std::to_chars(digits, digits + sizeof digits, q / 1000);
    (void)error;
    char *out = buffer;
    if (value < 0 && q != 0)
      *out++ = '-';
    out = std::copy(digits, end, out);
    const unsigned thousandths = static_cast<unsigned>(q % 1000);
    *out++ = '.';
    *out++ = static_cast<char>('0' + thousandths / 100);
    *out++ = static_cast<char>('0' + thousandths / 10 % 10);
    *out++ = static_cast<char>('0' + thousandths % 10);
    return std::string_view(buffer, out - buffer);
  }
  // Whole numbers of 2^52 and more.
  auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value,
                                    std::chars_format::fixed, 3);
  return std::string_view(buffer, error == std::errc() ? end - buffer : 0);
}

std::string format_time(double value)
{
  TimeText buffer;
  return std::string(format_time(value, buffer));
}

std::string format_count(long long value)
{
  return std::to_string(value);
}

} // namespace vexa
