// Thin RAII wrappers over the SQLite C interface, private to the library.
//
// Every failing call throws RDB_ERROR with the database file's name and a
// reason phrased for users ("locked by another process", "damaged (truncated
// or corrupt)") rather than SQLite's own terse text alone.
#pragma once

#include "rdb/rdb_error.hh"

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace rdb_internal {

// Turns an SQLite result code into the reason text of an RDB_ERROR.
std::string sqlite_reason(int code, sqlite3* db);

class SQL_DATABASE;

class SQL_STATEMENT {
public:
  SQL_STATEMENT() = default;
  SQL_STATEMENT(SQL_DATABASE& db, const char* sql);
  SQL_STATEMENT(const SQL_STATEMENT&) = delete;
  SQL_STATEMENT& operator=(const SQL_STATEMENT&) = delete;
  SQL_STATEMENT(SQL_STATEMENT&& other) noexcept;
  SQL_STATEMENT& operator=(SQL_STATEMENT&& other) noexcept;
  ~SQL_STATEMENT();

  // Each bind throws RDB_ERROR when SQLite refuses the value.
  SQL_STATEMENT& bind(int index, int64_t value);
  SQL_STATEMENT& bind(int index, int value) { return bind(index, static_cast<int64_t>(value)); }
  SQL_STATEMENT& bind(int index, double value);
  SQL_STATEMENT& bind(int index, std::string_view text);
  SQL_STATEMENT& bind(int index, const char* text) { return bind(index, std::string_view(text)); }
  SQL_STATEMENT& bind(int index, const std::string& text) { return bind(index, std::string_view(text)); }
  // Binds the text without copying it: it must stay as it is until the
  // statement has run or been reset.
  SQL_STATEMENT& bind_static(int index, std::string_view text);
  // Blobs are never copied either.
  SQL_STATEMENT& bind_blob(int index, const void* data, size_t size);
  SQL_STATEMENT& bind_null(int index);

  // Advances to the next result row; false when there is none.
  bool step();
  // Runs a statement that returns no rows, then resets it for reuse.
  void run();
  void reset();

  int64_t column_int(int col) const;
  double column_double(int col) const;
  std::string column_text(int col) const;
  std::string_view column_blob(int col) const;
  bool column_is_null(int col) const;

private:
  void check_bind(int code, int index);

  SQL_DATABASE* m_db = nullptr;
  sqlite3_stmt* m_stmt = nullptr;
};

class SQL_DATABASE {
public:
  // Opens `file` read-only or read-write (creating it when `create`).
  SQL_DATABASE(const std::string& file, bool writable, bool create, int busy_timeout_ms);
  SQL_DATABASE(const SQL_DATABASE&) = delete;
  SQL_DATABASE& operator=(const SQL_DATABASE&) = delete;
  ~SQL_DATABASE();

  void exec(const char* sql);
  int64_t query_int(const char* sql);
  int64_t last_insert_rowid() const { return sqlite3_last_insert_rowid(m_db); }

  // Throws RDB_ERROR for the result code `code` of the last call.
  [[noreturn]] void fail(int code, const std::string& what = std::string()) const;

  sqlite3* handle() const { return m_db; }
  const std::string& file() const { return m_file; }

private:
  sqlite3* m_db = nullptr;
  std::string m_file;
};

}  // namespace rdb_internal
