// The whole front end against the real engine, offscreen: the launcher's entry
// points open the example project, the menu builds the timing netlist, the
// flags and the menus follow, a command typed in the console runs, and closing
// with unsaved constraints asks and writes the SDC file. Skipped (with the
// reason) while the engine or the example project is not built yet.
#include <QAction>
#include <QFileInfo>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QProcess>

#include <csignal>
#include <fstream>
#include <sstream>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "engine/lum_console_view.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_engine_ended_dlg.hh"
#include "frame/lum_entry.hh"
#include "lum_frame_test_support.hh"

#include <filesystem>

namespace {

using lum_test::wait_until;

const std::string kEngine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
const std::string kExample = std::string(CHRONEL_EXAMPLES_DIR) + "/datapath/datapath.vpf";

class FrameWithEngine : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    if (!QFileInfo(QString::fromStdString(kEngine)).isExecutable())
      GTEST_SKIP() << "the engine " << kEngine << " is not built (configure with the sta component)";
    if (!QFileInfo(QString::fromStdString(kExample)).isFile())
      GTEST_SKIP() << "the example project " << kExample << " is missing";
    FrameFixture::SetUp();
    // Runs write their report database beside the project: a copy of the
    // example in the test's own folder keeps the repository as it is.
    std::filesystem::copy(std::filesystem::path(kExample).parent_path(), path("datapath"),
                          std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(path("datapath/vexa_db"));
    m_example = path("datapath/datapath.vpf");
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) delete frame;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!IsSkipped()) FrameFixture::TearDown();
  }

  std::string m_example;

  static bool has_row(LUM_CONSOLE_MODEL* model, const std::string& text) {
    for (int row = 0; row < model->row_count(); ++row)
      if (model->row_text(row).find(text) != std::string_view::npos) return true;
    return false;
  }
};

TEST_F(FrameWithEngine, OpenBuildTypeAndCloseWithTheSdcQuestion) {
  // What the launcher does with "vexa_lumex examples/datapath/datapath.vpf".
  auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(frame, nullptr);
  ASSERT_TRUE(lum_open_project_file(m_example.c_str()));
  LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && !console->is_busy(); }, 60000));
  EXPECT_TRUE(frame->windowTitle().contains("datapath"));
  EXPECT_EQ(frame->get_revision(), "datapath");
  QAction* create = frame->find_action(LUM_ID_CREATE_TIMING_NETLIST);
  QAction* report = frame->find_action(LUM_ID_REPORT_SETUP_SUMMARY);
  ASSERT_TRUE(create->isEnabled());
  EXPECT_FALSE(report->isEnabled());

  // The command's dialog, accepted with its defaults as a scripted run does.
  cfg_set_override("dialog_auto_ok", "1");
  create->trigger();
  cfg_set_override("dialog_auto_ok", "0");
  EXPECT_FALSE(create->isEnabled()) << "busy while the netlist is built";
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) == '1' && !console->is_busy(); }, 120000));
  EXPECT_FALSE(create->isEnabled());
  // The revision's SDC files are read with the netlist; when that leaves the
  // netlist behind the constraints, Update brings it up to date.
  if (frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '0') {
    EXPECT_FALSE(report->isEnabled());
    QAction* update = frame->find_action(LUM_ID_UPDATE_NETLIST);
    ASSERT_TRUE(update->isEnabled());
    update->trigger();
    ASSERT_TRUE(wait_until([&] { return !console->is_busy() && console->pending_count() == 0; }, 120000));
  }
  EXPECT_EQ(frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE), '1');
  EXPECT_FALSE(frame->find_action(LUM_ID_UPDATE_NETLIST)->isEnabled());
  EXPECT_TRUE(report->isEnabled());
  EXPECT_TRUE(frame->find_action(LUM_ID_WRITE_SDC_FILE)->isEnabled());
  EXPECT_EQ(frame->get_statusbar_text(1), "Ready");

  // A command typed at the console's prompt, which opened by itself.
  LUM_CONSOLE_ROWS* rows = frame->get_console_view()->get_rows();
  ASSERT_TRUE(wait_until([&] { return rows->get_edit_line() != nullptr; }, 10000));
  LUM_CONSOLE_EDIT_CTRL* edit = rows->get_edit_line();
  EXPECT_EQ(rows->indexWidget(rows->model()->index(rows->model()->rowCount() - 1, 0)), edit);
  edit->setText("puts \"typed [expr {6*7}]\"");
  rows->on_validate_edit();
  ASSERT_TRUE(wait_until([&] { return has_row(console->get_model(), "typed 42") && !console->is_busy(); }, 30000));

  // A constraint makes the netlist stale: reports grey, update enables.
  edit = rows->open_edit_line(true);
  ASSERT_NE(edit, nullptr);
  edit->setText("create_clock -name vclk -period 20");
  rows->on_validate_edit();
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '0' && !console->is_busy(); }, 30000));
  EXPECT_FALSE(report->isEnabled());
  EXPECT_TRUE(frame->find_action(LUM_ID_UPDATE_NETLIST)->isEnabled());
  EXPECT_TRUE(frame->get_sdc_needs_saving());

  // Closing asks about the unsaved constraints; Yes writes them first.
  const std::string sdc = path("saved [session] $1.sdc");
  m_answers = {MSG_ANSWER_YES};
  m_files = {sdc};
  EXPECT_TRUE(frame->close());
  EXPECT_EQ(m_boxes, std::vector<std::string>{"LUM_PROMPT_TO_WRITE_SDC"});
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), nullptr);
  std::ifstream in(sdc);
  ASSERT_TRUE(in.good()) << "the engine wrote no SDC file before it ended";
  std::stringstream text;
  text << in.rdbuf();
  EXPECT_NE(text.str().find("vclk"), std::string::npos) << text.str();
}

TEST_F(FrameWithEngine, AnEngineKilledMidCommandOffersItsConstraintsAndARestart) {
  auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(frame, nullptr);
  ASSERT_TRUE(lum_open_project_file(kExample.c_str()));
  LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && !console->is_busy(); }, 60000));
  cfg_set_override("dialog_auto_ok", "1");
  frame->find_action(LUM_ID_CREATE_TIMING_NETLIST)->trigger();
  cfg_set_override("dialog_auto_ok", "0");
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) == '1' && !console->is_busy(); }, 120000));

  // Constraints as a user sends them: typed one by one, two on one line,
  // names that need quoting, and one the engine refuses (kept all the same).
  const std::vector<std::string> sent = {
      "create_clock -name {fast clk} -period 2.5",
      "set_input_delay 0.4 -clock {fast clk} [all_inputs]",
      "set_output_delay 0.3 -clock {fast clk} [all_outputs]",
      "set_false_path -from [get_clocks {fast clk}] -to [get_clocks {fast clk}]",
      "set_max_delay 7 -to [all_outputs]",
      "create_clock -name broken -period",
  };
  for (size_t i = 0; i < 4; ++i) console->run_command(sent[i]);
  console->run_command(sent[4] + "; puts between; " + sent[5]);
  // The engine leaves a line on its real standard error (Tcl's own stderr
  // channel is console text), then is killed in the middle of a command that
  // would run for half a minute.
  console->run_command("set f [open /dev/stderr w]; puts $f {engine: about to be stopped}; close $f; after 30000");
  ASSERT_TRUE(wait_until([&] { return console->pending_count() == 0 && console->get_current_command().rfind("set f", 0) == 0; }, 60000));
  QTest::qWait(500);
  ASSERT_TRUE(console->is_busy());
  console->get_ipc_object()->kill_child(SIGKILL);

  LUM_ENGINE_ENDED_DLG* box = nullptr;
  ASSERT_TRUE(wait_until([&] { return (box = frame->findChild<LUM_ENGINE_ENDED_DLG*>()) != nullptr; }, 15000));
  EXPECT_EQ(LUM_DETACHED_FRAME::get_instance(), frame) << "the window stays";
  EXPECT_TRUE(m_boxes.empty());
  EXPECT_NE(box->findChild<QLabel*>("reason")->text().indexOf("signal 9"), -1)
      << box->findChild<QLabel*>("reason")->text().toStdString();
  ASSERT_NE(box->findChild<QPlainTextEdit*>("error_output"), nullptr);
  EXPECT_NE(box->findChild<QPlainTextEdit*>("error_output")->toPlainText().indexOf("engine: about to be stopped"), -1);
  EXPECT_FALSE(console->is_busy());

  // Save: every constraint sent, in order, nothing else.
  const std::string sdc = path("after the crash.sdc");
  m_files = {sdc};
  QTest::mouseClick(box->get_save_button(), Qt::LeftButton);
  ASSERT_EQ(m_file_requests.size(), 1u);
  EXPECT_TRUE(m_file_requests[0].save);
  EXPECT_NE(box->get_status_text().indexOf("saved"), -1) << box->get_status_text().toStdString();
  std::ifstream in(sdc);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);)
    if (!line.empty() && line[0] != '#') lines.push_back(line);
  EXPECT_EQ(lines, sent);

  // Restart: a new engine, the project open again, the console's rows kept.
  QTest::mouseClick(box->get_restart_button(), Qt::LeftButton);
  ASSERT_TRUE(wait_until([&] { return frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && !console->is_busy(); }, 60000));
  EXPECT_TRUE(console->is_kro_running());
  EXPECT_EQ(frame->get_revision(), "datapath");
  EXPECT_TRUE(has_row(console->get_model(), "between"));
  EXPECT_TRUE(frame->find_action(LUM_ID_CREATE_TIMING_NETLIST)->isEnabled());
}

TEST_F(FrameWithEngine, TheLauncherOpensTheExampleAndTakesAScreenshot) {
  const QString launcher = QString(CHRONEL_BIN_DIR) + "/vexa_lumex";
  if (!QFileInfo(launcher).isExecutable()) GTEST_SKIP() << "vexa_lumex is not built";
  const QString png = QString::fromStdString(path("shot.png"));
  QProcess process;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_CONFIG_HOME", m_dir.path());
  process.setProcessEnvironment(env);
  process.start(launcher, {"--command", "create_timing_netlist", "--screenshot", png, QString::fromStdString(m_example)});
  ASSERT_TRUE(process.waitForFinished(120000)) << process.readAllStandardError().toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  EXPECT_GT(QFileInfo(png).size(), 1000);

}

}  // namespace
