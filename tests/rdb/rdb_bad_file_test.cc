// Bad input: files that are not report databases, newer schemas, damaged and
// locked files give an error naming the file and the reason, never a crash,
// never a half panel, and the writer leaves such files untouched.
#include "rdb_test_util.hh"

#include <sqlite3.h>

#include <fstream>
#include <random>

namespace {

using RDB_BAD_FILE_TEST = RDB_TEST;

std::string read_bytes(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void write_bytes(const std::string& file, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary | std::ios::trunc) << bytes;
}

void run_sql(const std::string& file, const char* sql) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(file.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(db);
  sqlite3_close(db);
}

std::string open_error(const std::string& file) {
  RDB_REPORT::OPTIONS options;
  options.busy_timeout_ms = 50;
  try {
    RDB_REPORT::open(file, options);
  } catch (const RDB_ERROR& error) {
    EXPECT_EQ(error.get_file(), file);
    EXPECT_NE(std::string(error.what()).find(file), std::string::npos) << error.what();
    return error.get_reason();
  }
  return "(opened)";
}

std::string writer_error(const std::string& file) {
  RDB_WRITER::OPTIONS options;
  options.busy_timeout_ms = 50;
  try {
    RDB_WRITER writer(file, RDB_TIMING_REPORT, options);
    writer.begin_panel("P").commit();
  } catch (const RDB_ERROR& error) {
    EXPECT_NE(std::string(error.what()).find(file), std::string::npos) << error.what();
    return error.get_reason();
  }
  return "(written)";
}

struct BAD_FILE {
  const char* what;
  std::function<void(const std::string& file)> make;
  const char* reason;  // a phrase the error's reason must contain
};

TEST_F(RDB_BAD_FILE_TEST, BadFilesAreRefusedByReaderAndWriterAndLeftUntouched) {
  std::mt19937 random(7);
  std::string noise(8192, '\0');
  for (char& ch : noise)
    ch = static_cast<char>(random());
  const std::vector<BAD_FILE> cases = {
      {"random bytes", [&](const std::string& f) { write_bytes(f, noise); }, "not a report database"},
      {"a text file", [](const std::string& f) { write_bytes(f, "create_clock -period 10 clk\n"); },
       "not a report database"},
      {"an empty file", [](const std::string& f) { write_bytes(f, ""); }, "not a report database"},
      {"another SQLite database",
       [](const std::string& f) {
         write_bytes(f, "");
         run_sql(f, "CREATE TABLE t(x); INSERT INTO t VALUES(1);");
       },
       "another kind"},
      {"a newer schema",
       [this](const std::string& f) {
         {
           RDB_WRITER writer(f, RDB_TIMING_REPORT);
           write_table_panel(writer, "A", 1);
         }
         run_sql(f, "PRAGMA user_version=99");
       },
       "newer version"},
  };
  for (const BAD_FILE& bad : cases) {
    SCOPED_TRACE(bad.what);
    std::filesystem::remove_all(m_dir / "vexa_db");
    bad.make(m_file);
    const std::string before = read_bytes(m_file);
    std::string reason = open_error(m_file);
    EXPECT_NE(reason.find(bad.reason), std::string::npos) << reason;
    if (std::string(bad.what) != "an empty file") {  // an empty file becomes a new database
      reason = writer_error(m_file);
      EXPECT_NE(reason.find(bad.reason), std::string::npos) << reason;
      EXPECT_EQ(read_bytes(m_file), before);
    }
  }
  EXPECT_NE(open_error((m_dir / "missing.rdb").string()).find("no such file"), std::string::npos);
  EXPECT_NE(open_error(m_dir.string()).find("not a regular file"), std::string::npos);
}

TEST_F(RDB_BAD_FILE_TEST, ATruncatedFileIsReportedAsDamagedWhenOpened) {
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    write_table_panel(writer, "A", 5000);
    write_table_panel(writer, "B", 10);
  }
  const std::string whole = read_bytes(m_file);
  ASSERT_GT(whole.size(), 16384u);
  for (size_t size : {whole.size() / 2, size_t(4096 + 100), size_t(50)}) {
    SCOPED_TRACE(size);
    write_bytes(m_file, whole.substr(0, size));
    std::string reason = open_error(m_file);
    EXPECT_TRUE(reason.find("damaged") != std::string::npos ||
                reason.find("not a report database") != std::string::npos)
        << reason;
  }
}

TEST_F(RDB_BAD_FILE_TEST, RowsDamagedAfterOpeningReadAsEmptyAndTheErrorIsKept) {
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    write_table_panel(writer, "A", 300);
  }
  auto report = RDB_REPORT::open(m_file);
  // The engine's file gets damaged behind the reader's back: the snapshot
  // protects pages already committed, so damage a page the reader has not
  // yet read by replacing its bytes in a new transaction and re-opening.
  report.reset();
  run_sql(m_file, "UPDATE rdb_row_page SET rows = x'05ff' WHERE page_key % 4294967296 = 1");
  report = RDB_REPORT::open(m_file);
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("A"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->get_data(1, 0), "r0");
  EXPECT_EQ(report->get_error(), "");
  EXPECT_EQ(table->get_data(260, 0), "");
  auto rows = table->get_rows(255, 4);
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0].cells[0], "r254");
  EXPECT_EQ(rows[3].cells, (std::vector<std::string>{"", ""}));
  EXPECT_NE(report->get_error().find("damaged"), std::string::npos) << report->get_error();
  EXPECT_NE(report->get_error().find(m_file), std::string::npos);
}

TEST_F(RDB_BAD_FILE_TEST, DamagedSmallTablesKeptInTheirObjectRowReadAsEmpty) {
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    write_table_panel(writer, "A", 3);
    write_table_panel(writer, "B", 3);
  }
  run_sql(m_file, "UPDATE rdb_object SET inline_rows = x'05ff' WHERE name = 'A'");
  auto report = RDB_REPORT::open(m_file);
  auto* damaged = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("A"));
  auto* intact = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("B"));
  ASSERT_TRUE(damaged && intact);
  EXPECT_EQ(intact->get_data(3, 0), "r2");
  EXPECT_EQ(report->get_error(), "");
  EXPECT_EQ(damaged->get_data(1, 0), "");
  EXPECT_NE(report->get_error().find("damaged"), std::string::npos) << report->get_error();

  // Malformed titles make the whole file unreadable rather than misaligned.
  report.reset();
  run_sql(m_file, "UPDATE rdb_object SET titles = x'0905' WHERE name = 'B'");
  try {
    RDB_REPORT::open(m_file);
    ADD_FAILURE() << "opened";
  } catch (const RDB_ERROR& error) {
    EXPECT_NE(std::string(error.what()).find("damaged"), std::string::npos) << error.what();
  }
}

TEST_F(RDB_BAD_FILE_TEST, ALockedFileGivesALockErrorNotAWait) {
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    write_table_panel(writer, "A", 1);
  }
  // Another writer holding the panel transaction: a second writer is refused,
  // a reader still opens (it reads the last committed state).
  {
    RDB_WRITER first(m_file, RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = first.begin_panel("B");
    panel.add_text("", "pending");
    std::string reason = writer_error(m_file);
    EXPECT_NE(reason.find("locked"), std::string::npos) << reason;
    auto report = RDB_REPORT::open(m_file);
    EXPECT_NE(report->find_object("A"), nullptr);
    EXPECT_EQ(report->find_object("B"), nullptr);
    panel.commit();
  }
  // A process holding the file exclusively keeps readers out.
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(m_file.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; "
                             "DELETE FROM rdb_meta WHERE key = 'nothing';",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  std::string reason = open_error(m_file);
  EXPECT_NE(reason.find("locked"), std::string::npos) << reason;
  sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  EXPECT_NO_THROW(RDB_REPORT::open(m_file));
}

}  // namespace
