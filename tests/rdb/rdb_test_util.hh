// Shared helpers of the report database tests: a private folder per test and
// a few ready-made panels.
#pragma once

#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

class RDB_TEST : public ::testing::Test {
protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    m_dir = std::filesystem::temp_directory_path() /
            ("rdb_test_" + std::to_string(getpid()) + "_" + info->test_suite_name() + "_" +
             info->name());
    std::filesystem::remove_all(m_dir);
    std::filesystem::create_directories(m_dir);
    m_file = rdb_report_file_path(m_dir.string(), "top", RDB_TIMING_REPORT);
  }
  void TearDown() override { std::filesystem::remove_all(m_dir); }

  // A table panel of `rows` rows of two columns, cells "r<i>" and "<i>".
  void write_table_panel(RDB_WRITER& writer, const std::string& name, int rows,
                         const std::string& command = "") {
    RDB_PANEL_WRITER panel = writer.begin_panel(name, command);
    RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, {"Name", "Index"});
    for (int i = 0; i < rows; ++i) {
      std::string index = std::to_string(i);
      std::string name = "r";
      name += index;
      table.add_row({name, index});
    }
    panel.commit();
  }

  std::filesystem::path m_dir;
  std::string m_file;
};
