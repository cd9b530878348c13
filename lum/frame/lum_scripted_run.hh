// Scripted runs of the front end, for tests and for users' own regression
// scripts (the launcher's --script, --transcript and --exit-when-idle):
//
// - the script is evaluated in the front end's interpreter (where the package
//   "::vexa::lum" lives) once the engine is idle with nothing queued, which is
//   after the project given to the launcher has opened, or, without one, once
//   the engine is ready; a Tcl error is shown in the console (and on standard
//   error) and leaves the window working;
// - the transcript (the console's text: each command as echoed after its
//   prompt, then its output) is written when the frame closes;
// - with exit-when-idle the frame closes once the script has run and the
//   engine is idle with nothing queued and no dialog open.
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <string>

class LUM_CONSOLE_MODEL;
class LUM_DETACHED_FRAME;

struct LUM_SCRIPTED_RUN_OPTIONS {
  std::string script;      // empty: none
  std::string transcript;  // empty: none
  bool exit_when_idle = false;
};

// The console's rows as text: prompt rows as "tcl> " and the command, message
// rows indented two blanks per sub-message level, text rows as they are; one
// line per row.
std::string lum_console_transcript(const LUM_CONSOLE_MODEL& model);

class LUM_SCRIPTED_RUN : public QObject {
 public:
  // Starts watching the frame; the object lives as the frame's child.
  static LUM_SCRIPTED_RUN* start(LUM_DETACHED_FRAME* frame, LUM_SCRIPTED_RUN_OPTIONS options);
  // 0 while every script ran without error, 1 after a script error.
  static int get_status() { return m_status; }

  bool script_has_run() const { return m_state != STATE::WAITING; }

 private:
  enum class STATE { WAITING, RUNNING, RAN, EXITING };
  LUM_SCRIPTED_RUN(LUM_DETACHED_FRAME* frame, LUM_SCRIPTED_RUN_OPTIONS options);
  void on_tick();
  bool engine_is_idle() const;
  void run_script();
  void write_transcript();

  static int m_status;
  LUM_DETACHED_FRAME* m_frame;
  LUM_SCRIPTED_RUN_OPTIONS m_options;
  QTimer m_timer;
  STATE m_state = STATE::WAITING;
  int m_idle_ticks = 0;
};
