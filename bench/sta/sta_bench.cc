// sta_bench: how long vexa_sta takes to load and time a large design, against
// Debian's own sta on the same files.
//
// The design (about 100,000 cells by default) is written by make_design.py into
// a work folder.  Debian's sta then runs read_liberty, read_verilog,
// link_design, read_sdc and report_wns; vexa_sta runs project_open,
// create_timing_netlist, read_sdc, update_timing_netlist and report_wns on the
// project written beside the netlist.  Each program runs several times,
// alternately, as a whole process: the figures are the median wall and CPU
// time and the largest peak resident memory, taken from wait4().  The bench
// prints the figures and the vexa_sta/sta ratios; it asserts nothing.
//
//   sta_bench [--cells N] [--repeat K] [--dir FOLDER] [--engine PATH]

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include <unistd.h>


#include "tests/sta_truth/program_run.hh"

namespace fs = std::filesystem;

namespace {

constexpr double kTargetRatio = 1.15;
const char* const kReferenceSta = "/usr/bin/sta";
const char* const kLiberty = "/usr/share/qflow/tech/osu035/osu035_stdcells.lib";

using Run = chronel::truth::ProgramResult;

// Runs a program to completion and measures it; see program_run.hh.
Run measure(const std::vector<std::string>& command) {
  return chronel::truth::run_program(command.front(),
                                     std::vector<std::string>(command.begin() + 1, command.end()));
}

std::string last_lines(const std::string& text, int lines) {
  size_t pos = text.size();
  for (int n = 0; n <= lines && pos != std::string::npos && pos > 0; ++n) pos = text.rfind('\n', pos - 1);
  return pos == std::string::npos || pos == 0 ? text : text.substr(pos + 1);
}

std::string find_wns(const std::string& output) {
  std::smatch m;
  static const std::regex wns(R"((^|\n)wns (-?[0-9.]+))");
  return std::regex_search(output, m, wns) ? m[2].str() : std::string("?");
}

double median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  const size_t n = v.size();
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// The measured figures of one program over all its runs.
struct Figures {
  std::vector<double> wall, cpu;
  long peak_rss_kb = 0;
  std::string wns;

  void add(const Run& r) {
    wall.push_back(r.wall_s);
    cpu.push_back(r.cpu_s);
    peak_rss_kb = std::max(peak_rss_kb, r.peak_rss_kb);
    wns = find_wns(r.output);
  }
  void print(const char* label) const {
    std::printf("  %-16s %9.3f %9.3f %10.1f %9s\n", label, median(wall), median(cpu),
                peak_rss_kb / 1024.0, wns.c_str());
  }
};

std::string self_dir() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string(".") : exe.parent_path().string();
}

std::string first_line(const std::string& s) { return s.substr(0, s.find('\n')); }

int usage_error(const char* text) {
  std::fprintf(stderr, "sta_bench: %s\nusage: sta_bench [--cells N] [--repeat K] [--dir FOLDER] [--engine PATH]\n",
               text);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  long cells = 100000;
  int repeat = 3;
  std::string dir, engine;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (i + 1 >= argc) return usage_error(("missing value after " + arg).c_str());
    const char* value = argv[++i];
    if (arg == "--cells") cells = std::atol(value);
    else if (arg == "--repeat") repeat = std::atoi(value);
    else if (arg == "--dir") dir = value;
    else if (arg == "--engine") engine = value;
    else return usage_error(("unknown option " + arg).c_str());
  }
  if (cells < 1000 || repeat < 1) return usage_error("--cells must be at least 1000 and --repeat at least 1");
  if (dir.empty()) dir = (fs::path(self_dir()).parent_path() / "bench_sta").string();
  if (engine.empty()) {
    const char* bin = std::getenv("CHRONEL_BIN_DIR");
    engine = (fs::path(bin && *bin ? bin : self_dir()) / "vexa_sta").string();
  }
  dir = fs::absolute(dir).lexically_normal().string();
  fs::create_directories(dir);

  std::printf("Generating a design of about %ld cells in %s ...\n", cells, dir.c_str());
  std::fflush(stdout);
  Run gen = measure({CHRONEL_BENCH_PYTHON, CHRONEL_BENCH_GENERATOR, "--out", dir, "--cells", std::to_string(cells)});
  if (!gen.succeeded()) {
    std::fprintf(stderr, "sta_bench: the generator failed:\n%s\n", gen.output.c_str());
    return 1;
  }
  std::printf("  %s (%.1f s)\n", first_line(gen.output).c_str(), gen.wall_s);

  const fs::path reference_tcl = fs::path(dir) / "reference.tcl";
  std::ofstream(reference_tcl) << "read_liberty " << kLiberty << "\n"
                               << "read_verilog " << dir << "/netlist/bench.v\n"
                               << "link_design bench_top\n"
                               << "read_sdc " << dir << "/bench.sdc\n"
                               << "report_wns -digits 3\n";
  const fs::path engine_tcl = fs::path(dir) / "engine.tcl";
  std::ofstream(engine_tcl) << "project_open \"" << dir << "/bench.vpf\"\n"
                            << "create_timing_netlist\n"
                            << "read_sdc\n"
                            << "update_timing_netlist\n"
                            << "report_wns -digits 3\n"
                            << "exit\n";

  const bool have_engine = access(engine.c_str(), X_OK) == 0;
  if (!have_engine)
    std::printf("vexa_sta not found at %s: measuring sta alone.\n", engine.c_str());

  Figures reference, tested;
  for (int i = 0; i < repeat; ++i) {
    Run r = measure({kReferenceSta, "-no_init", "-no_splash", "-exit", reference_tcl.string()});
    if (!r.succeeded()) {
      std::fprintf(stderr, "sta_bench: sta failed on %s:\n%s\n", reference_tcl.c_str(),
                   last_lines(r.output, 30).c_str());
      return 1;
    }
    reference.add(r);
    if (!have_engine) continue;
    // Every engine run starts without a report database, like the first one.
    std::error_code ignored;
    fs::remove_all(fs::path(dir) / "vexa_db", ignored);
    Run e = measure({engine, "-t", engine_tcl.string()});
    if (!e.succeeded()) {
      std::fprintf(stderr, "sta_bench: vexa_sta failed on %s:\n%s\n", engine_tcl.c_str(),
                   last_lines(e.output, 30).c_str());
      return 1;
    }
    tested.add(e);
  }

  Run version = measure({kReferenceSta, "-version"});
  std::printf("\nMedian of %d run%s, whole process each (peak memory: largest of the runs)\n", repeat,
              repeat == 1 ? "" : "s");
  std::printf("  %-16s %9s %9s %10s %9s\n", "program", "wall s", "cpu s", "peak MiB", "wns ns");
  reference.print("sta");
  if (!have_engine) return 1;
  tested.print("vexa_sta");
  const double wall_ratio = median(tested.wall) / median(reference.wall);
  const double cpu_ratio = median(tested.cpu) / median(reference.cpu);
  const double mem_ratio = static_cast<double>(tested.peak_rss_kb) / static_cast<double>(reference.peak_rss_kb);
  std::printf("Ratio vexa_sta/sta: wall %.3f, cpu %.3f, peak memory %.3f\n", wall_ratio, cpu_ratio, mem_ratio);
  if (tested.wns != reference.wns)
    std::printf("Note: the two programs report different worst slack (%s vs %s ns).\n", tested.wns.c_str(),
                reference.wns.c_str());
  // Both programs are single-threaded, so wall time well above CPU time means
  // other work competed for the processors during the runs.
  if (median(reference.wall) > 1.3 * median(reference.cpu) || median(tested.wall) > 1.3 * median(tested.cpu))
    std::printf("Note: wall time well above CPU time: the machine was busy; the CPU ratio is the steadier figure.\n");
  std::printf("Target: wall-time ratio <= %.2f against Debian's %s %s: %s\n", kTargetRatio, kReferenceSta,
              first_line(version.output).c_str(), wall_ratio <= kTargetRatio ? "met" : "missed");
  return 0;
}
