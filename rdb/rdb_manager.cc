#include "rdb/rdb_manager.hh"

#include <filesystem>

DBMUI_MANAGER* DBMUI_MANAGER::get_instance() {
  static DBMUI_MANAGER instance;
  return &instance;
}

void DBMUI_MANAGER::set_project(const std::string& project_dir, const std::string& revision) {
  if (project_dir == m_project_dir && revision == m_revision)
    return;
  clear_project();
  m_project_dir = project_dir;
  m_revision = revision;
}

void DBMUI_MANAGER::clear_project() {
  for (auto& [type, entry] : m_current)
    if (!entry.users.empty())
      m_retired.emplace_back(type, std::move(entry));
  m_current.clear();
  m_project_dir.clear();
  m_revision.clear();
  m_last_error.clear();
}

std::string DBMUI_MANAGER::get_report_file(int report_type) const {
  if (m_project_dir.empty())
    return std::string();
  try {
    return rdb_report_file_path(m_project_dir, m_revision, report_type);
  } catch (const RDB_ERROR&) {
    return std::string();
  }
}

DBMUI_MANAGER::ENTRY* DBMUI_MANAGER::open_entry(int report_type) {
  auto it = m_current.find(report_type);
  if (it != m_current.end())
    return &it->second;
  m_last_error.clear();
  if (m_project_dir.empty())
    return nullptr;
  std::string file = get_report_file(report_type);
  if (file.empty()) {
    m_last_error = "unknown report type " + std::to_string(report_type);
    return nullptr;
  }
  std::error_code ec;
  if (!std::filesystem::exists(file, ec))
    return nullptr;  // no report written yet: not an error
  try {
    std::shared_ptr<RDB_REPORT> report = RDB_REPORT::open(file, m_options);
    ENTRY& entry = m_current[report_type];
    entry.report = std::move(report);
    return &entry;
  } catch (const RDB_ERROR& error) {
    m_last_error = error.what();
    return nullptr;
  }
}

RDB_REPORT* DBMUI_MANAGER::get_rdb_report(int report_type, const std::string& requester) {
  ENTRY* entry = open_entry(report_type);
  if (!entry)
    return nullptr;
  entry->users.insert(requester);
  return entry->report.get();
}

void DBMUI_MANAGER::unget_rdb_report(int report_type, const std::string& requester) {
  auto it = m_current.find(report_type);
  if (it != m_current.end()) {
    auto user = it->second.users.find(requester);
    if (user != it->second.users.end()) {
      it->second.users.erase(user);
      return;
    }
  }
  for (auto retired = m_retired.begin(); retired != m_retired.end(); ++retired) {
    if (retired->first != report_type)
      continue;
    auto user = retired->second.users.find(requester);
    if (user != retired->second.users.end()) {
      retired->second.users.erase(user);
      if (retired->second.users.empty())
        m_retired.erase(retired);
      return;
    }
  }
}

void DBMUI_MANAGER::free_rdb_report(int report_type, const std::string& /*requester*/) {
  auto it = m_current.find(report_type);
  if (it == m_current.end())
    return;
  if (!it->second.users.empty())
    m_retired.emplace_back(report_type, std::move(it->second));
  m_current.erase(it);
}

std::shared_ptr<RDB_REPORT> DBMUI_MANAGER::share_rdb_report(int report_type,
                                                            const std::string& /*requester*/) {
  ENTRY* entry = open_entry(report_type);
  return entry ? entry->report : nullptr;
}

int DBMUI_MANAGER::get_use_count(int report_type) const {
  auto it = m_current.find(report_type);
  return it == m_current.end() ? 0 : static_cast<int>(it->second.users.size());
}
