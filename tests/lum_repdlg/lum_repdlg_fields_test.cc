// The command lines the report dialogs compose from their fields.
#include <gtest/gtest.h>
#include <tcl.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/lum_report_dlg_fields.hh"

namespace {

// ---- report timing ---------------------------------------------------------------

struct TIMING_CASE {
  const char* what;
  std::function<void(LUM_REPORT_TIMING_FIELDS&)> edit;
  const char* command;
  bool console_after;
};

TEST(ReportTimingCommand, FollowsTheFieldsInItsFixedOrder) {
  const TIMING_CASE cases[] = {
      {"defaults", [](auto&) {}, "report_timing -setup -npaths 1 -panel_name \"Report Timing\"", false},
      {"empty npaths is written bare", [](auto& f) { f.npaths.clear(); },
       "report_timing -setup -npaths  -panel_name \"Report Timing\"", false},
      {"no panel and no file: console, no -stdout",
       [](auto& f) {
         f.output.to_panel = false;
         f.output.to_console = true;
       },
       "report_timing -setup -npaths 1", true},
      {"no output at all forces the console", [](auto& f) { f.output.to_panel = false; }, "report_timing -setup -npaths 1",
       true},
      {"panel, file and console",
       [](auto& f) {
         f.output.to_file = true;
         f.output.file_name = "/tmp/r.rpt";
         f.output.to_console = true;
       },
       "report_timing -setup -npaths 1 -panel_name \"Report Timing\" -file \"/tmp/r.rpt\" -stdout", true},
      {"append without a file name",
       [](auto& f) {
         f.output.to_file = true;
         f.output.file_mode = LUM_FILE_MODE_APPEND;
       },
       "report_timing -setup -npaths 1 -panel_name \"Report Timing\" -append", false},
      {"append mode is ignored while to file is off", [](auto& f) { f.output.file_mode = LUM_FILE_MODE_APPEND; },
       "report_timing -setup -npaths 1 -panel_name \"Report Timing\"", false},
      {"every field",
       [](auto& f) {
         f.from_clock = "clk_a";
         f.to_clock = "clk_b";
         f.from = "r1";
         f.thru = "u7/Y";
         f.to = "[get_pins {q_reg/D r_reg/D}]";
         f.setup = false;
         f.hold = f.recovery = f.removal = true;
         f.npaths = "10";
         f.less_than_slack = "-0.5";
         f.detail_level = LUM_DETAIL_LEVEL_SUMMARY;
         f.output.panel_name = "Mine";
       },
       "report_timing -from_clock clk_a -to_clock clk_b -from r1 -thru u7/Y -to [get_pins {q_reg/D r_reg/D}]"
       " -hold -recovery -removal -npaths 10 -less_than_slack -0.5 -summary -panel_name \"Mine\"",
       false},
      {"no analysis ticked", [](auto& f) { f.setup = false; }, "report_timing -npaths 1 -panel_name \"Report Timing\"",
       false},
  };
  for (const TIMING_CASE& c : cases) {
    SCOPED_TRACE(c.what);
    LUM_REPORT_TIMING_FIELDS fields;
    c.edit(fields);
    EXPECT_EQ(fields.compose(), c.command);
    fields.output.apply_output_rule();
    EXPECT_EQ(fields.output.to_console, c.console_after);
    // Composing again from the fields the dialog shows gives the same line.
    EXPECT_EQ(fields.compose(), c.command);
  }
}

TEST(ReportTimingCommand, DetailLevelAddsAndRemovesTheSummaryEnding) {
  LUM_REPORT_TIMING_FIELDS f;
  const struct {
    int level;
    const char* panel_before;
    const char* panel_after;
  } steps[] = {
      {LUM_DETAIL_LEVEL_SUMMARY, nullptr, "Report Timing Summary"},
      {LUM_DETAIL_LEVEL_FULL_PATH, nullptr, "Report Timing"},
      {LUM_DETAIL_LEVEL_SUMMARY, nullptr, "Report Timing Summary"},
      {LUM_DETAIL_LEVEL_SUMMARY, nullptr, "Report Timing Summary"},  // never twice
      {LUM_DETAIL_LEVEL_FULL_PATH, "A Summary of B", "A Summary of B"},  // only an ending is cut
      {LUM_DETAIL_LEVEL_SUMMARY, "A Summary of B", "A Summary of B"},    // held anywhere: kept
      {LUM_DETAIL_LEVEL_FULL_PATH, "Summary", "Summary"},                // no blank before it
  };
  for (const auto& step : steps) {
    if (step.panel_before) f.output.panel_name = step.panel_before;
    f.detail_level = step.level;
    f.detail_level_changed();
    EXPECT_EQ(f.output.panel_name, step.panel_after);
  }
  f.output.panel_name = "Report Timing";
  f.detail_level = LUM_DETAIL_LEVEL_SUMMARY;
  f.detail_level_changed();
  EXPECT_EQ(f.compose(), "report_timing -setup -npaths 1 -summary -panel_name \"Report Timing Summary\"");
}

// The composed line is run through a Tcl interpreter (as the engine runs it)
// with report_timing replaced by a recorder: what arrives is what was typed.
class ComposedLine : public testing::Test {
 protected:
  void SetUp() override {
    m_interp = Tcl_CreateInterp();
    Tcl_Eval(m_interp, "proc report_timing args { set ::got $args }");
    Tcl_Eval(m_interp, "proc report_min_pulse_width args { set ::got $args }");
    Tcl_Eval(m_interp, "proc create_slack_histogram args { set ::got $args }");
    Tcl_Eval(m_interp, "proc get_pins args { return [list pins $args] }");
  }
  void TearDown() override { Tcl_DeleteInterp(m_interp); }

  // The words the command received, or a failure.
  std::vector<std::string> words_of(const std::string& line) {
    EXPECT_EQ(Tcl_Eval(m_interp, line.c_str()), TCL_OK) << line << ": " << Tcl_GetStringResult(m_interp);
    return split(Tcl_GetVar(m_interp, "got", TCL_GLOBAL_ONLY));
  }
  std::vector<std::string> split(const char* list) {
    int count = 0;
    const char** items = nullptr;
    std::vector<std::string> out;
    if (list == nullptr || Tcl_SplitList(m_interp, list, &count, &items) != TCL_OK) return out;
    out.assign(items, items + count);
    Tcl_Free(reinterpret_cast<char*>(items));
    return out;
  }
  // The value after an option among the words.
  std::string value_of(const std::vector<std::string>& words, const std::string& option) {
    for (size_t i = 0; i + 1 < words.size(); i++)
      if (words[i] == option) return words[i + 1];
    return "<absent>";
  }

  Tcl_Interp* m_interp = nullptr;
};

TEST_F(ComposedLine, NamesPanelsAndFilesArriveIntact) {
  const struct {
    const char* typed;
    std::vector<std::string> names;  // the list the engine splits the value into
  } names[] = {
      {"a[3]", {"a[3]"}},
      {"$x", {"$x"}},
      {"a\"b", {"a\"b"}},
      {"c:\\dir\\r", {"c:\\dir\\r"}},
      {"u1/A  u2/B", {"u1/A", "u2/B"}},
      {"q{0}", {"q{0}"}},
      {"plain_name", {"plain_name"}},
  };
  for (const auto& n : names) {
    SCOPED_TRACE(n.typed);
    LUM_REPORT_TIMING_FIELDS f;
    f.from = f.thru = f.to = f.from_clock = n.typed;
    f.output.panel_name = std::string("P ") + n.typed;
    f.output.to_file = true;
    f.output.file_name = std::string("/tmp/") + n.typed;
    std::vector<std::string> words = words_of(f.compose());
    for (const char* option : {"-from", "-thru", "-to", "-from_clock"})
      EXPECT_EQ(split(value_of(words, option).c_str()), n.names) << option;
    EXPECT_EQ(value_of(words, "-panel_name"), f.output.panel_name);
    EXPECT_EQ(value_of(words, "-file"), f.output.file_name);
  }
  // A collection command from the name finder runs as such.
  LUM_REPORT_TIMING_FIELDS f;
  f.to = "[get_pins {a b}]";
  EXPECT_EQ(value_of(words_of(f.compose()), "-to"), "pins {{a b}}");
  // A count that is no number arrives as typed, for the engine to refuse.
  f.npaths = "[exit]";
  EXPECT_EQ(value_of(words_of(f.compose()), "-npaths"), "[exit]");

  LUM_MIN_PULSE_WIDTH_FIELDS pulse;
  pulse.targets = "r[1]/CLK";
  EXPECT_EQ(split(words_of(pulse.compose()).back().c_str()), std::vector<std::string>{"r[1]/CLK"});
  LUM_SLACK_HISTOGRAM_FIELDS histogram;
  histogram.clock_name = "clk$1";
  histogram.clock_changed();
  std::vector<std::string> words = words_of(histogram.compose());
  EXPECT_EQ(value_of(words, "-clock_name"), "clk$1");
  EXPECT_EQ(value_of(words, "-panel_name"), "Slack Histogram (clk$1)");
}

// ---- minimum pulse width ---------------------------------------------------------------

TEST(MinPulseWidthCommand, FollowsTheOutputRule) {
  const struct {
    const char* what;
    std::function<void(LUM_MIN_PULSE_WIDTH_FIELDS&)> edit;
    const char* command;
  } cases[] = {
      {"fresh", [](auto&) {}, "report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\""},
      {"panel off alone", [](auto& f) { f.output.to_panel = false; }, "report_min_pulse_width -nworst 10"},
      {"panel and console", [](auto& f) { f.output.to_console = true; },
       "report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\" -stdout"},
      {"append without file",
       [](auto& f) {
         f.output.to_panel = false;
         f.output.to_file = true;
         f.output.file_mode = LUM_FILE_MODE_APPEND;
       },
       "report_min_pulse_width -nworst 10 -append"},
      {"file with Tcl characters escaped in the quotes",
       [](auto& f) {
         f.output.to_file = true;
         f.output.file_name = "/tmp/a$b[c]\"d\\.rpt";
       },
       "report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\" -file \"/tmp/a\\$b\\[c\\]\\\"d\\\\.rpt\""},
      {"empty nworst and targets last",
       [](auto& f) {
         f.nworst.clear();
         f.targets = "r1/CLK";
       },
       "report_min_pulse_width -nworst  -panel_name \"Minimum Pulse Width\" r1/CLK"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    LUM_MIN_PULSE_WIDTH_FIELDS fields;
    c.edit(fields);
    EXPECT_EQ(fields.compose(), c.command);
  }
  LUM_MIN_PULSE_WIDTH_FIELDS alone;
  alone.output.to_panel = false;
  alone.output.apply_output_rule();
  EXPECT_TRUE(alone.output.to_console);
  EXPECT_EQ(alone.compose(), "report_min_pulse_width -nworst 10");
}

TEST(ReportOutput, EnablesFollowTheOutputChecks) {
  LUM_REPORT_OUTPUT output;
  EXPECT_TRUE(output.panel_name_enabled());
  EXPECT_FALSE(output.file_controls_enabled());
  EXPECT_FALSE(output.open_file_enabled());
  output.to_panel = false;
  output.to_file = true;
  EXPECT_FALSE(output.panel_name_enabled());
  EXPECT_TRUE(output.file_controls_enabled());
  EXPECT_FALSE(output.open_file_enabled());  // no name yet
  output.file_name = "x.rpt";
  EXPECT_TRUE(output.open_file_enabled());
}

// ---- slack histogram, net timing, timing netlist ------------------------------------------

TEST(SlackHistogramCommand, PanelNameFollowsTheClock) {
  LUM_SLACK_HISTOGRAM_FIELDS f;
  EXPECT_EQ(f.compose(), "create_slack_histogram");
  f.panel_name = "typed first";
  f.clock_name = "clk";
  f.clock_changed();
  EXPECT_EQ(f.panel_name, "Slack Histogram (clk)");
  EXPECT_EQ(f.compose(),
            "create_slack_histogram -clock_name clk -panel_name \"Slack Histogram (clk)\"");
  f.panel_name = "h1";
  f.max_slack = "2";
  f.min_slack = "-1";
  f.num_bins = "20";
  EXPECT_EQ(f.compose(),
            "create_slack_histogram -clock_name clk -max_slack 2 -min_slack -1 -num_bins 20 -panel_name h1");
}

TEST(NetTimingAndNetlistCommands, WriteOnlyWhatTheirModeAllows) {
  const struct {
    int mode;
    const char *delay, *fanout, *nets, *command;
  } nets[] = {
      {LUM_NET_TIMING_BY_DELAY, "10", "", "n", "report_net_timing -nworst_delay 10 n"},
      {LUM_NET_TIMING_BY_FANOUT, "10", "", "n", "report_net_timing n"},
      {LUM_NET_TIMING_BY_FANOUT, "", "4", "", "report_net_timing -nworst_fanout 4 "},
      {LUM_NET_TIMING_BY_DELAY, "", "4", "", "report_net_timing "},
  };
  for (const auto& c : nets) {
    LUM_NET_TIMING_FIELDS f{c.mode, c.delay, c.fanout, c.nets};
    EXPECT_EQ(f.compose(), c.command);
  }
  const struct {
    int kind, model;
    bool risefall;
    const char *grade, *command;
  } netlists[] = {
      {LUM_NETLIST_POST_MAP, LUM_DELAY_MODEL_SLOW, true, "6", "create_timing_netlist -post_map -speed 6  -risefall"},
      {LUM_NETLIST_POST_FIT, LUM_DELAY_MODEL_FAST, false, "6", "create_timing_netlist -fast_model"},
      {LUM_NETLIST_POST_ROUTE, LUM_DELAY_MODEL_SLOW, false, "", "create_timing_netlist"},
      {LUM_NETLIST_POST_FIT, LUM_DELAY_MODEL_SLOW, false, "035", "create_timing_netlist -speed 035 "},
  };
  for (const auto& c : netlists) {
    LUM_TIMING_NETLIST_FIELDS f{c.kind, c.model, c.risefall, c.grade};
    EXPECT_EQ(f.compose(), c.command);
    EXPECT_EQ(f.speed_grade_enabled(), c.model == LUM_DELAY_MODEL_SLOW);
  }
}

// ---- list paths ------------------------------------------------------------------------

TEST(ListPathCommand, EscapesNamesAndOrdersKinds) {
  LUM_LIST_PATHS_FIELDS f;
  EXPECT_EQ(f.compose(), "list_path -npaths 1");
  f.kinds[LUM_PATH_CLOCK_HOLD] = true;  // ticked first
  f.kinds[LUM_PATH_TCO] = true;
  f.from = "a[1]$\"\\";
  f.to = "q";
  f.clock_filter = "clk";
  f.file_name = "/tmp/p s.txt";
  f.npaths = "5";
  EXPECT_EQ(f.compose(),
            "list_path -npaths 5 -from a\\[1\\]\\$\\\"\\\\ -to q -clock_filter clk -file \"/tmp/p s.txt\" -tco "
            "-clock_hold");
  LUM_LIST_PATHS_FIELDS all;
  for (bool& kind : all.kinds) kind = true;
  EXPECT_EQ(all.compose(),
            "list_path -npaths 1 -tsu -th -tco -tpd -min_tco -min_tpd -clock_setup -clock_hold -clock_setup_io "
            "-clock_hold_io");
}

}  // namespace
