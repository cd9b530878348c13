// The Script menu's lists of Tcl scripts and the menu files' mistakes, on the
// offscreen platform without an engine: menus are opened and chosen with the
// mouse, as a person does.
#include <QAction>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QInputDialog>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocument>
#include <QTimer>

#include <fstream>

#include "dialogs/lum_clock_dlgs.hh"
#include "dialogs/lum_report_dlgs.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "engine/lum_help.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_entry.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_script_menus.hh"
#include "report/lum_report_view.hh"
#include "lum_frame_test_support.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

using lum_test::wait_until;

class MenusTest : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    cfg_set_override("lum_dont_startup_sta", "1");
  }
  void TearDown() override {
    if (LUM_DETACHED_FRAME::get_instance() != nullptr) delete LUM_DETACHED_FRAME::get_instance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    FrameFixture::TearDown();
  }
  LUM_DETACHED_FRAME* make_frame() {
    EXPECT_EQ(lum_lum_register_tcl(), TCL_OK);
    LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::load_frame();
    if (frame != nullptr) frame->activate_frame(1);
    return frame;
  }
  void touch(const std::string& name) {
    QDir().mkpath(QFileInfo(QString::fromStdString(path(name))).path());
    std::ofstream(path(name)) << "puts hi\n";
  }
  // Opens a popup of the menu bar with a click on its title.
  static QMenu* open_bar_menu(QMenuBar* bar, const QString& title) {
    for (QAction* action : bar->actions()) {
      if (lum_menu_text_without_ampersands(action->text()) != title) continue;
      QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(action).center());
      wait_until([&] { return action->menu()->isVisible(); }, 3000);
      return action->menu();
    }
    return nullptr;
  }
  static QStringList texts(QMenu* menu) {
    QStringList out;
    for (QAction* a : menu->actions()) out << (a->isSeparator() ? QString("--") : a->text());
    return out;
  }
};

TEST(ScriptLists, FoldersIdentifiersAndTheCapOfEachList) {
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  for (const char* name : {"b.tcl", "a.tcl", "notes.txt", "c.tcl.bak"}) std::ofstream(dir.filePath(name).toStdString()) << "";
  QDir(dir.path()).mkdir("folder.tcl");
  std::vector<std::string> list;
  lum_add_scripts_in_dir(&list, dir.path().toStdString());
  lum_add_scripts_in_dir(&list, dir.filePath("missing").toStdString());
  const std::string base = dir.path().toStdString() + "/";
  EXPECT_EQ(list, (std::vector<std::string>{base + "a.tcl", base + "b.tcl"}));

  EXPECT_EQ(lum_split_dir_list(" /a : /b;;/c d "), (std::vector<std::string>{"/a", "/b", "/c d"}));

  LUM_SCRIPT_LISTS lists;
  lists.project = {"/p/one.tcl"};
  for (int i = 0; i < 250; ++i) lists.global.push_back("/g/" + std::to_string(i) + ".tcl");
  const auto entries = lum_script_menu_entries(lists);
  ASSERT_EQ(entries.size(), 1u + 1u + 199u + 1u);
  EXPECT_EQ(entries[0].id, static_cast<unsigned>(LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN));
  EXPECT_EQ(entries[1].id, 0u);
  EXPECT_EQ(entries[2].id, static_cast<unsigned>(LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MIN));
  EXPECT_EQ(entries[200].id, static_cast<unsigned>(LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX));
  EXPECT_EQ(lum_script_for_id(lists, LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MIN + 3), "/g/3.tcl");
  EXPECT_EQ(lum_script_for_id(lists, LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN + 1), "");
  EXPECT_EQ(lum_script_for_id(lists, LUM_ID_RUN_USER_LIBS_TCL_SCRIPT_MIN), "");
  EXPECT_EQ(lum_script_for_id(lists, LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX + 1), "");
}

TEST_F(MenusTest, TheScriptMenuListsEachFolderAndSourcesTheChosenScript) {
  touch("proj/setup.tcl");
  touch("proj/checks.tcl");
  touch("proj/chip.vpf");
  touch("lib one/u.tcl");
  touch("global/g.tcl");
  cfg_set_override("lum_user_libraries", (path("lib one") + ":" + path("nowhere")).c_str());
  cfg_set_override("lum_global_user_library", path("global").c_str());
  LUM_DETACHED_FRAME* frame = make_frame();
  ASSERT_NE(frame, nullptr);
  frame->sta_opened_a_project(path("proj/chip.vpf"), "chip");

  QMenu* script = open_bar_menu(frame->menuBar(), "Script");
  ASSERT_NE(script, nullptr);
  const QStringList expected = {"&Run Tcl Script...", "--", QString::fromStdString(path("proj/checks.tcl")),
                                QString::fromStdString(path("proj/setup.tcl")), "--",
                                QString::fromStdString(path("lib one/u.tcl")), "--",
                                QString::fromStdString(path("global/g.tcl"))};
  EXPECT_EQ(texts(script), expected);
  script->close();
  // Opened again: the same entries, not twice.
  script = open_bar_menu(frame->menuBar(), "Script");
  EXPECT_EQ(texts(script), expected);

  QAction* setup = script->actions().at(3);
  QTest::mouseClick(script, Qt::LeftButton, Qt::NoModifier, script->actionGeometry(setup).center());
  EXPECT_EQ(frame->get_console_ctrl()->get_current_command(), "source \"" + path("proj/setup.tcl") + "\"");

  // Busy: the scripts are greyed when the menu opens.
  frame->get_console_ctrl()->set_kro_is_busy(true);
  script = open_bar_menu(frame->menuBar(), "Script");
  EXPECT_FALSE(script->actions().at(2)->isEnabled());
  script->close();
}

TEST_F(MenusTest, BrokenMenuFilesAreNamedInTheConsoleAndTheBuiltInMenusStay) {
  std::ofstream(path("site.xml")) << "<menu>\n<menu name=\"File\">\n<menuitem name=\"A\"><tcl>a</tcl></menuitem>\n"
                                     "<command name=\"B\"/>\n</menu>\n<toolbar/>\n</menu>\n";
  LUM_MENU_FILES files;
  files.load(path("site.xml"), path("missing.xml"));
  QMenuBar bar;
  bar.addMenu("&File");
  files.merge_into(&bar, nullptr);
  EXPECT_EQ(files.get_menuitems().size(), 1u) << "the good entry is kept";
  EXPECT_EQ(files.get_problems(),
            (std::vector<std::string>{"The menu file " + path("missing.xml") +
                                          " named by lum_extension_command_file does not exist",
                                      "site.xml line 4: unknown element <command> left out",
                                      "site.xml line 6: unknown element <toolbar> left out"}));

  std::ofstream(path("broken.xml")) << "<menu>\n<menu name=\"File\">\n</menux>\n";
  cfg_set_override("lum_extension_command_file", path("broken.xml").c_str());
  LUM_DETACHED_FRAME* frame = make_frame();
  ASSERT_NE(frame, nullptr);
  LUM_CONSOLE_MODEL* model = frame->get_console_ctrl()->get_model();
  auto said = [&] {
    for (int row = 0; row < model->row_count(); ++row)
      if (model->row_text(row).find("Warning (LUM_MENU_FILE): broken.xml is not valid XML (line 2)") != std::string_view::npos) return true;
    return false;
  };
  EXPECT_TRUE(wait_until(said, 3000));
  QMenu* file = open_bar_menu(frame->menuBar(), "File");
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(texts(file).contains("&Open Project..."));
  file->close();
}

}  // namespace

namespace {

// The whole front end without an engine: the report view in the centre.
class HelpTest : public MenusTest {
 protected:
  LUM_DETACHED_FRAME* make_whole_frame() {
    auto* frame = static_cast<LUM_DETACHED_FRAME*>(lum_dyn_adv_kro_tool());
    if (frame != nullptr) m_view = static_cast<LUM_REPORT_VIEW*>(frame->get_report_view());
    return frame;
  }
  QString title() const { return m_view->get_target_view_ctrl()->get_title(); }
  QString page_text() const {
    auto* browser = qobject_cast<QTextBrowser*>(m_view->get_target_view_ctrl()->get_page_window());
    return browser != nullptr ? browser->toPlainText() : QString();
  }
  LUM_REPORT_VIEW* m_view = nullptr;
};

TEST_F(HelpTest, TheStartPageF1AndTheSearchShowTheirPagesInTheReportView) {
  LUM_DETACHED_FRAME* frame = make_whole_frame();
  ASSERT_NE(frame, nullptr);
  // No project: the start page, with the examples.
  EXPECT_EQ(title(), "Start");
  EXPECT_TRUE(page_text().contains("datapath")) << page_text().toStdString();
  EXPECT_TRUE(page_text().contains("Getting started with the examples"));

  // Help > Contents (F1), chosen with the mouse.
  auto choose = [&](const QString& text) {
    QMenu* help = open_bar_menu(frame->menuBar(), "Help");
    ASSERT_NE(help, nullptr);
    for (QAction* action : help->actions())
      if (action->text() == text) QTest::mouseClick(help, Qt::LeftButton, Qt::NoModifier, help->actionGeometry(action).center());
  };
  EXPECT_EQ(frame->find_action(LUM_ID_HELP_CONTENTS)->shortcut(), QKeySequence(Qt::Key_F1));
  choose("&Contents");
  EXPECT_EQ(title(), "Help contents");

  // A dialog's F1 names its page and place.
  EXPECT_TRUE(lum_show_help("reports#histogram"));
  EXPECT_EQ(title(), "Reports");
  EXPECT_FALSE(lum_show_help("no-such-page"));
  EXPECT_EQ(title(), "Help contents");

  // F1 pressed in a dialog: the constraint dialogs' section, or the report
  // dialogs' section for a report dialog.
  auto source = [&] {
    auto* browser = qobject_cast<QTextBrowser*>(m_view->get_target_view_ctrl()->get_page_window());
    return browser != nullptr ? browser->source().fragment() : QString();
  };
  {
    LUM_CREATE_CLOCK_DLG clock(frame);
    clock.show();
    clock.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&clock));
    QTest::keyClick(&clock, Qt::Key_F1);
    EXPECT_EQ(title(), "Dialogs");
    EXPECT_EQ(source(), "constraints");
  }
  lum_show_help("index");
  {
    LUM_REPORT_NET_TIMING_DLG net(frame);
    net.show();
    net.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&net));
    QTest::keyClick(&net, Qt::Key_F1);
    EXPECT_EQ(title(), "Dialogs");
    EXPECT_EQ(source(), "reports");
  }

  // Search Help asks for words; the answer lists the pages that hold them.
  QTimer::singleShot(0, [] {
    wait_until([] { return qobject_cast<QInputDialog*>(QApplication::activeModalWidget()) != nullptr; }, 3000);
    auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    dialog->setTextValue("slack histogram");
    dialog->accept();
  });
  choose("&Search Help...");
  EXPECT_EQ(title(), "Search: slack histogram");
  EXPECT_TRUE(page_text().contains("Reports")) << page_text().toStdString();
}

TEST_F(HelpTest, AClickOnAnExampleOfTheStartPageOpensThatProject) {
  LUM_DETACHED_FRAME* frame = make_whole_frame();
  ASSERT_NE(frame, nullptr);
  ASSERT_EQ(title(), "Start");
  auto* browser = qobject_cast<QTextBrowser*>(m_view->get_target_view_ctrl()->get_page_window());
  ASSERT_NE(browser, nullptr);
  frame->resize(1200, 800);
  QTest::qWaitForWindowExposed(frame);
  // The example's name is the link; a person clicks on it.
  const QTextCursor link = browser->document()->find("datapath");
  ASSERT_FALSE(link.isNull()) << page_text().toStdString();
  QTextCursor inside = link;
  inside.setPosition(link.selectionStart() + 2);
  browser->ensureCursorVisible();
  const QPoint at = browser->cursorRect(inside).center();
  QTest::mouseClick(browser->viewport(), Qt::LeftButton, Qt::NoModifier, at);
  const std::string sent = frame->get_console_ctrl()->get_current_command();
  EXPECT_EQ(sent.rfind("project_open \"", 0), 0u) << sent;
  EXPECT_NE(sent.find("/datapath/datapath.vpf\" -revision datapath"), std::string::npos) << sent;
}

}  // namespace
