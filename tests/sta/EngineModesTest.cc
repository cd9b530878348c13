// vexa_sta's batch (-t) and interactive (plain stdin) modes.
#include "EngineDriver.hh"
#include "TestProject.hh"

#include <gtest/gtest.h>

#include <cstdio>
#include <sys/wait.h>

using namespace vexa::test;

namespace {

// Runs vexa_sta through the shell (stdin empty unless arguments redirect
// it); returns stdout and stderr together.
std::string output_of(const std::string &arguments, int &status)
{
  std::string command = engine_path() + " " + arguments + " 2>&1";
  if (arguments.find('<') == std::string::npos)
    command += " </dev/null";
  FILE *pipe = popen(command.c_str(), "r");
  std::string out;
  char chunk[4096];
  size_t n = 0;
  while (pipe && (n = fread(chunk, 1, sizeof chunk, pipe)) > 0)
    out.append(chunk, n);
  int raw = pipe ? pclose(pipe) : -1;
  status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return out;
}

} // namespace

TEST(EngineCommandLine, MistakesAreNamedWithTheUsageAndStatusTwo)
{
  struct Case
  {
    const char *arguments;
    const char *named;
  };
  const Case cases[] = {
    {"--bogus", "unknown option \"--bogus\""},
    {"-t", "-t needs the name of a script file"},
    {"a.vpf b.vpf", "only one project may be named"},
    {"--ipc_sh a.vpf", "--ipc_sh takes no project"},
  };
  for (const Case &c : cases) {
    int status = 0;
    std::string out = output_of(c.arguments, status);
    EXPECT_EQ(status, 2) << c.arguments;
    EXPECT_NE(out.find(c.named), std::string::npos) << out;
    EXPECT_NE(out.find("usage: vexa_sta"), std::string::npos) << out;
  }
}

TEST(EngineBatch, MissingScriptIsNamedNotAnOlderError)
{
  int status = 0;
  std::string out = output_of("-t /nonexistent/run.tcl", status);
  EXPECT_EQ(status, 1);
  EXPECT_EQ(out.rfind("Error: couldn't read file \"/nonexistent/run.tcl\"", 0), 0u) << out;
}

TEST(EngineBatch, ProjectNamedBeforeTheScriptIsOpenFirstAndTextIsPlain)
{
  TestProject project;
  project.write("run.tcl", "create_timing_netlist\nputs \"cells [llength [get_cells *]]\"\n"
                           "read_sdc\nreport_checks\n");
  int status = 0;
  std::string out = output_of(project.vpf() + " -t " + project.path("run.tcl"), status);
  EXPECT_EQ(status, 0) << out;
  EXPECT_NE(out.find("cells 5"), std::string::npos) << out;
  EXPECT_NE(out.find("slack (MET)"), std::string::npos) << out;
  // Plain mode prints text as it is: no protocol lines.
  EXPECT_EQ(out.find("echo_stdout"), std::string::npos) << out;
  EXPECT_EQ(out.find("lum_"), std::string::npos) << out;
  // A project that cannot be opened stops the run before the script.
  out = output_of(project.path("none.vpf") + " -t " + project.path("run.tcl"), status);
  EXPECT_EQ(status, 1);
  EXPECT_NE(out.find("none.vpf"), std::string::npos) << out;
  EXPECT_EQ(out.find("cells"), std::string::npos) << out;
}

TEST(EngineBatch, ExitStatusFollowsTheScript)
{
  TestProject project;
  const std::pair<const char *, int> cases[] = {
    {"puts hello\n", 0},
    {"exit 3\n", 3},
    {"error boom\n", 1},
    {"if {$argc != 2 || [lindex $argv 1] ne \"two\"} {exit 4}\n", 0},
  };
  for (const auto &[script, expected] : cases) {
    project.write("script.tcl", script);
    int status = 0;
    output_of("-t " + project.path("script.tcl") + " one two", status);
    EXPECT_EQ(status, expected) << script;
  }
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

TEST(EngineInteractive, FailedCommandShowsItsMessageWithoutATrace)
{
  TestProject project;
  project.write("typed.txt", "projct_open x\n");
  int status = 0;
  std::string out = output_of("< " + project.path("typed.txt"), status);
  EXPECT_EQ(status, 0);
  EXPECT_NE(out.find("Error: invalid command name \"projct_open\""), std::string::npos) << out;
  EXPECT_EQ(out.find("while executing"), std::string::npos) << out;
  // A script's error keeps the trace that leads to its line.
  project.write("run.tcl", "set x 1\nprojct_open x\n");
  out = output_of("-t " + project.path("run.tcl"), status);
  EXPECT_NE(out.find("line 2"), std::string::npos) << out;
}
