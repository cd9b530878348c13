#include "rdb/rdb_writer.hh"

#include "rdb/rdb_codec.hh"
#include "rdb/rdb_sqlite.hh"
#include "rdb/rdb_tcl_cmd.hh"

#include <deque>
#include <filesystem>
#include <optional>
#include <unordered_map>

using namespace rdb_internal;

namespace rdb_internal {

// The sub-objects every path object needs, in the order commit() names a
// missing one.
constexpr const char* kPathParts[] = {RDB_PATH_SUMMARY_NAME, RDB_PATH_CHART_NAME,
                                      RDB_PATH_ARRIVAL_NAME, RDB_PATH_REQUIRED_NAME};

struct OBJECT_STATE {
  int64_t id = 0;
  int64_t parent_id = 0;  // 0: the panel's top object
  int64_t position = 0;
  int kind = 0;
  std::string path;  // relative to the panel
  // The last part of the path (the panel's name for the top object): a view,
  // since the deque never moves an object and the panel outlives them all.
  std::string_view name;
  bool enabled = true;
  // Packed as stored (see encode_properties): a map per object cost more to
  // build and free than the rest of the object. A table's "rows" and
  // "page_rows" are merged in when the panel is committed.
  std::string properties;
  // A table's column titles, packed as stored (see encode_titles).
  std::string titles;
  std::vector<RDB_TCL_COMMAND> commands;
  std::optional<std::string> text;
  // The rows of a small one-page table, stored in the object row itself.
  std::optional<std::string> inline_rows;
  int children = 0;
  // For a path object: which of its four sub-objects were added (bit i for
  // the i-th of kPathParts), so that commit() need not look each one up.
  unsigned path_parts = 0;
  TABLE_STATE* table = nullptr;
};

struct TABLE_STATE {
  PANEL_STATE* panel = nullptr;
  OBJECT_STATE* object = nullptr;
  size_t columns = 0;
  int page_rows = RDB_DEFAULT_PAGE_ROWS;
  int64_t rows = 0;
  int64_t page = 0;
  int rows_in_page = 0;
  std::string buffer;
  std::string blob;
  // Stores the rows buffered so far as a page. The last flush of a table
  // that never filled a page keeps a small page in the object instead.
  void flush(bool last = false);
};

struct PANEL_STATE {
  SQL_DATABASE* db = nullptr;
  std::string name;
  std::string command;
  int page_rows = RDB_DEFAULT_PAGE_ROWS;
  int64_t next_id = 1;
  // A deque keeps the objects in place without one allocation each.
  std::deque<OBJECT_STATE> objects;
  // Looked up several times per object added: hashed, not ordered. The keys
  // view the objects' own paths, which the deque never moves.
  std::unordered_map<std::string_view, OBJECT_STATE*> by_path;
  std::vector<std::unique_ptr<TABLE_STATE>> tables;
  std::optional<SQL_STATEMENT> insert_page;
  // The parent of the object added last: a path's four parts follow it, and
  // reaching their parent again need not look up every folder above it.
  OBJECT_STATE* last_parent = nullptr;
};

void TABLE_STATE::flush(bool last) {
  if (rows_in_page == 0)
    return;
  blob.clear();
  put_varint(blob, static_cast<uint64_t>(rows_in_page));
  blob += buffer;
  if (last && page == 0 && blob.size() <= RDB_INLINE_ROWS_BYTES) {
    object->inline_rows = std::move(blob);
    blob.clear();
    rows_in_page = 0;
    buffer.clear();
    return;
  }
  panel->insert_page->bind(1, page_key(object->id, page));
  panel->insert_page->bind_blob(2, blob.data(), blob.size());
  panel->insert_page->run();
  ++page;
  rows_in_page = 0;
  buffer.clear();
}

}  // namespace rdb_internal

// ---------------------------------------------------------------------------
// Table rows

void RDB_TABLE_WRITER::add_row(const std::string_view* cells, size_t cell_count,
                               const RDB_CELL_COLOR* colors, size_t color_count) {
  if (!m_state)
    throw RDB_ERROR("", "row added to a table that is not being written");
  TABLE_STATE& table = *m_state;
  const std::string& file = table.panel->db->file();
  if (cell_count > table.columns)
    throw RDB_ERROR(file, "a row of \"" + table.object->path + "\" has " +
                              std::to_string(cell_count) + " cells but the table has " +
                              std::to_string(table.columns) + " columns");
  for (size_t i = 0; i < color_count; ++i)
    if (colors[i].column < 0 || static_cast<size_t>(colors[i].column) >= table.columns)
      throw RDB_ERROR(file, "a cell colour of \"" + table.object->path + "\" names column " +
                                std::to_string(colors[i].column) + ", outside the table");
  encode_row(table.buffer, cells, cell_count, table.columns, colors, color_count);
  ++table.rows;
  if (++table.rows_in_page >= table.page_rows)
    table.flush();
}

void RDB_TABLE_WRITER::add_row(const std::vector<std::string>& cells,
                               const std::vector<RDB_CELL_COLOR>& colors) {
  std::vector<std::string_view> views(cells.begin(), cells.end());
  add_row(views.data(), views.size(), colors.data(), colors.size());
}

void RDB_TABLE_WRITER::add_row(std::initializer_list<std::string_view> cells,
                               std::initializer_list<RDB_CELL_COLOR> colors) {
  add_row(cells.begin(), cells.size(), colors.begin(), colors.size());
}

int64_t RDB_TABLE_WRITER::get_number_of_rows() const { return m_state ? m_state->rows : 0; }

int RDB_TABLE_WRITER::get_number_of_columns() const {
  return m_state ? static_cast<int>(m_state->columns) : 0;
}

// ---------------------------------------------------------------------------
// Panels

RDB_PANEL_WRITER::RDB_PANEL_WRITER(RDB_WRITER* writer, const std::string& name,
                                   const std::string& command)
    : m_writer(writer), m_state(std::make_unique<PANEL_STATE>()) {
  m_state->db = writer->m_db.get();
  m_state->name = name;
  m_state->command = command;
  m_state->page_rows = writer->m_options.page_rows < 1 ? 1 : writer->m_options.page_rows;
}

RDB_PANEL_WRITER::RDB_PANEL_WRITER(RDB_PANEL_WRITER&& other) noexcept
    : m_writer(std::exchange(other.m_writer, nullptr)), m_state(std::move(other.m_state)) {}

RDB_PANEL_WRITER& RDB_PANEL_WRITER::operator=(RDB_PANEL_WRITER&& other) noexcept {
  if (this != &other) {
    abandon();
    m_writer = std::exchange(other.m_writer, nullptr);
    m_state = std::move(other.m_state);
  }
  return *this;
}

RDB_PANEL_WRITER::~RDB_PANEL_WRITER() { abandon(); }

const std::string& RDB_PANEL_WRITER::get_panel_name() const {
  static const std::string none;
  return m_state ? m_state->name : none;
}

void RDB_PANEL_WRITER::abandon() {
  if (!m_writer)
    return;
  m_state.reset();  // finalises the page statement before the rollback
  sqlite3_exec(m_writer->m_db->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
  m_writer->m_panel_open = false;
  m_writer = nullptr;
}

int64_t RDB_PANEL_WRITER::add_object(const std::string& where, int kind,
                                     std::string properties) {
  if (!m_writer)
    throw RDB_ERROR("", "object added to a panel that was already committed or abandoned");
  PANEL_STATE& panel = *m_state;
  const std::string& file = m_writer->m_file;
  if (panel.by_path.count(where))
    throw RDB_ERROR(file, "panel \"" + panel.name + "\" already has an object \"" + where + "\"");

  auto create = [&](const std::string& path, const std::string& name, int object_kind,
                    OBJECT_STATE* parent) {
    OBJECT_STATE* object = &panel.objects.emplace_back();
    object->id = panel.next_id++;
    object->kind = object_kind;
    object->path = path;
    object->name = path.empty() ? std::string_view(panel.name)
                                : std::string_view(object->path).substr(path.size() - name.size());
    if (parent) {
      object->parent_id = parent->id;
      object->position = parent->children++;
    }
    panel.by_path[object->path] = object;
    return object;
  };

  OBJECT_STATE* parent = nullptr;
  std::string name = panel.name;
  if (!where.empty()) {
    auto top = panel.by_path.find("");
    parent = top == panel.by_path.end() ? create("", panel.name, RDB_KIND_FOLDER, nullptr)
                                        : top->second;
    std::string prefix;
    size_t pos = 0;
    size_t last_separator = where.rfind(RDB_PATH_SEPARATOR);
    // (Not for the top object, whose empty path would let "||X" through.)
    if (panel.last_parent && !panel.last_parent->path.empty() &&
        last_separator != std::string::npos &&
        std::string_view(where).substr(0, last_separator) == panel.last_parent->path) {
      // Every part above was checked when that parent was reached; only the
      // last part is left, and the prefix is not needed for it.
      parent = panel.last_parent;
      pos = last_separator + 2;
    }
    for (;;) {
      size_t next = where.find(RDB_PATH_SEPARATOR, pos);
      std::string part = where.substr(pos, next == std::string::npos ? next : next - pos);
      if (part.empty())
        throw RDB_ERROR(file, "an object path of panel \"" + panel.name + "\" has an empty name: \"" +
                                  where + "\"");
      bool last = next == std::string::npos;
      unsigned path_part = 0;
      if (parent->kind == RDB_KIND_PATH && last)
        for (unsigned i = 0; i < 4; ++i)
          if (part == kPathParts[i])
            path_part = 1u << i;
      bool path_child = path_part != 0;
      if (parent->kind != RDB_KIND_FOLDER && !path_child)
        throw RDB_ERROR(file, "cannot add \"" + where + "\" to panel \"" + panel.name +
                                  "\": \"" + (parent->path.empty() ? panel.name : parent->path) +
                                  "\" is not a folder");
      prefix += prefix.empty() ? part : RDB_PATH_SEPARATOR + part;
      if (last) {
        name = part;
        // The duplicate check above makes this the part's only object.
        parent->path_parts |= path_part;
        panel.last_parent = parent;
        break;
      }
      auto existing = panel.by_path.find(prefix);
      parent = existing == panel.by_path.end() ? create(prefix, part, RDB_KIND_FOLDER, parent)
                                               : existing->second;
      pos = next + 2;
    }
  }
  OBJECT_STATE* object = create(where, name, kind, parent);
  object->properties = std::move(properties);
  return object->id;
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::start_table(const std::vector<std::string>& columns,
                                               bool titled) {
  PANEL_STATE& panel = *m_state;
  OBJECT_STATE* object = &panel.objects.back();  // the table just added
  object->titles = encode_titles(titled ? columns : std::vector<std::string>(columns.size()));
  auto table = std::make_unique<TABLE_STATE>();
  table->panel = &panel;
  table->object = object;
  table->columns = columns.size();
  table->page_rows = panel.page_rows;
  object->table = table.get();
  panel.tables.push_back(std::move(table));
  return RDB_TABLE_WRITER(panel.tables.back().get());
}

void RDB_PANEL_WRITER::require_columns(const std::string& where,
                                       const std::vector<std::string>& columns) const {
  if (columns.empty())
    throw RDB_ERROR(m_writer ? m_writer->m_file : "",
                    "the table \"" + where + "\" of panel \"" + get_panel_name() +
                        "\" has no columns");
}

void RDB_PANEL_WRITER::add_folder(const std::string& where) {
  add_object(where, RDB_KIND_FOLDER, {});
}

void RDB_PANEL_WRITER::add_text(const std::string& where, const std::string& text, bool html) {
  add_object(where, RDB_KIND_TEXT, html ? "html=1\n" : "html=0\n");
  m_state->objects.back().text = text;
}

void RDB_PANEL_WRITER::add_legal_notice(const std::string& where, const std::string& text) {
  add_object(where, RDB_KIND_LEGAL_NOTICE, {});
  m_state->objects.back().text = text;
}

void RDB_PANEL_WRITER::add_embedded(const std::string& where, int embedded_type,
                                    const std::string& info) {
  add_object(where, RDB_KIND_EMBEDDED,
             encode_properties({{"embedded_type", std::to_string(embedded_type)}, {"info", info}}));
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::add_table(const std::string& where, int kind,
                                             const std::vector<std::string>& columns) {
  if (kind != RDB_KIND_TABLE && kind != RDB_KIND_HEADERLESS_TABLE && kind != RDB_KIND_DETAIL_TABLE)
    throw RDB_ERROR("", "table kind " + std::to_string(kind) + " is not 4, 7 or 8");
  require_columns(where, columns);
  add_object(where, kind, {});
  return start_table(columns, kind != RDB_KIND_HEADERLESS_TABLE);
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::add_tcl_table(const std::string& where,
                                                 const std::vector<std::string>& columns,
                                                 const std::vector<RDB_TCL_COMMAND>& commands) {
  const std::string& file = m_writer ? m_writer->m_file : std::string();
  if (commands.size() > 99)
    throw RDB_ERROR(file, "the Tcl table \"" + where + "\" has " + std::to_string(commands.size()) +
                              " commands; at most 99 are allowed");
  for (const RDB_TCL_COMMAND& command : commands) {
    std::string error;
    rdb_fill_command_template(command.command_template, columns, {}, &error);
    if (!error.empty())
      throw RDB_ERROR(file, "command \"" + command.gui_name + "\" of the Tcl table \"" + where +
                                "\": " + error);
  }
  require_columns(where, columns);
  add_object(where, RDB_KIND_TCL_TABLE, {});
  m_state->objects.back().commands = commands;
  return start_table(columns, true);
}

void RDB_PANEL_WRITER::add_chart_table(const std::string& where, const std::string& x_axis,
                                       const std::string& y_axis, int default_chart_type,
                                       const std::vector<std::pair<std::string, long long>>& rows) {
  add_object(where, RDB_KIND_CHART_TABLE,
             encode_properties({{"x_axis", x_axis},
                                {"y_axis", y_axis},
                                {"chart_type", std::to_string(default_chart_type)}}));
  RDB_TABLE_WRITER table = start_table({x_axis, y_axis}, true);
  for (const auto& [label, count] : rows)
    table.add_row({std::string_view(label), std::string_view(std::to_string(count))});
}

void RDB_PANEL_WRITER::add_histogram(const std::string& where, const std::string& x_label,
                                     const std::string& y_label, int x_scale,
                                     const std::string& x_unit,
                                     const std::vector<RDB_HISTOGRAM_BIN>& bins) {
  add_object(where, RDB_KIND_HISTOGRAM,
             encode_properties({{"x_label", x_label},
                                {"y_label", y_label},
                                {"x_scale", std::to_string(x_scale == 0 ? 1 : x_scale)},
                                {"x_unit", x_unit}}));
  RDB_TABLE_WRITER table = start_table({"From", "To", "Count"}, true);
  for (const RDB_HISTOGRAM_BIN& bin : bins) {
    std::string from = format_double(bin.from), to = format_double(bin.to),
                value = std::to_string(bin.value);
    if (bin.color == RDB_NO_COLOR)
      table.add_row({std::string_view(from), std::string_view(to), std::string_view(value)});
    else
      table.add_row({std::string_view(from), std::string_view(to), std::string_view(value)},
                    {RDB_CELL_COLOR{2, RDB_NO_COLOR, bin.color}});
  }
}

void RDB_PANEL_WRITER::add_path(const std::string& where, double slack_ns, bool violated) {
  // Keys in the order encode_properties writes them; a formatted number
  // needs no escapes.
  std::string properties = "slack=";
  properties += format_double(slack_ns);
  properties += violated ? "\nviolated=1\n" : "\nviolated=0\n";
  add_object(where, RDB_KIND_PATH, std::move(properties));
}

static std::string path_child(const std::string& path_where, const char* name) {
  return path_where.empty() ? std::string(name) : path_where + RDB_PATH_SEPARATOR + name;
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::add_path_table(const std::string& path_where,
                                                  RDB_PATH_PART part,
                                                  const std::vector<std::string>& columns,
                                                  int kind) {
  const char* name = part == RDB_PATH_PART::SUMMARY   ? RDB_PATH_SUMMARY_NAME
                     : part == RDB_PATH_PART::ARRIVAL ? RDB_PATH_ARRIVAL_NAME
                                                      : RDB_PATH_REQUIRED_NAME;
  return add_table(path_child(path_where, name), kind, columns);
}

void RDB_PANEL_WRITER::add_path_chart(const std::string& path_where, const std::string& x_axis,
                                      const std::string& y_axis, int default_chart_type,
                                      const std::vector<std::pair<std::string, long long>>& rows) {
  add_chart_table(path_child(path_where, RDB_PATH_CHART_NAME), x_axis, y_axis,
                  default_chart_type, rows);
}

void RDB_PANEL_WRITER::set_enabled(const std::string& where, bool enabled) {
  if (!m_state)
    return;
  auto it = m_state->by_path.find(where);
  if (it == m_state->by_path.end())
    throw RDB_ERROR(m_writer ? m_writer->m_file : "",
                    "panel \"" + m_state->name + "\" has no object \"" + where + "\"");
  it->second->enabled = enabled;
}

void RDB_PANEL_WRITER::commit() {
  if (!m_writer)
    throw RDB_ERROR("", "panel committed twice or after it was abandoned");
  PANEL_STATE& panel = *m_state;
  SQL_DATABASE& db = *m_writer->m_db;
  try {
    if (!panel.by_path.count(""))
      throw RDB_ERROR(db.file(), "panel \"" + panel.name + "\" is empty");
    for (const OBJECT_STATE& entry : panel.objects) {
      const OBJECT_STATE* object = &entry;
      if (object->kind != RDB_KIND_PATH)
        continue;
      for (unsigned i = 0; i < 4; ++i)
        if (!(object->path_parts & (1u << i))) {
          const char* part = kPathParts[i];
          throw RDB_ERROR(db.file(), "the path \"" + panel.name +
                                         (object->path.empty() ? "" : "||" + object->path) +
                                         "\" lacks its \"" + part + "\"");
        }
    }
    for (const auto& table : panel.tables) {
      table->flush(true);
      std::string& properties = table->object->properties;
      if (properties.empty()) {
        // Most tables have no other property: "page_rows" sorts before "rows".
        properties.append("page_rows=").append(std::to_string(table->page_rows));
        properties.append("\nrows=").append(std::to_string(table->rows)).append("\n");
      } else {
        std::map<std::string, std::string> merged = decode_properties(properties);
        merged["rows"] = std::to_string(table->rows);
        merged["page_rows"] = std::to_string(table->page_rows);
        properties = encode_properties(merged);
      }
    }

    int64_t position = 0;
    {
      SQL_STATEMENT old(db, "SELECT panel_id, position FROM rdb_panel WHERE name = ?");
      old.bind(1, panel.name);
      if (old.step()) {
        int64_t old_id = old.column_int(0);
        position = old.column_int(1);
        old.reset();
        m_writer->delete_panel_data(old_id);
      } else {
        position = db.query_int("SELECT coalesce(max(position), 0) + 1 FROM rdb_panel");
      }
    }
    SQL_STATEMENT insert_panel(db, "INSERT INTO rdb_panel(name, position, enabled, command, "
                                   "first_object, last_object) VALUES(?, ?, 1, ?, ?, ?)");
    insert_panel.bind(1, panel.name).bind(2, position).bind(3, panel.command)
        .bind(4, panel.objects.front().id).bind(5, panel.objects.back().id).run();
    int64_t panel_id = db.last_insert_rowid();

    SQL_STATEMENT insert_object(db, "INSERT INTO rdb_object(object_id, panel_id, parent_id, "
                                    "position, kind, name, enabled, properties, titles, "
                                    "inline_rows) VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    SQL_STATEMENT insert_command(db, "INSERT INTO rdb_command(object_id, cmd, gui_name, template) "
                                     "VALUES(?, ?, ?, ?)");
    SQL_STATEMENT insert_text(db, "INSERT INTO rdb_text(object_id, body) VALUES(?, ?)");
    for (const OBJECT_STATE& entry : panel.objects) {
      const OBJECT_STATE* object = &entry;
      insert_object.bind(1, object->id).bind(2, panel_id);
      if (object->parent_id)
        insert_object.bind(3, object->parent_id);
      else
        insert_object.bind_null(3);
      insert_object.bind(4, object->position)
          .bind(5, object->kind)
          .bind(6, object->name)
          .bind(7, object->enabled ? 1 : 0)
          .bind(8, object->properties);
      if (object->table) {
        insert_object.bind_blob(9, object->titles.data(), object->titles.size());
      } else {
        insert_object.bind_null(9);
      }
      if (object->inline_rows)
        insert_object.bind_blob(10, object->inline_rows->data(), object->inline_rows->size());
      else
        insert_object.bind_null(10);
      insert_object.run();
      for (size_t i = 0; i < object->commands.size(); ++i)
        insert_command.bind(1, object->id).bind(2, static_cast<int64_t>(i))
            .bind(3, object->commands[i].gui_name)
            .bind(4, object->commands[i].command_template)
            .run();
      if (object->text)
        insert_text.bind(1, object->id).bind(2, *object->text).run();
    }
    panel.insert_page.reset();
    db.exec("COMMIT");
  } catch (...) {
    abandon();
    throw;
  }
  m_state.reset();
  m_writer->m_panel_open = false;
  m_writer = nullptr;
}

// ---------------------------------------------------------------------------
// The database

RDB_WRITER::RDB_WRITER(const std::string& file, int report_type)
    : RDB_WRITER(file, report_type, OPTIONS()) {}

RDB_WRITER::RDB_WRITER(const std::string& file, int report_type, const OPTIONS& options)
    : m_file(file), m_report_type(report_type), m_options(options) {
  rdb_main_folder_name(report_type);  // rejects an unknown type
  create_or_check();
}

RDB_WRITER::~RDB_WRITER() = default;

void RDB_WRITER::create_or_check() {
  std::filesystem::path path(m_file);
  std::error_code ec;
  if (path.has_parent_path()) {
    std::filesystem::create_directories(path.parent_path(), ec);
    if (ec)
      throw RDB_ERROR(m_file, "cannot create the folder \"" + path.parent_path().string() +
                                  "\": " + ec.message());
  }
  m_db = std::make_unique<SQL_DATABASE>(m_file, true, true, m_options.busy_timeout_ms);
  SQL_DATABASE& db = *m_db;
  // Reading first: a file of another kind is refused before anything is written.
  int64_t tables = db.query_int("SELECT count(*) FROM sqlite_schema");
  int64_t application_id = db.query_int("PRAGMA application_id");
  int64_t version = db.query_int("PRAGMA user_version");
  if (tables == 0 && application_id == 0 && version == 0) {
    // Most objects of a path report carry their rows inline, a few
    // kilobytes each. Pages of 16 KiB hold several of them: the file of a
    // large path report is about an eighth smaller and written about a
    // tenth faster than with 4 KiB pages. (Set before the first table.)
    db.exec("PRAGMA page_size=16384");
    db.exec("PRAGMA journal_mode=WAL");
    db.exec("BEGIN IMMEDIATE");
    try {
      db.exec(("PRAGMA application_id=" + std::to_string(RDB_APPLICATION_ID)).c_str());
      db.exec(("PRAGMA user_version=" + std::to_string(RDB_SCHEMA_VERSION)).c_str());
      db.exec(RDB_SCHEMA_SQL);
      SQL_STATEMENT meta(db, "INSERT INTO rdb_meta(key, value) VALUES(?, ?)");
      meta.bind(1, "format").bind(2, "Chronel report database").run();
      meta.bind(1, "report_type").bind(2, std::to_string(m_report_type)).run();
      meta.bind(1, "main_folder").bind(2, rdb_main_folder_name(m_report_type)).run();
      db.exec("COMMIT");
    } catch (...) {
      sqlite3_exec(db.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
      throw;
    }
  } else {
    if (application_id != RDB_APPLICATION_ID || version < 1)
      throw RDB_ERROR(m_file, "not a report database (an SQLite database of another kind); "
                              "it was left as it is");
    if (version > RDB_SCHEMA_VERSION)
      throw RDB_ERROR(m_file, "written by a newer version of the program (schema version " +
                                  std::to_string(version) + "; this program writes version " +
                                  std::to_string(RDB_SCHEMA_VERSION) + ")");
    int64_t type = db.query_int("SELECT CAST(value AS INTEGER) FROM rdb_meta "
                                "WHERE key = 'report_type'");
    if (type != m_report_type)
      throw RDB_ERROR(m_file, "holds a report of type " + std::to_string(type) + ", not " +
                                  std::to_string(m_report_type));
    db.exec("PRAGMA journal_mode=WAL");
    if (version < RDB_SCHEMA_VERSION)
      upgrade_schema();
  }
  db.exec("PRAGMA synchronous=NORMAL");
  // A large panel is written in one transaction; a cache that holds it
  // spares SQLite spilling pages to the log before the commit.
  db.exec("PRAGMA cache_size=-65536");
}

void RDB_WRITER::upgrade_schema() {
  SQL_DATABASE& db = *m_db;
  db.exec("BEGIN IMMEDIATE");
  try {
    // Another writer may have upgraded the file since it was checked.
    if (db.query_int("PRAGMA user_version") == 1) {
      db.exec(RDB_UPGRADE_1_TO_2_SQL);
      SQL_STATEMENT titles(db, "SELECT object_id, title FROM rdb_column ORDER BY object_id, col");
      SQL_STATEMENT update(db, "UPDATE rdb_object SET titles = ? WHERE object_id = ?");
      int64_t object_id = -1;
      std::vector<std::string> columns;
      auto store = [&] {
        if (object_id < 0)
          return;
        std::string blob = encode_titles(columns);
        update.bind_blob(1, blob.data(), blob.size()).bind(2, object_id).run();
      };
      while (titles.step()) {
        int64_t id = titles.column_int(0);
        if (id != object_id) {
          store();
          object_id = id;
          columns.clear();
        }
        columns.push_back(titles.column_text(1));
      }
      store();
      titles.reset();
      db.exec(RDB_UPGRADE_1_TO_2_FINISH_SQL);
    }
    if (db.query_int("PRAGMA user_version") == 2)
      db.exec(RDB_UPGRADE_2_TO_3_SQL);
    db.exec("COMMIT");
  } catch (...) {
    sqlite3_exec(db.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

RDB_PANEL_WRITER RDB_WRITER::begin_panel(const std::string& name, const std::string& command) {
  if (name.empty())
    throw RDB_ERROR(m_file, "a panel name may not be empty");
  if (name.find(RDB_PATH_SEPARATOR) != std::string::npos)
    throw RDB_ERROR(m_file, "the panel name \"" + name + "\" may not contain \"||\"");
  if (m_panel_open)
    throw RDB_ERROR(m_file, "cannot begin panel \"" + name +
                                "\" while another panel is being written");
  m_db->exec("BEGIN IMMEDIATE");
  RDB_PANEL_WRITER panel(this, name, command);
  m_panel_open = true;
  try {
    panel.m_state->next_id =
        m_db->query_int("SELECT max(coalesce((SELECT seq FROM sqlite_sequence "
                        "WHERE name = 'rdb_object'), 0), "
                        "coalesce((SELECT max(object_id) FROM rdb_object), 0)) + 1");
    panel.m_state->insert_page.emplace(*m_db, "INSERT INTO rdb_row_page(page_key, rows) "
                                              "VALUES(?, ?)");
  } catch (...) {
    panel.abandon();
    throw;
  }
  return panel;
}

void RDB_WRITER::in_transaction(const std::function<void()>& work) {
  if (m_panel_open)
    throw RDB_ERROR(m_file, "cannot change panels while a panel is being written");
  m_db->exec("BEGIN IMMEDIATE");
  try {
    work();
    m_db->exec("COMMIT");
  } catch (...) {
    sqlite3_exec(m_db->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    throw;
  }
}

void RDB_WRITER::delete_panel_data(int64_t panel_id) {
  SQL_DATABASE& db = *m_db;
  // A panel's objects are numbered consecutively when it is committed (one
  // writer at a time, under the write lock), so they, their pages, commands
  // and texts are each one range of keys, and the panel row keeps the range.
  int64_t first = 0, last = -1;
  {
    SQL_STATEMENT range(db, "SELECT first_object, last_object FROM rdb_panel "
                            "WHERE panel_id = ?");
    range.bind(1, panel_id);
    if (range.step() && !range.column_is_null(0) && !range.column_is_null(1)) {
      first = range.column_int(0);
      last = range.column_int(1);
    }
  }
  if (first <= last) {
    SQL_STATEMENT pages(db, "DELETE FROM rdb_row_page WHERE page_key BETWEEN ? AND ?");
    pages.bind(1, page_key(first, 0)).bind(2, page_key(last, 0xffffffffLL)).run();
    SQL_STATEMENT commands(db, "DELETE FROM rdb_command WHERE object_id BETWEEN ? AND ?");
    commands.bind(1, first).bind(2, last).run();
    SQL_STATEMENT texts(db, "DELETE FROM rdb_text WHERE object_id BETWEEN ? AND ?");
    texts.bind(1, first).bind(2, last).run();
    SQL_STATEMENT objects(db, "DELETE FROM rdb_object WHERE object_id BETWEEN ? AND ?");
    objects.bind(1, first).bind(2, last).run();
  }
  SQL_STATEMENT panel(db, "DELETE FROM rdb_panel WHERE panel_id = ?");
  panel.bind(1, panel_id).run();
}

std::vector<RDB_PANEL_INFO> RDB_WRITER::list_panels() {
  std::vector<RDB_PANEL_INFO> panels;
  // A panel's top object is the first one it created.
  SQL_STATEMENT query(*m_db, "SELECT p.name, p.enabled, p.command, "
                             "(SELECT kind FROM rdb_object o WHERE o.object_id = p.first_object) "
                             "FROM rdb_panel p ORDER BY p.position");
  while (query.step())
    panels.push_back(RDB_PANEL_INFO{query.column_text(0), query.column_int(1) != 0,
                                    query.column_text(2), static_cast<int>(query.column_int(3))});
  return panels;
}

bool RDB_WRITER::has_panel(const std::string& name) {
  SQL_STATEMENT query(*m_db, "SELECT 1 FROM rdb_panel WHERE name = ?");
  query.bind(1, name);
  return query.step();
}

bool RDB_WRITER::delete_panel(const std::string& name) {
  bool found = false;
  in_transaction([&] {
    SQL_STATEMENT query(*m_db, "SELECT panel_id FROM rdb_panel WHERE name = ?");
    query.bind(1, name);
    if (query.step()) {
      found = true;
      int64_t id = query.column_int(0);
      query.reset();
      delete_panel_data(id);
    }
  });
  return found;
}

int RDB_WRITER::delete_all_panels() {
  int count = 0;
  in_transaction([&] {
    std::vector<int64_t> ids;
    {
      SQL_STATEMENT query(*m_db, "SELECT panel_id FROM rdb_panel");
      while (query.step())
        ids.push_back(query.column_int(0));
    }
    for (int64_t id : ids)
      delete_panel_data(id);
    count = static_cast<int>(ids.size());
  });
  return count;
}

bool RDB_WRITER::set_panel_enabled(const std::string& name, bool enabled) {
  return set_panels_enabled({name}, enabled) == 1;
}

int RDB_WRITER::set_panels_enabled(const std::vector<std::string>& names, bool enabled) {
  int changed = 0;
  in_transaction([&] {
    SQL_STATEMENT update(*m_db, "UPDATE rdb_panel SET enabled = ? WHERE name = ?");
    for (const std::string& name : names) {
      update.bind(1, enabled ? 1 : 0).bind(2, name).run();
      changed += sqlite3_changes(m_db->handle());
    }
  });
  return changed;
}

void RDB_WRITER::set_all_panels_enabled(bool enabled) {
  in_transaction([&] {
    SQL_STATEMENT update(*m_db, "UPDATE rdb_panel SET enabled = ?");
    update.bind(1, enabled ? 1 : 0).run();
  });
}

std::string RDB_WRITER::get_panel_command(const std::string& name) {
  SQL_STATEMENT query(*m_db, "SELECT command FROM rdb_panel WHERE name = ?");
  query.bind(1, name);
  return query.step() ? query.column_text(0) : std::string();
}

bool RDB_WRITER::set_panel_command(const std::string& name, const std::string& command) {
  int changed = 0;
  in_transaction([&] {
    SQL_STATEMENT update(*m_db, "UPDATE rdb_panel SET command = ? WHERE name = ?");
    update.bind(1, command).bind(2, name).run();
    changed = sqlite3_changes(m_db->handle());
  });
  return changed > 0;
}

void RDB_WRITER::write_legal_notice(const std::string& text) {
  RDB_PANEL_WRITER panel = begin_panel("Legal Notice");
  panel.add_legal_notice("", text);
  panel.commit();
}
