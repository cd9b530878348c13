// The chart windows and path panels, offscreen, over report databases written
// through the database library, driven by mouse events as a person would:
// a double click on a row of a path summary table, the row's context menu,
// the mouse over and a click on a histogram bar, the chart's context menu.
#include "../lum_report/lum_report_test_support.hh"

#include "charts/lum_chart_wnd.hh"
#include "charts/lum_histogram_wnd.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_chart_commands.hh"
#include "report/lum_path_wnd.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_commands.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"

#include <QApplication>
#include <QFile>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

// A path report panel as the engine writes it: a folder with the summary
// table and one path object per row.
void write_path_report(RDB_WRITER& writer, const std::string& name, bool enabled = true) {
  RDB_PANEL_WRITER panel = writer.begin_panel(name, "report_timing -npaths 3 -panel_name {" + name + "}");
  panel.add_folder("");
  const double slacks[] = {-0.5, 0.25, 1.75};
  RDB_TABLE_WRITER summary =
      panel.add_table("Summary of Paths", RDB_KIND_TABLE, {"Slack", "From Node", "To Node"});
  for (int i = 0; i < 3; ++i)
    summary.add_row({QString::number(slacks[i], 'f', 3).toStdString(), "in" + std::to_string(i), "out" + std::to_string(i)});
  for (int i = 0; i < 3; ++i) {
    const std::string where = "Path " + std::to_string(i + 1);
    panel.add_path(where, slacks[i], slacks[i] < 0);
    RDB_TABLE_WRITER table =
        panel.add_path_table(where, RDB_PATH_PART::SUMMARY, {"Property", "Value"}, RDB_KIND_HEADERLESS_TABLE);
    table.add_row({"Slack", QString::number(slacks[i], 'f', 3).toStdString()});
    table.add_row({"From Node", "in" + std::to_string(i)});
    panel.add_path_chart(where, "Delay Type", "Delay (ps)", 2, {{"Cell Delay", 700 + i}, {"Interconnect Delay", 300}});
    RDB_TABLE_WRITER arrival = panel.add_path_table(where, RDB_PATH_PART::ARRIVAL, {"Total", "Incr", "Element"});
    // Path i has i + 2 arrival rows, so that each path is told apart by its rows.
    for (int r = 0; r < i + 2; ++r)
      arrival.add_row({std::to_string(r) + ".000", "1.000", "pin" + std::to_string(i) + "_" + std::to_string(r)});
    panel.add_path_table(where, RDB_PATH_PART::REQUIRED, {"Total", "Incr", "Element"}).add_row({"5.000", "5.000", "clk"});
  }
  panel.commit();
  if (!enabled) writer.set_panel_enabled(name, false);
}

class LumChartsBrowser : public ::testing::Test {
 protected:
  void SetUp() override {
    lum_report_set_engine_sink([this](const std::string& command) { engine_commands.push_back(command); });
    window.resize(1000, 700);
    browser = new LUM_REPORT_BROWSER(&window, &window, &window);
    tree = browser->get_tree();
    view = browser->get_report_view();
    tree->setGeometry(0, 0, 250, 700);
    view->setGeometry(250, 0, 750, 700);
    window.show();
    // Mouse moves reach only a window that the window system shows.
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    ASSERT_TRUE(dir.isValid());
  }
  void TearDown() override { lum_report_set_engine_sink(nullptr); }

  LUM_VIEW_CTRL* top() { return view->get_top_view_ctrl(); }
  LUM_TABLE* shown_table() {
    auto* host = qobject_cast<LUM_CENTERED_TABLE*>(top()->get_page_window());
    return host ? host->get_table() : nullptr;
  }
  // Opens a row of the tree and waits until the page shows it.
  template <class VIEWER>
  VIEWER* open(const std::string& path) {
    EXPECT_TRUE(tree->open_item(tree->find_item_by_rdb_path(path))) << path;
    return qobject_cast<VIEWER*>(top()->get_page_window());
  }
  QPoint row_center(LUM_TABLE* table, int row) {
    return table->visualRect(table->get_model()->index(row, 0)).center();
  }
  std::vector<std::string> column(LUM_TABLE* table, int c) {
    std::vector<std::string> cells;
    for (int r = 0; r < table->get_model()->rowCount(); ++r) cells.push_back(table->get_model()->cell_text(r, c));
    return cells;
  }

  struct APP {
    APP() { lum_test_app(); }
  } app;
  LUM_TEST_MESSAGES messages;
  LUM_TEST_FRAME frame;
  LUM_TEST_PROJECT project;
  QTemporaryDir dir;
  QWidget window;
  LUM_REPORT_BROWSER* browser = nullptr;
  LUM_STA_REPORT_TOC_TREE* tree = nullptr;
  LUM_REPORT_VIEW* view = nullptr;
  std::vector<std::string> engine_commands;
};

TEST_F(LumChartsBrowser, DoubleClickAndShowPathOpenThePathOfTheRowEvenWhenSorted) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    write_path_report(writer, "Worst Paths");
  }
  tree->load_sta_report(true, "Worst Paths");
  ASSERT_EQ(top()->get_title(), "Summary of Paths");
  LUM_TABLE* table = shown_table();
  ASSERT_NE(table, nullptr);
  ASSERT_TRUE(table->has_row_opener());

  // A double click on the second row opens "Path 2" with its own rows.
  lum_test_double_click(table->viewport(), row_center(table, 1));
  ASSERT_TRUE(lum_test_wait([&] { return top()->get_title() == "Path 2"; }, 5000)) << top()->get_title().toStdString();
  auto* path = qobject_cast<LUM_PATH_WND*>(top()->get_page_window());
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(column(path->get_data_arrival_table(), 2), (std::vector<std::string>{"pin1_0", "pin1_1", "pin1_2"}));
  EXPECT_EQ(path->get_panel(LUM_PATH_WND::SUMMARY)->get_caption(), "SLACK: 0.250 ns");
  EXPECT_FALSE(path->get_panel(LUM_PATH_WND::SUMMARY)->is_caption_red());
  EXPECT_EQ(path->get_summary_chart()->get_mode(), LUM_CHART_MODE::PIE);
  EXPECT_EQ(path->get_summary_chart()->get_data().rows.size(), 2u);
  // The tree follows to the path's row.
  EXPECT_EQ(tree->get_label(tree->get_selected_row()), "Path 2");

  // Back to the summary; sorted by slack descending, the first row is path 3.
  table = [&] {
    tree->open_item(tree->find_item("Summary of Paths"));
    return shown_table();
  }();
  ASSERT_NE(table, nullptr);
  for (int click = 0; click < 2; ++click) {
    QTest::mouseClick(table->horizontalHeader()->viewport(), Qt::LeftButton, {},
                      QPoint(table->horizontalHeader()->sectionViewportPosition(0) + 5, 5));
    ASSERT_TRUE(lum_test_wait([&] { return !table->get_model()->is_sorting(); }));
  }
  ASSERT_EQ(table->get_model()->cell_text(0, 0), "1.750");
  // The row command: select the row, take "Show Path" from its context menu.
  QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, row_center(table, 0));
  // The menu belongs to the table, which goes with the page it is on.
  QPointer<QMenu> menu(table->create_context_menu());
  QAction* show = menu->findChild<QAction*>("open_row");
  ASSERT_NE(show, nullptr);
  EXPECT_EQ(show->text(), "Show Path");
  show->trigger();
  ASSERT_TRUE(lum_test_wait([&] { return top()->get_title() == "Path 3"; }, 5000)) << top()->get_title().toStdString();
  path = qobject_cast<LUM_PATH_WND*>(top()->get_page_window());
  ASSERT_NE(path, nullptr);
  EXPECT_EQ(path->get_data_arrival_table()->get_model()->rowCount(), 4);
  EXPECT_TRUE(messages.internal_errors.empty());
  EXPECT_TRUE(engine_commands.empty());
}

TEST_F(LumChartsBrowser, AViolatedPathShowsARedCaptionAndAStalePathTheWatermarkInAllFourPanels) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    write_path_report(writer, "Old Paths", false);
  }
  tree->load_sta_report(true, nullptr);
  auto* path = open<LUM_PATH_WND>("Timing Analyzer||Old Paths||Path 1");
  ASSERT_NE(path, nullptr);
  const LUM_PANEL_WND* summary = path->get_panel(LUM_PATH_WND::SUMMARY);
  EXPECT_EQ(summary->get_caption(), "SLACK: -0.500 ns (VIOLATED)");
  EXPECT_TRUE(summary->is_caption_red());
  for (auto panel : {LUM_PATH_WND::SUMMARY, LUM_PATH_WND::CHART, LUM_PATH_WND::ARRIVAL, LUM_PATH_WND::REQUIRED})
    EXPECT_TRUE(path->get_panel(panel)->is_out_of_date()) << panel;
  EXPECT_TRUE(path->get_summary_table()->is_out_of_date());
  EXPECT_TRUE(path->get_summary_chart()->is_out_of_date());
  EXPECT_TRUE(path->get_data_arrival_table()->is_out_of_date());
  EXPECT_TRUE(path->get_data_required_table()->is_out_of_date());
  // The summary row is as tall as its two rows need: no scrolling there.
  path->resize(700, 600);
  QApplication::processEvents();
  EXPECT_GE(summary->height(), summary->caption_height() + 2 * path->get_summary_table()->verticalHeader()->defaultSectionSize());
}

TEST_F(LumChartsBrowser, HistogramBarsShowTheirCountAndAClickReportsThatSlackRange) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel(
        "Slack Histogram (clk main)",
        lum_command_from_words({"create_slack_histogram", "-clock_name", "clk main", "-hold", "-panel_name",
                                "Slack Histogram (clk main)"}));
    panel.add_histogram("", "Hold Slack", "Number of End Points", 1000, "ns",
                        {{-500, 0, 3, 0xe04040}, {0, 500, 0, RDB_NO_COLOR}, {500, 1000, 7, RDB_NO_COLOR}});
    panel.commit();
    RDB_PANEL_WRITER made_by_hand = writer.begin_panel("Loose Histogram");
    made_by_hand.add_histogram("", "Slack", "Count", 1, "ns", {{0, 1, 4, RDB_NO_COLOR}});
    made_by_hand.commit();
  }
  tree->load_sta_report(true, "Slack Histogram (clk main)");
  auto* histogram = qobject_cast<LUM_HISTOGRAM_WND*>(top()->get_page_window());
  ASSERT_NE(histogram, nullptr);
  ASSERT_TRUE(lum_test_wait([&] { return histogram->isVisible() && histogram->get_layout().bars.size() == 3; }));
  const LUM_AXIS_CHART_LAYOUT& layout = histogram->get_layout();
  EXPECT_EQ(layout.x_labels.front().text, "-0.5000 ns");

  // The mouse over the empty middle bin shows its count, 0.
  const QPoint empty_bin(layout.bars[1].rect.center().x(), layout.bar_area.bottom() - 2);
  QTest::mouseMove(histogram, empty_bin);
  ASSERT_TRUE(lum_test_wait([&] { return histogram->toolTip() == "0"; }, 2000)) << histogram->toolTip().toStdString();

  // A click on the failing bin reports its end points through the engine.
  QTest::mouseClick(histogram, Qt::LeftButton, {}, layout.bars[0].rect.center());
  ASSERT_EQ(engine_commands.size(), 1u);
  EXPECT_EQ(engine_commands[0],
            lum_command_from_words({"report_timing", "-to_clock", "clk main", "-hold", "-min_slack", "-0.5",
                                    "-less_than_slack", "0", "-npaths", "3", "-panel_name",
                                    "Slack -0.5 to 0 ns (clk main)"}));

  // A histogram not made by the slack histogram command asks nothing of the engine.
  histogram = open<LUM_HISTOGRAM_WND>("Timing Analyzer||Loose Histogram");
  ASSERT_NE(histogram, nullptr);
  ASSERT_TRUE(lum_test_wait([&] { return histogram->get_layout().bars.size() == 1; }));
  QTest::mouseClick(histogram, Qt::LeftButton, {}, histogram->get_layout().bars[0].rect.center());
  EXPECT_EQ(engine_commands.size(), 1u);
  ASSERT_FALSE(messages.texts.empty());
  EXPECT_NE(messages.texts.back().find("create_slack_histogram"), std::string::npos) << messages.texts.back();
}

TEST_F(LumChartsBrowser, ChartsSwitchBetweenBarsAndPieAndSaveAsPngAndSvg) {
  {
    RDB_WRITER writer(project.database_file(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Transfers");
    panel.add_chart_table("", "Clock", "Paths", 1, {{"clk", 4}, {"clk2", 0}, {"slow", 12}});
    panel.commit();
    RDB_PANEL_WRITER empty = writer.begin_panel("Nothing");
    empty.add_chart_table("", "Clock", "Paths", 2, {});
    empty.commit();
  }
  tree->load_sta_report(true, "Transfers");
  auto* chart = qobject_cast<LUM_CHART_WND*>(top()->get_page_window());
  ASSERT_NE(chart, nullptr);
  EXPECT_EQ(chart->get_mode(), LUM_CHART_MODE::BARS);
  ASSERT_TRUE(lum_test_wait([&] { return chart->get_bar_layout().bars.size() == 3; }));
  QTest::mouseMove(chart, chart->get_bar_layout().bars[2].rect.center());
  ASSERT_TRUE(lum_test_wait([&] { return chart->toolTip() == "slow [12] (75%)"; }, 2000)) << chart->toolTip().toStdString();

  QPointer<QMenu> menu(chart->create_context_menu());
  menu->findChild<QAction*>("show_pie")->trigger();
  delete menu;
  EXPECT_EQ(chart->get_mode(), LUM_CHART_MODE::PIE);
  const LUM_PIE_LAYOUT& pie = chart->get_pie_layout();
  ASSERT_EQ(pie.slices.size(), 3u);
  // Inside the first slice (0 to 90 degrees), halfway out at 45 degrees.
  const QPoint in_first = pie.center + QPoint(pie.radius / 3, -pie.radius / 3);
  QTest::mouseMove(chart, in_first);
  ASSERT_TRUE(lum_test_wait([&] { return chart->toolTip() == "4, clk, 25%"; }, 2000)) << chart->toolTip().toStdString();

  QString error;
  const QString png = dir.filePath("chart.png"), svg = dir.filePath("chart.svg");
  ASSERT_TRUE(chart->save_image(png, &error)) << error.toStdString();
  ASSERT_TRUE(chart->save_image(svg, &error)) << error.toStdString();
  QImage image(png);
  EXPECT_EQ(image.size(), chart->size());
  // The first slice's colour is in the picture where the slice is.
  EXPECT_EQ(image.pixelColor(in_first), lum_pie_color(0));
  QFile drawing(svg);
  ASSERT_TRUE(drawing.open(QIODevice::ReadOnly));
  const QByteArray text = drawing.readAll();
  EXPECT_TRUE(text.contains("<svg")) << text.left(200).toStdString();
  EXPECT_TRUE(text.contains("Legend"));
  EXPECT_FALSE(chart->save_image(dir.filePath("no/such/dir/chart.png"), &error));
  EXPECT_TRUE(error.contains("no/such/dir"));

  // A chart without rows says so and draws no slice.
  chart = open<LUM_CHART_WND>("Timing Analyzer||Nothing");
  ASSERT_NE(chart, nullptr);
  EXPECT_EQ(chart->get_mode(), LUM_CHART_MODE::PIE);
  ASSERT_TRUE(lum_test_wait([&] { return chart->get_pie_layout().message == "No data"; }));
  EXPECT_TRUE(chart->get_pie_layout().slices.empty());
  EXPECT_TRUE(messages.internal_errors.empty());
}

}  // namespace
