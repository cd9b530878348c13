// Catalogue messages in real (offscreen) message boxes: the buttons and icon
// that each box kind shows and the answer each button gives.
#include "platform/msg.hh"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

namespace {

struct SEEN {
  QMessageBox::StandardButtons buttons;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  QString text;
};

// Shows entry and, once the box is up, notes what it shows and clicks press.
int answer_with(const char* entry, QMessageBox::StandardButton press, SEEN* seen) {
  QTimer::singleShot(0, [press, seen] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    seen->buttons = box->standardButtons();
    seen->icon = box->icon();
    seen->text = box->text();
    if (QAbstractButton* button = box->button(press)) button->click();
  });
  return msg_show_catalogue_message(entry, "x.sdc");
}

TEST(MsgBox, EachBoxKindShowsItsButtonsAndMapsTheAnswer) {
  // Never a real screen, also when started outside ctest.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  int argc = 1;
  char name[] = "msg_box_test";
  char* argv[] = {name, nullptr};
  QApplication app(argc, argv);
  struct CASE {
    const char* entry;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon;
    QMessageBox::StandardButton press;
    int answer;
  } cases[] = {
      {"Busy with %1!s!./OLUM_BUSY", QMessageBox::Ok, QMessageBox::Warning, QMessageBox::Ok,
       MSG_ANSWER_OK},
      {"Write %1!s!?/YNLUM_WRITE", QMessageBox::Yes | QMessageBox::No, QMessageBox::Question,
       QMessageBox::No, MSG_ANSWER_NO},
      {"Write %1!s!?/YNLUM_WRITE", QMessageBox::Yes | QMessageBox::No, QMessageBox::Question,
       QMessageBox::Yes, MSG_ANSWER_YES},
      {"Convert %1!s!?/COLUM_CONVERT", QMessageBox::Ok | QMessageBox::Cancel,
       QMessageBox::Warning, QMessageBox::Cancel, MSG_ANSWER_CANCEL},
      {"Read %1!s!./ILUM_READ", QMessageBox::Ok, QMessageBox::Information, QMessageBox::Ok,
       MSG_ANSWER_OK},
      {"Lost %1!s!./ELUM_LOST", QMessageBox::Ok, QMessageBox::Critical, QMessageBox::Ok,
       MSG_ANSWER_OK},
  };
  for (const CASE& c : cases) {
    SEEN seen;
    EXPECT_EQ(answer_with(c.entry, c.press, &seen), c.answer) << c.entry;
    EXPECT_EQ(seen.buttons, c.buttons) << c.entry;
    EXPECT_EQ(seen.icon, c.icon) << c.entry;
    EXPECT_TRUE(seen.text.contains(QStringLiteral("x.sdc"))) << c.entry;
  }
}

}  // namespace
