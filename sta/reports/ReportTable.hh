// A report table held in memory, written either into a report-database
// panel or as console text.
//
// Small tables (clocks, domain summaries, constraint lists) are built whole
// and then written; the large ones of report_timing are streamed instead
// (see PathPanel.hh) but use the same text layout through TextTableWriter.
#pragma once

#include "rdb/rdb_types.hh"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

class RDB_PANEL_WRITER;

namespace vexa {

// Colour of violated values (0xRRGGBB).
inline constexpr uint32_t violation_color = 0xcc0000;

struct ReportTable
{
  std::string title;                      // heading of the text form
  int kind = 4;                           // RDB_KIND_TABLE or RDB_KIND_TCL_TABLE
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows;
  std::vector<std::vector<RDB_CELL_COLOR>> colors;  // per row, may be shorter than rows
  std::vector<RDB_TCL_COMMAND> commands;  // kind 12 only

  void add_row(std::vector<std::string> cells, std::vector<RDB_CELL_COLOR> row_colors = {});
};

// Writes the table into the panel at `where` ("" for the panel's top object).
void write_table(RDB_PANEL_WRITER &panel, const std::string &where, const ReportTable &table);

// Writes the table as aligned columns under its title (no title line when
// the title is empty). Columns whose cells are all numbers are right-aligned.
void write_table_text(std::ostream &out, const ReportTable &table);

// Aligned text of a list of rows with given titles (used for path points).
void write_rows_text(std::ostream &out, const std::vector<std::string> &columns,
                     const std::vector<std::vector<std::string>> &rows);

// "-1.248" style: three decimals, no "-0.000".
std::string format_time(double value);
// The same text written into `buffer` (320 characters hold any value), for
// the hundreds of thousands of cells of a large path report.
using TimeText = char[320];
std::string_view format_time(double value, TimeText &buffer);
std::string format_count(long long value);

} // namespace vexa
