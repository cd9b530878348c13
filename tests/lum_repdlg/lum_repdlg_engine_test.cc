// The report timing dialog against the real engine on a copy of the datapath
// example: opened from its menu entry, edited, OK; the new panel appears in
// the report tree, selected, with one folder per analysis and the asked number
// of rows; a refused command keeps the dialog open with the engine's message.
// Skipped (with the reason) while the engine is not built.
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>

#include "../lum_dialogs/lum_dialogs_test_support.hh"
#include "dialogs/lum_report_dlgs.hh"
#include "engine/lum_console_ctrl.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_frame_commands.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"
#include "report/lum_sta_report_toc_tree.hh"

namespace {

using lum_test::click_check;
using lum_test::command_of;
using lum_test::press_ok;
using lum_test::type_into;
using lum_test::wait_until;

const std::string kEngine = std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
const std::string kExampleDir = std::string(CHRONEL_EXAMPLES_DIR) + "/datapath";

class ReportTimingWithEngine : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    if (!QFileInfo(QString::fromStdString(kEngine)).isExecutable()) GTEST_SKIP() << "the engine is not built";
    FrameFixture::SetUp();
    QDir().mkpath(m_dir.filePath("netlist"));
    for (const char* file : {"datapath.vpf", "datapath.vsf", "datapath.sdc", "netlist/datapath.v"})
      ASSERT_TRUE(QFile::copy(QString::fromStdString(kExampleDir + "/" + file), m_dir.filePath(file))) << file;
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

  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(ReportTimingWithEngine, TheDialogsReportAppearsSelectedWithItsRows) {
  m_frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(m_frame, nullptr);
  ASSERT_TRUE(lum_open_project_file(path("datapath.vpf").c_str()));
  ASSERT_TRUE(wait_until([this] { return m_frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' && idle(); }, 60000));
  LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl();
  for (const char* command : {"create_timing_netlist", "read_sdc", "update_timing_netlist"}) console->run_command(command);
  ASSERT_TRUE(wait_until([this] { return m_frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '1' && idle(); }, 120000));

  lum_test::click_menu(m_frame, "Reports", LUM_ID_REPORT_TIMING);
  LUM_REPORT_TIMING_DLG* d = lum_get_report_timing_dlg();
  ASSERT_NE(d, nullptr);
  ASSERT_TRUE(wait_until([d] { return d->isVisible(); }, 3000));
  click_check(d->findChild<QCheckBox*>("hold"));
  type_into(d, "npaths", "4");
  EXPECT_EQ(command_of(d), "report_timing -setup -hold -npaths 4 -panel_name \"Report Timing\"");
  press_ok(d);
  ASSERT_TRUE(wait_until([this] { return idle(); }, 60000));
  EXPECT_FALSE(d->isVisible()) << d->get_engine_message().toStdString();

  // The report tree holds the panel, selected, with a folder per analysis.
  auto* tree = m_frame->findChild<LUM_STA_REPORT_TOC_TREE*>();
  ASSERT_NE(tree, nullptr);
  ASSERT_TRUE(wait_until([tree] { return tree->find_item("Report Timing") >= 0; }, 10000));
  const int panel = tree->find_item("Report Timing");
  const int selected = tree->get_selected_row();
  EXPECT_TRUE(selected == panel || (selected > panel && selected <= panel + 2 && tree->get_level(selected) > tree->get_level(panel)))
      << "selected: " << (selected >= 0 ? tree->get_label(selected) : std::string("none"));
  // Each analysis has its folder and its four paths.
  auto report = RDB_REPORT::open(rdb_report_file_path(path(""), "datapath", RDB_TIMING_REPORT));
  ASSERT_TRUE(report);
  ASSERT_NE(report->find_object("Report Timing"), nullptr);
  EXPECT_EQ(report->find_object("Report Timing")->get_number_of_children(), 2);
  for (const char* analysis : {"Setup", "Hold"}) {
    auto* summary = dynamic_cast<RDB_TABLE_OBJECT*>(
        report->find_object(std::string("Report Timing||") + analysis + "||Summary of Paths"));
    ASSERT_NE(summary, nullptr) << analysis;
    EXPECT_EQ(summary->get_number_of_data_rows(), 4) << analysis;
    EXPECT_NE(report->find_object(std::string("Report Timing||") + analysis + "||Path 4"), nullptr);
  }

  // A name the design lacks: the engine refuses, the dialog stays with its fields.
  lum_test::click_menu(m_frame, "Reports", LUM_ID_REPORT_TIMING);
  type_into(d, "from", "no_such_reg");
  const std::string refused = command_of(d);
  press_ok(d);
  ASSERT_TRUE(wait_until([this] { return idle(); }, 60000));
  EXPECT_TRUE(d->isVisible());
  EXPECT_NE(d->get_engine_message().toStdString().find("no_such_reg"), std::string::npos)
      << d->get_engine_message().toStdString();
  EXPECT_EQ(command_of(d), refused);
  d->hide();
}

}  // namespace
