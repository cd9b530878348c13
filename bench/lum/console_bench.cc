// Flood benchmark of the engine link: the scripted engine (fake_engine) prints
// N lines ("echo_stdout  line<i>", as the engine encodes plain text) for one
// command, and this program measures
//   - lines per second from the engine's pipe into the console's row model
//     (from writing the command to the row of the final prompt),
//   - the longest stall of the GUI thread, as the largest gap between ticks of
//     a 1 ms heartbeat timer, and how many gaps exceeded 100 ms,
//   - the bytes used per console row,
//   - where the time went: CPU of the GUI thread (the drain into the row
//     model, and the rest: the call-back commands and the event loop) and of
//     the reader threads (reading the pipe and classifying the lines).
// Usage: console_bench [lines] [--sta]   (default 1000000 lines from
// fake_engine beside this program; with --sta the real engine vexa_sta
// --ipc_sh prints them from a Tcl loop, so its own encoder is measured too).
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <sys/resource.h>

#include <cstdio>
#include <ctime>
#include <functional>
#include <cstdlib>
#include <string>
#include <vector>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

// The smallest main frame: it hands out the console and ignores the rest.
class BENCH_FRAME : public LUM_FRAME_IFACE {
 public:
  LUM_CONSOLE_CTRL* console = nullptr;
  std::vector<std::string> clocks;
  LUM_CONSOLE_CTRL* get_console() override { return console; }
  void set_status_pane_text(int, const std::string&) override {}
  void show_busy(bool) override {}
  void post_close_request() override {}
  char get_state_flag(LUM_STATE_FLAG) const override { return '0'; }
  void set_state_flag(LUM_STATE_FLAG, char) override {}
  void set_netlist_is_created(char) override {}
  void set_sdc_needs_saving(bool) override {}
  void sta_opened_a_project(const std::string&, const std::string&) override {}
  void sta_closed_a_project() override {}
  std::vector<std::string>& get_clock_names() override { return clocks; }
  void set_time_unit(const std::string&) override {}
  void reload_sta_report(const char*) override {}
  void update_report_tree_status() override {}
  void update_tasks_status() override {}
  void start_next_task() override {}
};

long resident_kib() {
  FILE* f = std::fopen("/proc/self/statm", "r");
  if (!f) return 0;
  long pages = 0, resident = 0;
  if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
  std::fclose(f);
  return resident * 4;
}

double thread_cpu_seconds() {
  timespec t{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
  return t.tv_sec + t.tv_nsec / 1e9;
}

double process_cpu_seconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  long lines = argc > 1 ? std::atol(argv[1]) : 1000000;
  bool real_engine = argc > 2 && std::string(argv[2]) == "--sta";
  std::string engine = std::string(CHRONEL_BIN_DIR) + (real_engine ? "/vexa_sta" : "/fake_engine");

  lum_lum_register_tcl();
  BENCH_FRAME frame;
  LUM_CONSOLE_CTRL console;
  frame.console = &console;
  lum_set_frame(&frame);
  console.set_engine_command_line("\"" + engine + "\"" + (real_engine ? " --ipc_sh" : ""));
  if (!console.startup()) {
    std::fprintf(stderr, "console_bench: cannot start %s\n", engine.c_str());
    return 1;
  }

  // Heartbeat: the largest gap between its ticks is the longest stall.
  QElapsedTimer clock;
  clock.start();
  qint64 last_tick = clock.elapsed();
  qint64 longest_gap = 0;
  int gaps_over_100ms = 0;
  QTimer heartbeat;
  heartbeat.setInterval(1);
  QObject::connect(&heartbeat, &QTimer::timeout, [&] {
    qint64 now = clock.elapsed();
    qint64 gap = now - last_tick;
    if (gap > longest_gap) longest_gap = gap;
    if (gap > 100) ++gaps_over_100ms;
    last_tick = now;
  });
  int drains = 0;
  QObject::connect(&console, &LUM_CONSOLE_CTRL::rows_drained, [&](int) { ++drains; });

  auto run_until = [&](const std::function<bool()>& done) {
    while (!done()) QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
  };
  run_until([&] { return !console.is_busy(); });

  long rss_before = resident_kib();
  int rows_before = console.get_model()->row_count();
  long expected_rows = rows_before + lines + 1;  // the lines and the final prompt
  heartbeat.start();
  last_tick = clock.elapsed();
  const double gui_cpu_before = thread_cpu_seconds();
  const double cpu_before = process_cpu_seconds();
  const double drain_before = console.get_drain_seconds();
  QElapsedTimer flood;
  flood.start();
  std::string count = std::to_string(lines);
  console.run_command(real_engine ? "for {set i 0} {$i < " + count + "} {incr i} {puts line$i}" : "flood " + count);
  run_until([&] { return console.get_model()->row_count() >= expected_rows && !console.is_busy(); });
  double seconds = flood.nsecsElapsed() / 1e9;
  const double gui_cpu = thread_cpu_seconds() - gui_cpu_before;
  const double other_cpu = process_cpu_seconds() - cpu_before - gui_cpu;
  const double drain = console.get_drain_seconds() - drain_before;
  heartbeat.stop();
  long rss_after = resident_kib();

  const LUM_CONSOLE_MODEL* model = console.get_model();
  std::printf("console_bench: %ld lines from %s\n", lines, engine.c_str());
  std::printf("  pipe to model:        %.3f s, %.0f lines/s\n", seconds, lines / seconds);
  std::printf("  longest GUI stall:    %lld ms (gaps over 100 ms: %d; drain budget %d ms)\n",
              static_cast<long long>(longest_gap), gaps_over_100ms, console.get_drain_budget_ms());
  std::printf("  drains:               %d\n", drains);
  std::printf("  GUI thread CPU:       %.3f s (drain into the model %.3f s, call-backs and event loop %.3f s)\n",
              gui_cpu, drain, gui_cpu - drain);
  std::printf("  reader threads CPU:   %.3f s\n", other_cpu);
  std::printf("  rows in model:        %d\n", model->row_count());
  std::printf("  bytes per row:        %.1f (row model: texts and row records)\n", model->bytes_per_row());
  std::printf("  resident growth:      %.1f bytes per row (whole process)\n",
              (rss_after - rss_before) * 1024.0 / static_cast<double>(lines));
  lum_set_frame(nullptr);
  return 0;
}
