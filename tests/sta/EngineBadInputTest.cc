// Bad input to vexa_sta: every case is answered with an error naming the
// fault, and the engine keeps its prompt and its design.
#include "EngineDriver.hh"
#include "TestProject.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <chrono>
#include <cstdio>
#include <filesystem>

using namespace vexa::test;
using Lines = std::vector<std::string>;

namespace {

std::string joined(const Lines &lines)
{
  std::string out;
  for (const std::string &l : lines)
    out += l + "\n";
  return out;
}

// The texts of the error posts among lines ("msg_post 0 error ID TEXT SUBS").
Lines errors_in(const Lines &lines, const std::string &id = std::string())
{
  Lines texts;
  for (const std::string &line : lines_starting(lines, "msg_post 0 error " + id)) {
    int n = 0;
    const char **words = nullptr;
    if (Tcl_SplitList(nullptr, line.c_str(), &n, &words) != TCL_OK)
      continue;
    if (n >= 5)
      texts.emplace_back(words[4]);
    Tcl_Free(reinterpret_cast<char *>(words));
  }
  return texts;
}

struct BadCommand
{
  const char *command;
  const char *named;   // a piece of the error's text
};

class BadInput : public ::testing::Test
{
protected:
  void SetUp() override { ASSERT_TRUE(engine.read_to_prompt().empty()); }
  void TearDown() override
  {
    engine.send("exit");
    EXPECT_EQ(engine.finish(), 0);
  }
  void open_with_netlist()
  {
    engine.command("project_open {" + project.vpf() + "}");
    engine.command("create_timing_netlist");
    engine.command("read_sdc");
  }
  // Each command fails with one error naming its fault; no crash is
  // caught, and the engine answers the next command.
  void expect_refused(const BadCommand &c, double timeout = 20)
  {
    Lines out = engine.command(c.command, timeout);
    ASSERT_FALSE(engine.timed_out()) << c.command;
    Lines errors = errors_in(out);
    ASSERT_EQ(errors.size(), 1u) << c.command << "\n" << joined(out);
    EXPECT_NE(errors[0].find(c.named), std::string::npos) << c.command << "\n" << errors[0];
    EXPECT_TRUE(lines_starting(out, "msg_internal_error").empty()) << joined(out);
    EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"}) << c.command;
  }

  TestProject project;
  EngineDriver engine;
};

} // namespace

TEST_F(BadInput, CommandsThatUsedToHangCrashOrExhaustMemoryAreRefused)
{
  open_with_netlist();
  const BadCommand cases[] = {
    // Non-finite or non-positive periods and times.
    {"create_clock -name c -period inf {clk}", "-period must be a finite positive number"},
    {"create_clock -name c -period 1e999 {clk}", "-period must be a finite positive number"},
    {"create_clock -name c -period 0 {clk}", "-period must be a finite positive number"},
    {"create_clock -name c -period 10 -waveform {0 inf} {clk}", "\"inf\" is not a finite"},
    {"set_input_delay inf -clock clk [get_ports a]", "\"inf\" is not a finite number"},
    {"set_output_delay -Inf -clock clk [get_ports {q[0]}]", "is not a finite number"},
    {"set_max_delay 1e400 -from [get_ports a]", "\"1e400\" is not a finite number"},
    {"create_generated_clock -name g -source [get_ports clk] -divide_by 2 -phase inf "
     "[get_pins r1/Q]", "is not a finite number"},
    // Forged object handles that OpenSTA would dereference.
    {"get_full_name _0000000000000010_p_Pin", "is not an object of the current design"},
    {"get_name _0000000000000010_p_Clock", "is not an object of the current design"},
    {"get_full_name {_efbeadde00000000_p_Instance}", "is not an object of the current design"},
    {"report_checks -through [list _0000000000000010_p_Pin]", "not an object of the current"},
    {"get_full_name _0000000000000010_p_PathEnd", "is not an object of the current design"},
    // No clock for the skew report.
    {"report_clock_skew -clock {}", "no clock to report"},
    {"report_clock_skew -clock nosuch", "no clock to report"},
    // Sizes that would take all memory.
    {"format %999999999d 1", "above the limit"},
    {"format %.*f 999999999 1.5", "above the limit"},
    {"create_slack_histogram -clock_name clk -num_bins 100000000", "-num_bins may be at most"},
    // Folders where files belong.
    {"read_liberty /tmp", "\"/tmp\" is a folder"},
    {"read_verilog /tmp", "\"/tmp\" is a folder"},
    {"read_sdc /tmp", "is a folder, not an SDC file"},
  };
  for (const BadCommand &c : cases)
    expect_refused(c);

  // What the refusals must leave alone: real handles, names that read as
  // numbers, ordinary widths.
  EXPECT_EQ(hidden_texts(engine.command("get_full_name [get_pins u1/A]")), Lines{"u1/A"});
  Lines named_inf = engine.command("create_clock -name inf -period 10 {clk}");
  EXPECT_TRUE(errors_in(named_inf).empty()) << joined(named_inf);
  EXPECT_EQ(hidden_texts(engine.command("format {%5d|%.2f} 7 1.234")), Lines{"    7|1.23"});
  Lines skew = engine.command("report_clock_skew -clock inf");
  EXPECT_TRUE(errors_in(skew).empty()) << joined(skew);
  // The design is still whole.
  EXPECT_EQ(hidden_texts(engine.command("llength [get_cells *]")), Lines{"5"});
}

TEST_F(BadInput, ANulByteEndsTheCommandItIsInWithoutSwallowingLaterLines)
{
  for (std::string command : {std::string("puts \"a\0b\"", 10), std::string("puts {a\0b", 9),
                              std::string("set x [list a\0", 14)}) {
    Lines out = engine.command(command, 10);
    ASSERT_FALSE(engine.timed_out()) << "the engine waits for the end of a NUL command";
    Lines errors = errors_in(out);
    ASSERT_EQ(errors.size(), 1u) << joined(out);
    EXPECT_NE(errors[0].find("NUL byte"), std::string::npos) << errors[0];
    EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"});
  }
}

TEST_F(BadInput, DamagedDesignFilesStopTheNetlistWithTheFileAndLine)
{
  const std::string spef_head =
    "*SPEF \"IEEE 1481-1998\"\n*DESIGN \"chip\"\n*DATE \"x\"\n*VENDOR \"x\"\n*PROGRAM \"x\"\n"
    "*VERSION \"1\"\n*DESIGN_FLOW \"MISSING_NETS\"\n*DIVIDER /\n*DELIMITER :\n"
    "*BUS_DELIMITER [ ]\n*T_UNIT 1.0 NS\n*C_UNIT 1.0 PF\n*R_UNIT 1.0 OHM\n*L_UNIT 1.0 HENRY\n\n"
    "*D_NET n1 0.3\n*CONN\n*I u1:Y O\n*I r1:D I\n*CAP\n1 u1:Y 0.1\n2 r1:D 0.2\n*RES\n";
  const std::string good_netlist = "module chip (clk, a, b, q);\n  input clk, a, b;\n"
                                   "  output [1:0] q;\n  wire n1;\n"
                                   "  NAND2X1 u1 (.A(a), .B(b), .Y(n1));\n"
                                   "  DFFPOSX1 r1 (.CLK(clk), .D(n1), .Q(q[0]));\nendmodule\n";
  struct BadFile
  {
    const char *what;
    std::string netlist;   // "" keeps the project's own
    std::string spef;      // "" for none
    const char *named;
  };
  const BadFile cases[] = {
    {"a bus of a hundred million bits",
     "module chip (clk, a, b, q, p);\n  input clk, a, b;\n  output [1:0] q;\n"
     "  input [100000000:0] p;\nendmodule\n", "",
     "chip.v:4: the range [100000000:0] is wider than 1048576 bits"},
    {"a module that instantiates itself",
     "module chip (clk, a, b, q);\n  input clk, a, b;\n  output [1:0] q;\n"
     "  chip u1 (.clk(clk), .a(a), .b(b), .q(q));\nendmodule\n", "",
     "module instances recurse (chip -> chip)"},
    {"a cycle through two modules",
     "module inner (x);\n  input x;\n  chip c (.clk(x));\nendmodule\n"
     "module chip (clk, a, b, q);\n  input clk, a, b;\n  output [1:0] q;\n"
     "  inner i (.x(clk));\nendmodule\n", "",
     "recurse (chip -> inner -> chip)"},
    {"a SPEF resistance of 1e20", good_netlist, spef_head + "3 u1:Y r1:D 1e20\n*END\n",
     "chip.spef:24: resistance 1e20 is out of range"},
    {"a negative SPEF capacitance", good_netlist,
     spef_head + "3 u1:Y r1:D 40\n*END\n*D_NET n2 1\n*CAP\n1 u2:A -0.5\n*END\n",
     "chip.spef:28: capacitance -0.5 is out of range"},
    {"a garbage SPEF", good_netlist, "garbage here\n*D_NET\n",
     "chip.spef:1: not a SPEF file"},
    {"a truncated SPEF", good_netlist, spef_head + "3 u1:Y r1:D 40\n",
     "chip.spef:24: the file ends inside the net begun on line 16"},
    {"a SPEF syntax error", good_netlist, spef_head + "3 u1:Y r1:D 40 ohms and more\n*END\n",
     "chip.spef was not read (" },
  };
  for (const BadFile &c : cases) {
    TestProject project;
    project.write("netlist/chip.v", c.netlist);
    std::string settings = "top_module = chip\nfamily = OSU\nspeed_grade = 035\n"
                           "verilog_file = netlist/chip.v\n";
    if (!c.spef.empty()) {
      project.write("chip.spef", c.spef);
      settings += "spef_file = chip.spef\n";
    }
    project.write("chip.vsf", settings);
    engine.command("project_open {" + project.vpf() + "}");
    Lines out = engine.command("create_timing_netlist", 30);
    ASSERT_FALSE(engine.timed_out()) << c.what;
    EXPECT_TRUE(lines_starting(out, "lum_set_state -netlist_is_created 1").empty())
      << c.what << "\n" << joined(out);
    Lines failed = errors_in(out, "VSTA-1100 ");
    ASSERT_EQ(failed.size(), 1u) << c.what << "\n" << joined(out);
    EXPECT_NE(failed[0].find(c.named), std::string::npos) << c.what << "\n" << failed[0];
    EXPECT_TRUE(lines_starting(out, "msg_internal_error").empty()) << joined(out);
    engine.command("project_close");
  }
  EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"});
}

TEST_F(BadInput, SettingsThatNameAFolderOrAnUnsafeRevisionAreRefusedAtOpening)
{
  std::filesystem::create_directory(project.path("constraints"));
  project.write("chip.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 035\n"
                            "verilog_file = netlist/chip.v\nsdc_file = constraints\n");
  Lines out = engine.command("project_open {" + project.vpf() + "}");
  Lines errors = errors_in(out);
  ASSERT_EQ(errors.size(), 1u) << joined(out);
  EXPECT_NE(errors[0].find("SDC file \"" + project.path("constraints") + "\" is a folder"),
            std::string::npos) << errors[0];
  EXPECT_TRUE(lines_starting(out, "lum_open_project").empty());

  // A revision named as a path would have the engine write outside the
  // project folder.
  project.write("chip.vpf", "revision = ../outside/rev\n");
  errors = errors_in(engine.command("project_open {" + project.vpf() + "}"));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_NE(errors[0].find("revisions are names, not paths"), std::string::npos) << errors[0];
}

TEST_F(BadInput, StandardInputBelongsToTheProtocol)
{
  open_with_netlist();
  for (const BadCommand &c : {BadCommand{"gets stdin", "gets: standard input carries"},
                              BadCommand{"read stdin", "read: standard input carries"},
                              BadCommand{"read_sdc /dev/stdin", "read_sdc: standard input carries"}})
    expect_refused(c);
  // Other ways to stdin read nothing: the next line is still a command.
  for (const char *reader : {"chan gets stdin", "exec cat", "source /dev/stdin"}) {
    engine.command(reader, 10);
    ASSERT_FALSE(engine.timed_out()) << reader;
    EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"}) << reader;
  }
}

TEST_F(BadInput, AnInterruptStopsALongReportBetweenTwoPaths)
{
  // Four stages of thirty inverters in each of three hundred lanes: 1200
  // end points, each with a path of thirty-odd points.
  std::string netlist = "module chip (clk, a, b, q);\n  input clk, a, b;\n  output [1:0] q;\n";
  std::string cells;
  int n = 0;
  for (int lane = 0; lane < 300; ++lane) {
    std::string previous = "a";
    for (int stage = 0; stage < 4; ++stage) {
      for (int depth = 0; depth <= 30; ++depth) {
        std::string wire = "w" + std::to_string(++n);
        netlist += "  wire " + wire + ";\n";
        cells += depth < 30 ? "  INVX1 i" + std::to_string(n) + " (.A(" + previous + "), .Y("
                                + wire + "));\n"
                            : "  DFFPOSX1 r" + std::to_string(n) + " (.CLK(clk), .D(" + previous
                                + "), .Q(" + wire + "));\n";
        previous = wire;
      }
    }
  }
  project.write("netlist/chip.v", netlist + cells + "endmodule\n");
  open_with_netlist();
  engine.command("update_timing_netlist", 120);
  engine.send("report_timing -npaths 10000 -panel_name {All paths}");
  // The first progress line comes after a tenth of the paths.
  std::string line;
  while (engine.read_line(line, 60) && line.rfind("report_status ", 0) != 0) {
  }
  ASSERT_EQ(line.rfind("report_status ", 0), 0u) << "no progress from the report";
  auto sent = std::chrono::steady_clock::now();
  engine.interrupt();
  Lines out = engine.read_to_prompt(60);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - sent).count();
  ASSERT_FALSE(engine.timed_out());
  EXPECT_EQ(errors_in(out, "VSTA-1102 ").size(), 1u) << joined(out);
  EXPECT_TRUE(lines_starting(out, "lum_reload_sta_report").empty()) << "a panel was written";
  RecordProperty("answer_ms", static_cast<int>(seconds * 1000));
  std::printf("interrupt answered after %.0f ms\n", seconds * 1000);
  // The engine goes on: the report runs whole when left alone.
  Lines again = engine.command("report_timing -npaths 5 -panel_name {Five paths}", 120);
  EXPECT_EQ(lines_starting(again, "lum_reload_sta_report").size(), 1u) << joined(again);
}
