// The main frame, the console pane and the history tab on the offscreen
// platform. The engine is either absent (switch "lum_dont_startup_sta") or a
// small stand-in script that prompts after every line, so these tests need no
// real engine.
#include <QAction>
#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollBar>

#include <fstream>
#include <sstream>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_view.hh"
#include "engine/lum_history_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_project_files.hh"
#include "rdb/rdb_writer.hh"
#include "rdb/rdb_report.hh"
#include "frame/lum_engine_ended_dlg.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_window_placement.hh"
#include "lum_frame_test_support.hh"
#include "../lum/lum_gui_events.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

using lum_test::wait_until;

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class FrameTest : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    cfg_set_override("lum_dont_startup_sta", "1");
  }
  void TearDown() override {
    destroy_frame();
    FrameFixture::TearDown();
  }

  // A frame; with_engine starts the stand-in engine and waits for its prompt.
  LUM_DETACHED_FRAME* make_frame(bool with_engine) {
    // The engine's call-backs are commands of the front end's package.
    EXPECT_EQ(lum_lum_register_tcl(), TCL_OK);
    m_frame = LUM_DETACHED_FRAME::load_frame();
    EXPECT_NE(m_frame, nullptr);
    if (m_frame == nullptr) return nullptr;
    m_frame->activate_frame(1);
    if (with_engine) {
      console()->set_engine_command_line("\"" CHRONEL_TEST_DATA_DIR "/fake_engine.sh\" --ipc_sh");
      EXPECT_TRUE(console()->startup());
      EXPECT_TRUE(wait_until([this] { return !console()->is_busy(); }, 10000));
    }
    return m_frame;
  }

  void destroy_frame() {
    if (LUM_DETACHED_FRAME::get_instance() != nullptr) delete LUM_DETACHED_FRAME::get_instance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_frame = nullptr;
  }

  LUM_CONSOLE_CTRL* console() const { return m_frame->get_console_ctrl(); }
  LUM_CONSOLE_ROWS* rows() const { return m_frame->get_console_view()->get_rows(); }
  LUM_HISTORY_CTRL* history() const { return m_frame->get_console_view()->get_history(); }
  bool enabled(unsigned id) const { return m_frame->find_action(id)->isEnabled(); }

  // The engine's answer to the running command: a prompt line, drained.
  void engine_prompts() {
    console()->get_msg_display()->display_tcl_prompt();
    console()->drain_lines();
  }

  void open_project_state() {
    m_frame->sta_opened_a_project(CHRONEL_EXAMPLES_DIR "/datapath/datapath.vpf", "datapath");
    m_frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '1');
    m_frame->set_netlist_is_created('0');
  }

  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(FrameTest, MenusFollowTheStateFlagsAndTheBusyState) {
  make_frame(false);
  EXPECT_FALSE(enabled(LUM_ID_CREATE_TIMING_NETLIST));
  EXPECT_TRUE(enabled(LUM_ID_FILE_OPEN_PROJECT));

  open_project_state();
  EXPECT_TRUE(enabled(LUM_ID_CREATE_TIMING_NETLIST));
  EXPECT_TRUE(enabled(LUM_ID_FILE_CLOSE_PROJECT));
  EXPECT_FALSE(enabled(LUM_ID_REPORT_SETUP_SUMMARY));

  m_frame->set_netlist_is_created('1');
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '1');
  EXPECT_FALSE(enabled(LUM_ID_CREATE_TIMING_NETLIST));
  EXPECT_FALSE(enabled(LUM_ID_UPDATE_NETLIST));
  EXPECT_TRUE(enabled(LUM_ID_REPORT_SETUP_SUMMARY));
  EXPECT_TRUE(enabled(LUM_ID_LOAD_SDC_FILE));

  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '0');
  EXPECT_TRUE(enabled(LUM_ID_UPDATE_NETLIST));
  EXPECT_FALSE(enabled(LUM_ID_REPORT_CLOCKS));

  // Busy: commands grey out, the status bar says so, the cursor waits.
  console()->set_kro_is_busy(true);
  EXPECT_FALSE(enabled(LUM_ID_UPDATE_NETLIST));
  EXPECT_FALSE(enabled(LUM_ID_FILE_OPEN_PROJECT));
  EXPECT_TRUE(enabled(LUM_ID_FILE_CLOSE));
  EXPECT_EQ(m_frame->get_statusbar_text(1), "Busy");
  EXPECT_EQ(m_frame->cursor().shape(), Qt::WaitCursor);
  console()->set_kro_is_busy(false);
  EXPECT_EQ(m_frame->get_statusbar_text(1), "Ready");
  EXPECT_TRUE(enabled(LUM_ID_UPDATE_NETLIST));
  // Commands that need the design suite never are.
  EXPECT_FALSE(enabled(LUM_ID_USER_LIBRARIES));
  EXPECT_FALSE(enabled(LUM_ID_GLOBAL_USER_LIBRARIES));
}

TEST_F(FrameTest, ReportCommandsQueueTheirLineAndRememberThePanel) {
  make_frame(false);
  open_project_state();
  m_frame->set_netlist_is_created('1');
  m_frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, '1');

  m_frame->run_menu_command(LUM_ID_REPORT_SETUP_SUMMARY);
  EXPECT_EQ(console()->get_current_command(), "create_timing_summary -setup -panel_name \"Summary (Setup)\"");
  EXPECT_EQ(m_frame->get_panel_to_select(), "Summary (Setup)");
  m_frame->run_menu_command(LUM_ID_REPORT_SDC);  // disabled while busy: the menu does nothing
  EXPECT_EQ(console()->pending_count(), 0u);
  engine_prompts();
  m_frame->run_menu_command(LUM_ID_REPORT_SDC);
  EXPECT_EQ(console()->get_current_command(), "report_sdc");
  EXPECT_EQ(m_frame->get_panel_to_select(), "SDC Assignments");
}

TEST_F(FrameTest, AProjectPathWithSpecialCharactersIsSentQuoted) {
  make_frame(false);
  const std::string folder = path("my proj [x] {y} $z");
  ASSERT_TRUE(QDir().mkpath(QString::fromStdString(folder)));
  std::ofstream(folder + "/top.vpf") << "project_name = top\nrevision = top\n";
  std::ofstream(folder + "/top.vsf") << "family = OSU\nverilog_file = top.v\n";
  std::ofstream(folder + "/top.v") << "module top; endmodule\n";

  ASSERT_TRUE(lum_open_project_file((folder + "/top.vpf").c_str()));
  EXPECT_EQ(console()->get_current_command(),
            "project_open \"" + path("my proj \\[x\\] {y} \\$z") + "/top.vpf\" -revision top");
  EXPECT_EQ(m_frame->get_recent_projects().at(0), folder + "/top.vpf");

  // The engine confirms: title and recent list follow.
  m_frame->sta_opened_a_project(folder + "/top.vpf", "top");
  EXPECT_EQ(m_frame->windowTitle().toStdString(), "Chronel Timing Analyzer - " + folder + "/top - top");
  m_frame->add_clock("clk");
  m_frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '0');
  m_frame->sta_closed_a_project();
  EXPECT_EQ(m_frame->windowTitle(), "Chronel Timing Analyzer");
  // Where the window system adds the product name (the launcher names the
  // application so), the title leaves it out.
  const QString display_name = QGuiApplication::applicationDisplayName();
  QGuiApplication::setApplicationDisplayName("Chronel Timing Analyzer");
  m_frame->sta_opened_a_project(folder + "/top.vpf", "top");
  EXPECT_EQ(m_frame->windowTitle().toStdString(), folder + "/top - top");
  QGuiApplication::setApplicationDisplayName(display_name);
  m_frame->sta_closed_a_project();
  EXPECT_TRUE(m_frame->get_clock_names().empty());
  EXPECT_FALSE(enabled(LUM_ID_FILE_CLOSE_PROJECT));
}

TEST_F(FrameTest, BadProjectsAreReportedAndSendNothing) {
  make_frame(false);
  std::ofstream(path("norev.vpf")) << "project_name = norev\n";
  EXPECT_FALSE(m_frame->open_project(path("absent.vpf").c_str()));
  EXPECT_FALSE(m_frame->open_project(path("norev.vpf").c_str()));
  EXPECT_EQ(m_boxes, (std::vector<std::string>{"LUM_PROJECT_NOT_FOUND", "LUM_PROJECT_HAS_NO_REVISION"}));
  EXPECT_NE(m_box_texts.at(0).find(path("absent.vpf")), std::string::npos);
  EXPECT_TRUE(console()->get_current_command().empty());
  EXPECT_EQ(history()->entry_count(), 0);
}

TEST_F(FrameTest, AProjectDatabaseThisVersionCannotReadIsReplacedOnlyAfterOk) {
  make_frame(false);
  std::ofstream(path("top.vpf")) << "revision = top\n";
  std::ofstream(path("top.vsf")) << "family = OSU\n";
  const std::string db = rdb_report_file_path(path(""), "top", RDB_TIMING_REPORT);
  { RDB_WRITER writer(db, RDB_TIMING_REPORT); }  // a database of this version: no question
  EXPECT_EQ(lum_project_database_problem(path("top.vpf"), "top"), "");
  m_files = {path("top.vpf")};
  m_frame->find_action(LUM_ID_FILE_OPEN_PROJECT)->trigger();
  EXPECT_TRUE(m_boxes.empty());
  EXPECT_EQ(console()->get_current_command(), "project_open \"" + path("top.vpf") + "\" -revision top");
  engine_prompts();
  m_frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '0');

  std::ofstream(db, std::ios::trunc) << "not a database at all, written by something else\n";
  std::ofstream(db + "-wal") << "x";
  EXPECT_NE(lum_project_database_problem(path("top.vpf"), "top"), "");
  const int sent_before = history()->entry_count();

  // Cancel: nothing is sent, the file stays.
  m_answers = {MSG_ANSWER_CANCEL};
  m_files = {path("top.vpf")};
  m_frame->find_action(LUM_ID_FILE_OPEN_PROJECT)->trigger();
  EXPECT_EQ(m_boxes, (std::vector<std::string>{"LUM_PROJECT_INCOMPATIBLE"}));
  EXPECT_EQ(history()->entry_count(), sent_before);
  EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(db)));

  // OK: the old database and its companion go, and the project opens.
  m_answers = {MSG_ANSWER_OK};
  m_files = {path("top.vpf")};
  m_frame->find_action(LUM_ID_FILE_OPEN_PROJECT)->trigger();
  EXPECT_EQ(m_boxes.size(), 2u);
  EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(db)));
  EXPECT_FALSE(QFileInfo::exists(QString::fromStdString(db + "-wal")));
  EXPECT_EQ(history()->entry_count(), sent_before + 1);
  EXPECT_EQ(console()->get_current_command(), "project_open \"" + path("top.vpf") + "\" -revision top");
}

TEST_F(FrameTest, RecentProjectsGreyWhileBusyAndOpenTheirEntry) {
  make_frame(false);
  std::ofstream(path("a.vpf")) << "revision = a\n";
  std::ofstream(path("a.vsf")) << "family = OSU\n";
  ASSERT_TRUE(m_frame->open_project(path("a.vpf").c_str()));
  engine_prompts();

  QMenu* recent = m_frame->menuBar()->findChild<QMenu*>("RecentProjects");
  ASSERT_NE(recent, nullptr);
  emit recent->aboutToShow();
  ASSERT_FALSE(recent->actions().isEmpty());
  QAction* first = recent->actions().first();
  EXPECT_TRUE(first->isEnabled());
  console()->set_kro_is_busy(true);
  EXPECT_FALSE(first->isEnabled());
  console()->set_kro_is_busy(false);
  first->trigger();
  EXPECT_EQ(console()->get_current_command(), "project_open \"" + path("a.vpf") + "\" -revision a");
}

TEST_F(FrameTest, ClosingWhileBusyIsRefusedAndSavesNoPlacement) {
  make_frame(false);
  console()->set_kro_is_busy(true);
  EXPECT_FALSE(m_frame->close());
  EXPECT_EQ(m_boxes, std::vector<std::string>{"LUM_CANT_CLOSE_WHILE_KRO_IS_BUSY"});
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), m_frame);
  EXPECT_FALSE(CFG_REGISTRY_KEY(LUM_WINDOW_PLACEMENT_KEY).has_value("showCmd"));
  console()->set_kro_is_busy(false);
}

TEST_F(FrameTest, ClosingSavesThePlacementAndTheNextFrameReopensThere) {
  make_frame(false);
  m_frame->setGeometry(40, 50, 900, 700);
  EXPECT_TRUE(m_frame->close());
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), nullptr);
  const LUM_WINDOW_PLACEMENT saved = lum_read_window_placement(LUM_WINDOW_PLACEMENT{});
  EXPECT_EQ(saved.show_cmd, LUM_WINDOW_PLACEMENT::SHOW_NORMAL);
  EXPECT_EQ(saved.right - saved.left, 900);
  EXPECT_EQ(saved.bottom - saved.top, 700);
  destroy_frame();

  // Saved while minimised: reopens maximised.
  CFG_REGISTRY_KEY(LUM_WINDOW_PLACEMENT_KEY).set_int("showCmd", LUM_WINDOW_PLACEMENT::SHOW_MINIMIZED);
  make_frame(false);
  EXPECT_TRUE(m_frame->isMaximized() || m_frame->windowState().testFlag(Qt::WindowMaximized));
}

TEST_F(FrameTest, TheEntryPointMakesOneFrameOnly) {
  void* first = lum_dyn_adv_kro_tool();
  ASSERT_NE(first, nullptr);
  m_frame = LUM_DETACHED_FRAME::get_instance();
  EXPECT_EQ(lum_dyn_adv_kro_tool(), first);
  EXPECT_EQ(first, static_cast<void*>(m_frame));
}

TEST_F(FrameTest, UnsavedConstraintsAreAskedAboutOnceOnClose) {
  make_frame(true);
  open_project_state();
  m_frame->set_sdc_needs_saving(true);
  m_answers = {MSG_ANSWER_NO};
  m_frame->close_project();
  EXPECT_EQ(m_boxes, std::vector<std::string>{"LUM_PROMPT_TO_WRITE_SDC"});
  EXPECT_FALSE(m_frame->get_sdc_needs_saving());
  ASSERT_TRUE(wait_until([this] { return !console()->is_busy(); }, 30000));
  m_frame->close_project();
  EXPECT_EQ(m_boxes.size(), 1u) << "answering No clears the reminder";
}

TEST_F(FrameTest, TheCloseQuestionComesOnlyAfterConstraintsAndCancelKeepsTheWindow) {
  make_frame(true);
  open_project_state();
  auto state = [](const char* args) { return atcl_tcl_eval((std::string("lum_set_state ") + args).c_str()); };
  // A netlist made current and then deleted leaves no constraint to save.
  ASSERT_EQ(state("-netlist_is_created 1 -netlist_is_up_to_date 1"), TCL_OK);
  ASSERT_EQ(state("-netlist_is_created 0"), TCL_OK);
  ASSERT_EQ(state("-netlist_is_up_to_date 0"), TCL_OK);
  EXPECT_FALSE(m_frame->get_sdc_needs_saving());
  // A constraint applied to a current netlist does.
  ASSERT_EQ(state("-netlist_is_created 1 -netlist_is_up_to_date 1"), TCL_OK);
  ASSERT_EQ(state("-netlist_is_up_to_date 0"), TCL_OK);
  EXPECT_TRUE(m_frame->get_sdc_needs_saving());
  // Cancel keeps the window, the project and the reminder.
  m_answers = {MSG_ANSWER_CANCEL};
  EXPECT_FALSE(m_frame->close());
  EXPECT_EQ(m_boxes, std::vector<std::string>{"LUM_PROMPT_TO_WRITE_SDC"});
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), m_frame);
  EXPECT_TRUE(m_frame->get_sdc_needs_saving());
  EXPECT_EQ(m_frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN), '1');
}

TEST_F(FrameTest, ClosingWithUnsavedConstraintsWritesTheSdcFileFirst) {
  make_frame(true);
  open_project_state();
  m_frame->set_sdc_needs_saving(true);
  m_answers = {MSG_ANSWER_YES};
  m_files = {path("con $x [1].sdc")};
  EXPECT_TRUE(m_frame->close());
  EXPECT_EQ(m_boxes, std::vector<std::string>{"LUM_PROMPT_TO_WRITE_SDC"});
  ASSERT_EQ(m_file_requests.size(), 1u);
  EXPECT_TRUE(m_file_requests[0].save);
  // The write reached the engine before the window went away.
  ASSERT_GE(history()->entry_count(), 1);
  EXPECT_EQ(history()->entry(0).toStdString(), "write_sdc \"" + path("con \\$x \\[1\\].sdc") + "\"");
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), nullptr);
}

TEST_F(FrameTest, AnEngineThatDiesLeavesTheWindowWithABoxThatSaysWhy) {
  make_frame(true);
  cfg_set_override("lum_dont_startup_sta", "0");
  console()->run_command("create_clock -name {a b} -period 4");
  engine_prompts();
  console()->get_ipc_object()->kill_child(9);
  LUM_ENGINE_ENDED_DLG* box = nullptr;
  ASSERT_TRUE(wait_until([&] { return (box = m_frame->findChild<LUM_ENGINE_ENDED_DLG*>()) != nullptr; }, 10000));
  EXPECT_TRUE(m_boxes.empty());  // no "will now exit"
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), m_frame);
  EXPECT_NE(box->findChild<QLabel*>("reason")->text().indexOf("signal 9"), -1);
  EXPECT_EQ(box->findChild<QLabel*>("constraints")->text().left(2), "1 ");
  EXPECT_FALSE(enabled(LUM_ID_CREATE_TIMING_NETLIST));  // nothing can reach a dead engine

  // Close keeps the window without an engine; closing the window then ends cleanly.
  QTest::mouseClick(box->get_close_button(), Qt::LeftButton);
  ASSERT_TRUE(wait_until([&] { return m_frame->findChild<LUM_ENGINE_ENDED_DLG*>() == nullptr; }, 5000));
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), m_frame);
  EXPECT_FALSE(console()->is_kro_running());
  EXPECT_TRUE(m_frame->close());
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), nullptr);
}

TEST_F(FrameTest, AnEngineThatCannotStartIsReportedAndNoFrameIsMade) {
  cfg_set_override("lum_dont_startup_sta", "0");
  // A program that does not exist, and one that ends before its first prompt.
  for (const char* engine : {"\"/no/such/dir/vexa_sta\" --ipc_sh", "\"/bin/false\" --ipc_sh"}) {
    LUM_DETACHED_FRAME::set_engine_command_line(engine);
    EXPECT_EQ(LUM_DETACHED_FRAME::load_frame(), nullptr) << engine;
    EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), nullptr);
    EXPECT_EQ(lum_get_frame(), nullptr);
  }
  LUM_DETACHED_FRAME::set_engine_command_line("");
  EXPECT_EQ(m_boxes, (std::vector<std::string>{"LUM_CANT_START_KRO", "LUM_CANT_START_KRO"}));
}

TEST_F(FrameTest, SdcFilesAndScriptsAreChosenAndSentQuoted) {
  make_frame(false);
  open_project_state();
  m_frame->set_netlist_is_created('1');
  m_files = {path("in put.sdc")};
  m_frame->run_menu_command(LUM_ID_LOAD_SDC_FILE);
  EXPECT_EQ(console()->get_current_command(), "read_sdc \"" + path("in put.sdc") + "\"");
  ASSERT_EQ(m_file_requests.size(), 1u);
  EXPECT_EQ(m_file_requests[0].filters.first(), "SDC Files (*.sdc)");
  engine_prompts();

  m_files = {path("run{me}.tcl")};
  m_frame->run_menu_command(LUM_ID_RUN_TCL_SCRIPT);
  EXPECT_EQ(console()->get_current_command(), "source \"" + path("run{me}.tcl") + "\"");
  EXPECT_EQ(m_file_requests.back().title, "Run Tcl Script");
  engine_prompts();

  // A cancelled question sends nothing.
  m_frame->run_menu_command(LUM_ID_WRITE_SDC_FILE);
  EXPECT_EQ(console()->get_current_command(), "source \"" + path("run{me}.tcl") + "\"");
}

// ---- console pane -------------------------------------------------------------------

TEST_F(FrameTest, ConsoleRowsCopyAndSaveWithTheirLevels) {
  make_frame(false);
  MSG_POST post(MSG_KIND::WARNING, "VSTA-1", "top");
  MSG_POST sub(MSG_KIND::EXTRA_INFO, "", "child");
  sub.add_sub_message(MSG_POST(MSG_KIND::EXTRA_INFO, "", "grandchild"));
  post.add_sub_message(sub);
  console()->get_msg_display()->post_display(&post, 0);
  console()->drain_lines();
  LUM_CONSOLE_MODEL* model = console()->get_model();
  ASSERT_EQ(model->row_count(), 3);
  EXPECT_EQ(model->row_level(2), 2);

  rows()->selectAll();
  rows()->on_copy();
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            std::string(model->row_text(0)) + "\r\n    " + std::string(model->row_text(1)) + "\r\n        " +
                std::string(model->row_text(2)));

  m_files = {path("log.txt")};
  ASSERT_TRUE(rows()->on_save());
  const std::string saved = read_file(path("log.txt"));
  EXPECT_EQ(std::count(saved.begin(), saved.end(), '\n'), 3);
  EXPECT_EQ(saved.back(), '\n');
  EXPECT_EQ(m_file_requests.back().default_name, "log.txt");

  // Folding the message hides its sub-message rows.
  rows()->toggle_expand(0);
  EXPECT_TRUE(rows()->isRowHidden(1));
  EXPECT_TRUE(rows()->isRowHidden(2));
  rows()->toggle_expand(0);
  EXPECT_FALSE(rows()->isRowHidden(2));
}

TEST_F(FrameTest, LongConsoleLinesScrollSideways) {
  make_frame(false);
  console()->get_msg_display()->echo_stdout("short");
  console()->drain_lines();
  QCoreApplication::processEvents();
  EXPECT_EQ(rows()->horizontalScrollBar()->maximum(), 0);
  console()->get_msg_display()->echo_stdout(std::string(600, 'x').c_str());
  console()->drain_lines();
  QCoreApplication::processEvents();
  EXPECT_GT(rows()->content_width(), rows()->viewport()->width());
  EXPECT_GT(rows()->horizontalScrollBar()->maximum(), 0);
  // The edit line spans the pane even when every row is short.
  console()->clear();
  engine_prompts();
  QCoreApplication::processEvents();
  LUM_CONSOLE_EDIT_CTRL* edit = rows()->open_edit_line(false);
  ASSERT_NE(edit, nullptr);
  QCoreApplication::processEvents();
  EXPECT_GE(edit->width(), rows()->viewport()->width() - 4);
}

TEST_F(FrameTest, ConsoleContextMenuOnlyOverRowsWithLocateDisabled) {
  make_frame(false);
  console()->get_msg_display()->echo_stdout("one line");
  console()->drain_lines();
  EXPECT_EQ(rows()->make_context_menu(QPoint(5, rows()->viewport()->height() - 2)), nullptr);
  QMenu* menu = rows()->make_context_menu(rows()->visualRect(rows()->model()->index(0, 0)).center());
  ASSERT_NE(menu, nullptr);
  QStringList texts;
  for (QAction* a : menu->actions()) texts << a->text();
  EXPECT_TRUE(texts.contains("&Copy"));
  EXPECT_TRUE(texts.contains("&Save..."));
  EXPECT_TRUE(texts.contains("C&lear"));
  QMenu* locate = nullptr;
  for (QAction* a : menu->actions())
    if (a->menu()) locate = a->menu();
  ASSERT_NE(locate, nullptr);
  EXPECT_EQ(locate->actions().size(), 8);
  for (QAction* a : locate->actions()) {
    EXPECT_FALSE(a->isEnabled());
    EXPECT_FALSE(a->toolTip().isEmpty());
  }
  delete menu;
}

TEST_F(FrameTest, TheEditLineSendsCommandsAndWalksTheHistory) {
  make_frame(true);
  LUM_CONSOLE_EDIT_CTRL* edit = rows()->open_edit_line(true);
  ASSERT_NE(edit, nullptr);
  for (const char* command : {"puts one", "puts two", "puts two", "  puts three  "}) {
    edit = rows()->open_edit_line(true);
    ASSERT_NE(edit, nullptr) << command;
    edit->setText(command);
    QTest::keyClick(edit, Qt::Key_Return);
    ASSERT_TRUE(wait_until([this] { return !console()->is_busy(); }, 30000));
  }
  // Every start is listed in the History tab; the arrow-key history keeps repeats once.
  ASSERT_EQ(history()->entry_count(), 4);
  EXPECT_EQ(history()->entry(3), "puts three");
  EXPECT_EQ(console()->get_history().size(), 3u);

  edit = rows()->open_edit_line(true);
  ASSERT_NE(edit, nullptr);
  QTest::keyClick(edit, Qt::Key_Up);
  EXPECT_EQ(edit->text(), "puts three");
  QTest::keyClick(edit, Qt::Key_Up);
  EXPECT_EQ(edit->text(), "puts two");
  QTest::keyClick(edit, Qt::Key_Down);
  EXPECT_EQ(edit->text(), "puts three");
  QTest::keyClick(edit, Qt::Key_Down);
  EXPECT_EQ(edit->text(), "") << "Down on the newest entry empties the line";
  QTest::keyClick(edit, Qt::Key_PageUp);
  EXPECT_EQ(edit->text(), "puts one");
  EXPECT_EQ(edit->cursorPosition(), edit->text().size());
  QTest::keyClick(edit, Qt::Key_PageDown);
  EXPECT_EQ(edit->text(), "");
  QTest::keyClick(edit, Qt::Key_Tab);
  EXPECT_EQ(edit->text(), "    ");
}

TEST_F(FrameTest, HistoryRunsSelectedEntriesAgainAndSavesAScript) {
  make_frame(false);
  console()->run_command("puts a");
  engine_prompts();
  console()->run_command("puts b");
  engine_prompts();
  ASSERT_EQ(history()->entry_count(), 2);

  history()->selectAll();
  console()->set_kro_is_busy(true);  // both wait in the queue
  history()->run_selected();
  EXPECT_EQ(console()->pending_count(), 2u);
  console()->set_kro_is_busy(false);
  console()->run_next_command();
  EXPECT_EQ(console()->get_current_command(), "puts a");
  engine_prompts();
  EXPECT_EQ(console()->get_current_command(), "puts b");
  engine_prompts();
  EXPECT_EQ(history()->entry_count(), 4);

  m_files = {path("history.tcl")};
  ASSERT_TRUE(history()->save_as());
  EXPECT_EQ(read_file(path("history.tcl")), "puts a\nputs b\nputs a\nputs b\n");
  EXPECT_EQ(m_file_requests.back().default_name, "history.tcl");
  // Below the last row the right click shows no menu; over a row it runs the entry.
  auto* tabs = m_frame->get_console_view();
  tabs->setCurrentWidget(history());
  m_frame->resize(900, 700);
  QCoreApplication::processEvents();
  const QRect last = history()->visualRect(history()->model()->index(history()->entry_count() - 1, 0));
  ASSERT_LT(last.bottom() + 10, history()->viewport()->height()) << "the History tab has room below its rows";
  EXPECT_FALSE(lum_test::lum_right_click_pick(history()->viewport(), QPoint(5, last.bottom() + 8), "Run").shown);
  history()->clearSelection();
  history()->selectionModel()->select(history()->model()->index(0, 0), QItemSelectionModel::Select);
  ASSERT_TRUE(lum_test::lum_right_click_pick(history()->viewport(), history()->visualRect(history()->model()->index(0, 0)).center(), "Run").picked);
  EXPECT_EQ(console()->get_current_command(), "puts a");
}

TEST_F(FrameTest, DebugMessagesGetTheirOwnTab) {
  cfg_set_override("debug_msg", "1");
  make_frame(false);
  ASSERT_NE(m_frame->get_console_view()->get_debug_tab(), nullptr);
  EXPECT_EQ(m_frame->get_console_view()->tabText(2), "vexa_lumex.exe debug messages");
  m_frame->open_project(path("design").c_str());
  ASSERT_TRUE(wait_until([this] { return !m_frame->get_console_view()->get_debug_tab()->toPlainText().isEmpty(); }, 10000));
  EXPECT_TRUE(m_frame->get_console_view()->get_debug_tab()->toPlainText().contains("assuming project extension is .vpf"));
}

// ---- site menu files -------------------------------------------------------------------

TEST_F(FrameTest, SiteMenuFilesAddQuickCommandsByPopupName) {
  QMenuBar bar;
  QMenu* file = bar.addMenu("&File");
  file->addAction("&Open");
  bar.addMenu("&Help");
  LUM_MENU_FILES files;
  ASSERT_TRUE(files.load_main_from_text(R"(<menu>
      <menu name="File">
        <menuitem name="Clocks"><tcl>report_clocks</tcl></menuitem>
        <menuitem name="Secret" debug="true"><tcl>secret</tcl></menuitem>
        <menuitem name="First" insert_before="Open"><tcl>first</tcl></menuitem>
        <menuitem name="Ask"><tcl>report_path -to $1</tcl><dialog><title>T</title><field default="x">To</field></dialog></menuitem>
      </menu>
      <menu name="Tools" insert_before="Help"><menuitem name="Front"><tcl>set a 1</tcl><run_in>lum</run_in></menuitem></menu>
      <menu name="Empty" insert_before="Help"></menu>
      <menu name="Nowhere"><menuitem name="Lost"><tcl>lost</tcl></menuitem></menu>
    </menu>)"));
  std::vector<unsigned> chosen;
  files.merge_into(&bar, [&](unsigned id) { chosen.push_back(id); });

  QStringList items;
  for (QAction* a : file->actions()) items << a->text();
  EXPECT_EQ(items, (QStringList{"First", "&Open", "Clocks", "Ask"}));
  QStringList popups;
  for (QAction* a : bar.actions()) popups << a->text();
  EXPECT_EQ(popups, (QStringList{"&File", "Tools", "&Help"}));
  ASSERT_EQ(files.get_menuitems().size(), 4u);

  std::vector<std::string> sent;
  auto engine = [&](const std::string& c) { sent.push_back(c); };
  files.set_prompt([](const LUM_MENUITEM& item) { return lum_compose_quick_command(item.command, "y", "", false); });
  files.run_quick_command(LUM_ID_QUICK_COMMAND_MIN + 0, nullptr, engine);
  files.run_quick_command(LUM_ID_QUICK_COMMAND_MIN + 2, nullptr, engine);
  files.set_prompt([](const LUM_MENUITEM&) { return std::string(); });  // cancelled
  files.run_quick_command(LUM_ID_QUICK_COMMAND_MIN + 2, nullptr, engine);
  EXPECT_EQ(sent, (std::vector<std::string>{"report_clocks", "report_path -to y"}));

  // Debug items appear with the switch on.
  cfg_set_override("lum_show_debug_commands", "1");
  QMenuBar bar2;
  bar2.addMenu("&File");
  LUM_MENU_FILES files2;
  files2.load_main_from_text(R"(<menu><menu name="File"><menuitem name="Secret" debug="true"><tcl>s</tcl></menuitem></menu></menu>)");
  files2.merge_into(&bar2, nullptr);
  EXPECT_EQ(bar2.actions().first()->menu()->actions().size(), 1);
}

TEST_F(FrameTest, TheShippedMenuFileAddsAToolsPopupBeforeHelp) {
  make_frame(false);
  QStringList popups;
  QMenu* tools = nullptr;
  for (QAction* a : m_frame->menuBar()->actions()) {
    popups << lum_menu_text_without_ampersands(a->text());
    if (a->text() == "Tools") tools = a->menu();
  }
  ASSERT_GE(popups.indexOf("Tools"), 0);
  EXPECT_EQ(popups.indexOf("Tools") + 1, popups.indexOf("Help"));
  ASSERT_NE(tools, nullptr);
  // Debug items stay hidden without "lum_show_debug_commands".
  EXPECT_EQ(m_frame->get_menu_files().get_menuitems().size(), 5u);
  // Quick commands follow the busy state.
  QAction* first = tools->actions().first();
  EXPECT_TRUE(first->isEnabled());
  console()->set_kro_is_busy(true);
  EXPECT_FALSE(first->isEnabled());
  console()->set_kro_is_busy(false);
  first->trigger();
  EXPECT_EQ(console()->get_current_command(), "report_checks -path_delay max");
}

}  // namespace
