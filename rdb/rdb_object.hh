// The object model of a report database as the front end reads it.
//
// A report (RDB_REPORT) owns a tree of RDB_OBJECTs: its main folder, one
// object per panel below it, and the objects inside panels. The tree is read
// when the report is opened; table rows are not: a table fetches pages of rows
// from the database the first time they are asked for and keeps a few recent
// pages in a small cache, so a panel of a million rows opens at once.
//
// Accessors never throw. If the file turns out to be damaged after it was
// opened, row fetches yield empty rows and the report records the error
// (RDB_REPORT::get_error), so a viewer can never crash on a bad file.
#pragma once

#include "rdb/rdb_types.hh"

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class RDB_REPORT;

// The separator of the parts of a database path.
inline constexpr const char* RDB_PATH_SEPARATOR = "||";

class RDB_OBJECT {
public:
  RDB_OBJECT(const RDB_OBJECT&) = delete;
  RDB_OBJECT& operator=(const RDB_OBJECT&) = delete;
  virtual ~RDB_OBJECT() = default;

  const std::string& get_name() const { return m_name; }
  // The object's kind (RDB_OBJECT_KIND).
  int get_type() const { return m_kind; }
  // False when the engine marked the object (or its panel) out of date.
  bool is_enable() const { return m_enabled; }
  bool is_legal_notice() const { return m_kind == RDB_KIND_LEGAL_NOTICE; }

  // The database path: the main folder's name, then every level down to this
  // object, joined by "||" ("Timing Analyzer||Summary (Setup)"). With
  // `with_file` true the database file's path and "::" come first, which makes
  // the path unique across reports.
  std::string get_path(bool with_file = false) const;
  // The name of the panel this object belongs to (empty for the main folder).
  std::string get_panel_name() const;

  RDB_OBJECT* get_parent() const { return m_parent; }
  RDB_REPORT* get_report() const { return m_report; }
  const std::vector<RDB_OBJECT*>& get_children() const { return m_children; }
  int get_number_of_children() const { return static_cast<int>(m_children.size()); }
  RDB_OBJECT* get_child(int index) const;
  RDB_OBJECT* find_child(const std::string& name) const;

  // Renderings (defined beside the renderers, not the storage): plain text
  // like a terminal report, and an HTML fragment with real tables.
  std::string to_text() const;
  std::string to_html() const;

  // Database identity, for the library's own use and for diagnostics.
  int64_t get_object_id() const { return m_object_id; }

protected:
  RDB_OBJECT() = default;

private:
  friend class RDB_REPORT;
  RDB_REPORT* m_report = nullptr;
  RDB_OBJECT* m_parent = nullptr;
  std::vector<RDB_OBJECT*> m_children;
  std::string m_name;
  int m_kind = 0;
  bool m_enabled = true;
  int64_t m_object_id = 0;

protected:
  // Kind-specific properties as stored (small key/value pairs).
  std::map<std::string, std::string> m_properties;
  std::string property(const char* key) const;
  double property_double(const char* key) const;
  int64_t property_int(const char* key, int64_t fallback = 0) const;
};

class RDB_FOLDER_OBJECT : public RDB_OBJECT {};

// A legal notice: never shown in the report tree; carries the notice text.
class RDB_LEGAL_OBJECT : public RDB_OBJECT {
public:
  std::string get_text() const;
};

class RDB_TEXT_OBJECT : public RDB_OBJECT {
public:
  // The text, read from the database on first use.
  std::string get_text() const;
  bool is_html() const { return property_int("html") != 0; }

private:
  mutable std::optional<std::string> m_text;
};

class RDB_EMBEDDED_OBJECT : public RDB_OBJECT {
public:
  int get_embedded_type() const { return static_cast<int>(property_int("embedded_type")); }
  // For embedded text (types other than 9) the name of a text file to show.
  std::string get_info_str() const { return property("info"); }
};

// A table of strings (kinds 4, 7, 8; and the bases of kinds 5, 12 and 13).
//
// Rows are numbered as the viewers expect: for every kind but 7, row 0 holds
// the column titles and data rows are 1 .. get_number_of_rows()-1; a kind-7
// table has no titles and its data rows start at 0.
class RDB_TABLE_OBJECT : public RDB_OBJECT {
public:
  bool has_header() const { return get_type() != RDB_KIND_HEADERLESS_TABLE; }
  int get_number_of_rows() const;
  int get_number_of_columns() const { return static_cast<int>(m_columns.size()); }
  // Data rows only, whatever the kind.
  int64_t get_number_of_data_rows() const { return m_data_rows; }
  const std::vector<std::string>& get_column_names() const { return m_columns; }

  // The text of a cell; empty outside the table.
  std::string get_data(int row, int column) const;
  // The colours of a cell when it has any; titles have none.
  std::optional<RDB_TABLE_ELEMENT> get_element(int row, int column) const;
  // Rows first .. first+count-1 in the numbering above (row 0 of a titled
  // table is returned as a row of titles); clipped to the table.
  std::vector<RDB_TABLE_ROW> get_rows(int first, int count) const;

  // Calls visit once per data row first .. first+count-1 (data row numbers,
  // clipped to the table) with its cell in `column`, in order, reading the
  // pages straight from the file: nothing is copied or cached, which is what
  // a pass over a whole column wants. Rows that cannot be read (a file
  // damaged under us) are visited as empty cells. The texts are valid
  // during the call only.
  void visit_column(int64_t first, int64_t count, int column,
                    const std::function<void(std::string_view)>& visit) const;

  // Number of decoded row pages kept in memory (default 8).
  void set_page_cache_size(int pages);

private:
  friend class RDB_REPORT;
  const RDB_TABLE_ROW* data_row(int64_t data_index) const;
  std::vector<std::string> m_columns;
  int64_t m_data_rows = 0;
  int m_page_rows = 1;
  // The rows are one page stored in the object row, not in rdb_row_page.
  bool m_inline_rows = false;
  int m_cache_pages = 8;
  struct PAGE {
    int64_t number;
    std::vector<RDB_TABLE_ROW> rows;
  };
  // Most recently used first.
  mutable std::list<PAGE> m_cache;
};

// A table of (label, count) rows with axis names, shown as bars or a pie.
class RDB_CHART_TABLE_OBJECT : public RDB_TABLE_OBJECT {
public:
  std::string get_x_axis() const { return property("x_axis"); }
  std::string get_y_axis() const { return property("y_axis"); }
  // 1 bar chart, 2 pie chart.
  int get_default_chart_type() const { return static_cast<int>(property_int("chart_type", 1)); }
  // Label (column 0) and count (column 1) of a data row (row >= 1).
  std::string get_label(int row) const { return get_data(row, 0); }
  long long get_count(int row) const;
};

// A table with command templates, offered per row by the report table's
// context menu. See build_cmd for the placeholder syntax.
class RDB_TCL_TABLE_OBJECT : public RDB_TABLE_OBJECT {
public:
  int get_number_of_cmds() const { return static_cast<int>(m_commands.size()); }
  std::string get_gui_cmd_name(int command) const;
  std::string get_cmd_template(int command) const;
  // The command `command` filled from row `row` (table numbering, so data
  // rows start at 1). The template is a list of Tcl words; in a word, "%{C}"
  // (or "%r{C}") stands for the text of column C of that row ("%l{C}" for
  // that text as a one-element Tcl list, for options taking lists), and each filled
  // word is written back as exactly one Tcl word (braced or backslash-quoted
  // as needed), so a name can never add words or substitutions. C is a
  // column index from 0 or a column title. Anything else, including a lone
  // "%", is copied as it stands. Empty when the command or row does not
  // exist or the template is not a list of words.
  std::string build_cmd(int command, int row) const;

private:
  friend class RDB_REPORT;
  std::vector<RDB_TCL_COMMAND> m_commands;
};

// A histogram: rows of bins, row 0 holding the titles ("From", "To", "Count").
class RDB_HISTOGRAM_TABLE_OBJECT : public RDB_TABLE_OBJECT {
public:
  std::string get_x_axis_label() const { return property("x_label"); }
  std::string get_y_axis_label() const { return property("y_label"); }
  // Bin edges are stored multiplied by the x scale (e.g. 1000 for ps values
  // shown in ns); never 0 once written.
  int get_x_scale() const { return static_cast<int>(property_int("x_scale", 1)); }
  std::string get_x_unit() const { return property("x_unit"); }
  int get_value(int row) const;
  uint32_t get_color(int row) const;
  double get_from(int row) const;
  double get_to(int row) const;
};

// One timing path with its summary table, delay-statistics chart, data
// arrival table and data required table.
class RDB_PATH_OBJECT : public RDB_OBJECT {
public:
  // Slack in ns.
  double get_slack() const { return property_double("slack"); }
  bool path_is_violated() const { return property_int("violated") != 0; }
  RDB_TABLE_OBJECT* get_summary_table() const;
  RDB_CHART_TABLE_OBJECT* get_delay_summary_chart() const;
  RDB_TABLE_OBJECT* get_data_arrival_table() const;
  RDB_TABLE_OBJECT* get_data_required_table() const;

private:
  RDB_OBJECT* child_with_role(const char* role) const;
};

// Names of the four sub-objects of a path object.
inline constexpr const char* RDB_PATH_SUMMARY_NAME = "Path Summary";
inline constexpr const char* RDB_PATH_CHART_NAME = "Path Delay Stats";
inline constexpr const char* RDB_PATH_ARRIVAL_NAME = "Data Arrival Path";
inline constexpr const char* RDB_PATH_REQUIRED_NAME = "Data Required Path";
