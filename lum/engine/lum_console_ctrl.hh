// The console control: the owner of the engine process and of everything
// between it and the console rows. It is a QObject, not a widget; the console
// view (LUM_CONSOLE_VIEW) and the history tab (LUM_HISTORY_CTRL) show it and
// follow its signals, so the whole engine link runs and is tested without a
// screen.
//
// Command cycle: run_command() queues a command; run_next_command() starts it
// when the engine is idle (busy on); the engine's prompt arrives as the
// call-back lum_tcl_prompt, which queues a prompt line in the message display;
// the drain adds the prompt row, which clears busy and starts the next queued
// command. Hidden commands (a result vector given) bypass the queue and block
// the calling (GUI) thread until the engine's next prompt, or until the
// engine ends, so a dead engine never hangs the window.
//
// Draining: a 1000 ms timer drains the message display into the model, at
// most 50 ms of work per drain, and watches for the engine's exit. Besides the
// tick, the first line queued into an empty display schedules a drain soon
// after (so prompts show at once); a drain that used up its budget lets the
// event loop run a while (10 ms) before the next, so a flood never freezes
// the window.
// When the engine has ended, the exit watch first runs and drains all it
// printed, so its last lines are on the console before the exit is reported.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "lum_console_model.hh"
#include "lum_engine_end.hh"
#include "lum_frame_iface.hh"
#include "lum_ipc_object.hh"
#include "lum_msg_display.hh"
#include "platform/msg.hh"
#include "platform/thr.hh"

// Catalogue messages of the engine link.
#define LUM_MSG_STA_IS_BUSY "Cannot perform request while the Chronel Timing Analyzer is busy./OLUM_STA_IS_BUSY"
#define LUM_MSG_CANT_START_KRO \
  "Unable to create window.  The required program, vexa_sta, could not be started./OLUM_CANT_START_KRO"
#define LUM_MSG_STA_EXITED                                                                          \
  "The Chronel Timing Analyzer (vexa_sta) no longer runs.  The Chronel Timing Analyzer will now " \
  "exit./OLUM_STA_EXITED"
// Text of the box shown while the engine starts.
#define LUM_MSG_LOADING "Please wait while the Chronel Timing Analyzer loads..."

class LUM_CONSOLE_CTRL : public QObject {
  Q_OBJECT

 public:
  explicit LUM_CONSOLE_CTRL(QObject* parent = nullptr);
  // Shuts the engine down (MwShutdown) if that has not happened yet.
  ~LUM_CONSOLE_CTRL() override;

  // ---- engine process -------------------------------------------------------
  // Empties the rows, sets busy and starts the engine; returns open_pipes().
  // The caller skips this when the switch "lum_dont_startup_sta" is on and
  // shows LUM_MSG_CANT_START_KRO when it fails.
  bool startup();
  // Starts the engine and its reader thread; unless the switch
  // "lum_dont_wait_for_sta_to_startup" is on, waits for its first prompt.
  // False when the engine cannot be started, ends before its first prompt, or
  // prints none within the value "lum_sta_startup_timeout" (seconds, default
  // 120, 0 for no limit; such an engine is killed).
  bool open_pipes();
  // The engine command line: by default "\"<module dir>vexa_sta\" --ipc_sh".
  // Tests point the console at another program before startup().
  void set_engine_command_line(const std::string& command_line) { m_command_line = command_line; }
  const std::string& get_engine_command_line() const { return m_command_line; }
  // Writes text as it is (no line end added). Returns the platform write
  // result, 0 when there is no engine.
  int write_to_kro(const char* text);
  // "exit\n" once, wait for the reader thread, flush the interpreter's queue,
  // destroy the IPC object. MwShutdown() guards against a second call and
  // detaches the message target first; always returns true.
  bool MwShutdown();
  void close_pipes();
  // The engine object while it exists (tests kill it through it), or null.
  LUM_IPC_OBJECT* get_ipc_object() const { return m_ipc_object.get(); }
  // True while a reader thread exists and has not ended.
  bool is_kro_running() const;
  // After the engine has ended: how, and the last lines of its standard error.
  LUM_ENGINE_END get_engine_end() const;
  // Starts a new engine after the last one died, keeping the console's rows
  // and history; commands still queued for the dead engine are dropped.
  // Returns open_pipes().
  bool restart();

  // ---- commands ------------------------------------------------------------------
  // The one way to the engine. Without a result vector the command is queued,
  // shown and put in the history; with one it runs hidden and synchronously
  // and *hidden_result receives the engine's text lines (refused with
  // LUM_MSG_STA_IS_BUSY while busy or while the engine waits for the rest of
  // a command). A final "\n" and then "\r" are dropped.
  void run_command(const std::string& command, std::vector<std::string>* hidden_result = nullptr);
  // Starts the next queued command if any ("clear" and "exit" are handled here).
  void run_next_command();
  // Writes the current command into the last (prompt) row and emits
  // history_entry_added.
  void print_current_command();
  size_t pending_count() const { return m_pending.size(); }
  // The constraint commands sent to the engine in this session, in order
  // (recorded as they are written; see lum_constraint_commands).
  const std::vector<std::string>& get_session_constraints() const { return m_session_constraints; }
  void clear_session_constraints() { m_session_constraints.clear(); }
  const std::string& get_current_command() const { return m_current_command; }

  // The main frame, or null (the console reaches it only through this interface).
  LUM_FRAME_IFACE* get_detached_frame() const { return lum_get_frame(); }

  bool is_busy() const { return m_busy; }
  void set_kro_is_busy(bool busy);

  // ---- arrow-key history (newest first, consecutive repeats kept once) --------
  const std::vector<std::string>& get_history() const { return m_history; }
  // Up: the next older entry (stays on the oldest). Empty when there is none.
  std::string history_older();
  // Down: the next newer entry; from the newest, "" and the cursor is reset.
  std::string history_newer();
  // Page Up: the oldest entry.
  std::string history_oldest();
  // Page Down: resets the cursor (the edit line is emptied).
  void reset_history_cursor() { m_history_cursor = -1; }
  int get_history_cursor() const { return m_history_cursor; }

  // ---- rows ----------------------------------------------------------------------
  LUM_CONSOLE_MODEL* get_model() { return &m_model; }
  LUM_MSG_DISPLAY* get_msg_display() { return &m_display; }
  MSG_REPORT* get_msg_report() { return &m_report; }
  // The "clear" command: removes every row and sends " \n" so that a fresh
  // prompt row follows.
  void clear();
  // Adds one queued line as a row (prompt lines end busy and start the next
  // command). Returns the new row, -1 if none.
  int add_one_line(const LUM_KRO_OUTPUT_LINE* line);

  // ---- view hooks ----------------------------------------------------------------
  // Interactive: an edit line may be opened (the view sets it once it can edit).
  void set_interactive(bool interactive) { m_interactive = interactive; }
  bool is_interactive() const { return m_interactive; }
  // The view reports whether it has the keyboard focus.
  void set_has_focus(bool has_focus) { m_has_focus = has_focus; }
  bool has_focus() const { return m_has_focus; }
  // Debug lines gathered since the last call (only when "debug_msg" is on).
  std::vector<std::string> take_debug_lines();

  // ---- timer -------------------------------------------------------------------
  void set_drain_budget_ms(int budget_ms) { m_drain_budget_ms = budget_ms; }
  int get_drain_budget_ms() const { return m_drain_budget_ms; }
  // Drains queued lines within the budget; returns the number of rows added.
  int drain_lines();
  // Time spent in drains so far, in seconds (the bench prints it).
  double get_drain_seconds() const { return m_drain_ns / 1e9; }

 public slots:
  // The 1000 ms tick: debug lines, the drain and the exit watch.
  void on_timer();
  // The engine process ended (posted by the exit watch).
  void on_kro_exited();

 signals:
  // A drain added rows; last_row is the last one (make it visible, select it).
  void rows_drained(int last_row);
  // A started command was written into its prompt row. During a drain the
  // row may not be announced by the model yet; rows_drained follows then.
  void command_printed(int row, const QString& command);
  // Every started command, repeats and empty ones included (the history tab).
  void history_entry_added(const QString& command);
  void busy_changed(bool busy);
  // Debug lines are waiting in take_debug_lines().
  void debug_lines_ready();
  // Queue empty, not busy, interactive, focused: open the edit line on the last row.
  void open_edit_line_requested();
  void console_cleared();
  // on_kro_exited() ran.
  void kro_exited();
  // The engine is being started (true) / the start is over (false); the frame
  // may show LUM_MSG_LOADING meanwhile.
  void kro_loading(bool loading);

 private:
  void schedule_drain();
  bool wait_for_first_prompt();

  std::string m_command_line;
  THR_THREAD* m_thread = nullptr;
  std::unique_ptr<LUM_READ_THREAD_PARAM> m_thread_param;
  std::unique_ptr<LUM_IPC_OBJECT> m_ipc_object;
  LUM_MSG_DISPLAY m_display;
  MSG_REPORT m_report;
  LUM_CONSOLE_MODEL m_model;
  bool m_busy = false;
  // The engine's last prompt was "> ": it waits for the rest of a command.
  bool m_awaiting_continuation = false;
  bool m_exit_not_yet_reported = true;
  bool m_interactive = false;
  bool m_has_focus = false;
  bool m_shutting_down = false;
  bool m_shut_down = false;
  int m_drain_budget_ms = 50;
  std::deque<std::string> m_pending;  // first in, first out
  std::vector<std::string> m_history;  // newest first
  int m_history_cursor = -1;           // -1: at the edit line
  std::string m_current_command;
  std::vector<std::string> m_session_constraints;
  QTimer m_timer;
  QTimer m_drain_soon;
  qint64 m_drain_ns = 0;
  std::mutex m_debug_mutex;
  std::vector<std::string> m_debug_lines;
  bool m_debug_sink_installed = false;
};
