// The Tasks pane's steps without a window: the steps file read into rows, the
// mistakes a file can hold, the status rules, and the queue that runs a
// step's prerequisites first.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <fstream>
#include <string>
#include <vector>

#include "frame/lum_steps.hh"
#include "platform/gen.hh"

namespace {

std::string wrap(const std::string& steps) { return "<tasks>" + steps + "</tasks>"; }

TEST(StepsFile, EveryElementOfAStepLandsInItsRecord) {
  const LUM_STEPS_FILE file = lum_parse_steps(wrap(R"(
    <step>
      <name>Update</name><bold/><properties/>
      <action type="tcl" run_in="lum">puts hi</action>
      <info>first\nsecond \x</info>
      <color RGB="1A2B3C"/>
      <icon type="radiobutton_filled"/>
      <item_bitmap>task_start</item_bitmap>
      <status_ok_if type="report_panel_exists">Summary (Setup)</status_ok_if>
      <id>upd</id><prereq>open</prereq><collapsed>true</collapsed>
    </step>)"), "t.xml");
  ASSERT_EQ(file.rows.size(), 1u);
  const LUM_STEP_ROW& row = file.rows[0];
  EXPECT_EQ(row.name, "Update");
  EXPECT_TRUE(row.bold);
  EXPECT_TRUE(row.properties);
  EXPECT_TRUE(row.collapsed);
  EXPECT_TRUE(row.has_color);
  EXPECT_EQ(row.color, 0x1A2B3Cu);
  EXPECT_EQ(row.picture, LUM_STEP_PICTURE::RADIOBUTTON_FILLED);
  EXPECT_EQ(row.bitmap, LUM_STEP_BITMAP::TASK_START);
  EXPECT_EQ(row.param.action_type, LUM_STEP_ACTION_TCL);
  EXPECT_EQ(row.param.run_in, LUM_STEP_RUN_IN_LUM);
  EXPECT_EQ(row.param.action_text, "puts hi");
  EXPECT_EQ(row.param.info, "first\nsecond \\x");
  EXPECT_EQ(row.param.status_kind, LUM_STEP_STATUS_REPORT_PANEL);
  EXPECT_EQ(row.param.status_condition, "Summary (Setup)");
  EXPECT_EQ(row.param.id, "upd");
  EXPECT_EQ(row.param.prereq, "open");
}

TEST(StepsFile, ActionKindsAndWhereTclRuns) {
  struct CASE {
    const char* action;
    int type, run_in;
    std::vector<std::string> ids;
  };
  const std::vector<CASE> cases = {
      {R"(<action type="menu">Open Project...</action>)", LUM_STEP_ACTION_MENU, 0, {}},
      {R"(<action type="tcl" run_in="sta">read_sdc</action>)", LUM_STEP_ACTION_TCL, LUM_STEP_RUN_IN_STA, {}},
      {R"(<action type="tcl">read_sdc</action>)", LUM_STEP_ACTION_TCL, LUM_STEP_RUN_IN_UNSPECIFIED, {}},
      {R"(<action type="menu" run_in="lum">x</action>)", LUM_STEP_ACTION_MENU, 0, {}},  // run_in is for tcl only
      {R"(<action type="open_report_panel">Clocks</action>)", LUM_STEP_ACTION_OPEN_REPORT_PANEL, 0, {}},
      {R"(<action type="run_steps"><id>a</id><id>b</id></action>)", LUM_STEP_ACTION_RUN_STEPS, 0, {"a", "b"}},
      {R"(<action type="Menu">x</action>)", LUM_STEP_ACTION_NONE, 0, {}},
      {R"(<action>x</action>)", LUM_STEP_ACTION_NONE, 0, {}},
  };
  for (const CASE& c : cases) {
    const LUM_STEPS_FILE file = lum_parse_steps(wrap(std::string("<step><name>s</name>") + c.action + "</step>"), "t");
    ASSERT_EQ(file.rows.size(), 1u) << c.action;
    EXPECT_EQ(file.rows[0].param.action_type, c.type) << c.action;
    EXPECT_EQ(file.rows[0].param.run_in, c.run_in) << c.action;
    EXPECT_EQ(file.rows[0].param.run_step_ids, c.ids) << c.action;
  }
}

TEST(StepsFile, LevelsOrderSkippedElementsAndCarriedPictures) {
  const LUM_STEPS_FILE file = lum_parse_steps(wrap(R"(
    <step><name>A</name><icon type="checkbox_checked"/>
      <substeps>
        <step><name>A1</name></step>
        <step><name>A2</name><icon type="checkbox_unchecked"/>
          <substeps><step><name>A2x</name></step></substeps></step>
        <step><name>A3</name><icon type="no such picture"/></step>
      </substeps></step>
    <note>not a step</note>
    <step><info>no name: no row</info></step>
    <step><name>B</name><color RGB="12345"/><item_bitmap>other</item_bitmap></step>)"),
                                              "t");
  std::vector<std::string> names;
  std::vector<int> levels;
  for (const LUM_STEP_ROW& row : file.rows) {
    names.push_back(row.name);
    levels.push_back(row.level);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"A", "A1", "A2", "A2x", "A3", "B"}));
  EXPECT_EQ(levels, (std::vector<int>{0, 1, 1, 2, 1, 0}));
  // A picture holds for the later steps of the same list until another is named.
  EXPECT_EQ(file.rows[1].picture, LUM_STEP_PICTURE::BLANK);
  EXPECT_EQ(file.rows[2].picture, LUM_STEP_PICTURE::CHECKBOX_UNCHECKED);
  EXPECT_EQ(file.rows[3].picture, LUM_STEP_PICTURE::BLANK);
  EXPECT_EQ(file.rows[4].picture, LUM_STEP_PICTURE::CHECKBOX_UNCHECKED);
  EXPECT_EQ(file.rows[5].picture, LUM_STEP_PICTURE::CHECKBOX_CHECKED);
  EXPECT_FALSE(file.rows[5].has_color) << "five digits are no colour";
  EXPECT_EQ(file.rows[5].bitmap, LUM_STEP_BITMAP::NONE);
  EXPECT_TRUE(file.error.empty());
  EXPECT_TRUE(file.problems.empty());
}

TEST(StepsFile, UnusableFilesSayWhyInOneLine) {
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  const std::string missing = dir.filePath("lumex_tasks.xml").toStdString();
  LUM_STEPS_FILE file = lum_load_steps_file(missing);
  EXPECT_TRUE(file.rows.empty());
  EXPECT_NE(file.error.find("lumex_tasks.xml could not be read"), std::string::npos) << file.error;
  EXPECT_EQ(file.error.find('\n'), std::string::npos);

  std::ofstream(missing) << "<tasks><step><name>A</name></step>\n<step>";
  file = lum_load_steps_file(missing);
  EXPECT_TRUE(file.rows.empty());
  EXPECT_NE(file.error.find("lumex_tasks.xml is not valid XML"), std::string::npos) << file.error;

  file = lum_parse_steps("<?xml version=\"1.0\"?><!-- nothing -->", "x.xml");
  EXPECT_TRUE(file.rows.empty());
  EXPECT_NE(file.error.find("x.xml holds no element"), std::string::npos) << file.error;
}

TEST(StepsFile, BadPrerequisitesAreReportedOnceEach) {
  const LUM_STEPS_FILE file = lum_parse_steps(wrap(R"(
    <step><name>A</name><id>a</id><prereq>c</prereq></step>
    <step><name>B</name><id>b</id><prereq>a</prereq></step>
    <step><name>C</name><id>c</id><prereq>b</prereq></step>
    <step><name>D</name><id>d</id><prereq>nowhere</prereq></step>
    <step><name>E</name><id>e</id><prereq>e</prereq></step>
    <step><name>F</name><action type="run_steps"><id>a</id><id>ghost</id></action></step>)"),
                                              "t.xml");
  EXPECT_EQ(file.rows.size(), 6u);
  const std::vector<std::string> expected = {
      "t.xml: step \"A\": prerequisite \"c\" is not above it and is never run first",
      "t.xml: step \"D\": prerequisite \"nowhere\" names no step",
      "t.xml: step \"E\": prerequisite \"e\" is not above it and is never run first",
      "t.xml: step \"F\": run_steps id \"ghost\" names no step",
      "t.xml: prerequisites form a cycle: \"a\" -> \"c\" -> \"b\" -> \"a\"",
      "t.xml: prerequisites form a cycle: \"e\" -> \"e\"",
  };
  EXPECT_EQ(file.problems, expected);
}

TEST(StepsFile, TheShippedFlowIsCleanAndChainsTheSummaryBackToTheProject) {
  const LUM_STEPS_FILE file = lum_load_steps_file(gen_get_common_misc_fullpath("lumex_tasks.xml"));
  ASSERT_TRUE(file.error.empty()) << file.error;
  EXPECT_TRUE(file.problems.empty()) << file.problems.front();
  int row = -1;
  for (int i = 0; i < static_cast<int>(file.rows.size()); ++i)
    if (file.rows[i].name == "Report Setup Summary") row = i;
  ASSERT_GE(row, 0);
  std::vector<std::string> chain;
  for (int at = lum_find_prereq_row(file.rows, row); at >= 0; at = lum_find_prereq_row(file.rows, at))
    chain.push_back(file.rows[at].param.status_condition);
  EXPECT_EQ(chain, (std::vector<std::string>{"netlist_is_up_to_date", "sdc_file_is_loaded", "netlist_is_created",
                                             "project_is_open"}));
}

TEST(StepStatus, FlagsPanelsAndEnabling) {
  auto param = [](int kind, const std::string& condition) {
    LUM_STEP_PARAM p;
    p.status_kind = kind;
    p.status_condition = condition;
    return p;
  };
  auto panels = [](const std::string& name) { return name == "Summary (Setup)"; };
  struct CASE {
    LUM_STEP_PARAM param;
    LUM_STEP_FLAGS flags;
    int status;
    bool enabled;
  };
  const LUM_STEP_FLAGS open{'1', '1', '0', 'e', false};
  const LUM_STEP_FLAGS open_busy{'1', '1', '1', '1', true};
  const LUM_STEP_FLAGS closed{'0', '0', '0', '0', false};
  const std::vector<CASE> cases = {
      {param(0, "project_is_open"), open, LUM_STEP_OK, true},
      {param(0, "project_is_open"), closed, LUM_STEP_NOT_DONE, true},  // opening needs no project
      {param(0, "project_is_open"), open_busy, LUM_STEP_OK, false},
      {param(0, "netlist_is_created"), open, LUM_STEP_OK, true},
      {param(0, "netlist_is_created"), closed, LUM_STEP_NOT_DONE, false},
      {param(0, "sdc_file_is_loaded"), open, LUM_STEP_NOT_DONE, true},
      {param(0, "netlist_is_up_to_date"), open, LUM_STEP_ERROR, true},
      {param(0, "netlist_is_up_to_date"), open_busy, LUM_STEP_OK, false},
      {param(0, "no_such_flag"), open, LUM_STEP_NOT_DONE, true},
      {param(0, ""), open, LUM_STEP_NOT_DONE, true},
      {param(1, "Summary (Setup)"), open_busy, LUM_STEP_OK, false},
      {param(1, "Summary (Setup)"), open, LUM_STEP_OUT_OF_DATE, true},
      {param(1, "Summary (Hold)"), open, LUM_STEP_NOT_DONE, true},
  };
  for (const CASE& c : cases) {
    const LUM_STEP_STATE state = lum_step_state(&c.param, c.flags, panels);
    EXPECT_EQ(state.status, c.status) << c.param.status_condition << " busy " << c.flags.busy;
    EXPECT_EQ(state.enabled, c.enabled) << c.param.status_condition << " busy " << c.flags.busy;
  }
  EXPECT_EQ(lum_step_state(nullptr, open, panels).status, LUM_STEP_NOT_DONE);
}

TEST(StepMenuText, AmpersandsAndAcceleratorsAreIgnored) {
  EXPECT_TRUE(lum_menu_text_matches("Report &Setup Summary", "Report Setup Summary"));
  EXPECT_TRUE(lum_menu_text_matches("&Open Project...\tCtrl+O", "Open Project..."));
  EXPECT_TRUE(lum_menu_text_matches("Open Project...", "&Open Project..."));
  EXPECT_FALSE(lum_menu_text_matches("\tOpen", "Open")) << "a leading tab is kept";
  EXPECT_FALSE(lum_menu_text_matches("report setup summary", "Report Setup Summary"));
  EXPECT_FALSE(lum_menu_text_matches("Report Setup", "Report Setup Summary"));
}

// A flow of four steps with a recorder for what the runner does.
class StepRunner : public ::testing::Test {
 protected:
  void SetUp() override {
    m_rows = lum_parse_steps(wrap(R"(
      <step><name>Open</name><action type="menu">Open Project...</action><id>open</id>
            <status_ok_if>project_is_open</status_ok_if></step>
      <step><name>Netlist</name><action type="tcl" run_in="sta">create_timing_netlist</action><id>net</id>
            <prereq>open</prereq><status_ok_if>netlist_is_created</status_ok_if></step>
      <step><name>Update</name><action type="tcl">update_timing_netlist</action><id>upd</id>
            <prereq>net</prereq><status_ok_if>netlist_is_up_to_date</status_ok_if></step>
      <step><name>Summary</name><action type="menu">Report Setup Summary</action><prereq>upd</prereq>
            <status_ok_if type="report_panel_exists">Summary (Setup)</status_ok_if></step>
      <step><name>Panel</name><action type="open_report_panel">Clocks Summary</action><prereq>upd</prereq></step>
      <step><name>Group</name><substeps><step><name>Inner</name><prereq>later</prereq>
            <action type="tcl" run_in="lum">lum_echo_stdout hi</action></step></substeps></step>
      <step><name>Later</name><id>later</id><status_ok_if>sdc_file_is_loaded</status_ok_if></step>)"),
                             "t")
                 .rows;
    m_enabled.assign(m_rows.size(), true);
    LUM_STEP_RUNNER::ACTIONS actions;
    actions.run_menu = [this](const std::string& text) { m_log.push_back("menu " + text); };
    actions.run_in_engine = [this](const std::string& text) { m_log.push_back("sta " + text); };
    actions.run_in_front_end = [this](const std::string& text) { m_log.push_back("lum " + text); };
    actions.panel_exists = [this](const std::string& name) { return name == m_panel; };
    actions.open_panel = [this](const std::string& name) { m_log.push_back("open " + name); };
    actions.has_children = [](int row) { return row == 5; };
    actions.toggle_expansion = [this](int row) { m_log.push_back("toggle " + std::to_string(row)); };
    actions.prereq_failed = [this](const std::string& condition) { m_log.push_back("failed " + condition); };
    m_runner = std::make_unique<LUM_STEP_RUNNER>(&m_rows, &m_enabled, actions);
  }
  void set_status(int row, int status) { m_rows[row].param.status = status; }

  std::vector<LUM_STEP_ROW> m_rows;
  std::vector<bool> m_enabled;
  std::vector<std::string> m_log;
  std::string m_panel;
  std::unique_ptr<LUM_STEP_RUNNER> m_runner;
};

TEST_F(StepRunner, ALateStepRunsItsUnfinishedPrerequisitesFirstOnePerPrompt) {
  set_status(0, LUM_STEP_OK);
  m_runner->start(3);
  EXPECT_EQ(m_log, std::vector<std::string>{"sta create_timing_netlist"});
  EXPECT_EQ(m_runner->queue(), (std::deque<int>{2, 3}));
  set_status(1, LUM_STEP_OK);  // the prompt after the netlist
  m_runner->start_next_task();
  set_status(2, LUM_STEP_OK);
  m_runner->start_next_task();
  m_runner->start_next_task();  // nothing left: no effect
  EXPECT_EQ(m_log, (std::vector<std::string>{"sta create_timing_netlist", "sta update_timing_netlist",
                                             "menu Report Setup Summary"}));
  EXPECT_EQ(m_runner->last_started(), 3);
  EXPECT_TRUE(m_runner->queue().empty());
}

TEST_F(StepRunner, AFailedPrerequisiteStopsTheRunAndNamesItsFlag) {
  set_status(0, LUM_STEP_OK);
  m_runner->start(3);
  set_status(1, LUM_STEP_ERROR);  // the netlist could not be built
  m_runner->start_next_task();
  EXPECT_EQ(m_log, (std::vector<std::string>{"sta create_timing_netlist", "failed netlist_is_created"}));
  EXPECT_TRUE(m_runner->queue().empty());
}

TEST_F(StepRunner, DoneStepsAreDroppedAndTheRestWaitsForThePrompt) {
  set_status(0, LUM_STEP_OK);
  set_status(1, LUM_STEP_OK);
  m_runner->start(3);  // queues Update and Summary; Update runs at once
  set_status(2, LUM_STEP_OK);
  set_status(3, LUM_STEP_OK);  // made some other way meanwhile
  m_runner->start_next_task();
  EXPECT_EQ(m_log, std::vector<std::string>{"sta update_timing_netlist"});
  EXPECT_TRUE(m_runner->queue().empty());
}

TEST_F(StepRunner, PanelsFrontEndCommandsAndDisabledRows) {
  // Started directly, a panel step is not queued: its prerequisite runs,
  // the panel does not open.
  set_status(0, LUM_STEP_OK);
  set_status(1, LUM_STEP_OK);
  m_runner->start(4);
  EXPECT_EQ(m_log, std::vector<std::string>{"sta update_timing_netlist"});
  EXPECT_TRUE(m_runner->queue().empty());
  m_log.clear();
  // A group without action only toggles; a prerequisite below never counts.
  m_runner->start(5);
  m_runner->start(6);
  EXPECT_EQ(m_log, (std::vector<std::string>{"toggle 5", "lum lum_echo_stdout hi"}));
  m_log.clear();
  m_enabled[1] = false;
  set_status(1, LUM_STEP_NOT_DONE);
  m_runner->start(1);
  EXPECT_TRUE(m_log.empty());
  EXPECT_TRUE(m_runner->queue().empty());
}

}  // namespace
