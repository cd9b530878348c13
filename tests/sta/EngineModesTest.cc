// vexa_sta's batch (-t) and interactive (plain stdin) modes.
#include "EngineDriver.hh"
#include "TestProject.hh"

#include <gtest/gtest.h>

using namespace vexa::test;

namespace {

struct BatchCase
{
  const char *script;
  int status;
};

int run_script(const TestProject &project, const std::string &script,
               std::vector<std::string> extra = {})
{
  project.write("script.tcl", script);
  std::vector<std::string> args{"-t", project.path("script.tcl")};
  args.insert(args.end(), extra.begin(), extra.end());
  EngineDriver engine(args);
  return engine.finish();
}

} // namespace

TEST(EngineBatch, ExitStatusFollowsTheScript)
{
  TestProject project;
  const BatchCase cases[] = {
    {"puts hello\n", 0},
    {"exit 3\n", 3},
    {"error boom\n", 1},
    {"if {$argc != 2 || [lindex $argv 1] ne \"two\"} {exit 4}\n", 0},
  };
  for (const BatchCase &c : cases)
    EXPECT_EQ(run_script(project, c.script, {"one", "two"}), c.status) << c.script;
}

TEST(EngineBatch, ScriptCanOpenAProjectAndReportTiming)
{
  TestProject project;
  project.write("run.tcl", "project_open {" + project.vpf() + "}\n"
                           "create_timing_netlist\nread_sdc\n"
                           "report_checks\n");
  EngineDriver engine({"-t", project.path("run.tcl")});
  std::string all;
  std::string line;
  while (engine.read_line(line))
    all += line + "\n";
  EXPECT_EQ(engine.finish(), 0);
  EXPECT_NE(all.find("slack (MET)"), std::string::npos) << all;
  // Plain mode prints text as it is: no protocol lines.
  EXPECT_EQ(all.find("echo_stdout"), std::string::npos);
  EXPECT_EQ(all.find("lum_"), std::string::npos);
}

TEST(EngineInteractive, PipedInputGetsPlainPromptsAndResults)
{
  TestProject project;
  EngineDriver engine({project.vpf()});
  engine.send("expr {6 * 7}");
  engine.send("proc f {} {");
  engine.send("return done}");
  engine.send("f");
  engine.send("exit");
  std::string all;
  std::string line;
  while (engine.read_line(line, 30))
    all += line + "\n";
  EXPECT_EQ(engine.finish(), 0);
  // The project named on the command line is open before the first prompt,
  // so the netlist can be created at once.
  size_t opened = all.find("Opened project chip");
  ASSERT_NE(opened, std::string::npos) << all;
  EXPECT_LT(opened, all.find("tcl> "));
  EXPECT_NE(all.find("tcl> 42\n"), std::string::npos) << all;
  EXPECT_NE(all.find("tcl> > "), std::string::npos) << all;
  EXPECT_NE(all.find("done"), std::string::npos) << all;
}
