// Where a report table's rows come from.
//
// The table model never holds a whole table: it asks its source for pages of
// rows when the view needs them, so a panel of a million rows opens as fast as
// one of ten. A source numbers its rows 0 .. row_count()-1 in database order
// and knows the database row index behind each (the index the database's
// command templates are filled from).
#pragma once

#include "rdb/rdb_types.hh"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class RDB_REPORT;
class RDB_TABLE_OBJECT;
class LUM_TABLE_SOURCE;

// Makes, on the thread that calls it, a source of the same rows for that
// thread alone; null when it cannot (the rows are then read where they are).
using LUM_TABLE_SOURCE_FACTORY = std::function<std::unique_ptr<LUM_TABLE_SOURCE>()>;

class LUM_TABLE_SOURCE {
 public:
  virtual ~LUM_TABLE_SOURCE() = default;

  virtual int column_count() const = 0;
  virtual int64_t row_count() const = 0;
  // The column's title; empty when the table has none.
  virtual std::string column_title(int column) const = 0;
  // Rows first .. first+count-1 (clipped to the table), cells and colours.
  virtual void fetch(int64_t first, int count, std::vector<RDB_TABLE_ROW>* rows) const = 0;
  // The texts of one column of rows first .. first+count-1 (clipped; cells a
  // row lacks are empty). Sorting reads only this; the default takes whole rows.
  virtual void fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const;
  // Calls visit with the texts of one column of rows first .. first+count-1
  // (clipped), one call per row, in order; the texts are valid during the
  // call only. Sorting reads through this; the default uses fetch_column.
  virtual void visit_column(int64_t first, int count, int column,
                            const std::function<void(std::string_view)>& visit) const;
  // The database row index of a row (row 0 of a titled table is row 1 of the database).
  virtual int64_t database_row(int64_t row) const { return row; }
  // A factory for sources that other threads read (the sort reads every
  // row off the GUI thread); an empty function when there is none. It is
  // made on the source's own thread and may be called on any.
  virtual LUM_TABLE_SOURCE_FACTORY thread_source_factory() const { return {}; }
};

// The rows of a database table: data rows only (titles become column titles).
// The object belongs to its report, which must outlive the source.
class LUM_RDB_TABLE_SOURCE : public LUM_TABLE_SOURCE {
 public:
  explicit LUM_RDB_TABLE_SOURCE(const RDB_TABLE_OBJECT* table);
  int column_count() const override;
  int64_t row_count() const override;
  std::string column_title(int column) const override;
  void fetch(int64_t first, int count, std::vector<RDB_TABLE_ROW>* rows) const override;
  // Cell by cell: the database copies out only the one text per row.
  void fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const override;
  // Straight from the file's pages, without copying a text.
  void visit_column(int64_t first, int count, int column,
                    const std::function<void(std::string_view)>& visit) const override;
  int64_t database_row(int64_t row) const override { return row + m_first_row; }
  // Opens the database file again (a read-only snapshot of its own) and finds
  // the table by its path. A report that the engine has changed meanwhile
  // may give other rows: the sort checks the row count, and the page is
  // rebuilt anyway when the engine reports its change.
  LUM_TABLE_SOURCE_FACTORY thread_source_factory() const override;

 private:
  const RDB_TABLE_OBJECT* m_table;
  int m_first_row;
  // Set when the source opened its own report (thread_source_factory).
  std::shared_ptr<RDB_REPORT> m_own_report;
};

// Rows held in memory: plain-text reports (one column) and tests.
class LUM_MEMORY_TABLE_SOURCE : public LUM_TABLE_SOURCE {
 public:
  LUM_MEMORY_TABLE_SOURCE(std::vector<std::string> titles, std::vector<RDB_TABLE_ROW> rows);
  int column_count() const override { return static_cast<int>(m_titles.size()); }
  int64_t row_count() const override { return static_cast<int64_t>(m_rows->size()); }
  std::string column_title(int column) const override;
  void fetch(int64_t first, int count, std::vector<RDB_TABLE_ROW>* rows) const override;
  void fetch_column(int64_t first, int count, int column, std::vector<std::string>* cells) const override;
  // The rows never change, so other threads share them.
  LUM_TABLE_SOURCE_FACTORY thread_source_factory() const override;

 private:
  LUM_MEMORY_TABLE_SOURCE(std::vector<std::string> titles, std::shared_ptr<const std::vector<RDB_TABLE_ROW>> rows)
      : m_titles(std::move(titles)), m_rows(std::move(rows)) {}
  std::vector<std::string> m_titles;
  std::shared_ptr<const std::vector<RDB_TABLE_ROW>> m_rows;
};

// The rows of a plain-text report: the text cut at each "\n"; every piece
// before a line feed has its tabs replaced by four blanks, the rest after the
// last line feed (the whole text when there is none) is kept as it stands.
// An empty text gives no rows.
std::vector<std::string> lum_split_text_rows(const std::string& text);
