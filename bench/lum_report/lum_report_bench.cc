// Figures of the report browser (run offscreen: QT_QPA_PLATFORM=offscreen):
//   - opening a panel of 1,000,000 table rows until its first rows are painted,
//     and the process's memory then;
//   - sorting that table by a text column with the natural comparison, and
//     the longest time the event loop was held up meanwhile (the window keeps
//     repainting when that stays small);
//   - rebuilding the contents tree of a report of 10,000 panels.
// Usage: lum_report_bench [rows] [panels]
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_report_browser.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"
#include "report/lum_table_sort.hh"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

namespace {

// Resident and peak memory of this process in MB.
double memory_mb(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::string key = std::string(field) + ":";
  while (std::getline(status, line)) {
    if (line.rfind(key, 0) == 0) return std::atof(line.c_str() + key.size()) / 1024.0;
  }
  return 0;
}

// CPU time of the whole process in ms: on a busy machine the wall-clock
// figures grow with the load, this one much less.
double cpu_ms() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

void write_big_table(const std::string& file, int rows) {
  RDB_WRITER writer(file, RDB_TIMING_REPORT);
  RDB_PANEL_WRITER panel = writer.begin_panel("Big Table");
  RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, {"Slack", "From Node", "To Node", "Clock"});
  char slack[32], from[64], to[64];
  for (int i = 0; i < rows; ++i) {
    // Node names in a scrambled order so that sorting has work to do.
    const unsigned scrambled = static_cast<unsigned>(i) * 2654435761u % static_cast<unsigned>(rows);
    std::snprintf(slack, sizeof slack, "%.3f", (static_cast<int>(scrambled % 20000) - 10000) / 1000.0);
    std::snprintf(from, sizeof from, "u_core/u_alu%u/reg_%u[%u]/CLK", scrambled % 97, scrambled, scrambled % 32);
    std::snprintf(to, sizeof to, "u_core/u_mul%u/acc_%u[%u]/D", scrambled % 89, i, i % 64);
    if (i % 10 == 0)
      table.add_row({slack, from, to, "clk"}, {{0, 0xff0000, RDB_NO_COLOR}});
    else
      table.add_row({slack, from, to, "clk"});
  }
  panel.commit();
}

void write_many_panels(const std::string& file, int panels) {
  RDB_WRITER writer(file, RDB_TIMING_REPORT);
  for (int i = 0; i < panels; ++i) {
    RDB_PANEL_WRITER panel = writer.begin_panel("Panel " + std::to_string(i));
    panel.add_table("", RDB_KIND_TABLE, {"A", "B"}).add_row({"1", "2"});
    panel.commit();
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int rows = argc > 1 ? std::atoi(argv[1]) : 1000000;
  const int panels = argc > 2 ? std::atoi(argv[2]) : 10000;
  QApplication app(argc, argv);
  QTemporaryDir dir;
  DBMUI_MANAGER* manager = DBMUI_MANAGER::get_instance();

  // ---- a table of a million rows ----
  manager->set_project(dir.path().toStdString(), "big");
  QElapsedTimer clock;
  clock.start();
  write_big_table(rdb_report_file_path(dir.path().toStdString(), "big", RDB_TIMING_REPORT), rows);
  std::printf("writing %d rows: %lld ms (setup, not a target)\n", rows, static_cast<long long>(clock.elapsed()));

  QWidget window;
  window.resize(1200, 800);
  LUM_REPORT_BROWSER browser(&window, &window, nullptr);
  browser.get_tree()->setGeometry(0, 0, 250, 800);
  browser.get_report_view()->setGeometry(250, 0, 950, 800);
  window.show();
  app.processEvents();
  const double rss_before = memory_mb("VmRSS");

  clock.restart();
  browser.reload_sta_report("Big Table");
  LUM_VIEW_CTRL* ctrl = browser.get_report_view()->get_top_view_ctrl();
  auto* host = qobject_cast<LUM_CENTERED_TABLE*>(ctrl->get_page_window());
  if (!host || host->get_table()->get_model()->rowCount() != rows) {
    std::printf("FAILED: the table did not open with %d rows\n", rows);
    return 1;
  }
  LUM_TABLE* table = host->get_table();
  window.repaint();
  const QImage painted = table->viewport()->grab().toImage();
  const qint64 open_ms = clock.elapsed();
  std::printf("open %d-row panel, first rows painted: %lld ms (target < 200 ms)\n", rows,
              static_cast<long long>(open_ms));
  std::printf("memory after opening: %.1f MB resident (%.1f MB before opening; target < 300 MB)\n",
              memory_mb("VmRSS"), rss_before);
  (void)painted;

  // ---- sort by a text column while watching the event loop ----
  qint64 longest_gap = 0;
  QElapsedTimer gap;
  gap.start();
  QTimer heartbeat;
  QObject::connect(&heartbeat, &QTimer::timeout, [&] {
    longest_gap = std::max(longest_gap, gap.restart());
    table->viewport()->update();  // keep painting, as a user's window would
  });
  heartbeat.start(16);  // about sixty repaints a second
  // "From Node" ascending, then descending (the groups of equal keys are
  // reversed, no new sort), then "To Node" (a new sort), then "From Node"
  // descending as a new sort.
  const int columns[] = {1, 1, 2, 1};
  const char* const names[] = {"\"From Node\" ascending", "\"From Node\" descending (reversal)",
                               "\"To Node\" ascending", "\"From Node\" descending (a new sort)"};
  for (int pass = 0; pass < 4; ++pass) {
    clock.restart();
    gap.restart();
    longest_gap = 0;
    const double cpu_before = cpu_ms();
    // Wait in an event loop, as the application does, not in a polling loop
    // that would take a core from the sort.
    QEventLoop loop;
    QObject::connect(table->get_model(), &LUM_TABLE_MODEL::sort_finished, &loop, &QEventLoop::quit);
    if (pass < 3)
      table->on_sort(columns[pass]);
    else
      table->get_model()->sort_column(columns[pass], false);
    if (table->get_model()->is_sorting()) loop.exec();
    const qint64 sort_ms = clock.elapsed();
    std::printf("sort %d rows by %s: %lld ms (target < 500 ms), %.0f ms CPU over all threads; "
                "longest event-loop stall %lld ms\n",
                rows, names[pass], static_cast<long long>(sort_ms), cpu_ms() - cpu_before,
                static_cast<long long>(longest_gap));
  }
  heartbeat.stop();

  // Where a sort's time goes, each step on this thread alone: reading the
  // column's texts from the database, turning them into keys, sorting.
  {
    const LUM_TABLE_SOURCE* source = table->get_model()->get_source();
    clock.restart();
    size_t bytes = 0;
    for (int64_t at = 0; at < rows; at += 4096)
      source->visit_column(at, 4096, 1, [&bytes](std::string_view cell) { bytes += cell.size(); });
    const qint64 read_ms = clock.elapsed();
    clock.restart();
    std::vector<LUM_SORT_CHUNK> chunks(1);
    lum_key_rows(*source, 0, rows, 1, 0, &chunks[0]);
    const qint64 read_and_key_ms = clock.elapsed();
    clock.restart();
    std::vector<bool> group_starts;
    const std::vector<uint32_t> order = lum_sort_chunks(chunks, true, nullptr, &group_starts);
    const qint64 sort_only_ms = clock.elapsed();
    std::printf("split, one thread: read the column %lld ms (%.1f MB of text), make the keys %lld ms, "
                "sort the keys %lld ms\n",
                static_cast<long long>(read_ms), bytes / 1e6, static_cast<long long>(read_and_key_ms - read_ms),
                static_cast<long long>(sort_only_ms));
    (void)order;
  }
  std::printf("machine load while measuring: %s", [] {
    std::ifstream in("/proc/loadavg");
    std::string line;
    std::getline(in, line);
    return (line + " (1/5/15-minute load averages)\n");
  }().c_str());
  std::printf("first row after sorting: %s\n", table->get_model()->cell_text(0, 1).c_str());
  std::printf("memory after sorting: %.1f MB resident, %.1f MB peak\n", memory_mb("VmRSS"), memory_mb("VmHWM"));

  // ---- a tree of ten thousand panels ----
  browser.get_report_view()->get_top_view_ctrl()->close_page();
  manager->set_project(dir.path().toStdString(), "many");
  write_many_panels(rdb_report_file_path(dir.path().toStdString(), "many", RDB_TIMING_REPORT), panels);
  for (int pass = 0; pass < 3; ++pass) {
    clock.restart();
    browser.get_tree()->load_sta_report(true, nullptr);
    browser.get_tree()->viewport()->repaint();
    const qint64 tree_ms = clock.elapsed();
    std::printf("rebuild the tree of %d panels (%d rows): %lld ms (target < 200 ms)\n", panels,
                browser.get_tree()->get_row_count(), static_cast<long long>(tree_ms));
  }
  manager->clear_project();
  return 0;
}
