// The box shown when the engine dies by itself. The window stays: the box says
// why the engine ended (exit status or signal) with the last lines of its
// error output, offers to save the constraint commands sent in this session
// as an SDC file (the box stays open after saving, so the user can then
// restart), and offers to start the engine again and reopen the project.
// "Close" leaves the window without an engine.
#pragma once

#include <QDialog>

#include <functional>
#include <string>

#include "engine/lum_engine_end.hh"

class QLabel;
class QPushButton;

class LUM_ENGINE_ENDED_DLG : public QDialog {
 public:
  struct ACTIONS {
    // Asks for a file and writes the constraints; returns the text to show
    // ("Saved to ...", or why not), empty when the user cancelled.
    std::function<std::string()> save_constraints;
    // Starts the engine again (and reopens the project); the box closes first.
    std::function<void()> restart;
  };

  LUM_ENGINE_ENDED_DLG(QWidget* parent, const LUM_ENGINE_END& end, int constraint_count,
                       const std::string& project_name, ACTIONS actions);

  QPushButton* get_save_button() const { return m_save; }
  QPushButton* get_restart_button() const { return m_restart; }
  QPushButton* get_close_button() const { return m_close; }
  QString get_status_text() const;

 private:
  ACTIONS m_actions;
  QPushButton* m_save = nullptr;
  QPushButton* m_restart = nullptr;
  QPushButton* m_close = nullptr;
  QLabel* m_status = nullptr;
};
