// The engine call-back commands and the dialog-opening commands, run as Tcl
// commands in the front end's interpreter against a recording main frame.
#include <gtest/gtest.h>

#include "lum_test_support.hh"
#include "platform/atcl.hh"
#include "tcl/lum_tcl_dialogs.hh"

namespace {

class CallbackCommands : public LUM_CONSOLE_TEST {
 protected:
  int eval(const std::string& script, std::string* result = nullptr) {
    return atcl_tcl_eval(script.c_str(), result);
  }
  std::vector<std::string> queued_texts() {
    std::vector<std::string> texts;
    LUM_MSG_DISPLAY* display = console->get_msg_display();
    while (auto line = display->take_front()) {
      if (!line->get_stdout_str()) {
        texts.push_back("<" + std::to_string(line->get_type()) + ">");
        continue;
      }
      // A text line holds one row or several joined by line feeds.
      std::string block = *line->get_stdout_str();
      for (size_t end; (end = block.find('\n')) != std::string::npos; block.erase(0, end + 1))
        texts.push_back(block.substr(0, end));
      texts.push_back(block);
    }
    return texts;
  }
};

TEST_F(CallbackCommands, PackageIsProvidedWithItsVersion) {
  std::string result;
  ASSERT_EQ(eval("package present ::vexa::lum", &result), TCL_OK) << result;
  EXPECT_EQ(result, "1.0");
  EXPECT_EQ(eval("::vexa::lum::lum_tcl_prompt"), TCL_OK);
}

TEST_F(CallbackCommands, PromptsAndTextGoToTheConsoleQueueCutAtLineBreaks) {
  ASSERT_EQ(eval("lum_tcl_prompt"), TCL_OK);
  ASSERT_EQ(eval("lum_tcl_cont_prompt"), TCL_OK);
  ASSERT_EQ(eval("lum_echo_stdout \"a b\\n\\n\\rc\\fd\\n\""), TCL_OK);
  // Texts that read as options come after "--"; "-h" alone asks for help and shows nothing.
  ASSERT_EQ(eval("lum_echo_stdout -- -h"), TCL_OK);
  ASSERT_EQ(eval("lum_echo_stdout -- --"), TCL_OK);
  std::string help;
  ASSERT_EQ(eval("lum_echo_stdout -h", &help), TCL_OK);
  EXPECT_NE(help.find("Usage: lum_echo_stdout <text>"), std::string::npos) << help;
  EXPECT_EQ(queued_texts(), (std::vector<std::string>{"<1>", "<2>", "a b", "c", "d", "-h", "--"}));
}

TEST_F(CallbackCommands, ReportStatusWritesThePercentIntoTheStatusPane) {
  ASSERT_EQ(eval("lum_report_status 42%"), TCL_OK);
  EXPECT_EQ(frame.status_panes[1], "42%");
}

TEST_F(CallbackCommands, SetStateUsesOnlyOneCharacterValues) {
  ASSERT_EQ(eval("lum_set_state -project_is_open 1 -netlist_is_created 1 -sdc_file_is_loaded 0"), TCL_OK);
  EXPECT_EQ(frame.get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN), '1');
  EXPECT_EQ(frame.get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED), '1');
  EXPECT_EQ(frame.netlist_is_created_calls, 1);
  EXPECT_EQ(frame.get_state_flag(LUM_STATE_FLAG::SDC_FILE_IS_LOADED), '0');

  ASSERT_EQ(eval("lum_set_state -project_is_open 00 -netlist_is_created {}"), TCL_OK);
  EXPECT_EQ(frame.get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN), '1');
  EXPECT_EQ(frame.netlist_is_created_calls, 1);
  EXPECT_EQ(frame.closed_projects, 0);

  ASSERT_EQ(eval("lum_set_state -project_is_open 0"), TCL_OK);
  EXPECT_EQ(frame.closed_projects, 1);
}

TEST_F(CallbackCommands, NetlistGoingOutOfDateMarksConstraintsUnsaved) {
  frame.flags[LUM_STATE_FLAG::PROJECT_IS_OPEN] = '1';
  // A deleted netlist goes out of date without any constraint.
  frame.flags[LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE] = '1';
  frame.flags[LUM_STATE_FLAG::NETLIST_IS_CREATED] = '0';
  ASSERT_EQ(eval("lum_set_state -netlist_is_up_to_date 0"), TCL_OK);
  EXPECT_FALSE(frame.sdc_needs_saving);
  frame.flags[LUM_STATE_FLAG::NETLIST_IS_CREATED] = '1';
  ASSERT_EQ(eval("lum_set_state -netlist_is_up_to_date 0"), TCL_OK);
  EXPECT_FALSE(frame.sdc_needs_saving);  // it was not up to date before
  ASSERT_EQ(eval("lum_set_state -netlist_is_up_to_date 1"), TCL_OK);
  EXPECT_FALSE(frame.sdc_needs_saving);
  ASSERT_EQ(eval("lum_set_state -netlist_is_up_to_date 0"), TCL_OK);
  EXPECT_TRUE(frame.sdc_needs_saving);
  EXPECT_EQ(frame.report_tree_updates, 4);
}

TEST_F(CallbackCommands, ClockListKeepsOneEntryPerNameAndIgnoresUnknownRemovals) {
  for (const char* cmd : {"lum_register_clock -name clk", "lum_register_clock -name {clk b}",
                          "lum_register_clock -name clk", "lum_register_clock -name nope -remove",
                          "lum_register_clock -name {}", "lum_register_clock -name CLK"}) {
    ASSERT_EQ(eval(cmd), TCL_OK) << cmd;
  }
  EXPECT_EQ(frame.clocks, (std::vector<std::string>{"clk", "clk b", "CLK"}));
  ASSERT_EQ(eval("lum_register_clock -name clk -remove"), TCL_OK);
  EXPECT_EQ(frame.clocks, (std::vector<std::string>{"clk b", "CLK"}));
}

TEST_F(CallbackCommands, ProjectTimeUnitAndReportReachTheFrame) {
  ASSERT_EQ(eval("lum_open_project -vpf \"/abs/p q.vpf\" -revision \"rev\""), TCL_OK);
  ASSERT_EQ(frame.opened_projects.size(), 1u);
  EXPECT_EQ(frame.opened_projects[0].first, "/abs/p q.vpf");
  EXPECT_EQ(frame.get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN), '1');
  ASSERT_EQ(eval("lum_set_time_unit ns"), TCL_OK);
  EXPECT_EQ(frame.time_unit, "ns");
  ASSERT_EQ(eval("lum_reload_sta_report -open_panel \"Summary (Setup)\""), TCL_OK);
  ASSERT_EQ(eval("lum_reload_sta_report"), TCL_OK);
  EXPECT_EQ(frame.reloads, (std::vector<std::string>{"Summary (Setup)", "<null>"}));
}

TEST_F(CallbackCommands, BadArgumentsFailWithTheLibraryMessageAndChangeNothing) {
  std::string result;
  EXPECT_EQ(eval("lum_open_project -vpf /p.vpf", &result), TCL_ERROR);
  EXPECT_NE(result.find("missing required option \"-revision\""), std::string::npos) << result;
  EXPECT_EQ(eval("lum_register_clock -nam c -bogus", &result), TCL_ERROR);
  EXPECT_EQ(eval("lum_set_state -project_is_open", &result), TCL_ERROR);
  EXPECT_TRUE(frame.opened_projects.empty());
  EXPECT_TRUE(frame.clocks.empty());
  EXPECT_TRUE(frame.flags.empty());
  // Help is not an error and does nothing either.
  EXPECT_EQ(eval("lum_register_clock -help", &result), TCL_OK);
  EXPECT_NE(result.find("Usage: lum_register_clock -name <name> [-remove]"), std::string::npos) << result;
  EXPECT_TRUE(frame.clocks.empty());
}

TEST_F(CallbackCommands, EveryCommandDoesNothingWithoutAFrame) {
  lum_set_frame(nullptr);
  for (const char* cmd : {"lum_tcl_prompt", "lum_echo_stdout x", "lum_report_status 5%", "lum_set_state -project_is_open 0",
                          "lum_open_project -vpf a -revision b", "lum_register_clock -name c", "lum_set_time_unit ps",
                          "lum_reload_sta_report", "lum_edit_clock -type base -name c",
                          "lum_set_input_delay 1 t", "lum_locate -names a -fled"}) {
    EXPECT_EQ(eval(cmd), TCL_OK) << cmd;
  }
  EXPECT_FALSE(console->get_msg_display()->has_lines());
  EXPECT_TRUE(frame.clocks.empty() && frame.flags.empty() && frame.status_panes.empty());
  EXPECT_TRUE(frame.clock_dialogs.empty() && boxes.ids.empty());
}

TEST_F(CallbackCommands, EditClockOpensTheDialogOfItsTypeInAnyCase) {
  ASSERT_EQ(eval("lum_edit_clock -type Base -name c -period 10 -rise 0 -fall 5 -source_objects {[get_ports clk]}"),
            TCL_OK);
  ASSERT_EQ(eval("lum_edit_clock -type GENERATED -name g -source a/b -master_clock c -divide_by 2 -invert"), TCL_OK);
  ASSERT_EQ(eval("lum_edit_clock -type derived -name d"), TCL_OK);
  ASSERT_EQ(frame.clock_dialogs.size(), 1u);
  EXPECT_EQ(frame.clock_dialogs[0].period, "10");
  EXPECT_EQ(frame.clock_dialogs[0].source_objects, "[get_ports clk]");
  ASSERT_EQ(frame.generated_clock_dialogs.size(), 1u);
  const LUM_GENERATED_CLOCK_DLG_VALUES& g = frame.generated_clock_dialogs[0];
  EXPECT_TRUE(g.has_divide_by && !g.has_multiply_by && g.invert);
  EXPECT_EQ(g.divide_by, 2u);
  EXPECT_EQ(g.master_clock, "c");
}

TEST_F(CallbackCommands, DialogCommandsReachTheirRegisteredOpenerOnlyWhenWellFormed) {
  std::vector<std::string> seen;
  lum_set_dialog_opener("lum_set_input_delay", [&seen](const LUM_DIALOG_REQUEST& request) {
    const char* clock = request.args->get_one_arg_option(LUM_AUTO_ARG_CLOCK);
    seen.push_back(std::string(request.command_name) + " " + (lum_is_value_given(clock) ? clock : "<default>") +
                   " " + request.args->get_one_arg_pos_option(LUM_AUTO_ARG_TARGETS));
    return TCL_OK;
  });
  EXPECT_EQ(eval("lum_set_input_delay -clock N/A -max 1.5 {[get_ports a]}"), TCL_OK);
  EXPECT_EQ(eval("lum_set_input_delay -clock clk 1.5 b"), TCL_OK);
  EXPECT_EQ(eval("lum_set_input_delay -max -min 1 c"), TCL_ERROR);
  EXPECT_EQ(eval("lum_set_output_delay 1 d"), TCL_OK);  // no opener: nothing happens
  lum_set_dialog_opener("lum_set_input_delay", nullptr);
  EXPECT_EQ(seen, (std::vector<std::string>{"lum_set_input_delay <default> [get_ports a]", "lum_set_input_delay clk b"}));
}

TEST_F(CallbackCommands, LocateTellsTheUserItNeedsTheHostProgram) {
  EXPECT_EQ(eval("lum_locate -names {a b} -chip_editor"), TCL_OK);
  EXPECT_EQ(boxes.ids, (std::vector<std::string>{"LUM_LOCATE_NOT_SUPPORTED"}));
}

}  // namespace
