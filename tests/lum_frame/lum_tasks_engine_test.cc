// The Tasks pane against the real engine, offscreen, on a copy of the
// datapath example: a double click on a late step runs its prerequisites one
// after the other, every status mark turns OK, rows are greyed while the
// engine works, and the context menu starts a step. Skipped (with the reason)
// while the engine or the example is not built.
#include <QAbstractItemView>
#include <QListWidget>
#include <QContextMenuEvent>
#include <QDir>
#include <QDockWidget>
#include <QPointer>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QTreeWidget>

#include <map>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "engine/lum_console_view.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_steps_wnd.hh"
#include "lum_frame_test_support.hh"

namespace {

using lum_test::wait_until;

const QString kEngine = QString(CHRONEL_BIN_DIR) + "/vexa_sta";
const QString kExample = QString(CHRONEL_EXAMPLES_DIR) + "/datapath";

class TasksWithEngine : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    if (!QFileInfo(kEngine).isExecutable()) GTEST_SKIP() << "the engine is not built";
    if (!QFileInfo(kExample + "/datapath.vpf").isFile()) GTEST_SKIP() << "the datapath example is missing";
    FrameFixture::SetUp();
    // The engine writes its report database beside the project: a copy in
    // the test's own folder keeps the example untouched.
    QDir dir(m_dir.path());
    ASSERT_TRUE(dir.mkpath("datapath/netlist"));
    for (const char* name : {"datapath.vpf", "datapath.vsf", "datapath.sdc", "netlist/datapath.v"})
      ASSERT_TRUE(QFile::copy(kExample + "/" + name, m_dir.path() + "/datapath/" + name)) << name;
    m_project = (m_dir.path() + "/datapath/datapath.vpf").toStdString();
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) {
      frame->set_sdc_needs_saving(false);
      delete frame;
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (!IsSkipped()) FrameFixture::TearDown();
  }

  // The row at which a command line was echoed in the console, -1 if never.
  static int echo_row(LUM_CONSOLE_MODEL* model, const std::string& command) {
    for (int row = 0; row < model->row_count(); ++row)
      if (model->row_text(row).find(command) != std::string_view::npos) return row;
    return -1;
  }

  std::string m_project;
};

TEST_F(TasksWithEngine, DoubleClickingTheSetupSummaryRunsTheWholeChainInOrder) {
  auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(frame, nullptr);
  auto* pane = qobject_cast<LUM_STEPS_WND*>(frame->get_tasks_bar()->widget());
  ASSERT_NE(pane, nullptr) << "the Tasks bar holds the steps pane";
  EXPECT_FALSE(pane->get_message_line()->isVisible()) << pane->get_message_line()->text().toStdString();
  LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();

  const char* chain[] = {"Open Project", "Create Timing Netlist", "Read SDC File", "Update Timing Netlist",
                         "Report Setup Summary"};
  std::map<std::string, int> row;
  for (const char* name : chain) {
    row[name] = pane->find_row(name);
    ASSERT_GE(row[name], 0) << name;
  }
  // No project: only opening one can be started.
  EXPECT_TRUE(wait_until([&] { return pane->is_enabled(row["Open Project"]); }, 10000)) << console->is_busy();
  EXPECT_FALSE(pane->is_enabled(row["Report Setup Summary"]));

  ASSERT_TRUE(lum_open_project_file(m_project.c_str()));
  ASSERT_TRUE(wait_until([&] { return pane->get_status(row["Open Project"]) == LUM_STEP_OK && !console->is_busy(); }, 60000));
  for (const char* name : chain)
    if (std::string(name) != "Open Project") {
      EXPECT_EQ(pane->get_status(row[name]), LUM_STEP_NOT_DONE) << name;
    }
  ASSERT_TRUE(pane->is_enabled(row["Report Setup Summary"]));
  QTreeWidgetItem* summary = pane->item_of(row["Report Setup Summary"]);
  EXPECT_NE(summary->toolTip(0).indexOf("Setup slack per clock domain"), -1) << summary->toolTip(0).toStdString();

  // A person double-clicks the step's name.
  QTreeWidget* tree = pane->get_tree();
  tree->scrollToItem(summary);
  const QRect rect = tree->visualItemRect(summary);
  QTest::mouseDClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rect.center());

  // Statuses turn OK one at a time, in the order of the chain; while the
  // engine works the rows cannot be started.
  std::vector<std::string> became_ok;
  bool seen_greyed = false;
  ASSERT_TRUE(wait_until(
      [&] {
        for (const char* name : chain)
          if (pane->get_status(row[name]) == LUM_STEP_OK &&
              std::find(became_ok.begin(), became_ok.end(), name) == became_ok.end())
            became_ok.push_back(name);
        if (console->is_busy() && !pane->is_enabled(row["Report Setup Summary"])) seen_greyed = true;
        return pane->get_status(row["Report Setup Summary"]) == LUM_STEP_OK && !console->is_busy() &&
               console->pending_count() == 0;
      },
      180000))
      << "statuses: " << pane->get_status(row["Create Timing Netlist"]) << pane->get_status(row["Read SDC File"])
      << pane->get_status(row["Update Timing Netlist"]);
  EXPECT_EQ(became_ok, std::vector<std::string>(std::begin(chain), std::end(chain)));
  EXPECT_TRUE(seen_greyed);
  for (const char* name : chain) EXPECT_EQ(pane->get_status(row[name]), LUM_STEP_OK) << name;
  EXPECT_TRUE(pane->get_runner().queue().empty());

  // The engine saw the commands in that order, each once.
  LUM_CONSOLE_MODEL* model = console->get_model();
  const int netlist = echo_row(model, "create_timing_netlist");
  const int sdc = echo_row(model, "read_sdc");
  const int update = echo_row(model, "update_timing_netlist");
  const int report = echo_row(model, "create_timing_summary -setup");
  EXPECT_TRUE(netlist >= 0 && netlist < sdc && sdc < update && update < report)
      << netlist << " " << sdc << " " << update << " " << report;

  // The context menu of a group offers nothing to start; that of a report
  // step starts it.
  auto open_menu = [&](const char* name) -> QMenu* {
    QTreeWidgetItem* item = pane->item_of(pane->find_row(name));
    tree->scrollToItem(item);
    const QPoint at = tree->visualItemRect(item).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, tree->viewport()->mapToGlobal(at));
    QApplication::sendEvent(tree->viewport(), &event);
    QMenu* menu = nullptr;
    wait_until([&] { return (menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) != nullptr; }, 5000);
    return menu;
  };
  QMenu* menu = open_menu("Summaries");
  ASSERT_NE(menu, nullptr);
  EXPECT_FALSE(menu->findChild<QAction*>("start")->isEnabled());
  EXPECT_FALSE(menu->findChild<QAction*>("properties")->isEnabled());
  QTest::keyClick(menu, Qt::Key_Escape);
  menu = open_menu("Report Hold Summary");
  ASSERT_NE(menu, nullptr);
  QAction* start = menu->findChild<QAction*>("start");
  ASSERT_TRUE(start->isEnabled());
  QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(start).center());
  ASSERT_TRUE(wait_until([&] { return pane->get_status(pane->find_row("Report Hold Summary")) == LUM_STEP_OK && !console->is_busy(); }, 60000));

  // A constraint typed in the console puts the reports out of date.
  console->run_command("set_input_delay -clock clk 1.0 [all_inputs]");
  ASSERT_TRUE(wait_until([&] { return !console->is_busy() && console->pending_count() == 0; }, 60000));
  EXPECT_EQ(pane->get_status(row["Update Timing Netlist"]), LUM_STEP_NOT_DONE);
  EXPECT_EQ(pane->get_status(row["Report Setup Summary"]), LUM_STEP_OUT_OF_DATE);
}

}  // namespace

namespace {

// Tab in the real console: command names and options come from the engine's
// own table, clock names from the design it has loaded; several candidates
// open a popup list from which Enter takes the chosen one.
TEST_F(TasksWithEngine, TabInTheConsoleCompletesCommandsOptionsAndClocksFromTheEngine) {
  auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
  ASSERT_NE(frame, nullptr);
  LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();
  ASSERT_TRUE(lum_open_project_file(m_project.c_str()));
  console->run_command("create_timing_netlist");
  console->run_command("read_sdc");
  ASSERT_TRUE(wait_until([&] { return console->pending_count() == 0 && !console->is_busy(); }, 60000));
  QPointer<LUM_CONSOLE_EDIT_CTRL> edit = frame->findChild<LUM_CONSOLE_EDIT_CTRL*>();
  ASSERT_NE(edit, nullptr);
  ASSERT_TRUE(wait_until([&] { return edit->isVisible() && !edit->isReadOnly(); }, 10000));
  edit->setFocus();

  const auto type_and_tab = [&](const char* text) {
    edit->clear();
    QTest::keyClicks(edit, text);
    QTest::keyClick(edit, Qt::Key_Tab);
    return edit->text().toStdString();
  };
  // One candidate each: put in whole, with a blank after it.
  EXPECT_EQ(type_and_tab("create_generated_c"), "create_generated_clock ");
  QTest::qWait(300);
  ASSERT_FALSE(edit.isNull()) << "the hidden query replaced the edit line";
  EXPECT_EQ(type_and_tab("create_clock -per"), "create_clock -period ");
  EXPECT_EQ(type_and_tab("report_checks -to ze"), "report_checks -to zero ");
  EXPECT_TRUE(edit->get_completer() == nullptr || !edit->get_completer()->isVisible());

  // Several: the common part, and the popup list.
  EXPECT_EQ(type_and_tab("report_check"), "report_check");
  QPointer<QListWidget> popup = edit->get_completer();
  ASSERT_NE(popup, nullptr);
  ASSERT_TRUE(wait_until([&] { return popup->isVisible(); }, 3000));
  QStringList shown;
  for (int r = 0; r < popup->model()->rowCount(); ++r) shown << popup->model()->index(r, 0).data().toString();
  EXPECT_TRUE(shown.contains("report_checks")) << shown.join(' ').toStdString();
  EXPECT_TRUE(shown.contains("report_check_types")) << shown.join(' ').toStdString();
  popup->setCurrentRow(shown.indexOf("report_checks"));
  QTest::keyClick(popup, Qt::Key_Return);
  EXPECT_FALSE(popup->isVisible());
  QTest::qWait(300);
  ASSERT_FALSE(edit.isNull()) << "the Return that took the candidate ran the line";
  ASSERT_TRUE(console->get_history().empty() || console->get_history().front().find("report_checks") == std::string::npos);
  EXPECT_EQ(edit->text().toStdString(), "report_checks ");
  EXPECT_EQ(console->get_current_command().find("report_checks"), std::string::npos);

  // The clock (and port) names of the loaded design: clk and clr share "cl".
  EXPECT_EQ(type_and_tab("report_checks -from [get_clocks cl"), "report_checks -from [get_clocks cl");
  ASSERT_FALSE(edit.isNull());
  ASSERT_FALSE(popup.isNull());
  ASSERT_TRUE(wait_until([&] { return popup->isVisible(); }, 3000));
  shown.clear();
  for (int r = 0; r < popup->model()->rowCount(); ++r) shown << popup->model()->index(r, 0).data().toString();
  EXPECT_EQ(shown, QStringList({"clk", "clr"}));
  // A click takes the candidate under the pointer.
  QTest::mouseClick(popup->viewport(), Qt::LeftButton, Qt::NoModifier, popup->visualItemRect(popup->item(1)).center());
  EXPECT_EQ(edit->text().toStdString(), "report_checks -from [get_clocks clr ");
  EXPECT_FALSE(popup->isVisible());
  // The query left nothing in the console's history.
  for (const std::string& entry : console->get_history()) EXPECT_EQ(entry.find("cmd_args"), std::string::npos);
}

}  // namespace
