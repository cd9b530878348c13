// The parts of the report commands that need no design: option parsing,
// histogram binning, constraint splitting, the folding of path points and
// the text of times, and the writing of path panels on a second thread.
#include "reports/DesignReports.hh"
#include "reports/PathFinder.hh"
#include "reports/PathPanel.hh"
#include "reports/ReportArgs.hh"
#include "reports/ReportOutput.hh"
#include "shell/Interrupt.hh"

#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <cstdio>
#include <cstring>
#include <random>
#include <unistd.h>
#include <tcl.h>

namespace vexa {
namespace {

// Tcl objects need the library's subsystems, which an interpreter sets up.
const bool tcl_ready = [] {
  Tcl_FindExecutable(nullptr);
  Tcl_DeleteInterp(Tcl_CreateInterp());
  return true;
}();

// Builds objv from words and parses them with report_timing's kind of table.
ReportArgs parse(std::vector<std::string> words)
{
  std::vector<Tcl_Obj *> objs;
  for (const std::string &word : words) {
    objs.push_back(Tcl_NewStringObj(word.c_str(), -1));
    Tcl_IncrRefCount(objs.back());
  }
  struct Release
  {
    std::vector<Tcl_Obj *> &objs;
    ~Release()
    {
      for (Tcl_Obj *obj : objs)
        Tcl_DecrRefCount(obj);
    }
  } release{objs};
  return ReportArgs("cmd", static_cast<int>(objs.size()), objs.data(),
                    {{"-npaths", true}, {"-nworst", true}, {"-setup", false},
                     {"-panel_name", true}, {"-less_than_slack", true}},
                    1);
}

TEST(ReportArgs, AcceptsUniquePrefixesAndRefusesAmbiguousOnes)
{
  ReportArgs args = parse({"cmd", "-np", "5", "-se", "-panel_name", "A B", "target"});
  EXPECT_EQ(args.positive_int("-npaths"), 5);
  EXPECT_TRUE(args.has("-setup"));
  EXPECT_EQ(args.value("-panel_name"), "A B");
  EXPECT_EQ(args.positionals(), std::vector<std::string>{"target"});
  EXPECT_EQ(args.command_line(), "cmd -np 5 -se -panel_name {A B} target");
  EXPECT_THROW(parse({"cmd", "-n", "5"}), ReportError);          // -npaths or -nworst
  EXPECT_THROW(parse({"cmd", "a", "b"}), ReportError);           // one positional only
}

// An empty dialog field leaves an option without its value: the option that
// follows is not taken for the value.
TEST(ReportArgs, AnOptionIsNeverTheValueOfAnother)
{
  for (std::vector<std::string> words :
       {std::vector<std::string>{"cmd", "-npaths", "-panel_name", "P"},
        std::vector<std::string>{"cmd", "-panel_name", "-np", "3"},
        std::vector<std::string>{"cmd", "-npaths"}}) {
    try {
      parse(words);
      ADD_FAILURE() << words[1] << " took a value";
    } catch (const ReportError &error) {
      EXPECT_NE(std::string(error.what()).find(words[1] + " needs a value"), std::string::npos)
        << error.what();
    }
  }
  // A value that only looks like an option is kept.
  EXPECT_EQ(parse({"cmd", "-panel_name", "-x"}).value("-panel_name"), "-x");
}

TEST(ReportArgs, NumbersAreChecked)
{
  EXPECT_EQ(parse({"cmd", "-less_than_slack", "-0.5"}).number("-less_than_slack"), -0.5);
  for (const char *bad : {"0", "-3", "", "2x", "1.5"})
    EXPECT_THROW(parse({"cmd", "-npaths", bad}).positive_int("-npaths"), ReportError) << bad;
  EXPECT_THROW(parse({"cmd", "-less_than_slack", "abc"}).number("-less_than_slack"),
               ReportError);
}

TEST(HistogramBins, SpanTheDataAndCountEveryValueOnce)
{
  std::vector<double> values = {-1.0, -0.5, 0.0, 0.25, 1.0};
  auto bins = histogram_bins(values, 4, std::nullopt, std::nullopt);
  ASSERT_EQ(bins.size(), 4u);
  EXPECT_DOUBLE_EQ(bins.front().from, -1.0);
  EXPECT_DOUBLE_EQ(bins.back().to, 1.0);
  int total = 0;
  for (const auto &bin : bins)
    total += bin.count;
  EXPECT_EQ(total, 5);  // the maximum falls in the last bin, not past it
  EXPECT_EQ(bins[0].count, 1);
  EXPECT_EQ(bins[1].count, 1);
  EXPECT_EQ(bins[2].count, 2);
  EXPECT_EQ(bins[3].count, 1);
}

TEST(HistogramBins, ZeroIsABinEdgeWhenTheSlacksSpanIt)
{
  auto bins = histogram_bins({-0.3, 0.1, 2.7}, 10, std::nullopt, std::nullopt);
  bool zero_edge = false;
  for (const auto &bin : bins)
    zero_edge = zero_edge || std::fabs(bin.to) < 1e-12;
  EXPECT_TRUE(zero_edge);
  EXPECT_LE(bins.front().from, -0.3);
  EXPECT_GE(bins.back().to, 2.7);
  EXPECT_EQ(bins.front().count, 1);  // the failing end point is alone below zero

  // Edges computed around zero may fall a rounding step short of the
  // largest value, which still counts.
  auto short_top = histogram_bins({-0.1, 0.5, 0.9}, 4, std::nullopt, std::nullopt);
  int total = 0;
  for (const auto &bin : short_top)
    total += bin.count;
  EXPECT_EQ(total, 3);
  EXPECT_GE(short_top.back().to, 0.9);
}

TEST(HistogramBins, GivenLimitsDropValuesOutsideAndSingleValuesGetARange)
{
  auto bins = histogram_bins({-5.0, 0.5, 9.0}, 2, 0.0, 1.0);
  EXPECT_EQ(bins[0].count + bins[1].count, 1);
  auto single = histogram_bins({2.0, 2.0}, 3, std::nullopt, std::nullopt);
  EXPECT_LT(single.front().from, single.back().to);
  EXPECT_EQ(single.back().count, 2);
  EXPECT_THROW(histogram_bins({}, 0, std::nullopt, std::nullopt), ReportError);
  EXPECT_THROW(histogram_bins({}, 5, 1.0, 1.0), ReportError);
}

TEST(Constraints, SplitIntoOptionsValueAndTargetsWithoutEvaluating)
{
  ConstraintEntry clock =
    parse_constraint("create_clock -name clk -period 10 -waveform {0 5} [get_ports clk]");
  EXPECT_EQ(clock.command, "create_clock");
  EXPECT_EQ(clock.options, (std::vector<std::pair<std::string, std::string>>{
                             {"-name", "clk"}, {"-period", "10"}, {"-waveform", "0 5"}}));
  EXPECT_EQ(clock.targets, "[get_ports clk]");

  ConstraintEntry delay =
    parse_constraint("set_input_delay -max 1.5 -clock clk [get_ports {a[0] a[1]}]");
  EXPECT_EQ(delay.value, "1.5");
  EXPECT_EQ(delay.options, (std::vector<std::pair<std::string, std::string>>{
                             {"-max", ""}, {"-clock", "clk"}}));

  // -source is a flag only for clock latency.
  EXPECT_EQ(parse_constraint("set_clock_latency -source 1 [get_clocks c]").value, "1");
  EXPECT_EQ(parse_constraint("create_generated_clock -source [get_ports c] -divide_by 2 x")
              .options[0].second,
            "[get_ports c]");
}

// Times are written by integer arithmetic instead of printf; the text must
// be printf's "%.3f" to the last digit, ties (exact halves of a thousandth,
// such as 0.0625) included, with "-0.000" written as "0.000".
TEST(TimeText, IsPrintfThreeDecimals)
{
  auto expected = [](double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.3f", value);
    return std::strcmp(text, "-0.000") == 0 ? std::string("0.000") : std::string(text);
  };
  std::vector<double> values = {0.0, -0.0, 0.0005, -0.0005, 0.0015, 0.0625, -0.0625, 0.1875,
                                1.0625, 2.5e-4, 4.9e-4, 4.99999e-4, 5.00001e-4, 0.9995,
                                -0.9995, 1e-300, 5e-324, 123456.7895, 9.999999, 1e15, -1e15,
                                4503599627370495.5, 9007199254740993.0, 1e300, -1e300};
  // Every exact half thousandth that a double holds: k/2000 with 125 | k.
  for (int k = 125; k < 4000000; k += 250)
    values.push_back(k / 2000.0), values.push_back(-k / 2000.0);
  std::mt19937_64 random(11);
  for (int i = 0; i < 200000; i++) {
    // Any bit pattern of a double whose magnitude lies in 2^-20 .. 2^60.
    std::uint64_t bits = random();
    const std::uint64_t exponent = 1023 - 20 + bits % 81;
    bits = (bits & 0x800fffffffffffffull) | (exponent << 52);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    values.push_back(value);
    values.push_back(std::nextafter(std::round(value * 1000) / 1000 + 0.0005, 0.0));
  }
  size_t wrong = 0;
  for (double value : values) {
    TimeText buffer;
    if (format_time(value, buffer) != expected(value) && ++wrong < 10)
      ADD_FAILURE() << "value " << std::hexfloat << value << ": \"" << format_time(value)
                    << "\" instead of \"" << expected(value) << "\"";
  }
  EXPECT_EQ(wrong, 0u);
  EXPECT_EQ(format_time(INFINITY), "inf");
  EXPECT_EQ(format_time(-INFINITY), "-inf");
}

// Paths handed to the pipeline reach the panel whole and in their order
// (more of them than one batch, and a last batch that is not full); a
// failure of the writer's thread (here an interrupt) comes back to the
// caller and nothing more is written.
TEST(PathPipeline, WritesEveryPathInOrderAndPassesFailuresBack)
{
  const std::filesystem::path file =
    std::filesystem::temp_directory_path() / ("chronel_pipeline_" + std::to_string(getpid()) + ".rdb");
  auto path_record = [](int i) {
    TimingPathRecord path;
    path.slack = -1.0 + 0.001 * i;
    path.violated = path.slack < 0;
    path.from_node = "r" + std::to_string(i);
    path.to_node = "q" + std::to_string(i) + "/D";
    PathPointRecord point;
    point.total = point.incr = 0.25;
    point.type = "CELL";
    point.element = "u1/Y";
    path.arrival_points.assign(3, point);
    path.required_points.assign(2, point);
    return path;
  };
  constexpr int count = 1000;
  {
    RDB_WRITER writer(file.string(), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel("Paths");
    panel.add_folder("");
    PathPanelWriter paths(&panel, nullptr, PathPanelOptions());
    PathPanelPipeline pipeline(paths);
    for (int i = 0; i < count; i++)
      pipeline.add(path_record(i));
    pipeline.finish();
    EXPECT_EQ(paths.count(), static_cast<size_t>(count));
    panel.commit();

    RDB_PANEL_WRITER failing = writer.begin_panel("Stopped");
    failing.add_folder("");
    PathPanelWriter stopped(&failing, nullptr, PathPanelOptions());
    PathPanelPipeline second(stopped);
    interrupt_raised = 1;
    bool thrown = false;
    try {
      for (int i = 0; i < count; i++)
        second.add(path_record(i));
      second.finish();
    } catch (const Interrupted &) {
      thrown = true;
    }
    interrupt_raised = 0;
    EXPECT_TRUE(thrown);
    EXPECT_EQ(stopped.count(), 0u);
  }
  std::unique_ptr<RDB_REPORT> report = RDB_REPORT::open(file.string());
  auto *table = dynamic_cast<RDB_TABLE_OBJECT *>(report->find_object("Paths||Summary of Paths"));
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->get_number_of_data_rows(), count);
  for (int i = 0; i < count; i++)
    ASSERT_EQ(table->get_data(i + 1, 1), "r" + std::to_string(i)) << i;
  EXPECT_NE(report->find_object("Paths||Path " + std::to_string(count)), nullptr);
  EXPECT_EQ(report->find_object("Stopped"), nullptr);
  report.reset();
  for (const char *suffix : {"", "-wal", "-shm"})
    std::filesystem::remove(file.string() + suffix);
}

TEST(PathPoints, InterconnectRowsFoldIntoTheNextCellUnlessRoutingIsShown)
{
  auto point = [](double total, double incr, const char *type, const char *element) {
    PathPointRecord p;
    p.total = total;
    p.incr = incr;
    p.type = type;
    p.element = element;
    return p;
  };
  std::vector<PathPointRecord> points = {
    point(1.0, 1.0, "uTco", "r1/Q"), point(1.2, 0.2, "IC", "u1/A"),
    point(1.5, 0.3, "CELL", "u1/Y"), point(1.6, 0.1, "IC", "r2/D"),
    point(1.6, 0.0, "", "data arrival time")};
  auto folded = path_point_rows(points, false);
  ASSERT_EQ(folded.size(), 4u);  // u1/A folded; the end pin r2/D stays
  EXPECT_EQ(folded[1][6], "u1/Y");
  EXPECT_EQ(folded[1][1], "0.500");
  EXPECT_EQ(folded[2][6], "r2/D");
  EXPECT_EQ(path_point_rows(points, true).size(), 5u);
}

} // namespace
} // namespace vexa
