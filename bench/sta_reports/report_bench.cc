// Benchmark of the report commands on a large design.
//
// 1. The generated design of bench/sta (about 100,000 cells) is written into
//    a folder unless it is there already.
// 2. Debian's sta loads it and, after a warm-up report_wns, runs
//    "report_checks -group_count N -endpoint_count 1 > /dev/null"; vexa_sta
//    opens it as a project and, after the same warm-up, runs
//    "report_timing -npaths N -panel_name X". Each script measures its own
//    report command (wall and processor time, the latter from /proc), so
//    loading the design is not counted. Each side is run --repeat times and
//    its best times are kept. The ratio vexa_sta/sta is printed with the
//    target (at most 0.5), also against sta restricted to the clock's path
//    group, which holds the same paths as report_timing's setup report.
// 3. Inside this process, the time to write a 100,000-bin histogram panel and
//    a 10,000-row table panel into a fresh report database.
#include "reports/PathPanel.hh"
#include "reports/ReportPanels.hh"
#include "reports/ReportTable.hh"

#include "program_run.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

// Measures a Tcl command's wall and processor seconds and prints them
// with a tag; /proc/self/stat counts user and system ticks of 1/100 s.
const char *const timing_procs = R"TCL(
proc bench_cpu {} {
  set f [open /proc/self/stat]
  set fields [split [lindex [split [read $f] ")"] end]]
  close $f
  return [expr {([lindex $fields 12] + [lindex $fields 13]) / 100.0}]
}
proc bench_time {tag script} {
  set wall [clock microseconds]
  set cpu [bench_cpu]
  uplevel #0 $script
  puts "@@$tag [expr {([clock microseconds] - $wall) / 1e6}] [expr {[bench_cpu] - $cpu}]"
}
)TCL";

struct Times
{
  double wall = -1;
  double cpu = -1;
};

std::map<std::string, Times> parse_times(const std::string &output)
{
  std::map<std::string, Times> times;
  std::istringstream lines(output);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.rfind("@@", 0) != 0)
      continue;
    std::istringstream fields(line.substr(2));
    std::string tag;
    Times t;
    fields >> tag >> t.wall >> t.cpu;
    times[tag] = t;
  }
  return times;
}

double seconds_since(std::chrono::steady_clock::time_point start)
{
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void print_ratio_only(const char *what, const Times &ours, const Times &theirs)
{
  if (theirs.wall > 0 && theirs.cpu > 0)
    std::printf("%-34s %8.3f   wall %8.3f   cpu   (target <= 0.5)\n", what,
                ours.wall / theirs.wall, ours.cpu / theirs.cpu);
}

void print_ratio(const char *what, const Times &ours, const Times &theirs)
{
  std::printf("%-34s %8.3f s wall %8.3f s cpu\n", what, ours.wall, ours.cpu);
  print_ratio_only("  ratio vexa_sta / sta", ours, theirs);
}

const char *const usage_text =
  "usage: sta_reports_bench [--dir FOLDER] [--engine PATH] [--sta PATH] [--npaths N] "
  "[--cells N] [--repeat K]\n"
  "  --dir     where the generated design is kept (default: bench_sta_reports beside the\n"
  "            build's bin folder); it is generated there unless bench.vpf exists\n"
  "  --npaths  paths per report (default 10000)     --cells  design size (default 100000)\n"
  "  --repeat  runs of each program; the best times count (default 5)\n";

int usage_error(const std::string &text)
{
  std::fprintf(stderr, "sta_reports_bench: %s\n%s", text.c_str(), usage_text);
  return 2;
}

} // namespace

int main(int argc, char **argv)
{
  std::string dir;
  std::string engine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
  std::string sta = "sta";
  int npaths = 10000;
  int cells = 100000;
  int repeat = 5;
  for (int i = 1; i < argc; i++) {
    std::string option = argv[i];
    if (option == "--help" || option == "-h") {
      std::printf("%s", usage_text);
      return 0;
    }
    if (i + 1 >= argc)
      return usage_error("missing value after " + option);
    std::string value = argv[++i];
    auto count = [&](int &target, int minimum) {
      char *end = nullptr;
      long number = std::strtol(value.c_str(), &end, 10);
      if (value.empty() || *end != '\0' || number < minimum || number > 100000000)
        return false;
      target = static_cast<int>(number);
      return true;
    };
    if (option == "--dir")
      dir = value;
    else if (option == "--engine")
      engine = value;
    else if (option == "--sta")
      sta = value;
    else if (option == "--npaths" || option == "--cells" || option == "--repeat") {
      int &target = option == "--npaths" ? npaths : option == "--cells" ? cells : repeat;
      if (!count(target, option == "--cells" ? 100 : 1))
        return usage_error("bad number after " + option + ": \"" + value + "\"");
    } else {
      return usage_error("unknown option " + option);
    }
  }
  if (dir.empty())
    dir = (fs::path(CHRONEL_BIN_DIR).parent_path() / "bench_sta_reports").string();
  dir = fs::absolute(dir).string();
  if (!fs::exists(dir + "/bench.vpf")) {
    std::printf("Writing the design into %s ...\n", dir.c_str());
    std::string command = std::string("python3 ") + CHRONEL_BENCH_GENERATOR + " --out " + dir +
                          " --cells " + std::to_string(cells);
    if (std::system(command.c_str()) != 0) {
      std::fprintf(stderr, "the design generator failed\n");
      return 1;
    }
  }
  fs::remove_all(dir + "/vexa_db");
  const std::string count = std::to_string(npaths);

  {
    std::ofstream script(dir + "/bench_sta.tcl");
    script << timing_procs
           << "read_liberty /usr/share/qflow/tech/osu035/osu035_stdcells.lib\n"
           << "read_verilog " << dir << "/netlist/bench.v\n"
           << "link_design bench_top\n"
           << "read_sdc " << dir << "/bench.sdc\n"
           << "report_wns\n"
           << "bench_time report {report_checks -group_count " << count
           << " -endpoint_count 1 > /dev/null}\n"
           // report_checks also reports the recovery checks (its
           // asynchronous group), which report_timing -setup leaves out;
           // the clock's group alone holds the same paths as ours.
           << "bench_time group {report_checks -group_count " << count
           << " -endpoint_count 1 -path_group clk > /dev/null}\n";
  }
  {
    std::ofstream script(dir + "/bench_vexa.tcl");
    script << timing_procs << "project_open " << dir << "/bench.vpf\n"
           << "create_timing_netlist\nread_sdc\nupdate_timing_netlist\nreport_wns\n"
           << "set ::vexa::report_profile 1\n"
           << "bench_time report {report_timing -npaths " << count
           << " -panel_name {Report Timing}}\n"
           << "bench_time summary {report_timing -npaths " << count
           << " -summary -panel_name {Report Timing Summary}}\n"
           << "bench_time histogram {create_slack_histogram -clock_name clk -num_bins 10000 "
              "-panel_name {Slack Histogram}}\n"
           << "bench_time text {report_timing -npaths " << count << " -file /dev/null}\n";
  }

  std::printf("Design: %s (report_timing -npaths %d, best of %d runs)\n", dir.c_str(), npaths,
              repeat);
  // Other work on the machine only ever adds time, so the best of a few
  // runs is the fairest figure for each side.
  auto best_of = [](std::map<std::string, Times> &best, const std::map<std::string, Times> &run) {
    for (const auto &[tag, t] : run) {
      auto [it, fresh] = best.try_emplace(tag, t);
      if (!fresh) {
        it->second.wall = std::min(it->second.wall, t.wall);
        it->second.cpu = std::min(it->second.cpu, t.cpu);
      }
    }
  };
  std::map<std::string, Times> theirs, ours;
  // The engine's own split of the panel report, from its fastest run.
  std::string split;
  double fastest = -1;
  for (int i = 0; i < repeat; i++) {
    best_of(theirs, parse_times(
                      chronel::truth::run_program(sta, {"-no_splash", "-exit", dir + "/bench_sta.tcl"})
                        .output));
    fs::remove_all(dir + "/vexa_db");
    const std::string output =
      chronel::truth::run_program(engine, {"-t", dir + "/bench_vexa.tcl"}).output;
    std::map<std::string, Times> run = parse_times(output);
    best_of(ours, run);
    const size_t at = output.find("report_timing: ");
    if (at != std::string::npos && run.count("report") &&
        (fastest < 0 || run["report"].wall < fastest)) {
      fastest = run["report"].wall;
      split = output.substr(at + 15, output.find('\n', at) - at - 15);
    }
  }
  if (!theirs.count("report") || !ours.count("report")) {
    std::fprintf(stderr, "a run failed (no timing line from %s)\n",
                 theirs.count("report") ? "vexa_sta" : "sta");
    return 1;
  }
  std::printf("%-34s %8.3f s wall %8.3f s cpu\n", "sta report_checks to /dev/null",
              theirs["report"].wall, theirs["report"].cpu);
  std::printf("%-34s %8.3f s wall %8.3f s cpu\n", "  the same, group clk only",
              theirs["group"].wall, theirs["group"].cpu);
  print_ratio("vexa_sta report_timing to a panel", ours["report"], theirs["report"]);
  print_ratio_only("  ratio to sta's group clk only", ours["report"], theirs["group"]);
  if (!split.empty())
    std::printf("  split (fastest run): %s\n", split.c_str());
  print_ratio("vexa_sta report_timing as text", ours["text"], theirs["report"]);
  std::printf("%-34s %8.3f s wall %8.3f s cpu\n", "vexa_sta -summary to a panel",
              ours["summary"].wall, ours["summary"].cpu);
  std::printf("%-34s %8.3f s wall %8.3f s cpu\n", "vexa_sta 10,000-bin histogram",
              ours["histogram"].wall, ours["histogram"].cpu);
  std::error_code ignored;
  std::uintmax_t size = fs::file_size(dir + "/vexa_db/bench.sta.rdb", ignored);
  std::printf("%-34s %8.1f MB\n", "report database size", size / 1e6);
  // The design may have fewer end points than paths asked for; both
  // programs then report every end point once.
  try {
    std::unique_ptr<RDB_REPORT> report = RDB_REPORT::open(dir + "/vexa_db/bench.sta.rdb");
    RDB_OBJECT *summary = report ? report->find_object("Report Timing||Summary of Paths") : nullptr;
    if (auto *table = dynamic_cast<RDB_TABLE_OBJECT *>(summary))
      std::printf("%-34s %8lld\n", "paths in the panel",
                  static_cast<long long>(table->get_number_of_data_rows()));
  } catch (const std::exception &error) {
    std::printf("the panel could not be read: %s\n", error.what());
  }

  // Writing alone, without the analysis: a histogram and a summary table.
  std::string file = dir + "/bench_write.rdb";
  fs::remove(file);
  // The writer is closed before its files are removed (SQLite keeps a log
  // and a shared-memory file beside the database while it is open).
  auto writer_holder = std::make_unique<RDB_WRITER>(file, RDB_TIMING_REPORT);
  RDB_WRITER &writer = *writer_holder;
  std::mt19937 random(7);
  std::normal_distribution<double> slack(1.0, 2.0);

  std::vector<vexa::HistogramBinRow> bins(100000);
  for (size_t i = 0; i < bins.size(); i++) {
    bins[i].from = -5.0 + 1e-4 * i;
    bins[i].to = bins[i].from + 1e-4;
    bins[i].count = static_cast<int>(random() % 50);
  }
  auto start = std::chrono::steady_clock::now();
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Histogram");
    vexa::write_slack_histogram(panel, "", bins, vexa::Analysis::setup, "ns");
    panel.commit();
  }
  double histogram_seconds = seconds_since(start);

  std::vector<vexa::TimingPathRecord> paths(10000);
  for (size_t i = 0; i < paths.size(); i++) {
    vexa::TimingPathRecord &path = paths[i];
    path.slack = slack(random);
    path.violated = path.slack < 0;
    path.from_node = "stage3_reg[" + std::to_string(i % 512) + "]";
    path.to_node = "stage4_reg[" + std::to_string(i) + "]/D";
    path.launch_clock = path.latch_clock = "clk";
    path.relationship = 14.0;
    path.data_delay = 14.0 - path.slack;
  }
  start = std::chrono::steady_clock::now();
  {
    RDB_PANEL_WRITER panel = writer.begin_panel("Summary");
    panel.add_folder("");
    vexa::PathPanelOptions options;
    options.summary_only = true;
    vexa::PathPanelWriter paths_writer(&panel, nullptr, options);
    for (const vexa::TimingPathRecord &path : paths)
      paths_writer.add(path);
    panel.commit();
  }
  double table_seconds = seconds_since(start);
  std::printf("%-34s %8.3f s (%.0f bins/s)\n", "write a 100,000-bin histogram",
              histogram_seconds, bins.size() / histogram_seconds);
  std::printf("%-34s %8.3f s (%.0f rows/s)\n", "write a 10,000-row summary table",
              table_seconds, paths.size() / table_seconds);
  writer_holder.reset();
  for (const char *suffix : {"", "-wal", "-shm"})
    fs::remove(file + suffix);
  return 0;
}
