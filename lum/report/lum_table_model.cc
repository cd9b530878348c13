#include "report/lum_table_model.hh"


#include <QColor>
#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <climits>

LUM_TABLE_MODEL::LUM_TABLE_MODEL(QObject* parent) : QAbstractTableModel(parent) {}

LUM_TABLE_MODEL::~LUM_TABLE_MODEL() {
  cancel_sort();
  reap_workers(true);
}

void LUM_TABLE_MODEL::cancel_sort() {
  ++m_generation;
  m_sorting = false;
  if (m_job) m_job->cancel = true;
  m_job.reset();
  m_collecting = LUM_SORT_CHUNK();
}

void LUM_TABLE_MODEL::reap_workers(bool all) {
  for (auto it = m_workers.begin(); it != m_workers.end();) {
    if (all || it->job->done) {
      it->thread.join();
      it = m_workers.erase(it);
    } else {
      ++it;
    }
  }
}

void LUM_TABLE_MODEL::set_source(std::unique_ptr<LUM_TABLE_SOURCE> source) {
  beginResetModel();
  cancel_sort();
  m_source = std::move(source);
  m_columns = m_source ? m_source->column_count() : 0;
  // A view addresses rows with int; larger tables show their first INT_MAX rows.
  m_rows = m_source ? static_cast<int>(std::min<int64_t>(m_source->row_count(), INT_MAX)) : 0;
  m_cache.clear();
  m_order.clear();
  m_group_starts.clear();
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
  cancel_sort();
  reap_workers(false);
  const uint64_t generation = m_generation;
  m_job = std::make_shared<SORT_JOB>();
  m_sorting = true;
  m_pending_column = column;
  m_pending_ascending = ascending;
  emit sort_started(column, ascending);
  if (column == m_sort_column && ascending != m_ascending && m_group_starts.size() == m_order.size() &&
      static_cast<int>(m_order.size()) == m_rows) {
    std::vector<bool> group_starts = m_group_starts;
    std::vector<uint32_t> order = lum_reverse_sort_order(m_order, &group_starts);
    apply_order(generation, std::move(order), std::move(group_starts));
    return;
  }
  LUM_TABLE_SOURCE_FACTORY factory = m_off_thread_reading ? m_source->thread_source_factory() : nullptr;
  if (factory) {
    start_sort_worker(generation, {}, std::move(factory));
    return;
  }
  m_collected = 0;
  QTimer::singleShot(0, this, [this, generation] { collect_slice(generation); });
}

void LUM_TABLE_MODEL::collect_slice(uint64_t generation) {
  if (generation != m_generation) return;
  QElapsedTimer clock;
  clock.start();
  while (m_collected < m_rows && clock.elapsed() < m_slice_budget_ms) {
    const int64_t last = std::min<int64_t>(m_rows, m_collected + m_slice_rows);
    lum_key_rows(*m_source, m_collected, last, m_pending_column, 0, &m_collecting);
    m_collected = last;
  }
  if (m_collected < m_rows) {
    QTimer::singleShot(0, this, [this, generation] { collect_slice(generation); });
    return;
  }
  std::vector<LUM_SORT_CHUNK> chunks(1);
  chunks[0] = std::move(m_collecting);
  m_collecting = LUM_SORT_CHUNK();
  start_sort_worker(generation, std::move(chunks), nullptr);
}

void LUM_TABLE_MODEL::start_sort_worker(uint64_t generation, std::vector<LUM_SORT_CHUNK> chunks,
                                        LUM_TABLE_SOURCE_FACTORY factory) {
  std::shared_ptr<SORT_JOB> job = m_job;
  const int rows = m_rows;
  const int column = m_pending_column;
  const bool ascending = m_pending_ascending;
  // Large tables are read by two threads, each through a source of its own.
  const int readers = rows >= 100000 ? 2 : 1;
  std::thread thread([this, job, generation, rows, column, ascending, readers, factory = std::move(factory),
                      chunks = std::move(chunks)]() mutable {
    bool read_here = true;
    if (factory) {
      chunks.assign(static_cast<size_t>(readers), LUM_SORT_CHUNK());
      std::vector<char> ok(static_cast<size_t>(readers), 0);
      auto read = [&](int part) {
        std::unique_ptr<LUM_TABLE_SOURCE> source = factory();
        if (!source || source->row_count() < rows) return;
        const int64_t first = static_cast<int64_t>(rows) * part / readers;
        const int64_t last = static_cast<int64_t>(rows) * (part + 1) / readers;
        ok[part] = lum_key_rows(*source, first, last, column, static_cast<uint32_t>(part), &chunks[part], &job->cancel);
      };
      std::vector<std::thread> helpers;
      for (int part = 1; part < readers; ++part) helpers.emplace_back(read, part);
      read(0);
      for (std::thread& helper : helpers) helper.join();
      read_here = std::all_of(ok.begin(), ok.end(), [](char v) { return v != 0; });
    }
    if (job->cancel) {
      job->done = true;
      return;
    }
    if (!read_here) {
      // The database could not be opened again: read the rows where they live.
      QMetaObject::invokeMethod(
          this,
          [this, generation] {
            if (generation != m_generation) return;
            m_collected = 0;
            collect_slice(generation);
          },
          Qt::QueuedConnection);
      job->done = true;
      return;
    }
    std::vector<bool> group_starts;
    std::vector<uint32_t> order = lum_sort_chunks(chunks, ascending, &job->cancel, &group_starts);
    std::vector<LUM_SORT_CHUNK>().swap(chunks);
    if (!job->cancel) {
      // The model outlives this thread (its destructor joins it), and a
      // queued call to a deleted receiver is dropped.
      QMetaObject::invokeMethod(
          this,
          [this, generation, order = std::move(order), group_starts = std::move(group_starts)]() mutable {
            apply_order(generation, std::move(order), std::move(group_starts));
          },
          Qt::QueuedConnection);
    }
    job->done = true;
  });
  m_workers.push_back(WORKER{std::move(thread), std::move(job)});
}

void LUM_TABLE_MODEL::apply_order(uint64_t generation, std::vector<uint32_t> order, std::vector<bool> group_starts) {
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
  m_group_starts = std::move(group_starts);
  m_sort_column = m_pending_column;
  m_ascending = m_pending_ascending;
  m_sorting = false;
  m_job.reset();
  reap_workers(false);
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
  emit sort_finished(m_sort_column, m_ascending);
}

void LUM_TABLE_MODEL::undo_sort() {
  cancel_sort();
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
  m_group_starts.clear();
  m_sort_column = -1;
  m_ascending = true;
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}
