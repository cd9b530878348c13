// The typical road of the front end with the report browser in it, offscreen,
// against the real engine and a copy of the datapath example: open the
// project, build the timing netlist, read the SDC file, update the netlist,
// ask for the setup summary from the Reports menu, find the "Summary (Setup)"
// table with the clock's row, sort a column both ways, delete the panel and
// watch the tree reload. Skipped, with the reason, while the engine, the
// example project or the engine's report commands are missing.
#include "lum_report_test_support.hh"

#include "engine/lum_console_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_file_dialogs.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "charts/lum_histogram_wnd.hh"
#include "report/lum_lexcmp.hh"
#include "report/lum_path_wnd.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_install.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

const std::string kEngine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
const std::string kExampleDir = std::string(CHRONEL_EXAMPLES_DIR) + "/datapath";

class LumReportWithEngine : public ::testing::Test {
 protected:
  void SetUp() override {
    lum_test_app();
    if (!QFileInfo(QString::fromStdString(kEngine)).isExecutable())
      GTEST_SKIP() << "the engine " << kEngine << " is not built (configure with the sta component)";
    if (!QFileInfo(QString::fromStdString(kExampleDir + "/datapath.vpf")).isFile())
      GTEST_SKIP() << "the example project " << kExampleDir << " is missing";
    ASSERT_TRUE(m_dir.isValid());
    // A copy of the example, so that its report database is this test's own.
    std::filesystem::copy(kExampleDir, m_dir.path().toStdString(), std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(m_dir.path().toStdString() + "/vexa_db");
    cfg_set_settings_file(m_dir.filePath("settings.ini").toStdString());
    msg_set_box_handler([](const MSG_CATALOGUE_ENTRY&, const std::string&) { return static_cast<int>(MSG_ANSWER_NO); });
    lum_set_file_dialog_handler([this](const LUM_FILE_REQUEST&) { return m_dir.filePath("datapath.sdc").toStdString(); });
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) {
      frame->close();
      delete LUM_DETACHED_FRAME::get_instance();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    msg_set_box_handler(nullptr);
    lum_set_file_dialog_handler(nullptr);
  }

  bool idle_with(const std::function<bool()>& condition, int timeout_ms) {
    return lum_test_wait(
        [&] {
          atcl_flush_queue(1, 0);
          return condition() && !m_frame->get_console_ctrl()->is_busy();
        },
        timeout_ms);
  }
  char flag(LUM_STATE_FLAG which) const { return m_frame->get_state_flag(which); }

  // Opens the example project, creates the timing netlist, reads its SDC
  // file and brings the netlist up to date, each from the frame's menu.
  void open_example_with_timing() {
    ASSERT_TRUE(m_frame->open_project(m_dir.filePath("datapath.vpf").toStdString().c_str()));
    ASSERT_TRUE(idle_with([&] { return flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1'; }, 60000));
    m_frame->run_menu_command(LUM_ID_CREATE_TIMING_NETLIST_NORISEFALL);
    ASSERT_TRUE(idle_with([&] { return flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) == '1'; }, 120000));
    m_frame->run_menu_command(LUM_ID_LOAD_SDC_FILE);
    ASSERT_TRUE(idle_with([&] { return flag(LUM_STATE_FLAG::SDC_FILE_IS_LOADED) == '1'; }, 60000));
    if (m_frame->is_command_enabled(LUM_ID_UPDATE_NETLIST)) {
      m_frame->run_menu_command(LUM_ID_UPDATE_NETLIST);
      ASSERT_TRUE(idle_with([&] { return flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '1'; }, 120000));
    }
  }

  QTemporaryDir m_dir;
  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(LumReportWithEngine, SetupSummaryFromTheMenuOpensItsTableWhichSortsAndDeletes) {
  // What the launcher does: the library's entry makes the frame with its panes.
  m_frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(m_frame, nullptr) << "the engine did not start";
  auto* tree = qobject_cast<LUM_STA_REPORT_TOC_TREE*>(m_frame->get_report_bar()->widget());
  if (!tree) tree = lum_install_report_browser(m_frame)->get_tree();  // an entry without the browser yet
  auto* view = qobject_cast<LUM_REPORT_VIEW*>(m_frame->get_report_view());
  ASSERT_NE(view, nullptr) << "the frame has no report view";
  LUM_VIEW_CTRL* top = view->get_top_view_ctrl();
  LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl();
  EXPECT_EQ(tree->get_label(0), LUM_REPORT_NOT_AVAILABLE);

  std::vector<std::string> known;
  ASSERT_TRUE(idle_with([] { return true; }, 60000));
  console->run_command("info commands create_timing_summary", &known);
  std::string answer;
  for (const std::string& line : known) answer += line;
  if (answer.find("create_timing_summary") == std::string::npos)
    GTEST_SKIP() << "the engine has no report commands yet (create_timing_summary); it answered \"" << answer << "\"";

  ASSERT_NO_FATAL_FAILURE(open_example_with_timing());
  ASSERT_TRUE(m_frame->is_command_enabled(LUM_ID_REPORT_SETUP_SUMMARY));

  // Reports > Summary (Setup): the engine writes the panel and calls back.
  m_frame->run_menu_command(LUM_ID_REPORT_SETUP_SUMMARY);
  ASSERT_TRUE(idle_with([&] { return top->get_title() == "Summary (Setup)"; }, 120000))
      << "page shown: " << top->get_title().toStdString();
  ASSERT_GE(tree->find_item("Summary (Setup)", nullptr, 0), 0);
  auto* host = qobject_cast<LUM_CENTERED_TABLE*>(top->get_page_window());
  ASSERT_NE(host, nullptr);
  LUM_TABLE* table = host->get_table();
  LUM_TABLE_MODEL* model = table->get_model();
  ASSERT_GT(model->rowCount(), 0);
  bool has_clk = false;
  for (int r = 0; r < model->rowCount(); ++r)
    for (int c = 0; c < model->columnCount(); ++c) has_clk = has_clk || model->cell_text(r, c) == "clk";
  EXPECT_TRUE(has_clk) << "no row of the clock clk";

  // Sorting a column both ways.
  for (int pass = 0; pass < 2; ++pass) {
    emit table->horizontalHeader()->sectionClicked(0);
    ASSERT_TRUE(lum_test_wait([model] { return !model->is_sorting(); }));
    EXPECT_EQ(model->is_ascending(), pass == 0);
    for (int r = 1; r < model->rowCount(); ++r) {
      const int c = lum_lexcmp(model->cell_text(r - 1, 0).c_str(), model->cell_text(r, 0).c_str());
      EXPECT_TRUE(pass == 0 ? c <= 0 : c >= 0) << "rows " << r - 1 << " and " << r;
    }
  }

  // Deleting the panel goes through the engine, which has the tree reloaded.
  tree->delete_panel(tree->find_item("Summary (Setup)", nullptr, 0));
  ASSERT_TRUE(idle_with([&] { return tree->find_item("Summary (Setup)") < 0; }, 60000));
  EXPECT_EQ(top->get_title(), LUM_DATA_NOT_AVAILABLE);
}

// The path panel against the engine's own text report of the same paths:
// report_timing into a panel and into a file, a double click on the second
// row of "Summary of Paths", and every row of the shown point tables read
// back in the text (cells joined by single blanks, as the text aligns them
// with runs of blanks).
TEST_F(LumReportWithEngine, APathOpenedFromItsSummaryRowShowsTheRowsOfTheEnginesTextReport) {
  m_frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(m_frame, nullptr) << "the engine did not start";
  auto* tree = qobject_cast<LUM_STA_REPORT_TOC_TREE*>(m_frame->get_report_bar()->widget());
  if (!tree) tree = lum_install_report_browser(m_frame)->get_tree();
  auto* view = qobject_cast<LUM_REPORT_VIEW*>(m_frame->get_report_view());
  ASSERT_NE(view, nullptr);
  LUM_VIEW_CTRL* top = view->get_top_view_ctrl();
  LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl();
  ASSERT_TRUE(idle_with([] { return true; }, 60000));
  ASSERT_NO_FATAL_FAILURE(open_example_with_timing());

  const std::string text_file = m_dir.filePath("paths.rpt").toStdString();
  console->run_command("report_timing -npaths 3 -file \"" + text_file + "\"");
  console->run_command("report_timing -npaths 3 -panel_name \"Worst Paths\"");
  ASSERT_TRUE(idle_with([&] { return top->get_title() == "Summary of Paths"; }, 120000))
      << "page shown: " << top->get_title().toStdString();
  auto* host = qobject_cast<LUM_CENTERED_TABLE*>(top->get_page_window());
  ASSERT_NE(host, nullptr);
  LUM_TABLE* summary = host->get_table();
  ASSERT_GE(summary->get_model()->rowCount(), 2) << "the example has fewer than two paths";

  const QRect second = summary->visualRect(summary->get_model()->index(1, 0));
  lum_test_double_click(summary->viewport(), second.center());
  ASSERT_TRUE(idle_with([&] { return top->get_title() == "Path 2"; }, 10000)) << top->get_title().toStdString();
  auto* path = qobject_cast<LUM_PATH_WND*>(top->get_page_window());
  ASSERT_NE(path, nullptr);

  std::ifstream in(text_file);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  ASSERT_FALSE(lines.empty()) << text_file;
  // The rows of one point table of "Path 2" in the text: after its title and
  // the ruled header, up to the next blank line.
  auto text_rows = [&](const std::string& title) {
    std::vector<std::string> rows;
    size_t i = 0;
    while (i < lines.size() && lines[i].rfind("Path 2:", 0) != 0) ++i;
    while (i < lines.size() && lines[i] != title) ++i;
    for (i += 3; i < lines.size() && !lines[i].empty(); ++i) {
      std::string collapsed;
      for (char c : lines[i])
        if (c != ' ' || (!collapsed.empty() && collapsed.back() != ' ')) collapsed += c;
      rows.push_back(collapsed);
    }
    return rows;
  };
  auto shown_rows = [](LUM_TABLE* table) {
    std::vector<std::string> rows;
    const LUM_TABLE_MODEL* model = table->get_model();
    for (int r = 0; r < model->rowCount(); ++r) {
      std::string row;
      for (int c = 0; c < model->columnCount(); ++c) {
        const std::string cell = model->cell_text(r, c);
        if (cell.empty()) continue;
        if (!row.empty()) row += ' ';
        row += cell;
      }
      rows.push_back(row);
    }
    return rows;
  };
  const std::vector<std::string> arrival = shown_rows(path->get_data_arrival_table());
  ASSERT_GT(arrival.size(), 2u);
  EXPECT_EQ(arrival, text_rows("Data Arrival Path"));
  EXPECT_EQ(shown_rows(path->get_data_required_table()), text_rows("Data Required Path"));
  // The last arrival row's total is the path's arrival time in its summary.
  const LUM_TABLE_MODEL* arrival_model = path->get_data_arrival_table()->get_model();
  const LUM_TABLE_MODEL* summary_model = path->get_summary_table()->get_model();
  std::string arrival_time;
  for (int r = 0; r < summary_model->rowCount(); ++r)
    if (summary_model->cell_text(r, 0) == "Data Arrival Time") arrival_time = summary_model->cell_text(r, 1);
  EXPECT_EQ(arrival_model->cell_text(arrival_model->rowCount() - 1, 0), arrival_time);
  EXPECT_EQ(path->get_panel(LUM_PATH_WND::SUMMARY)->get_caption().startsWith("SLACK: "), true);
  EXPECT_EQ(tree->get_label(tree->get_selected_row()), "Path 2");
}

// A slack histogram from the engine, and a click on its tallest bar: the
// command goes through the console and the paths it reports are exactly the
// end points of that bar, each with its slack inside the bar's range.
TEST_F(LumReportWithEngine, AClickOnAHistogramBarReportsThePathsOfThatSlackRange) {
  m_frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(m_frame, nullptr) << "the engine did not start";
  if (!qobject_cast<LUM_STA_REPORT_TOC_TREE*>(m_frame->get_report_bar()->widget()))
    lum_install_report_browser(m_frame);
  auto* view = qobject_cast<LUM_REPORT_VIEW*>(m_frame->get_report_view());
  ASSERT_NE(view, nullptr);
  LUM_VIEW_CTRL* top = view->get_top_view_ctrl();
  ASSERT_TRUE(idle_with([] { return true; }, 60000));
  ASSERT_NO_FATAL_FAILURE(open_example_with_timing());

  m_frame->get_console_ctrl()->run_command("create_slack_histogram -clock_name clk -num_bins 8");
  ASSERT_TRUE(idle_with([&] { return top->get_title() == "Slack Histogram (clk)"; }, 120000))
      << "page shown: " << top->get_title().toStdString();
  auto* histogram = qobject_cast<LUM_HISTOGRAM_WND*>(top->get_page_window());
  ASSERT_NE(histogram, nullptr);
  ASSERT_TRUE(lum_test_wait([&] { return histogram->isVisible() && !histogram->get_layout().bars.empty(); }));
  const LUM_AXIS_CHART_LAYOUT& layout = histogram->get_layout();
  size_t tallest = 0;
  for (size_t i = 0; i < layout.bars.size(); ++i)
    if (layout.bars[i].count > layout.bars[tallest].count) tallest = i;
  const LUM_CHART_BAR bar = layout.bars[tallest];
  ASSERT_GT(bar.count, 0);
  const double from = histogram->get_data().bins[bar.first].from;
  const double to = histogram->get_data().bins[bar.last].to;

  QTest::mouseClick(histogram, Qt::LeftButton, {}, QPoint(bar.rect.center().x(), layout.bar_area.bottom() - 1));
  ASSERT_TRUE(idle_with([&] { return top->get_title() == "Summary of Paths"; }, 120000))
      << "page shown: " << top->get_title().toStdString();
  auto* host = qobject_cast<LUM_CENTERED_TABLE*>(top->get_page_window());
  ASSERT_NE(host, nullptr);
  const LUM_TABLE_MODEL* paths = host->get_table()->get_model();
  EXPECT_EQ(paths->rowCount(), bar.count);
  // Edges are stored to a thousandth of a picosecond; slacks to three decimals.
  for (int r = 0; r < paths->rowCount(); ++r) {
    const double slack = std::stod(paths->cell_text(r, 0));
    EXPECT_GE(slack, from - 0.0005) << r;
    EXPECT_LE(slack, to + 0.0005) << r;
  }
}

}  // namespace
