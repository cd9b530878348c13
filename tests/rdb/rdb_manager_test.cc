// The front end's manager: one cached report per type for the open project,
// re-read after free, kept alive while in use.
#include "rdb_test_util.hh"

#include "rdb/rdb_manager.hh"

#include <fstream>

namespace {

class RDB_MANAGER_TEST : public RDB_TEST {
protected:
  void TearDown() override {
    DBMUI_MANAGER::get_instance()->clear_project();
    RDB_TEST::TearDown();
  }
  static constexpr const char* TAG = "RDB_MANAGER_TEST";
};

TEST_F(RDB_MANAGER_TEST, NoProjectOrNoFileYetGivesNoReportAndNoError) {
  DBMUI_MANAGER* manager = DBMUI_MANAGER::get_instance();
  EXPECT_EQ(manager, DBMUI_MANAGER::get_instance());
  manager->clear_project();
  EXPECT_EQ(manager->get_rdb_report(RDB_TIMING_REPORT, TAG), nullptr);
  manager->set_project(m_dir.string(), "top");
  EXPECT_EQ(manager->get_report_file(RDB_TIMING_REPORT), m_file);
  EXPECT_EQ(manager->get_rdb_report(RDB_TIMING_REPORT, TAG), nullptr);
  EXPECT_EQ(manager->get_last_error(), "");
}

TEST_F(RDB_MANAGER_TEST, FreeMakesTheNextGetReadTheFileAgain) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  write_table_panel(writer, "A", 1);
  DBMUI_MANAGER* manager = DBMUI_MANAGER::get_instance();
  manager->set_project(m_dir.string(), "top");

  RDB_REPORT* first = manager->get_rdb_report(RDB_TIMING_REPORT, TAG);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(manager->get_rdb_report(RDB_TIMING_REPORT, TAG), first);  // cached
  EXPECT_EQ(manager->get_use_count(RDB_TIMING_REPORT), 2);
  manager->unget_rdb_report(RDB_TIMING_REPORT, TAG);
  manager->unget_rdb_report(RDB_TIMING_REPORT, TAG);
  EXPECT_EQ(manager->get_use_count(RDB_TIMING_REPORT), 0);

  write_table_panel(writer, "B", 1);
  RDB_REPORT* cached = manager->get_rdb_report(RDB_TIMING_REPORT, TAG);
  EXPECT_EQ(cached->find_object("B"), nullptr);  // the snapshot predates B
  // Dropped while in use: the old report stays valid until handed back.
  manager->free_rdb_report(RDB_TIMING_REPORT, TAG);
  RDB_REPORT* fresh = manager->get_rdb_report(RDB_TIMING_REPORT, "other");
  ASSERT_NE(fresh, nullptr);
  EXPECT_NE(fresh->find_object("B"), nullptr);
  EXPECT_EQ(cached->find_object("A")->get_name(), "A");
  manager->unget_rdb_report(RDB_TIMING_REPORT, TAG);
  manager->unget_rdb_report(RDB_TIMING_REPORT, "other");

  // A shared holder keeps its report across free and project changes.
  std::shared_ptr<RDB_REPORT> held = manager->share_rdb_report(RDB_TIMING_REPORT, TAG);
  manager->free_rdb_report(RDB_TIMING_REPORT, TAG);
  manager->clear_project();
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(held->find_object("A"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->get_data(1, 0), "r0");
}

TEST_F(RDB_MANAGER_TEST, AnUnreadableFileGivesNoReportAndAnErrorNamingIt) {
  std::filesystem::create_directories(m_dir / "vexa_db");
  std::ofstream(m_file) << "not a database at all, but long enough to look like a header....\n";
  DBMUI_MANAGER* manager = DBMUI_MANAGER::get_instance();
  manager->set_project(m_dir.string(), "top");
  EXPECT_EQ(manager->get_rdb_report(RDB_TIMING_REPORT, TAG), nullptr);
  EXPECT_NE(manager->get_last_error().find(m_file), std::string::npos);
  EXPECT_NE(manager->get_last_error().find("not a report database"), std::string::npos);
  EXPECT_EQ(manager->get_rdb_report(7, TAG), nullptr);
  EXPECT_NE(manager->get_last_error().find("unknown report type"), std::string::npos);
}

}  // namespace
