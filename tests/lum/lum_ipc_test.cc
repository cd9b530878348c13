// Classification and gathering of engine output lines (the reader thread's
// work), driven line by line without a process.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/lum_ipc_object.hh"
#include "engine/lum_msg_display.hh"
#include "platform/msg.hh"

namespace {

// Sees the forwarded commands instead of queueing them.
class RECORDING_IPC : public LUM_IPC_OBJECT {
 public:
  std::vector<std::string> posted;
  std::vector<int> weights;

 protected:
  void post_command(const std::string& command, int lines) override {
    posted.push_back(command);
    weights.push_back(lines);
  }
};

struct CLASSIFY_CASE {
  const char* name;
  std::vector<std::string> lines;
  std::vector<std::string> expected;  // "%T" stands for the message target
};

class LineClassification : public ::testing::TestWithParam<CLASSIFY_CASE> {};

TEST_P(LineClassification, ForwardsTheFrontEndCommand) {
  MSG_REPORT report;
  LUM_MSG_DISPLAY display;
  RECORDING_IPC ipc;
  ipc.set_msg_target(&report);
  ipc.set_display(&display);
  for (const std::string& line : GetParam().lines) ipc.process_line(line);
  ipc.block_delivered();
  std::vector<std::string> expected;
  for (std::string e : GetParam().expected) {
    size_t at = e.find("%T");
    if (at != std::string::npos) e.replace(at, 2, std::to_string(report.get_target_id()));
    expected.push_back(e);
  }
  EXPECT_EQ(ipc.posted, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Protocol, LineClassification,
    ::testing::Values(
        CLASSIFY_CASE{"Prompt", {"tcl> "}, {"lum_tcl_prompt"}},
        CLASSIFY_CASE{"ContinuationPrompt", {"> "}, {"lum_tcl_cont_prompt"}},
        CLASSIFY_CASE{"PlainText", {"echo_stdout  hello"}, {"lum_echo_stdout  hello"}},
        CLASSIFY_CASE{"ShortEchoKeepsItsCharacter", {"echo_stdout hello"}, {"lum_echo_stdout hello"}},
        CLASSIFY_CASE{"Status", {"report_status 42"}, {"lum_report_status 42%"}},
        CLASSIFY_CASE{"CallBackAsItStands",
                      {"lum_register_clock -name \"clk\""},
                      {"lum_register_clock -name \"clk\""}},
        CLASSIFY_CASE{"MessagePost",
                      {"msg_post 0 warning VSTA-1 \"t\" \"\""},
                      {"msg_post %T warning VSTA-1 \"t\" \"\""}},
        CLASSIFY_CASE{"InternalError", {"msg_internal_error 0 \"boom\""}, {"msg_internal_error %T \"boom\""}},
        CLASSIFY_CASE{"TextsThatReadAsOptionsFollowTheEndOfOptions",
                      {"echo_stdout  -h", "echo_stdout {-x y}", "echo_stdout  \\-\\{"},
                      {"lum_echo_stdout --  -h", "lum_echo_stdout -- {-x y}", "lum_echo_stdout --  \\-\\{"}},
        CLASSIFY_CASE{"BracedTextGathersTwoLines", {"echo_stdout {a b", "}"}, {"lum_echo_stdout {a b\n}"}},
        CLASSIFY_CASE{"ThreeLineCallBackForwardedOnceAfterTheThird",
                      {"lum_set_state -project_is_open {", "1", "}", "tcl> "},
                      {"lum_set_state -project_is_open {\n1\n}", "lum_tcl_prompt"}},
        CLASSIFY_CASE{"ContinuedLinesAreNotClassified",
                      {"echo_stdout {x", "tcl> ", "}"},
                      {"lum_echo_stdout {x\ntcl> \n}"}},
        CLASSIFY_CASE{"UnknownLineDroppedAndNextStartsFresh",
                      {"Warning: something odd {", "tcl> "},
                      {"lum_tcl_prompt"}},
        CLASSIFY_CASE{"PrefixesAreCaseSensitive", {"Tcl> ", "ECHO_STDOUT  x", "tcl>"}, {}},
        CLASSIFY_CASE{"LiteralTextsAreBatchedUntilAnotherLine",
                      {"echo_stdout  a", "echo_stdout {b {c}", "}", "echo_stdout  {}", "echo_stdout  -d", "tcl> ",
                       "echo_stdout  e"},
                      {"lum_echo_stdout -- {a\nb {c}\n\n-d}", "lum_tcl_prompt", "lum_echo_stdout  e"}},
        CLASSIFY_CASE{"TextsBracesCannotCarryEndTheBatch",
                      {"echo_stdout  a", "echo_stdout {x} {", "}", "echo_stdout {y\\", "}", "echo_stdout  b",
                       "echo_stdout {z", "echo_stdout  c", "}"},
                      {"lum_echo_stdout  a", "lum_echo_stdout {x} {\n}", "lum_echo_stdout {y\\\n}",
                       "lum_echo_stdout  b", "lum_echo_stdout {z\necho_stdout  c\n}"}}),
    [](const ::testing::TestParamInfo<CLASSIFY_CASE>& info) { return std::string(info.param.name); });

TEST(LineClassification, PromptsPostTheIdleAndStartupEventsAndInternalErrorsTheSeenEvent) {
  MSG_REPORT report;
  LUM_MSG_DISPLAY display;
  RECORDING_IPC ipc;
  ipc.set_msg_target(&report);
  ipc.set_display(&display);
  LUM_IPC_OBJECT::get_startup_event().reset();
  EXPECT_TRUE(ipc.is_first_prompt_pending());
  ipc.process_line("echo_stdout  banner");
  EXPECT_FALSE(ipc.get_idle_event().is_posted());
  ipc.process_line("tcl> ");
  EXPECT_TRUE(ipc.get_idle_event().is_posted());
  EXPECT_TRUE(LUM_IPC_OBJECT::get_startup_event().is_posted());
  EXPECT_FALSE(ipc.is_first_prompt_pending());

  ipc.get_idle_event().reset();
  EXPECT_FALSE(display.get_internal_error_seen_event().is_posted());
  ipc.process_line("msg_internal_error 0 \"x\"");
  EXPECT_TRUE(ipc.get_idle_event().is_posted());
  EXPECT_TRUE(display.get_internal_error_seen_event().is_posted());
}

TEST(LineClassification, BatchesCountTheirLinesAndStayBounded) {
  MSG_REPORT report;
  RECORDING_IPC ipc;
  ipc.set_msg_target(&report);
  const int limit = LUM_IPC_OBJECT::MAX_OUTSTANDING_LINES / 8;
  for (int i = 0; i < limit + 3; ++i) ipc.process_line("echo_stdout  l" + std::to_string(i));
  ASSERT_EQ(ipc.posted.size(), 1u);  // full: forwarded without waiting for the block's end
  EXPECT_EQ(ipc.weights, std::vector<int>{limit});
  ipc.block_delivered();
  ASSERT_EQ(ipc.posted.size(), 2u);
  EXPECT_EQ(ipc.posted[1], "lum_echo_stdout -- {l" + std::to_string(limit) + "\nl" + std::to_string(limit + 1) +
                               "\nl" + std::to_string(limit + 2) + "}");
  EXPECT_EQ(ipc.weights, (std::vector<int>{limit, 3}));
  // A held braced line whose engine ended before its "}" is gathered as before.
  ipc.process_line("echo_stdout {open");
  ipc.mark_ended();
  EXPECT_EQ(ipc.posted.size(), 2u);
  EXPECT_EQ(ipc.get_line_buffer_size(), std::string("lum_echo_stdout {open").size());
}

TEST(LineClassification, NothingIsRecognisedWithoutAMessageTarget) {
  RECORDING_IPC ipc;
  ipc.process_line("tcl> ");
  ipc.process_line("echo_stdout  x");
  EXPECT_TRUE(ipc.posted.empty());
}

TEST(LineClassification, RunawayCallBackIsResetBeyondOneHundredMegabytes) {
  MSG_REPORT report;
  RECORDING_IPC ipc;
  ipc.set_msg_target(&report);
  ipc.process_line("lum_echo_stdout {never closed");
  std::string chunk(10 << 20, 'x');
  for (int i = 0; i < 9; ++i) ipc.process_line(chunk);
  EXPECT_GT(ipc.get_line_buffer_size(), 90u << 20);
  ipc.process_line(chunk);  // now beyond 104857600 bytes
  EXPECT_EQ(ipc.get_line_buffer_size(), 0u);
  ipc.process_line("tcl> ");
  EXPECT_EQ(ipc.posted, (std::vector<std::string>{"lum_tcl_prompt"}));
}

}  // namespace
