#include "rdb/rdb_object.hh"

#include "rdb/rdb_report.hh"

#include <algorithm>
#include <charconv>
#include <cstdlib>

std::string RDB_OBJECT::get_path(bool with_file) const {
  std::vector<const RDB_OBJECT*> chain;
  for (const RDB_OBJECT* object = this; object; object = object->m_parent)
    chain.push_back(object);
  std::string path;
  if (with_file && m_report)
    path = m_report->get_file() + "::";
  for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
    if (it != chain.rbegin())
      path += RDB_PATH_SEPARATOR;
    path += (*it)->m_name;
  }
  return path;
}

std::string RDB_OBJECT::get_panel_name() const {
  const RDB_OBJECT* object = this;
  if (!object->m_parent)
    return std::string();
  while (object->m_parent && object->m_parent->m_parent)
    object = object->m_parent;
  return object->m_name;
}

RDB_OBJECT* RDB_OBJECT::get_child(int index) const {
  if (index < 0 || index >= static_cast<int>(m_children.size()))
    return nullptr;
  return m_children[index];
}

RDB_OBJECT* RDB_OBJECT::find_child(const std::string& name) const {
  for (RDB_OBJECT* child : m_children)
    if (child->m_name == name)
      return child;
  return nullptr;
}

std::string RDB_OBJECT::property(const char* key) const {
  auto it = m_properties.find(key);
  return it == m_properties.end() ? std::string() : it->second;
}

double RDB_OBJECT::property_double(const char* key) const {
  std::string text = property(key);
  return text.empty() ? 0.0 : std::strtod(text.c_str(), nullptr);
}

int64_t RDB_OBJECT::property_int(const char* key, int64_t fallback) const {
  std::string text = property(key);
  int64_t value = fallback;
  if (!text.empty())
    std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string RDB_LEGAL_OBJECT::get_text() const {
  return get_report() ? get_report()->read_text(get_object_id()) : std::string();
}

std::string RDB_TEXT_OBJECT::get_text() const {
  if (!m_text)
    m_text = get_report() ? get_report()->read_text(get_object_id()) : std::string();
  return *m_text;
}

int RDB_TABLE_OBJECT::get_number_of_rows() const {
  return static_cast<int>(m_data_rows + (has_header() ? 1 : 0));
}

void RDB_TABLE_OBJECT::set_page_cache_size(int pages) {
  m_cache_pages = pages < 1 ? 1 : pages;
  while (static_cast<int>(m_cache.size()) > m_cache_pages)
    m_cache.pop_back();
}

const RDB_TABLE_ROW* RDB_TABLE_OBJECT::data_row(int64_t data_index) const {
  if (data_index < 0 || data_index >= m_data_rows)
    return nullptr;
  int64_t page = data_index / m_page_rows;
  size_t offset = static_cast<size_t>(data_index % m_page_rows);
  for (auto it = m_cache.begin(); it != m_cache.end(); ++it) {
    if (it->number == page) {
      if (it != m_cache.begin())
        m_cache.splice(m_cache.begin(), m_cache, it);
      const auto& rows = m_cache.front().rows;
      return offset < rows.size() ? &rows[offset] : nullptr;
    }
  }
  PAGE loaded{page, {}};
  if (!get_report() || !get_report()->read_page(*this, page, loaded.rows))
    return nullptr;
  m_cache.push_front(std::move(loaded));
  if (static_cast<int>(m_cache.size()) > m_cache_pages)
    m_cache.pop_back();
  const auto& rows = m_cache.front().rows;
  return offset < rows.size() ? &rows[offset] : nullptr;
}

void RDB_TABLE_OBJECT::visit_column(int64_t first, int64_t count, int column,
                                    const std::function<void(std::string_view)>& visit) const {
  if (first < 0) {
    count += first;
    first = 0;
  }
  const int64_t last = std::min<int64_t>(m_data_rows, first + count);
  const bool known_column = column >= 0 && column < get_number_of_columns();
  int64_t row = first;
  while (row < last) {
    const int64_t page = row / m_page_rows;
    const int64_t page_first = page * m_page_rows;
    const int64_t page_last = std::min<int64_t>(last, page_first + m_page_rows);
    int64_t visited = 0;
    if (known_column && get_report()) {
      get_report()->read_page_column(*this, page, column, row - page_first, page_last - page_first,
                                     [&](std::string_view text) {
                                       ++visited;
                                       visit(text);
                                     });
    }
    for (row += visited; row < page_last; ++row)
      visit(std::string_view());
  }
}

std::string RDB_TABLE_OBJECT::get_data(int row, int column) const {
  if (column < 0 || column >= get_number_of_columns() || row < 0)
    return std::string();
  if (has_header()) {
    if (row == 0)
      return m_columns[column];
    --row;
  }
  const RDB_TABLE_ROW* data = data_row(row);
  return data ? data->cells[column] : std::string();
}

std::optional<RDB_TABLE_ELEMENT> RDB_TABLE_OBJECT::get_element(int row, int column) const {
  if (column < 0 || column >= get_number_of_columns() || row < 0)
    return std::nullopt;
  if (has_header()) {
    if (row == 0)
      return std::nullopt;
    --row;
  }
  const RDB_TABLE_ROW* data = data_row(row);
  if (!data)
    return std::nullopt;
  for (const RDB_CELL_COLOR& color : data->colors)
    if (color.column == column)
      return RDB_TABLE_ELEMENT(color.foreground, color.background);
  return std::nullopt;
}

std::vector<RDB_TABLE_ROW> RDB_TABLE_OBJECT::get_rows(int first, int count) const {
  std::vector<RDB_TABLE_ROW> rows;
  int total = get_number_of_rows();
  if (first < 0) {
    count += first;
    first = 0;
  }
  int last = count > total - first ? total : first + count;
  for (int row = first; row < last; ++row) {
    if (has_header() && row == 0) {
      rows.push_back(RDB_TABLE_ROW{m_columns, {}});
      continue;
    }
    const RDB_TABLE_ROW* data = data_row(has_header() ? row - 1 : row);
    rows.push_back(data ? *data : RDB_TABLE_ROW{std::vector<std::string>(m_columns.size()), {}});
  }
  return rows;
}

long long RDB_CHART_TABLE_OBJECT::get_count(int row) const {
  std::string text = get_data(row, 1);
  long long value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string RDB_TCL_TABLE_OBJECT::get_gui_cmd_name(int command) const {
  if (command < 0 || command >= get_number_of_cmds())
    return std::string();
  return m_commands[command].gui_name;
}

std::string RDB_TCL_TABLE_OBJECT::get_cmd_template(int command) const {
  if (command < 0 || command >= get_number_of_cmds())
    return std::string();
  return m_commands[command].command_template;
}

int RDB_HISTOGRAM_TABLE_OBJECT::get_value(int row) const {
  if (row < 1)
    return 0;
  std::string text = get_data(row, 2);
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

uint32_t RDB_HISTOGRAM_TABLE_OBJECT::get_color(int row) const {
  if (row < 1)
    return RDB_NO_COLOR;
  auto element = get_element(row, 2);
  return element ? element->get_background_color() : RDB_NO_COLOR;
}

double RDB_HISTOGRAM_TABLE_OBJECT::get_from(int row) const {
  if (row < 1)
    return 0;
  return std::strtod(get_data(row, 0).c_str(), nullptr);
}

double RDB_HISTOGRAM_TABLE_OBJECT::get_to(int row) const {
  if (row < 1)
    return 0;
  return std::strtod(get_data(row, 1).c_str(), nullptr);
}

RDB_OBJECT* RDB_PATH_OBJECT::child_with_role(const char* role) const {
  // The writer gives the four sub-objects fixed names, so the name is the role.
  return find_child(role);
}

RDB_TABLE_OBJECT* RDB_PATH_OBJECT::get_summary_table() const {
  return dynamic_cast<RDB_TABLE_OBJECT*>(child_with_role(RDB_PATH_SUMMARY_NAME));
}

RDB_CHART_TABLE_OBJECT* RDB_PATH_OBJECT::get_delay_summary_chart() const {
  return dynamic_cast<RDB_CHART_TABLE_OBJECT*>(child_with_role(RDB_PATH_CHART_NAME));
}

RDB_TABLE_OBJECT* RDB_PATH_OBJECT::get_data_arrival_table() const {
  return dynamic_cast<RDB_TABLE_OBJECT*>(child_with_role(RDB_PATH_ARRIVAL_NAME));
}

RDB_TABLE_OBJECT* RDB_PATH_OBJECT::get_data_required_table() const {
  return dynamic_cast<RDB_TABLE_OBJECT*>(child_with_role(RDB_PATH_REQUIRED_NAME));
}
