// The report commands over --ipc_sh: each panel is followed by the call-back
// that opens it, under the panel names the frame's menu commands select.
#include "EngineDriver.hh"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace vexa::test {
namespace {

TEST(ReportProtocol, MenuReportsWriteTheirPanelsAndCallBackWithTheirNames)
{
  fs::path dir = fs::temp_directory_path() / ("chronel_report_protocol_" + std::to_string(getpid()));
  fs::remove_all(dir);
  fs::copy(fs::path(CHRONEL_EXAMPLES_DIR) / "resets", dir, fs::copy_options::recursive);
  fs::remove_all(dir / "vexa_db");

  EngineDriver engine;
  engine.read_to_prompt();
  for (const std::string &setup : {"project_open " + (dir / "resets.vpf").string(),
                                   std::string("create_timing_netlist"), std::string("read_sdc"),
                                   std::string("update_timing_netlist")})
    ASSERT_TRUE(lines_starting(engine.command(setup), "msg_post 0 error").empty()) << setup;

  struct MenuReport
  {
    std::string command, panel;
  };
  const std::vector<MenuReport> reports = {
    {"create_timing_summary -setup -panel_name \"Summary (Setup)\"", "Summary (Setup)"},
    {"create_timing_summary -hold -panel_name \"Summary (Hold)\"", "Summary (Hold)"},
    {"create_timing_summary -recovery -panel_name \"Summary (Recovery)\"", "Summary (Recovery)"},
    {"create_timing_summary -removal -panel_name \"Summary (Removal)\"", "Summary (Removal)"},
    {"report_clocks -panel_name \"Clocks Summary\"", "Clocks Summary"},
    {"report_clock_transfers -panel_name \"Clock Transfers\"", "Clock Transfers"},
    {"report_sdc", "SDC Assignments"},
    {"report_ucp -panel_name \"Unconstrained Paths\"", "Unconstrained Paths"},
    {"report_timing -setup -npaths 1 -panel_name \"Report Timing\"", "Report Timing"},
    {"report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\"",
     "Minimum Pulse Width"},
    {"create_slack_histogram -clock_name clk -panel_name \"Slack Histogram (clk)\"",
     "Slack Histogram (clk)"},
  };
  for (const MenuReport &report : reports) {
    std::vector<std::string> lines = engine.command(report.command);
    EXPECT_TRUE(lines_starting(lines, "msg_post 0 error").empty()) << report.command;
    EXPECT_EQ(lines_starting(lines, "lum_reload_sta_report"),
              std::vector<std::string>{"lum_reload_sta_report -open_panel \"" + report.panel +
                                       "\""})
      << report.command;
    for (const std::string &line : lines)
      EXPECT_TRUE(is_protocol_line(line)) << line;
  }

  // Without a panel the report is console text, and nothing is reloaded.
  std::vector<std::string> text = engine.command("report_timing -hold -npaths 1");
  EXPECT_TRUE(lines_starting(text, "lum_reload_sta_report").empty());
  bool has_summary = false;
  for (const std::string &line : hidden_texts(text))
    has_summary = has_summary || line == "Summary of Paths";
  EXPECT_TRUE(has_summary);

  // A refused report is one error post and no call-back.
  std::vector<std::string> refused = engine.command("report_timing -to_clock nosuch -panel_name X");
  EXPECT_EQ(lines_starting(refused, "msg_post 0 error").size(), 1u);
  EXPECT_TRUE(lines_starting(refused, "lum_reload_sta_report").empty());

  std::vector<std::string> deleted =
    engine.command("delete_timing_report_panel -name \"Report Timing\"");
  EXPECT_EQ(lines_starting(deleted, "lum_reload_sta_report"),
            std::vector<std::string>{"lum_reload_sta_report"});
  engine.send("exit");
  EXPECT_EQ(engine.finish(), 0);
  fs::remove_all(dir);
}

} // namespace
} // namespace vexa::test
