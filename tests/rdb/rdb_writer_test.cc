// The engine's side: panels are replaced whole, marks and commands are
// remembered, and malformed panels are refused without storing anything.
#include "rdb_test_util.hh"

#include "rdb/rdb_sqlite.hh"

#include <sqlite3.h>

#include <functional>
#include <optional>

namespace {

// The message of the RDB_ERROR that `action` throws, or "(no error)".
template <class ACTION>
std::string message_of(ACTION&& action) {
  try {
    action();
  } catch (const RDB_ERROR& error) {
    return error.what();
  }
  return "(no error)";
}

using RDB_WRITER_TEST = RDB_TEST;

std::vector<std::string> panel_names(const std::vector<RDB_PANEL_INFO>& panels) {
  std::vector<std::string> names;
  for (const RDB_PANEL_INFO& panel : panels)
    names.push_back(panel.name);
  return names;
}

TEST_F(RDB_WRITER_TEST, ReplacingAPanelIsAtomicForAReaderHoldingTheOldSnapshot) {
  RDB_WRITER::OPTIONS options;
  options.page_rows = 8;
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT, options);
  write_table_panel(writer, "First", 1);
  write_table_panel(writer, "Summary", 100);
  write_table_panel(writer, "Last", 1);

  auto old_report = RDB_REPORT::open(m_file);
  auto* old_table = dynamic_cast<RDB_TABLE_OBJECT*>(old_report->find_object("Summary"));
  ASSERT_NE(old_table, nullptr);
  EXPECT_EQ(old_table->get_data(1, 0), "r0");  // only the first page is read so far

  // Replace it with a panel of another shape while the old report is open.
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Summary", "new command");
    panel.add_text("Note", "replaced");
    RDB_TABLE_WRITER table = panel.add_table("Table", RDB_KIND_TABLE, {"X"});
    for (int i = 0; i < 30; ++i)
      table.add_row({"new" + std::to_string(i)});
    panel.commit();
  }

  // The old snapshot still reads every page of the old panel.
  EXPECT_EQ(old_table->get_number_of_rows(), 101);
  for (int row = 1; row <= 100; row += 7) {
    std::string expected = "r";
    expected += std::to_string(row - 1);
    EXPECT_EQ(old_table->get_data(row, 0), expected);
  }
  EXPECT_EQ(old_report->get_error(), "");

  auto new_report = RDB_REPORT::open(m_file);
  RDB_OBJECT* summary = new_report->find_object("Summary");
  ASSERT_NE(summary, nullptr);
  EXPECT_EQ(summary->get_type(), RDB_KIND_FOLDER);
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(new_report->find_object("Summary||Table"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->get_number_of_rows(), 31);
  EXPECT_EQ(table->get_data(30, 0), "new29");
  // The replaced panel keeps its place between the others.
  EXPECT_EQ(panel_names(new_report->get_panels()),
            (std::vector<std::string>{"First", "Summary", "Last"}));
  EXPECT_EQ(new_report->get_panel_command("Summary"), "new command");
}

TEST_F(RDB_WRITER_TEST, APanelDroppedOrRefusedBeforeCommitLeavesTheOldOneWhole) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  write_table_panel(writer, "Summary", 600);
  {
    RDB_PANEL_WRITER dropped = writer.begin_panel("Summary");
    RDB_TABLE_WRITER table = dropped.add_table("", RDB_KIND_TABLE, {"X"});
    for (int i = 0; i < 1000; ++i)  // several pages already sent to the database
      table.add_row({"half"});
  }
  {
    RDB_PANEL_WRITER refused = writer.begin_panel("Summary");
    refused.add_path("", 1.0, false);
    refused.add_path_table("", RDB_PATH_PART::SUMMARY, {"A"});
    try {
      refused.commit();
      FAIL() << "a path without its chart and tables was stored";
    } catch (const RDB_ERROR& error) {
      EXPECT_NE(std::string(error.what()).find("Path Delay Stats"), std::string::npos)
          << error.what();
      EXPECT_EQ(error.get_file(), m_file);
    }
  }
  auto report = RDB_REPORT::open(m_file);
  auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Summary"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table->get_number_of_rows(), 601);
  EXPECT_EQ(table->get_data(600, 0), "r599");
  // The writer is usable again after both.
  write_table_panel(writer, "Other", 1);
  EXPECT_TRUE(writer.has_panel("Other"));
}

TEST_F(RDB_WRITER_TEST, APathLackingAnyOneOfItsFourPartsIsRefusedByName) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  const char* names[] = {RDB_PATH_SUMMARY_NAME, RDB_PATH_CHART_NAME, RDB_PATH_ARRIVAL_NAME,
                         RDB_PATH_REQUIRED_NAME};
  // -1 leaves nothing out; a complete path beside the broken one must not
  // hide what the broken one lacks.
  for (int missing = -1; missing < 4; ++missing) {
    SCOPED_TRACE(missing);
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    for (const std::string where : {"Setup||Path 1", "Setup||Path 2"}) {
      panel.add_path(where, -0.5, true);
      bool broken = where == "Setup||Path 2";
      if (!broken || missing != 0)
        panel.add_path_table(where, RDB_PATH_PART::SUMMARY, {"A"});
      if (!broken || missing != 1)
        panel.add_path_chart(where, "X", "Y", 1, {{"cell", 2}});
      if (!broken || missing != 2)
        panel.add_path_table(where, RDB_PATH_PART::ARRIVAL, {"A"});
      if (!broken || missing != 3)
        panel.add_path_table(where, RDB_PATH_PART::REQUIRED, {"A"});
    }
    if (missing < 0) {
      panel.commit();
      EXPECT_TRUE(writer.has_panel("Paths"));
      continue;
    }
    try {
      panel.commit();
      FAIL() << "a path without \"" << names[missing] << "\" was stored";
    } catch (const RDB_ERROR& error) {
      std::string message = error.what(), lacking = "lacks its \"";
      lacking += names[missing];
      EXPECT_NE(message.find(lacking), std::string::npos) << message;
      EXPECT_NE(message.find("Paths||Setup||Path 2"), std::string::npos) << message;
    }
  }
}

// A path's parts are found through their path object rather than by their
// own paths; every way of adding one must still refuse a second one.
TEST_F(RDB_WRITER_TEST, APathPartIsRefusedASecondTimeHoweverEitherWasAdded) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  using ADD = std::function<void(RDB_PANEL_WRITER&, const std::string&)>;
  auto full = [](const std::string& where, const char* part) {
    return where.empty() ? std::string(part) : where + "||" + part;
  };
  const std::vector<std::pair<const char*, std::vector<ADD>>> ways = {
      {RDB_PATH_SUMMARY_NAME,
       {[](RDB_PANEL_WRITER& p, const std::string& w) {
          p.add_path_table(w, RDB_PATH_PART::SUMMARY, {"A"});
        },
        [&](RDB_PANEL_WRITER& p, const std::string& w) {
          p.add_table(full(w, RDB_PATH_SUMMARY_NAME), RDB_KIND_HEADERLESS_TABLE, {"A"});
        },
        [&](RDB_PANEL_WRITER& p, const std::string& w) {
          p.add_text(full(w, RDB_PATH_SUMMARY_NAME), "t");
        }}},
      {RDB_PATH_CHART_NAME,
       {[](RDB_PANEL_WRITER& p, const std::string& w) { p.add_path_chart(w, "X", "Y", 1, {}); },
        [&](RDB_PANEL_WRITER& p, const std::string& w) {
          p.add_chart_table(full(w, RDB_PATH_CHART_NAME), "X", "Y", 1, {});
        }}},
  };
  for (const std::string where : {"Setup||Path 1", ""}) {
    for (const auto& [part, adders] : ways) {
      for (size_t first = 0; first < adders.size(); ++first) {
        for (size_t second = 0; second < adders.size(); ++second) {
          SCOPED_TRACE(where + " " + part + " " + std::to_string(first) + "," +
                       std::to_string(second));
          RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
          panel.add_path(where, 1.0, false);
          adders[first](panel, where);
          try {
            adders[second](panel, where);
            ADD_FAILURE() << "the second part was added";
          } catch (const RDB_ERROR& error) {
            EXPECT_NE(std::string(error.what())
                          .find("panel \"Paths\" already has an object \"" + full(where, part) +
                                "\""),
                      std::string::npos)
                << error.what();
          }
        }
      }
    }
  }
}

TEST_F(RDB_WRITER_TEST, PathPartsAreNamedByTheirFullPathsInMessagesAndMarks) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    panel.add_path("Setup||Path 1", -1.0, true);
    RDB_TABLE_WRITER arrival =
        panel.add_path_table("Setup||Path 1", RDB_PATH_PART::ARRIVAL, {"Total", "Incr"});
    EXPECT_NE(message_of([&] { arrival.add_row({"1", "2", "3"}); })
                  .find("a row of \"Setup||Path 1||Data Arrival Path\" has 3 cells"),
              std::string::npos);
    EXPECT_NE(message_of([&] { arrival.add_row({"1"}, {{5, 0, 0}}); })
                  .find("a cell colour of \"Setup||Path 1||Data Arrival Path\" names column 5"),
              std::string::npos);
    EXPECT_NE(message_of([&] { panel.add_text("Setup||Path 1||Data Arrival Path||X", "x"); })
                  .find("\"Setup||Path 1\" is not a folder"),
              std::string::npos);
    // Marks reach a part by its full path once it exists, and nothing else.
    for (const char* missing : {"Setup||Path 1||Path Summary", "||Data Arrival Path",
                                "Setup||||Data Arrival Path", "Data Arrival Path"})
      EXPECT_NE(message_of([&] { panel.set_enabled(missing, false); }).find("has no object"),
                std::string::npos)
          << missing;
    panel.add_path_table("Setup||Path 1", RDB_PATH_PART::SUMMARY, {"A"});
    panel.add_path_chart("Setup||Path 1", "X", "Y", 1, {{"cell", 1}});
    panel.add_path_table("Setup||Path 1", RDB_PATH_PART::REQUIRED, {"A"});
    panel.set_enabled("Setup||Path 1||Path Delay Stats", false);
    // A folder is no path object: a table of a part's name in it is a table.
    panel.add_folder("Folder");
    panel.add_path_table("Folder", RDB_PATH_PART::SUMMARY, {"A"}).add_row({"in folder"});
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Top");
    panel.add_path("", 1.0, false);
    panel.add_path_table("", RDB_PATH_PART::SUMMARY, {"A"});
    panel.add_path_chart("", "X", "Y", 1, {});
    panel.add_path_table("", RDB_PATH_PART::ARRIVAL, {"A"});
    panel.add_path_table("", RDB_PATH_PART::REQUIRED, {"A"});
    panel.set_enabled("Path Summary", false);
    panel.commit();
  }
  auto report = RDB_REPORT::open(m_file);
  EXPECT_FALSE(report->find_object("Paths||Setup||Path 1||Path Delay Stats")->is_enable());
  EXPECT_TRUE(report->find_object("Paths||Setup||Path 1||Path Summary")->is_enable());
  EXPECT_FALSE(report->find_object("Top||Path Summary")->is_enable());
  EXPECT_TRUE(report->find_object("Top||Data Arrival Path")->is_enable());
  auto* in_folder =
      dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Paths||Folder||Path Summary"));
  ASSERT_NE(in_folder, nullptr);
  EXPECT_EQ(in_folder->get_data(1, 0), "in folder");
}

// Rows are kept where they are written, small tables one after another and a
// table that goes on after others started moved aside; whatever the order,
// each table must read back whole, inline or paged.
TEST_F(RDB_WRITER_TEST, RowsOfTablesWrittenInTurnReadBackWhole) {
  const int paths = 400;
  auto cell = [](int path, int row, int column) {
    return std::to_string(path) + "/" + std::to_string(row) + "/" + std::to_string(column) +
           (column == 6 ? "/u_core/stage3_reg[12]/Q" : "");
  };
  // Every 50th path has more rows than an object row keeps.
  auto arrival_rows = [](int path) { return path % 50 == 0 ? 120 : 30 + path % 17; };
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    RDB_TABLE_WRITER summary = panel.add_table("Summary", RDB_KIND_TABLE, {"Path", "Slack"});
    const std::vector<std::string> columns = {"a", "b", "c", "d", "e", "f", "g"};
    for (int p = 1; p <= paths; ++p) {
      std::string where = "Path " + std::to_string(p);
      summary.add_row({where, std::to_string(-p)});
      panel.add_path(where, -p, true);
      panel.add_path_table(where, RDB_PATH_PART::SUMMARY, {"Property", "Value"},
                           RDB_KIND_HEADERLESS_TABLE)
          .add_row({"Slack", std::to_string(-p)});
      panel.add_path_chart(where, "Type", "Delay", 2, {{"Cell", p}, {"IC", 2 * p}});
      // The two tables of points are filled one after the other, or for
      // every third path in turn, row by row.
      bool in_turn = p % 3 == 0;
      RDB_TABLE_WRITER arrival = panel.add_path_table(where, RDB_PATH_PART::ARRIVAL, columns);
      std::optional<RDB_TABLE_WRITER> required;
      for (int r = 0; r < arrival_rows(p); ++r) {
        std::string cells[7];
        std::string_view views[7];
        for (int c = 0; c < 7; ++c)
          views[c] = cells[c] = cell(p, r, c);
        arrival.add_row(views, 7);
        if (in_turn && !required)
          required = panel.add_path_table(where, RDB_PATH_PART::REQUIRED, columns);
        if (in_turn && r < 5)
          required->add_row({views[0], views[6]}, {{1, 0xff0000, RDB_NO_COLOR}});
      }
      if (!in_turn) {
        required = panel.add_path_table(where, RDB_PATH_PART::REQUIRED, columns);
        for (int r = 0; r < 5; ++r)
          required->add_row({cell(p, r, 0), cell(p, r, 6)}, {{1, 0xff0000, RDB_NO_COLOR}});
      }
    }
    panel.commit();
  }
  auto report = RDB_REPORT::open(m_file);
  auto* summary = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Paths||Summary"));
  ASSERT_NE(summary, nullptr);
  ASSERT_EQ(summary->get_number_of_data_rows(), paths);
  for (int p = 1; p <= paths; ++p) {
    SCOPED_TRACE(p);
    EXPECT_EQ(summary->get_data(p, 0), "Path " + std::to_string(p));
    auto* path = dynamic_cast<RDB_PATH_OBJECT*>(report->find_object("Paths||Path " +
                                                                    std::to_string(p)));
    ASSERT_NE(path, nullptr);
    EXPECT_EQ(path->get_summary_table()->get_data(0, 1), std::to_string(-p));
    EXPECT_EQ(path->get_delay_summary_chart()->get_count(2), 2 * p);
    RDB_TABLE_OBJECT* arrival = path->get_data_arrival_table();
    ASSERT_EQ(arrival->get_number_of_data_rows(), arrival_rows(p));
    EXPECT_EQ(arrival->get_column_names()[6], "g");
    for (int r = 0; r < arrival_rows(p); r += 7)
      for (int c = 0; c < 7; ++c)
        ASSERT_EQ(arrival->get_data(r + 1, c), cell(p, r, c));
    RDB_TABLE_OBJECT* required = path->get_data_required_table();
    ASSERT_EQ(required->get_number_of_data_rows(), 5);
    EXPECT_EQ(required->get_data(5, 1), cell(p, 4, 6));
    EXPECT_EQ(required->get_element(5, 1), RDB_TABLE_ELEMENT(0xff0000, RDB_NO_COLOR));
  }
  EXPECT_EQ(report->get_error(), "");
}

TEST_F(RDB_WRITER_TEST, MalformedPanelsAreRefusedWithAClearMessage) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  EXPECT_NE(message_of([&] { writer.begin_panel("A||B"); }).find("may not contain \"||\""),
            std::string::npos);
  EXPECT_NE(message_of([&] { writer.begin_panel(""); }).find("empty"), std::string::npos);
  EXPECT_NE(message_of([&] { writer.begin_panel("Empty").commit(); }).find("is empty"),
            std::string::npos);

  RDB_PANEL_WRITER panel = writer.begin_panel("P");
  EXPECT_NE(message_of([&] { writer.begin_panel("Q"); }).find("another panel"), std::string::npos);
  EXPECT_NE(message_of([&] { writer.delete_panel("P"); }).find("being written"), std::string::npos);
  panel.add_text("Text", "t");
  EXPECT_NE(message_of([&] { panel.add_text("Text", "again"); }).find("already has"),
            std::string::npos);
  EXPECT_NE(message_of([&] { panel.add_text("Text||Below", "x"); }).find("is not a folder"),
            std::string::npos);
  EXPECT_NE(message_of([&] { panel.add_text("A||||B", "x"); }).find("empty name"),
            std::string::npos);
  // Paths that only differ from the last object's parent in their last part.
  panel.add_folder("F||G");
  panel.add_text("F||G||T", "t");
  for (const char* bad : {"F||G||", "F||G||||X", "F||G||T||Below"})
    EXPECT_THROW(panel.add_text(bad, "x"), RDB_ERROR) << bad;
  panel.add_text("Top", "t");
  EXPECT_NE(message_of([&] { panel.add_text("||X", "x"); }).find("empty name"), std::string::npos);
  RDB_TABLE_WRITER table = panel.add_table("T", RDB_KIND_TABLE, {"A", "B"});
  EXPECT_NE(message_of([&] { table.add_row({"1", "2", "3"}); }).find("3 cells"), std::string::npos);
  EXPECT_NE(message_of([&] { table.add_row({"1"}, {{2, 0, 0}}); }).find("outside the table"),
            std::string::npos);
  EXPECT_THROW(panel.add_table("K", RDB_KIND_TEXT, {"A"}), RDB_ERROR);
  EXPECT_THROW(panel.add_table("NoColumns", RDB_KIND_TABLE, {}), RDB_ERROR);
  EXPECT_NE(message_of([&] { panel.add_tcl_table("Tcl", {"A"}, {{"Go", "go %{B}"}}); })
                .find("\"%{B}\" names no column"),
            std::string::npos);
  std::vector<RDB_TCL_COMMAND> many(100, RDB_TCL_COMMAND{"Go", "go %{A}"});
  EXPECT_NE(message_of([&] { panel.add_tcl_table("Many", {"A"}, many); }).find("at most 99"),
            std::string::npos);
  many.resize(99);
  EXPECT_NO_THROW(panel.add_tcl_table("Enough", {"A"}, many));
  panel.commit();
  EXPECT_THROW(panel.commit(), RDB_ERROR);
}

TEST_F(RDB_WRITER_TEST, DisabledMarksReachEveryObjectOfThePanel) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  write_table_panel(writer, "A", 1);
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("B");
    panel.add_text("Inner||Text", "t");
    panel.add_text("Fresh", "t");
    panel.set_enabled("Inner", false);
    panel.commit();
  }
  write_table_panel(writer, "C", 1);

  auto enabled_of = [&](const std::string& name) {
    auto report = RDB_REPORT::open(m_file);
    return report->find_object(name)->is_enable();
  };
  EXPECT_TRUE(enabled_of("B"));
  EXPECT_FALSE(enabled_of("B||Inner"));
  EXPECT_TRUE(enabled_of("B||Fresh"));

  EXPECT_EQ(writer.set_panels_enabled({"A", "B", "Missing"}, false), 2);
  EXPECT_FALSE(enabled_of("A"));
  EXPECT_FALSE(enabled_of("B||Fresh"));
  EXPECT_TRUE(enabled_of("C"));
  EXPECT_FALSE(writer.set_panel_enabled("Missing", false));

  writer.set_all_panels_enabled(false);
  EXPECT_FALSE(enabled_of("C"));
  writer.set_all_panels_enabled(true);
  EXPECT_TRUE(enabled_of("A"));
  EXPECT_TRUE(writer.list_panels()[1].enabled);

  // Writing a panel again makes it current.
  writer.set_panel_enabled("A", false);
  write_table_panel(writer, "A", 2);
  EXPECT_TRUE(enabled_of("A"));
}

TEST_F(RDB_WRITER_TEST, EachPanelRemembersTheCommandThatMadeIt) {
  const std::string command = "create_timing_summary -setup -panel_name \"Summary (Setup)\"";
  {
    RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
    write_table_panel(writer, "Summary (Setup)", 1, command);
    write_table_panel(writer, "No Command", 1);
    EXPECT_EQ(writer.get_panel_command("Summary (Setup)"), command);
    EXPECT_TRUE(writer.set_panel_command("No Command", "report_clocks"));
    EXPECT_FALSE(writer.set_panel_command("Missing", "x"));
  }
  auto report = RDB_REPORT::open(m_file);
  EXPECT_EQ(report->get_panel_command("Summary (Setup)"), command);
  EXPECT_EQ(report->get_panel_command("No Command"), "report_clocks");
  EXPECT_EQ(report->get_panel_command("Missing"), "");
}

TEST_F(RDB_WRITER_TEST, DeletingPanelsRemovesThemAndTheirRows) {
  RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
  write_table_panel(writer, "A", 1000);
  write_table_panel(writer, "B", 300);
  write_table_panel(writer, "C", 1);
  EXPECT_TRUE(writer.delete_panel("A"));
  EXPECT_FALSE(writer.delete_panel("A"));
  EXPECT_EQ(panel_names(writer.list_panels()), (std::vector<std::string>{"B", "C"}));
  {
    // No row page of the deleted table is left behind: B has two, C keeps its
    // single small page in its object row.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open_v2(m_file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    sqlite3_stmt* count = nullptr;
    sqlite3_prepare_v2(db, "SELECT count(*) FROM rdb_row_page", -1, &count, nullptr);
    ASSERT_EQ(sqlite3_step(count), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(count, 0), 2);
    sqlite3_finalize(count);
    // Readers rely on write-ahead logging to read while the engine writes.
    sqlite3_prepare_v2(db, "PRAGMA journal_mode", -1, &count, nullptr);
    ASSERT_EQ(sqlite3_step(count), SQLITE_ROW);
    EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(count, 0)), "wal");
    sqlite3_finalize(count);
    sqlite3_close(db);
  }
  write_table_panel(writer, "A", 1);  // a new panel of an old name goes last
  EXPECT_EQ(panel_names(writer.list_panels()), (std::vector<std::string>{"B", "C", "A"}));
  EXPECT_EQ(writer.list_panels()[0].kind, RDB_KIND_TABLE);
  EXPECT_EQ(writer.delete_all_panels(), 3);
  EXPECT_TRUE(writer.list_panels().empty());
  auto report = RDB_REPORT::open(m_file);
  EXPECT_EQ(report->get_main_folder()->get_number_of_children(), 0);
}

// Older files are made from a current one by moving the data back. Version 2
// indexed rdb_object by panel instead of keeping each panel's range of ids;
// version 1 also kept titles as rows of rdb_column and every table's rows in
// rdb_row_page. Such a file must read the same, and a writer must upgrade it
// before writing, so that replacing and deleting its panels leaves nothing
// behind.
TEST_F(RDB_WRITER_TEST, OlderFilesAreReadAndUpgradedByTheWriter) {
  const char* to_version_2 = "ALTER TABLE rdb_panel DROP COLUMN first_object;"
                             "ALTER TABLE rdb_panel DROP COLUMN last_object;"
                             "CREATE INDEX rdb_object_by_panel ON rdb_object(panel_id);"
                             "PRAGMA user_version = 2;";
  const char* to_version_1 =
      "CREATE TABLE rdb_column(object_id INTEGER NOT NULL, col INTEGER NOT NULL, "
      "  title TEXT NOT NULL, PRIMARY KEY(object_id, col)) WITHOUT ROWID;"
      "INSERT INTO rdb_column SELECT object_id, 0, 'Name' FROM rdb_object;"
      "INSERT INTO rdb_column SELECT object_id, 1, 'Index' FROM rdb_object;"
      "INSERT INTO rdb_row_page SELECT object_id << 32, inline_rows FROM rdb_object "
      "  WHERE inline_rows IS NOT NULL;"
      "ALTER TABLE rdb_object DROP COLUMN titles;"
      "ALTER TABLE rdb_object DROP COLUMN inline_rows;"
      "PRAGMA user_version = 1;";
  auto check = [](const RDB_REPORT& report, const char* panel, int rows) {
    SCOPED_TRACE(panel);
    auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(report.find_object(panel));
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->get_column_names(), (std::vector<std::string>{"Name", "Index"}));
    EXPECT_EQ(table->get_number_of_data_rows(), rows);
    EXPECT_EQ(table->get_data(rows, 0), "r" + std::to_string(rows - 1));
    EXPECT_EQ(report.get_error(), "");
  };
  auto write_path_panel = [](RDB_WRITER& writer, int paths) {
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    for (int i = 1; i <= paths; ++i) {
      std::string where = "Path " + std::to_string(i);
      panel.add_path(where, -0.25 * i, true);
      panel.add_path_table(where, RDB_PATH_PART::SUMMARY, {"Name", "Index"}).add_row({"a", "b"});
      panel.add_path_chart(where, "X", "Y", 1, {{"cell", 2}});
      panel.add_path_table(where, RDB_PATH_PART::ARRIVAL, {"Name", "Index"});
      panel.add_path_table(where, RDB_PATH_PART::REQUIRED, {"Name", "Index"});
    }
    panel.add_text("Note", "n");
    panel.commit();
  };
  for (int version : {1, 2}) {
    SCOPED_TRACE(version);
    std::filesystem::remove(m_file);
    {
      RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
      write_table_panel(writer, "Big", 300);
      write_path_panel(writer, 3);
      write_table_panel(writer, "Small", 3);
    }
    {
      rdb_internal::SQL_DATABASE db(m_file, true, false, 1000);
      db.exec("BEGIN");
      db.exec(to_version_2);
      if (version == 1)
        db.exec(to_version_1);
      db.exec("COMMIT");
    }
    {
      auto report = RDB_REPORT::open(m_file);
      EXPECT_EQ(report->get_schema_version(), version);
      check(*report, "Big", 300);
      check(*report, "Small", 3);
      EXPECT_NE(report->find_object("Paths||Path 3||Data Required Path"), nullptr);
    }
    {
      RDB_WRITER writer(m_file, RDB_TIMING_REPORT);
      // The upgrade found each panel's range: the path panel's top object
      // still gives its kind.
      EXPECT_EQ(writer.list_panels()[1].kind, RDB_KIND_FOLDER);
      write_table_panel(writer, "New", 2);
      write_table_panel(writer, "Big", 1);  // the old panel's pages go
      write_path_panel(writer, 1);
      EXPECT_TRUE(writer.delete_panel("Small"));  // a page of its own in version 1
    }
    auto report = RDB_REPORT::open(m_file);
    check(*report, "New", 2);
    check(*report, "Big", 1);
    EXPECT_EQ(report->find_object("Paths||Path 2"), nullptr);
    EXPECT_NE(report->find_object("Paths||Path 1||Path Summary"), nullptr);
    EXPECT_EQ(report->find_object("Small"), nullptr);
    rdb_internal::SQL_DATABASE db(m_file, false, false, 1000);
    EXPECT_EQ(db.query_int("PRAGMA user_version"), 3);
    EXPECT_EQ(db.query_int("SELECT count(*) FROM sqlite_schema WHERE name IN "
                           "('rdb_column', 'rdb_object_by_panel')"),
              0);
    // Nothing of a replaced or deleted panel is left: every object belongs
    // to a panel whose range holds it, and every page and text to an object.
    EXPECT_EQ(db.query_int("SELECT count(*) FROM rdb_object o LEFT JOIN rdb_panel p "
                           "ON o.panel_id = p.panel_id AND o.object_id BETWEEN p.first_object "
                           "AND p.last_object WHERE p.panel_id IS NULL"),
              0);
    EXPECT_EQ(db.query_int("SELECT sum(last_object - first_object + 1) FROM rdb_panel"),
              db.query_int("SELECT count(*) FROM rdb_object"));
    EXPECT_EQ(db.query_int("SELECT count(*) FROM rdb_row_page"), 0);  // all small now
    EXPECT_EQ(db.query_int("SELECT count(*) FROM rdb_text WHERE object_id NOT IN "
                           "(SELECT object_id FROM rdb_object)"),
              0);
  }
}

TEST_F(RDB_WRITER_TEST, AValueSqliteRefusesToBindIsAnErrorNotANull) {
  rdb_internal::SQL_DATABASE db((m_dir / "bind.db").string(), true, true, 1000);
  db.exec("CREATE TABLE t(v TEXT)");
  sqlite3_limit(db.handle(), SQLITE_LIMIT_LENGTH, 16);
  rdb_internal::SQL_STATEMENT insert(db, "INSERT INTO t(v) VALUES(?)");
  EXPECT_THROW(insert.bind(1, std::string(64, 'x')), RDB_ERROR);  // too long
  EXPECT_THROW(insert.bind(2, 1), RDB_ERROR);                     // no such parameter
  insert.bind(1, "short").run();
  EXPECT_EQ(db.query_int("SELECT count(*) FROM t WHERE v IS NULL"), 0);
}

}  // namespace
