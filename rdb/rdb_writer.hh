// Writing report databases: the engine's side.
//
// The engine is the only writer. It opens the database of the current
// project revision with RDB_WRITER and writes each report panel through an
// RDB_PANEL_WRITER: the panel's objects are added one by one (large tables
// streamed row by row) and commit() stores them in one transaction that also
// removes an older panel of the same name. A reader therefore sees the old
// panel or the new one, never a mixture, and a panel writer dropped without
// commit() leaves the database as it was.
//
// Objects inside a panel are addressed by their path relative to the panel:
// "" is the panel's top object (it takes the panel's name), "Clocks" a child of
// the top folder, "Clocks||clk" a child of that; folders on the way are
// created as needed. Names may hold any text but "||" and may not be empty.
//
//   RDB_WRITER writer(rdb_report_file_path(dir, revision, RDB_TIMING_REPORT),
//                     RDB_TIMING_REPORT);
//   RDB_PANEL_WRITER panel = writer.begin_panel("Summary (Setup)", command_line);
//   RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, {"Clock", "Slack"});
//   table.add_row({"clk", "-0.123"}, {{1, 0xff0000, RDB_NO_COLOR}});
//   panel.commit();
#pragma once

#include "rdb/rdb_error.hh"
#include "rdb/rdb_report.hh"
#include "rdb/rdb_types.hh"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rdb_internal {
class SQL_DATABASE;
struct OBJECT_STATE;
struct PANEL_STATE;
struct TABLE_STATE;
}

class RDB_WRITER;
class RDB_PANEL_WRITER;

// Streams the rows of one table of a panel under construction. A handle:
// cheap to copy, valid until its panel writer commits or is dropped.
class RDB_TABLE_WRITER {
public:
  RDB_TABLE_WRITER() = default;
  // Adds one data row. Fewer cells than columns are padded with empty cells;
  // more cells, or a colour for a column outside the table, throw RDB_ERROR.
  void add_row(const std::vector<std::string>& cells,
               const std::vector<RDB_CELL_COLOR>& colors = {});
  void add_row(std::initializer_list<std::string_view> cells,
               std::initializer_list<RDB_CELL_COLOR> colors = {});
  void add_row(const std::string_view* cells, size_t cell_count,
               const RDB_CELL_COLOR* colors = nullptr, size_t color_count = 0);
  int64_t get_number_of_rows() const;
  int get_number_of_columns() const;
  bool is_valid() const { return m_state != nullptr; }

private:
  friend class RDB_PANEL_WRITER;
  explicit RDB_TABLE_WRITER(rdb_internal::TABLE_STATE* state) : m_state(state) {}
  rdb_internal::TABLE_STATE* m_state = nullptr;
};

// Which sub-object of a path object a table is.
enum class RDB_PATH_PART { SUMMARY, ARRIVAL, REQUIRED };

class RDB_PANEL_WRITER {
public:
  RDB_PANEL_WRITER(RDB_PANEL_WRITER&& other) noexcept;
  RDB_PANEL_WRITER& operator=(RDB_PANEL_WRITER&& other) noexcept;
  RDB_PANEL_WRITER(const RDB_PANEL_WRITER&) = delete;
  RDB_PANEL_WRITER& operator=(const RDB_PANEL_WRITER&) = delete;
  // Rolls the panel back unless it was committed.
  ~RDB_PANEL_WRITER();

  const std::string& get_panel_name() const;

  void add_folder(const std::string& where);
  void add_text(const std::string& where, const std::string& text, bool html = false);
  void add_legal_notice(const std::string& where, const std::string& text);
  void add_embedded(const std::string& where, int embedded_type, const std::string& info);
  // A table of kind 4, 7 (no titles; `columns` only gives the column count
  // and is not shown) or 8.
  RDB_TABLE_WRITER add_table(const std::string& where, int kind,
                             const std::vector<std::string>& columns);
  // A table of kind 12 with at most 99 command templates; every "%{C}" or
  // "%r{C}" of a template must name a column (see RDB_TCL_TABLE_OBJECT::build_cmd).
  RDB_TABLE_WRITER add_tcl_table(const std::string& where, const std::vector<std::string>& columns,
                                 const std::vector<RDB_TCL_COMMAND>& commands);
  // A chart table (kind 5): rows of (label, count); chart type 1 bar, 2 pie.
  void add_chart_table(const std::string& where, const std::string& x_axis,
                       const std::string& y_axis, int default_chart_type,
                       const std::vector<std::pair<std::string, long long>>& rows);
  // A histogram (kind 13). An x scale of 0 is stored as 1.
  void add_histogram(const std::string& where, const std::string& x_label,
                     const std::string& y_label, int x_scale, const std::string& x_unit,
                     const std::vector<RDB_HISTOGRAM_BIN>& bins);
  // A path object (kind 15). Its four sub-objects are added with
  // add_path_table (three times) and add_path_chart; commit() refuses a path
  // that lacks one of them.
  void add_path(const std::string& where, double slack_ns, bool violated);
  RDB_TABLE_WRITER add_path_table(const std::string& path_where, RDB_PATH_PART part,
                                  const std::vector<std::string>& columns,
                                  int kind = RDB_KIND_TABLE);
  void add_path_chart(const std::string& path_where, const std::string& x_axis,
                      const std::string& y_axis, int default_chart_type,
                      const std::vector<std::pair<std::string, long long>>& rows);
  // Marks an object added to this panel out of date (it is enabled by default).
  void set_enabled(const std::string& where, bool enabled);

  // Stores the panel, replacing a panel of the same name (which keeps its
  // place among the panels; a new panel goes last). Throws RDB_ERROR and
  // stores nothing if the panel is incomplete or the database fails.
  void commit();
  // Drops everything written so far.
  void abandon();

private:
  friend class RDB_WRITER;
  RDB_PANEL_WRITER(RDB_WRITER* writer, const std::string& name, const std::string& command);
  // Throws unless the panel is still being written.
  void check_open() const;
  // `properties` are packed as stored (see encode_properties) and last as
  // long as the panel state (interned in it, or constants); null for none.
  rdb_internal::OBJECT_STATE* add_object(std::string_view where, int kind,
                                         const std::string* properties);
  // Adds the `part`-th (counted from 1) of a path object's four parts.
  rdb_internal::OBJECT_STATE* add_path_part(const std::string& path_where, unsigned part,
                                            int kind, const std::string* properties);
  // A chart table at `where`, or, when `part` is not 0, the chart part of
  // the path object at `where`.
  void add_chart(const std::string& where, unsigned part, const std::string& x_axis,
                 const std::string& y_axis, int default_chart_type,
                 const std::vector<std::pair<std::string, long long>>& rows);
  void require_columns(const std::string& where, const std::vector<std::string>& columns) const;
  // Starts the rows of a table object; `titles` are packed and interned.
  RDB_TABLE_WRITER start_table(rdb_internal::OBJECT_STATE* object, size_t columns,
                               const std::string* titles);
  RDB_WRITER* m_writer = nullptr;
  std::unique_ptr<rdb_internal::PANEL_STATE> m_state;
};

class RDB_WRITER {
public:
  struct OPTIONS {
    int busy_timeout_ms = 5000;
    // Rows per stored page of a table (see docs/report-database.md).
    int page_rows = 256;
  };

  // Opens or creates the database (and its folder). An existing file must be
  // a report database of the same type and a schema this program knows;
  // otherwise RDB_ERROR is thrown and the file is left untouched.
  RDB_WRITER(const std::string& file, int report_type);
  RDB_WRITER(const std::string& file, int report_type, const OPTIONS& options);
  ~RDB_WRITER();
  RDB_WRITER(const RDB_WRITER&) = delete;
  RDB_WRITER& operator=(const RDB_WRITER&) = delete;

  const std::string& get_file() const { return m_file; }
  int get_report_type() const { return m_report_type; }

  // Starts a panel; only one panel is written at a time. The panel name may
  // not be empty or hold "||". `command` is remembered as the command that
  // produced the panel (for "regenerate").
  RDB_PANEL_WRITER begin_panel(const std::string& name, const std::string& command = "");

  std::vector<RDB_PANEL_INFO> list_panels();
  bool has_panel(const std::string& name);
  // False when there was no such panel.
  bool delete_panel(const std::string& name);
  // Returns the number of panels deleted.
  int delete_all_panels();
  // Out-of-date marks: a disabled panel shows as out of date in the viewer.
  bool set_panel_enabled(const std::string& name, bool enabled);
  // Applies to each named panel that exists; returns how many were changed.
  int set_panels_enabled(const std::vector<std::string>& names, bool enabled);
  void set_all_panels_enabled(bool enabled);
  std::string get_panel_command(const std::string& name);
  bool set_panel_command(const std::string& name, const std::string& command);
  // Writes a panel "Legal Notice" holding one legal-notice object.
  void write_legal_notice(const std::string& text);

private:
  friend class RDB_PANEL_WRITER;
  void create_or_check();
  // Brings a file of an older schema up to the current one.
  void upgrade_schema();
  void delete_panel_data(int64_t panel_id);
  void in_transaction(const std::function<void()>& work);

  std::string m_file;
  int m_report_type = 0;
  OPTIONS m_options;
  std::unique_ptr<rdb_internal::SQL_DATABASE> m_db;
  bool m_panel_open = false;
};
