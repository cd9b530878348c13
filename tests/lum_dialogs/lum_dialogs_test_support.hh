// What the dialog window tests share: running a handler on a modal dialog
// once it shows, clicking a menu entry through the menu bar, typing into a
// named edit, and pressing OK or Cancel.
#pragma once

#include <QApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>

#include "../lum_frame/lum_frame_test_support.hh"
#include "dialogs/lum_dialog_base.hh"
#include "frame/lum_detached_frame.hh"

namespace lum_test {

// Runs handle on the modal dialog of type T as soon as it shows; trigger
// opens it and returns once the dialog has closed. A handler that leaves the
// dialog open has it cancelled. Returns whether the dialog showed.
template <typename T>
bool with_dialog(const std::function<void()>& trigger, const std::function<void(T*)>& handle) {
  bool seen = false;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&seen, &poll, &handle] {
    T* dialog = dynamic_cast<T*>(QApplication::activeModalWidget());
    if (dialog == nullptr || !dialog->isVisible()) return;
    poll.stop();
    seen = true;
    handle(dialog);
    if (dialog->isVisible()) dialog->reject();
  });
  poll.start(20);
  trigger();
  poll.stop();
  return seen;
}

// Clicks a popup of the frame's menu bar and then the entry of a command.
inline void click_menu(LUM_DETACHED_FRAME* frame, const QString& popup_text, unsigned command_id) {
  QMenuBar* bar = frame->menuBar();
  QAction* popup_action = nullptr;
  for (QAction* a : bar->actions())
    if (QString(a->text()).remove('&') == popup_text) popup_action = a;
  ASSERT_NE(popup_action, nullptr) << popup_text.toStdString();
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(popup_action).center());
  QMenu* popup = popup_action->menu();
  ASSERT_TRUE(wait_until([popup] { return popup->isVisible(); }, 3000));
  QAction* entry = frame->find_action(command_id);
  ASSERT_TRUE(popup->actions().contains(entry));
  ASSERT_TRUE(entry->isEnabled()) << entry->text().toStdString();
  QTest::mouseClick(popup, Qt::LeftButton, {}, popup->actionGeometry(entry).center());
}

inline void type_into(QWidget* dialog, const char* name, const QString& text) {
  auto* edit = dialog->findChild<QLineEdit*>(name);
  ASSERT_NE(edit, nullptr) << name;
  edit->selectAll();
  QTest::keyClick(edit, Qt::Key_Delete);
  QTest::keyClicks(edit, text);
}

// Clicks a check box on its box, where a person clicks (its centre may lie
// beyond its text when the box spans a wide column).
inline void click_check(QWidget* check) {
  ASSERT_NE(check, nullptr);
  QTest::mouseClick(check, Qt::LeftButton, {}, QPoint(8, check->height() / 2));
}

inline std::string command_of(QWidget* dialog) { return dialog->findChild<QLineEdit*>("command")->text().toStdString(); }
inline void press_ok(LUM_DIALOG_BASE* dialog) { QTest::mouseClick(dialog->get_ok_button(), Qt::LeftButton); }
inline void press_cancel(LUM_DIALOG_BASE* dialog) {
  QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel), Qt::LeftButton);
}

}  // namespace lum_test
