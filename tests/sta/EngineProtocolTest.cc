// vexa_sta --ipc_sh driven over pipes: prompts, call-backs, posts, encoding.
#include "EngineDriver.hh"
#include "TestProject.hh"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <thread>
#include <filesystem>
#include <fstream>
#include <unistd.h>
#include <sstream>

using namespace vexa::test;
using Lines = std::vector<std::string>;

namespace {

Lines callbacks(const Lines &lines)
{
  return lines_starting(lines, "lum_");
}

bool contains(const Lines &lines, const std::string &text)
{
  return std::find(lines.begin(), lines.end(), text) != lines.end();
}

std::string file_text(const std::string &path)
{
  std::ifstream in(path);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

std::string joined(const Lines &lines)
{
  std::string out;
  for (const std::string &l : lines)
    out += l + "\n";
  return out;
}

// Interrupts the command just sent and reads its output. A signal that
// arrives before the command runs is ignored, so it is repeated each second
// until the prompt comes (or twenty tries time out).
Lines interrupt_until_prompt(EngineDriver &engine)
{
  Lines out;
  for (int attempt = 0; attempt < 20; ++attempt) {
    engine.interrupt();
    out = engine.read_to_prompt(1.0);
    if (!engine.timed_out())
      break;
  }
  return out;
}

// Every line the engine wrote must be a protocol line.
void expect_only_protocol(const EngineDriver &engine)
{
  for (const std::string &line : engine.transcript())
    EXPECT_TRUE(is_protocol_line(line)) << "not a protocol line: [" << line << "]";
}

class EngineSession : public ::testing::Test
{
protected:
  void SetUp() override
  {
    ASSERT_TRUE(engine.read_to_prompt().empty()) << "output before the first prompt";
    ASSERT_FALSE(engine.timed_out());
  }
  void TearDown() override
  {
    engine.send("exit");
    EXPECT_EQ(engine.finish(), 0);
    expect_only_protocol(engine);
  }
  void open_with_netlist()
  {
    engine.command("project_open \"" + project.vpf() + "\"");
    engine.command("create_timing_netlist");
  }

  TestProject project;
  EngineDriver engine;
};

} // namespace

TEST_F(EngineSession, OpenCreateReadUpdateCallBackInDocumentedOrder)
{
  std::string vpf = std::filesystem::canonical(project.vpf()).string();
  Lines open = engine.command("project_open \"" + project.vpf() + "\"");
  EXPECT_EQ(callbacks(open), (Lines{"lum_open_project -vpf \"" + vpf + "\" -revision \"chip\"",
                                    "lum_set_state -project_is_open 1"}));

  Lines create = engine.command("create_timing_netlist");
  EXPECT_EQ(callbacks(create), (Lines{"lum_set_state -netlist_is_created 1",
                                      "lum_set_time_unit ns",
                                      "lum_set_state -netlist_is_up_to_date 0"}));
  EXPECT_FALSE(lines_starting(create, "report_status ").empty());

  Lines sdc = engine.command("read_sdc");
  // One state change and one registration for the whole file.
  EXPECT_EQ(callbacks(sdc), (Lines{"lum_set_state -sdc_file_is_loaded 1",
                                   "lum_set_state -netlist_is_up_to_date 0",
                                   "lum_register_clock -name \"clk\""}));
  EXPECT_TRUE(lines_starting(sdc, "msg_post 0 error").empty()) << joined(sdc);

  Lines update = engine.command("update_timing_netlist");
  EXPECT_EQ(callbacks(update), Lines{"lum_set_state -netlist_is_up_to_date 1"});

  // Any constraint change makes the netlist stale again.
  Lines constraint = engine.command("set_clock_uncertainty -setup 0.1 [get_clocks clk]");
  EXPECT_EQ(callbacks(constraint), Lines{"lum_set_state -netlist_is_up_to_date 0"});

  // Opening another revision (here through its settings file) closes the
  // open project first.
  Lines by_settings = callbacks(
    engine.command("project_open \"" + project.path("chip_fast.vsf") + "\""));
  auto closed = std::find(by_settings.begin(), by_settings.end(),
                          "lum_set_state -project_is_open 0");
  auto opened = std::find(by_settings.begin(), by_settings.end(),
                          "lum_open_project -vpf \"" + vpf + "\" -revision \"chip_fast\"");
  EXPECT_TRUE(contains(by_settings, "lum_register_clock -name \"clk\" -remove"));
  EXPECT_TRUE(closed < opened && opened != by_settings.end()) << joined(by_settings);

  Lines close = engine.command("project_close");
  EXPECT_EQ(callbacks(close).back(), "lum_set_state -project_is_open 0");
}

TEST_F(EngineSession, ConstraintsInEveryFormAreAcceptedMarkTheNetlistStaleAndAreWritten)
{
  open_with_netlist();
  // Each command's call-backs are the stale state, then the registration
  // (if any) of the clock it makes or removes. The commands marked written
  // must reappear by name in write_sdc's output.
  struct Case { const char *command; const char *clock; bool written; };
  const Case cases[] = {
    // The forms the constraint dialogs compose.
    {"create_clock -period 10.000 -name clk -waveform {0 5} {clk}", "\"clk\"", false},
    {"create_clock -period 20.000 -name virt -add", "\"virt\"", false},
    {"create_generated_clock -name g1 -master_clock clk -source clk -divide_by 2 -duty_cycle 25 r1/Q",
     "\"g1\"", false},
    {"create_generated_clock -name g2 -source clk -multiply_by 2 -duty_cycle 25 -invert u2/Y",
     "\"g2\"", false},
    {"create_generated_clock -name g3 -master_clock clk -source clk -edges {1 3 5} "
     "-edge_shift {0.5 0.5 0.5} u1/Y", "\"g3\"", false},
    {"create_generated_clock -name g4 -master_clock clk -source clk -divide_by 4 -phase 90 -add u3/Y",
     "\"g4\"", false},
    {"remove_clock -name g4", "\"g4\" -remove", false},
    {"create_generated_clock -name half -master_clock clk -source clk -divide_by 2 -offset 1 u3/Y",
     "\"half\"", false},
    // With several clocks about, the master is the one on the -source pin,
    // and -master_clock may be given as a clock object.
    {"create_generated_clock -name g5 -source clk -divide_by 2 -phase 45 r2/Q", "\"g5\"",
     false},
    {"create_generated_clock -name g6 -master_clock [get_clocks clk] -source [get_ports clk] "
     "-divide_by 2 -duty_cycle 40 -add u3/Y", "\"g6\"", false},
    {"set_clock_latency -source 1 clk", nullptr, false},
    {"set_clock_latency -clock clk -source -late -fall 0.5 [get_ports clk]", nullptr, false},
    {"set_clock_uncertainty -setup 0.1", nullptr, false},
    {"set_clock_uncertainty -from clk -to clk -setup -hold 0.2", nullptr, false},
    {"set_input_delay  2 a", nullptr, false},
    {"set_input_delay -clock clk -clock_fall -rise -max -add_delay 2 [get_ports b]", nullptr, false},
    {"set_output_delay -clock clk -fall -min 1 q*", nullptr, false},
    {"set_output_delay -clock clk -reference_pin [get_pins r1/CLK] 1 {q[0]}", nullptr, false},
    {"set_false_path -from a -thru u1/Y -to r1/D", nullptr, false},
    {"set_multicycle_path -setup -end 2", nullptr, false},
    {"set_multicycle_path -from [get_keepers r1/CLK] -to [get_registers r2] -hold -start 1", nullptr,
     false},
    {"set_max_delay -from a 5", nullptr, false},
    {"set_min_delay -to [get_ports q*] 1", nullptr, false},
    // Other commands that change the constraints.
    {"set_timing_derate -late 1.05", nullptr, true},
    {"set_drive 0.1 [get_ports a]", nullptr, true},
    {"set_max_transition 0.5 [get_ports {q[0]}]", nullptr, true},
    {"set_max_fanout 4 [get_ports a]", nullptr, true},
    {"group_path -name from_a -from [get_ports a]", nullptr, true},
    {"set_logic_zero [get_ports b]", nullptr, true},
    {"unset_case_analysis [get_ports b]", nullptr, true},
    {"set_min_pulse_width 1 [get_clocks clk]", nullptr, true},
    {"unset_path_exceptions -from [get_ports a]", nullptr, true},
  };
  for (const Case &c : cases) {
    Lines out = engine.command(c.command);
    EXPECT_TRUE(lines_starting(out, "msg_post 0 error").empty()) << c.command << "\n" << joined(out);
    EXPECT_TRUE(lines_starting(out, "msg_post 0 warning").empty()) << c.command << "\n" << joined(out);
    Lines expected{"lum_set_state -netlist_is_up_to_date 0"};
    if (c.clock)
      expected.push_back(std::string("lum_register_clock -name ") + c.clock);
    EXPECT_EQ(callbacks(out), expected) << c.command;
  }
  Lines unknown = engine.command("remove_clock -name nosuch");
  ASSERT_EQ(lines_starting(unknown, "msg_post 0 error").size(), 1u) << joined(unknown);
  EXPECT_NE(unknown[0].find("nosuch"), std::string::npos);
  // A delay relative to a clock that does not exist is refused, not taken
  // as an unclocked delay.
  for (const char *command : {"set_input_delay 1 -clock nosuch [get_ports a]",
                              "set_output_delay -clock nosuch 1 {q[1]}"}) {
    Lines refused = engine.command(command);
    ASSERT_EQ(lines_starting(refused, "msg_post 0 error").size(), 1u) << joined(refused);
    EXPECT_NE(refused[0].find("no clock named \\\"nosuch\\\""), std::string::npos) << refused[0];
    EXPECT_TRUE(callbacks(refused).empty()) << command;
  }
  std::string sdc = project.path("all.sdc");
  engine.command("write_sdc \"" + sdc + "\"");
  std::string text = file_text(sdc);
  for (const Case &c : cases) {
    if (!c.written)
      continue;
    std::string name(c.command, std::string_view(c.command).find(' '));
    EXPECT_NE(text.find("\n" + name + " "), std::string::npos) << name << "\n" << text;
  }
  // A report typed while the netlist is stale brings the timing up to date first.
  Lines report = engine.command("report_checks");
  EXPECT_TRUE(lines_starting(report, "msg_post 0 error").empty()) << joined(report);
  EXPECT_TRUE(contains(report, "lum_set_state -netlist_is_up_to_date 1")) << joined(report);
  EXPECT_FALSE(hidden_texts(report).empty());
}

TEST_F(EngineSession, SdcErrorNamesFileAndLineAndKeepsTheRest)
{
  open_with_netlist();
  project.write("bad.sdc", "create_clock -name clk -period 10 [get_ports clk]\n"
                           "\n"
                           "create_clock -name broken -period abc {b}\n"
                           "create_clock -name other -period 20 {a}\n");
  Lines read = engine.command("read_sdc \"" + project.path("bad.sdc") + "\"");
  Lines errors = lines_starting(read, "msg_post 0 error VSTA-1301 ");
  ASSERT_EQ(errors.size(), 1u) << joined(read);
  EXPECT_NE(errors[0].find("bad.sdc line 3:"), std::string::npos) << errors[0];
  EXPECT_TRUE(contains(read, "lum_register_clock -name \"clk\""));
  EXPECT_TRUE(contains(read, "lum_register_clock -name \"other\""));
  // The engine is still usable afterwards.
  EXPECT_EQ(hidden_texts(engine.command("puts ok")), Lines{"ok"});
}

TEST_F(EngineSession, AMissingSdcFileOfTheRevisionStopsReadSdcBeforeAnyIsApplied)
{
  project.write("chip.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 035\n"
                            "verilog_file = netlist/chip.v\nsdc_file = chip.sdc\n"
                            "sdc_file = later.sdc\n");
  open_with_netlist();
  Lines read = engine.command("read_sdc");
  Lines errors = lines_starting(read, "msg_post 0 error ");
  ASSERT_EQ(errors.size(), 1u) << joined(read);
  EXPECT_NE(errors[0].find("later.sdc"), std::string::npos) << errors[0];
  EXPECT_TRUE(callbacks(read).empty()) << joined(read);
  EXPECT_EQ(hidden_texts(engine.command("llength [all_clocks]")), Lines{"0"});
}

TEST_F(EngineSession, FailingCommandsPostAnErrorAndTheEngineKeepsItsState)
{
  struct Case { const char *command; const char *expected; };
  const Case before_open[] = {
    {"create_timing_netlist", "no project is open"},
    {"create_timing_netlist -fastmodel", "unknown option \\\"-fastmodel\\\""},
    {"create_timing_netlist -speed", "-speed needs a speed grade"},
    {"read_sdc", "no project is open"},
    {"nosuchcommand", "invalid command name"},
    {"project_open /nonexistent/x.vpf", "does not exist"},
    {"project_open a.vpf -rev x", "unknown option \\\"-rev\\\""},
    {"project_open a.vpf b.vpf", "one project file only"},
  };
  for (const Case &c : before_open) {
    Lines out = engine.command(c.command);
    ASSERT_EQ(out.size(), 1u) << c.command << "\n" << joined(out);
    EXPECT_EQ(out[0].rfind("msg_post 0 error VSTA-1100 \"", 0), 0u) << out[0];
    EXPECT_NE(out[0].find(c.expected), std::string::npos) << out[0];
  }
  Lines bad_revision = engine.command("project_open \"" + project.vpf() + "\" -revision nope");
  EXPECT_NE(joined(bad_revision).find("unknown revision \\\"nope\\\""), std::string::npos)
    << joined(bad_revision);

  open_with_netlist();
  Lines again = engine.command("create_timing_netlist");
  EXPECT_NE(joined(again).find("exists already"), std::string::npos);
  EXPECT_TRUE(callbacks(again).empty());
  // A failed open of another project leaves the open one in place.
  project.write("broken.vpf", "revision = x\nbogus line\n");
  Lines broken = engine.command("project_open \"" + project.path("broken.vpf") + "\"");
  EXPECT_NE(joined(broken).find("broken.vpf:2: expected"), std::string::npos) << joined(broken);
  EXPECT_TRUE(callbacks(broken).empty());
  EXPECT_EQ(hidden_texts(engine.command("llength [get_cells *]")), Lines{"5"});
}

TEST_F(EngineSession, UnusableDesignsAreRefusedWithoutANetlist)
{
  project.write("chip.vsf", "top_module = nosuchtop\nfamily = OSU\nspeed_grade = 035\n"
                            "verilog_file = netlist/chip.v\n");
  engine.command("project_open \"" + project.vpf() + "\"");
  Lines create = engine.command("create_timing_netlist");
  EXPECT_NE(joined(create).find("cannot link design nosuchtop"), std::string::npos)
    << joined(create);
  EXPECT_TRUE(callbacks(create).empty());
  EXPECT_NE(joined(engine.command("read_sdc")).find("no timing netlist"), std::string::npos);

  // A netlist with a syntax error: OpenSTA's message is an error post naming
  // the line, and the netlist is refused naming the file.
  project.write("netlist/broken.v", "module chip (a);\n input a;\n INVX1 u1 (.A(a) .Y());\n"
                                    "endmodule\n");
  project.write("chip.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 035\n"
                            "verilog_file = netlist/broken.v\n");
  engine.command("project_open \"" + project.vpf() + "\"");
  Lines broken = engine.command("create_timing_netlist");
  Lines sta_errors = lines_starting(broken, "msg_post 0 error STA-0 ");
  ASSERT_EQ(sta_errors.size(), 1u) << joined(broken);
  EXPECT_NE(sta_errors[0].find("broken.v, line 3"), std::string::npos) << sta_errors[0];
  EXPECT_NE(joined(broken).find("cannot read netlist " + project.path("netlist/broken.v")),
            std::string::npos) << joined(broken);
  EXPECT_TRUE(callbacks(broken).empty());

  project.write("chip_fast.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 018\n"
                                 "verilog_file = netlist/missing.v\n");
  Lines missing = engine.command("project_open \"" + project.vpf() + "\" -revision chip_fast");
  EXPECT_NE(joined(missing).find("chip_fast.vsf:4: netlist file"), std::string::npos)
    << joined(missing);
  project.write("chip_fast.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 6\n"
                                 "verilog_file = netlist/chip.v\n");
  Lines grade = engine.command("project_open \"" + project.vpf() + "\" -revision chip_fast");
  EXPECT_NE(joined(grade).find("chip_fast.vsf:3: family OSU has no speed grade"),
            std::string::npos) << joined(grade);
  // The project that was open stays open.
  EXPECT_TRUE(callbacks(missing).empty());
}

TEST(EngineFamilies, MissingLibertyFileIsNamedAndNoNetlistIsMade)
{
  TestProject project;
  project.write("device_families.txt",
                "[OSU]\nrise_fall = no\nspeed_grade = 035\n"
                "slow_liberty = nowhere/missing.lib\nfast_liberty = nowhere/missing.lib\n");
  setenv("CHRONEL_MISC_DIR", project.dir().c_str(), 1);
  EngineDriver engine;
  unsetenv("CHRONEL_MISC_DIR");
  engine.read_to_prompt();
  engine.command("project_open \"" + project.vpf() + "\"");
  Lines create = engine.command("create_timing_netlist");
  EXPECT_NE(joined(create).find("cannot read Liberty file " + project.dir()
                                + "/nowhere/missing.lib"), std::string::npos) << joined(create);
  EXPECT_TRUE(callbacks(create).empty());
  // The family lacks the rise/fall trait here.
  EXPECT_NE(joined(engine.command("create_timing_netlist -risefall")).find("rise/fall"),
            std::string::npos);
  engine.send("exit");
  EXPECT_EQ(engine.finish(), 0);
}

TEST_F(EngineSession, IncompleteCommandGetsContinuationPrompts)
{
  engine.send("proc twice {x} {");
  std::string line;
  ASSERT_TRUE(engine.read_line(line));
  EXPECT_EQ(line, "> ");
  engine.send("  return [expr {2 * $x}]");
  ASSERT_TRUE(engine.read_line(line));
  EXPECT_EQ(line, "> ");
  EXPECT_TRUE(engine.command("}").empty());
  EXPECT_EQ(hidden_texts(engine.command("twice 21")), Lines{"42"});
}

TEST_F(EngineSession, PrintedTextWithBracketsBlanksAndBracesSurvivesBothModes)
{
  // Each text is printed; hidden mode must give it back exactly.
  const std::string texts[] = {"plain", "two words", "q[0] q[1]", "{balanced}", "$dollar \"q\"",
                               "-leading", "back\\slash x", "tab\there"};
  for (const std::string &text : texts) {
    Lines out = engine.command("puts [lindex [list " + std::string("{") + text + "}] 0]");
    EXPECT_EQ(hidden_texts(out), Lines{text}) << joined(out);
  }
}

TEST_F(EngineSession, WritesToFileDescriptorOneNeverReachTheFrontEnd)
{
  Lines out = engine.command("set f [open /dev/stdout w]; puts $f leaked; close $f; puts kept");
  EXPECT_EQ(out, Lines{"echo_stdout  kept"});
}

TEST_F(EngineSession, CollectionsAcceptTheNameFinderOptionsAndPrintAsNames)
{
  open_with_netlist();
  auto names = [&](const std::string &expression) {
    Lines out = engine.command("foreach_in_collection a " + expression
                               + " {puts [get_object_info $a -name]}");
    Lines found = hidden_texts(out);
    std::sort(found.begin(), found.end());
    return found;
  };
  EXPECT_EQ(names("[get_keepers *]"),
            (Lines{"a", "b", "clk", "q[0]", "q[1]", "r1/CLK", "r1/D", "r1/Q", "r2/CLK", "r2/D",
                   "r2/Q"}));
  EXPECT_EQ(names("[get_registers -no_case R*]"), (Lines{"r1", "r2"}));
  EXPECT_EQ(names("[get_cells -hierarchical -compatibility_mode u*]"), (Lines{"u1", "u2", "u3"}));
  EXPECT_EQ(names("[get_pins -no_case U1/*]"), (Lines{"u1/A", "u1/B", "u1/Y"}));
  EXPECT_EQ(names("[get_nets n*]"), (Lines{"n1", "n2"}));
  EXPECT_EQ(names("[get_nodes u2/*]"), (Lines{"u2/A", "u2/Y"}));
  EXPECT_TRUE(names("[get_keepers nothing*]").empty());
  // Brackets belong to bus names, with and without -no_case.
  EXPECT_EQ(names("[get_keepers {q[0]}]"), (Lines{"q[0]"}));
  EXPECT_EQ(names("[get_nodes {q[1]}]"), (Lines{"q[1]"}));
  EXPECT_EQ(names("[get_keepers -no_case {Q[0] R1/C*}]"), (Lines{"q[0]", "r1/CLK"}));
  EXPECT_EQ(names("[get_ports -no_case {Q[1]}]"), (Lines{"q[1]"}));
  EXPECT_EQ(names("[get_nodes {q\\[1\\]}]"), (Lines{"q[1]"}));
  // A collection returned to the console shows names, not handles.
  EXPECT_EQ(hidden_texts(engine.command("get_cells r*")), Lines{"r1 r2"});
  EXPECT_EQ(hidden_texts(engine.command("query_collection [get_ports {a b}]")), Lines{"a b"});
}

TEST_F(EngineSession, WriteSdcRoundTripsWhatWasEntered)
{
  open_with_netlist();
  engine.command("create_clock -period 10.000 -name clk -waveform {0 5} {clk}");
  engine.command("set_input_delay -clock clk -max 2 [get_ports {a b}]");
  engine.command("set_multicycle_path -setup -end 2 -from [get_registers r1] -to [get_keepers r2/D]");
  engine.command("set_false_path -from a -to [get_ports q*]");
  std::string sdc = project.path("written.sdc");
  Lines write = engine.command("write_sdc \"" + sdc + "\"");
  EXPECT_TRUE(lines_starting(write, "msg_post 0 error").empty()) << joined(write);
  std::string text = file_text(sdc);
  EXPECT_NE(text.find("set_input_delay -clock clk -max 2 [get_ports {a b}]"), std::string::npos)
    << text;

  engine.command("delete_timing_netlist");
  engine.command("create_timing_netlist");
  Lines read = engine.command("read_sdc \"" + sdc + "\"");
  EXPECT_TRUE(lines_starting(read, "msg_post 0 error").empty()) << joined(read);
  EXPECT_TRUE(contains(read, "lum_register_clock -name \"clk\""));
  std::string again = project.path("again.sdc");
  engine.command("write_sdc \"" + again + "\"");
  EXPECT_EQ(text, file_text(again));
}

TEST_F(EngineSession, EachNetlistUsesTheLibraryOfItsGradeAndModel)
{
  auto arrival = [&](const std::string &create) {
    Lines made = engine.command(create);
    EXPECT_TRUE(lines_starting(made, "msg_post 0 warning").empty()) << joined(made);
    engine.command("create_clock -name clk -period 10 clk");
    engine.command("set_output_delay 2 -clock clk {q[0]}");
    Lines report = hidden_texts(engine.command("report_checks -format end"));
    engine.command("delete_timing_netlist");
    return report;
  };
  open_with_netlist();
  engine.command("delete_timing_netlist");
  Lines slow = arrival("create_timing_netlist");
  Lines fast = arrival("create_timing_netlist -fast_model");
  Lines slowest = arrival("create_timing_netlist -speed 050 ");
  EXPECT_FALSE(slow.empty());
  EXPECT_NE(slow, fast);
  EXPECT_NE(slow, slowest);
  EXPECT_EQ(slow, arrival("create_timing_netlist -speed 035"));
}

TEST_F(EngineSession, SettingsConvertToClockConstraints)
{
  engine.command("project_open \"" + project.vpf() + "\"");
  Lines convert = engine.command(
    "load_package flow; catch {execute_module -tool sta -args \"--vsf2sdc --disable_all_banners\"}");
  EXPECT_EQ(hidden_texts(convert), Lines{"0"}) << joined(convert);
  std::string text = file_text(project.path("chip_vsf.sdc"));
  EXPECT_NE(text.find("create_clock -name sys -period 8 -waveform {0 4} [get_ports {clk}]"),
            std::string::npos) << text;
}

TEST_F(EngineSession, ClockRequirementsOnPortsTheNetlistLacksAreWarnedOf)
{
  std::ofstream(project.path("chip.vsf"), std::ios::app) << "clock_requirement = ghost nosuch 5\n";
  engine.command("project_open \"" + project.vpf() + "\"");
  engine.command("create_timing_netlist");
  Lines convert = engine.command("execute_module -tool sta -args --vsf2sdc");
  Lines warnings = lines_starting(convert, "msg_post 0 warning VSTA-1211 ");
  ASSERT_EQ(warnings.size(), 1u) << joined(convert);
  EXPECT_NE(warnings[0].find("clock_requirement ghost names port nosuch"), std::string::npos);
}

TEST_F(EngineSession, InterruptStopsARunawayCommand)
{
  // A catch inside the loop must not swallow the interruption.
  engine.send("while 1 {catch {expr 1}}");
  Lines out = interrupt_until_prompt(engine);
  ASSERT_FALSE(engine.timed_out());
  ASSERT_EQ(lines_starting(out, "msg_post 0 error VSTA-1102 ").size(), 1u) << joined(out);
  EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"});
}

TEST_F(EngineSession, InterruptedReadSdcStopsAtOnceAndRegistersTheClocksMadeSoFar)
{
  open_with_netlist();
  std::string sdc = "create_clock -name early -period 5 {clk}\n"
                    "puts busy; flush stdout\n"
                    "set ::t [clock milliseconds]; while {[clock milliseconds] - $::t < 20000} {}\n";
  for (int i = 0; i < 200; ++i)
    sdc += "set_load 0.01 [get_ports a]\n";
  project.write("slow.sdc", sdc);
  engine.send("read_sdc {" + project.path("slow.sdc") + "}");
  // One signal, once the busy line is about to run.
  std::string line;
  while (engine.read_line(line, 30) && line != "echo_stdout  busy") {
  }
  ASSERT_EQ(line, "echo_stdout  busy");
  engine.interrupt();
  Lines out = engine.read_to_prompt(30);
  ASSERT_FALSE(engine.timed_out());
  // The busy line fails; the lines after it are not even tried.
  EXPECT_LE(lines_starting(out, "msg_post 0 error VSTA-1301 ").size(), 1u) << joined(out);
  EXPECT_TRUE(contains(out, "lum_register_clock -name \"early\"")) << joined(out);
  Lines failed = lines_starting(out, "msg_post 0 error VSTA-1100 ");
  ASSERT_EQ(failed.size(), 1u) << joined(out);
  EXPECT_NE(failed[0].find("interrupted by the user"), std::string::npos) << failed[0];
  EXPECT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"});
}

// After a fatal signal the engine's memory cannot be trusted: it says what
// it was running, and ends.
TEST(EngineEnd, AFatalSignalEndsTheEngineWithOneLineNamingTheCommand)
{
  for (int signal_number : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
    SCOPED_TRACE(strsignal(signal_number));
    EngineDriver engine;
    ASSERT_TRUE(engine.read_to_prompt().empty());
    engine.send("after 5000; puts {not reached}");
    // Give the engine time to start the command.
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    ASSERT_EQ(kill(engine.pid(), signal_number), 0);
    // The output ends (no prompt follows) well before the command would have.
    Lines out = engine.read_to_prompt(3);
    EXPECT_FALSE(engine.timed_out()) << joined(out);
    ASSERT_EQ(out.size(), 1u) << joined(out);
    EXPECT_EQ(out[0], "msg_internal_error 0 \"the engine stopped on fatal signal " +
                        std::to_string(signal_number) +
                        " while running the command \\\"after 5000; puts {not reached}\\\"; its "
                        "state cannot be trusted, so it exits (restart it to go on)\"");
    EXPECT_EQ(engine.finish(), 128 + signal_number);
  }
}

TEST(EngineEnd, AFatalSignalBetweenCommandsSaysNoCommandWasRunning)
{
  EngineDriver engine;
  ASSERT_TRUE(engine.read_to_prompt().empty());
  ASSERT_EQ(hidden_texts(engine.command("expr 6*7")), Lines{"42"});
  ASSERT_EQ(kill(engine.pid(), SIGSEGV), 0);
  std::string line;
  ASSERT_TRUE(engine.read_line(line, 20));
  EXPECT_NE(line.find("fatal signal 11 while running no command"), std::string::npos) << line;
  EXPECT_EQ(engine.finish(), 128 + SIGSEGV);
}

TEST_F(EngineSession, HelpListsTheEngineCommandsWithTheirOwnArguments)
{
  // read_sdc and write_sdc replace OpenSTA's, whose arguments differ.
  const char *expected[][2] = {
    {"project_open", "project_open project_file [-revision name]"},
    {"create_timing_netlist",
     "create_timing_netlist [-post_map] [-speed grade] [-fast_model] [-risefall]"},
    {"read_sdc", "read_sdc [-echo] [filename]"},
    {"write_sdc", "write_sdc filename"},
  };
  for (const auto &e : expected)
    EXPECT_EQ(hidden_texts(engine.command(std::string("help ") + e[0])), Lines{e[1]});
}

