#include "report/lum_table_source.hh"

#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"

#include <algorithm>

LUM_RDB_TABLE_SOURCE::LUM_RDB_TABLE_SOURCE(const RDB_TABLE_OBJECT* table)
    : m_table(table), m_first_row(table && table->has_header() ? 1 : 0) {}

int LUM_RDB_TABLE_SOURCE::column_count() const { return m_table ? m_table->get_number_of_columns() : 0; }

int64_t LUM_RDB_TABLE_SOURCE::row_count() const { return m_table ? m_table->get_number_of_data_rows() : 0; }

std::string LUM_RDB_TABLE_SOURCE::column_title(int column) const {
  if (!m_table || !m_table->has_header()) return std::string();
  const auto& names = m_table->get_column_names();
  return column >= 0 && column < static_cast<int>(names.size()) ? names[column] : std::string();
}

void LUM_TABLE_SOURCE::fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const {
  std::vector<RDB_TABLE_ROW> rows;
  fetch(first, count, &rows);
  cells->clear();
  for (RDB_TABLE_ROW& row : rows)
    cells->push_back(column >= 0 && column < static_cast<int>(row.cells.size()) ? std::move(row.cells[column]) : std::string());
}

void LUM_TABLE_SOURCE::visit_column(int64_t first, int count, int column,
                                    const std::function<void(std::string_view)>& visit) const {
  std::vector<std::string> cells;
  fetch_column(first, count, column, &cells);
  const int64_t rows = std::max<int64_t>(0, std::min<int64_t>(row_count(), first + count) - std::max<int64_t>(0, first));
  for (int64_t i = 0; i < rows; ++i)
    visit(i < static_cast<int64_t>(cells.size()) ? std::string_view(cells[static_cast<size_t>(i)]) : std::string_view());
}

void LUM_RDB_TABLE_SOURCE::visit_column(int64_t first, int count, int column,
                                        const std::function<void(std::string_view)>& visit) const {
  if (!m_table || first < 0 || count <= 0) return;
  m_table->visit_column(first, count, column, visit);
}

void LUM_RDB_TABLE_SOURCE::fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const {
  cells->clear();
  if (!m_table || first < 0 || count <= 0 || first >= row_count()) return;
  const int64_t last = std::min<int64_t>(row_count(), first + count);
  for (int64_t row = first; row < last; ++row) cells->push_back(m_table->get_data(static_cast<int>(row + m_first_row), column));
}

void LUM_RDB_TABLE_SOURCE::fetch(int64_t first, int count, std::vector<RDB_TABLE_ROW>* rows) const {
  rows->clear();
  if (!m_table || first < 0 || count <= 0 || first >= row_count()) return;
  *rows = m_table->get_rows(static_cast<int>(first + m_first_row), count);
}

LUM_TABLE_SOURCE_FACTORY LUM_RDB_TABLE_SOURCE::thread_source_factory() const {
  if (!m_table || !m_table->get_report()) return {};
  const std::string file = m_table->get_report()->get_file();
  const std::string path = m_table->get_path(false);
  return [file, path]() -> std::unique_ptr<LUM_TABLE_SOURCE> {
    try {
      std::shared_ptr<RDB_REPORT> report(RDB_REPORT::open(file));
      auto* table = dynamic_cast<const RDB_TABLE_OBJECT*>(report->get_object_by_path(path));
      if (!table) return nullptr;
      auto source = std::make_unique<LUM_RDB_TABLE_SOURCE>(table);
      source->m_own_report = std::move(report);
      return source;
    } catch (const std::exception&) {
      return nullptr;
    }
  };
}

LUM_MEMORY_TABLE_SOURCE::LUM_MEMORY_TABLE_SOURCE(std::vector<std::string> titles, std::vector<RDB_TABLE_ROW> rows)
    : m_titles(std::move(titles)), m_rows(std::make_shared<const std::vector<RDB_TABLE_ROW>>(std::move(rows))) {}

void LUM_MEMORY_TABLE_SOURCE::fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const {
  cells->clear();
  if (first < 0 || count <= 0 || first >= row_count()) return;
  const int64_t last = std::min<int64_t>(row_count(), first + count);
  for (int64_t row = first; row < last; ++row) {
    const std::vector<std::string>& texts = (*m_rows)[static_cast<size_t>(row)].cells;
    cells->push_back(column >= 0 && column < static_cast<int>(texts.size()) ? texts[column] : std::string());
  }
}

LUM_TABLE_SOURCE_FACTORY LUM_MEMORY_TABLE_SOURCE::thread_source_factory() const {
  std::vector<std::string> titles = m_titles;
  std::shared_ptr<const std::vector<RDB_TABLE_ROW>> rows = m_rows;
  return [titles, rows]() -> std::unique_ptr<LUM_TABLE_SOURCE> {
    return std::unique_ptr<LUM_TABLE_SOURCE>(new LUM_MEMORY_TABLE_SOURCE(titles, rows));
  };
}

std::string LUM_MEMORY_TABLE_SOURCE::column_title(int column) const {
  return column >= 0 && column < column_count() ? m_titles[column] : std::string();
}

void LUM_MEMORY_TABLE_SOURCE::fetch(int64_t first, int count, std::vector<RDB_TABLE_ROW>* rows) const {
  rows->clear();
  if (first < 0 || count <= 0 || first >= row_count()) return;
  const int64_t last = std::min<int64_t>(row_count(), first + count);
  rows->assign(m_rows->begin() + first, m_rows->begin() + last);
}

std::vector<std::string> lum_split_text_rows(const std::string& text) {
  std::vector<std::string> rows;
  if (text.empty()) return rows;
  size_t start = 0;
  for (size_t line_feed = text.find('\n'); line_feed != std::string::npos;
       line_feed = text.find('\n', start)) {
    std::string row;
    for (size_t i = start; i < line_feed; ++i) {
      if (text[i] == '\t')
        row += "    ";
      else
        row += text[i];
    }
    rows.push_back(std::move(row));
    start = line_feed + 1;
  }
  rows.push_back(text.substr(start));
  return rows;
}
