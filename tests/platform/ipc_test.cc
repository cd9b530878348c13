// IPC_COMMAND against small shell-script children.
#include "platform/ipc.hh"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

using LINES = std::vector<std::string>;

struct LINE_COLLECTOR : IPC_COMMAND {
  void process_line(const std::string& line) override { lines.push_back(line); }
  LINES lines;
};

// Runs a /bin/sh script, double-quoted on the command line.
int run_script(IPC_COMMAND* command, const std::string& script) {
  return command->run(("/bin/sh -c \"" + script + "\"").c_str(), nullptr, nullptr);
}

TEST(IpcCommandLines, LineEndsAreStrippedAndAnUnterminatedLastLineIsKept) {
  const struct {
    const char* script;
    LINES lines;
  } cases[] = {
      {"printf 'one\\r\\ntwo\\n\\r\\n\\nlast'", {"one", "two", "", "", "last"}},
      {"printf 'a\\nb\\n'", {"a", "b"}},
      {"true", {}},
  };
  for (const auto& c : cases) {
    LINE_COLLECTOR child;
    EXPECT_EQ(run_script(&child, c.script), 0);
    EXPECT_EQ(child.lines, c.lines) << c.script;
  }
  LINE_COLLECTOR many;
  EXPECT_EQ(run_script(&many, "seq 1 200000"), 0);
  ASSERT_EQ(many.lines.size(), 200000u);
  for (size_t i = 0; i < many.lines.size(); i += 997) ASSERT_EQ(many.lines[i], std::to_string(i + 1));
}

TEST(IpcCommandLines, HundredMegabyteLineIsDeliveredWhole) {
  const size_t size = 100u * 1024 * 1024;
  struct SIZES : IPC_COMMAND {
    void process_line(const std::string& line) override {
      if (sizes.empty()) all_x = line.find_first_not_of('x') == std::string::npos;
      sizes.push_back(line.size());
    }
    std::vector<size_t> sizes;
    bool all_x = false;
  } child;
  EXPECT_EQ(run_script(&child, "head -c " + std::to_string(size) +
                                   " /dev/zero | tr '\\\\000' x; printf '\\r\\nend'"),
            0);
  EXPECT_EQ(child.sizes, (std::vector<size_t>{size, 3}));
  EXPECT_TRUE(child.all_x);
}

TEST(IpcCommandStart, FailuresToStartReturnPromptlyAndReleaseWaiters) {
  const struct {
    const char* command;
    const char* input;
    const char* dir;
  } cases[] = {
      {"/nonexistent/chronel_no_such_program -x", nullptr, nullptr},
      {"chronel_no_such_program_on_path", nullptr, nullptr},
      {"/bin/true", nullptr, "/nonexistent/dir"},
      {"/bin/cat", "/nonexistent/input", nullptr},
      {"\"unterminated", nullptr, nullptr},
  };
  for (const auto& c : cases) {
    LINE_COLLECTOR child;
    int seen = -1;
    std::thread waiter([&] { seen = child.get_process_status(5000); });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(child.run(c.command, c.input, c.dir), -1) << c.command;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    waiter.join();
    EXPECT_EQ(seen, IPC_COMMAND::STATUS_FAILED) << c.command;
    EXPECT_FALSE(child.get_start_error().empty());
    EXPECT_EQ(child.write_to_stdin("x\n", 2), -1);
  }
}

TEST(IpcCommandStart, InputFileWorkingDirectoryAndExitStatusArePassed) {
  char dir_template[] = "/tmp/chronel_ipc_XXXXXX";
  ASSERT_NE(mkdtemp(dir_template), nullptr);
  std::string dir = dir_template;
  std::ofstream(dir + "/in.txt") << "first\nsecond\n";
  LINE_COLLECTOR child;
  EXPECT_EQ(child.run("/bin/sh -c \"cat; pwd; exit 3\"", (dir + "/in.txt").c_str(), dir.c_str()), 3);
  EXPECT_EQ(child.lines, (LINES{"first", "second", dir}));
  EXPECT_EQ(child.get_process_status(0), IPC_COMMAND::STATUS_ENDED);
  EXPECT_EQ(child.get_pid(), -1);
  EXPECT_EQ(child.write_to_stdin("late\n", 5), -1);
  std::remove((dir + "/in.txt").c_str());
  rmdir(dir.c_str());
}

TEST(IpcCommandStdin, EchoRoundTripFromAnotherThread) {
  struct ECHO : LINE_COLLECTOR {
    void process_line(const std::string& line) override {
      lines.push_back(line);
      if (line == "got:quit") close_stdin();
    }
  } child;
  std::thread writer([&] {
    ASSERT_EQ(child.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    for (int i = 0; i < 100; ++i) {
      std::string line = "line " + std::to_string(i) + "\n";
      EXPECT_EQ(child.write_to_stdin(line.data(), line.size()), static_cast<int>(line.size()));
    }
    EXPECT_EQ(child.write_to_stdin("quit\n", 5), 5);
  });
  EXPECT_EQ(run_script(&child, "while read -r l; do echo got:$l; done"), 0);
  writer.join();
  ASSERT_EQ(child.lines.size(), 101u);
  EXPECT_EQ(child.lines[99], "got:line 99");
}

TEST(IpcCommandStdin, WritingToAChildThatClosedItsInputFailsWithoutSigpipe) {
  LINE_COLLECTOR child;
  int result = 0;
  std::thread writer([&] {
    ASSERT_EQ(child.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    std::string block(1 << 16, 'x');
    result = child.write_to_stdin(block.data(), block.size());
  });
  EXPECT_EQ(run_script(&child, "exec 0<&-; sleep 0.4; echo alive"), 0);
  writer.join();
  EXPECT_EQ(result, -1);
  EXPECT_EQ(child.lines, (LINES{"alive"}));
}

TEST(IpcCommandSignals, KilledChildReportsSignalStatus) {
  LINE_COLLECTOR self_killed;
  EXPECT_EQ(run_script(&self_killed, "echo before; kill -9 $$"), 128 + SIGKILL);
  EXPECT_EQ(self_killed.lines, (LINES{"before"}));

  LINE_COLLECTOR sleeper;
  EXPECT_EQ(sleeper.get_process_status(0), IPC_COMMAND::STATUS_UNKNOWN);
  std::thread killer([&] {
    ASSERT_EQ(sleeper.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    sleeper.kill_child(SIGTERM);
  });
  EXPECT_EQ(sleeper.run("/bin/sleep 30", nullptr, nullptr), 128 + SIGTERM);
  killer.join();
}

TEST(IpcCommandEnd, ExitStatusSignalAndTheTailOfStandardErrorAreKept) {
  LINE_COLLECTOR failing;
  // 3000 numbered error lines (about 17 KB, more than the tail holds), then status 3.
  EXPECT_EQ(run_script(&failing, "echo out; i=0; while [ $i -lt 3000 ]; do echo err $i >&2; i=$((i+1)); done; exit 3"), 3);
  EXPECT_EQ(failing.lines, (LINES{"out"}));  // standard error never mixes into the lines
  int code = 0, signal_number = -1;
  failing.get_exit(&code, &signal_number);
  EXPECT_EQ(code, 3);
  EXPECT_EQ(signal_number, 0);
  const std::string tail = failing.get_stderr_tail();
  EXPECT_LE(tail.size(), IPC_COMMAND::STDERR_TAIL_BYTES);
  EXPECT_GT(tail.size(), IPC_COMMAND::STDERR_TAIL_BYTES / 2);
  EXPECT_EQ(tail.substr(tail.size() - 9), "err 2999\n");
  EXPECT_EQ(tail.find("err 0\n"), std::string::npos);

  // A status of 137 is an exit, a SIGKILL is a signal: the two stay apart.
  LINE_COLLECTOR exited;
  EXPECT_EQ(run_script(&exited, "exit 137"), 137);
  exited.get_exit(&code, &signal_number);
  EXPECT_EQ(code, 137);
  EXPECT_EQ(signal_number, 0);
  LINE_COLLECTOR killed;
  EXPECT_EQ(run_script(&killed, "echo dying >&2; kill -9 $$"), 128 + SIGKILL);
  killed.get_exit(&code, &signal_number);
  EXPECT_EQ(code, -1);
  EXPECT_EQ(signal_number, SIGKILL);
  EXPECT_EQ(killed.get_stderr_tail(), "dying\n");
}

TEST(IpcCommandLineSplit, QuotesGroupBlanksAndEmptyArgumentsSurvive) {
  const struct {
    const char* line;
    const char* program;  // null: must fail
    LINES args;
  } cases[] = {
      {"  prog\t a   b  ", "prog", {"a", "b"}},
      {"\"/opt/my tools/prog\" --ipc_sh", "/opt/my tools/prog", {"--ipc_sh"}},
      {"prog \"two words\" \"\" x\"y z\"", "prog", {"two words", "", "xy z"}},
      {"prog \"say \\\"hi\\\"\" back\\\\slash", "prog", {"say \"hi\"", "back\\slash"}},
      {"prog \"unterminated", nullptr, {}},
      {"   ", nullptr, {}},
  };
  for (const auto& c : cases) {
    std::string program, joined, error;
    bool ok = IPC_COMMAND::split_command_line(c.line, &program, &joined, &error);
    ASSERT_EQ(ok, c.program != nullptr) << c.line;
    if (!ok) continue;
    LINES args;
    for (size_t start = 0; start < joined.size(); start = joined.find('\0', start) + 1)
      args.push_back(joined.substr(start, joined.find('\0', start) - start));
    EXPECT_EQ(program, c.program) << c.line;
    EXPECT_EQ(args, c.args) << c.line;
  }
}

}  // namespace
