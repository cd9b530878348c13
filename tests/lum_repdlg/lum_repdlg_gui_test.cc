// The report dialogs in the real window, offscreen, without an engine: each
// opens from its menu entry and from its Tcl command, takes clicks and typed
// text, and its OK puts the command into the console and the history.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QToolButton>

#include "../lum_dialogs/lum_dialogs_test_support.hh"
#include "dialogs/lum_report_dlgs.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_frame_commands.hh"
#include "platform/atcl.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

using lum_test::click_check;
using lum_test::command_of;
using lum_test::press_ok;
using lum_test::type_into;
using lum_test::wait_until;
using lum_test::with_dialog;

class ReportDialogTest : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    cfg_set_override("lum_dont_startup_sta", "1");
    ASSERT_EQ(lum_lum_register_tcl(), TCL_OK);
    m_frame = LUM_DETACHED_FRAME::load_frame();
    ASSERT_NE(m_frame, nullptr);
    m_frame->activate_frame(1);
    set_current(true);
    m_frame->set_time_unit("ns");
    m_frame->add_clock("clk_a");
    m_frame->add_clock("clk_b");
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME::get_instance() != nullptr) delete LUM_DETACHED_FRAME::get_instance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    FrameFixture::TearDown();
  }
  void set_current(bool current) {
    m_frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '1');
    m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '1');
    m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, current ? '1' : '0');
  }

  LUM_CONSOLE_CTRL* console() const { return m_frame->get_console_ctrl(); }
  std::string last_command() const { return console()->get_history().empty() ? "" : console()->get_history().front(); }
  // The engine's answer to the running command: its prompt, drained.
  void engine_prompts() {
    console()->get_msg_display()->display_tcl_prompt();
    ASSERT_TRUE(wait_until([this] { return !console()->is_busy(); }, 5000));
  }
  void click_menu(unsigned id) { lum_test::click_menu(m_frame, "Reports", id); }

  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(ReportDialogTest, ReportEntriesNeedACurrentNetlistAndAnIdleEngine) {
  const unsigned ids[] = {LUM_ID_REPORT_TIMING, LUM_ID_REPORT_NET_TIMING, LUM_ID_REPORT_MIN_PULSE_WIDTH,
                          LUM_ID_CREATE_SLACK_HISTOGRAM, LUM_ID_LIST_PATHS};
  for (unsigned id : ids) EXPECT_TRUE(m_frame->find_action(id)->isEnabled()) << id;
  set_current(false);
  for (unsigned id : ids) EXPECT_FALSE(m_frame->find_action(id)->isEnabled()) << "stale " << id;
  set_current(true);
  console()->set_kro_is_busy(true);
  for (unsigned id : ids) EXPECT_FALSE(m_frame->find_action(id)->isEnabled()) << "busy " << id;
  console()->set_kro_is_busy(false);
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '0');
  EXPECT_TRUE(m_frame->find_action(LUM_ID_CREATE_TIMING_NETLIST)->isEnabled());
}

TEST_F(ReportDialogTest, ReportTimingComposesSendsAndStaysOpenWhenPinned) {
  click_menu(LUM_ID_REPORT_TIMING);
  LUM_REPORT_TIMING_DLG* d = lum_get_report_timing_dlg();
  ASSERT_NE(d, nullptr);
  ASSERT_TRUE(wait_until([d] { return d->isVisible(); }, 3000));
  EXPECT_FALSE(d->isModal());
  EXPECT_EQ(command_of(d), "report_timing -setup -npaths 1 -panel_name \"Report Timing\"");
  // The clock combos list the frame's clocks.
  auto* to_clock = d->findChild<QComboBox*>("to_clock");
  ASSERT_EQ(to_clock->count(), 2);
  to_clock->setCurrentIndex(1);
  emit to_clock->activated(1);
  type_into(d, "to", "q[1] q[2]");
  click_check(d->findChild<QCheckBox*>("hold"));
  type_into(d, "npaths", "25");
  QTest::mouseClick(d->findChild<QRadioButton*>("detail_level_1"), Qt::LeftButton);
  EXPECT_EQ(d->findChild<QLineEdit*>("panel_name")->text(), "Report Timing Summary");
  EXPECT_EQ(command_of(d), "report_timing -to_clock clk_b -to {{q[1]} {q[2]}} -setup -hold -npaths 25 -summary "
                           "-panel_name \"Report Timing Summary\"");
  // Panel off with nothing else: the console is ticked and the name greyed.
  click_check(d->findChild<QCheckBox*>("to_panel"));
  EXPECT_TRUE(d->findChild<QCheckBox*>("to_console")->isChecked());
  EXPECT_FALSE(d->findChild<QLineEdit*>("panel_name")->isEnabled());
  EXPECT_EQ(command_of(d), "report_timing -to_clock clk_b -to {{q[1]} {q[2]}} -setup -hold -npaths 25 -summary");
  click_check(d->findChild<QCheckBox*>("to_panel"));
  EXPECT_NE(command_of(d).find("-panel_name \"Report Timing Summary\" -stdout"), std::string::npos);
  click_check(d->findChild<QCheckBox*>("to_console"));
  QTest::mouseClick(d->findChild<QRadioButton*>("detail_level_0"), Qt::LeftButton);
  EXPECT_EQ(d->findChild<QLineEdit*>("panel_name")->text(), "Report Timing");

  // Pinned, OK sends and keeps the dialog; the frame will select the panel.
  QTest::mouseClick(d->get_pin_button(), Qt::LeftButton);
  ASSERT_TRUE(d->is_pinned());
  const std::string sent = command_of(d);
  press_ok(d);
  EXPECT_EQ(last_command(), sent);
  EXPECT_EQ(m_frame->get_panel_to_select(), "Report Timing");
  engine_prompts();
  EXPECT_TRUE(d->isVisible()) << "pinned";
  // While the engine is busy, OK sends nothing and queues nothing.
  const size_t sent_count = console()->get_history().size();
  console()->set_kro_is_busy(true);
  press_ok(d);
  EXPECT_EQ(console()->get_history().size(), sent_count);
  EXPECT_EQ(console()->pending_count(), 0u);
  console()->set_kro_is_busy(false);
  EXPECT_TRUE(d->get_ok_button()->isEnabled());
  // Unpinned, it closes once the engine has run the command.
  QTest::mouseClick(d->get_pin_button(), Qt::LeftButton);
  press_ok(d);
  engine_prompts();
  EXPECT_FALSE(d->isVisible());
  // A new project brings the defaults back.
  emit m_frame->project_changed();
  EXPECT_EQ(command_of(d), "report_timing -setup -npaths 1 -panel_name \"Report Timing\"");
}

TEST_F(ReportDialogTest, ReportTimingFromItsTclCommand) {
  ASSERT_EQ(atcl_tcl_eval("lum_report_timing -from_clock clk_a -to {a $b} -npaths 7 -hold -summary -file /tmp/x.rpt "
                          "-append -stdout"),
            TCL_OK);
  LUM_REPORT_TIMING_DLG* d = lum_get_report_timing_dlg();
  ASSERT_NE(d, nullptr);
  EXPECT_TRUE(d->isVisible());
  EXPECT_EQ(command_of(d), "report_timing -from_clock clk_a -to {a {$b}} -hold -npaths 7 -summary "
                           "-panel_name \"Report Timing Summary\" -file \"/tmp/x.rpt\" -append -stdout");
  EXPECT_TRUE(console()->get_history().empty()) << "nothing is sent before OK";
  // A scripted run presses OK itself.
  cfg_set_override("dialog_auto_ok", "1");
  ASSERT_EQ(atcl_tcl_eval("lum_report_timing -npaths 3"), TCL_OK);
  cfg_set_override("dialog_auto_ok", "0");
  EXPECT_EQ(last_command(), "report_timing -setup -npaths 3 -panel_name \"Report Timing\"");
}

TEST_F(ReportDialogTest, OtherReportDialogsFromMenuAndTcl) {
  ASSERT_TRUE(with_dialog<LUM_REPORT_NET_TIMING_DLG>([this] { click_menu(LUM_ID_REPORT_NET_TIMING); },
                                                     [](LUM_REPORT_NET_TIMING_DLG* d) {
    type_into(d, "nworst_delay", "10");
    type_into(d, "nets", "n1");
    EXPECT_EQ(command_of(d), "report_net_timing -nworst_delay 10 n1");
    QTest::mouseClick(d->findChild<QRadioButton*>("mode_1"), Qt::LeftButton);
    EXPECT_FALSE(d->findChild<QLineEdit*>("nworst_delay")->isEnabled());
    EXPECT_EQ(command_of(d), "report_net_timing n1");
    press_ok(d);
  }));
  EXPECT_EQ(last_command(), "report_net_timing n1");
  engine_prompts();

  ASSERT_TRUE(with_dialog<LUM_REPORT_MIN_PULSE_WIDTH_DLG>([this] { click_menu(LUM_ID_REPORT_MIN_PULSE_WIDTH); },
                                                          [](LUM_REPORT_MIN_PULSE_WIDTH_DLG* d) {
    EXPECT_EQ(command_of(d), "report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\"");
    click_check(d->findChild<QCheckBox*>("to_file"));
    EXPECT_FALSE(d->findChild<QPushButton*>("open_file")->isEnabled());
    type_into(d, "file_name", "/tmp/p w.rpt");
    EXPECT_TRUE(d->findChild<QPushButton*>("open_file")->isEnabled());
    QTest::mouseClick(d->findChild<QRadioButton*>("file_mode_1"), Qt::LeftButton);
    press_ok(d);
  }));
  EXPECT_EQ(last_command(),
            "report_min_pulse_width -nworst 10 -panel_name \"Minimum Pulse Width\" -file \"/tmp/p w.rpt\" -append");
  engine_prompts();

  ASSERT_TRUE(with_dialog<LUM_CREATE_SLACK_HISTOGRAM_DLG>([this] { click_menu(LUM_ID_CREATE_SLACK_HISTOGRAM); },
                                                          [](LUM_CREATE_SLACK_HISTOGRAM_DLG* d) {
    EXPECT_EQ(command_of(d), "create_slack_histogram");
    type_into(d, "panel_name", "mine");
    auto* clock = d->findChild<QComboBox*>("clock_name");
    clock->setCurrentIndex(0);
    emit clock->activated(0);
    EXPECT_EQ(d->findChild<QLineEdit*>("panel_name")->text(), "Slack Histogram (clk_a)");
    type_into(d, "num_bins", "12");
    press_ok(d);
  }));
  EXPECT_EQ(last_command(), "create_slack_histogram -clock_name clk_a -num_bins 12 -panel_name \"Slack Histogram (clk_a)\"");
  engine_prompts();

  // From their Tcl commands, filled; Cancel sends nothing.
  const size_t sent = console()->get_history().size();
  ASSERT_TRUE(with_dialog<LUM_CREATE_SLACK_HISTOGRAM_DLG>(
      [] { EXPECT_EQ(atcl_tcl_eval("lum_create_slack_histogram -clock_name clk_b -num_bins 5"), TCL_OK); },
      [](LUM_CREATE_SLACK_HISTOGRAM_DLG* d) {
        EXPECT_EQ(command_of(d), "create_slack_histogram -clock_name clk_b -num_bins 5 -panel_name \"Slack Histogram (clk_b)\"");
        lum_test::press_cancel(d);
      }));
  EXPECT_EQ(console()->get_history().size(), sent);
  ASSERT_TRUE(with_dialog<LUM_REPORT_NET_TIMING_DLG>(
      [] { EXPECT_EQ(atcl_tcl_eval("lum_report_net_timing -nworst_fanout 4 clk_net"), TCL_OK); },
      [](LUM_REPORT_NET_TIMING_DLG* d) { press_ok(d); }));
  EXPECT_EQ(last_command(), "report_net_timing -nworst_fanout 4 clk_net");
  engine_prompts();
  ASSERT_TRUE(with_dialog<LUM_REPORT_MIN_PULSE_WIDTH_DLG>(
      [] { EXPECT_EQ(atcl_tcl_eval("lum_report_min_pulse_width -nworst 3 -stdout r1/CLK"), TCL_OK); },
      [](LUM_REPORT_MIN_PULSE_WIDTH_DLG* d) { press_ok(d); }));
  EXPECT_EQ(last_command(), "report_min_pulse_width -nworst 3 -panel_name \"Minimum Pulse Width\" -stdout r1/CLK");
}

TEST_F(ReportDialogTest, TimingNetlistDialogOffersTheFamilysSpeedGrades) {
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '0');
  // No project file here: the grades list is empty, the grade can be typed.
  ASSERT_TRUE(with_dialog<LUM_CREATE_TIMING_NETLIST_DLG>(
      [this] { lum_test::click_menu(m_frame, "Netlist", LUM_ID_CREATE_TIMING_NETLIST); },
      [](LUM_CREATE_TIMING_NETLIST_DLG* d) {
        EXPECT_EQ(command_of(d), "create_timing_netlist");
        QTest::mouseClick(d->findChild<QRadioButton*>("netlist_kind_2"), Qt::LeftButton);
        d->findChild<QComboBox*>("speed_grade")->setEditText("035");
        click_check(d->findChild<QCheckBox*>("risefall"));
        EXPECT_EQ(command_of(d), "create_timing_netlist -post_map -speed 035  -risefall");
        QTest::mouseClick(d->findChild<QRadioButton*>("delay_model_1"), Qt::LeftButton);
        EXPECT_FALSE(d->findChild<QComboBox*>("speed_grade")->isEnabled());
        EXPECT_EQ(command_of(d), "create_timing_netlist -post_map -fast_model -risefall");
        press_ok(d);
      }));
  EXPECT_EQ(last_command(), "create_timing_netlist -post_map -fast_model -risefall");
}

}  // namespace
