// The report browser's widgets, offscreen, over report databases written by
// the tests: the contents tree, the report view with its page controls and
// splits, and the report table.
#include "lum_report_test_support.hh"
#include "../lum/lum_gui_events.hh"

#include "charts/lum_chart_wnd.hh"
#include "charts/lum_histogram_wnd.hh"
#include "platform/atcl.hh"
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_commands.hh"
#include "report/lum_path_wnd.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QSplitter>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class LumReportBrowser : public ::testing::Test {
 protected:
  void SetUp() override {
    lum_report_set_engine_sink([this](const std::string& command) { engine_commands.push_back(command); });
    window.resize(900, 600);
    browser = new LUM_REPORT_BROWSER(&window, &window, &window);
    tree = browser->get_tree();
    view = browser->get_report_view();
    tree->setGeometry(0, 0, 250, 600);
    view->setGeometry(250, 0, 650, 600);
    window.show();
  }
  void TearDown() override {
    lum_report_set_engine_sink(nullptr);
    msg_set_box_handler(nullptr);
  }

  void load_sample(const char* panel = nullptr) {
    lum_write_sample_report(project.database_file());
    tree->load_sta_report(true, panel);
  }
  LUM_VIEW_CTRL* top() { return view->get_top_view_ctrl(); }
  QLabel* caption(LUM_VIEW_CTRL* ctrl) {
    return ctrl->findChild<QLabel*>(QStringLiteral("lum_view_caption"), Qt::FindDirectChildrenOnly);
  }
  // Right-clicks a page control's caption and picks an entry of its menu.
  lum_test::MENU_RESULT caption_pick(LUM_VIEW_CTRL* ctrl, const char* entry,
                                     lum_test::MENU_PICK how = lum_test::MENU_PICK::CLICK) {
    return lum_test::lum_right_click_pick(caption(ctrl), caption(ctrl)->rect().center(), QString::fromLatin1(entry), how);
  }
  QModelIndex index_of(int row) {
    // Rows are in pre-order; walk the model to the row's index.
    int seen = 0;
    std::function<QModelIndex(const QModelIndex&)> walk = [&](const QModelIndex& parent) -> QModelIndex {
      for (int r = 0; r < tree->model()->rowCount(parent); ++r) {
        const QModelIndex child = tree->model()->index(r, 0, parent);
        if (seen++ == row) return child;
        const QModelIndex found = walk(child);
        if (found.isValid()) return found;
      }
      return QModelIndex();
    };
    return walk(QModelIndex());
  }
  // A left click on a row of the tree, as a person makes it.
  void click_row(int row) {
    QModelIndex index = index_of(row);
    tree->scrollTo(index);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualRect(index).center());
    QCoreApplication::processEvents();
  }
  lum_test::MENU_RESULT row_pick(int row, const char* entry) {
    QModelIndex index = index_of(row);
    tree->scrollTo(index);
    return lum_test::lum_right_click_pick(tree->viewport(), tree->visualRect(index).center(), QString::fromLatin1(entry));
  }
  LUM_TABLE* shown_table(LUM_VIEW_CTRL* ctrl) {
    QWidget* page = ctrl->get_page_window();
    if (auto* host = qobject_cast<LUM_CENTERED_TABLE*>(page)) return host->get_table();
    return qobject_cast<LUM_TABLE*>(page);
  }

  struct APP {
    APP() { lum_test_app(); }
  } app;  // first: the widgets below need it
  LUM_TEST_MESSAGES messages;
  LUM_TEST_FRAME frame;
  LUM_TEST_PROJECT project;
  QWidget window;
  LUM_REPORT_BROWSER* browser = nullptr;
  LUM_STA_REPORT_TOC_TREE* tree = nullptr;
  LUM_REPORT_VIEW* view = nullptr;
  std::vector<std::string> engine_commands;
};

// ---- contents tree ------------------------------------------------------------------

TEST_F(LumReportBrowser, LoadingWithoutReloadShowsOnlyThePlaceholderAndOpensNothing) {
  lum_write_sample_report(project.database_file());
  tree->load_sta_report(false, "Summary (Setup)");
  EXPECT_FALSE(tree->has_report());
  ASSERT_EQ(tree->get_row_count(), 1);
  EXPECT_EQ(tree->get_label(0), LUM_REPORT_NOT_AVAILABLE);
  EXPECT_TRUE(tree->open_item(0));
  EXPECT_EQ(top()->get_type(), LUM_VIEW_NONE);
  EXPECT_EQ(top()->get_title(), LUM_DATA_NOT_AVAILABLE);
  EXPECT_TRUE(messages.internal_errors.empty());
}

TEST_F(LumReportBrowser, TreeListsPanelsInOrderHidesLegalNoticesAndMarksStaleSubtrees) {
  load_sample();
  ASSERT_TRUE(tree->has_report());
  std::vector<std::string> labels;
  for (int i = 0; i < tree->get_row_count(); ++i) labels.push_back(tree->get_label(i));
  EXPECT_EQ(labels, (std::vector<std::string>{"Summary (Setup)", "Clocks", "clk_a", "clk_b", "Text Report", "Web Note",
                                              "Old Summary", "Old Table", "Commands", "Worst Path", "Slack Histogram",
                                              "Bars"}));
  EXPECT_EQ(tree->get_level(2), 1);
  EXPECT_EQ(tree->get_rdb_path(2), "Timing Analyzer||Clocks||clk_a");
  // A disabled panel marks its whole subtree; nothing else is stale.
  for (int i = 0; i < tree->get_row_count(); ++i)
    EXPECT_EQ(tree->is_out_of_date(i), labels[i] == "Old Summary" || labels[i] == "Old Table") << labels[i];
  bool enabled = true;
  EXPECT_EQ(tree->find_item("Old Table", &enabled), 7);
  EXPECT_FALSE(enabled);
  EXPECT_EQ(tree->find_item("clk_a", &enabled, 0), -1);
  EXPECT_EQ(tree->find_item_by_rdb_path("Timing Analyzer||Clocks||clk_b", &enabled), 3);
  EXPECT_TRUE(enabled);
  EXPECT_FALSE(tree->open_item(-1));
  EXPECT_FALSE(tree->open_item(tree->get_row_count()));
  EXPECT_EQ(top()->get_type(), LUM_VIEW_NONE);
}

TEST_F(LumReportBrowser, RequestedPanelInsideAFolderOpensThatPanelAndAFolderOpensItsFirstLeaf) {
  load_sample("Clocks||clk_b");
  EXPECT_EQ(tree->get_selected_row(), 3);
  // The view's own notion of the current item agrees (second child of the second panel).
  EXPECT_EQ(tree->currentIndex(), tree->model()->index(1, 0, tree->model()->index(1, 0)));
  EXPECT_EQ(top()->get_path(), "Timing Analyzer||Clocks||clk_b");
  EXPECT_EQ(top()->get_title(), "clk_b");
  // A headerless table is shown bare, without the centring host.
  EXPECT_NE(qobject_cast<LUM_TABLE*>(top()->get_page_window()), nullptr);

  tree->open_item(1);  // the folder "Clocks"
  EXPECT_EQ(tree->get_selected_row(), 2);
  EXPECT_EQ(top()->get_path(), "Timing Analyzer||Clocks||clk_a");
  tree->open_item(4);
  EXPECT_EQ(tree->currentIndex(), tree->model()->index(2, 0));  // "Text Report", the third panel
}

TEST_F(LumReportBrowser, PendingNamesOpenAPanelOnceItExists) {
  lum_write_sample_report(project.database_file());
  browser->select_panel_after_report("Text Report");
  tree->load_sta_report(true, nullptr);
  EXPECT_EQ(top()->get_title(), "Text Report");
  // The name is used once.
  top()->close_page();
  tree->load_sta_report(true, nullptr);
  EXPECT_EQ(top()->get_type(), LUM_VIEW_NONE);
  // The first pending name opens the first entries below a folder.
  tree->set_pending_open_name("Clocks");
  tree->load_sta_report(true, nullptr);
  EXPECT_EQ(top()->get_title(), "clk_b");
}

TEST_F(LumReportBrowser, BadDatabasesShowThePlaceholderAndSayWhy) {
  struct BAD_FILE {
    const char* what;
    std::function<void(const std::string&)> make;
    const char* reason;
  };
  const BAD_FILE cases[] = {
      {"missing", [](const std::string&) {}, "does not exist"},
      {"not a database", [](const std::string& f) { std::ofstream(f) << "garbage, not SQLite at all"; }, "Report database"},
      {"truncated",
       [](const std::string& f) {
         lum_write_sample_report(f);
         std::string bytes = read_file(f);
         std::ofstream(f, std::ios::binary | std::ios::trunc) << bytes.substr(0, 1000);
       },
       "Report database"},
      {"newer schema",
       [](const std::string& f) {
         lum_write_sample_report(f);
         sqlite3* db = nullptr;
         sqlite3_open(f.c_str(), &db);
         sqlite3_exec(db, "PRAGMA user_version = 999", nullptr, nullptr, nullptr);
         sqlite3_close(db);
       },
       "newer"},
  };
  for (const BAD_FILE& c : cases) {
    LUM_TEST_PROJECT bad_project("bad");
    std::filesystem::create_directories(std::filesystem::path(bad_project.database_file()).parent_path());
    c.make(bad_project.database_file());
    messages.texts.clear();
    tree->load_sta_report(true, "Summary (Setup)");
    EXPECT_FALSE(tree->has_report()) << c.what;
    EXPECT_EQ(tree->get_label(0), LUM_REPORT_NOT_AVAILABLE) << c.what;
    ASSERT_EQ(messages.texts.size(), 1u) << c.what;
    EXPECT_NE(messages.texts[0].find(c.reason), std::string::npos) << c.what << ": " << messages.texts[0];
  }
  // A database that another process holds locked.
  {
    LUM_TEST_PROJECT locked_project("locked");
    lum_write_sample_report(locked_project.database_file());
    sqlite3* holder = nullptr;
    ASSERT_EQ(sqlite3_open(locked_project.database_file().c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE;", nullptr, nullptr, nullptr), SQLITE_OK);
    DBMUI_MANAGER::get_instance()->set_busy_timeout_ms(50);
    messages.texts.clear();
    tree->load_sta_report(true, "Summary (Setup)");
    DBMUI_MANAGER::get_instance()->set_busy_timeout_ms(2000);
    sqlite3_exec(holder, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_close(holder);
    EXPECT_FALSE(tree->has_report());
    ASSERT_EQ(messages.texts.size(), 1u);
    EXPECT_NE(messages.texts[0].find("locked"), std::string::npos) << messages.texts[0];
  }
  // A project that has no reports yet is not worth a word unless a panel was announced.
  LUM_TEST_PROJECT fresh_project("fresh");
  messages.texts.clear();
  tree->load_sta_report(true, nullptr);
  EXPECT_FALSE(tree->has_report());
  EXPECT_TRUE(messages.texts.empty());
}

TEST_F(LumReportBrowser, PreOrderPositionsCountLegalNoticesAndFoldersBeforeChildren) {
  lum_write_sample_report(project.database_file());
  std::unique_ptr<RDB_REPORT> report = RDB_REPORT::open(project.database_file());
  ASSERT_NE(lum_get_report_object(report.get(), 0), nullptr);
  EXPECT_TRUE(lum_get_report_object(report.get(), 0)->is_legal_notice());
  EXPECT_EQ(lum_get_report_object(report.get(), 1)->get_name(), "Summary (Setup)");
  EXPECT_EQ(lum_get_report_object(report.get(), 2)->get_name(), "Clocks");
  EXPECT_EQ(lum_get_report_object(report.get(), 4)->get_name(), "clk_b");
  EXPECT_EQ(lum_get_report_object(report.get(), 5)->get_name(), "Text Report");
  EXPECT_EQ(lum_get_report_object(report.get(), 10000), nullptr);
  EXPECT_EQ(lum_get_report_object(report.get(), -1), nullptr);
}

TEST_F(LumReportBrowser, AReportOfOnlyLegalNoticesShowsThePlaceholder) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    writer.write_legal_notice("Notice only.");
  }
  tree->load_sta_report(true, nullptr);
  EXPECT_FALSE(tree->has_report());
  EXPECT_EQ(tree->get_label(0), LUM_REPORT_NOT_AVAILABLE);
}

TEST_F(LumReportBrowser, ContextCommandsDeleteAndRegenerateThroughTheEngine) {
  load_sample();
  const int summary = tree->find_item("Summary (Setup)");
  click_row(summary);
  ASSERT_TRUE(row_pick(summary, "Regenerate").picked);
  ASSERT_TRUE(row_pick(summary, "Delete").picked);
  ASSERT_TRUE(row_pick(summary, "Delete All Out of Date").picked);
  ASSERT_TRUE(row_pick(summary, "Regenerate All Out of Date").picked);
  EXPECT_EQ(engine_commands,
            (std::vector<std::string>{"create_timing_summary -setup -panel_name \"Summary (Setup)\"",
                                      "delete_timing_report_panel -name \"Summary (Setup)\"",
                                      "delete_timing_report_panel -name \"Old Summary\"",
                                      "report_clocks -panel_name \"Old Summary\""}));
  // Delete All asks first; No deletes nothing, Yes every panel but the legal notice.
  std::vector<std::string> asked;
  int answer = MSG_ANSWER_NO;
  msg_set_box_handler([&](const MSG_CATALOGUE_ENTRY& entry, const std::string&) {
    asked.push_back(entry.id);
    return answer;
  });
  engine_commands.clear();
  ASSERT_TRUE(row_pick(summary, "Delete All").picked);
  EXPECT_EQ(asked, std::vector<std::string>{"LUM_PROMPT_TO_DELETE_ALL_PANELS"});
  EXPECT_TRUE(engine_commands.empty());
  answer = MSG_ANSWER_YES;
  ASSERT_TRUE(row_pick(summary, "Delete All").picked);
  EXPECT_EQ(engine_commands.size(), 9u);
  // A panel without a recorded command cannot be regenerated.
  const int text = tree->find_item("Text Report");
  click_row(text);
  lum_test::MENU_RESULT menu = row_pick(text, "Regenerate");
  EXPECT_TRUE(menu.shown);
  EXPECT_FALSE(menu.picked);
}

TEST_F(LumReportBrowser, RegenerateAllOutOfDateUpdatesAStaleNetlistFirst) {
  load_sample();
  frame.set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '0');
  click_row(0);
  ASSERT_TRUE(row_pick(0, "Regenerate All Out of Date").picked);
  EXPECT_EQ(engine_commands,
            (std::vector<std::string>{"update_timing_netlist", "report_clocks -panel_name \"Old Summary\""}));
}

TEST_F(LumReportBrowser, TreeClicksKeysAndPartsActOnWhatThePersonSees) {
  load_sample();
  const int clocks = tree->find_item("Clocks");
  const int clk_a = tree->find_item("clk_a");
  const int clk_b = tree->find_item("clk_b");
  // A click on a folder ends with the caret, the highlight and the page on its first leaf.
  click_row(clocks);
  ASSERT_TRUE(lum_test_wait([&] { return tree->get_selected_row() == clk_a; }, 2000));
  QCoreApplication::processEvents();
  EXPECT_FALSE(tree->selectionModel()->isSelected(index_of(clocks)));
  EXPECT_TRUE(tree->selectionModel()->isSelected(index_of(clk_a)));
  EXPECT_EQ(top()->get_title(), "clk_a");
  // The keyboard moves up over the expanded folder to the panel above it.
  tree->setFocus();
  QTest::keyClick(tree, Qt::Key_Up);
  EXPECT_EQ(tree->get_selected_row(), clocks);
  QTest::keyClick(tree, Qt::Key_Up);
  EXPECT_EQ(tree->get_selected_row(), tree->find_item("Summary (Setup)"));
  EXPECT_EQ(top()->get_title(), "Summary (Setup)");
  // Return on a folder opens its first leaf.
  QTest::keyClick(tree, Qt::Key_Down);
  QTest::keyClick(tree, Qt::Key_Return);
  EXPECT_EQ(tree->get_selected_row(), clk_a);

  // Delete and Export on a part of a panel act on the panel.
  click_row(clk_b);
  ASSERT_TRUE(row_pick(clk_b, "Delete").picked);
  EXPECT_EQ(engine_commands, std::vector<std::string>{"delete_timing_report_panel -name \"Clocks\""});
  EXPECT_EQ(tree->get_panel_row(clk_b), clocks);

  // After Close Page, a click on the selected row opens it again.
  ASSERT_TRUE(caption_pick(top(), "Close Page").picked);
  EXPECT_EQ(top()->get_type(), LUM_VIEW_NONE);
  click_row(clk_b);
  EXPECT_EQ(top()->get_title(), "clk_b");
}
TEST_F(LumReportBrowser, DisableAllHappensOnlyWhenTheNetlistIsStaleAndConstraintsChanged) {
  load_sample("Summary (Setup)");
  tree->set_sdc_needs_saving(true);
  tree->update_status();
  EXPECT_FALSE(tree->is_out_of_date(0));  // the netlist is still up to date
  // The model keeps its contract with the view: a change spans one parent's
  // children, and a layout change is announced before it happens.
  int spans_across_parents = 0, unannounced_layouts = 0, announced_layouts = 0;
  QObject::connect(tree->model(), &QAbstractItemModel::dataChanged,
                   [&](const QModelIndex& first, const QModelIndex& last) {
                     if (first.parent() != last.parent()) ++spans_across_parents;
                   });
  QObject::connect(tree->model(), &QAbstractItemModel::layoutAboutToBeChanged, [&] { ++announced_layouts; });
  QObject::connect(tree->model(), &QAbstractItemModel::layoutChanged, [&] {
    if (announced_layouts-- == 0) ++unannounced_layouts;
  });
  frame.set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '0');
  browser->update_status(true);
  EXPECT_EQ(spans_across_parents, 0);
  EXPECT_EQ(unannounced_layouts, 0);
  for (int i = 0; i < tree->get_row_count(); ++i) EXPECT_TRUE(tree->is_out_of_date(i));
  // The open page was re-opened with the watermark.
  ASSERT_NE(shown_table(top()), nullptr);
  EXPECT_TRUE(shown_table(top())->is_out_of_date());
}

TEST_F(LumReportBrowser, ExportWritesTheHeaderAndTheRenderingInEachFormat) {
  load_sample();
  const int row = tree->find_item("Summary (Setup)");
  const std::string base = project.dir() + "/" + lum_export_file_name(project.revision(), tree->get_label(row));
  std::string error;
  ASSERT_TRUE(tree->export_item(row, base, LUM_EXPORT_FORMAT::TEXT, &error)) << error;
  const std::string text = read_file(base);
  EXPECT_EQ(text.rfind("Sample legal notice.\nChronel Timing Analyzer ", 0), 0u) << text;
  EXPECT_NE(text.find("\n" + base + "\n"), std::string::npos);
  EXPECT_NE(text.find("clk10"), std::string::npos);

  ASSERT_TRUE(tree->export_item(row, base + ".html", LUM_EXPORT_FORMAT::HTML, &error)) << error;
  const std::string html = read_file(base + ".html");
  EXPECT_EQ(html.rfind("<PRE>\nSample legal notice.", 0), 0u);
  EXPECT_NE(html.find("</PRE>\n"), std::string::npos);
  EXPECT_NE(html.find("<table"), std::string::npos);

  ASSERT_TRUE(tree->export_item(row, base + ".xml", LUM_EXPORT_FORMAT::XML, &error)) << error;
  EXPECT_NE(read_file(base + ".xml").find("clk10"), std::string::npos);

  EXPECT_FALSE(tree->export_item(row, project.dir() + "/no/such/dir/x.rpt", LUM_EXPORT_FORMAT::TEXT, &error));
  EXPECT_NE(error.find("no/such/dir"), std::string::npos);
}

// ---- report view ---------------------------------------------------------------------

TEST_F(LumReportBrowser, EachKindOpensItsViewer) {
  load_sample();
  struct KIND_CASE {
    const char* label;
    std::function<bool(QWidget*)> is_expected;
  };
  const KIND_CASE cases[] = {
      {"Summary (Setup)", [](QWidget* w) { return qobject_cast<LUM_CENTERED_TABLE*>(w) != nullptr; }},
      {"Commands", [](QWidget* w) { return qobject_cast<LUM_CENTERED_TABLE*>(w) != nullptr; }},
      {"Text Report", [](QWidget* w) { return qobject_cast<LUM_TABLE*>(w) != nullptr; }},
      {"Web Note",
       [](QWidget* w) {
         auto* browser = qobject_cast<QTextBrowser*>(w);
         return browser && browser->toPlainText().contains("bold note");
       }},
      {"Worst Path",
       [](QWidget* w) {
         auto* path = qobject_cast<LUM_PATH_WND*>(w);
         return path && path->get_panel(LUM_PATH_WND::SUMMARY)->is_caption_red();
       }},
      {"Slack Histogram",
       [](QWidget* w) {
         auto* histogram = qobject_cast<LUM_HISTOGRAM_WND*>(w);
         return histogram && histogram->get_data().bins.size() == 2;
       }},
      {"Bars",
       [](QWidget* w) {
         auto* chart = qobject_cast<LUM_CHART_WND*>(w);
         return chart && chart->get_mode() == LUM_CHART_MODE::BARS && chart->get_data().rows.size() == 1;
       }},
  };
  for (const KIND_CASE& c : cases) {
    tree->open_item(tree->find_item(c.label));
    EXPECT_EQ(top()->get_title().toStdString(), c.label);
    EXPECT_TRUE(c.is_expected(top()->get_page_window())) << c.label;
  }
  // The text report keeps its rows: tabs expanded before a line feed.
  tree->open_item(tree->find_item("Text Report"));
  LUM_TABLE* text = shown_table(top());
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(text->get_model()->cell_text(0, 0), "line one    x");
  EXPECT_TRUE(messages.internal_errors.empty());
}

TEST_F(LumReportBrowser, EmptyTablesSayWhy) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER ucp = writer.begin_panel("Unconstrained Paths", "report_ucp -panel_name \"Unconstrained Paths\"");
    ucp.add_table("", RDB_KIND_TABLE, {"Node", "Kind"});
    ucp.commit();
    RDB_PANEL_WRITER recovery =
        writer.begin_panel("Summary (Recovery)", "create_timing_summary -recovery -panel_name \"Summary (Recovery)\"");
    recovery.add_table("", RDB_KIND_TABLE, {"Clock", "Slack"});
    recovery.commit();
  }
  struct EMPTY_CASE {
    const char* panel;
    const char* words;
  };
  for (const EMPTY_CASE& c : {EMPTY_CASE{"Unconstrained Paths", "All start and end points are constrained."},
                              EMPTY_CASE{"Summary (Recovery)", "No recovery paths were found."}}) {
    tree->load_sta_report(true, c.panel);
    auto* page = qobject_cast<QLabel*>(top()->get_page_window());
    ASSERT_NE(page, nullptr) << c.panel;
    EXPECT_TRUE(page->text().contains(c.words)) << page->text().toStdString();
  }
}

TEST_F(LumReportBrowser, OutOfDatePanelOpensWithTheWatermark) {
  load_sample();
  tree->open_item(tree->find_item("Old Table"));
  ASSERT_NE(shown_table(top()), nullptr);
  EXPECT_TRUE(top()->is_out_of_date());
  EXPECT_TRUE(shown_table(top())->is_out_of_date());
  tree->open_item(tree->find_item("clk_a"));
  EXPECT_FALSE(shown_table(top())->is_out_of_date());
}

TEST_F(LumReportBrowser, APanelDeletedByTheEngineClosesToDataNotAvailable) {
  load_sample("Summary (Setup)");
  ASSERT_EQ(top()->get_title(), "Summary (Setup)");
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    ASSERT_TRUE(writer.delete_panel("Summary (Setup)"));
  }
  browser->reload_sta_report(nullptr);
  EXPECT_EQ(tree->find_item("Summary (Setup)"), -1);
  EXPECT_EQ(top()->get_type(), LUM_VIEW_NONE);
  EXPECT_EQ(top()->get_title(), LUM_DATA_NOT_AVAILABLE);
}

TEST_F(LumReportBrowser, FourWaySplitAndUnsplitKeepsThePageOfTheFocusedPane) {
  load_sample("Summary (Setup)");
  view->resize(400, 300);
  top()->resize(400, 300);
  view->set_active_view_ctrl(top(), false);
  top()->split(LUM_SPLIT_FOUR_WAY);
  EXPECT_EQ(top()->get_split_positions(), (LUM_SPLIT_POSITIONS{150, 200}));
  ASSERT_EQ(top()->get_panes().size(), 4u);
  for (LUM_VIEW_CTRL* pane : top()->get_panes()) EXPECT_EQ(pane->get_title(), "Summary (Setup)");
  EXPECT_EQ(view->get_view_ctrls().size(), 5u);

  // The third pane gets another panel; unsplitting from its caption keeps it.
  LUM_VIEW_CTRL* third = top()->get_panes()[2];
  view->set_active_view_ctrl(third, false);
  tree->open_item(tree->find_item("Text Report"));
  EXPECT_EQ(third->get_title(), "Text Report");
  EXPECT_EQ(top()->get_panes()[0]->get_title(), "Summary (Setup)");
  ASSERT_TRUE(caption_pick(third, "Unsplit").picked);
  EXPECT_FALSE(top()->is_split());
  EXPECT_EQ(top()->get_title(), "Text Report");
  EXPECT_EQ(view->get_view_ctrls().size(), 1u);
  EXPECT_EQ(view->get_active_view_ctrl(), top());
}

// Each pick destroys the pane whose caption was clicked; the menu must not
// go with it.
TEST_F(LumReportBrowser, CaptionMenusSplitAndUnsplitWithRealClicksAndKeys) {
  load_sample("Summary (Setup)");
  QApplication::processEvents();
  ASSERT_TRUE(caption_pick(top(), "Split Horizontally").picked);
  ASSERT_TRUE(top()->is_split());
  ASSERT_TRUE(caption_pick(top()->get_panes()[1], "Unsplit", lum_test::MENU_PICK::KEYS).picked);
  EXPECT_FALSE(top()->is_split());
  EXPECT_EQ(top()->get_title(), "Summary (Setup)");

  // A pane splits again; Unsplit All from the inner pane returns to one page.
  ASSERT_TRUE(caption_pick(top(), "Split Vertically").picked);
  ASSERT_TRUE(caption_pick(top()->get_panes()[1], "Split Horizontally").picked);
  EXPECT_EQ(view->get_view_ctrls().size(), 5u);
  LUM_VIEW_CTRL* inner = top()->get_panes()[1]->get_panes()[0];
  ASSERT_TRUE(caption_pick(inner, "Unsplit All").picked);
  EXPECT_FALSE(top()->is_split());
  EXPECT_EQ(view->get_view_ctrls().size(), 1u);
  EXPECT_EQ(top()->get_title(), "Summary (Setup)");
  EXPECT_TRUE(messages.internal_errors.empty());
}

TEST_F(LumReportBrowser, DraggingASplitBarOffTheEdgeUnsplitsAndKeepsThePageInSight) {
  load_sample("Summary (Setup)");
  ASSERT_TRUE(caption_pick(top(), "Split Horizontally").picked);
  ASSERT_EQ(top()->get_panes().size(), 2u);
  // The lower pane shows another panel; the bar is dragged down off the bottom.
  view->set_active_view_ctrl(top()->get_panes()[1], false);
  tree->open_item(tree->find_item("Text Report"));
  view->set_active_view_ctrl(top()->get_panes()[0], false);
  auto* splitter = top()->findChild<QSplitter*>();
  ASSERT_NE(splitter, nullptr);
  EXPECT_EQ(splitter->toolTip(), "Drag off to unsplit");
  QSplitterHandle* handle = splitter->handle(1);
  const QPoint start = handle->rect().center();
  QTest::mousePress(handle, Qt::LeftButton, Qt::NoModifier, start);
  for (int step = 1; step <= 10; ++step)
    QTest::mouseMove(handle, start + QPoint(0, step * (splitter->height() / 10 + 5)));
  QTest::mouseRelease(handle, Qt::LeftButton, Qt::NoModifier, start + QPoint(0, splitter->height() + 50));
  ASSERT_TRUE(lum_test_wait([this] { return !top()->is_split(); }, 2000));
  EXPECT_EQ(top()->get_title(), "Summary (Setup)");
  EXPECT_EQ(view->get_view_ctrls().size(), 1u);
}

TEST_F(LumReportBrowser, RefreshReopensEveryPaneWithTheNewReport) {
  load_sample("Summary (Setup)");
  view->set_active_view_ctrl(top(), false);
  view->on_window_split_vertically();
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Summary (Setup)");
    panel.add_table("", RDB_KIND_TABLE, {"Clock", "Slack"}).add_row({"new_clk", "1"});
    panel.commit();
  }
  browser->reload_sta_report(nullptr);
  for (LUM_VIEW_CTRL* pane : top()->get_panes()) {
    ASSERT_NE(shown_table(pane), nullptr);
    EXPECT_EQ(shown_table(pane)->get_model()->cell_text(0, 0), "new_clk");
  }
}

// ---- report table --------------------------------------------------------------------

TEST_F(LumReportBrowser, HeaderClicksSortAscendingThenDescendingAndAnotherColumnAscending) {
  load_sample("Summary (Setup)");
  LUM_TABLE* table = shown_table(top());
  ASSERT_NE(table, nullptr);
  LUM_TABLE_MODEL* model = table->get_model();
  auto column = [model](int c) {
    std::vector<std::string> texts;
    for (int r = 0; r < model->rowCount(); ++r) texts.push_back(model->cell_text(r, c));
    return texts;
  };
  auto click = [&](int c) {
    emit table->horizontalHeader()->sectionClicked(c);
    ASSERT_TRUE(lum_test_wait([model] { return !model->is_sorting(); }));
  };
  click(0);
  EXPECT_EQ(column(0), (std::vector<std::string>{"clk", "clk2", "clk10"}));
  click(0);
  EXPECT_EQ(column(0), (std::vector<std::string>{"clk10", "clk2", "clk"}));
  EXPECT_EQ(table->horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
  click(1);
  EXPECT_EQ(column(1), (std::vector<std::string>{"-0.125", "3.25", "10.5"}));
  EXPECT_TRUE(model->is_ascending());
  // Cell colours follow their rows.
  EXPECT_EQ(model->data(model->index(0, 1), Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
  table->undo_sort();
  EXPECT_EQ(column(0), (std::vector<std::string>{"clk", "clk2", "clk10"}));
  std::unique_ptr<QMenu> menu(table->create_context_menu());
  EXPECT_FALSE(menu->findChild<QAction*>("undo_sort")->isEnabled());
}

TEST_F(LumReportBrowser, SortingKeepsAChosenRowInSightAndOtherwiseShowsTheFirstRows) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Long");
    RDB_TABLE_WRITER long_table = panel.add_table("", RDB_KIND_TABLE, {"Node"});
    // The first row sorts to the middle.
    for (int i = 0; i < 2000; ++i) long_table.add_row({"n" + std::to_string((i * 7919 + 1000) % 2000)});
    panel.commit();
  }
  tree->load_sta_report(true, "Long");
  LUM_TABLE* table = shown_table(top());
  ASSERT_NE(table, nullptr);
  QApplication::processEvents();
  auto click_title = [table] {
    QHeaderView* header = table->horizontalHeader();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(header->sectionViewportPosition(0) + 5, header->height() / 2));
    return lum_test_wait([table] { return !table->get_model()->is_sorting(); });
  };
  // A caret that nobody placed (on the first cell) does not drag the view along.
  table->selectionModel()->setCurrentIndex(table->model()->index(0, 0), QItemSelectionModel::NoUpdate);
  ASSERT_TRUE(click_title());
  EXPECT_EQ(table->get_model()->cell_text(0, 0), "n0");
  EXPECT_EQ(table->verticalScrollBar()->value(), 0);
  EXPECT_FALSE(table->selectionModel()->hasSelection()) << "a title click sorts and selects nothing";
  // A row the person clicked stays in sight wherever the sort puts it.
  table->scrollTo(table->model()->index(700, 0));
  QApplication::processEvents();
  QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier, table->visualRect(table->model()->index(700, 0)).center());
  const std::string chosen = table->get_model()->cell_text(table->currentIndex().row(), 0);
  ASSERT_TRUE(click_title());
  const QModelIndex now = table->currentIndex();
  EXPECT_EQ(table->get_model()->cell_text(now.row(), 0), chosen);
  EXPECT_TRUE(table->viewport()->rect().intersects(table->visualRect(now)));
}

TEST_F(LumReportBrowser, CopyTakesWholeRowsTabSeparatedAndCsvExportsTheShownOrder) {
  load_sample("Summary (Setup)");
  LUM_TABLE* table = shown_table(top());
  ASSERT_NE(table, nullptr);
  table->selectRow(0);
  table->selectionModel()->select(table->model()->index(2, 0),
                                  QItemSelectionModel::Select | QItemSelectionModel::Rows);
  table->on_edit_copy();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "clk\t-0.125\t-1.5\r\nclk10\t10.5\t0.0");

  emit table->horizontalHeader()->sectionClicked(0);
  emit table->horizontalHeader()->sectionClicked(0);
  ASSERT_TRUE(lum_test_wait([table] { return !table->get_model()->is_sorting(); }));
  const std::string csv = project.dir() + "/table.csv";
  QString error;
  ASSERT_TRUE(table->export_csv(QString::fromStdString(csv), &error)) << error.toStdString();
  EXPECT_EQ(read_file(csv), "Clock,Slack,End Point TNS\r\nclk10,10.5,0.0\r\nclk2,3.25,0.0\r\nclk,-0.125,-1.5\r\n");
}

TEST_F(LumReportBrowser, RowCommandsRunPerSelectedRowAndStoredLumLinesRunNowhere) {
  load_sample("Commands");
  LUM_TABLE* table = shown_table(top());
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->get_tcl_commands().size(), 2u);
  ASSERT_EQ(atcl_tcl_eval("set ::recorded {}; proc lum_test_record {args} { lappend ::recorded $args }"), TCL_OK);

  table->selectAll();
  std::unique_ptr<QMenu> menu(table->create_context_menu());
  QAction* report_node = menu->findChild<QAction*>("tcl_command_0");
  ASSERT_NE(report_node, nullptr);
  EXPECT_EQ(report_node->text(), "Report Node");
  frame.set_netlist_is_created('0');
  menu.reset(table->create_context_menu());
  EXPECT_FALSE(menu->findChild<QAction*>("tcl_command_0")->isEnabled());
  frame.set_netlist_is_created('1');
  menu.reset(table->create_context_menu());
  ASSERT_TRUE(menu->findChild<QAction*>("tcl_command_0")->isEnabled());
  menu->findChild<QAction*>("tcl_command_0")->trigger();
  EXPECT_EQ(engine_commands, (std::vector<std::string>{"report_timing -to {a/b c} -panel_name {Path to a/b c}",
                                                       "report_timing -to d -panel_name {Path to d}"}));
  // A "lum_" line from a database reaches neither the engine nor the front
  // end's interpreter; the user is told, with the command as text.
  engine_commands.clear();
  messages.texts.clear();
  menu->findChild<QAction*>("tcl_command_1")->trigger();
  EXPECT_TRUE(engine_commands.empty());
  ASSERT_TRUE(lum_test_wait([] { return atcl_queue_size() == 0; }));
  std::string recorded;
  atcl_tcl_eval("set ::recorded", &recorded);
  EXPECT_EQ(recorded, "");
  ASSERT_EQ(messages.texts.size(), 2u);
  EXPECT_NE(messages.texts[0].find("was not run"), std::string::npos) << messages.texts[0];
  EXPECT_NE(messages.texts[0].find("lum_test_record {a/b c}"), std::string::npos) << messages.texts[0];

  // Lines the front end itself routes still go by their first four characters.
  table->run_command("LUM_upper case goes to the engine");
  table->run_command(" lum_with a blank too");
  EXPECT_EQ(engine_commands.size(), 2u);
}

}  // namespace
