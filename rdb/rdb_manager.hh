// The front end's access to the report databases of the open project.
//
// One process-wide manager caches one open report per report type. A caller
// fetches a report with get_rdb_report and hands it back with
// unget_rdb_report, both with a requester tag naming the caller; the pair
// counts uses. free_rdb_report drops the cached report so that the next get
// re-reads the file (the front end does that after every engine run). A
// report that is dropped while still in use stays alive until its last user
// hands it back; users that keep objects longer than a get/unget pair (a
// table model that reads rows while it is shown) hold the report with
// share_rdb_report instead.
#pragma once

#include "rdb/rdb_report.hh"

#include <map>
#include <set>
#include <memory>
#include <string>
#include <vector>

class DBMUI_MANAGER {
public:
  static DBMUI_MANAGER* get_instance();

  // The open project: its folder and current revision. Setting another
  // project or revision drops every cached report.
  void set_project(const std::string& project_dir, const std::string& revision);
  void clear_project();
  bool has_project() const { return !m_project_dir.empty(); }
  const std::string& get_project_dir() const { return m_project_dir; }
  const std::string& get_revision() const { return m_revision; }
  // The database file of a report type for the open project ("" without one).
  std::string get_report_file(int report_type) const;

  // The report of `report_type` (3 timing analyzer, 1 compiler) for the open
  // project, opened on first use and cached. Null when no project is open,
  // the file does not exist yet, or it cannot be read; get_last_error() then
  // says why (it is empty when there is simply no report yet).
  RDB_REPORT* get_rdb_report(int report_type, const std::string& requester);
  // Hands back a report fetched with get_rdb_report by the same requester.
  void unget_rdb_report(int report_type, const std::string& requester);
  // Drops the cached report of that type; the next get re-reads the file.
  void free_rdb_report(int report_type, const std::string& requester);
  // Shared ownership of the current report (opened if need be), for users
  // that outlive a get/unget pair. Null as for get_rdb_report.
  std::shared_ptr<RDB_REPORT> share_rdb_report(int report_type, const std::string& requester);

  const std::string& get_last_error() const { return m_last_error; }
  // Uses of the cached report of that type not yet handed back.
  int get_use_count(int report_type) const;

  // Timeout for locks held by the engine while a report is opened.
  void set_busy_timeout_ms(int timeout_ms) { m_options.busy_timeout_ms = timeout_ms; }

private:
  DBMUI_MANAGER() = default;
  struct ENTRY {
    std::shared_ptr<RDB_REPORT> report;
    std::multiset<std::string> users;
  };
  ENTRY* open_entry(int report_type);

  std::string m_project_dir;
  std::string m_revision;
  RDB_REPORT::OPTIONS m_options;
  std::map<int, ENTRY> m_current;
  // Reports dropped while still in use, until their users hand them back.
  std::vector<std::pair<int, ENTRY>> m_retired;
  std::string m_last_error;
};
