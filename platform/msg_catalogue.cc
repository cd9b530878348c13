// The message catalogue: entries "text/KIND ID", their insertion mark and the
// boxes that show them.
#include "platform/msg.hh"

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QThread>

#include <cstdio>
#include <cstring>
#include <mutex>

namespace {

std::mutex g_box_mutex;
MSG_BOX_HANDLER g_box_handler;

const char k_insertion_mark[] = "%1!s!";

// The answer a box gives when it cannot be shown: the one that changes nothing
// (No for a question, Cancel for a confirmation, OK otherwise), so that a run
// without a screen never does something destructive that nobody confirmed.
int msg_unattended_answer(MSG_BOX_KIND box) {
  switch (box) {
    case MSG_BOX_KIND::YES_NO:
      return MSG_ANSWER_NO;
    case MSG_BOX_KIND::CONFIRM:
      return MSG_ANSWER_CANCEL;
    default:
      return MSG_ANSWER_OK;
  }
}

// A question entry whose kind letters are "YNC" offers Cancel besides Yes and No.
bool msg_question_may_be_cancelled(const char* entry) {
  const char* slash = entry ? std::strrchr(entry, '/') : nullptr;
  return slash != nullptr && std::strncmp(slash + 1, "YNC", 3) == 0;
}

}  // namespace

MSG_CATALOGUE_ENTRY MSG_CATALOGUE_ENTRY::parse(const char* entry) {
  MSG_CATALOGUE_ENTRY result;
  if (entry == nullptr) return result;
  const char* slash = std::strrchr(entry, '/');
  if (slash == nullptr) {
    result.text = entry;
    return result;
  }
  // The longer kinds first: "YNC" (a question that may be cancelled, answered
  // like "YN" or with Cancel) must not be read as "YN", nor "CO" and "YN" as
  // "C..." or "Y...".
  static const struct {
    const char* letters;
    MSG_BOX_KIND box;
  } k_kinds[] = {{"YNC", MSG_BOX_KIND::YES_NO}, {"YN", MSG_BOX_KIND::YES_NO},     {"CO", MSG_BOX_KIND::CONFIRM},
                 {"O", MSG_BOX_KIND::OK},          {"I", MSG_BOX_KIND::INFORMATION},
                 {"E", MSG_BOX_KIND::ERROR}};
  const char* suffix = slash + 1;
  // Identifiers are upper case, digits and "_": what follows the kind letters
  // must be one, so that a path such as "/tmp/Example" stays text.
  auto is_identifier = [](const char* id) {
    for (; *id != '\0'; ++id)
      if (!((*id >= 'A' && *id <= 'Z') || (*id >= '0' && *id <= '9') || *id == '_')) return false;
    return true;
  };
  for (const auto& kind : k_kinds) {
    size_t length = std::strlen(kind.letters);
    if (std::strncmp(suffix, kind.letters, length) == 0 && is_identifier(suffix + length)) {
      result.text.assign(entry, static_cast<size_t>(slash - entry));
      result.box = kind.box;
      result.id = suffix + length;
      return result;
    }
  }
  // A slash without a box kind after it belongs to the text (a path, say).
  result.text = entry;
  return result;
}

std::string MSG_CATALOGUE_ENTRY::format(const char* insert) const {
  std::string replacement = insert != nullptr ? insert : "";
  std::string out;
  out.reserve(text.size() + replacement.size());
  size_t mark_length = sizeof(k_insertion_mark) - 1;
  size_t start = 0;
  for (;;) {
    size_t pos = text.find(k_insertion_mark, start);
    if (pos == std::string::npos) break;
    out.append(text, start, pos - start);
    out += replacement;
    start = pos + mark_length;
  }
  out.append(text, start, std::string::npos);
  return out;
}

void msg_set_box_handler(MSG_BOX_HANDLER handler) {
  std::lock_guard<std::mutex> lock(g_box_mutex);
  g_box_handler = std::move(handler);
}

int msg_show_catalogue_message(const char* entry, const char* insert) {
  MSG_CATALOGUE_ENTRY parsed = MSG_CATALOGUE_ENTRY::parse(entry);
  std::string text = parsed.format(insert);
  MSG_BOX_HANDLER handler;
  {
    std::lock_guard<std::mutex> lock(g_box_mutex);
    handler = g_box_handler;
  }
  if (handler) return handler(parsed, text);

  // Without a widget application (or away from its thread) no box can be
  // shown; the text still reaches the user and nothing waits for an answer.
  auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (app == nullptr || QThread::currentThread() != app->thread()) {
    std::fprintf(stderr, "%s\n", text.c_str());
    std::fflush(stderr);
    return msg_unattended_answer(parsed.box);
  }

  QMessageBox box(QApplication::activeWindow());
  box.setWindowTitle(QStringLiteral("Chronel Timing Analyzer"));
  box.setText(QString::fromStdString(text));
  switch (parsed.box) {
    case MSG_BOX_KIND::OK:
      box.setIcon(QMessageBox::Warning);
      box.setStandardButtons(QMessageBox::Ok);
      break;
    case MSG_BOX_KIND::YES_NO:
      box.setIcon(QMessageBox::Question);
      box.setStandardButtons(QMessageBox::Yes | QMessageBox::No |
                             (msg_question_may_be_cancelled(entry) ? QMessageBox::Cancel : QMessageBox::NoButton));
      box.setDefaultButton(QMessageBox::Yes);
      break;
    case MSG_BOX_KIND::CONFIRM:
      box.setIcon(QMessageBox::Warning);
      box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
      box.setDefaultButton(QMessageBox::Ok);
      break;
    case MSG_BOX_KIND::INFORMATION:
      box.setIcon(QMessageBox::Information);
      box.setStandardButtons(QMessageBox::Ok);
      break;
    case MSG_BOX_KIND::ERROR:
      box.setIcon(QMessageBox::Critical);
      box.setStandardButtons(QMessageBox::Ok);
      break;
  }
  switch (box.exec()) {
    case QMessageBox::Yes:
      return MSG_ANSWER_YES;
    case QMessageBox::No:
      return MSG_ANSWER_NO;
    case QMessageBox::Cancel:
      return MSG_ANSWER_CANCEL;
    case QMessageBox::Ok:
      return MSG_ANSWER_OK;
    default:
      // Closed with the window's close button or Escape.
      return msg_unattended_answer(parsed.box);
  }
}
