// Plain value types shared by the reader, the writer and the renderings.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Object kinds as stored in the database and returned by RDB_OBJECT::get_type().
enum RDB_OBJECT_KIND : int {
  RDB_KIND_FOLDER = 1,
  RDB_KIND_LEGAL_NOTICE = 2,     // never shown; carries the notice text
  RDB_KIND_TEXT = 3,
  RDB_KIND_TABLE = 4,            // table whose row 0 holds the column titles
  RDB_KIND_CHART_TABLE = 5,      // rows of (label, count) drawn as bar or pie chart
  RDB_KIND_EMBEDDED = 6,         // reference to an outside object (e.g. a text file)
  RDB_KIND_HEADERLESS_TABLE = 7, // table without titles; row 0 is data
  RDB_KIND_DETAIL_TABLE = 8,     // titled table used for detail listings; shown like kind 4
  RDB_KIND_TCL_TABLE = 12,       // titled table with per-row command templates
  RDB_KIND_HISTOGRAM = 13,       // bins of (from, to, count, colour)
  RDB_KIND_PATH = 15,            // one timing path with its four sub-objects
};

// Report types: which engine tool wrote the database.
enum RDB_REPORT_TYPE : int {
  RDB_COMPILER_REPORT = 1,
  RDB_TIMING_REPORT = 3,
};

// Colour value meaning "no colour, keep the viewer's default".
constexpr uint32_t RDB_NO_COLOR = 0xffffffffu;

// Colours of one table cell, stored as 0xRRGGBB or RDB_NO_COLOR.
class RDB_TABLE_ELEMENT {
public:
  RDB_TABLE_ELEMENT() = default;
  RDB_TABLE_ELEMENT(uint32_t foreground, uint32_t background)
      : m_foreground(foreground), m_background(background) {}
  uint32_t get_foreground_color() const { return m_foreground; }
  uint32_t get_background_color() const { return m_background; }
  bool operator==(const RDB_TABLE_ELEMENT&) const = default;

private:
  uint32_t m_foreground = RDB_NO_COLOR;
  uint32_t m_background = RDB_NO_COLOR;
};

// A coloured cell of a row: most cells have no colour, so rows carry only
// the coloured ones.
struct RDB_CELL_COLOR {
  int column = 0;
  uint32_t foreground = RDB_NO_COLOR;
  uint32_t background = RDB_NO_COLOR;
  bool operator==(const RDB_CELL_COLOR&) const = default;
};

// One stored table row: the cell texts (exactly one per column) and the
// sparse cell colours.
struct RDB_TABLE_ROW {
  std::vector<std::string> cells;
  std::vector<RDB_CELL_COLOR> colors;
};

// One bin of a histogram. `from` and `to` are in the histogram's x unit times
// its x scale (a viewer divides them by the scale); `value` is the count.
struct RDB_HISTOGRAM_BIN {
  double from = 0;
  double to = 0;
  int value = 0;
  uint32_t color = RDB_NO_COLOR;
};

// One command template of a Tcl table: the menu text and the template that
// RDB_TCL_TABLE_OBJECT::build_cmd fills from a row.
struct RDB_TCL_COMMAND {
  std::string gui_name;
  std::string command_template;
};
