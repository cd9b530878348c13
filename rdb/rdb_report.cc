#include "rdb/rdb_report.hh"

#include "rdb/rdb_codec.hh"
#include "rdb/rdb_sqlite.hh"

#include <algorithm>
#include <filesystem>
#include <unordered_map>

using namespace rdb_internal;

namespace {
// An object of a kind this library does not know: kept in the tree so that
// paths and positions stay right, shown by nobody.
class RDB_OTHER_OBJECT : public RDB_OBJECT {};

std::vector<std::string> split_path(const std::string& path) {
  std::vector<std::string> parts;
  size_t pos = 0;
  for (;;) {
    size_t next = path.find(RDB_PATH_SEPARATOR, pos);
    if (next == std::string::npos) {
      parts.push_back(path.substr(pos));
      return parts;
    }
    parts.push_back(path.substr(pos, next - pos));
    pos = next + 2;
  }
}
}  // namespace

std::string rdb_main_folder_name(int report_type) {
  switch (report_type) {
  case RDB_TIMING_REPORT:
    return "Timing Analyzer";
  case RDB_COMPILER_REPORT:
    return "Compiler";
  default:
    throw RDB_ERROR("", "unknown report type " + std::to_string(report_type));
  }
}

std::string rdb_report_file_path(const std::string& project_dir, const std::string& revision,
                                 int report_type) {
  const char* suffix = nullptr;
  switch (report_type) {
  case RDB_TIMING_REPORT:
    suffix = ".sta.rdb";
    break;
  case RDB_COMPILER_REPORT:
    suffix = ".map.rdb";
    break;
  default:
    throw RDB_ERROR("", "unknown report type " + std::to_string(report_type));
  }
  return (std::filesystem::path(project_dir) / "vexa_db" / (revision + suffix)).string();
}

std::unique_ptr<RDB_REPORT> RDB_REPORT::open(const std::string& file) {
  return open(file, OPTIONS());
}

std::unique_ptr<RDB_REPORT> RDB_REPORT::open(const std::string& file, const OPTIONS& options) {
  std::error_code ec;
  auto status = std::filesystem::status(file, ec);
  if (ec || !std::filesystem::exists(status))
    throw RDB_ERROR(file, "no such file");
  if (!std::filesystem::is_regular_file(status))
    throw RDB_ERROR(file, "not a regular file");
  std::unique_ptr<RDB_REPORT> report(new RDB_REPORT);
  report->m_file = file;
  report->load(options);
  return report;
}

RDB_REPORT::~RDB_REPORT() {
  // Statements go before the connection that made them.
  m_page_query.reset();
  m_text_query.reset();
  m_db.reset();
}

RDB_OBJECT* RDB_REPORT::make_object(int kind) {
  std::unique_ptr<RDB_OBJECT> object;
  switch (kind) {
  case RDB_KIND_FOLDER:
    object = std::make_unique<RDB_FOLDER_OBJECT>();
    break;
  case RDB_KIND_LEGAL_NOTICE:
    object = std::make_unique<RDB_LEGAL_OBJECT>();
    break;
  case RDB_KIND_TEXT:
    object = std::make_unique<RDB_TEXT_OBJECT>();
    break;
  case RDB_KIND_TABLE:
  case RDB_KIND_HEADERLESS_TABLE:
  case RDB_KIND_DETAIL_TABLE:
    object = std::make_unique<RDB_TABLE_OBJECT>();
    break;
  case RDB_KIND_CHART_TABLE:
    object = std::make_unique<RDB_CHART_TABLE_OBJECT>();
    break;
  case RDB_KIND_EMBEDDED:
    object = std::make_unique<RDB_EMBEDDED_OBJECT>();
    break;
  case RDB_KIND_TCL_TABLE:
    object = std::make_unique<RDB_TCL_TABLE_OBJECT>();
    break;
  case RDB_KIND_HISTOGRAM:
    object = std::make_unique<RDB_HISTOGRAM_TABLE_OBJECT>();
    break;
  case RDB_KIND_PATH:
    object = std::make_unique<RDB_PATH_OBJECT>();
    break;
  default:
    object = std::make_unique<RDB_OTHER_OBJECT>();
    break;
  }
  object->m_report = this;
  object->m_kind = kind;
  m_objects.push_back(std::move(object));
  return m_objects.back().get();
}

void RDB_REPORT::load(const OPTIONS& options) {
  m_db = std::make_unique<SQL_DATABASE>(m_file, false, false, options.busy_timeout_ms);
  SQL_DATABASE& db = *m_db;
  // The read transaction stays open: it is the report's snapshot.
  db.exec("BEGIN");
  int64_t application_id = db.query_int("PRAGMA application_id");
  m_schema_version = static_cast<int>(db.query_int("PRAGMA user_version"));
  if (application_id != RDB_APPLICATION_ID) {
    bool empty = db.query_int("SELECT count(*) FROM sqlite_schema") == 0;
    throw RDB_ERROR(m_file, empty ? "not a report database (the database is empty)"
                                  : "not a report database (an SQLite database of another kind)");
  }
  if (m_schema_version > RDB_SCHEMA_VERSION)
    throw RDB_ERROR(m_file, "written by a newer version of the program (schema version " +
                                std::to_string(m_schema_version) +
                                "; this program reads up to version " +
                                std::to_string(RDB_SCHEMA_VERSION) + ")");
  if (m_schema_version < 1)
    throw RDB_ERROR(m_file, "not a report database (no schema version)");

  std::string main_name;
  {
    SQL_STATEMENT meta(db, "SELECT key, value FROM rdb_meta");
    while (meta.step()) {
      std::string key = meta.column_text(0);
      if (key == "report_type")
        m_report_type = std::atoi(meta.column_text(1).c_str());
      else if (key == "main_folder")
        main_name = meta.column_text(1);
    }
  }
  if (main_name.empty())
    throw RDB_ERROR(m_file, "the file is damaged (the main folder's name is missing)");

  m_main_folder = static_cast<RDB_FOLDER_OBJECT*>(make_object(RDB_KIND_FOLDER));
  m_main_folder->m_name = main_name;

  std::unordered_map<int64_t, size_t> panel_index;
  {
    SQL_STATEMENT panels(db, "SELECT panel_id, name, enabled, command FROM rdb_panel "
                             "ORDER BY position");
    while (panels.step()) {
      panel_index[panels.column_int(0)] = m_panels.size();
      m_panels.push_back(RDB_PANEL_INFO{panels.column_text(1), panels.column_int(2) != 0,
                                        panels.column_text(3), 0});
    }
  }

  struct LINK {
    RDB_OBJECT* object;
    size_t panel;
    int64_t parent_id;  // 0: the panel's top object
    int64_t position;
  };
  std::vector<LINK> links;
  std::unordered_map<int64_t, RDB_OBJECT*> by_id;
  {
    // Version 1 files keep titles in rdb_column (read below) and every row
    // in rdb_row_page.
    bool packed = m_schema_version >= 2;
    SQL_STATEMENT objects(db, packed ? "SELECT object_id, panel_id, parent_id, position, kind, "
                                       "name, enabled, properties, titles, "
                                       "inline_rows IS NOT NULL FROM rdb_object"
                                     : "SELECT object_id, panel_id, parent_id, position, kind, "
                                       "name, enabled, properties FROM rdb_object");
    while (objects.step()) {
      auto panel = panel_index.find(objects.column_int(1));
      if (panel == panel_index.end())
        continue;
      RDB_OBJECT* object = make_object(static_cast<int>(objects.column_int(4)));
      object->m_object_id = objects.column_int(0);
      object->m_name = objects.column_text(5);
      object->m_enabled = objects.column_int(6) != 0 && m_panels[panel->second].enabled;
      object->m_properties = decode_properties(objects.column_text(7));
      if (auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(object)) {
        table->m_data_rows = std::max<int64_t>(0, table->property_int("rows"));
        table->m_page_rows = static_cast<int>(
            std::max<int64_t>(1, table->property_int("page_rows", RDB_DEFAULT_PAGE_ROWS)));
        if (packed) {
          if (!decode_titles(objects.column_blob(8), table->m_columns))
            throw RDB_ERROR(m_file, "the file is damaged (the column titles of \"" +
                                        object->m_name + "\" are malformed)");
          table->m_inline_rows = objects.column_int(9) != 0;
        }
      }
      by_id[object->m_object_id] = object;
      links.push_back(LINK{object, panel->second,
                           objects.column_is_null(2) ? 0 : objects.column_int(2),
                           objects.column_int(3)});
    }
  }
  std::sort(links.begin(), links.end(), [](const LINK& a, const LINK& b) {
    return a.panel != b.panel ? a.panel < b.panel : a.position < b.position;
  });
  for (const LINK& link : links) {
    RDB_OBJECT* parent = m_main_folder;
    if (link.parent_id != 0) {
      auto it = by_id.find(link.parent_id);
      if (it == by_id.end())
        throw RDB_ERROR(m_file, "the file is damaged (an object has no parent)");
      parent = it->second;
    } else {
      m_panels[link.panel].kind = link.object->get_type();
    }
    link.object->m_parent = parent;
    parent->m_children.push_back(link.object);
  }

  if (m_schema_version < 2) {
    SQL_STATEMENT columns(db, "SELECT object_id, title FROM rdb_column ORDER BY object_id, col");
    while (columns.step()) {
      auto it = by_id.find(columns.column_int(0));
      if (it == by_id.end())
        continue;
      if (auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(it->second))
        table->m_columns.push_back(columns.column_text(1));
    }
  }
  {
    SQL_STATEMENT commands(db, "SELECT object_id, gui_name, template FROM rdb_command "
                               "ORDER BY object_id, cmd");
    while (commands.step()) {
      auto it = by_id.find(commands.column_int(0));
      if (it == by_id.end())
        continue;
      if (auto* table = dynamic_cast<RDB_TCL_TABLE_OBJECT*>(it->second))
        table->m_commands.push_back(RDB_TCL_COMMAND{commands.column_text(1),
                                                    commands.column_text(2)});
    }
  }
  m_page_query = std::make_unique<SQL_STATEMENT>(db, "SELECT rows FROM rdb_row_page "
                                                     "WHERE page_key = ?");
  m_text_query = std::make_unique<SQL_STATEMENT>(db, "SELECT body FROM rdb_text "
                                                     "WHERE object_id = ?");
  if (m_schema_version >= 2)
    m_inline_query = std::make_unique<SQL_STATEMENT>(db, "SELECT inline_rows FROM rdb_object "
                                                         "WHERE object_id = ?");
}

void RDB_REPORT::record_error(const std::string& message) {
  if (m_error.empty())
    m_error = message;
}

bool RDB_REPORT::decode_page_blob(const RDB_TABLE_OBJECT& table, int64_t page,
                                  const std::function<bool(std::string_view)>& decode) {
  SQL_STATEMENT* query = m_page_query.get();
  try {
    if (table.m_inline_rows && m_inline_query) {
      query = m_inline_query.get();
      query->reset();
      query->bind(1, table.get_object_id());
    } else {
      query->reset();
      query->bind(1, page_key(table.get_object_id(), page));
    }
    bool found = query->step() && !query->column_is_null(0);
    // The blob lives until the reset.
    bool ok = found && decode(query->column_blob(0));
    query->reset();
    if (!ok)
      record_error(RDB_ERROR(m_file, "the file is damaged (rows of \"" + table.get_path() +
                                         "\" are " + (found ? "malformed" : "missing") + ")")
                       .what());
    return ok;
  } catch (const RDB_ERROR& error) {
    query->reset();
    record_error(error.what());
    return false;
  }
}

bool RDB_REPORT::read_page(const RDB_TABLE_OBJECT& table, int64_t page,
                           std::vector<RDB_TABLE_ROW>& rows) {
  return decode_page_blob(table, page, [&](std::string_view blob) {
    return decode_page(blob, table.m_columns.size(), rows);
  });
}

bool RDB_REPORT::read_page_column(const RDB_TABLE_OBJECT& table, int64_t page, int column, int64_t first,
                                  int64_t last, const std::function<void(std::string_view)>& visit) {
  return decode_page_blob(table, page, [&](std::string_view blob) {
    return decode_page_column(blob, table.m_columns.size(), static_cast<size_t>(column), first, last, visit);
  });
}

std::string RDB_REPORT::read_text(int64_t object_id) {
  try {
    m_text_query->reset();
    m_text_query->bind(1, object_id);
    std::string text = m_text_query->step() ? m_text_query->column_text(0) : std::string();
    m_text_query->reset();
    return text;
  } catch (const RDB_ERROR& error) {
    m_text_query->reset();
    record_error(error.what());
    return std::string();
  }
}

RDB_OBJECT* RDB_REPORT::find_object(const std::string& panel_name) const {
  if (RDB_OBJECT* panel = m_main_folder->find_child(panel_name))
    return panel;
  if (panel_name.find(RDB_PATH_SEPARATOR) != std::string::npos)
    return get_object_by_path(m_main_folder->get_name() + RDB_PATH_SEPARATOR + panel_name);
  return nullptr;
}

RDB_OBJECT* RDB_REPORT::get_object_by_path(const std::string& path) const {
  std::vector<std::string> parts = split_path(path);
  if (parts.empty() || parts[0] != m_main_folder->get_name())
    return nullptr;
  RDB_OBJECT* object = m_main_folder;
  for (size_t i = 1; i < parts.size() && object; ++i)
    object = object->find_child(parts[i]);
  return object;
}

std::vector<RDB_PANEL_INFO> RDB_REPORT::get_panels() const { return m_panels; }

std::string RDB_REPORT::get_panel_command(const std::string& panel_name) const {
  for (const RDB_PANEL_INFO& panel : m_panels)
    if (panel.name == panel_name)
      return panel.command;
  return std::string();
}

std::string RDB_REPORT::get_legal_notice() const {
  std::string text;
  for (const auto& object : m_objects) {
    if (auto* legal = dynamic_cast<const RDB_LEGAL_OBJECT*>(object.get())) {
      if (!text.empty())
        text += '\n';
      text += legal->get_text();
    }
  }
  return text;
}
