// A report database opened for reading.
//
// Opening reads the panel and object tables inside one read transaction that
// stays open for the report's lifetime: the report is a snapshot. While the
// engine replaces panels (each in its own transaction, in WAL mode), a report
// keeps seeing the panels as they were when it was opened, rows included;
// re-open it (DBMUI_MANAGER::free_rdb_report, then get_rdb_report) to see the
// new state. A report is meant for one thread.
#pragma once

#include "rdb/rdb_error.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_types.hh"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace rdb_internal {
class SQL_DATABASE;
class SQL_STATEMENT;
}

// The database file of a project revision: "<project dir>/vexa_db/<revision>.sta.rdb"
// for the timing report (type 3), ".map.rdb" for the compiler report (type 1).
// Throws RDB_ERROR for another type.
std::string rdb_report_file_path(const std::string& project_dir, const std::string& revision,
                                 int report_type);

// The main folder's name of a report type ("Timing Analyzer" for type 3,
// "Compiler" for type 1).
std::string rdb_main_folder_name(int report_type);

struct RDB_PANEL_INFO {
  std::string name;
  bool enabled = true;
  std::string command;  // the command that produced the panel ("" if unknown)
  int kind = 0;         // kind of the panel's top object
};

class RDB_REPORT {
public:
  struct OPTIONS {
    // How long to wait for a lock held by another process.
    int busy_timeout_ms = 2000;
  };

  // Opens `file` read-only. Throws RDB_ERROR naming the file when it does
  // not exist, is not a report database, has a newer schema, is damaged or
  // is locked.
  static std::unique_ptr<RDB_REPORT> open(const std::string& file);
  static std::unique_ptr<RDB_REPORT> open(const std::string& file, const OPTIONS& options);
  ~RDB_REPORT();
  RDB_REPORT(const RDB_REPORT&) = delete;
  RDB_REPORT& operator=(const RDB_REPORT&) = delete;

  const std::string& get_file() const { return m_file; }
  int get_report_type() const { return m_report_type; }
  int get_schema_version() const { return m_schema_version; }

  // The main folder (kind 1); its children are the panels, in panel order.
  RDB_FOLDER_OBJECT* get_main_folder() const { return m_main_folder; }
  // The panel of that name (a direct child of the main folder); a name with
  // "||" is also accepted as a path below the main folder. Null if absent.
  RDB_OBJECT* find_object(const std::string& panel_name) const;
  // The object at a full database path as returned by get_path(false).
  RDB_OBJECT* get_object_by_path(const std::string& path) const;

  std::vector<RDB_PANEL_INFO> get_panels() const;
  // The command that produced a panel ("" when none was recorded or no such panel).
  std::string get_panel_command(const std::string& panel_name) const;
  // The text of the report's legal notice objects, joined by newlines.
  std::string get_legal_notice() const;

  // Empty until a read after opening failed (a file damaged under us);
  // then the message of the first such failure.
  const std::string& get_error() const { return m_error; }

private:
  friend class RDB_TABLE_OBJECT;
  friend class RDB_TEXT_OBJECT;
  friend class RDB_LEGAL_OBJECT;
  RDB_REPORT() = default;
  void load(const OPTIONS& options);
  RDB_OBJECT* make_object(int kind);
  // Reads one page of rows; false (and the error recorded) on failure.
  bool read_page(const RDB_TABLE_OBJECT& table, int64_t page, std::vector<RDB_TABLE_ROW>& rows);
  // Runs decode on a page's blob; false (and the error recorded) when the
  // page is missing or decode fails.
  bool decode_page_blob(const RDB_TABLE_OBJECT& table, int64_t page,
                        const std::function<bool(std::string_view)>& decode);
  // Visits one column of a page's rows first .. last-1 (decode_page_column).
  bool read_page_column(const RDB_TABLE_OBJECT& table, int64_t page, int column, int64_t first, int64_t last,
                        const std::function<void(std::string_view)>& visit);
  std::string read_text(int64_t object_id);
  void record_error(const std::string& message);

  std::string m_file;
  int m_report_type = 0;
  int m_schema_version = 0;
  std::unique_ptr<rdb_internal::SQL_DATABASE> m_db;
  std::unique_ptr<rdb_internal::SQL_STATEMENT> m_page_query;
  std::unique_ptr<rdb_internal::SQL_STATEMENT> m_text_query;
  // Rows of small tables kept in their object row (schema version 2 on).
  std::unique_ptr<rdb_internal::SQL_STATEMENT> m_inline_query;
  std::vector<std::unique_ptr<RDB_OBJECT>> m_objects;
  RDB_FOLDER_OBJECT* m_main_folder = nullptr;
  std::vector<RDB_PANEL_INFO> m_panels;
  std::string m_error;
};
