// Every column of every path panel, and every bin of a slack histogram,
// against Debian's own sta on small designs made for the purpose.
//
// Each case writes one netlist (bracketed bus names, a clock buffer, a
// divide-by-two register that drives a generated clock, a latch) and its
// constraints into a scratch project. vexa_sta writes report_timing panels
// (setup and hold, every end point, interconnect rows shown) and a slack
// histogram per clock into the report database; sta prints the same paths
// with report_checks -format full_clock_expanded. For each of our paths the
// point tables must hold sta's rows in sta's order with the same times, edges,
// cells and fanouts, and the summary columns must be what sta's rows give:
// Relationship (capture edge minus launch edge, multicycles included), Clock
// Skew (capture clock latency minus launch clock latency), Data Delay and its
// cell/interconnect split. Histogram bins must count sta's end-point slacks.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "rdb/rdb_types.hh"
#include "sta_paths.hh"

namespace fs = std::filesystem;
using namespace chronel::truth;

namespace {

// Both sides print three decimals; a sum of rounded rows may be off by more.
constexpr double kTime = 0.0015;
constexpr double kSum = 0.006;

const char* const kNetlist = R"(module truthy(clk, clk2, din, dout, lout);
  input clk, clk2;
  input [1:0] din;
  output [1:0] dout;
  output lout;
  wire ck_b, div_q, div_n, gck_b, l_q, l_n;
  wire [1:0] a_q, b_q, c_q, n1;
  CLKBUF1 ckbuf (.A(clk), .Y(ck_b));
  DFFPOSX1 \a_r_reg[0]  (.D(din[0]), .CLK(ck_b), .Q(a_q[0]));
  DFFPOSX1 \a_r_reg[1]  (.D(din[1]), .CLK(ck_b), .Q(a_q[1]));
  INVX1 u0 (.A(a_q[0]), .Y(n1[0]));
  NAND2X1 u1 (.A(a_q[0]), .B(a_q[1]), .Y(n1[1]));
  DFFPOSX1 \b_r_reg[0]  (.D(n1[0]), .CLK(ck_b), .Q(b_q[0]));
  DFFPOSX1 \b_r_reg[1]  (.D(n1[1]), .CLK(ck_b), .Q(b_q[1]));
  DFFPOSX1 div_reg (.D(div_n), .CLK(ck_b), .Q(div_q));
  INVX1 u2 (.A(div_q), .Y(div_n));
  CLKBUF1 gbuf (.A(div_q), .Y(gck_b));
  DFFPOSX1 \c_r_reg[0]  (.D(b_q[0]), .CLK(gck_b), .Q(c_q[0]));
  DFFPOSX1 \c_r_reg[1]  (.D(b_q[1]), .CLK(gck_b), .Q(c_q[1]));
  DFFPOSX1 \d_r_reg[0]  (.D(c_q[0]), .CLK(clk2), .Q(dout[0]));
  DFFPOSX1 \d_r_reg[1]  (.D(c_q[1]), .CLK(clk2), .Q(dout[1]));
  LATCH lat (.D(din[0]), .CLK(ck_b), .Q(l_q));
  INVX1 u3 (.A(l_q), .Y(l_n));
  DFFPOSX1 e_reg (.D(l_n), .CLK(ck_b), .Q(lout));
endmodule
)";

const char* const kClocks =
    "create_clock -name clk -period 10 [get_ports clk]\n"
    "create_clock -name clk2 -period 7 [get_ports clk2]\n"
    "set_input_delay 1 -clock clk [get_ports {din[*]}]\n"
    "set_output_delay 1 -clock clk2 [get_ports {dout[*]}]\n"
    "set_output_delay 0.5 -clock clk [get_ports lout]\n";

struct PathCase {
  const char* name;
  const char* constraints;        // after the clocks, in the SDC file
  const char* after_update = "";  // given to vexa_sta once timing is up to date
};

const char* const kDivide =
    "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n";

const PathCase kCases[] = {
    {"ideal_latency_divided",
     "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n"
     "set_clock_latency 0.3 [get_clocks clk2]\n"
     "set_clock_latency 0.2 [get_clocks clk]\n"},
    {"source_latency_propagated",
     "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n"
     "set_clock_latency -source 0.7 [get_clocks clk]\n"
     "set_clock_latency -source 0.4 [get_clocks clk2]\n"
     "set_propagated_clock [get_clocks {clk gclk}]\n"},
    {"source_and_ideal_latency",
     "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n"
     "set_clock_latency -source 0.7 [get_clocks clk]\n"
     "set_clock_latency 0.25 [get_clocks {clk clk2}]\n"
     "set_clock_uncertainty 0.1 [all_clocks]\n"},
    {"multicycle_end",
     "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n"
     "set_propagated_clock [get_clocks {clk gclk}]\n"
     "set_multicycle_path 2 -setup -end -from [get_clocks gclk] -to [get_clocks clk2]\n"
     "set_multicycle_path 1 -hold -end -from [get_clocks gclk] -to [get_clocks clk2]\n"},
    {"multicycle_start",
     "create_generated_clock -name gclk -source [get_ports clk] -divide_by 2 [get_pins div_reg/Q]\n"
     "set_multicycle_path 3 -setup -start -from [get_pins {a_r_reg[*]/CLK}]\n"
     "set_multicycle_path 2 -hold -start -from [get_pins {a_r_reg[*]/CLK}]\n"
     "set_multicycle_path 2 -setup -start -from [get_clocks clk] -to [get_clocks gclk]\n"},
    {"multiplied_master_clock",
     "create_generated_clock -name gclk -source [get_ports clk] -master_clock clk -multiply_by 2 "
     "[get_pins div_reg/Q]\n"
     "set_propagated_clock [all_clocks]\n"},
    {"edges_source_latency",
     "create_generated_clock -name gclk -source [get_ports clk] -edges {1 3 5} "
     "[get_pins div_reg/Q]\n"
     "set_clock_latency -source 0.3 [get_clocks gclk]\n"},
    {"divided_inverted_master",
     "create_generated_clock -name gclk -source [get_ports clk] -master_clock [get_clocks clk] "
     "-divide_by 2 -invert [get_pins div_reg/Q]\n"
     "set_propagated_clock [get_clocks gclk]\n"},
    {"clock_groups_after_update", kDivide,
     "set_clock_groups -asynchronous -group {clk gclk} -group clk2\n"},
};

void PrintTo(const PathCase& c, std::ostream* os) { *os << c.name; }

std::string engine_program() {
  const char* env = std::getenv("CHRONEL_BIN_DIR");
  return (fs::path(env && *env ? env : CHRONEL_BIN_DIR) / "vexa_sta").string();
}

class Scratch {
 public:
  Scratch() {
    std::string pattern = (fs::temp_directory_path() / "chronel_paths_XXXXXX").string();
    if (mkdtemp(pattern.data())) path_ = pattern;
  }
  ~Scratch() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

void write_file(const fs::path& p, const std::string& text) { std::ofstream(p) << text; }

double number(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

// One of our point-table rows in sta's words.
struct OurRow {
  double total, incr;
  std::string rise_fall, type, text;
  int fanout;
};

std::vector<OurRow> our_rows(const RDB_TABLE_OBJECT* table) {
  std::vector<OurRow> rows;
  for (int r = 1; r < table->get_number_of_rows(); r++) {
    OurRow row{number(table->get_data(r, 0)), number(table->get_data(r, 1)), table->get_data(r, 2),
               table->get_data(r, 3), table->get_data(r, 6),
               table->get_data(r, 4).empty() ? -1 : std::stoi(table->get_data(r, 4))};
    // A pin row names its cell the way sta does; ports are (in)/(out) there.
    const std::string location = table->get_data(r, 5);
    if (!row.rise_fall.empty() && !location.empty()) row.text += " (" + location + ")";
    rows.push_back(row);
  }
  return rows;
}

std::string sta_text(const StaRow& row) {
  std::string text = row.text;
  for (const char* port : {" (in)", " (out)"})
    if (text.size() > 5 && text.compare(text.size() - std::strlen(port), std::strlen(port), port) == 0)
      return text.substr(0, text.size() - std::strlen(port)) + " (port)";
  return text;
}

std::string describe(const std::vector<OurRow>& ours, const std::vector<StaRow>& theirs) {
  std::ostringstream out;
  out << "  ours:\n";
  for (const OurRow& r : ours)
    out << "    " << r.total << "  " << r.incr << "  " << r.rise_fall << "  " << r.type << "  "
        << r.fanout << "  " << r.text << "\n";
  out << "  sta:\n";
  for (const StaRow& r : theirs)
    out << "    " << r.total << "  " << r.incr << "  " << r.rise_fall << "  " << r.fanout << "  "
        << r.text << "\n";
  return out.str();
}

// The rows of one half, point by point.
void compare_half(const char* half, const std::vector<OurRow>& ours_all,
                  const std::vector<StaRow>& theirs_all) {
  SCOPED_TRACE(half);
  std::vector<OurRow> ours;
  for (const OurRow& r : ours_all)
    if (!(r.text == "clock reconvergence pessimism" && std::fabs(r.incr) < 5e-4)) ours.push_back(r);
  std::vector<StaRow> theirs;
  for (const StaRow& r : theirs_all)
    if (!is_silent_row(r)) theirs.push_back(r);
  ASSERT_EQ(ours.size(), theirs.size()) << describe(ours, theirs);
  for (size_t i = 0; i < ours.size(); i++) {
    SCOPED_TRACE("row " + std::to_string(i + 1) + " " + theirs[i].text);
    EXPECT_EQ(ours[i].text, sta_text(theirs[i])) << describe(ours, theirs);
    EXPECT_EQ(ours[i].rise_fall, theirs[i].rise_fall);
    EXPECT_NEAR(ours[i].total, theirs[i].total, kTime);
    EXPECT_NEAR(ours[i].incr, theirs[i].incr, 2 * kTime);
    EXPECT_EQ(ours[i].fanout, theirs[i].fanout);
    // The type column follows from what the row is.
    const std::string& t = theirs[i].text;
    std::string type;
    if (t == "input external delay") type = "iExt";
    if (t == "output external delay") type = "oExt";
    if (t == "library setup time") type = "uTsu";
    if (t == "library hold time") type = "uTh";
    if (t.rfind("clock ", 0) == 0) type = "clock";
    if (theirs[i].after_wire) type = "IC";
    if (!type.empty()) {
      EXPECT_EQ(ours[i].type, type);
    }
  }
}

// Index of the launch point in sta's arrival half: a start point named as a
// pin (a clock network pin that feeds logic), the input port after an input
// delay, else the last clock-network row (the launching clock pin).
size_t launch_row(const std::vector<StaRow>& rows, const std::string& startpoint) {
  if (startpoint.find('/') != std::string::npos)
    for (size_t i = 0; i < rows.size(); i++)
      if (rows[i].text.rfind(startpoint + " (", 0) == 0) return i;
  size_t launch = 0;
  for (size_t i = 0; i < rows.size(); i++) {
    if (rows[i].text == "input external delay") return i + 1;  // the input port
    if (rows[i].text.find("/CLK ") != std::string::npos || rows[i].text.rfind("clock ", 0) == 0)
      launch = i;
  }
  return launch;
}

// Where the capture clock reaches the end point: the clock pin row of the
// required half, or the ideal network delay before an output delay.
double capture_clock_time(const std::vector<StaRow>& rows) {
  double time = rows.empty() ? 0 : rows.front().total;
  for (const StaRow& r : rows) {
    if (r.text == "clock reconvergence pessimism" || r.text == "clock uncertainty" ||
        r.text == "output external delay" || r.text.rfind("library ", 0) == 0 ||
        r.text.rfind("time ", 0) == 0 || r.text == "data required time")
      break;
    time = r.total;
  }
  return time;
}

class PathTruth : public ::testing::TestWithParam<PathCase> {};

TEST_P(PathTruth, EveryColumnOfEveryPathAndEveryHistogramBinIsSta) {
  const PathCase& c = GetParam();
  const std::string engine = engine_program();
  ASSERT_EQ(access(engine.c_str(), X_OK), 0) << engine << " is not built";
  ASSERT_EQ(access("/usr/bin/sta", X_OK), 0) << "install Debian's opensta package";

  Scratch scratch;
  const fs::path dir = scratch.path();
  ASSERT_FALSE(dir.empty());
  const std::string liberty = "/usr/share/qflow/tech/osu035/osu035_stdcells.lib";
  write_file(dir / "truthy.v", kNetlist);
  write_file(dir / "truthy.sdc", std::string(kClocks) + c.constraints);
  write_file(dir / "truthy.vpf", "project_name = truthy\nrevision = truthy\n");
  write_file(dir / "truthy.vsf",
             "top_module = truthy\nfamily = OSU\nspeed_grade = 035\nverilog_file = truthy.v\n"
             "sdc_file = truthy.sdc\n");

  const char* const clocks[] = {"clk", "clk2", "gclk"};
  std::string ours = "project_open truthy.vpf\ncreate_timing_netlist\nread_sdc\nupdate_timing_netlist\n";
  if (*c.after_update) ours += std::string(c.after_update) + "update_timing_netlist\n";
  for (const char* analysis : {"setup", "hold"}) {
    ours += std::string("report_timing -") + analysis + " -npaths 100 -show_routing -panel_name " +
            analysis + "\n";
    for (const char* clock : clocks)
      ours += std::string("create_slack_histogram -") + analysis + " -clock_name " + clock +
              " -num_bins 7 -panel_name " + analysis + "_" + clock + "\n";
  }
  ours += "exit\n";
  write_file(dir / "ours.tcl", ours);

  std::string theirs = "read_liberty " + liberty + "\nread_verilog truthy.v\nlink_design truthy\n"
                       "read_sdc truthy.sdc\n" + c.after_update;
  for (const char* delay : {"max", "min"})
    theirs += std::string("puts @@") + delay + "\nreport_checks -path_delay " + delay +
              " -format full_clock_expanded -fields {input_pins nets fanout} -digits 3"
              " -group_count 100 -endpoint_count 1 -sort_by_slack\n";
  write_file(dir / "theirs.tcl", theirs);

  ProgramResult got = run_program(engine, {"-t", (dir / "ours.tcl").string()}, dir.string());
  ASSERT_TRUE(got.succeeded()) << "vexa_sta " << got.describe() << ":\n" << got.output;
  ProgramResult ref = run_program("/usr/bin/sta", {"-no_init", "-no_splash", "-exit", "theirs.tcl"},
                                  dir.string());
  ASSERT_TRUE(ref.succeeded()) << "sta " << ref.describe() << ":\n" << ref.output;

  // A path is known by its end pin and capture clock.
  const size_t min_at = ref.output.find("@@min\n");
  ASSERT_NE(min_at, std::string::npos) << ref.output;
  std::map<std::string, std::vector<StaPath>> by_analysis;
  std::vector<std::string> problems;
  by_analysis["setup"] = parse_full_paths(ref.output.substr(0, min_at), problems);
  by_analysis["hold"] = parse_full_paths(ref.output.substr(min_at), problems);
  ASSERT_TRUE(problems.empty()) << problems.front();

  std::unique_ptr<RDB_REPORT> report =
      RDB_REPORT::open(rdb_report_file_path(dir.string(), "truthy", RDB_TIMING_REPORT));
  ASSERT_TRUE(report);
  for (const char* analysis : {"setup", "hold"}) {
    SCOPED_TRACE(analysis);
    std::map<std::string, const StaPath*> sta_by_key;
    for (const StaPath& p : by_analysis[analysis])
      sta_by_key[p.endpoint_pin() + " @" + StaPath::clock_of(p.required)] = &p;
    RDB_OBJECT* panel = report->find_object(analysis);
    ASSERT_TRUE(panel);
    auto* summary = dynamic_cast<RDB_TABLE_OBJECT*>(panel->get_child(0));
    ASSERT_TRUE(summary);
    // The same set of paths: one per end point and capture clock.
    ASSERT_EQ(static_cast<size_t>(summary->get_number_of_data_rows()), sta_by_key.size());
    for (int i = 1; i < panel->get_number_of_children(); i++) {
      auto* path = dynamic_cast<RDB_PATH_OBJECT*>(panel->get_child(i));
      ASSERT_TRUE(path);
      const std::string to = summary->get_data(i, 2), latch = summary->get_data(i, 4);
      SCOPED_TRACE(path->get_name() + " to " + to + " captured by " + latch);
      auto found = sta_by_key.find(to + " @" + latch);
      ASSERT_NE(found, sta_by_key.end()) << "sta has no such path";
      const StaPath& sta = *found->second;

      EXPECT_NEAR(number(summary->get_data(i, 0)), sta.slack, kTime);
      EXPECT_EQ(summary->get_data(i, 1), sta.startpoint);
      EXPECT_EQ(summary->get_data(i, 3), StaPath::clock_of(sta.arrival));
      std::vector<OurRow> arrival = our_rows(path->get_data_arrival_table());
      std::vector<OurRow> required = our_rows(path->get_data_required_table());
      compare_half("arrival", arrival, sta.arrival);
      compare_half("required", required, sta.required);

      const double launch_edge = sta.arrival.front().total;
      const double capture_edge = sta.required.front().total;
      const size_t launch = launch_row(sta.arrival, sta.startpoint);
      const double launch_time = sta.arrival[launch].total;
      // For an input port the launch clock reaches the row before the delay.
      const double launch_clock = sta.arrival[launch].text.find("(in)") != std::string::npos
                                      ? sta.arrival[launch - 2].total
                                      : launch_time;
      EXPECT_NEAR(number(summary->get_data(i, 5)), capture_edge - launch_edge, kTime)
          << "Relationship";
      EXPECT_NEAR(number(summary->get_data(i, 6)),
                  (capture_clock_time(sta.required) - capture_edge) - (launch_clock - launch_edge),
                  2 * kTime)
          << "Clock Skew";
      const double data_delay = sta.arrival.back().total - launch_time;
      EXPECT_NEAR(number(summary->get_data(i, 7)), data_delay, kTime) << "Data Delay";
      double wires = 0;
      for (size_t r = launch + 1; r < sta.arrival.size(); r++)
        if (sta.arrival[r].after_wire) wires += sta.arrival[r].incr;
      RDB_CHART_TABLE_OBJECT* chart = path->get_delay_summary_chart();
      ASSERT_TRUE(chart);
      EXPECT_NEAR(number(chart->get_data(1, 1)) / 1000, data_delay - wires, kSum) << "Cell Delay";
      EXPECT_NEAR(number(chart->get_data(2, 1)) / 1000, wires, kSum) << "Interconnect Delay";
    }

    // Histograms: every end point of the clock in exactly one bin.
    for (const char* clock : clocks) {
      SCOPED_TRACE(std::string("histogram of ") + clock);
      std::vector<double> slacks;
      for (const StaPath& p : by_analysis[analysis])
        if (StaPath::clock_of(p.required) == clock) slacks.push_back(p.slack);
      auto* bins =
          dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object(std::string(analysis) + "_" + clock));
      ASSERT_TRUE(bins);
      ASSERT_EQ(bins->get_number_of_data_rows(), 7);
      // sta's slacks are rounded: one within rounding of an edge may be in
      // either bin next to it.
      int counted = 0;
      for (int b = 1; b < bins->get_number_of_rows(); b++) {
        const std::string from_text = bins->get_data(b, 0), to_text = bins->get_data(b, 1);
        EXPECT_EQ(from_text.find_first_of("eE"), std::string::npos) << from_text;
        EXPECT_EQ(to_text.find_first_of("eE"), std::string::npos) << to_text;
        const double from = number(from_text) / 1000, to = number(to_text) / 1000;
        int surely = 0, maybe = 0;
        for (double s : slacks) {
          if (s >= from + kTime && s < to - kTime) surely++;
          if (s >= from - kTime && s <= to + kTime) maybe++;
        }
        const int count = static_cast<int>(number(bins->get_data(b, 2)));
        EXPECT_GE(count, surely) << "bin " << from << " .. " << to;
        EXPECT_LE(count, maybe) << "bin " << from << " .. " << to;
        counted += count;
      }
      EXPECT_EQ(counted, static_cast<int>(slacks.size()));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Designs, PathTruth, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<PathCase>& info) {
                           return std::string(info.param.name);
                         });

}  // namespace
