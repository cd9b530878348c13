// IPC_COMMAND against small shell-script children.
#include "platform/ipc.hh"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

namespace {

class LINE_COLLECTOR : public IPC_COMMAND {
 public:
  void process_line(const std::string& line) override { lines.push_back(line); }
  std::vector<std::string> lines;
};

// Runs a /bin/sh script; the script is double-quoted on the command line.
int run_script(IPC_COMMAND* command, const std::string& script) {
  return command->run(("/bin/sh -c \"" + script + "\"").c_str(), nullptr, nullptr);
}

TEST(IpcCommandLines, CarriageReturnsAreStrippedAndLastUnterminatedLineIsDelivered) {
  LINE_COLLECTOR child;
  EXPECT_EQ(run_script(&child, "printf 'one\\r\\ntwo\\n\\r\\n\\nlast'"), 0);
  EXPECT_EQ(child.lines, (std::vector<std::string>{"one", "two", "", "", "last"}));
}

TEST(IpcCommandLines, OutputEndingInNewlineGivesNoExtraEmptyLine) {
  LINE_COLLECTOR child;
  EXPECT_EQ(run_script(&child, "printf 'a\\nb\\n'"), 0);
  EXPECT_EQ(child.lines, (std::vector<std::string>{"a", "b"}));
}

TEST(IpcCommandLines, ManyLinesArriveInOrder) {
  LINE_COLLECTOR child;
  EXPECT_EQ(run_script(&child, "seq 1 200000"), 0);
  ASSERT_EQ(child.lines.size(), 200000u);
  for (size_t i = 0; i < child.lines.size(); i += 997)
    ASSERT_EQ(child.lines[i], std::to_string(i + 1));
  EXPECT_EQ(child.lines.back(), "200000");
}

TEST(IpcCommandLines, HundredMegabyteLineIsDeliveredWhole) {
  const size_t size = 100u * 1024 * 1024;
  struct SIZES : IPC_COMMAND {
    void process_line(const std::string& line) override {
      sizes.push_back(line.size());
      if (sizes.size() == 1) all_x = line.find_first_not_of('x') == std::string::npos;
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

TEST(IpcCommandStart, MissingProgramFailsPromptlyWithReason) {
  LINE_COLLECTOR child;
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(child.run("/nonexistent/chronel_no_such_program -x", nullptr, nullptr), -1);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
  EXPECT_EQ(child.get_process_status(0), IPC_COMMAND::STATUS_FAILED);
  EXPECT_NE(child.get_start_error().find("chronel_no_such_program"), std::string::npos);
  EXPECT_EQ(child.get_pid(), -1);
  EXPECT_EQ(child.write_to_stdin("x\n", 2), -1);
}

TEST(IpcCommandStart, MissingWorkingDirectoryOrInputFileFails) {
  LINE_COLLECTOR in_missing_dir;
  EXPECT_EQ(in_missing_dir.run("/bin/true", nullptr, "/nonexistent/dir"), -1);
  EXPECT_EQ(in_missing_dir.get_process_status(0), IPC_COMMAND::STATUS_FAILED);
  LINE_COLLECTOR with_missing_input;
  EXPECT_EQ(with_missing_input.run("/bin/cat", "/nonexistent/input", nullptr), -1);
  EXPECT_EQ(with_missing_input.get_process_status(0), IPC_COMMAND::STATUS_FAILED);
}

TEST(IpcCommandStart, WaiterOnAnotherThreadSeesFailureInsteadOfHanging) {
  LINE_COLLECTOR child;
  int seen = -1;
  std::thread waiter([&] { seen = child.get_process_status(5000); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  child.run("chronel_no_such_program_on_path", nullptr, nullptr);
  waiter.join();
  EXPECT_EQ(seen, IPC_COMMAND::STATUS_FAILED);
}

TEST(IpcCommandStart, InputFileWorkingDirectoryAndExitStatusArePassed) {
  char dir_template[] = "/tmp/chronel_ipc_XXXXXX";
  ASSERT_NE(mkdtemp(dir_template), nullptr);
  std::string dir = dir_template;
  std::ofstream(dir + "/in.txt") << "first\nsecond\n";
  LINE_COLLECTOR child;
  EXPECT_EQ(child.run("/bin/sh -c \"cat; pwd; exit 3\"", (dir + "/in.txt").c_str(), dir.c_str()),
            3);
  EXPECT_EQ(child.lines, (std::vector<std::string>{"first", "second", dir}));
  EXPECT_EQ(child.get_process_status(0), IPC_COMMAND::STATUS_ENDED);
  std::remove((dir + "/in.txt").c_str());
  rmdir(dir.c_str());
}

TEST(IpcCommandStdin, EchoRoundTripFromAnotherThread) {
  struct ECHO : IPC_COMMAND {
    void process_line(const std::string& line) override {
      lines.push_back(line);
      if (line == "got:quit") close_stdin();
    }
    std::vector<std::string> lines;
  } child;
  std::thread writer([&] {
    ASSERT_EQ(child.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    EXPECT_GT(child.get_pid(), 0);
    for (int i = 0; i < 100; ++i) {
      std::string line = "line " + std::to_string(i) + "\n";
      EXPECT_EQ(child.write_to_stdin(line.data(), line.size()), static_cast<int>(line.size()));
    }
    EXPECT_EQ(child.write_to_stdin("quit\n", 5), 5);
  });
  EXPECT_EQ(run_script(&child, "while read -r l; do echo got:$l; done"), 0);
  writer.join();
  ASSERT_EQ(child.lines.size(), 101u);
  EXPECT_EQ(child.lines[0], "got:line 0");
  EXPECT_EQ(child.lines[99], "got:line 99");
}

TEST(IpcCommandStdin, WritingToAChildThatClosedItsInputFailsWithoutSigpipe) {
  LINE_COLLECTOR child;
  int result = 0;
  std::thread writer([&] {
    ASSERT_EQ(child.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    // The pipe has no reader any more: EPIPE, not death by SIGPIPE.
    std::string block(1 << 16, 'x');
    result = child.write_to_stdin(block.data(), block.size());
  });
  EXPECT_EQ(run_script(&child, "exec 0<&-; sleep 0.4; echo alive"), 0);
  writer.join();
  EXPECT_EQ(result, -1);
  EXPECT_EQ(child.lines, (std::vector<std::string>{"alive"}));
}

TEST(IpcCommandStdin, WritingAfterTheChildEndedFails) {
  LINE_COLLECTOR child;
  EXPECT_EQ(run_script(&child, "exit 0"), 0);
  EXPECT_EQ(child.write_to_stdin("late\n", 5), -1);
  EXPECT_EQ(child.get_pid(), -1);
}

TEST(IpcCommandSignals, KilledChildReportsSignalStatus) {
  LINE_COLLECTOR self_killed;
  EXPECT_EQ(run_script(&self_killed, "echo before; kill -9 $$"), 128 + SIGKILL);
  EXPECT_EQ(self_killed.lines, (std::vector<std::string>{"before"}));

  LINE_COLLECTOR sleeper;
  std::thread killer([&] {
    ASSERT_EQ(sleeper.get_process_status(5000), IPC_COMMAND::STATUS_RUNNING);
    sleeper.kill_child(SIGTERM);
  });
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(sleeper.run("/bin/sleep 30", nullptr, nullptr), 128 + SIGTERM);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  killer.join();
  EXPECT_EQ(sleeper.get_process_status(0), IPC_COMMAND::STATUS_ENDED);
}

TEST(IpcCommandStatus, UnknownBeforeRunAndTimeoutIsHonoured) {
  LINE_COLLECTOR child;
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(child.get_process_status(100), IPC_COMMAND::STATUS_UNKNOWN);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(90));
}

struct SPLIT_CASE {
  const char* line;
  bool ok;
  const char* program;
  std::vector<std::string> args;
};

TEST(IpcCommandLineSplit, QuotesGroupBlanksAndEmptyArgumentsSurvive) {
  const SPLIT_CASE cases[] = {
      {"/bin/prog a b", true, "/bin/prog", {"a", "b"}},
      {"  prog\t a   b  ", true, "prog", {"a", "b"}},
      {"\"/opt/my tools/prog\" --ipc_sh", true, "/opt/my tools/prog", {"--ipc_sh"}},
      {"prog \"two words\" \"\" x\"y z\"", true, "prog", {"two words", "", "xy z"}},
      {"prog \"say \\\"hi\\\"\" back\\\\slash", true, "prog", {"say \"hi\"", "back\\slash"}},
      {"prog", true, "prog", {}},
      {"prog \"unterminated", false, "", {}},
      {"   ", false, "", {}},
      {"\"\" arg", false, "", {}},
  };
  for (const SPLIT_CASE& c : cases) {
    std::string program;
    std::string joined;
    std::string error;
    bool ok = IPC_COMMAND::split_command_line(c.line, &program, &joined, &error);
    ASSERT_EQ(ok, c.ok) << c.line;
    if (!ok) {
      EXPECT_FALSE(error.empty()) << c.line;
      continue;
    }
    std::vector<std::string> args;
    for (size_t start = 0; start < joined.size();) {
      size_t end = joined.find('\0', start);
      args.push_back(joined.substr(start, end - start));
      start = end + 1;
    }
    EXPECT_EQ(program, c.program) << c.line;
    EXPECT_EQ(args, c.args) << c.line;
  }
}

}  // namespace
