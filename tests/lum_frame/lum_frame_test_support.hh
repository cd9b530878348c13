// Shared set-up of the frame's window tests: one application object, settings
// in a temporary file, catalogue boxes and file questions answered by the
// test, and a way to wait for the engine without blocking the event loop.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "frame/lum_file_dialogs.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"

namespace lum_test {

inline QApplication* application() {
  static int argc = 1;
  static char name[] = "lum_frame_test";
  static char* argv[] = {name, nullptr};
  static QApplication* app = [] {
    QStandardPaths::setTestModeEnabled(true);
    return new QApplication(argc, argv);
  }();
  return app;
}

// Processes events until the condition holds or the time is up.
inline bool wait_until(const std::function<bool()>& condition, int timeout_ms) {
  QElapsedTimer timer;
  timer.start();
  while (!condition()) {
    if (timer.elapsed() > timeout_ms) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    atcl_flush_queue(1, 0);
    QTest::qWait(10);
  }
  return true;
}

class FrameFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    application();
    ASSERT_TRUE(m_dir.isValid());
    cfg_set_settings_file(m_dir.filePath("settings.ini").toStdString());
    msg_set_box_handler([this](const MSG_CATALOGUE_ENTRY& entry, const std::string& text) {
      m_boxes.push_back(entry.id);
      m_box_texts.push_back(text);
      if (!m_answers.empty()) {
        int answer = m_answers.front();
        m_answers.pop_front();
        return answer;
      }
      return entry.box == MSG_BOX_KIND::YES_NO ? static_cast<int>(MSG_ANSWER_NO) : static_cast<int>(MSG_ANSWER_OK);
    });
    lum_set_file_dialog_handler([this](const LUM_FILE_REQUEST& request) {
      m_file_requests.push_back(request);
      if (m_files.empty()) return std::string();
      std::string file = m_files.front();
      m_files.pop_front();
      return file;
    });
  }

  void TearDown() override {
    lum_set_file_dialog_handler(nullptr);
    msg_set_box_handler(nullptr);
    cfg_clear_overrides();
    cfg_set_settings_file("");
  }

  std::string path(const std::string& name) const { return m_dir.filePath(QString::fromStdString(name)).toStdString(); }

  QTemporaryDir m_dir;
  std::vector<std::string> m_boxes;  // identifiers of the catalogue messages shown
  std::vector<std::string> m_box_texts;
  std::deque<int> m_answers;
  std::vector<LUM_FILE_REQUEST> m_file_requests;
  std::deque<std::string> m_files;  // answers to file questions
};

}  // namespace lum_test
