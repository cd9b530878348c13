// What the report commands write into the report database, and what they
// refuse.
#include "ReportTestEngine.hh"

#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

namespace vexa::test {
namespace {

std::vector<std::string> panel_names(const ReportTestEngine &test)
{
  std::vector<std::string> names;
  if (auto report = test.open_report())
    for (const RDB_PANEL_INFO &panel : report->get_panels())
      names.push_back(panel.name);
  return names;
}

RDB_TABLE_OBJECT *table_at(RDB_OBJECT *object)
{
  return dynamic_cast<RDB_TABLE_OBJECT *>(object);
}

double number(const std::string &text)
{
  return std::strtod(text.c_str(), nullptr);
}

TEST(TimingPanel, HoldsASummaryTableAndOnePathObjectPerPath)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("report_timing -setup -npaths 3 -panel_name \"Report Timing\"");
  auto report = test.open_report();
  ASSERT_TRUE(report);
  RDB_OBJECT *panel = report->find_object("Report Timing");
  ASSERT_TRUE(panel);
  EXPECT_EQ(panel->get_type(), RDB_KIND_FOLDER);
  EXPECT_EQ(report->get_panel_command("Report Timing"),
            "report_timing -setup -npaths 3 -panel_name {Report Timing}");
  ASSERT_EQ(panel->get_number_of_children(), 4);

  RDB_TABLE_OBJECT *summary = table_at(panel->get_child(0));
  ASSERT_TRUE(summary);
  EXPECT_EQ(summary->get_name(), "Summary of Paths");
  EXPECT_EQ(summary->get_column_names(),
            (std::vector<std::string>{"Slack", "From Node", "To Node", "Launch Clock",
                                      "Latch Clock", "Relationship", "Clock Skew",
                                      "Data Delay"}));
  ASSERT_EQ(summary->get_number_of_data_rows(), 3);

  double previous_slack = -1e9;
  for (int i = 1; i <= 3; i++) {
    SCOPED_TRACE(i);
    auto *path = dynamic_cast<RDB_PATH_OBJECT *>(panel->get_child(i));
    ASSERT_TRUE(path);
    EXPECT_EQ(path->get_name(), "Path " + std::to_string(i));
    // Worst first, and the summary row agrees with the path object.
    EXPECT_GE(path->get_slack(), previous_slack);
    previous_slack = path->get_slack();
    EXPECT_NEAR(number(summary->get_data(i, 0)), path->get_slack(), 1e-3);
    // The datapath example fails setup on its multiplier paths.
    EXPECT_TRUE(path->path_is_violated());
    ASSERT_TRUE(summary->get_element(i, 0));
    EXPECT_EQ(summary->get_element(i, 0)->get_foreground_color(), 0xcc0000u);

    RDB_TABLE_OBJECT *arrival = path->get_data_arrival_table();
    RDB_TABLE_OBJECT *required = path->get_data_required_table();
    ASSERT_TRUE(arrival && required && path->get_summary_table() &&
                path->get_delay_summary_chart());
    EXPECT_EQ(arrival->get_column_names(),
              (std::vector<std::string>{"Total", "Incr", "RF", "Type", "Fanout", "Location",
                                        "Element"}));
    // Arrival minus required is the slack of a setup path.
    int last_arrival = arrival->get_number_of_rows() - 1;
    int last_required = required->get_number_of_rows() - 1;
    EXPECT_EQ(arrival->get_data(last_arrival, 6), "data arrival time");
    EXPECT_EQ(required->get_data(last_required, 6), "data required time");
    EXPECT_NEAR(number(required->get_data(last_required, 0)) -
                  number(arrival->get_data(last_arrival, 0)),
                path->get_slack(), 2e-3);
    // Increments add up to the totals down the arrival table.
    double sum = 0;
    for (int row = 1; row < last_arrival; row++)
      sum += number(arrival->get_data(row, 1));
    EXPECT_NEAR(sum, number(arrival->get_data(last_arrival, 0)), 2e-3 * last_arrival);
    // The path's own summary: property names in order, the slack flagged
    // and coloured, the times the same as the point tables' last rows. (It
    // has no title row: its rows count from 0.)
    RDB_TABLE_OBJECT *properties = path->get_summary_table();
    std::vector<std::string> names;
    for (int row = 0; row < properties->get_number_of_rows(); row++)
      names.push_back(properties->get_data(row, 0));
    EXPECT_EQ(names, (std::vector<std::string>{"Slack", "From Node", "To Node", "Launch Clock",
                                               "Latch Clock", "Check", "Data Arrival Time",
                                               "Data Required Time", "Relationship",
                                               "Clock Skew", "Data Delay"}));
    EXPECT_EQ(properties->get_data(0, 1), summary->get_data(i, 0) + " (VIOLATED)");
    ASSERT_TRUE(properties->get_element(0, 1));
    EXPECT_EQ(properties->get_element(0, 1)->get_foreground_color(), 0xcc0000u);
    EXPECT_EQ(properties->get_data(2, 1), summary->get_data(i, 2));  // To Node
    EXPECT_EQ(properties->get_data(5, 1), "setup");
    EXPECT_EQ(properties->get_data(6, 1), arrival->get_data(last_arrival, 0));
    EXPECT_EQ(properties->get_data(7, 1), required->get_data(last_required, 0));
    EXPECT_EQ(properties->get_data(10, 1), summary->get_data(i, 7));  // Data Delay
    // The delay chart splits the data path's delay into cell and interconnect.
    RDB_CHART_TABLE_OBJECT *chart = path->get_delay_summary_chart();
    EXPECT_EQ(chart->get_column_names()[1], "Delay (ps)");
    ASSERT_EQ(chart->get_number_of_rows(), 3);
    EXPECT_EQ(chart->get_label(1), "Cell Delay");
    EXPECT_GT(chart->get_count(1), 0);
  }
}

// Each analysis of a report of several gets a folder of the panel laid out
// as a one-analysis panel, with the same paths that analysis reports alone.
TEST(TimingPanel, SeveralAnalysesGetAFolderEachInOrder)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("report_timing -hold -setup -npaths 2 -panel_name Both");
  test.must("report_timing -hold -npaths 2 -panel_name HoldAlone");
  auto report = test.open_report();
  ASSERT_TRUE(report);
  RDB_OBJECT *panel = report->find_object("Both");
  ASSERT_TRUE(panel);
  ASSERT_EQ(panel->get_number_of_children(), 2);
  EXPECT_EQ(panel->get_child(0)->get_name(), "Setup");
  EXPECT_EQ(panel->get_child(1)->get_name(), "Hold");
  for (const char *analysis : {"Setup", "Hold"}) {
    SCOPED_TRACE(analysis);
    std::string folder = std::string("Both||") + analysis;
    RDB_TABLE_OBJECT *summary = table_at(report->find_object(folder + "||Summary of Paths"));
    ASSERT_TRUE(summary);
    EXPECT_EQ(summary->get_number_of_data_rows(), 2);
    auto *path = dynamic_cast<RDB_PATH_OBJECT *>(report->find_object(folder + "||Path 2"));
    ASSERT_TRUE(path);
    std::string check = analysis == std::string("Setup") ? "setup" : "hold";
    EXPECT_EQ(path->get_summary_table()->get_data(5, 1), check);
  }
  RDB_TABLE_OBJECT *alone = table_at(report->find_object("HoldAlone||Summary of Paths"));
  RDB_TABLE_OBJECT *folded = table_at(report->find_object("Both||Hold||Summary of Paths"));
  ASSERT_TRUE(alone && folded);
  for (int row = 1; row <= 2; row++)
    for (int column : {0, 2})
      EXPECT_EQ(folded->get_data(row, column), alone->get_data(row, column));

  // The text form heads each analysis with its name.
  std::string file = test.project_dir() + "/both.rpt";
  test.must("report_timing -removal -setup -npaths 1 -summary -file " + file);
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  size_t setup = text.str().find("Setup analysis");
  size_t removal = text.str().find("Removal analysis");
  ASSERT_NE(setup, std::string::npos) << text.str();
  ASSERT_NE(removal, std::string::npos) << text.str();
  EXPECT_LT(setup, removal);
  std::filesystem::remove(file);
}

TEST(TimingPanel, ShowRoutingAddsTheLoadPinsWithoutChangingTheTotals)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("report_timing -npaths 1 -panel_name Folded");
  test.must("report_timing -npaths 1 -show_routing -panel_name Routed");
  auto report = test.open_report();
  auto arrival = [&](const char *panel) {
    return dynamic_cast<RDB_PATH_OBJECT *>(report->find_object(panel)->get_child(1))
      ->get_data_arrival_table();
  };
  RDB_TABLE_OBJECT *folded = arrival("Folded");
  RDB_TABLE_OBJECT *routed = arrival("Routed");
  EXPECT_GT(routed->get_number_of_rows(), folded->get_number_of_rows());
  int routed_ic = 0, folded_ic = 0;
  for (int row = 1; row < routed->get_number_of_rows(); row++)
    routed_ic += routed->get_data(row, 3) == "IC";
  for (int row = 1; row < folded->get_number_of_rows(); row++)
    folded_ic += folded->get_data(row, 3) == "IC";
  EXPECT_EQ(folded_ic, 1);  // only the end point's pin
  EXPECT_EQ(routed->get_number_of_rows() - folded->get_number_of_rows(), routed_ic - folded_ic);
  EXPECT_EQ(routed->get_data(routed->get_number_of_rows() - 1, 0),
            folded->get_data(folded->get_number_of_rows() - 1, 0));
}

TEST(TimingPanel, FiltersByClocksNodesAndSlack)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  test.must("report_timing -from_clock io_clk -to_clock sys_clk -npaths 50 -summary "
            "-panel_name Crossing");
  test.must("report_timing -to [get_pins {sys_out_reg[7]/D}] -npaths 5 -summary -panel_name "
            "ToPin");
  test.must("report_timing -npaths 1000 -less_than_slack 0 -summary -panel_name Failing");
  test.must("report_timing -all_failing -summary -panel_name AllFailing");
  test.must("report_timing -thru _199_/Y -thru [get_pins _264_/Y] -npaths 3 -panel_name Thru");
  auto report = test.open_report();

  RDB_OBJECT *thru = report->find_object("Thru");
  ASSERT_GT(thru->get_number_of_children(), 1);
  for (int i = 1; i < thru->get_number_of_children(); i++) {
    auto *path = dynamic_cast<RDB_PATH_OBJECT *>(thru->get_child(i));
    std::vector<std::string> elements;
    RDB_TABLE_OBJECT *arrival = path->get_data_arrival_table();
    for (int row = 1; row < arrival->get_number_of_rows(); row++)
      elements.push_back(arrival->get_data(row, 6));
    auto first = std::find(elements.begin(), elements.end(), "_199_/Y");
    auto second = std::find(elements.begin(), elements.end(), "_264_/Y");
    EXPECT_TRUE(first != elements.end() && second != elements.end() && first < second)
      << path->get_name();
  }

  // -summary writes the summary table only.
  ASSERT_EQ(report->find_object("Crossing")->get_number_of_children(), 1);
  RDB_TABLE_OBJECT *crossing = table_at(report->find_object("Crossing")->get_child(0));
  ASSERT_GT(crossing->get_number_of_data_rows(), 0);
  for (int row = 1; row < crossing->get_number_of_rows(); row++) {
    EXPECT_EQ(crossing->get_data(row, 3), "io_clk");
    EXPECT_EQ(crossing->get_data(row, 4), "sys_clk");
  }
  RDB_TABLE_OBJECT *to_pin = table_at(report->find_object("ToPin")->get_child(0));
  ASSERT_EQ(to_pin->get_number_of_data_rows(), 1);
  EXPECT_EQ(to_pin->get_data(1, 2), "sys_out_reg[7]/D");

  RDB_TABLE_OBJECT *failing = table_at(report->find_object("Failing")->get_child(0));
  RDB_TABLE_OBJECT *all_failing = table_at(report->find_object("AllFailing")->get_child(0));
  // twoclocks fails setup on 7 sys_clk and 4 io_clk end points.
  EXPECT_EQ(failing->get_number_of_data_rows(), 11);
  EXPECT_EQ(all_failing->get_number_of_data_rows(), 11);
  for (int row = 1; row < failing->get_number_of_rows(); row++)
    EXPECT_LT(number(failing->get_data(row, 0)), 0);
}

// A launch clock given with start points or -thru points, and a capture
// clock given with end points, narrow the search to both at once.
TEST(TimingPanel, ClocksCombineWithPointsAsBothConditions)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  struct Case
  {
    const char *options;
    const char *launch, *capture, *from, *through;
    bool found;
  };
  const Case cases[] = {
    {"-from_clock sys_clk -from [get_ports {sys_in[0]}]", "sys_clk", "", "sys_in[0]", "", true},
    {"-from_clock io_clk -from [get_ports {sys_in[0]}]", "", "", "", "", false},
    {"-from_clock sys_clk -thru _199_/Y", "sys_clk", "", "", "_199_/Y", true},
    {"-from_clock {sys_clk io_clk} -thru _199_/Y -to_clock sys_clk", "", "sys_clk", "",
     "_199_/Y", true},
    {"-to_clock sys_clk -to [get_pins {sys_out_reg[7]/D}]", "", "sys_clk", "", "", true},
    {"-to_clock io_clk -to [get_pins {sys_out_reg[7]/D}]", "", "", "", "", false},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.options);
    test.must(std::string("report_timing -npaths 20 -panel_name Mixed ") + c.options);
    auto report = test.open_report();
    RDB_OBJECT *panel = report->find_object("Mixed");
    ASSERT_TRUE(panel);
    RDB_TABLE_OBJECT *summary = table_at(panel->get_child(0));
    ASSERT_EQ(summary->get_number_of_data_rows() > 0, c.found);
    for (int row = 1; row < summary->get_number_of_rows(); row++) {
      if (*c.launch) {
        EXPECT_EQ(summary->get_data(row, 3), c.launch);
      }
      if (*c.capture) {
        EXPECT_EQ(summary->get_data(row, 4), c.capture);
      }
      if (*c.from) {
        EXPECT_EQ(summary->get_data(row, 1), c.from);
      }
      if (*c.through) {
        auto *path = dynamic_cast<RDB_PATH_OBJECT *>(panel->get_child(row));
        RDB_TABLE_OBJECT *arrival = path->get_data_arrival_table();
        bool passes = false;
        for (int point = 1; point < arrival->get_number_of_rows(); point++)
          passes = passes || arrival->get_data(point, 6) == c.through;
        EXPECT_TRUE(passes) << "path " << row;
      }
    }
  }
  // The engine is still sound after the mixed searches.
  test.must("report_timing -npaths 3 -panel_name After");
}

TEST(TimingSummary, RowCommandsCarryClockNamesThatBreakQuotingAsOneWord)
{
  // A name that would close a brace and run exec, one that opens a brace and
  // would swallow every later line, and one with a blank (-to_clock takes a list).
  const std::string marker = "chronel_quoting_marker";
  for (const std::string &clock :
       {"a} [exec touch " + marker + "] {b", std::string("clk{"), std::string("fast clk")}) {
    SCOPED_TRACE(clock);
    std::string quoted;
    for (char c : clock) {
      if (std::strchr("{}[]$\\\"", c))
        quoted += '\\';
      quoted += c;
    }
    ReportTestEngine &test = ReportTestEngine::with_design(
      "datapath", "create_clock -name \"" + quoted + "\" -period 6.5 [get_ports clk]");
    test.must("create_timing_summary -setup -panel_name \"Summary (Setup)\"");
    auto report = test.open_report();
    auto *table = dynamic_cast<RDB_TCL_TABLE_OBJECT *>(report->find_object("Summary (Setup)"));
    ASSERT_TRUE(table);
    int row = 1;
    while (row < table->get_number_of_rows() && table->get_data(row, 0) != clock)
      row++;
    ASSERT_LT(row, table->get_number_of_rows());
    for (int command = 0; command < table->get_number_of_cmds(); command++) {
      std::string line = table->build_cmd(command, row);
      EXPECT_EQ(line.find('\n'), std::string::npos) << line;
      test.must(line);
    }
    report.reset();
    EXPECT_TRUE(test.open_report()->find_object("Worst Setup Paths (" + clock + ")"));
    EXPECT_FALSE(std::filesystem::exists(marker));
    EXPECT_FALSE(std::filesystem::exists(test.project_dir() + "/" + marker));
  }
}

TEST(TimingSummary, EveryAnalysisWritesATclTableWhoseRowsDrillDown)
{
  ReportTestEngine &test = ReportTestEngine::with_design("resets");
  for (const char *analysis : {"Setup", "Hold", "Recovery", "Removal"}) {
    SCOPED_TRACE(analysis);
    std::string flag = std::string(" -") + static_cast<char>(std::tolower(analysis[0])) +
                       (analysis + 1);
    std::string panel_name = std::string("Summary (") + analysis + ")";
    test.must("create_timing_summary" + flag + " -panel_name \"" + panel_name + "\"");
    auto report = test.open_report();
    auto *table = dynamic_cast<RDB_TCL_TABLE_OBJECT *>(report->find_object(panel_name));
    ASSERT_TRUE(table);
    EXPECT_EQ(table->get_type(), RDB_KIND_TCL_TABLE);
    ASSERT_EQ(table->get_number_of_data_rows(), 1);
    EXPECT_EQ(table->get_data(1, 0), "clk");
    ASSERT_GE(table->get_number_of_cmds(), 1);
    // The first row command reports the clock's worst paths into a panel.
    std::string drill = table->build_cmd(0, 1);
    report.reset();
    test.must(drill);
    std::string expected = std::string("Worst ") + analysis + " Paths (clk)";
    auto after = test.open_report();
    RDB_OBJECT *paths = after->find_object(expected);
    ASSERT_TRUE(paths) << drill;
    auto *first = dynamic_cast<RDB_PATH_OBJECT *>(paths->get_child(1));
    ASSERT_TRUE(first);
    // The summary's worst slack is the slack of the worst drilled path.
    auto *again = dynamic_cast<RDB_TABLE_OBJECT *>(after->find_object(panel_name));
    EXPECT_NEAR(number(again->get_data(1, 1)), first->get_slack(), 1e-3);
  }
}

TEST(TimingSummary, TotalNegativeSlackSumsFailingEndPointsPerClock)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  test.must("create_timing_summary -setup -panel_name S");
  test.must("report_timing -to_clock sys_clk -all_failing -summary -panel_name F");
  auto report = test.open_report();
  auto *summary = table_at(report->find_object("S"));
  auto *failing = table_at(report->find_object("F")->get_child(0));
  double tns = 0;
  for (int row = 1; row < failing->get_number_of_rows(); row++)
    tns += number(failing->get_data(row, 0));
  ASSERT_EQ(summary->get_data(1, 0), "sys_clk");
  EXPECT_NEAR(number(summary->get_data(1, 2)), tns, 5e-3);
  EXPECT_EQ(number(summary->get_data(1, 3)), failing->get_number_of_data_rows());
}

TEST(StaleReports, PanelsMadeBeforeAConstraintChangeAreMarkedOutOfDate)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("report_clocks -panel_name \"Before Change\"");
  test.must("set_clock_uncertainty 0.1 [get_clocks clk]");
  // Reports refuse an out-of-date netlist rather than show old numbers.
  CommandResult refused = test.run("report_clocks -panel_name \"After Change\"");
  EXPECT_FALSE(refused.ok());
  EXPECT_NE(refused.result.find("out of date"), std::string::npos) << refused.result;
  test.must("update_timing_netlist");
  // Bringing the timing up to date marks the old panels at once.
  for (const RDB_PANEL_INFO &info : test.open_report()->get_panels())
    EXPECT_FALSE(info.enabled) << info.name;
  test.must("report_clocks -panel_name \"After Change\"");
  auto report = test.open_report();
  std::map<std::string, RDB_PANEL_INFO> panels;
  for (const RDB_PANEL_INFO &info : report->get_panels())
    panels[info.name] = info;
  ASSERT_TRUE(panels.count("Before Change") && panels.count("After Change"));
  EXPECT_FALSE(panels["Before Change"].enabled);
  EXPECT_TRUE(panels["After Change"].enabled);
  // The out-of-date panel keeps the command that regenerates it.
  EXPECT_EQ(panels["Before Change"].command, "report_clocks -panel_name {Before Change}");
  EXPECT_FALSE(report->find_object("Before Change")->is_enable());
}

struct BadCommand
{
  const char *command;
  const char *message;  // a fragment of the error message
};

void PrintTo(const BadCommand &c, std::ostream *out)
{
  *out << c.command;
}

class BadInput : public testing::TestWithParam<BadCommand>
{};

TEST_P(BadInput, IsRefusedWithAClearMessageAndWritesNothing)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  test.must("report_clocks -panel_name Existing");
  std::vector<std::string> before = panel_names(test);
  CommandResult result = test.run(GetParam().command);
  EXPECT_FALSE(result.ok());
  EXPECT_NE(result.result.find(GetParam().message), std::string::npos) << result.result;
  EXPECT_EQ(panel_names(test), before);
}

INSTANTIATE_TEST_SUITE_P(
  Commands, BadInput,
  testing::Values(
    BadCommand{"report_timing -to_clock nosuch -panel_name P", "no clock matches \"nosuch\""},
    BadCommand{"report_timing -from nosuch_reg -panel_name P", "-from: no pin, port"},
    BadCommand{"report_timing -thru {a b} -panel_name P", "-thru"},
    BadCommand{"report_timing -npaths 0 -panel_name P", "-npaths needs a positive integer"},
    BadCommand{"report_timing -npaths {} -panel_name P", "-npaths needs a positive integer"},
    BadCommand{"report_timing -npaths", "-npaths needs a value"},
    BadCommand{"report_timing -npaths -panel_name P", "-npaths needs a value"},
    BadCommand{"report_min_pulse_width -nworst -panel_name P", "-nworst needs a value"},
    BadCommand{"create_timing_summary -setup -hold -panel_name P", "only one of"},
    BadCommand{"report_timing -bogus -panel_name P", "unknown option \"-bogus\""},
    BadCommand{"report_timing -file /nonexistent/dir/x.rpt -panel_name P", "cannot write"},
    BadCommand{"report_timing -panel_name {a \"quoted\" name}", "double quotes"},
    BadCommand{"report_timing -panel_name {a||b}", "\"||\""},
    BadCommand{"report_timing -panel_name {}", "may not be empty"},
    BadCommand{"report_timing -append -panel_name P", "-append needs -file"},
    BadCommand{"report_clocks -append -stdout", "-append needs -file"},
    BadCommand{"create_slack_histogram -clock_name nosuch", "no clock matches"},
    BadCommand{"create_slack_histogram -clock_name sys_clk -num_bins 0", "-num_bins"},
    BadCommand{"create_slack_histogram -clock_name sys_clk -min_slack 2 -max_slack 1",
               "greater than"},
    BadCommand{"report_min_pulse_width -nworst x -panel_name P", "-nworst"},
    BadCommand{"report_net_timing -nworst_delay 3 no_such_net", "matches \"no_such_net\""},
    BadCommand{"delete_timing_report_panel -name NoSuchPanel", "no report panel"}),
  [](const testing::TestParamInfo<BadCommand> &info) {
    // "report_timing -to_clock ..." becomes "report_timing_3" and so on.
    std::string command = info.param.command;
    return command.substr(0, command.find(' ')) + "_" + std::to_string(info.index);
  });

TEST(SlackHistogram, CountsEveryEndPointOfTheClockAndColoursNegativeBins)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("create_timing_summary -setup -panel_name Domains");
  test.must("create_slack_histogram -clock_name clk -num_bins 12");
  auto report = test.open_report();
  auto *histogram =
    dynamic_cast<RDB_HISTOGRAM_TABLE_OBJECT *>(report->find_object("Slack Histogram (clk)"));
  ASSERT_TRUE(histogram);
  EXPECT_EQ(histogram->get_x_unit(), "ns");
  ASSERT_EQ(histogram->get_number_of_rows(), 13);
  long total = 0;
  bool negative_coloured = false;
  for (int row = 1; row < histogram->get_number_of_rows(); row++) {
    total += histogram->get_value(row);
    double from = histogram->get_from(row) / histogram->get_x_scale();
    if (from < 0) {
      negative_coloured = histogram->get_color(row) != RDB_NO_COLOR;
    } else {
      EXPECT_EQ(histogram->get_color(row), RDB_NO_COLOR);
    }
    if (row > 1) {
      EXPECT_DOUBLE_EQ(histogram->get_from(row), histogram->get_to(row - 1));
    }
  }
  EXPECT_TRUE(negative_coloured);
  auto *domains = table_at(report->find_object("Domains"));
  EXPECT_EQ(total, std::atol(domains->get_data(1, 4).c_str()));
}

TEST(ClockPanels, DescribeBaseAndGeneratedClocksAndTheirTransfers)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  test.must("report_clocks -panel_name \"Clocks Summary\"");
  test.must("report_clock_transfers -panel_name \"Clock Transfers\"");
  auto report = test.open_report();
  auto *clocks = table_at(report->find_object("Clocks Summary"));
  ASSERT_EQ(clocks->get_number_of_data_rows(), 3);
  std::map<std::string, std::vector<std::string>> rows;
  for (int row = 1; row < clocks->get_number_of_rows(); row++)
    for (int column = 0; column < clocks->get_number_of_columns(); column++)
      rows[clocks->get_data(row, 0)].push_back(clocks->get_data(row, column));
  // Name, Type, Period, Frequency, Rise, Fall, Duty, Master, Sources.
  EXPECT_EQ(rows["sys_clk"][1], "base");
  EXPECT_EQ(rows["io_clk"][3], "125.00");
  EXPECT_EQ(rows["half_clk"][1], "generated");
  EXPECT_EQ(rows["half_clk"][2], "20.000");
  EXPECT_EQ(rows["half_clk"][7], "sys_clk");
  EXPECT_EQ(rows["half_clk"][8], "half_clk_reg/Q");

  auto *transfers = dynamic_cast<RDB_TCL_TABLE_OBJECT *>(report->find_object("Clock Transfers"));
  ASSERT_TRUE(transfers);
  bool crossing = false;
  for (int row = 1; row < transfers->get_number_of_rows(); row++)
    if (transfers->get_data(row, 0) == "io_clk" && transfers->get_data(row, 1) == "sys_clk") {
      crossing = true;
      EXPECT_GT(number(transfers->get_data(row, 2)), 0);
      std::string drill = transfers->build_cmd(0, row);
      EXPECT_NE(drill.find("-from_clock io_clk -to_clock sys_clk"), std::string::npos);
      report.reset();
      test.must(drill);
      break;
    }
  EXPECT_TRUE(crossing);
}

TEST(OtherPanels, ListConstraintsPulseWidthsAndNets)
{
  ReportTestEngine &test = ReportTestEngine::with_design("twoclocks");
  test.must("report_sdc");
  test.must("report_min_pulse_width -nworst 4 -panel_name \"Minimum Pulse Width\"");
  test.must("report_net_timing -nworst_fanout 2");
  test.must("report_ucp -panel_name \"Unconstrained Paths\"");
  auto report = test.open_report();

  RDB_OBJECT *sdc = report->find_object("SDC Assignments");
  ASSERT_TRUE(sdc);
  std::set<std::string> kinds;
  for (RDB_OBJECT *child : sdc->get_children())
    kinds.insert(child->get_name());
  EXPECT_EQ(kinds, (std::set<std::string>{"Clocks", "Generated Clocks", "Input Delays",
                                          "Output Delays", "False Paths"}));
  auto *clocks = table_at(sdc->find_child("Clocks"));
  EXPECT_EQ(clocks->get_data(1, clocks->get_number_of_columns() - 1), "[get_ports sys_clk]");

  auto *pulses = table_at(report->find_object("Minimum Pulse Width"));
  ASSERT_EQ(pulses->get_number_of_data_rows(), 4);
  for (int row = 2; row < pulses->get_number_of_rows(); row++)
    EXPECT_LE(number(pulses->get_data(row - 1, 5)), number(pulses->get_data(row, 5)));

  auto *nets = table_at(report->find_object("Net Timing"));
  ASSERT_EQ(nets->get_number_of_data_rows(), 2);
  EXPECT_EQ(nets->get_data(1, 0), "sys_clk");  // the clock net has the largest fanout
  EXPECT_GE(number(nets->get_data(1, 2)), number(nets->get_data(2, 2)));

  auto *ucp = table_at(report->find_object("Unconstrained Paths"));
  ASSERT_TRUE(ucp);
  EXPECT_EQ(ucp->get_column_names(), (std::vector<std::string>{"Kind", "Node"}));
}

TEST(TextOutput, GoesToTheFileAndAppendsOnRequest)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  std::string file = test.project_dir() + "/timing.rpt";
  test.must("report_timing -npaths 2 -file " + file);
  test.must("report_timing -npaths 1 -hold -file " + file + " -append");
  std::ifstream in(file);
  std::stringstream text;
  text << in.rdbuf();
  std::string content = text.str();
  size_t first = content.find("Summary of Paths");
  ASSERT_NE(first, std::string::npos);
  EXPECT_NE(content.find("Summary of Paths", first + 1), std::string::npos);
  EXPECT_NE(content.find("Path 2: slack"), std::string::npos);
  EXPECT_NE(content.find("data required time"), std::string::npos);
  // Without -panel_name nothing is written to the database.
  for (const std::string &name : panel_names(test))
    EXPECT_EQ(name.find("timing.rpt"), std::string::npos);

  test.must("report_timing -npaths 1 -file " + file);
  std::ifstream again(file);
  std::stringstream replaced;
  replaced << again.rdbuf();
  EXPECT_EQ(replaced.str().find("Path 2: slack"), std::string::npos);
}

TEST(DeletePanel, RemovesThePanel)
{
  ReportTestEngine &test = ReportTestEngine::with_design("datapath");
  test.must("report_clocks -panel_name Doomed");
  test.must("delete_timing_report_panel -name Doomed");
  for (const std::string &name : panel_names(test))
    EXPECT_NE(name, "Doomed");
}

} // namespace
} // namespace vexa::test
