#include "rdb/rdb_sqlite.hh"

#include <utility>

namespace rdb_internal {

std::string sqlite_reason(int code, sqlite3* db) {
  std::string detail = db ? sqlite3_errmsg(db) : sqlite3_errstr(code);
  switch (code & 0xff) {
  case SQLITE_NOTADB:
    return "not a report database (the file is not an SQLite database)";
  case SQLITE_CORRUPT:
    return "the file is damaged (truncated or corrupt): " + detail;
  case SQLITE_BUSY:
  case SQLITE_LOCKED:
    return "the file is locked by another process (" + detail + ")";
  case SQLITE_CANTOPEN:
    return "cannot open the file (" + detail + ")";
  case SQLITE_READONLY:
    return "the file is read-only (" + detail + ")";
  case SQLITE_FULL:
    return "the disk is full (" + detail + ")";
  case SQLITE_IOERR:
    return "input/output error (" + detail + ")";
  default:
    return detail;
  }
}

SQL_DATABASE::SQL_DATABASE(const std::string& file, bool writable, bool create,
                           int busy_timeout_ms)
    : m_file(file) {
  int flags = writable ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
  if (writable && create)
    flags |= SQLITE_OPEN_CREATE;
  flags |= SQLITE_OPEN_NOMUTEX;
  int rc = sqlite3_open_v2(file.c_str(), &m_db, flags, nullptr);
  if (rc != SQLITE_OK) {
    std::string reason = sqlite_reason(rc, m_db);
    sqlite3_close_v2(m_db);
    m_db = nullptr;
    throw RDB_ERROR(file, reason);
  }
  sqlite3_extended_result_codes(m_db, 0);
  sqlite3_busy_timeout(m_db, busy_timeout_ms);
}

SQL_DATABASE::~SQL_DATABASE() {
  if (m_db)
    sqlite3_close_v2(m_db);
}

void SQL_DATABASE::fail(int code, const std::string& what) const {
  std::string reason = sqlite_reason(code, m_db);
  if (!what.empty())
    reason = what + ": " + reason;
  throw RDB_ERROR(m_file, reason);
}

void SQL_DATABASE::exec(const char* sql) {
  int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr);
  if (rc != SQLITE_OK)
    fail(rc);
}

int64_t SQL_DATABASE::query_int(const char* sql) {
  SQL_STATEMENT st(*this, sql);
  return st.step() ? st.column_int(0) : 0;
}

SQL_STATEMENT::SQL_STATEMENT(SQL_DATABASE& db, const char* sql) : m_db(&db) {
  int rc = sqlite3_prepare_v2(db.handle(), sql, -1, &m_stmt, nullptr);
  if (rc != SQLITE_OK)
    db.fail(rc);
}

SQL_STATEMENT::SQL_STATEMENT(SQL_STATEMENT&& other) noexcept
    : m_db(other.m_db), m_stmt(std::exchange(other.m_stmt, nullptr)) {}

SQL_STATEMENT& SQL_STATEMENT::operator=(SQL_STATEMENT&& other) noexcept {
  if (this != &other) {
    sqlite3_finalize(m_stmt);
    m_db = other.m_db;
    m_stmt = std::exchange(other.m_stmt, nullptr);
  }
  return *this;
}

SQL_STATEMENT::~SQL_STATEMENT() { sqlite3_finalize(m_stmt); }

// A value that cannot be bound (a text beyond SQLite's size limit, an index
// the statement lacks) must not leave the parameter NULL and be stored so.
void SQL_STATEMENT::check_bind(int code, int index) {
  if (code != SQLITE_OK)
    m_db->fail(code, "cannot bind parameter " + std::to_string(index));
}

SQL_STATEMENT& SQL_STATEMENT::bind(int index, int64_t value) {
  check_bind(sqlite3_bind_int64(m_stmt, index, value), index);
  return *this;
}

SQL_STATEMENT& SQL_STATEMENT::bind(int index, double value) {
  check_bind(sqlite3_bind_double(m_stmt, index, value), index);
  return *this;
}

SQL_STATEMENT& SQL_STATEMENT::bind(int index, std::string_view text) {
  // The 64-bit form: a length beyond INT_MAX must not wrap to a negative one,
  // which SQLite would take as "up to the first NUL".
  check_bind(sqlite3_bind_text64(m_stmt, index, text.data(), text.size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8),
             index);
  return *this;
}

SQL_STATEMENT& SQL_STATEMENT::bind_static(int index, std::string_view text) {
  // (A view without data would bind NULL, not an empty text.)
  check_bind(sqlite3_bind_text64(m_stmt, index, text.data() ? text.data() : "", text.size(),
                                 SQLITE_STATIC, SQLITE_UTF8),
             index);
  return *this;
}

SQL_STATEMENT& SQL_STATEMENT::bind_blob(int index, const void* data, size_t size) {
  check_bind(sqlite3_bind_blob64(m_stmt, index, data, size, SQLITE_STATIC), index);
  return *this;
}

SQL_STATEMENT& SQL_STATEMENT::bind_null(int index) {
  check_bind(sqlite3_bind_null(m_stmt, index), index);
  return *this;
}

bool SQL_STATEMENT::step() {
  int rc = sqlite3_step(m_stmt);
  if (rc == SQLITE_ROW)
    return true;
  if (rc == SQLITE_DONE)
    return false;
  sqlite3_reset(m_stmt);
  m_db->fail(rc);
}

void SQL_STATEMENT::run() {
  step();
  reset();
}

void SQL_STATEMENT::reset() {
  sqlite3_reset(m_stmt);
  sqlite3_clear_bindings(m_stmt);
}

int64_t SQL_STATEMENT::column_int(int col) const { return sqlite3_column_int64(m_stmt, col); }

double SQL_STATEMENT::column_double(int col) const { return sqlite3_column_double(m_stmt, col); }

std::string SQL_STATEMENT::column_text(int col) const {
  const unsigned char* text = sqlite3_column_text(m_stmt, col);
  int size = sqlite3_column_bytes(m_stmt, col);
  return text ? std::string(reinterpret_cast<const char*>(text), size) : std::string();
}

std::string_view SQL_STATEMENT::column_blob(int col) const {
  const void* data = sqlite3_column_blob(m_stmt, col);
  int size = sqlite3_column_bytes(m_stmt, col);
  return data ? std::string_view(static_cast<const char*>(data), size) : std::string_view();
}

bool SQL_STATEMENT::column_is_null(int col) const {
  return sqlite3_column_type(m_stmt, col) == SQLITE_NULL;
}

}  // namespace rdb_internal
