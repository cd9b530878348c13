// Mouse and keyboard as a person uses them, for the widget tests: a right
// click delivered through the window (so that the widget under the pointer
// gets the context-menu event the window system would make), and the pick of
// an entry of the menu that pops up, by a click on its rectangle or by keys.
#pragma once

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <string>

namespace lum_test {

enum class MENU_PICK { CLICK, KEYS };

// What happened to the menu of a right click.
struct MENU_RESULT {
  bool shown = false;        // a menu popped up
  bool picked = false;       // the entry was there, enabled, and chosen
  QStringList entries;       // the texts of the entries, without "&"
  QList<bool> enabled;       // their enabled states
};

inline QString lum_menu_text(const QAction* action) { return QString(action->text()).remove(QLatin1Char('&')); }

// Right-clicks pos (in widget coordinates; a scroll area's viewport for a
// list) and, once the menu is up, chooses the entry whose text (without "&")
// is entry, or closes the menu with Escape when entry is empty, missing or
// disabled. Returns after the menu has gone.
inline MENU_RESULT lum_right_click_pick(QWidget* widget, QPoint pos, const QString& entry,
                                        MENU_PICK how = MENU_PICK::CLICK) {
  MENU_RESULT result;
  QTimer watch;
  watch.setInterval(5);
  QObject::connect(&watch, &QTimer::timeout, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr || !menu->isVisible()) return;
    watch.stop();
    result.shown = true;
    QAction* wanted = nullptr;
    int steps = 0;  // Down presses from the first entry to the wanted one
    int position = 0;
    for (QAction* action : menu->actions()) {
      if (action->isSeparator()) continue;
      result.entries << lum_menu_text(action);
      result.enabled << action->isEnabled();
      if (!entry.isEmpty() && lum_menu_text(action) == entry && action->isEnabled()) {
        wanted = action;
        steps = position;
      }
      if (action->isEnabled()) ++position;
    }
    if (wanted == nullptr) {
      QTest::keyClick(menu, Qt::Key_Escape);
      return;
    }
    result.picked = true;
    if (how == MENU_PICK::CLICK) {
      const QPoint at = menu->actionGeometry(wanted).center();
      QTest::mouseMove(menu, at);
      QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, at);
    } else {
      // Down moves over enabled entries only; the first Down lands on the first.
      for (int i = 0; i <= steps; ++i) QTest::keyClick(menu, Qt::Key_Down);
      QTest::keyClick(menu, Qt::Key_Return);
    }
  });
  watch.start();
  QWindow* window = widget->window()->windowHandle();
  if (window == nullptr) return result;
  const QPoint at = window->mapFromGlobal(widget->mapToGlobal(pos));
  QTest::mouseClick(window, Qt::RightButton, Qt::NoModifier, at);
  // A menu that never came: give the watch a moment, then stop it.
  QElapsedTimer waited;
  waited.start();
  while (watch.isActive() && waited.elapsed() < 500) QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  watch.stop();
  // Commands that the menu queued run now.
  QCoreApplication::processEvents();
  return result;
}

}  // namespace lum_test
