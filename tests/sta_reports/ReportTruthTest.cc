// The numbers of the report commands against Debian's own sta on the same
// netlist and constraints: the worst paths' slacks, and for each of our
// paths the arrival, required and slack that report_checks gives for the
// same end point.
#include "ReportTestEngine.hh"

#include "Engine.hh"
#include "reports/PathFinder.hh"
#include "program_run.hh"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <sstream>
#include <unistd.h>

namespace vexa::test {
namespace {

constexpr double tolerance = 2e-4;  // report_checks prints four digits

struct StaPath
{
  double arrival = 0, required = 0, slack = 0;
};

struct StaRun
{
  std::vector<std::pair<std::string, double>> worst;  // (group, slack) from -format end
  std::vector<StaPath> paths;                        // one per -to report, in order
};

StaRun run_sta(const ReportTestEngine &test, const std::string &constraints, bool max, int count,
               const std::vector<std::string> &endpoints)
{
  std::string script_path = "/tmp/chronel_truth_" + std::to_string(getpid()) + ".tcl";
  {
    std::ofstream script(script_path);
    script << "read_liberty /usr/share/qflow/tech/osu035/osu035_stdcells.lib\n"
           << "read_verilog " << test.netlist_file() << "\n"
           << "link_design " << test.design() << "\n"
           << "read_sdc " << test.sdc_file() << "\n"
           << constraints << "\n"
           << "puts \"@@END\"\n"
           << "report_checks -path_delay " << (max ? "max" : "min") << " -group_count " << count
           << " -endpoint_count 1 -format end -digits 4\n";
    for (const std::string &endpoint : endpoints)
      script << "puts \"@@PATH\"\nreport_checks -path_delay " << (max ? "max" : "min")
             << " -digits 4 -to {" << endpoint << "}\n";
  }
  std::string output =
    chronel::truth::run_program("sta", {"-no_splash", "-exit", script_path}).output;
  std::remove(script_path.c_str());

  StaRun run;
  std::istringstream lines(output);
  std::string line, group;
  static const std::regex group_line(R"(^(max|min)_delay/\w+ group (\S+))");
  static const std::regex end_row(R"(^\S+.*\s(-?\d+\.\d+)\s+\((MET|VIOLATED)\)\s*$)");
  static const std::regex timed(R"(^\s*(-?\d+\.\d+)\s+(data arrival time|data required time)\s*$)");
  static const std::regex slack(R"(^\s*(-?\d+\.\d+)\s+slack \()");
  bool in_end = false;
  while (std::getline(lines, line)) {
    std::smatch m;
    if (line == "@@END") {
      in_end = true;
    } else if (line == "@@PATH") {
      in_end = false;
      run.paths.emplace_back();
    } else if (in_end && std::regex_search(line, m, group_line)) {
      group = m[2];
    } else if (in_end && std::regex_search(line, m, end_row)) {
      run.worst.emplace_back(group, std::stod(m[1]));
    } else if (!run.paths.empty() && std::regex_search(line, m, timed)) {
      // The first arrival and required lines of a path; the slack block
      // repeats them below.
      StaPath &path = run.paths.back();
      double value = std::stod(m[1]);
      if (m[2] == "data arrival time" && path.arrival == 0)
        path.arrival = value;
      if (m[2] == "data required time" && path.required == 0)
        path.required = value;
    } else if (!run.paths.empty() && std::regex_search(line, m, slack)) {
      run.paths.back().slack = std::stod(m[1]);
    }
  }
  return run;
}

struct TruthCase
{
  const char *design;
  Analysis analysis;
  int npaths;
  const char *constraints = "";  // extra SDC applied to both tools
  const char *label = "";
};

void PrintTo(const TruthCase &c, std::ostream *out)
{
  *out << c.design << " " << analysis_name(c.analysis) << " " << c.npaths << c.label;
}

const char *const kPropagated =
  "set_propagated_clock [all_clocks]\n"
  "set_clock_uncertainty 0.05 [all_clocks]\n"
  "set_multicycle_path 2 -setup -from [get_clocks io_clk] -to [get_clocks sys_clk]";
const char *const kResetsPropagated =
  "set_propagated_clock [all_clocks]\nset_clock_uncertainty -setup 0.1 [all_clocks]";

class ReportTruth : public testing::TestWithParam<TruthCase>
{};

TEST_P(ReportTruth, WorstPathsMatchReportChecks)
{
  const TruthCase &c = GetParam();
  ReportTestEngine &test = ReportTestEngine::with_design(c.design, c.constraints);
  PathQuery query;
  query.analysis = c.analysis;
  query.npaths = c.npaths;
  std::vector<TimingPathRecord> ours = find_timing_paths(test.engine().sta(), query);
  ASSERT_FALSE(ours.empty()) << "no " << analysis_name(c.analysis) << " paths in " << c.design;

  std::vector<std::string> endpoints;
  for (const TimingPathRecord &path : ours)
    endpoints.push_back(path.to_node);
  StaRun sta = run_sta(test, c.constraints, analysis_is_max(c.analysis), c.npaths, endpoints);

  // Recovery and removal checks form OpenSTA's asynchronous path group.
  bool async = c.analysis == Analysis::recovery || c.analysis == Analysis::removal;
  std::vector<double> theirs;
  for (const auto &[group, slack] : sta.worst)
    if ((group == "**async_default**") == async)
      theirs.push_back(slack);
  std::sort(theirs.begin(), theirs.end());
  ASSERT_GE(theirs.size(), ours.size());
  for (size_t i = 0; i < ours.size(); i++)
    EXPECT_NEAR(ours[i].slack, theirs[i], tolerance) << "path " << i + 1;

  ASSERT_EQ(sta.paths.size(), ours.size());
  for (size_t i = 0; i < ours.size(); i++) {
    SCOPED_TRACE(ours[i].to_node);
    EXPECT_NEAR(ours[i].arrival, sta.paths[i].arrival, tolerance);
    EXPECT_NEAR(ours[i].required, sta.paths[i].required, tolerance);
    EXPECT_NEAR(ours[i].slack, sta.paths[i].slack, tolerance);
    // The point tables end on the same times.
    ASSERT_FALSE(ours[i].arrival_points.empty());
    EXPECT_NEAR(ours[i].arrival_points.back().total, ours[i].arrival, 1e-9);
    EXPECT_NEAR(ours[i].required_points.back().total, ours[i].required, 1e-9);
    // Each row's total is the previous total plus its increment.
    for (const auto *points : {&ours[i].arrival_points, &ours[i].required_points})
      for (size_t row = 1; row < points->size(); row++)
        EXPECT_NEAR((*points)[row].total, (*points)[row - 1].total + (*points)[row].incr, 1e-5)
          << (*points)[row].element;
  }
}

INSTANTIATE_TEST_SUITE_P(
  Examples, ReportTruth,
  testing::Values(TruthCase{"datapath", Analysis::setup, 10},
                  TruthCase{"datapath", Analysis::hold, 1},
                  TruthCase{"twoclocks", Analysis::setup, 10},
                  TruthCase{"twoclocks", Analysis::hold, 1},
                  TruthCase{"resets", Analysis::setup, 10},
                  TruthCase{"resets", Analysis::hold, 1},
                  TruthCase{"resets", Analysis::recovery, 1},
                  TruthCase{"resets", Analysis::removal, 1},
                  // Propagated clocks, uncertainty and a cross-clock
                  // multicycle path exercise the capture side's rows.
                  TruthCase{"twoclocks", Analysis::setup, 10, kPropagated, "_propagated"},
                  TruthCase{"twoclocks", Analysis::hold, 3, kPropagated, "_propagated"},
                  TruthCase{"resets", Analysis::recovery, 3, kResetsPropagated, "_propagated"}),
  [](const testing::TestParamInfo<TruthCase> &info) {
    return std::string(info.param.design) + "_" + analysis_name(info.param.analysis) +
           info.param.label;
  });

} // namespace
} // namespace vexa::test
