// Logic of the report browser that needs no screen: the natural comparison
// and its sort keys, the rules for panel names, commands, file names and
// splits, which stored commands may run, the text and copy compositions, and the table model's paging and
// sorting over an in-memory row source.
#include "report/lum_lexcmp.hh"
#include "report/lum_report_rules.hh"
#include "report/lum_stored_command.hh"
#include "report/lum_table.hh"
#include "report/lum_table_model.hh"
#include "report/lum_table_sort.hh"
#include "report/lum_table_source.hh"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

// ---- commands stored in a report database ----------------------------------------

TEST(LumStoredCommand, RunsOnlyLiteralReportCommandsOfTheEngine) {
  const char* const runnable[] = {
      "create_timing_summary -setup -panel_name \"Summary (Setup)\"",
      "report_timing -to_clock {a [exec touch x] b} -setup -npaths 10 -panel_name {Worst}",  // braced: literal
      "report_timing -to_clock a\\}\\ \\[exec\\ x\\] -setup",  // backslash-quoted: literal
      "report_timing -to_clock clk\\{ -panel_name {Worst Setup Paths (clk\\{)}",
      "report_clocks -panel_name \"Clocks Summary\";",  // the command's own terminator
      "  report_clock_transfers  ",
      "create_slack_histogram -clock_name {$clk} -setup",
      "report_timing -from_clock #hash",
  };
  for (const char* command : runnable) {
    std::string reason;
    EXPECT_TRUE(lum_stored_command_is_runnable(command, &reason)) << command << ": " << reason;
  }
}

TEST(LumStoredCommand, RefusesHostileOrForeignCommandsAndSaysWhy) {
  struct CASE {
    std::string command;
    const char* reason;  // part of the reason given
  };
  const CASE cases[] = {
      {"report_timing -to_clock [exec touch x]", "command substitution"},
      {"report_timing -panel_name \"Paths [exec touch x]\"", "command substitution"},
      {"report_timing -to_clock a}[exec touch x]{b", "command substitution"},
      // A raw clock name put inside braces by an old template.
      {"report_timing -panel_name {Worst Setup Paths (a} [exec touch x] {b)}", "command substitution"},
      {"report_timing -to_clock $env(HOME)", "variable"},
      {"report_timing -to_clock ${x}", "variable"},
      {"report_timing {*}[list -to_clock x]", "{*}"},
      {"report_clocks; exec touch x", "second command"},
      {"report_clocks ;exec touch x", "second command"},
      {"report_clocks\nexec touch x", "more than one line"},
      {"report_clocks \\\nexec touch x", "more than one line"},  // backslash-newline
      {"report_clocks \r", "more than one line"},
      {"report_timing -panel_name {Worst", "not a well-formed"},          // an open brace swallows later lines
      {"report_timing -panel_name \"Worst", "not a well-formed"},
      {std::string("report_clocks -panel_name \"a\0b\"", 31), "NUL"},
      {"lum_open_project -vpf x", "front end"},
      {"lum_test_record x", "front end"},
      {"exec touch x", "not one of the engine's report commands"},
      {"source evil.tcl", "not one of the engine's report commands"},
      {"::report_timing -setup", "not one of the engine's report commands"},
      {"[exec touch x] -setup", "command substitution"},
      {"delete_timing_report_panel -name x", "not one of the engine's report commands"},
      {"# report_timing", "comment"},
      {"", "empty"},
      {"   ", "empty"},
      {"report_timing -file /tmp/x", "-file"},
      {"report_timing -fi /tmp/x", "-file"},
      {"report_timing -f\\ile /tmp/x", "-file"},  // the word's value is "-file"
  };
  for (const CASE& c : cases) {
    std::string reason;
    EXPECT_FALSE(lum_stored_command_is_runnable(c.command, &reason)) << c.command;
    EXPECT_NE(reason.find(c.reason), std::string::npos) << c.command << ": " << reason;
  }
}

int sign(int value) { return (value > 0) - (value < 0); }

struct LEXCMP_CASE {
  const char* a;
  const char* b;
  int expected;  // exact value
};

TEST(LumLexcmp, ComparesNumbersByValueTextBeforeNumbersAndSignPerString) {
  const LEXCMP_CASE cases[] = {
      {"a10", "a9", 1},      // 10 - 9
      {"a", "1", -1},        // text sorts before numbers
      {"1", "a", 1},
      {"-5", "-3", -2},      // both negated: -5 - -3
      {"-5", "3", -8},
      {"x007", "x7", 2},     // equal values: the longer run is greater
      {"ab", "a", 1},        // characters left over
      {"a", "ab", -1},
      {"", "", 0},
      {"reg_12/D", "reg_12/D", 0},
      {"B", "a", 'B' - 'a'}, // signed byte difference, case matters
      {"-a", "a", 0},        // the sign is skipped even before text
      {"1.25", "1.3", 22},   // each run is its own number: 25 - 3
  };
  for (const LEXCMP_CASE& c : cases) EXPECT_EQ(lum_lexcmp(c.a, c.b), c.expected) << c.a << " vs " << c.b;
}

TEST(LumLexcmp, DigitRunsBeyondSixtyFourBitsSaturateInsteadOfWrapping) {
  // Nineteen and more digits: larger than any smaller number, in the
  // comparison and in the sort keys alike.
  const char* const huge[] = {"9999999999999999999", "123456789012345678901234567890"};
  for (const char* a : huge) {
    EXPECT_GT(lum_lexcmp(a, "1"), 0) << a;
    EXPECT_GT(lum_sort_key(a).compare(lum_sort_key("1")), 0) << a;
    const std::string negative = std::string("-") + a;
    EXPECT_LT(lum_lexcmp(negative.c_str(), "-1"), 0) << negative;
    EXPECT_LT(lum_sort_key(negative).compare(lum_sort_key("-1")), 0) << negative;
  }
}

TEST(LumLexcmp, SortKeysOrderExactlyLikeTheComparison) {
  std::mt19937 random(12345);
  const std::string alphabet = "-0123456789aZ_./ \xe9";
  std::vector<std::string> texts = {"", "-", "0", "00", "-0", "9999999999999999999999", "99999999999999999999999",
                                    "-12", "-12a", "a-12", std::string(300, '7'), std::string(301, '7')};
  for (int i = 0; i < 600; ++i) {
    std::string text;
    const int length = static_cast<int>(random() % 8);
    for (int j = 0; j < length; ++j) text += alphabet[random() % alphabet.size()];
    texts.push_back(text);
  }
  for (const std::string& a : texts) {
    const std::string key_a = lum_sort_key(a);
    for (const std::string& b : texts) {
      ASSERT_EQ(sign(key_a.compare(lum_sort_key(b))), sign(lum_lexcmp(a.c_str(), b.c_str())))
          << "\"" << a << "\" vs \"" << b << "\"";
    }
  }
}

TEST(LumTableSort, ChunkedSortMatchesAStableSortByTheComparisonInBothDirections) {
  std::mt19937 random(777);
  const std::vector<std::string> stems = {"u_core/u_alu/reg_", "u_core/u_alu/reg_", "u_core/u_mul/acc_", "-", ""};
  std::vector<std::string> cells;
  for (int i = 0; i < 3000; ++i)
    cells.push_back(stems[random() % stems.size()] + std::to_string(random() % 50) + (random() % 2 ? "/D" : "[3]/Q"));
  std::vector<RDB_TABLE_ROW> rows;
  for (const std::string& cell : cells) rows.push_back(RDB_TABLE_ROW{{"x", cell}, {}});
  const LUM_MEMORY_TABLE_SOURCE source({"A", "B"}, rows);
  for (bool ascending : {true, false}) {
    for (int parts : {1, 3}) {
      std::vector<LUM_SORT_CHUNK> chunks(static_cast<size_t>(parts));
      for (int p = 0; p < parts; ++p)
        ASSERT_TRUE(lum_key_rows(source, 3000 * p / parts, 3000 * (p + 1) / parts, 1, p, &chunks[p]));
      std::vector<bool> groups;
      const std::vector<uint32_t> order = lum_sort_chunks(chunks, ascending, nullptr, &groups);
      auto stable_order = [&cells](bool up) {
        std::vector<uint32_t> expected(cells.size());
        for (uint32_t i = 0; i < expected.size(); ++i) expected[i] = i;
        std::stable_sort(expected.begin(), expected.end(), [&](uint32_t a, uint32_t b) {
          const int c = lum_lexcmp(cells[a].c_str(), cells[b].c_str());
          return up ? c < 0 : c > 0;
        });
        return expected;
      };
      EXPECT_EQ(order, stable_order(ascending)) << (ascending ? "ascending" : "descending") << ", " << parts << " chunks";
      // The other direction by reversing the groups of equal keys, twice.
      const std::vector<uint32_t> flipped = lum_reverse_sort_order(order, &groups);
      EXPECT_EQ(flipped, stable_order(!ascending));
      EXPECT_EQ(lum_reverse_sort_order(flipped, &groups), order);
    }
  }
}

TEST(LumTableSort, LargeSortsGoThroughBucketsAndStillMatchTheComparison) {
  // Enough rows for the bucketed sort: a long shared prefix, numbers that
  // differ only in their low bytes, negative cells, and many equal keys.
  std::mt19937 random(99);
  const int count = 300000;
  std::vector<std::string> cells;
  cells.reserve(count);
  for (int i = 0; i < count; ++i) {
    const unsigned r = static_cast<unsigned>(random());
    switch (r % 4) {
      case 0: cells.push_back("u_core/u_alu/reg_" + std::to_string(r % 70000) + "/D"); break;
      case 1: cells.push_back("u_core/u_alu/reg_" + std::to_string(r % 50) + "[" + std::to_string(r % 7) + "]"); break;
      case 2: cells.push_back("-" + std::to_string(r % 1000) + "." + std::to_string(r % 10)); break;
      default: cells.push_back(std::to_string(r % 100000)); break;
    }
  }
  std::vector<RDB_TABLE_ROW> rows;
  rows.reserve(count);
  for (const std::string& cell : cells) rows.push_back(RDB_TABLE_ROW{{cell}, {}});
  const LUM_MEMORY_TABLE_SOURCE source({"A"}, std::move(rows));
  std::vector<std::string> keys(cells.size());
  for (size_t i = 0; i < cells.size(); ++i) keys[i] = lum_sort_key(cells[i]);
  for (bool ascending : {true, false}) {
    std::vector<LUM_SORT_CHUNK> chunks(1);
    ASSERT_TRUE(lum_key_rows(source, 0, count, 0, 0, &chunks[0]));
    const std::vector<uint32_t> order = lum_sort_chunks(chunks, ascending);
    std::vector<uint32_t> expected(cells.size());
    for (uint32_t i = 0; i < expected.size(); ++i) expected[i] = i;
    std::stable_sort(expected.begin(), expected.end(), [&](uint32_t a, uint32_t b) {
      return ascending ? keys[a] < keys[b] : keys[b] < keys[a];
    });
    EXPECT_TRUE(order == expected) << (ascending ? "ascending" : "descending");
  }
}

TEST(LumReportRules, PanelNameIsThePartAfterTheFirstSeparator) {
  EXPECT_EQ(lum_panel_name_from_rdb_path("Timing Analyzer||Summary (Setup)"), "Summary (Setup)");
  EXPECT_EQ(lum_panel_name_from_rdb_path("Timing Analyzer||Paths||path 1"), "Paths||path 1");
  EXPECT_EQ(lum_panel_name_from_rdb_path("NoSeparator"), "oSeparator");
  EXPECT_EQ(lum_panel_name_from_rdb_path(""), "");
}

TEST(LumReportRules, DeleteCommandQuotesThePanelName) {
  EXPECT_EQ(lum_delete_panel_command("Summary (Setup)"), "delete_timing_report_panel -name \"Summary (Setup)\"");
  EXPECT_EQ(lum_delete_panel_command("a \"b\" [c] $d"),
            "delete_timing_report_panel -name \"a \\\"b\\\" \\[c\\] \\$d\"");
}

TEST(LumReportRules, ExportFileNameReplacesUnsafeCharacters) {
  EXPECT_EQ(lum_export_file_name("top", "a/b:c"), "top-a-b-c.rpt");
  EXPECT_EQ(lum_export_file_name("rev", "Summary (Setup)"), "rev-Summary (Setup).rpt");
  EXPECT_EQ(lum_export_file_name("r", "x\\y\"z|1>2<3*4?5&6"), "r-x-y-z-1-2-3-4-5-6.rpt");
}

TEST(LumReportRules, SplitPositionsAreAtTheHalves) {
  EXPECT_EQ(lum_split_positions(LUM_SPLIT_FOUR_WAY, 400, 300), (LUM_SPLIT_POSITIONS{150, 200}));
  EXPECT_EQ(lum_split_positions(LUM_SPLIT_HORIZONTAL, 400, 300), (LUM_SPLIT_POSITIONS{150, 0}));
  EXPECT_EQ(lum_split_positions(LUM_SPLIT_VERTICAL, 400, 300), (LUM_SPLIT_POSITIONS{0, 200}));
  EXPECT_EQ(lum_split_positions(LUM_SPLIT_NONE, 400, 300), (LUM_SPLIT_POSITIONS{0, 0}));
  // A control too small to halve still splits.
  EXPECT_EQ(lum_split_pane_count(lum_split_positions(LUM_SPLIT_FOUR_WAY, 1, 0)), 4);
  EXPECT_EQ(lum_split_pane_count(lum_split_positions(LUM_SPLIT_HORIZONTAL, 400, 300)), 2);
}

TEST(LumTableText, TabsExpandBeforeEachLineFeedButNotInTheLastPiece) {
  EXPECT_EQ(lum_split_text_rows("a\tb\nc\td"), (std::vector<std::string>{"a    b", "c\td"}));
  EXPECT_EQ(lum_split_text_rows("one\n"), (std::vector<std::string>{"one", ""}));
  EXPECT_TRUE(lum_split_text_rows("").empty());
}

TEST(LumTableCopy, WholeRowsAreTabSeparatedAndSingleCellsAreNot) {
  const std::vector<LUM_COPY_ROW> whole = {{{"clk", "-0.5", "3"}, {true, true, true}},
                                           {{"clk2", "1.0", "4"}, {true, true, true}}};
  EXPECT_EQ(lum_compose_copy_text(whole), "clk\t-0.5\t3\r\nclk2\t1.0\t4");
  // The first row does not reach the last column: no separators at all.
  const std::vector<LUM_COPY_ROW> cells = {{{"clk", "-0.5", "3"}, {true, true, false}},
                                           {{"clk2", "1.0", "4"}, {false, true, false}}};
  EXPECT_EQ(lum_compose_copy_text(cells), "clk-0.5\r\n1.0");
  // One column is never whole-row mode.
  EXPECT_EQ(lum_compose_copy_text({{{"x"}, {true}}, {{"y"}, {true}}}), "x\r\ny");
  EXPECT_EQ(lum_compose_copy_text({}), "");
}

TEST(LumTableCopy, CsvQuotesOnlyFieldsThatNeedIt) {
  EXPECT_EQ(lum_csv_record({"clk", "-0.5"}), "clk,-0.5\r\n");
  EXPECT_EQ(lum_csv_record({"a,b", "say \"hi\"", "two\nlines"}), "\"a,b\",\"say \"\"hi\"\"\",\"two\nlines\"\r\n");
}

// ---- the table model over an in-memory source --------------------------------------

class LumTableModel : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    static int argc = 1;
    static char name[] = "lum_report_logic_test";
    static char* argv[] = {name, nullptr};
    if (!QCoreApplication::instance()) new QCoreApplication(argc, argv);
  }

  // Rows "name<i>", a slack with a sign, and a colour on every third row.
  static std::unique_ptr<LUM_TABLE_SOURCE> make_source(const std::vector<std::vector<std::string>>& cells) {
    std::vector<RDB_TABLE_ROW> rows;
    for (size_t i = 0; i < cells.size(); ++i) {
      RDB_TABLE_ROW row{cells[i], {}};
      if (i % 3 == 0) row.colors.push_back(RDB_CELL_COLOR{1, 0xff0000, RDB_NO_COLOR});
      rows.push_back(row);
    }
    return std::make_unique<LUM_MEMORY_TABLE_SOURCE>(std::vector<std::string>{"Name", "Slack"}, std::move(rows));
  }

  static void wait_for_sort(LUM_TABLE_MODEL& model) {
    QElapsedTimer clock;
    clock.start();
    while (model.is_sorting() && clock.elapsed() < 10000) QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    ASSERT_FALSE(model.is_sorting());
  }

  static std::vector<std::string> column(const LUM_TABLE_MODEL& model, int c) {
    std::vector<std::string> texts;
    for (int r = 0; r < model.rowCount(); ++r) texts.push_back(model.cell_text(r, c));
    return texts;
  }
};

TEST_F(LumTableModel, PagesRowsOnDemandAcrossPageBoundaries) {
  std::vector<std::vector<std::string>> cells;
  for (int i = 0; i < 1000; ++i) cells.push_back({"n" + std::to_string(i), std::to_string(i)});
  LUM_TABLE_MODEL model;
  model.set_source(make_source(cells));
  ASSERT_EQ(model.rowCount(), 1000);
  ASSERT_EQ(model.columnCount(), 2);
  // Visit more pages than the cache keeps, out of order, and come back.
  for (int r : {999, 0, 255, 256, 511, 512, 700, 0, 999}) EXPECT_EQ(model.cell_text(r, 0), "n" + std::to_string(r));
  EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Slack");
  EXPECT_EQ(model.data(model.index(3, 1), Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));
  EXPECT_FALSE(model.data(model.index(3, 0), Qt::ForegroundRole).isValid());
  EXPECT_FALSE(model.data(model.index(4, 1), Qt::BackgroundRole).isValid());
  EXPECT_EQ(model.cell_text(1000, 0), "");
}

TEST_F(LumTableModel, SortsBothWaysByNaturalOrderAndUndoRestoresDatabaseOrder) {
  LUM_TABLE_MODEL model;
  model.set_source(make_source({{"r10", "-0.5"}, {"r9", "1.25"}, {"r100", "-2"}, {"R1", "0"}, {"r9", "1.25"}}));
  QSignalSpy finished(&model, &LUM_TABLE_MODEL::sort_finished);
  model.sort_column(0, true);
  // The old order stays until the sort has finished.
  EXPECT_EQ(model.cell_text(0, 0), "r10");
  wait_for_sort(model);
  EXPECT_EQ(column(model, 0), (std::vector<std::string>{"R1", "r9", "r9", "r10", "r100"}));
  EXPECT_EQ(model.get_sort_column(), 0);
  // Equal cells keep their database order in both directions.
  EXPECT_EQ(model.source_row(1), 1);
  EXPECT_EQ(model.source_row(2), 4);
  // Colours travel with their rows.
  EXPECT_EQ(model.cell_color(3, 1).foreground, 0xff0000u);

  model.sort_column(1, false);
  wait_for_sort(model);
  // "-0.5" is the numbers -0 and -5: equal to "0" up to its leftover ".5", so above it.
  EXPECT_EQ(column(model, 1), (std::vector<std::string>{"1.25", "1.25", "-0.5", "0", "-2"}));
  EXPECT_EQ(model.source_row(0), 1);
  EXPECT_EQ(model.source_row(1), 4);
  EXPECT_FALSE(model.is_ascending());
  EXPECT_EQ(finished.count(), 2);

  model.undo_sort();
  EXPECT_EQ(model.get_sort_column(), -1);
  EXPECT_EQ(column(model, 0), (std::vector<std::string>{"r10", "r9", "r100", "R1", "r9"}));
}

TEST_F(LumTableModel, ASortOverTakenByAnotherIsDiscarded) {
  std::vector<std::vector<std::string>> cells;
  for (int i = 0; i < 50000; ++i) cells.push_back({"n" + std::to_string((i * 7919) % 50000), std::to_string(i)});
  LUM_TABLE_MODEL model;
  model.set_source(make_source(cells));
  // Read on this thread in many slices, so the second sort starts while the first collects.
  model.set_sort_off_thread_reading(false);
  model.set_sort_slice(1000, 1);
  QSignalSpy finished(&model, &LUM_TABLE_MODEL::sort_finished);
  model.sort_column(0, true);
  QCoreApplication::processEvents();
  model.sort_column(1, false);
  wait_for_sort(model);
  QCoreApplication::processEvents();
  ASSERT_EQ(finished.count(), 1);
  EXPECT_EQ(finished.at(0).at(0).toInt(), 1);
  EXPECT_EQ(model.cell_text(0, 1), "49999");
  EXPECT_EQ(model.cell_text(49999, 1), "0");
}

TEST_F(LumTableModel, PersistentIndexesFollowTheirRowsThroughASort) {
  LUM_TABLE_MODEL model;
  model.set_source(make_source({{"c", "1"}, {"a", "2"}, {"b", "3"}}));
  const QPersistentModelIndex caret(model.index(0, 1));  // row "c"
  model.sort_column(0, true);
  wait_for_sort(model);
  EXPECT_EQ(caret.row(), 2);
  model.undo_sort();
  EXPECT_EQ(caret.row(), 0);
}

}  // namespace
