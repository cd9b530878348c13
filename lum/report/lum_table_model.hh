// The Qt model of a report table: rows paged on demand from a LUM_TABLE_SOURCE,
// cell colours as the database gives them, and a sort order kept as a
// permutation of the source's rows.
//
// Sorting never blocks the window. A worker thread reads the sorted column
// through sources of its own (the source, like the report behind it, belongs
// to the GUI thread; LUM_TABLE_SOURCE::thread_source_factory makes others),
// split over two threads for large tables, turns each cell once into a
// lum_sort_key and sorts the keys (lum_table_sort.hh). A source without such
// a factory is read on the GUI thread in bounded slices instead, and only
// the keys are sorted on the worker. The new order replaces the old one in
// one layout change; until then the view shows and scrolls the old order. A
// new sort or undo_sort() while a sort runs makes the older one's result be
// thrown away. Sorting the sorted column the other way takes no new sort: the
// groups of equal keys are reversed at once.
#pragma once

#include "report/lum_table_sort.hh"
#include "report/lum_table_source.hh"

#include <QAbstractTableModel>
#include <QElapsedTimer>

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <thread>
#include <vector>

class LUM_TABLE_MODEL : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit LUM_TABLE_MODEL(QObject* parent = nullptr);
  ~LUM_TABLE_MODEL() override;

  // Replaces the rows (database order, unsorted). Null empties the model.
  void set_source(std::unique_ptr<LUM_TABLE_SOURCE> source);
  const LUM_TABLE_SOURCE* get_source() const { return m_source.get(); }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

  // The source row shown at a view row; -1 outside the table.
  int64_t source_row(int view_row) const;
  // The text of a cell at a view row.
  std::string cell_text(int view_row, int column) const;
  // The colours of a cell as stored; RDB_NO_COLOR when it has none.
  RDB_CELL_COLOR cell_color(int view_row, int column) const;

  // Starts sorting by a column (asynchronous, see above); the view keeps the
  // old order until sort_finished. A column outside the table does nothing.
  void sort_column(int column, bool ascending);
  // Back to database order at once; cancels a running sort.
  void undo_sort();
  // The column and direction of the order shown; -1 when unsorted.
  int get_sort_column() const { return m_sort_column; }
  bool is_ascending() const { return m_ascending; }
  bool is_sorting() const { return m_sorting; }
  // The column and direction asked for last: a running sort's, else the shown order's.
  int get_requested_column() const { return m_sorting ? m_pending_column : m_sort_column; }
  bool is_requested_ascending() const { return m_sorting ? m_pending_ascending : m_ascending; }
  // Cells read per slice on the GUI thread and the time a slice may take,
  // for sources that other threads cannot read.
  void set_sort_slice(int rows, int budget_ms);
  // Whether sorting may read the rows on worker threads (default true).
  void set_sort_off_thread_reading(bool allowed) { m_off_thread_reading = allowed; }

  // Rows fetched from the source per page and the pages kept.
  static constexpr int PAGE_ROWS = 256;
  static constexpr size_t CACHE_PAGES = 64;

 signals:
  void sort_started(int column, bool ascending);
  void sort_finished(int column, bool ascending);

 private:
  struct PAGE {
    int64_t number;
    std::vector<RDB_TABLE_ROW> rows;
  };
  // One sort's shared state with its worker thread.
  struct SORT_JOB {
    std::atomic<bool> cancel{false};
    std::atomic<bool> done{false};
  };
  struct WORKER {
    std::thread thread;
    std::shared_ptr<SORT_JOB> job;
  };
  const RDB_TABLE_ROW* row_at(int64_t source_row) const;
  void start_sort_worker(uint64_t generation, std::vector<LUM_SORT_CHUNK> chunks, LUM_TABLE_SOURCE_FACTORY factory);
  void collect_slice(uint64_t generation);
  void apply_order(uint64_t generation, std::vector<uint32_t> order, std::vector<bool> group_starts);
  void cancel_sort();
  void reap_workers(bool all);

  std::unique_ptr<LUM_TABLE_SOURCE> m_source;
  int m_columns = 0;
  int m_rows = 0;
  mutable std::list<PAGE> m_cache;  // most recently used first
  std::vector<uint32_t> m_order;    // empty: database order
  // Where each group of equal keys starts in m_order, so that sorting the
  // same column the other way is a reversal of the groups, not a new sort.
  std::vector<bool> m_group_starts;

  int m_sort_column = -1;
  bool m_ascending = true;
  bool m_sorting = false;
  uint64_t m_generation = 0;
  int m_pending_column = -1;
  bool m_pending_ascending = true;
  bool m_off_thread_reading = true;
  std::shared_ptr<SORT_JOB> m_job;
  LUM_SORT_CHUNK m_collecting;  // keys read so far on the GUI thread
  int64_t m_collected = 0;
  int m_slice_rows = 4096;
  int m_slice_budget_ms = 20;
  std::vector<WORKER> m_workers;
};
