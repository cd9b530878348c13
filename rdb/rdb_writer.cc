#include "rdb/rdb_writer.hh"

#include "rdb/rdb_codec.hh"
#include "rdb/rdb_sqlite.hh"
#include "rdb/rdb_tcl_cmd.hh"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <unordered_set>

using namespace rdb_internal;

namespace rdb_internal {

// The sub-objects every path object needs, in the order commit() names a
// missing one.
constexpr const char* kPathParts[] = {RDB_PATH_SUMMARY_NAME, RDB_PATH_CHART_NAME,
                                      RDB_PATH_ARRIVAL_NAME, RDB_PATH_REQUIRED_NAME};

// 1 + the index in kPathParts of `name`, or 0 when it names no part.
static unsigned path_part_of(std::string_view name) {
  for (unsigned i = 0; i < 4; ++i)
    if (name == kPathParts[i])
      return i + 1;
  return 0;
}

// A list whose elements stay in place as it grows, allocated a block of N at
// a time: a path report of 27,000 objects then costs a hundred allocations
// for them instead of one or more per object, both to build and to free.
template <typename T, size_t N>
class BLOCK_LIST {
public:
  T& emplace_back() {
    if (m_size % N == 0)
      m_blocks.push_back(std::make_unique<T[]>(N));
    return m_blocks.back()[m_size++ % N];
  }
  T& operator[](size_t i) { return m_blocks[i / N][i % N]; }
  T& front() { return (*this)[0]; }
  T& back() { return (*this)[m_size - 1]; }
  size_t size() const { return m_size; }

private:
  std::vector<std::unique_ptr<T[]>> m_blocks;
  size_t m_size = 0;
};

// The rows of a table's current page, encoded, after room for the page's row
// count: the count goes in front when the page is stored, so the bytes form
// the stored blob where they are, with no copy into a second buffer.
struct ROW_BUFFER {
  static constexpr size_t kCountRoom = 5;  // the varint of a row count below 2^35
  char* data = nullptr;
  size_t size = 0;  // bytes in use, the count's room included
  size_t capacity = 0;
  std::unique_ptr<char[]> own;  // set when the buffer had to leave the arena
};

// The row bytes of a panel's tables. Most tables of a path report are small
// and filled before the next one starts: each takes the rest of a large
// shared block, grows there for free, and gives back what it did not use when
// the next table takes its place. A panel of 27,000 small tables so needs a
// few dozen blocks, not several allocations per table. A table that grows
// after another one took the bytes behind it (a summary table with a row per
// path) moves to a buffer of its own.
class ROW_ARENA {
public:
  // Makes room for `more` bytes after the buffer's `size`.
  void reserve(ROW_BUFFER& buffer, size_t more);

private:
  static constexpr size_t kBlockBytes = 256 * 1024;
  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_next = nullptr;  // the first byte no buffer holds
  char* m_end = nullptr;
  ROW_BUFFER* m_tail = nullptr;  // the buffer that holds the bytes up to m_end
};

void ROW_ARENA::reserve(ROW_BUFFER& buffer, size_t more) {
  size_t need = buffer.size + more;
  if (need <= buffer.capacity)
    return;
  if (buffer.data && &buffer != m_tail) {
    // Another table's bytes follow: double into a buffer of its own.
    size_t capacity = std::max({need, 2 * buffer.capacity, size_t(256)});
    std::unique_ptr<char[]> own(new char[capacity]);
    std::memcpy(own.get(), buffer.data, buffer.size);
    buffer.own = std::move(own);
    buffer.data = buffer.own.get();
    buffer.capacity = capacity;
    return;
  }
  if (m_tail && m_tail != &buffer) {
    // The tail keeps what it holds; should it grow again, it moves.
    m_next = m_tail->data + m_tail->size;
    m_tail->capacity = m_tail->size;
  }
  if (static_cast<size_t>(m_end - m_next) < need) {
    // The tail outgrew its block (its old bytes there stay unused), or a new
    // buffer does not fit in what is left.
    size_t size = std::max(kBlockBytes, 2 * need);
    m_blocks.push_back(std::unique_ptr<char[]>(new char[size]));
    m_next = m_blocks.back().get();
    m_end = m_next + size;
  }
  if (buffer.size)
    std::memmove(m_next, buffer.data, buffer.size);
  buffer.data = m_next;
  buffer.capacity = m_end - m_next;
  m_next = m_end;
  m_tail = &buffer;
}

struct TABLE_STATE;

struct OBJECT_STATE {
  int64_t id = 0;
  OBJECT_STATE* parent = nullptr;  // null: the panel's top object
  // Relative to the panel. Empty for the top object and for the parts of a
  // path object, which follow from their parent's (see full_path): a path
  // report has four parts per path, and not keeping their paths spares a
  // string and an index entry each. (A part that can hold objects, a folder
  // or a path object, keeps its path, so that they can be added to it by
  // their paths.)
  std::string path;
  // The last part of the path (the panel's name for the top object, the
  // name in kPathParts for a part): a view, since objects never move and the
  // panel outlives them all.
  std::string_view name;
  // Packed as stored (see encode_properties) and shared by objects with the
  // same (see PANEL_STATE::intern); null for none. A table's "rows" and
  // "page_rows" and a path object's properties are composed when the object
  // is stored.
  const std::string* properties = nullptr;
  TABLE_STATE* table = nullptr;
  double slack = 0;  // of a path object
  int kind = 0;
  int position = 0;
  int children = 0;
  // For a part of a path object: 1 + its index in kPathParts, else 0.
  unsigned char part = 0;
  // For a path object: which of its four parts were added (bit i for the
  // i-th of kPathParts); this is also what refuses a second one.
  unsigned char path_parts = 0;
  bool enabled = true;
  bool violated = false;  // of a path object
};

// An object's path relative to the panel.
static std::string full_path(const OBJECT_STATE& object) {
  if (!object.part || !object.path.empty())
    return object.path;
  if (object.parent->path.empty())
    return std::string(object.name);
  return object.parent->path + RDB_PATH_SEPARATOR + std::string(object.name);
}

struct TABLE_STATE {
  PANEL_STATE* panel = nullptr;
  OBJECT_STATE* object = nullptr;
  // The column titles packed as stored (see encode_titles), shared by the
  // panel's tables with the same.
  const std::string* titles = nullptr;
  size_t columns = 0;
  int page_rows = RDB_DEFAULT_PAGE_ROWS;
  int rows_in_page = 0;
  int64_t rows = 0;
  int64_t page = 0;
  ROW_BUFFER buffer;
  // The rows of a small one-page table, stored in the object row itself: a
  // view of the buffer, which stays as it is from then on.
  std::string_view inline_rows;
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
  BLOCK_LIST<OBJECT_STATE, 512> objects;
  BLOCK_LIST<TABLE_STATE, 256> tables;
  ROW_ARENA rows;
  // Every object but the parts of path objects, by path. Hashed, not
  // ordered; the keys view the objects' own paths.
  std::unordered_map<std::string_view, OBJECT_STATE*> by_path;
  // Titles and properties: tables of one shape share their packed titles,
  // and path charts their properties.
  std::unordered_set<std::string> shared;
  const std::string* last_titles = nullptr;
  // Texts and command templates of the few objects that have them.
  std::vector<std::pair<int64_t, std::string>> texts;
  std::vector<std::pair<int64_t, std::vector<RDB_TCL_COMMAND>>> commands;
  // Reused to pack titles and properties.
  std::string scratch;
  std::optional<SQL_STATEMENT> insert_page;
  OBJECT_STATE* top = nullptr;
  // The parent of the object added last: a path's four parts follow it, and
  // reaching their parent again need not look up every folder above it.
  OBJECT_STATE* last_parent = nullptr;
  // The path object added or reached last, which its parts name next.
  OBJECT_STATE* last_path = nullptr;

  const std::string* intern(const std::string& text) { return &*shared.insert(text).first; }
  // Packs titles (empty ones when not `titled`) into `scratch` and interns them.
  template <typename NAME>
  const std::string* titles_of(const NAME* names, size_t count, bool titled);
  OBJECT_STATE* create(std::string_view path, size_t name_size, int kind, OBJECT_STATE* parent,
                       unsigned part);
  // The part of a path object that `where` names, if it was added.
  OBJECT_STATE* find_part(std::string_view where);
};

template <typename NAME>
const std::string* PANEL_STATE::titles_of(const NAME* names, size_t count, bool titled) {
  scratch.clear();
  put_varint(scratch, count);
  for (size_t i = 0; i < count; ++i) {
    if (titled) {
      put_varint(scratch, names[i].size());
      scratch.append(names[i]);
    } else {
      scratch.push_back(0);
    }
  }
  // The arrival and required tables of a path follow each other.
  if (!last_titles || *last_titles != scratch)
    last_titles = intern(scratch);
  return last_titles;
}

OBJECT_STATE* PANEL_STATE::create(std::string_view path, size_t name_size, int kind,
                                  OBJECT_STATE* parent, unsigned part) {
  OBJECT_STATE* object = &objects.emplace_back();
  object->id = next_id++;
  object->kind = kind;
  object->part = static_cast<unsigned char>(part);
  object->parent = parent;
  bool indexed = !part || kind == RDB_KIND_FOLDER || kind == RDB_KIND_PATH;
  if (!indexed) {
    object->name = kPathParts[part - 1];
  } else if (!parent) {
    object->name = this->name;
  } else {
    object->path.assign(path);
    object->name = std::string_view(object->path).substr(path.size() - name_size);
  }
  if (parent)
    object->position = parent->children++;
  else
    top = object;
  if (indexed)
    by_path.emplace(object->path, object);
  return object;
}

OBJECT_STATE* PANEL_STATE::find_part(std::string_view where) {
  size_t cut = where.rfind(RDB_PATH_SEPARATOR);
  if (cut == 0)
    return nullptr;
  bool top = cut == std::string_view::npos;
  unsigned part = path_part_of(top ? where : where.substr(cut + 2));
  auto parent = by_path.find(top ? std::string_view() : where.substr(0, cut));
  if (!part || parent == by_path.end() || parent->second->kind != RDB_KIND_PATH ||
      !(parent->second->path_parts & (1u << (part - 1))))
    return nullptr;
  // Parts come after their parent, mostly right after it. (Parts that are
  // indexed were looked for already.)
  for (size_t i = parent->second->id - objects.front().id + 1; i < objects.size(); ++i)
    if (objects[i].parent == parent->second && objects[i].part == part)
      return &objects[i];
  return nullptr;
}

void TABLE_STATE::flush(bool last) {
  if (rows_in_page == 0)
    return;
  char count[10];
  size_t count_size = put_varint(count, static_cast<uint64_t>(rows_in_page)) - count;
  char* blob = buffer.data + ROW_BUFFER::kCountRoom - count_size;
  std::memcpy(blob, count, count_size);
  size_t blob_size = buffer.size - ROW_BUFFER::kCountRoom + count_size;
  rows_in_page = 0;
  if (last && page == 0 && blob_size <= RDB_INLINE_ROWS_BYTES) {
    inline_rows = std::string_view(blob, blob_size);
    return;
  }
  panel->insert_page->bind(1, page_key(object->id, page));
  panel->insert_page->bind_blob(2, blob, blob_size);
  panel->insert_page->run();
  ++page;
  buffer.size = ROW_BUFFER::kCountRoom;
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
    throw RDB_ERROR(file, "a row of \"" + full_path(*table.object) + "\" has " +
                              std::to_string(cell_count) + " cells but the table has " +
                              std::to_string(table.columns) + " columns");
  for (size_t i = 0; i < color_count; ++i)
    if (colors[i].column < 0 || static_cast<size_t>(colors[i].column) >= table.columns)
      throw RDB_ERROR(file, "a cell colour of \"" + full_path(*table.object) + "\" names column " +
                                std::to_string(colors[i].column) + ", outside the table");
  ROW_BUFFER& buffer = table.buffer;
  size_t size = encoded_row_size(cells, cell_count, table.columns, colors, color_count);
  if (buffer.size == 0) {
    table.panel->rows.reserve(buffer, ROW_BUFFER::kCountRoom + size);
    buffer.size = ROW_BUFFER::kCountRoom;
  } else {
    table.panel->rows.reserve(buffer, size);
  }
  encode_row(buffer.data + buffer.size, cells, cell_count, table.columns, colors, color_count);
  buffer.size += size;
  ++table.rows;
  if (++table.rows_in_page >= table.page_rows)
    table.flush();
}

void RDB_TABLE_WRITER::add_row(const std::vector<std::string>& cells,
                               const std::vector<RDB_CELL_COLOR>& colors) {
  // Rows of a few cells need no allocation for their views.
  std::string_view few[16];
  std::vector<std::string_view> many;
  std::string_view* views = few;
  if (cells.size() > std::size(few)) {
    many.resize(cells.size());
    views = many.data();
  }
  std::copy(cells.begin(), cells.end(), views);
  add_row(views, cells.size(), colors.data(), colors.size());
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

namespace {
const std::string kHtmlText = "html=1\n";
const std::string kPlainText = "html=0\n";

std::string path_child(const std::string& path_where, const char* name) {
  return path_where.empty() ? std::string(name) : path_where + RDB_PATH_SEPARATOR + name;
}

const char* table_part_name(RDB_PATH_PART part) {
  return part == RDB_PATH_PART::SUMMARY   ? RDB_PATH_SUMMARY_NAME
         : part == RDB_PATH_PART::ARRIVAL ? RDB_PATH_ARRIVAL_NAME
                                          : RDB_PATH_REQUIRED_NAME;
}

void check_table_kind(int kind) {
  if (kind != RDB_KIND_TABLE && kind != RDB_KIND_HEADERLESS_TABLE && kind != RDB_KIND_DETAIL_TABLE)
    throw RDB_ERROR("", "table kind " + std::to_string(kind) + " is not 4, 7 or 8");
}
}  // namespace

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

void RDB_PANEL_WRITER::check_open() const {
  if (!m_writer)
    throw RDB_ERROR("", "object added to a panel that was already committed or abandoned");
}

OBJECT_STATE* RDB_PANEL_WRITER::add_object(std::string_view where, int kind,
                                           const std::string* properties) {
  check_open();
  PANEL_STATE& panel = *m_state;
  const std::string& file = m_writer->m_file;
  auto duplicate = [&] {
    return RDB_ERROR(file, "panel \"" + panel.name + "\" already has an object \"" +
                               std::string(where) + "\"");
  };
  if (panel.by_path.count(where))
    throw duplicate();

  OBJECT_STATE* parent = nullptr;
  size_t name_size = 0;
  unsigned part = 0;
  if (!where.empty()) {
    parent = panel.top ? panel.top : panel.create("", 0, RDB_KIND_FOLDER, nullptr, 0);
    size_t pos = 0;
    size_t last_separator = where.rfind(RDB_PATH_SEPARATOR);
    // (Not for the top object, whose empty path would let "||X" through.)
    if (panel.last_parent && !panel.last_parent->path.empty() &&
        last_separator != std::string::npos &&
        where.substr(0, last_separator) == panel.last_parent->path) {
      // Every part above was checked when that parent was reached; only the
      // last part is left.
      parent = panel.last_parent;
      pos = last_separator + 2;
    }
    for (;;) {
      size_t next = where.find(RDB_PATH_SEPARATOR, pos);
      bool last = next == std::string::npos;
      std::string_view name = where.substr(pos, last ? next : next - pos);
      if (name.empty())
        throw RDB_ERROR(file, "an object path of panel \"" + panel.name +
                                  "\" has an empty name: \"" + std::string(where) + "\"");
      if (parent->kind == RDB_KIND_PATH && last)
        part = path_part_of(name);
      if (parent->kind != RDB_KIND_FOLDER && !part)
        throw RDB_ERROR(file, "cannot add \"" + std::string(where) + "\" to panel \"" +
                                  panel.name + "\": \"" +
                                  (parent->path.empty() ? panel.name : parent->path) +
                                  "\" is not a folder");
      if (last) {
        if (part) {
          // A part is not in by_path: its parent's bits refuse a second one.
          if (parent->path_parts & (1u << (part - 1)))
            throw duplicate();
          parent->path_parts |= 1u << (part - 1);
        }
        name_size = name.size();
        panel.last_parent = parent;
        break;
      }
      auto existing = panel.by_path.find(where.substr(0, next));
      parent = existing == panel.by_path.end()
                   ? panel.create(where.substr(0, next), name.size(), RDB_KIND_FOLDER, parent, 0)
                   : existing->second;
      pos = next + 2;
    }
  }
  OBJECT_STATE* object = panel.create(where, name_size, kind, parent, part);
  object->properties = properties;
  return object;
}

OBJECT_STATE* RDB_PANEL_WRITER::add_path_part(const std::string& path_where, unsigned part,
                                              int kind, const std::string* properties) {
  const char* name = kPathParts[part - 1];
  if (m_writer) {
    // The path object is mostly the one just added: no look-up, no path
    // built for the part.
    PANEL_STATE& panel = *m_state;
    OBJECT_STATE* parent = panel.last_path;
    if (!parent || parent->path != path_where) {
      auto it = panel.by_path.find(path_where);
      parent = it == panel.by_path.end() ? nullptr : it->second;
    }
    if (parent && parent->kind == RDB_KIND_PATH) {
      if (parent->path_parts & (1u << (part - 1)))
        throw RDB_ERROR(m_writer->m_file, "panel \"" + panel.name +
                                              "\" already has an object \"" +
                                              path_child(path_where, name) + "\"");
      parent->path_parts |= 1u << (part - 1);
      panel.last_parent = parent;
      panel.last_path = parent;
      OBJECT_STATE* object = panel.create({}, 0, kind, parent, part);
      object->properties = properties;
      return object;
    }
  }
  // Anything else (no such path object, a folder of that name, a committed
  // panel) is what adding the part by its full path would do.
  return add_object(path_child(path_where, name), kind, properties);
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::start_table(OBJECT_STATE* object, size_t columns,
                                               const std::string* titles) {
  PANEL_STATE& panel = *m_state;
  TABLE_STATE* table = &panel.tables.emplace_back();
  table->panel = &panel;
  table->object = object;
  table->titles = titles;
  table->columns = columns;
  table->page_rows = panel.page_rows;
  object->table = table;
  return RDB_TABLE_WRITER(table);
}

void RDB_PANEL_WRITER::require_columns(const std::string& where,
                                       const std::vector<std::string>& columns) const {
  if (columns.empty())
    throw RDB_ERROR(m_writer ? m_writer->m_file : "",
                    "the table \"" + where + "\" of panel \"" + get_panel_name() +
                        "\" has no columns");
}

void RDB_PANEL_WRITER::add_folder(const std::string& where) {
  add_object(where, RDB_KIND_FOLDER, nullptr);
}

void RDB_PANEL_WRITER::add_text(const std::string& where, const std::string& text, bool html) {
  OBJECT_STATE* object = add_object(where, RDB_KIND_TEXT, html ? &kHtmlText : &kPlainText);
  m_state->texts.emplace_back(object->id, text);
}

void RDB_PANEL_WRITER::add_legal_notice(const std::string& where, const std::string& text) {
  OBJECT_STATE* object = add_object(where, RDB_KIND_LEGAL_NOTICE, nullptr);
  m_state->texts.emplace_back(object->id, text);
}

void RDB_PANEL_WRITER::add_embedded(const std::string& where, int embedded_type,
                                    const std::string& info) {
  check_open();
  std::string& properties = m_state->scratch;
  properties.clear();
  put_property(properties, "embedded_type", std::to_string(embedded_type));
  put_property(properties, "info", info);
  add_object(where, RDB_KIND_EMBEDDED, m_state->intern(properties));
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::add_table(const std::string& where, int kind,
                                             const std::vector<std::string>& columns) {
  check_table_kind(kind);
  require_columns(where, columns);
  OBJECT_STATE* object = add_object(where, kind, nullptr);
  return start_table(object, columns.size(),
                     m_state->titles_of(columns.data(), columns.size(),
                                        kind != RDB_KIND_HEADERLESS_TABLE));
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
  OBJECT_STATE* object = add_object(where, RDB_KIND_TCL_TABLE, nullptr);
  m_state->commands.emplace_back(object->id, commands);
  return start_table(object, columns.size(),
                     m_state->titles_of(columns.data(), columns.size(), true));
}

void RDB_PANEL_WRITER::add_chart_table(const std::string& where, const std::string& x_axis,
                                       const std::string& y_axis, int default_chart_type,
                                       const std::vector<std::pair<std::string, long long>>& rows) {
  add_chart(where, 0, x_axis, y_axis, default_chart_type, rows);
}

void RDB_PANEL_WRITER::add_chart(const std::string& where, unsigned part,
                                 const std::string& x_axis, const std::string& y_axis,
                                 int default_chart_type,
                                 const std::vector<std::pair<std::string, long long>>& rows) {
  check_open();
  // Keys in sorted order, as encode_properties writes them.
  std::string& properties = m_state->scratch;
  properties.clear();
  put_property(properties, "chart_type", std::to_string(default_chart_type));
  put_property(properties, "x_axis", x_axis);
  put_property(properties, "y_axis", y_axis);
  const std::string* shared = m_state->intern(properties);
  OBJECT_STATE* object = part ? add_path_part(where, part, RDB_KIND_CHART_TABLE, shared)
                              : add_object(where, RDB_KIND_CHART_TABLE, shared);
  const std::string_view titles[2] = {x_axis, y_axis};
  RDB_TABLE_WRITER table = start_table(object, 2, m_state->titles_of(titles, 2, true));
  char count[24];
  for (const auto& [label, value] : rows) {
    char* end = std::to_chars(count, count + sizeof count, value).ptr;
    std::string_view cells[2] = {label, std::string_view(count, end - count)};
    table.add_row(cells, 2);
  }
}

void RDB_PANEL_WRITER::add_histogram(const std::string& where, const std::string& x_label,
                                     const std::string& y_label, int x_scale,
                                     const std::string& x_unit,
                                     const std::vector<RDB_HISTOGRAM_BIN>& bins) {
  check_open();
  // Keys in sorted order, as encode_properties writes them.
  std::string& properties = m_state->scratch;
  properties.clear();
  put_property(properties, "x_label", x_label);
  put_property(properties, "x_scale", std::to_string(x_scale == 0 ? 1 : x_scale));
  put_property(properties, "x_unit", x_unit);
  put_property(properties, "y_label", y_label);
  OBJECT_STATE* object = add_object(where, RDB_KIND_HISTOGRAM, m_state->intern(properties));
  static const std::string_view titles[3] = {"From", "To", "Count"};
  RDB_TABLE_WRITER table = start_table(object, 3, m_state->titles_of(titles, 3, true));
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
  OBJECT_STATE* object = add_object(where, RDB_KIND_PATH, nullptr);
  object->slack = slack_ns;
  object->violated = violated;
  m_state->last_path = object;
}

RDB_TABLE_WRITER RDB_PANEL_WRITER::add_path_table(const std::string& path_where,
                                                  RDB_PATH_PART part,
                                                  const std::vector<std::string>& columns,
                                                  int kind) {
  check_table_kind(kind);
  const char* name = table_part_name(part);
  if (columns.empty())
    require_columns(path_child(path_where, name), columns);
  OBJECT_STATE* object = add_path_part(path_where, path_part_of(name), kind, nullptr);
  return start_table(object, columns.size(),
                     m_state->titles_of(columns.data(), columns.size(),
                                        kind != RDB_KIND_HEADERLESS_TABLE));
}

void RDB_PANEL_WRITER::add_path_chart(const std::string& path_where, const std::string& x_axis,
                                      const std::string& y_axis, int default_chart_type,
                                      const std::vector<std::pair<std::string, long long>>& rows) {
  add_chart(path_where, path_part_of(RDB_PATH_CHART_NAME), x_axis, y_axis, default_chart_type,
            rows);
}

void RDB_PANEL_WRITER::set_enabled(const std::string& where, bool enabled) {
  if (!m_state)
    return;
  auto it = m_state->by_path.find(where);
  OBJECT_STATE* object = it != m_state->by_path.end() ? it->second : m_state->find_part(where);
  if (!object)
    throw RDB_ERROR(m_writer ? m_writer->m_file : "",
                    "panel \"" + m_state->name + "\" has no object \"" + where + "\"");
  object->enabled = enabled;
}

namespace {
// The properties of an object as stored: those kept with it, with a table's
// row counts merged in, or a path object's composed.
std::string_view stored_properties(const OBJECT_STATE& object, std::string& out) {
  char number[32];
  if (object.table) {
    const TABLE_STATE& table = *object.table;
    char* middle = std::to_chars(number, number + 12, table.page_rows).ptr;
    char* end = std::to_chars(middle, number + sizeof number, table.rows).ptr;
    std::string_view page_rows(number, middle - number), rows(middle, end - middle);
    out.clear();
    if (!object.properties) {
      // Most tables have no other property: "page_rows" sorts before "rows".
      out.append("page_rows=").append(page_rows).append("\nrows=").append(rows).append("\n");
    } else {
      const std::pair<std::string_view, std::string_view> counts[2] = {{"page_rows", page_rows},
                                                                       {"rows", rows}};
      merge_properties(out, *object.properties, counts, 2);
    }
    return out;
  }
  if (object.kind == RDB_KIND_PATH) {
    // Keys in the order encode_properties writes them; a formatted number
    // needs no escapes.
    out.assign("slack=");
    out.append(number, std::to_chars(number, number + sizeof number, object.slack).ptr);
    out.append(object.violated ? "\nviolated=1\n" : "\nviolated=0\n");
    return out;
  }
  return object.properties ? std::string_view(*object.properties) : std::string_view();
}
}  // namespace

void RDB_PANEL_WRITER::commit() {
  if (!m_writer)
    throw RDB_ERROR("", "panel committed twice or after it was abandoned");
  PANEL_STATE& panel = *m_state;
  SQL_DATABASE& db = *m_writer->m_db;
  try {
    if (!panel.top)
      throw RDB_ERROR(db.file(), "panel \"" + panel.name + "\" is empty");
    for (size_t i = 0; i < panel.objects.size(); ++i) {
      const OBJECT_STATE& object = panel.objects[i];
      if (object.kind != RDB_KIND_PATH)
        continue;
      for (unsigned part = 0; part < 4; ++part)
        if (!(object.path_parts & (1u << part)))
          throw RDB_ERROR(db.file(), "the path \"" + panel.name +
                                         (object.path.empty() ? "" : "||" + object.path) +
                                         "\" lacks its \"" + kPathParts[part] + "\"");
    }
    for (size_t i = 0; i < panel.tables.size(); ++i)
      panel.tables[i].flush(true);

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
    // The top object is the first one created, and the ids run on from it.
    SQL_STATEMENT insert_panel(db, "INSERT INTO rdb_panel(name, position, enabled, command, "
                                   "first_object, last_object) VALUES(?, ?, 1, ?, ?, ?)");
    insert_panel.bind(1, panel.name).bind(2, position).bind(3, panel.command)
        .bind(4, panel.objects.front().id).bind(5, panel.objects.back().id).run();
    int64_t panel_id = db.last_insert_rowid();

    // Several objects per statement: each statement that inserts into
    // rdb_object also reads and updates its AUTOINCREMENT counter, and has
    // its own start and end, which cost about as much as the rows of a few
    // small objects.
    constexpr size_t kObjectsPerInsert = 128;
    auto insert_sql = [](size_t objects) {
      std::string sql = "INSERT INTO rdb_object(object_id, panel_id, parent_id, position, kind, "
                        "name, enabled, properties, titles, inline_rows) VALUES";
      for (size_t i = 0; i < objects; ++i)
        sql += i ? ",(?,?,?,?,?,?,?,?,?,?)" : "(?,?,?,?,?,?,?,?,?,?)";
      return sql;
    };
    std::string properties[kObjectsPerInsert];
    auto bind_object = [&](SQL_STATEMENT& insert, size_t slot, const OBJECT_STATE& object) {
      int base = static_cast<int>(slot) * 10;
      insert.bind(base + 1, object.id).bind(base + 2, panel_id);
      if (object.parent)
        insert.bind(base + 3, object.parent->id);
      else
        insert.bind_null(base + 3);
      insert.bind(base + 4, object.position)
          .bind(base + 5, object.kind)
          .bind_static(base + 6, object.name)
          .bind(base + 7, object.enabled ? 1 : 0)
          .bind_static(base + 8, stored_properties(object, properties[slot]));
      const TABLE_STATE* table = object.table;
      if (table)
        insert.bind_blob(base + 9, table->titles->data(), table->titles->size());
      else
        insert.bind_null(base + 9);
      if (table && table->inline_rows.data())
        insert.bind_blob(base + 10, table->inline_rows.data(), table->inline_rows.size());
      else
        insert.bind_null(base + 10);
    };
    size_t done = 0;
    const size_t count = panel.objects.size();
    if (count >= kObjectsPerInsert) {
      SQL_STATEMENT insert(db, insert_sql(kObjectsPerInsert).c_str());
      for (; done + kObjectsPerInsert <= count; done += kObjectsPerInsert) {
        for (size_t slot = 0; slot < kObjectsPerInsert; ++slot)
          bind_object(insert, slot, panel.objects[done + slot]);
        insert.run();
      }
    }
    if (done < count) {
      SQL_STATEMENT insert(db, insert_sql(count - done).c_str());
      for (size_t slot = 0; done + slot < count; ++slot)
        bind_object(insert, slot, panel.objects[done + slot]);
      insert.run();
    }
    if (!panel.commands.empty()) {
      SQL_STATEMENT insert_command(db, "INSERT INTO rdb_command(object_id, cmd, gui_name, "
                                       "template) VALUES(?, ?, ?, ?)");
      for (const auto& [id, commands] : panel.commands)
        for (size_t i = 0; i < commands.size(); ++i)
          insert_command.bind(1, id).bind(2, static_cast<int64_t>(i))
              .bind_static(3, commands[i].gui_name)
              .bind_static(4, commands[i].command_template)
              .run();
    }
    if (!panel.texts.empty()) {
      SQL_STATEMENT insert_text(db, "INSERT INTO rdb_text(object_id, body) VALUES(?, ?)");
      for (const auto& [id, text] : panel.texts)
        insert_text.bind(1, id).bind_static(2, text).run();
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
