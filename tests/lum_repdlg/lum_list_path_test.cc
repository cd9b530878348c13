// list_path without an engine: its arguments, the engine scripts of the path
// kinds (run in a Tcl interpreter whose report_timing records its words) and
// the counting of listed paths.
#include <gtest/gtest.h>
#include <tcl.h>

#include <string>
#include <vector>

#include "dialogs/lum_list_path.hh"
#include "dialogs/lum_report_dlg_fields.hh"

namespace {

TEST(ListPathArguments, AreParsedOrRefusedWithTheirName) {
  LUM_LIST_PATH_REQUEST r;
  std::string error;
  ASSERT_TRUE(lum_parse_list_path({"-clock_hold", "-npaths", "7", "-from", "a b", "-tco", "-file", "/tmp/x"}, &r, &error))
      << error;
  EXPECT_EQ(r.npaths, "7");
  EXPECT_EQ(r.from, "a b");
  EXPECT_EQ(r.file, "/tmp/x");
  EXPECT_EQ(r.kinds, (std::vector<int>{LUM_PATH_TCO, LUM_PATH_CLOCK_HOLD}));  // option order, not typing order

  const struct {
    std::vector<std::string> words;
    const char* message;
  } bad[] = {
      {{"-npaths"}, "-npaths needs a value"},
      {{"-npaths", "0"}, "-npaths needs a positive integer"},
      {{"-npaths", ""}, "-npaths needs a positive integer"},
      {{"-npaths", "x"}, "-npaths needs a positive integer"},
      {{"-setup"}, "unknown option or argument \"-setup\""},
      {{"stray"}, "unknown option or argument \"stray\""},
  };
  for (const auto& b : bad) {
    LUM_LIST_PATH_REQUEST request;
    error.clear();
    EXPECT_FALSE(lum_parse_list_path(b.words, &request, &error));
    EXPECT_NE(error.find(b.message), std::string::npos) << error;
    EXPECT_EQ(error.rfind("list_path:", 0), 0u) << error;
  }
}

// The scripts run against stand-ins of the engine's commands: the
// collections answer with named lists, report_timing records its words.
class KindScripts : public testing::Test {
 protected:
  void SetUp() override {
    m_interp = Tcl_CreateInterp();
    const char* stand_ins =
        "proc all_inputs args {return $::inputs}\n"
        "proc all_outputs args {return $::outputs}\n"
        "proc all_registers args {if {$args eq {-clock_pins}} {return {r1/CLK}} {return {r1/D}}}\n"
        "proc report_timing args {lappend ::calls $args}\n"
        "rename open real_open; proc open args {lappend ::opened $args; return fake}\n"
        "rename close real_close; proc close args {}\n"
        "set inputs {in1}; set outputs {out1}; set calls {}; set opened {}\n";
    ASSERT_EQ(Tcl_Eval(m_interp, stand_ins), TCL_OK);
  }
  void TearDown() override { Tcl_DeleteInterp(m_interp); }

  // The words of each report_timing the scripts ran.
  std::vector<std::string> run(const LUM_LIST_PATH_REQUEST& request) {
    Tcl_Eval(m_interp, "set calls {}");
    for (const std::string& script : lum_list_path_scripts(request)) {
      EXPECT_EQ(Tcl_Eval(m_interp, script.c_str()), TCL_OK) << script << ": " << Tcl_GetStringResult(m_interp);
    }
    int count = 0;
    Tcl_Obj** items = nullptr;
    Tcl_ListObjGetElements(m_interp, Tcl_GetVar2Ex(m_interp, "calls", nullptr, TCL_GLOBAL_ONLY), &count, &items);
    std::vector<std::string> calls;
    for (int i = 0; i < count; i++) calls.push_back(Tcl_GetString(items[i]));
    return calls;
  }

  Tcl_Interp* m_interp = nullptr;
};

TEST_F(KindScripts, MapEachKindToItsAnalysisAndEndPoints) {
  const struct {
    int kind;
    const char* call;
  } kinds[] = {
      {LUM_PATH_TSU, "-setup -from in1 -to r1/D -npaths 1 -stdout"},
      {LUM_PATH_TH, "-hold -from in1 -to r1/D -npaths 1 -stdout"},
      {LUM_PATH_TCO, "-setup -from r1/CLK -to out1 -npaths 1 -stdout"},
      {LUM_PATH_TPD, "-setup -from in1 -to out1 -npaths 1 -stdout"},
      {LUM_PATH_MIN_TCO, "-hold -from r1/CLK -to out1 -npaths 1 -stdout"},
      {LUM_PATH_MIN_TPD, "-hold -from in1 -to out1 -npaths 1 -stdout"},
      {LUM_PATH_CLOCK_SETUP, "-setup -from r1/CLK -to r1/D -npaths 1 -stdout"},
      {LUM_PATH_CLOCK_HOLD, "-hold -from r1/CLK -to r1/D -npaths 1 -stdout"},
      {LUM_PATH_CLOCK_SETUP_IO, "-setup -npaths 1 -stdout"},
      {LUM_PATH_CLOCK_HOLD_IO, "-hold -npaths 1 -stdout"},
  };
  for (const auto& k : kinds) {
    SCOPED_TRACE(lum_path_kind_name(k.kind));
    LUM_LIST_PATH_REQUEST request;
    request.kinds = {k.kind};
    EXPECT_EQ(run(request), std::vector<std::string>{k.call});
  }
  // No kind: the setup paths of the whole design.
  EXPECT_EQ(run(LUM_LIST_PATH_REQUEST{}), std::vector<std::string>{"-setup -npaths 1 -stdout"});
}

TEST_F(KindScripts, GivenNamesReplaceEndPointsAndEmptyCollectionsSkipTheKind) {
  LUM_LIST_PATH_REQUEST request;
  request.kinds = {LUM_PATH_TCO, LUM_PATH_TSU};
  request.from = "a[1] $b";
  request.clock_filter = "clk";
  request.npaths = "4";
  request.file = "/tmp/p$[1].txt";
  std::vector<std::string> calls = run(request);
  ASSERT_EQ(calls.size(), 2u);
  int count = 0;
  const char** words = nullptr;
  ASSERT_EQ(Tcl_SplitList(m_interp, calls[0].c_str(), &count, &words), TCL_OK);
  std::vector<std::string> w(words, words + count);
  Tcl_Free(reinterpret_cast<char*>(words));
  EXPECT_EQ(w, (std::vector<std::string>{"-setup", "-from", "{a[1]} {$b}", "-to", "out1", "-to_clock", "clk", "-npaths",
                                         "4", "-stdout", "-file", "/tmp/p$[1].txt", "-append"}));
  // The file is emptied once, before the first kind.
  ASSERT_EQ(Tcl_Eval(m_interp, "expr {[llength $opened] == 1 && [lindex $opened 0 0] eq {/tmp/p$[1].txt} && "
                               "[lindex $opened 0 1] eq {w}}"),
            TCL_OK);
  EXPECT_STREQ(Tcl_GetStringResult(m_interp), "1") << Tcl_GetVar(m_interp, "opened", TCL_GLOBAL_ONLY);

  // A design without output ports has no tco paths: that kind is skipped.
  Tcl_Eval(m_interp, "set outputs {}");
  request.from.clear();
  request.file.clear();
  EXPECT_EQ(run(request), std::vector<std::string>{"-setup -from in1 -to r1/D -to_clock clk -npaths 4 -stdout"});
}

TEST_F(KindScripts, AnEngineErrorIsPrintedAfterTheFailureLine) {
  Tcl_Eval(m_interp, "proc report_timing args {error {report_timing: -from: no pin, port or cell matches \"x\"}}");
  // What the script prints is gathered by a stand-in of puts.
  Tcl_Eval(m_interp, "rename puts real_puts; proc puts args {lappend ::printed [lindex $args end]}");
  LUM_LIST_PATH_REQUEST request;
  request.from = "x";
  run(request);
  const char* printed = Tcl_GetVar(m_interp, "printed", TCL_GLOBAL_ONLY);
  ASSERT_NE(printed, nullptr);
  EXPECT_EQ(std::string(printed),
            std::string(LUM_LIST_PATH_FAILED) + " {report_timing: -from: no pin, port or cell matches \"x\"}");
}

TEST(ListedPaths, AreTheRowsOfTheSummaryTable) {
  const std::vector<std::string> two = {"Summary of Paths", "================", "Slack  From Node", "---------------",
                                        "-1.0   a",         "-0.5   b",         "",                 "Path 1: slack -1.0",
                                        "Total  Incr",      "-----------",      "0.1    0.1"};
  EXPECT_EQ(lum_count_listed_paths(two), 2);
  std::vector<std::string> hidden_blank = two;
  hidden_blank[6] = "{}";  // a blank line as a hidden command receives it
  EXPECT_EQ(lum_count_listed_paths(hidden_blank), 2);
  EXPECT_EQ(lum_count_listed_paths({"Summary of Paths", "================", "Slack", "-----", "No paths."}), 0);
  EXPECT_EQ(lum_count_listed_paths({}), 0);
}

}  // namespace
