// Tab completion of the console's edit line: the word under the cursor, the
// candidates by position (command, option, object), their common part, and
// the reading of the engine's answer to the hidden query.
#include <gtest/gtest.h>

#include "engine/lum_completion.hh"

namespace {

LUM_COMPLETION_SOURCE source() {
  LUM_COMPLETION_SOURCE s;
  s.commands["report_checks"] = {"-path_delay", "-from", "-to", "-fields"};
  s.commands["report_check_types"] = {"-max_slew", "-violators"};
  s.commands["create_clock"] = {"-name", "-period", "-waveform", "-add"};
  s.commands["read_sdc"] = {"-echo"};
  s.objects = {"clk", "clk_fast", "data_in[0]", "rst"};
  return s;
}

using V = std::vector<std::string>;

TEST(ConsoleCompletion, TheWordsPlaceDecidesWhatItCompletesTo) {
  struct ROW {
    const char* line;
    int cursor;  // -1: end of line
    V candidates;
    const char* prefix;
    const char* word;
  };
  const ROW rows[] = {
      {"report_ch", -1, {"report_check_types", "report_checks"}, "report_check", "report_ch"},
      {"  cre", -1, {"create_clock"}, "create_clock", "cre"},
      {"create_clock -p", -1, {"-period"}, "-period", "-p"},
      {"create_clock -", -1, {"-add", "-name", "-period", "-waveform"}, "-", "-"},
      {"create_clock -period 10 cl", -1, {"clk", "clk_fast"}, "clk", "cl"},
      {"puts [report_che", -1, {"report_check_types", "report_checks"}, "report_check", "report_che"},
      {"read_sdc x.sdc; create_c", -1, {"create_clock"}, "create_clock", "create_c"},
      {"report_checks -from {data", -1, {"data_in[0]"}, "data_in[0]", "data"},
      {"unknown_cmd -p", -1, {}, "", "-p"},          // options of an unknown command: none
      {"create_clock -period 5 zz", -1, {}, "", "zz"},
      {"re", 1, {"read_sdc", "report_check_types", "report_checks"}, "re", "r"},  // cursor inside the word
  };
  for (const ROW& row : rows) {
    const std::string line = row.line;
    const int cursor = row.cursor < 0 ? static_cast<int>(line.size()) : row.cursor;
    const LUM_COMPLETION c = lum_complete(line, cursor, source());
    EXPECT_EQ(c.candidates, row.candidates) << line;
    EXPECT_EQ(c.common_prefix, row.prefix) << line;
    EXPECT_EQ(c.word, row.word) << line;
  }
  // The word replaced runs to its end even with the cursor inside it.
  const LUM_COMPLETION inside = lum_complete("create_clock -per 3", 15, source());
  EXPECT_EQ(inside.start, 13);
  EXPECT_EQ(inside.end, 17);
  EXPECT_EQ(inside.candidates, V{"-period"});
  EXPECT_EQ(lum_common_prefix({}), "");
  EXPECT_EQ(lum_common_prefix({"abc"}), "abc");
}

TEST(ConsoleCompletion, TheEnginesAnswerIsReadAndOddLinesAreSkipped) {
  const LUM_COMPLETION_SOURCE s = lum_read_completion_lines(
      {"C report_checks -from -to", "C all_clocks", "O clk", "", "X nonsense here", "O", "O data_in[3]"});
  ASSERT_EQ(s.commands.size(), 2u);
  EXPECT_EQ(s.commands.at("report_checks"), (V{"-from", "-to"}));
  EXPECT_TRUE(s.commands.at("all_clocks").empty());
  EXPECT_EQ(s.objects, (V{"clk", "data_in[3]"}));
}

}  // namespace
