// The report browser's widgets, offscreen, over report databases written by
// the tests: the contents tree, the report view with its page controls and
// splits, and the report table.
#include "lum_report_test_support.hh"

#include "platform/atcl.hh"
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_commands.hh"
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
  void TearDown() override { lum_report_set_engine_sink(nullptr); }

  void load_sample(const char* panel = nullptr) {
    lum_write_sample_report(project.database_file());
    tree->load_sta_report(true, panel);
  }
  LUM_VIEW_CTRL* top() { return view->get_top_view_ctrl(); }
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
  tree->open_item(tree->find_item("Summary (Setup)"));
  std::unique_ptr<QMenu> menu(tree->create_context_menu());
  auto action = [&menu](const char* name) { return menu->findChild<QAction*>(QString::fromLatin1(name)); };
  ASSERT_NE(action("regenerate"), nullptr);
  EXPECT_TRUE(action("regenerate")->isEnabled());
  EXPECT_TRUE(action("delete_all_out_of_date")->isEnabled());
  action("regenerate")->trigger();
  action("delete")->trigger();
  action("delete_all_out_of_date")->trigger();
  action("regenerate_all_out_of_date")->trigger();
  EXPECT_EQ(engine_commands,
            (std::vector<std::string>{"create_timing_summary -setup -panel_name \"Summary (Setup)\"",
                                      "delete_timing_report_panel -name \"Summary (Setup)\"",
                                      "delete_timing_report_panel -name \"Old Summary\"",
                                      "report_clocks -panel_name \"Old Summary\""}));
  engine_commands.clear();
  action("delete_all")->trigger();
  EXPECT_EQ(engine_commands.size(), 9u);  // every panel but the legal notice
  // A panel without a recorded command cannot be regenerated.
  tree->open_item(tree->find_item("Text Report"));
  menu.reset(tree->create_context_menu());
  EXPECT_FALSE(action("regenerate")->isEnabled());
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

TEST_F(LumReportBrowser, EachKindOpensItsViewerAndMissingViewersSaySo) {
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
      {"Worst Path", [](QWidget* w) { auto* l = qobject_cast<QLabel*>(w); return l && l->text().contains("not available yet"); }},
      {"Slack Histogram", [](QWidget* w) { auto* l = qobject_cast<QLabel*>(w); return l && l->text().contains("not available yet"); }},
      {"Bars", [](QWidget* w) { auto* l = qobject_cast<QLabel*>(w); return l && l->text().contains("not available yet"); }},
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

  // The third pane gets the focus and another panel; unsplitting keeps it.
  LUM_VIEW_CTRL* third = top()->get_panes()[2];
  view->set_active_view_ctrl(third, false);
  tree->open_item(tree->find_item("Text Report"));
  EXPECT_EQ(third->get_title(), "Text Report");
  EXPECT_EQ(top()->get_panes()[0]->get_title(), "Summary (Setup)");
  EXPECT_TRUE(view->can_unsplit());
  view->on_window_unsplit();
  EXPECT_FALSE(top()->is_split());
  EXPECT_EQ(top()->get_title(), "Text Report");
  EXPECT_EQ(view->get_view_ctrls().size(), 1u);
  EXPECT_EQ(view->get_active_view_ctrl(), top());

  // A split pane can split again; unsplit-all returns to one page.
  view->on_window_split_vertically();
  view->set_active_view_ctrl(top()->get_panes()[1], false);
  view->on_window_split_horizontally();
  EXPECT_EQ(view->get_view_ctrls().size(), 5u);
  view->on_window_unsplit_all();
  EXPECT_FALSE(top()->is_split());
  EXPECT_EQ(top()->get_title(), "Text Report");
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

TEST_F(LumReportBrowser, TclCommandsRunPerSelectedRowAndLumLinesNeverReachTheEngine) {
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
  menu->findChild<QAction*>("tcl_command_1")->trigger();
  EXPECT_EQ(engine_commands, (std::vector<std::string>{"report_node -name {a/b c}", "report_node -name d"}));
  ASSERT_TRUE(lum_test_wait([] { return atcl_queue_size() == 0; }));
  std::string recorded;
  atcl_tcl_eval("set ::recorded", &recorded);
  EXPECT_EQ(recorded, "{{a/b c}} d");

  engine_commands.clear();
  table->run_command("LUM_upper case goes to the engine");
  table->run_command(" lum_with a blank too");
  EXPECT_EQ(engine_commands.size(), 2u);
}

}  // namespace
