// The constraint dialogs and the name finder in the real window, offscreen,
// without an engine: each dialog opens from its menu entry (clicked in the
// menu bar and its popup) and from its Tcl command, takes typed text, and its
// OK puts the command into the console and the history; Cancel sends nothing.
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QToolButton>
#include <QTableView>

#include <functional>

#include "lum_dialogs_test_support.hh"
#include "dialogs/lum_clock_dlgs.hh"
#include "dialogs/lum_dialog_base.hh"
#include "dialogs/lum_name_finder_dlg.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_frame_commands.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

using lum_test::click_check;
using lum_test::command_of;
using lum_test::press_cancel;
using lum_test::press_ok;
using lum_test::type_into;
using lum_test::wait_until;
using lum_test::with_dialog;

class DialogTest : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    cfg_set_override("lum_dont_startup_sta", "1");
    ASSERT_EQ(lum_lum_register_tcl(), TCL_OK);
    m_frame = LUM_DETACHED_FRAME::load_frame();
    ASSERT_NE(m_frame, nullptr);
    m_frame->activate_frame(1);
    m_frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '1');
    m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '1');
    m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '1');
    m_frame->set_time_unit("ns");
    m_frame->add_clock("clk_a");
    m_frame->add_clock("clk_b");
  }
  void TearDown() override {
    LUM_NAME_FINDER_DLG::set_hidden_runner(nullptr);
    LUM_DIALOG_BASE::set_name_finder(nullptr);
    if (LUM_DETACHED_FRAME::get_instance() != nullptr) delete LUM_DETACHED_FRAME::get_instance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    FrameFixture::TearDown();
  }

  LUM_CONSOLE_CTRL* console() const { return m_frame->get_console_ctrl(); }
  const std::vector<std::string>& history() const { return console()->get_history(); }
  bool console_shows(const std::string& text) const {
    LUM_CONSOLE_MODEL* model = console()->get_model();
    for (int row = 0; row < model->row_count(); ++row)
      if (model->row_text(row) == text) return true;
    return false;
  }

  void click_menu(const QString& popup, unsigned id) { lum_test::click_menu(m_frame, popup, id); }

  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(DialogTest, ConstraintEntriesFollowTheNetlistRule) {
  const unsigned ids[] = {LUM_ID_CREATE_CLOCK,       LUM_ID_CREATE_GENERATED_CLOCK, LUM_ID_REMOVE_CLOCK,
                          LUM_ID_SET_CLOCK_LATENCY,  LUM_ID_SET_CLOCK_UNCERTAINTY,  LUM_ID_SET_INPUT_DELAY,
                          LUM_ID_SET_OUTPUT_DELAY,   LUM_ID_SET_FALSE_PATH,         LUM_ID_SET_MULTICYCLE_PATH,
                          LUM_ID_SET_MAX_DELAY,      LUM_ID_SET_MIN_DELAY,          LUM_ID_VIEW_NAME_FINDER};
  for (unsigned id : ids) EXPECT_TRUE(m_frame->find_action(id)->isEnabled()) << id;
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '0');
  for (unsigned id : ids) EXPECT_FALSE(m_frame->find_action(id)->isEnabled()) << id;
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED, '1');
  console()->set_kro_is_busy(true);
  for (unsigned id : ids) EXPECT_FALSE(m_frame->find_action(id)->isEnabled()) << "busy " << id;
  console()->set_kro_is_busy(false);
}

TEST_F(DialogTest, CreateClockFromTheMenuSendsWhatWasTyped) {
  ASSERT_TRUE(with_dialog<LUM_CREATE_CLOCK_DLG>([this] { click_menu("Constraints", LUM_ID_CREATE_CLOCK); },
                                                [this](LUM_CREATE_CLOCK_DLG* d) {
    EXPECT_EQ(command_of(d), "create_clock -period 10.000");
    EXPECT_EQ(d->findChild<QLabel*>("period_unit")->text(), "ns");
    type_into(d, "name", "sys");
    type_into(d, "period", "8");
    type_into(d, "rise", "0");
    type_into(d, "fall", "3");
    type_into(d, "targets", "clk in2");
    EXPECT_EQ(command_of(d), "create_clock -period 8 -name sys -waveform {0 3} {clk in2}");
    // The preview follows the fields: high from 0 to 3 of 8.
    QWidget* preview = d->findChild<QWidget*>("waveform");
    ASSERT_NE(preview, nullptr);
    const QImage image = preview->grab().toImage();
    EXPECT_FALSE(image.isNull());
    d->resize(d->width() + 200, d->height() + 60);  // resizable
    click_check(d->findChild<QCheckBox*>("add"));
    press_ok(d);
  }));
  const std::string expected = "create_clock -period 8 -name sys -waveform {0 3} -add {clk in2}";
  ASSERT_FALSE(history().empty());
  EXPECT_EQ(history().front(), expected);
  EXPECT_TRUE(console_shows(expected));
}

TEST_F(DialogTest, CancelSendsNothingAndRefusalsDisableOk) {
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { click_menu("Constraints", LUM_ID_SET_FALSE_PATH); },
                                           [](LUM_DIALOG_BASE* d) {
    EXPECT_FALSE(d->get_ok_button()->isEnabled()) << "nothing to apply the false path to";
    EXPECT_TRUE(d->get_refusal_label()->isVisible());
    type_into(d, "through", "u1/A");
    EXPECT_TRUE(d->get_ok_button()->isEnabled());
    EXPECT_FALSE(d->get_refusal_label()->isVisible());
    press_cancel(d);
  }));
  EXPECT_TRUE(history().empty());

  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { click_menu("Constraints", LUM_ID_SET_CLOCK_LATENCY); },
                                           [](LUM_DIALOG_BASE* d) {
    EXPECT_EQ(command_of(d), "set_clock_latency -source  ");
    click_check(d->findChild<QCheckBox*>("source"));
    QTest::mouseClick(d->findChild<QRadioButton*>("early_late_0"), Qt::LeftButton);
    EXPECT_EQ(command_of(d), "set_clock_latency -early  ");
    EXPECT_FALSE(d->get_ok_button()->isEnabled());
    EXPECT_NE(d->get_refusal_label()->text(), "");
    press_ok(d);  // refused: stays open
    EXPECT_TRUE(d->isVisible());
    QTest::mouseClick(d->findChild<QRadioButton*>("early_late_2"), Qt::LeftButton);
    auto* clock = d->findChild<QComboBox*>("clock");
    ASSERT_EQ(clock->count(), 2) << "the frame's clocks";
    clock->setCurrentIndex(1);
    emit clock->activated(1);
    type_into(d, "latency", "0.4");
    type_into(d, "targets", "[get_ports clk]");
    press_ok(d);
  }));
  ASSERT_EQ(history().size(), 1u);
  EXPECT_EQ(history().front(), "set_clock_latency -clock clk_b 0.4 [get_ports clk]");
}

TEST_F(DialogTest, EveryConstraintDialogOpensFromItsMenuEntry) {
  struct ENTRY {
    unsigned id;
    const char* title;
    const char* first_command;
  } entries[] = {
      {LUM_ID_CREATE_GENERATED_CLOCK, "Create Generated Clock", "create_generated_clock -source  "},
      {LUM_ID_REMOVE_CLOCK, "Remove Clock", "remove_clock"},
      {LUM_ID_SET_CLOCK_UNCERTAINTY, "Set Clock Uncertainty", "set_clock_uncertainty -setup "},
      {LUM_ID_SET_INPUT_DELAY, "Set Input Delay", "set_input_delay  "},
      {LUM_ID_SET_OUTPUT_DELAY, "Set Output Delay", "set_output_delay  "},
      {LUM_ID_SET_MULTICYCLE_PATH, "Set Multicycle Path", "set_multicycle_path -setup -end "},
      {LUM_ID_SET_MAX_DELAY, "Set Maximum Delay", "set_max_delay "},
      {LUM_ID_SET_MIN_DELAY, "Set Minimum Delay", "set_min_delay "},
  };
  for (const ENTRY& e : entries) {
    std::string command;
    ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([&] { click_menu("Constraints", e.id); },
                                             [&](LUM_DIALOG_BASE* d) {
      EXPECT_EQ(d->windowTitle().toStdString(), e.title);
      EXPECT_EQ(command_of(d), e.first_command);
      if (auto* source = d->findChild<QLineEdit*>("source")) type_into(d, "source", "r1/CLK");
      if (auto* delay = d->findChild<QLineEdit*>("delay")) type_into(d, "delay", "1");
      if (auto* name = d->findChild<QComboBox*>("name")) name->setEditText("clk_a");
      command = d->get_command();
      press_ok(d);
    })) << e.title;
    ASSERT_FALSE(history().empty());
    EXPECT_EQ(history().front(), command) << e.title;
  }
  EXPECT_EQ(history().size(), std::size(entries));
  EXPECT_EQ(history()[std::size(entries) - 2], "remove_clock -name clk_a");
}

TEST_F(DialogTest, GeneratedClockModeSwitchesItsControls) {
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { click_menu("Constraints", LUM_ID_CREATE_GENERATED_CLOCK); },
                                           [](LUM_DIALOG_BASE* d) {
    auto* divide = d->findChild<QLineEdit*>("divide_by");
    auto* edge1 = d->findChild<QLineEdit*>("edge1");
    EXPECT_TRUE(divide->isEnabled());
    EXPECT_FALSE(edge1->isEnabled());
    QTest::mouseClick(d->findChild<QRadioButton*>("mode_1"), Qt::LeftButton);
    EXPECT_FALSE(divide->isEnabled());
    EXPECT_TRUE(edge1->isEnabled());
    type_into(d, "source", "r1/CLK");
    type_into(d, "edge1", "1");
    type_into(d, "edge3", "5");
    EXPECT_EQ(command_of(d), "create_generated_clock -source r1/CLK -edges {1  5} ");
    d->reject();
  }));
  EXPECT_TRUE(history().empty());
}

TEST_F(DialogTest, TclCommandsOpenTheirDialogsFilled) {
  std::string result;
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>(
      [&] { EXPECT_EQ(atcl_tcl_eval("lum_set_input_delay -clock N/A -max -fall -add_delay 2 in1", &result), TCL_OK); },
      [](LUM_DIALOG_BASE* d) {
        EXPECT_EQ(d->windowTitle(), "Set Input Delay");
        EXPECT_EQ(command_of(d), "set_input_delay -fall -max -add_delay 2 in1") << "N/A leaves the clock empty";
        type_into(d, "delay", "2.5");
        press_ok(d);
      }));
  EXPECT_EQ(history().front(), "set_input_delay -fall -max -add_delay 2.5 in1");

  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>(
      [&] { atcl_tcl_eval("lum_set_output_delay -clock clk_a -min 1 out1"); },
      [](LUM_DIALOG_BASE* d) {
        EXPECT_EQ(command_of(d), "set_output_delay -clock clk_a -min 1 out1");
        press_cancel(d);
      }));
  EXPECT_EQ(history().size(), 1u) << "cancelled: nothing sent";

  struct CALL {
    const char* script;
    const char* command;
  } calls[] = {
      {"lum_set_clock_latency -clock clk_a -source -late -rise 0.3 {[get_ports clk]}",
       "set_clock_latency -clock clk_a -source -late -rise 0.3 [get_ports clk]"},
      {"lum_set_clock_uncertainty -from clk_a -to clk_b -hold 0.05",
       "set_clock_uncertainty -from clk_a -to clk_b -hold 0.05"},
      {"lum_set_false_path -from a -thru N/A -to b", "set_false_path -from a -to b"},
      {"lum_set_multicycle_path -to r2/D -hold -start 1", "set_multicycle_path -to r2/D -hold -start 1"},
      {"lum_set_max_delay -from a 4", "set_max_delay -from a 4"},
      {"lum_set_min_delay -to b 0.5", "set_min_delay -to b 0.5"},
      {"lum_edit_clock -type Base -name c2 -period 5 -rise 0 -fall 2.5 -source_objects clk",
       "create_clock -period 5 -name c2 -waveform {0 2.5} clk"},
      {"lum_edit_clock -type GENERATED -name g -source r1/CLK -master_clock clk_a -divide_by 2 -source_objects r1/Q",
       "create_generated_clock -name g -master_clock clk_a -source r1/CLK -divide_by 2 r1/Q"},
  };
  for (const CALL& call : calls) {
    ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([&] { EXPECT_EQ(atcl_tcl_eval(call.script), TCL_OK) << call.script; },
                                             [](LUM_DIALOG_BASE* d) { press_ok(d); }))
        << call.script;
    EXPECT_EQ(history().front(), call.command) << call.script;
  }
  // An unknown clock type opens nothing; a bad argument is an error and opens nothing.
  EXPECT_FALSE(with_dialog<LUM_DIALOG_BASE>([] { EXPECT_EQ(atcl_tcl_eval("lum_edit_clock -type derived"), TCL_OK); },
                                            [](LUM_DIALOG_BASE*) {}));
  EXPECT_FALSE(with_dialog<LUM_DIALOG_BASE>(
      [] { EXPECT_EQ(atcl_tcl_eval("lum_set_false_path -nonsense x"), TCL_ERROR); }, [](LUM_DIALOG_BASE*) {}));
}

TEST_F(DialogTest, AutoOkAcceptsAtOnceAndReportsRefusals) {
  cfg_set_override("dialog_auto_ok", "1");
  EXPECT_EQ(atcl_tcl_eval("lum_set_false_path -from {[get_clocks clk_a]} -to {[get_clocks clk_b]}"), TCL_OK);
  EXPECT_EQ(history().front(), "set_false_path -from [get_clocks clk_a] -to [get_clocks clk_b]");
  std::string result;
  EXPECT_EQ(atcl_tcl_eval("lum_set_clock_latency -early 1 x", &result), TCL_ERROR);
  EXPECT_NE(result.find("nothing was sent"), std::string::npos) << result;
  EXPECT_EQ(history().size(), 1u);
  m_frame->find_action(LUM_ID_SET_MULTICYCLE_PATH)->trigger();
  EXPECT_EQ(history().front(), "set_multicycle_path -setup -end ") << "the menu entry accepts the defaults";
}

TEST_F(DialogTest, NameFinderFillsTheFieldThatOpenedIt) {
  LUM_NAME_FINDER_DLG::set_hidden_runner([](const std::string& command) -> std::vector<std::string> {
    if (command.rfind("llength", 0) == 0) return {"3"};
    if (command.rfind("foreach_in_collection", 0) == 0) return {"reg2/D", "in1", "reg10/D"};
    return {};
  });
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { click_menu("Constraints", LUM_ID_SET_INPUT_DELAY); },
                                           [this](LUM_DIALOG_BASE* d) {
    type_into(d, "delay", "1");
    auto* finder_button = d->findChild<QToolButton*>("targets_finder");
    ASSERT_NE(finder_button, nullptr);
    ASSERT_TRUE(with_dialog<LUM_NAME_FINDER_DLG>([&] { QTest::mouseClick(finder_button, Qt::LeftButton); },
                                                 [](LUM_NAME_FINDER_DLG* f) {
      EXPECT_EQ(command_of(f), "[get_keepers *]");
      QTest::mouseClick(f->findChild<QPushButton*>("list"), Qt::LeftButton);
      QTableView* matches = f->get_matches_view();
      ASSERT_EQ(matches->model()->rowCount(), 3);
      EXPECT_EQ(matches->model()->index(0, 0).data().toString(), "in1") << "sorted";
      EXPECT_EQ(matches->model()->headerData(0, Qt::Horizontal).toString(), "3 matches found");
      // Filter as the pattern is typed.
      type_into(f, "pattern", "reg*");
      ASSERT_EQ(matches->model()->rowCount(), 2);
      matches->selectAll();
      QTest::mouseClick(f->findChild<QPushButton*>("copy_one"), Qt::LeftButton);
      EXPECT_EQ(f->get_selected_view()->model()->headerData(0, Qt::Horizontal).toString(), "2 selected names");
      EXPECT_EQ(command_of(f), "[get_keepers {reg2/D reg10/D}]");
      press_ok(f);
    }));
    EXPECT_EQ(command_of(d), "set_input_delay 1 [get_keepers {reg2/D reg10/D}]");
    press_ok(d);
  }));
  EXPECT_EQ(history().front(), "set_input_delay 1 [get_keepers {reg2/D reg10/D}]");
}

TEST_F(DialogTest, NameFinderFromTheMenuCopiesToTheClipboard) {
  LUM_NAME_FINDER_DLG::set_hidden_runner([](const std::string& command) -> std::vector<std::string> {
    if (command.rfind("llength", 0) == 0) return {"2"};
    if (command.rfind("foreach_in_collection", 0) == 0) return {"u1", "u2"};
    return {};
  });
  ASSERT_TRUE(with_dialog<LUM_NAME_FINDER_DLG>([this] { click_menu("View", LUM_ID_VIEW_NAME_FINDER); },
                                               [](LUM_NAME_FINDER_DLG* f) {
    auto* collection = f->findChild<QComboBox*>("collection");
    ASSERT_EQ(collection->count(), 8);
    auto* hierarchical = f->findChild<QCheckBox*>("hierarchical");
    EXPECT_FALSE(hierarchical->isEnabled()) << "keepers have no hierarchy option";
    collection->setCurrentText("get_cells");
    EXPECT_TRUE(hierarchical->isEnabled());
    click_check(hierarchical);
    QTest::mouseClick(f->findChild<QPushButton*>("list"), Qt::LeftButton);
    QTest::mouseClick(f->findChild<QPushButton*>("copy_all"), Qt::LeftButton);
    QTest::mouseClick(f->findChild<QPushButton*>("copy_all"), Qt::LeftButton);
    EXPECT_EQ(f->get_selected_model()->rowCount(), 4) << "copy all twice lists every name twice";
    f->get_selected_view()->selectionModel()->select(f->get_selected_model()->index(3, 0),
                                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    f->get_selected_view()->setFocus();
    QTest::keyClick(f->get_selected_view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "u2");
    QTest::mouseClick(f->findChild<QPushButton*>("remove_one"), Qt::LeftButton);
    EXPECT_EQ(command_of(f), "[get_cells -hierarchical {u1 u2 u1}]");
    collection->setCurrentText("get_nets");
    EXPECT_FALSE(hierarchical->isChecked());
    EXPECT_EQ(f->get_selected_model()->rowCount(), 0) << "a new collection empties both lists";
    EXPECT_EQ(command_of(f), "[get_nets *]");
    press_ok(f);
  }));
  EXPECT_EQ(QApplication::clipboard()->text(), "[get_nets *]");
  ASSERT_FALSE(m_boxes.empty());
  EXPECT_EQ(m_boxes.back(), "LUM_NAME_FINDER_STRING_COPIED_TO_CLIPBOARD");
  EXPECT_NE(m_box_texts.back().find("[get_nets *]"), std::string::npos);
  EXPECT_TRUE(history().empty()) << "the name finder sends nothing";
}

TEST_F(DialogTest, CancelledNameFinderSearchKeepsWhatCameAndSaysSo) {
  LUM_NAME_FINDER_DLG* finder_seen = nullptr;
  int pages = 0;
  LUM_NAME_FINDER_DLG::set_hidden_runner([&](const std::string& command) -> std::vector<std::string> {
    if (command.rfind("llength", 0) == 0) return {"1000"};
    if (command.rfind("foreach_in_collection", 0) != 0) return {};
    // The user cancels while the second page is on its way.
    if (++pages == 2 && finder_seen) finder_seen->cancel_search();
    std::vector<std::string> page;
    for (int i = 0; i < 100; ++i) page.push_back("n" + std::to_string(pages * 100 + i));
    return page;
  });
  LUM_NAME_FINDER_DLG finder(m_frame);
  finder_seen = &finder;
  finder.set_page_size(100);
  finder.on_click_list();
  EXPECT_EQ(finder.get_matches_model()->rowCount(), 200);
  EXPECT_EQ(finder.get_note_label()->text(), "Search cancelled: 200 of 1000 names listed.");
  finder.set_cap(150);
  pages = 0;
  finder_seen = nullptr;
  finder.on_click_list();
  EXPECT_EQ(finder.get_matches_model()->rowCount(), 150);
  EXPECT_EQ(finder.get_note_label()->text(),
            "Showing the first 150 of 1,000 matches; narrow the pattern to see the others.");
}

}  // namespace
