// The engine link against the real engine, vexa_sta --ipc_sh, started from
// the program's own directory exactly as the front end starts it.
#include <gtest/gtest.h>

#include <QSignalSpy>

#include <csignal>

#include "lum_test_support.hh"

namespace {

class ConsoleWithEngine : public LUM_CONSOLE_TEST {
 protected:
  void SetUp() override {
    LUM_CONSOLE_TEST::SetUp();
    ASSERT_TRUE(console->startup()) << console->get_engine_command_line();
    ASSERT_TRUE(settle());
  }
};

TEST_F(ConsoleWithEngine, StartsFromTheModuleDirectoryAndShowsTheFirstPrompt) {
  EXPECT_NE(console->get_engine_command_line().find("vexa_sta\" --ipc_sh"), std::string::npos);
  ASSERT_EQ(console->get_model()->row_count(), 1);
  EXPECT_EQ(console->get_model()->row_type(0), LUM_KRO_OUTPUT_TCL_PROMPT);
  EXPECT_EQ(frame.status_panes[1], "Ready");
}

TEST_F(ConsoleWithEngine, CommandsQueuedWhileBusyRunInOrder) {
  console->run_command("after 300; puts first");
  console->run_command("puts {second line}");
  console->run_command("puts \"third\\tcolumn\"");
  EXPECT_TRUE(console->is_busy());
  EXPECT_EQ(console->pending_count(), 2u);
  ASSERT_TRUE(settle());
  EXPECT_EQ(rows(), (std::vector<std::string>{"after 300; puts first", "first", "puts {second line}", "second line",
                                              "puts \"third\\tcolumn\"", "third    column", ""}));
}

TEST_F(ConsoleWithEngine, HiddenCommandReturnsExactNamesWithBracketsAndBlanks) {
  std::vector<std::string> names;
  console->run_command("foreach n {clk {data in} {bus[3]} {a$b} {} \\{open {odd\\\\} x\\\\} {puts $n}", &names);
  EXPECT_EQ(names, (std::vector<std::string>{"clk", "data in", "bus[3]", "a$b", "", "{open", "odd\\\\", "x\\"}));
  EXPECT_EQ(console->get_model()->row_count(), 1);
  EXPECT_TRUE(console->get_history().empty());
  // The console goes on normally afterwards.
  console->run_command("puts after");
  ASSERT_TRUE(settle());
  EXPECT_EQ(rows().at(1), "after");
}

TEST_F(ConsoleWithEngine, ErrorsBecomeMessageRowsWithTheirDetail) {
  console->run_command("no_such_command");
  ASSERT_TRUE(settle());
  LUM_CONSOLE_MODEL* model = console->get_model();
  ASSERT_GE(model->row_count(), 4);
  EXPECT_EQ(model->row_kind(1), static_cast<int>(MSG_KIND::ERROR));
  EXPECT_NE(rows()[1].find("invalid command name \"no_such_command\""), std::string::npos) << rows()[1];
  EXPECT_EQ(model->row_level(2), 1);
  EXPECT_EQ(model->row_type(model->row_count() - 1), LUM_KRO_OUTPUT_TCL_PROMPT);
}

TEST_F(ConsoleWithEngine, ShutdownEndsTheEngineAndJoinsTheReader) {
  pid_t pid = console->get_ipc_object()->get_pid();
  ASSERT_GT(pid, 0);
  QSignalSpy exited(console.get(), &LUM_CONSOLE_CTRL::kro_exited);
  EXPECT_TRUE(console->MwShutdown());
  EXPECT_EQ(console->get_ipc_object(), nullptr);
  EXPECT_FALSE(console->is_kro_running());
  EXPECT_NE(::kill(pid, 0), 0);  // reaped: the process is gone
  EXPECT_TRUE(console->MwShutdown());
  lum_pump_until([] { return false; }, 1200);
  EXPECT_EQ(exited.count(), 0);  // a shutdown is not an engine exit
}

}  // namespace
