// What the front end keeps of an engine that died: the reason, the last error
// lines, and the constraint commands picked out of the command lines it sent.
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "engine/lum_engine_end.hh"

namespace {

using WORDS = std::vector<std::string>;

TEST(LumEngineEnd, ReasonNamesTheStatusOrTheSignal) {
  EXPECT_EQ(lum_engine_end_reason({3, 0, {}}), "it exited with status 3");
  EXPECT_EQ(lum_engine_end_reason({0, 0, {}}), "it exited with status 0");
  const std::string killed = lum_engine_end_reason({-1, SIGKILL, {}});
  EXPECT_EQ(killed.rfind("it was ended by signal 9 (", 0), 0u) << killed;
  EXPECT_EQ(lum_engine_end_reason({-1, 0, {}}), "it ended");
}

TEST(LumEngineEnd, LastLinesSkipBlankOnesAndKeepTheirOrder) {
  EXPECT_EQ(lum_last_lines("a\nb\nc\nd\n", 2), (WORDS{"c", "d"}));
  EXPECT_EQ(lum_last_lines("a\r\n\n  \nb", 5), (WORDS{"a", "b"}));
  EXPECT_EQ(lum_last_lines("", 3), WORDS{});
  EXPECT_EQ(lum_last_lines("only", 3), WORDS{"only"});
}

TEST(LumEngineEnd, ConstraintCommandsArePickedOutOfEachSentLine) {
  const struct {
    std::string line;
    WORDS expected;
  } cases[] = {
      {"create_clock -name clk -period 10 [get_ports clk]\n", {"create_clock -name clk -period 10 [get_ports clk]"}},
      {"report_timing -setup", {}},
      {"puts hello; set_input_delay 1 -clock clk [get_ports a];  report_clocks",
       {"set_input_delay 1 -clock clk [get_ports a]"}},
      // Braces spanning lines stay one command.
      {"set_false_path -from {a\nb} -to c\nremove_clock -name x", {"set_false_path -from {a\nb} -to c", "remove_clock -name x"}},
      {"create_generated_clock -source clk -divide_by 2 -name g [get_pins u1/q]",
       {"create_generated_clock -source clk -divide_by 2 -name g [get_pins u1/q]"}},
      {"# create_clock -period 1", {}},        // a comment
      {"[set x create_clock] -period 1", {}},  // not a literal command name
      {"create_clock -period {1", {}},         // not well-formed
      {"", {}},
  };
  for (const auto& c : cases) EXPECT_EQ(lum_constraint_commands(c.line), c.expected) << c.line;
}

TEST(LumEngineEnd, SessionSdcHoldsEveryCommandInOrderAfterAComment) {
  const std::string text = lum_session_sdc_text({"create_clock -period 5 -name a", "set_max_delay 3 -to b"});
  EXPECT_EQ(text.substr(text.find("\ncreate_clock")), "\ncreate_clock -period 5 -name a\nset_max_delay 3 -to b\n");
  EXPECT_EQ(text[0], '#');
}

}  // namespace
