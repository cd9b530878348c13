// The docking bars' push-pins: the rules as plain functions, then the real
// frame offscreen, where the pin, the edge tab and the View menu are clicked as
// a person does and the layout is carried to the next frame by the settings.
#include <QAction>
#include <QDockWidget>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QToolButton>

#include "engine/lum_console_view.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_dock_layout.hh"
#include "frame/lum_dock_pins.hh"
#include "frame/lum_frame_commands.hh"
#include "lum_frame_test_support.hh"
#include "tcl/lum_tcl_args_auto.hh"

namespace {

using lum_test::wait_until;

TEST(DockLayout, PinStatesAreWrittenAndReadBackAndBadEntriesLeaveBarsPinned) {
  LUM_DOCK_PIN_STATES states;
  states["Tasks"] = {false, LUM_DOCK_EDGE::LEFT, 340};
  states["Console"] = {false, LUM_DOCK_EDGE::BOTTOM, 220};
  states["Report"] = {};
  const std::string text = lum_dock_pin_states_to_text(states);
  EXPECT_EQ(text, "Console=unpinned,bottom,220;Report=pinned;Tasks=unpinned,left,340");
  EXPECT_EQ(lum_dock_pin_states_from_text(text), states);

  // Unknown edge, no size, size not a number, zero, no name, no '=': all left out.
  const LUM_DOCK_PIN_STATES read = lum_dock_pin_states_from_text(
      "A=unpinned,middle,100;B=unpinned,left;C=unpinned,top,wide;D=unpinned,top,0;=pinned;E;"
      "F=unpinned,right,90;G=pinned,extra");
  ASSERT_EQ(read.size(), 1u);
  EXPECT_EQ(read.at("F"), (LUM_DOCK_PIN_STATE{false, LUM_DOCK_EDGE::RIGHT, 90}));
  EXPECT_TRUE(lum_dock_pin_states_from_text("").empty());
}

TEST(DockLayout, SlideStatesFollowTheTabThePointerAndTheFocus) {
  using S = LUM_SLIDE;
  using E = LUM_SLIDE_EVENT;
  struct ROW {
    S from;
    E event;
    S to;
  };
  const ROW rows[] = {
      {S::HIDDEN, E::TAB_HOVERED, S::PEEK},   {S::HIDDEN, E::TAB_CLICKED, S::OPEN},
      {S::HIDDEN, E::FOCUS_INSIDE, S::HIDDEN}, {S::HIDDEN, E::POINTER_LEFT, S::HIDDEN},
      {S::PEEK, E::POINTER_LEFT, S::HIDDEN},   {S::PEEK, E::FOCUS_INSIDE, S::OPEN},
      {S::PEEK, E::TAB_CLICKED, S::OPEN},      {S::PEEK, E::FOCUS_OUTSIDE, S::HIDDEN},
      {S::PEEK, E::TAB_HOVERED, S::PEEK},      {S::OPEN, E::POINTER_LEFT, S::OPEN},
      {S::OPEN, E::TAB_HOVERED, S::OPEN},      {S::OPEN, E::TAB_CLICKED, S::HIDDEN},
      {S::OPEN, E::FOCUS_OUTSIDE, S::HIDDEN},  {S::OPEN, E::OTHER_OPENED, S::HIDDEN},
  };
  for (const ROW& row : rows)
    EXPECT_EQ(lum_next_slide(row.from, row.event), row.to)
        << static_cast<int>(row.from) << " on " << static_cast<int>(row.event);
}

TEST(DockLayout, PanelsTouchTheirEdgeAndKeepASensibleSize) {
  const LUM_RECT area{10, 20, 1000, 500};
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::LEFT, 300, area), (LUM_RECT{10, 20, 300, 500}));
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::RIGHT, 300, area), (LUM_RECT{710, 20, 300, 500}));
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::TOP, 200, area), (LUM_RECT{10, 20, 1000, 200}));
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::BOTTOM, 200, area), (LUM_RECT{10, 320, 1000, 200}));
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::RIGHT, 300, area, 0.5), (LUM_RECT{860, 20, 150, 500}));
  EXPECT_EQ(lum_slide_rect(LUM_DOCK_EDGE::BOTTOM, 200, area, 0.0), (LUM_RECT{10, 520, 1000, 0}));

  EXPECT_EQ(lum_clamp_slide_size(LUM_DOCK_EDGE::LEFT, 0, area), 333);  // never set: a third
  EXPECT_EQ(lum_clamp_slide_size(LUM_DOCK_EDGE::LEFT, 30, area), 120);
  EXPECT_EQ(lum_clamp_slide_size(LUM_DOCK_EDGE::LEFT, 5000, area), 800);
  EXPECT_EQ(lum_clamp_slide_size(LUM_DOCK_EDGE::BOTTOM, 5000, area), 400);
  EXPECT_EQ(lum_clamp_slide_size(LUM_DOCK_EDGE::TOP, 90, LUM_RECT{0, 0, 100, 100}), 80);  // tiny window
}

class DockPinsTest : public lum_test::FrameFixture {
 protected:
  void SetUp() override {
    FrameFixture::SetUp();
    cfg_set_override("lum_dont_startup_sta", "1");
  }
  void TearDown() override {
    destroy_frame();
    FrameFixture::TearDown();
  }
  LUM_DETACHED_FRAME* make_frame() {
    EXPECT_EQ(lum_lum_register_tcl(), TCL_OK);
    m_frame = LUM_DETACHED_FRAME::load_frame();
    if (m_frame != nullptr) {
      m_frame->activate_frame(1);
      m_frame->resize(1200, 800);
      QTest::qWaitForWindowExposed(m_frame);
      wait_until([this] { return m_frame->get_tasks_bar()->width() > 50; }, 2000);
    }
    return m_frame;
  }
  void destroy_frame() {
    if (LUM_DETACHED_FRAME::get_instance() != nullptr) delete LUM_DETACHED_FRAME::get_instance();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_frame = nullptr;
  }
  LUM_DOCK_PINS* pins() const { return m_frame->get_dock_pins(); }
  // True while a panel is still on its way out or back.
  bool slides() const {
    QWidget* panel = pins()->slide_panel(m_frame->get_tasks_bar());
    if (panel == nullptr || !panel->isVisible()) return false;
    const int before = panel->width();
    QTest::qWait(40);
    return panel->width() != before;
  }
  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center()); }
  // Chooses an entry of the View menu with the mouse.
  void choose_view_entry(unsigned id) {
    QMenuBar* bar = m_frame->menuBar();
    QAction* entry = m_frame->find_action(id);
    for (QAction* title : bar->actions()) {
      if (title->menu() == nullptr || !title->menu()->actions().contains(entry)) continue;
      QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(title).center());
      ASSERT_TRUE(wait_until([&] { return title->menu()->isVisible(); }, 3000));
      QTest::mouseClick(title->menu(), Qt::LeftButton, Qt::NoModifier, title->menu()->actionGeometry(entry).center());
      return;
    }
    ADD_FAILURE() << "no menu holds entry " << id;
  }

  LUM_DETACHED_FRAME* m_frame = nullptr;
};

TEST_F(DockPinsTest, UnpinnedTasksCollapseToATabThatSlidesOutAndBackAndThePinDocksThemAgain) {
  ASSERT_NE(make_frame(), nullptr);
  QDockWidget* tasks = m_frame->get_tasks_bar();
  QWidget* pane = tasks->widget();
  ASSERT_NE(pane, nullptr);
  const int docked_width = tasks->width();
  const QRect report_before = m_frame->get_report_bar()->geometry();

  click(pins()->pin_button(tasks));
  EXPECT_FALSE(pins()->is_pinned(tasks));
  EXPECT_FALSE(tasks->isVisible());
  LUM_EDGE_TAB* tab = pins()->edge_tab(tasks);
  ASSERT_NE(tab, nullptr);
  ASSERT_TRUE(wait_until([&] { return tab->isVisible(); }, 2000));
  // The tab stands on the left edge, upright, and the View entry stays checked.
  EXPECT_LT(tab->mapTo(m_frame, QPoint(0, 0)).x(), 40);
  EXPECT_GT(tab->height(), tab->width());
  EXPECT_TRUE(m_frame->find_action(LUM_ID_VIEW_TASK_PANE)->isChecked());
  EXPECT_EQ(pins()->pane(tasks), pane);

  // Resting the pointer on the tab slides the panel out over the other panes;
  // leaving puts it back.
  QTest::mouseMove(tab, tab->rect().center());
  ASSERT_TRUE(wait_until([&] { return pins()->slide_state(tasks) == LUM_SLIDE::PEEK; }, 3000));
  QWidget* panel = pins()->slide_panel(tasks);
  ASSERT_TRUE(wait_until([&] { return panel->isVisible() && panel->width() >= docked_width - 2; }, 3000));
  EXPECT_TRUE(panel->isAncestorOf(pane));
  EXPECT_GT(panel->geometry().left(), tab->mapTo(m_frame, QPoint(tab->width() - 1, 0)).x());
  QTest::mouseMove(m_frame->centralWidget(), m_frame->centralWidget()->rect().center());
  ASSERT_TRUE(wait_until([&] { return pins()->slide_state(tasks) == LUM_SLIDE::HIDDEN && !panel->isVisible(); }, 3000));

  // A click slides it out with the focus inside; focus moving into the console
  // sends it back.
  click(tab);
  ASSERT_TRUE(wait_until([&] { return pins()->slide_state(tasks) == LUM_SLIDE::OPEN && panel->isVisible(); }, 3000));
  QWidget* rows = m_frame->get_console_view()->get_rows();
  click(rows->focusProxy() != nullptr ? rows->focusProxy() : rows);
  ASSERT_TRUE(wait_until([&] { return pins()->slide_state(tasks) == LUM_SLIDE::HIDDEN && !panel->isVisible(); }, 3000));

  // The pin in the slid-out panel's title docks the bar again in its place.
  click(tab);
  ASSERT_TRUE(wait_until([&] { return panel->isVisible() && !slides(); }, 3000));
  click(pins()->pin_button(tasks));
  ASSERT_TRUE(wait_until([&] { return tasks->isVisible(); }, 3000));
  EXPECT_TRUE(pins()->is_pinned(tasks));
  EXPECT_EQ(tasks->widget(), pane);
  EXPECT_EQ(pins()->edge_tab(tasks), nullptr);
  EXPECT_EQ(m_frame->dockWidgetArea(tasks), Qt::LeftDockWidgetArea);
  EXPECT_TRUE(wait_until([&] { return m_frame->get_report_bar()->geometry().left() == report_before.left(); }, 2000));
}

TEST_F(DockPinsTest, TheViewMenuRestoresEachBarAndTheLayoutIsKeptForTheNextRun) {
  ASSERT_NE(make_frame(), nullptr);
  QDockWidget* console = m_frame->get_console_bar();
  QDockWidget* report = m_frame->get_report_bar();

  // An unpinned Console collapses to the bottom edge; View > Console docks it again.
  click(pins()->pin_button(console));
  ASSERT_NE(pins()->edge_tab(console), nullptr);
  EXPECT_GT(pins()->edge_tab(console)->width(), pins()->edge_tab(console)->height());
  choose_view_entry(LUM_ID_VIEW_CONSOLE);
  ASSERT_TRUE(wait_until([&] { return console->isVisible(); }, 3000));
  EXPECT_TRUE(pins()->is_pinned(console));
  EXPECT_EQ(m_frame->dockWidgetArea(console), Qt::BottomDockWidgetArea);

  // A closed Report comes back with View > Report; a floating one docks again.
  click(report->titleBarWidget()->findChild<QToolButton*>("lum_close"));
  EXPECT_FALSE(report->isVisible());
  EXPECT_FALSE(m_frame->find_action(LUM_ID_VIEW_REPORT_TREE)->isChecked());
  choose_view_entry(LUM_ID_VIEW_REPORT_TREE);
  ASSERT_TRUE(wait_until([&] { return report->isVisible(); }, 3000));
  click(report->titleBarWidget()->findChild<QToolButton*>("lum_float"));
  ASSERT_TRUE(report->isFloating());
  choose_view_entry(LUM_ID_VIEW_REPORT_TREE);
  EXPECT_FALSE(report->isFloating());
  EXPECT_TRUE(report->isVisible());

  // Unpinned Tasks with a panel width of its own: the next frame starts so.
  QDockWidget* tasks = m_frame->get_tasks_bar();
  click(pins()->pin_button(tasks));
  const std::string saved = pins()->save();
  EXPECT_NE(saved.find("Tasks=unpinned,left,"), std::string::npos) << saved;
  EXPECT_TRUE(m_frame->close());
  destroy_frame();

  ASSERT_NE(make_frame(), nullptr);
  tasks = m_frame->get_tasks_bar();
  EXPECT_FALSE(pins()->is_pinned(tasks));
  EXPECT_TRUE(pins()->is_pinned(m_frame->get_console_bar()));
  EXPECT_TRUE(pins()->is_pinned(m_frame->get_report_bar()));
  EXPECT_EQ(pins()->save(), saved);
  ASSERT_NE(pins()->edge_tab(tasks), nullptr);
  click(pins()->edge_tab(tasks));
  ASSERT_TRUE(wait_until([&] { return pins()->slide_state(tasks) == LUM_SLIDE::OPEN && !slides(); }, 3000));
  click(pins()->pin_button(tasks));
  ASSERT_TRUE(wait_until([&] { return tasks->isVisible(); }, 3000));
  EXPECT_NE(tasks->widget(), nullptr);
}

}  // namespace
