// The console control against a scripted engine (fake_engine): start-up,
// the command queue and busy state, hidden commands, history, the drain into
// the row model, engine death and shutdown.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include <csignal>
#include <fstream>

#include "lum_test_support.hh"
#include "platform/cfg.hh"

namespace {

std::string fake_engine(const std::string& options = "") {
  return std::string("\"") + CHRONEL_BIN_DIR + "/fake_engine\" " + options;
}

class ConsoleWithScriptedEngine : public LUM_CONSOLE_TEST {
 protected:
  void SetUp() override {
    ASSERT_TRUE(dir.isValid());
    log_path = dir.filePath("commands.log").toStdString();
    LUM_CONSOLE_TEST::SetUp();
    msg_set_internal_error_handler([this](const std::string& condition, const std::string&, int) {
      internal_errors.push_back(condition);
    });
  }
  void TearDown() override {
    LUM_CONSOLE_TEST::TearDown();
    msg_set_internal_error_handler(nullptr);
    cfg_clear_overrides();
  }

  bool start(const std::string& options = "") {
    console->set_engine_command_line(fake_engine("--log \"" + log_path + "\" " + options));
    return console->startup();
  }
  // SIGKILL to the running engine; a missing process id must never become kill(-1).
  void kill_engine() {
    pid_t pid = console->get_ipc_object() ? console->get_ipc_object()->get_pid() : -1;
    ASSERT_GT(pid, 0);
    ::kill(pid, SIGKILL);
  }
  std::vector<std::string> received() {
    std::vector<std::string> lines;
    std::ifstream in(log_path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
  }

  QTemporaryDir dir;
  std::string log_path;
  std::vector<std::string> internal_errors;
};

// The same with the engine started and at its first prompt.
class ReadyScriptedEngine : public ConsoleWithScriptedEngine {
 protected:
  void SetUp() override {
    ConsoleWithScriptedEngine::SetUp();
    ASSERT_TRUE(start());
    ASSERT_TRUE(settle());
  }
};

TEST_F(ConsoleWithScriptedEngine, StartupWaitsForTheFirstPromptThenBecomesReady) {
  ASSERT_TRUE(start("--startup-delay 300"));
  EXPECT_TRUE(LUM_IPC_OBJECT::get_startup_event().is_posted());
  EXPECT_TRUE(console->is_busy());
  ASSERT_TRUE(settle());
  EXPECT_EQ(console->get_model()->row_count(), 1);
  EXPECT_EQ(console->get_model()->row_type(0), LUM_KRO_OUTPUT_TCL_PROMPT);
  EXPECT_EQ(frame.status_panes[1], "Ready");
}

TEST_F(ConsoleWithScriptedEngine, EngineThatDiesOrCannotStartFailsTheStartup) {
  QSignalSpy exited(console.get(), &LUM_CONSOLE_CTRL::kro_exited);
  EXPECT_FALSE(start("--die-before-prompt"));
  lum_pump_until([] { return false; }, 1200);
  EXPECT_EQ(exited.count(), 0);  // the caller reports the failed start, once
  new_console();
  console->set_engine_command_line("\"/nonexistent/vexa_sta\" --ipc_sh");
  EXPECT_FALSE(console->startup());
}

TEST_F(ConsoleWithScriptedEngine, EngineThatNeverPromptsIsGivenUpAfterTheStartupLimit) {
  cfg_set_override("lum_sta_startup_timeout", "1");
  QElapsedTimer waited;
  waited.start();
  EXPECT_FALSE(start("--no-prompt"));
  EXPECT_LT(waited.elapsed(), 30000);  // far below the default limit of 120 s
  EXPECT_FALSE(console->is_kro_running());

  // Without waiting, the start succeeds and the console stays busy until a prompt comes.
  cfg_set_override("lum_dont_wait_for_sta_to_startup", "1");
  new_console();
  EXPECT_TRUE(start("--startup-delay 200"));
  EXPECT_TRUE(console->is_busy());
  EXPECT_TRUE(settle());
}

TEST_F(ReadyScriptedEngine, CommandsQueueWhileBusyAndRunInOrderAfterEachPrompt) {
  QSignalSpy history(console.get(), &LUM_CONSOLE_CTRL::history_entry_added);
  console->run_command("sleep 200\n");
  console->run_command("raw echo_stdout  second\r\n");
  console->run_command("raw echo_stdout  third");
  EXPECT_TRUE(console->is_busy());
  EXPECT_EQ(console->pending_count(), 2u);
  // Only the first has been written so far: the others wait for a prompt,
  // which needs the event loop, and it is not run once the first has arrived.
  ASSERT_TRUE(lum_pump_until([this] { return !received().empty(); }));
  EXPECT_EQ(received(), (std::vector<std::string>{"sleep 200"}));
  ASSERT_TRUE(settle());
  EXPECT_EQ(received(),
            (std::vector<std::string>{"sleep 200", "raw echo_stdout  second", "raw echo_stdout  third"}));
  EXPECT_EQ(rows(), (std::vector<std::string>{"sleep 200", "raw echo_stdout  second", "second",
                                              "raw echo_stdout  third", "third", ""}));
  EXPECT_EQ(history.count(), 3);
  EXPECT_GE(frame.next_task_starts, 3);
}

TEST_F(ReadyScriptedEngine, HistoryKeepsRepeatsOnceButTheTabGetsEveryCommand) {
  QSignalSpy history(console.get(), &LUM_CONSOLE_CTRL::history_entry_added);
  for (const char* cmd : {"a", "a", "b", "", "a"}) console->run_command(cmd);
  ASSERT_TRUE(settle());
  EXPECT_EQ(history.count(), 5);
  EXPECT_EQ(console->get_history(), (std::vector<std::string>{"a", "b", "a"}));
  EXPECT_EQ(console->history_older(), "a");
  EXPECT_EQ(console->history_older(), "b");
  EXPECT_EQ(console->history_older(), "a");
  EXPECT_EQ(console->history_older(), "a");  // stays on the oldest
  EXPECT_EQ(console->history_newer(), "b");
  EXPECT_EQ(console->history_newer(), "a");
  EXPECT_EQ(console->history_newer(), "");  // from the newest: empty line
  EXPECT_EQ(console->get_history_cursor(), -1);
  EXPECT_EQ(console->history_oldest(), "a");
  EXPECT_EQ(console->get_history_cursor(), 2);
}

TEST_F(ConsoleWithScriptedEngine, ClearEmptiesRowsWithoutSendingClearAndExitClosesTheFrame) {
  ASSERT_TRUE(start());
  console->run_command("raw echo_stdout  x");
  ASSERT_TRUE(settle());
  ASSERT_GT(console->get_model()->row_count(), 1);
  console->run_command("clear");
  ASSERT_TRUE(settle());
  EXPECT_EQ(received(), (std::vector<std::string>{"raw echo_stdout  x", " "}));
  EXPECT_EQ(console->get_model()->row_count(), 1);  // the fresh prompt
  console->run_command("exit");
  EXPECT_FALSE(console->is_busy());
  EXPECT_EQ(frame.close_requests, 1);
  console->MwShutdown();
  console->MwShutdown();
  // "exit" reached the engine once, from the shutdown.
  std::vector<std::string> sent = received();
  EXPECT_EQ(sent.back(), "exit");
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "exit"), 1);
  EXPECT_EQ(console->get_ipc_object(), nullptr);
}

// Every prompt ends exactly one command, whatever the user clears meanwhile.
TEST_F(ReadyScriptedEngine, ClearWhileACommandRunsKeepsTheCommandTrackingExact) {
  console->run_command("sleep 300");
  ASSERT_TRUE(console->is_busy());
  console->clear();
  EXPECT_TRUE(console->is_busy());
  console->run_command("raw echo_stdout  second");  // waits for the sleep's prompt
  ASSERT_TRUE(settle());
  EXPECT_EQ(received(), (std::vector<std::string>{"sleep 300", "raw echo_stdout  second"}));
  std::vector<std::string> result;
  console->run_command("raw echo_stdout  hidden", &result);
  EXPECT_EQ(result, std::vector<std::string>{"hidden"});
  // Cleared while idle, the blank line is a command of its own until its prompt.
  console->clear();
  EXPECT_TRUE(console->is_busy());
  console->run_command("raw echo_stdout  third");
  ASSERT_TRUE(settle());
  EXPECT_FALSE(console->is_busy());
  EXPECT_EQ(received().back(), "raw echo_stdout  third");
  EXPECT_EQ(console->get_model()->row_text(console->get_model()->row_count() - 2), "third");
}

TEST_F(ReadyScriptedEngine, HiddenCommandReturnsTheTextLinesExactlyAndShowsNothing) {
  int rows_before = console->get_model()->row_count();
  std::vector<std::string> result;
  // Plain, braced, escaped (unbalanced brace) and empty texts, as the engine encodes them.
  console->run_command(
      "raw echo_stdout  a1\\necho_stdout {b c/d[2]\\n}\\necho_stdout  \\{x\\ \\$y\\necho_stdout  {}\\necho_stdout {{}\\n}",
      &result);
  EXPECT_EQ(result, (std::vector<std::string>{"a1", "b c/d[2]", "{x $y", "", "{}"}));
  EXPECT_TRUE(console->get_history().empty());
  lum_pump_until([] { return false; }, 50);
  EXPECT_EQ(console->get_model()->row_count(), rows_before);

  console->run_command("raw msg_internal_error 0 \"broken\"", &result);
  EXPECT_EQ(result, (std::vector<std::string>{"Chronel Internal Error", "\"broken\""}));
}

// Refused both while a command runs and while the engine waits for the rest
// of one: the hidden command's own line would complete the user's.
TEST_F(ReadyScriptedEngine, HiddenCommandIsRefusedWhileBusyOrWhileTheEngineWaitsForTheRestOfACommand) {
  std::vector<std::string> result{"untouched"};
  console->run_command("sleep 300");
  console->run_command("names", &result);
  ASSERT_TRUE(settle());
  console->run_command("rawnp > ");  // the engine now waits for more input
  ASSERT_TRUE(settle());
  EXPECT_FALSE(console->is_busy());  // the user may type the rest
  console->run_command("names", &result);
  EXPECT_EQ(boxes.ids, (std::vector<std::string>{"LUM_STA_IS_BUSY", "LUM_STA_IS_BUSY"}));
  EXPECT_EQ(result, (std::vector<std::string>{"untouched"}));
  // Once the command is complete, hidden commands run again.
  console->run_command("rest");
  ASSERT_TRUE(settle());
  result.clear();
  console->run_command("names", &result);
  EXPECT_EQ(result, (std::vector<std::string>{"ran"}));
  EXPECT_EQ(received(), (std::vector<std::string>{"sleep 300", "rawnp > ", "rest", "names"}));
  // A hidden command that is itself incomplete returns at the continuation
  // prompt instead of waiting for ever.
  result.clear();
  console->run_command("rawnp > ", &result);
  EXPECT_TRUE(result.empty());
}

TEST_F(ReadyScriptedEngine, HiddenCommandReturnsWhenTheEngineDies) {
  std::vector<std::string> result;
  console->run_command("die", &result);
  EXPECT_TRUE(result.empty());
  EXPECT_TRUE(console->get_ipc_object()->has_ended());
}

TEST_F(ReadyScriptedEngine, EngineDyingMidCommandIsReportedOnceAndClosesTheFrame) {
  QSignalSpy exited(console.get(), &LUM_CONSOLE_CTRL::kro_exited);
  console->run_command("rawnp echo_stdout  partial_output");
  console->run_command("die");  // queued behind the first, which never prompts
  ASSERT_TRUE(lum_pump_until([this] { return rows().back() == "partial_output"; })) << ::testing::PrintToString(rows());
  kill_engine();
  ASSERT_TRUE(lum_pump_until([&] { return exited.count() > 0; }));
  lum_pump_until([] { return false; }, 1200);  // further ticks report nothing more
  EXPECT_EQ(exited.count(), 1);
  EXPECT_FALSE(console->is_busy());
  EXPECT_EQ(boxes.ids, (std::vector<std::string>{"LUM_STA_EXITED"}));
  EXPECT_EQ(frame.close_requests, 1);
  EXPECT_EQ(rows().back(), "partial_output");
}

TEST_F(ReadyScriptedEngine, EverythingTheEnginePrintedBeforeDyingIsShownBeforeTheExitReport) {
  std::vector<std::string> rows_at_exit;
  QObject::connect(console.get(), &LUM_CONSOLE_CTRL::kro_exited, [&] { rows_at_exit = rows(); });
  // Without the event loop the engine's lines stay in the interpreter's
  // queue while the engine ends; the tick that finds it ended comes next.
  console->run_command("die 5000");
  QElapsedTimer waited;
  waited.start();
  while (console->is_kro_running() && waited.elapsed() < 30000) QThread::msleep(5);
  ASSERT_FALSE(console->is_kro_running());
  QThread::msleep(100);  // the reader thread returns
  console->on_timer();
  ASSERT_TRUE(lum_pump_until([&] { return !rows_at_exit.empty(); }));
  EXPECT_EQ(rows_at_exit.size(), 5001u);  // the prompt with the command and the lines
  EXPECT_EQ(rows_at_exit.back(), "line4999");
  EXPECT_EQ(boxes.ids, (std::vector<std::string>{"LUM_STA_EXITED"}));
}

TEST_F(ReadyScriptedEngine, EngineInternalErrorIsShownAndTheEngineGoesOn) {
  console->run_command("raw msg_internal_error 0 \"invariant broken\"");
  ASSERT_TRUE(settle());
  EXPECT_EQ(internal_errors, (std::vector<std::string>{"invariant broken"}));
  LUM_CONSOLE_MODEL* model = console->get_model();
  EXPECT_EQ(model->row_kind(1), static_cast<int>(MSG_KIND::INTERNAL_ERROR));
  // Shown: the seen event is reset, so a later exit is reported again.
  EXPECT_FALSE(console->get_msg_display()->get_internal_error_seen_event().is_posted());
  console->run_command("raw echo_stdout  still_alive");
  ASSERT_TRUE(settle());
  EXPECT_EQ(rows()[3], "still_alive") << ::testing::PrintToString(rows());
}

TEST_F(ReadyScriptedEngine, ExitIsNotReportedWhileAnInternalErrorIsPendingOrWhenStartupIsSwitchedOff) {
  QSignalSpy exited(console.get(), &LUM_CONSOLE_CTRL::kro_exited);
  console->get_msg_display()->get_internal_error_seen_event().post();
  kill_engine();
  lum_pump_until([] { return false; }, 1500);
  EXPECT_EQ(exited.count(), 0);
  console->get_msg_display()->get_internal_error_seen_event().reset();
  ASSERT_TRUE(lum_pump_until([&] { return exited.count() > 0; }));

  cfg_set_override("lum_dont_startup_sta", "1");
  new_console();
  boxes.ids.clear();
  frame.close_requests = 0;
  ASSERT_TRUE(start());
  QSignalSpy exited2(console.get(), &LUM_CONSOLE_CTRL::kro_exited);
  kill_engine();
  ASSERT_TRUE(lum_pump_until([&] { return exited2.count() > 0; }));
  EXPECT_TRUE(boxes.ids.empty());
  EXPECT_EQ(frame.close_requests, 0);
}

TEST_F(ReadyScriptedEngine, PartialLinesAndMultiLineCallBacksBecomeWholeRows) {
  console->run_command("partial echo_stdout  hel|lo");
  console->run_command("raw echo_stdout {first\tline\\nsecond line\\n}\\nreport_status 42\\nlum_set_time_unit ps");
  console->run_command("raw msg_post 0 warning VSTA-7 \"careful\" \"{extra_info VSTA-8 {more} {}}\"");
  ASSERT_TRUE(settle());
  std::vector<std::string> r = rows();
  ASSERT_EQ(r.size(), 9u) << ::testing::PrintToString(r);
  EXPECT_EQ(r[1], "hello");
  EXPECT_EQ(r[3], "first    line");
  EXPECT_EQ(r[4], "second line");
  EXPECT_EQ(frame.status_panes[1], "Ready");  // the status "42%" was shown, then the prompt
  EXPECT_EQ(frame.time_unit, "ps");
  EXPECT_EQ(r[6], "Warning (VSTA-7): careful");
  EXPECT_EQ(console->get_model()->row_level(7), 1);
  EXPECT_EQ(r[7], "Extra Info (VSTA-8): more");
  EXPECT_EQ(console->get_model()->row_message(7)->get_id(), "VSTA-8");
  EXPECT_EQ(r[8], "");
}

TEST_F(ReadyScriptedEngine, FloodArrivesCompleteAndInOrder) {
  console->run_command("flood 100000");
  ASSERT_TRUE(settle(60000));
  LUM_CONSOLE_MODEL* model = console->get_model();
  ASSERT_EQ(model->row_count(), 100000 + 2);
  int out_of_place = 0;
  for (int i = 0; i < 100000; ++i) out_of_place += model->row_text(i + 1) != "line" + std::to_string(i);
  EXPECT_EQ(out_of_place, 0);
  EXPECT_EQ(model->rowCount(), model->row_count());
  EXPECT_EQ(LUM_IPC_OBJECT::get_outstanding_lines(), 0);
}

TEST_F(ReadyScriptedEngine, BatchedTextShowsTheSameRowsInTheSameOrderAsLineByLine) {
  // Plain words, braced texts (nested braces, a tab, a leading dash, a form
  // feed), the empty text, an escaped text that cannot be batched, and a
  // message between them, all in one write of the engine.
  console->run_command(
      "raw echo_stdout  a1\\necho_stdout {b {c} d\\n}\\necho_stdout  {}\\necho_stdout  -h\\n"
      "echo_stdout {-x\ty\\n}\\necho_stdout {p\fq\\n}\\necho_stdout {{}\\n}\\n"
      "msg_post 0 warning VSTA-1 \"between\" \"\"\\n"
      "echo_stdout  \\{x\\ \\$y\\necho_stdout  z1\\necho_stdout  z2");
  ASSERT_TRUE(settle());
  std::vector<std::string> r = rows();
  ASSERT_FALSE(r.empty());
  r.erase(r.begin());  // the command
  EXPECT_EQ(r, (std::vector<std::string>{"a1", "b {c} d", "-h", "-x    y", "p", "q", "{}",
                                              "Warning (VSTA-1): between", "{x $y", "z1", "z2", ""}));
}

TEST_F(ConsoleWithScriptedEngine, WithoutAnEngineCommandsAreRecordedAndTheConsoleStaysUsable) {
  // As with "lum_dont_startup_sta": the console exists, no engine was started.
  console->run_command("first");
  console->run_command("second");
  EXPECT_FALSE(console->is_busy());
  EXPECT_EQ(console->pending_count(), 0u);
  EXPECT_EQ(rows(), (std::vector<std::string>{"first", "second"}));
  EXPECT_EQ(console->get_history(), (std::vector<std::string>{"second", "first"}));
  std::vector<std::string> result;
  console->run_command("hidden", &result);  // no engine: an internal error, no wait
  EXPECT_EQ(internal_errors, (std::vector<std::string>{"m_ipc_object != NULL"}));
}

TEST_F(ConsoleWithScriptedEngine, ShutdownOfAnEngineThatIgnoresExitDoesNotHang) {
  ASSERT_TRUE(start("--ignore-exit"));
  ASSERT_TRUE(settle());
  console->MwShutdown();  // "exit" ignored: end of input ends it
  EXPECT_EQ(console->get_ipc_object(), nullptr);
  EXPECT_EQ(received(), (std::vector<std::string>{"exit"}));
}

}  // namespace
