// Figures of the path panels and charts (run offscreen: QT_QPA_PLATFORM=offscreen):
//   - opening a path of 2,000 points from the report tree until its page is
//     painted;
//   - laying out and repainting a histogram of 100,000 bins (bins merged per
//     pixel column);
//   - opening the first of 10,000 paths from their "Summary of Paths" table
//     (the row's double-click action) until the path's page is painted.
// Each figure is the best and the median of several runs, in ms.
// Usage: lum_charts_bench [runs]
#include "charts/lum_histogram_wnd.hh"
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_path_wnd.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

namespace {

void add_path(RDB_PANEL_WRITER& panel, int index, int points) {
  const std::string where = "Path " + std::to_string(index);
  const double slack = (index % 50 - 10) / 100.0;
  panel.add_path(where, slack, slack < 0);
  RDB_TABLE_WRITER summary =
      panel.add_path_table(where, RDB_PATH_PART::SUMMARY, {"Property", "Value"}, RDB_KIND_HEADERLESS_TABLE);
  summary.add_row({"Slack", std::to_string(slack)});
  summary.add_row({"From Node", "u_core/reg_" + std::to_string(index) + "/CLK"});
  summary.add_row({"To Node", "u_core/acc_" + std::to_string(index) + "/D"});
  panel.add_path_chart(where, "Delay Type", "Delay (ps)", 2, {{"Cell Delay", 800}, {"Interconnect Delay", 200}});
  const std::vector<std::string> columns = {"Total", "Incr", "RF", "Type", "Fanout", "Location", "Element"};
  RDB_TABLE_WRITER arrival = panel.add_path_table(where, RDB_PATH_PART::ARRIVAL, columns);
  char total[32];
  for (int p = 0; p < points; ++p) {
    std::snprintf(total, sizeof total, "%.3f", p * 0.05);
    arrival.add_row({total, "0.050", p % 2 ? "R" : "F", p % 3 ? "CELL" : "IC", p % 3 ? "2" : "",
                     "NAND2X1", "u_core/u_stage" + std::to_string(p) + "/Y"});
  }
  RDB_TABLE_WRITER required = panel.add_path_table(where, RDB_PATH_PART::REQUIRED, columns);
  required.add_row({"10.000", "10.000", "R", "clock", "", "", "clk"});
  required.add_row({"9.900", "-0.100", "R", "uTsu", "", "DFFPOSX1", "u_core/acc/D"});
}

void write_report(const std::string& file) {
  RDB_WRITER writer(file, RDB_TIMING_REPORT);
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Long Path");
    panel.add_folder("");
    panel.add_table("Summary of Paths", RDB_KIND_TABLE, {"Slack"}).add_row({"-0.100"});
    add_path(panel, 1, 2000);
    panel.commit();
  }
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Many Paths");
    panel.add_folder("");
    {
      RDB_TABLE_WRITER summary = panel.add_table("Summary of Paths", RDB_KIND_TABLE, {"Slack", "To Node"});
      for (int i = 1; i <= 10000; ++i) summary.add_row({std::to_string((i % 50 - 10) / 100.0), "acc_" + std::to_string(i)});
    }
    for (int i = 1; i <= 10000; ++i) add_path(panel, i, 40);
    panel.commit();
  }
}

struct FIGURE {
  std::vector<double> runs;
  void print(const char* what) {
    std::sort(runs.begin(), runs.end());
    std::printf("%-58s best %8.2f ms  median %8.2f ms\n", what, runs.front(), runs[runs.size() / 2]);
  }
};

double time_ms(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return clock.nsecsElapsed() / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  const int runs = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
  QTemporaryDir dir;
  DBMUI_MANAGER::get_instance()->set_project(dir.path().toStdString(), "bench");
  const double write_ms = time_ms([&] {
    write_report(rdb_report_file_path(dir.path().toStdString(), "bench", RDB_TIMING_REPORT));
  });
  std::printf("report written (a 2,000-point path, 10,000 paths of 40 points): %.0f ms\n", write_ms);

  QWidget window;
  window.resize(1200, 800);
  auto* browser = new LUM_REPORT_BROWSER(&window, &window, &window);
  LUM_STA_REPORT_TOC_TREE* tree = browser->get_tree();
  LUM_REPORT_VIEW* view = browser->get_report_view();
  tree->setGeometry(0, 0, 250, 800);
  view->setGeometry(250, 0, 950, 800);
  window.show();
  QApplication::processEvents();
  tree->load_sta_report(true, nullptr);
  LUM_VIEW_CTRL* top = view->get_top_view_ctrl();

  // 1. A path of 2,000 points, from the tree to its first paint.
  FIGURE long_path;
  const int long_row = tree->find_item_by_rdb_path("Timing Analyzer||Long Path||Path 1");
  const int summary_row = tree->find_item_by_rdb_path("Timing Analyzer||Long Path||Summary of Paths");
  for (int r = 0; r < runs; ++r) {
    tree->open_item(summary_row);
    QApplication::processEvents();
    long_path.runs.push_back(time_ms([&] {
      tree->open_item(long_row);
      view->repaint();
    }));
    if (!qobject_cast<LUM_PATH_WND*>(top->get_page_window())) std::printf("the long path did not open\n");
  }
  long_path.print("open a path of 2,000 points, to first paint");

  // 2. A histogram of 100,000 bins.
  LUM_HISTOGRAM_DATA data;
  data.x_title = "Setup Slack";
  data.y_title = "Number of End Points";
  data.unit = "ns";
  data.precision = 4;
  for (int i = 0; i < 100000; ++i)
    data.bins.push_back({-50.0 + i * 0.001, -50.0 + (i + 1) * 0.001, (i * 7919) % 13, i < 50000 ? 0xe04040u : 0xffffffffu});
  LUM_HISTOGRAM_WND histogram;
  histogram.resize(1200, 600);
  histogram.show();
  FIGURE layout, repaint;
  for (int r = 0; r < runs; ++r) {
    layout.runs.push_back(time_ms([&] { histogram.set_data(data); }));
    // Painted into a picture of the window's size: the same paint event as
    // on the screen, whether or not the window system shows the window.
    QImage image(histogram.size(), QImage::Format_ARGB32_Premultiplied);
    repaint.runs.push_back(time_ms([&] { histogram.render(&image); }));
  }
  std::printf("histogram: %zu drawn columns for %zu bins\n", histogram.get_layout().bars.size(), data.bins.size());
  layout.print("lay out a histogram of 100,000 bins (1200 x 600)");
  repaint.print("repaint a histogram of 100,000 bins (1200 x 600)");

  // 3. The first of 10,000 paths from the summary table.
  FIGURE first_path;
  const int many_row = tree->find_item_by_rdb_path("Timing Analyzer||Many Paths||Summary of Paths");
  for (int r = 0; r < runs; ++r) {
    tree->open_item(many_row);
    QApplication::processEvents();
    auto* host = qobject_cast<LUM_CENTERED_TABLE*>(top->get_page_window());
    if (!host) {
      std::printf("the summary table did not open\n");
      return 1;
    }
    first_path.runs.push_back(time_ms([&] {
      host->get_table()->open_row(0);
      // The path opens once the click has been handled.
      while (top->get_title() != QStringLiteral("Path 1")) QApplication::processEvents();
      view->repaint();
    }));
  }
  first_path.print("open the first of 10,000 paths from the summary table");
  DBMUI_MANAGER::get_instance()->clear_project();
  return 0;
}
