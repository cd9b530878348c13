#include "report/lum_table_model.hh"

#include "report/lum_lexcmp.hh"

#include <QColor>
#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <climits>

LUM_TABLE_MODEL::LUM_TABLE_MODEL(QObject* parent) : QAbstractTableModel(parent) {}

LUM_TABLE_MODEL::~LUM_TABLE_MODEL() { join_worker(); }

void LUM_TABLE_MODEL::join_worker() {
  if (m_worker.joinable()) m_worker.join();
}

void LUM_TABLE_MODEL::set_source(std::unique_ptr<LUM_TABLE_SOURCE> source) {
  beginResetModel();
  ++m_generation;
  m_sorting = false;
  m_items.clear();
  m_source = std::move(source);
  m_columns = m_source ? m_source->column_count() : 0;
  // A view addresses rows with int; larger tables show their first INT_MAX rows.
  m_rows = m_source ? static_cast<int>(std::min<int64_t>(m_source->row_count(), INT_MAX)) : 0;
  m_cache.clear();
  m_order.clear();
  m_sort_column = -1;
  m_ascending = true;
  endResetModel();
}

int LUM_TABLE_MODEL::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_rows; }

int LUM_TABLE_MODEL::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_columns; }

int64_t LUM_TABLE_MODEL::source_row(int view_row) const {
  if (view_row < 0 || view_row >= m_rows) return -1;
  return m_order.empty() ? view_row : m_order[view_row];
}

const RDB_TABLE_ROW* LUM_TABLE_MODEL::row_at(int64_t row) const {
  if (!m_source || row < 0 || row >= m_rows) return nullptr;
  const int64_t number = row / PAGE_ROWS;
  for (auto it = m_cache.begin(); it != m_cache.end(); ++it) {
    if (it->number != number) continue;
    if (it != m_cache.begin()) m_cache.splice(m_cache.begin(), m_cache, it);
    const auto& rows = m_cache.front().rows;
    const size_t offset = static_cast<size_t>(row - number * PAGE_ROWS);
    return offset < rows.size() ? &rows[offset] : nullptr;
  }
  PAGE page;
  page.number = number;
  m_source->fetch(number * PAGE_ROWS, PAGE_ROWS, &page.rows);
  m_cache.push_front(std::move(page));
  if (m_cache.size() > CACHE_PAGES) m_cache.pop_back();
  const auto& rows = m_cache.front().rows;
  const size_t offset = static_cast<size_t>(row - number * PAGE_ROWS);
  return offset < rows.size() ? &rows[offset] : nullptr;
}

std::string LUM_TABLE_MODEL::cell_text(int view_row, int column) const {
  const RDB_TABLE_ROW* row = row_at(source_row(view_row));
  if (!row || column < 0 || column >= static_cast<int>(row->cells.size())) return std::string();
  return row->cells[column];
}

RDB_CELL_COLOR LUM_TABLE_MODEL::cell_color(int view_row, int column) const {
  RDB_CELL_COLOR color;
  color.column = column;
  const RDB_TABLE_ROW* row = row_at(source_row(view_row));
  if (!row) return color;
  for (const RDB_CELL_COLOR& c : row->colors) {
    if (c.column == column) return c;
  }
  return color;
}

QVariant LUM_TABLE_MODEL::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return QVariant();
  switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
      return QString::fromStdString(cell_text(index.row(), index.column()));
    case Qt::ForegroundRole:
    case Qt::BackgroundRole: {
      const RDB_CELL_COLOR color = cell_color(index.row(), index.column());
      const uint32_t value = role == Qt::ForegroundRole ? color.foreground : color.background;
      // Stored as 0xRRGGBB; "no colour" keeps the view's own.
      if (value == RDB_NO_COLOR) return QVariant();
      return QColor(QRgb(0xff000000u | (value & 0xffffffu)));
    }
    default:
      return QVariant();
  }
}

QVariant LUM_TABLE_MODEL::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole) return QVariant();
  if (orientation == Qt::Vertical) return section + 1;
  if (!m_source || section < 0 || section >= m_columns) return QVariant();
  return QString::fromStdString(m_source->column_title(section));
}

void LUM_TABLE_MODEL::set_sort_slice(int rows, int budget_ms) {
  m_slice_rows = std::max(1, rows);
  m_slice_budget_ms = std::max(1, budget_ms);
}

void LUM_TABLE_MODEL::sort_column(int column, bool ascending) {
  if (!m_source || column < 0 || column >= m_columns) return;
  const uint64_t generation = ++m_generation;
  m_sorting = true;
  m_pending_column = column;
  m_pending_ascending = ascending;
  m_items.clear();
  m_items.reserve(static_cast<size_t>(m_rows));
  m_collected = 0;
  emit sort_started(column, ascending);
  QTimer::singleShot(0, this, [this, generation] { collect_slice(generation); });
}

void LUM_TABLE_MODEL::collect_slice(uint64_t generation) {
  if (generation != m_generation) return;
  QElapsedTimer clock;
  clock.start();
  std::vector<RDB_TABLE_ROW> rows;
  const int column = m_pending_column;
  while (m_collected < m_rows && clock.elapsed() < m_slice_budget_ms) {
    const int count = static_cast<int>(std::min<int64_t>(m_slice_rows, m_rows - m_collected));
    m_source->fetch(m_collected, count, &rows);
    // A source that returns fewer rows (a file damaged under us) sorts the
    // missing ones as empty cells rather than stopping the sort.
    for (int i = 0; i < count; ++i) {
      SORT_ITEM item;
      if (i < static_cast<int>(rows.size()) && column < static_cast<int>(rows[i].cells.size()))
        lum_sort_key(rows[i].cells[column], &item.key);
      item.row = static_cast<uint32_t>(m_collected + i);
      m_items.push_back(std::move(item));
    }
    m_collected += count;
  }
  if (m_collected < m_rows) {
    QTimer::singleShot(0, this, [this, generation] { collect_slice(generation); });
    return;
  }
  join_worker();
  const bool ascending = m_pending_ascending;
  m_worker = std::thread([this, generation, ascending, items = std::move(m_items)]() mutable {
    // Ties keep database order in both directions.
    if (ascending) {
      std::sort(items.begin(), items.end(), [](const SORT_ITEM& a, const SORT_ITEM& b) {
        const int c = a.key.compare(b.key);
        return c != 0 ? c < 0 : a.row < b.row;
      });
    } else {
      std::sort(items.begin(), items.end(), [](const SORT_ITEM& a, const SORT_ITEM& b) {
        const int c = a.key.compare(b.key);
        return c != 0 ? c > 0 : a.row < b.row;
      });
    }
    std::vector<uint32_t> order(items.size());
    for (size_t i = 0; i < items.size(); ++i) order[i] = items[i].row;
    std::vector<SORT_ITEM>().swap(items);
    // The model outlives this thread (its destructor joins it), and a queued
    // call to a deleted receiver is dropped.
    QMetaObject::invokeMethod(
        this, [this, generation, order = std::move(order)]() mutable { apply_order(generation, std::move(order)); },
        Qt::QueuedConnection);
  });
  m_items = std::vector<SORT_ITEM>();
}

void LUM_TABLE_MODEL::apply_order(uint64_t generation, std::vector<uint32_t> order) {
  if (generation != m_generation || static_cast<int>(order.size()) != m_rows) return;
  emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  // Persistent indexes (selection, caret) follow their rows.
  const QModelIndexList persistent = persistentIndexList();
  if (!persistent.isEmpty()) {
    std::vector<int> new_position(static_cast<size_t>(m_rows));
    for (int i = 0; i < m_rows; ++i) new_position[order[i]] = i;
    QModelIndexList to;
    to.reserve(persistent.size());
    for (const QModelIndex& index : persistent) {
      const int64_t row = source_row(index.row());
      to.append(row < 0 ? QModelIndex() : this->index(new_position[static_cast<size_t>(row)], index.column()));
    }
    changePersistentIndexList(persistent, to);
  }
  m_order = std::move(order);
  m_sort_column = m_pending_column;
  m_ascending = m_pending_ascending;
  m_sorting = false;
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
  emit sort_finished(m_sort_column, m_ascending);
}

void LUM_TABLE_MODEL::undo_sort() {
  ++m_generation;
  m_sorting = false;
  m_items.clear();
  if (m_order.empty()) {
    m_sort_column = -1;
    return;
  }
  emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList persistent = persistentIndexList();
  QModelIndexList to;
  to.reserve(persistent.size());
  for (const QModelIndex& index : persistent) {
    const int64_t row = source_row(index.row());
    to.append(row < 0 ? QModelIndex() : this->index(static_cast<int>(row), index.column()));
  }
  changePersistentIndexList(persistent, to);
  m_order.clear();
  m_sort_column = -1;
  m_ascending = true;
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
