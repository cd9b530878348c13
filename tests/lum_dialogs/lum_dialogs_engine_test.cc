// The dialogs against the real engine: a clock made in the create clock
// dialog and a delay from a Tcl-opened dialog take effect (the engine
// registers the clock and writes both into its SDC), the name finder lists
// the design's ports, a refused constraint shows the engine's error and loses
// nothing, and the launcher's scripted run drives dialogs and writes its
// transcript. Skipped (with the reason) while the engine is not built.
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QPushButton>
#include <QTableView>

#include <fstream>
#include <sstream>

#include "dialogs/lum_name_finder_dlg.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_frame_commands.hh"
#include "lum_dialogs_test_support.hh"

namespace {

using lum_test::command_of;
using lum_test::press_ok;
using lum_test::type_into;
using lum_test::wait_until;
using lum_test::with_dialog;

const std::string kEngine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
const std::string kExampleDir = std::string(CHRONEL_EXAMPLES_DIR) + "/datapath";

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

class DialogsWithEngine : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    if (!QFileInfo(QString::fromStdString(kEngine)).isExecutable())
      GTEST_SKIP() << "the engine " << kEngine << " is not built (configure with the sta component)";
    FrameFixture::SetUp();
    // A copy of the example, so that the engine's files land in the temporary folder.
    QDir().mkpath(m_dir.filePath("netlist"));
    for (const char* file : {"datapath.vpf", "datapath.vsf", "datapath.sdc", "netlist/datapath.v"})
      ASSERT_TRUE(QFile::copy(QString::fromStdString(kExampleDir + "/" + file), m_dir.filePath(file))) << file;
    m_project = path("datapath.vpf");
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) {
      frame->set_sdc_needs_saving(false);
      delete frame;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!IsSkipped()) FrameFixture::TearDown();
  }

  bool idle() const {
    LUM_CONSOLE_CTRL* c = m_frame->get_console_ctrl();
    return !c->is_busy() && c->pending_count() == 0;
  }
  bool console_has(const std::string& text) const {
    LUM_CONSOLE_MODEL* model = m_frame->get_console_ctrl()->get_model();
    for (int row = 0; row < model->row_count(); ++row)
      if (model->row_text(row).find(text) != std::string_view::npos) return true;
    return false;
  }
  // Writes the engine's SDC through the console and returns it.
  std::string engine_sdc() {
    const std::string file = path("check.sdc");
    m_frame->get_console_ctrl()->run_command("write_sdc \"" + file + "\"");
    EXPECT_TRUE(wait_until([this] { return idle(); }, 60000));
    return read_file(file);
  }

  void open_with_netlist() {
    m_frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
    ASSERT_NE(m_frame, nullptr);
    ASSERT_TRUE(lum_open_project_file(m_project.c_str()));
    ASSERT_TRUE(wait_until([this] { return m_frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && idle(); }, 60000));
    // The command's dialog, pressed OK with its defaults.
    ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { m_frame->find_action(LUM_ID_CREATE_TIMING_NETLIST)->trigger(); },
                                             [](LUM_DIALOG_BASE* d) { press_ok(d); }));
    ASSERT_TRUE(wait_until([this] { return m_frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) == '1' && idle(); }, 120000));
  }

  LUM_DETACHED_FRAME* m_frame = nullptr;
  std::string m_project;
};

TEST_F(DialogsWithEngine, ConstraintsFromDialogsTakeEffect) {
  open_with_netlist();
  const auto& clocks = m_frame->get_clock_names();

  // A virtual clock from the menu.
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>([this] { lum_test::click_menu(m_frame, "Constraints", LUM_ID_CREATE_CLOCK); },
                                           [](LUM_DIALOG_BASE* d) {
    type_into(d, "name", "vclk");
    type_into(d, "period", "20");
    press_ok(d);
  }));
  ASSERT_TRUE(wait_until([this] { return idle(); }, 60000));
  EXPECT_EQ(m_frame->get_console_ctrl()->get_history().front(), "create_clock -period 20 -name vclk");
  EXPECT_NE(std::find(clocks.begin(), clocks.end(), "vclk"), clocks.end()) << "the engine registered the new clock";

  // An input delay from its Tcl command, on the new clock picked in the combo.
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>(
      [] { EXPECT_EQ(atcl_tcl_eval("lum_set_input_delay 0.7 {[get_ports clr]}"), TCL_OK); },
      [](LUM_DIALOG_BASE* d) {
        auto* clock = d->findChild<QComboBox*>("clock");
        const int index = clock->findText("vclk");
        ASSERT_GE(index, 0);
        clock->setCurrentIndex(index);
        emit clock->activated(index);
        EXPECT_EQ(command_of(d), "set_input_delay -clock vclk 0.7 [get_ports clr]");
        press_ok(d);
      }));
  ASSERT_TRUE(wait_until([this] { return idle(); }, 60000));
  const std::string sdc = engine_sdc();
  EXPECT_NE(sdc.find("vclk"), std::string::npos) << sdc;
  EXPECT_NE(sdc.find("0.7"), std::string::npos) << sdc;

  // A refused constraint: the engine's error shows, the window keeps working.
  ASSERT_TRUE(with_dialog<LUM_DIALOG_BASE>(
      [] { atcl_tcl_eval("lum_set_false_path -from {[get_clocks no_such_clock]}"); },
      [](LUM_DIALOG_BASE* d) { press_ok(d); }));
  ASSERT_TRUE(wait_until([this] { return idle(); }, 60000));
  EXPECT_TRUE(console_has("no_such_clock"));
  EXPECT_TRUE(m_frame->find_action(LUM_ID_SET_FALSE_PATH)->isEnabled());
}

TEST_F(DialogsWithEngine, NameFinderListsTheDesignsPorts) {
  open_with_netlist();
  ASSERT_TRUE(with_dialog<LUM_NAME_FINDER_DLG>([this] { lum_test::click_menu(m_frame, "View", LUM_ID_VIEW_NAME_FINDER); },
                                               [](LUM_NAME_FINDER_DLG* f) {
    f->findChild<QComboBox*>("collection")->setCurrentText("get_ports");
    type_into(f, "pattern", "a*");
    QTest::mouseClick(f->findChild<QPushButton*>("list"), Qt::LeftButton);
    QAbstractItemModel* matches = f->get_matches_view()->model();
    ASSERT_GT(matches->rowCount(), 1);
    QStringList names;
    for (int row = 0; row < matches->rowCount(); ++row) names << matches->index(row, 0).data().toString();
    EXPECT_TRUE(names.contains("a[0]")) << names.join(' ').toStdString();
    for (const QString& name : names) EXPECT_TRUE(name.startsWith('a')) << name.toStdString();
    f->get_matches_view()->selectionModel()->select(matches->index(0, 0),
                                                    QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::mouseClick(f->findChild<QPushButton*>("copy_one"), Qt::LeftButton);
    // A bracket in a name is quoted, so that the engine takes it literally.
    EXPECT_EQ(names.first(), "a[0]");
    EXPECT_EQ(command_of(f), "[get_ports {a[0]}]");
    lum_test::press_cancel(f);
  }));
  EXPECT_TRUE(m_boxes.empty());
}

TEST_F(DialogsWithEngine, ScriptedRunDrivesDialogsAndWritesItsTranscript) {
  const QString launcher = QString(CHRONEL_BIN_DIR) + "/vexa_lumex";
  if (!QFileInfo(launcher).isExecutable()) GTEST_SKIP() << "vexa_lumex is not built";
  const std::string script = path("constraints.tcl");
  std::ofstream(script) << "lum_edit_clock -type base -name sclk -period 9\n"
                           "lum_set_output_delay -clock sclk -max 1.25 {[get_ports zero]}\n";
  const std::string transcript = path("transcript.txt");
  QProcess process;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_CONFIG_HOME", m_dir.path());
  process.setProcessEnvironment(env);
  process.start(launcher, {"--command", "create_timing_netlist", "--set", "dialog_auto_ok=1", "--script",
                           QString::fromStdString(script), "--transcript", QString::fromStdString(transcript),
                           "--exit-when-idle", QString::fromStdString(m_project)});
  ASSERT_TRUE(process.waitForFinished(180000)) << process.readAllStandardError().toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  const std::string text = read_file(transcript);
  EXPECT_NE(text.find("tcl> create_timing_netlist\n"), std::string::npos) << text;
  const size_t clock = text.find("tcl> create_clock -period 9 -name sclk\n");
  const size_t delay = text.find("tcl> set_output_delay -clock sclk -max 1.25 [get_ports zero]\n");
  EXPECT_NE(clock, std::string::npos) << text;
  EXPECT_NE(delay, std::string::npos) << text;
  EXPECT_LT(clock, delay);
  EXPECT_EQ(text.find("Error"), std::string::npos) << text;

  // A script error fails the run, shows in the transcript, and the run still ends.
  std::ofstream(script) << "lum_set_false_path -no_such_option x\n";
  process.start(launcher, {"--script", QString::fromStdString(script), "--transcript",
                           QString::fromStdString(transcript), "--exit-when-idle"});
  ASSERT_TRUE(process.waitForFinished(180000));
  EXPECT_EQ(process.exitCode(), 1);
  EXPECT_NE(read_file(transcript).find("no_such_option"), std::string::npos) << read_file(transcript);
}

}  // namespace
