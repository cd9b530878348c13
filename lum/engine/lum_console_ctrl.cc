#include "lum_console_ctrl.hh"

#include <QElapsedTimer>
#include <QMetaObject>

#include <algorithm>
#include <cstdlib>

#include "lum_frame_iface.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/gen.hh"

namespace {

const char* const MODULE = "lum_console_ctrl";
constexpr int TIMER_PERIOD_MS = 1000;
// Delay of the drain that follows the first line queued into an empty display.
constexpr int DRAIN_SOON_MS = 10;
// Slices in which the start-up and shutdown waits look at the reader thread.
constexpr int WAIT_SLICE_MS = 20;
// How long shutdown waits for an engine to obey "exit" before closing its
// input, and then before killing it.
constexpr int EXIT_GRACE_MS = 10000;
constexpr int EOF_GRACE_MS = 3000;
// Seconds an engine may take to print its first prompt ("lum_sta_startup_timeout"; 0: no limit).
const char* const DEFAULT_STARTUP_TIMEOUT_S = "120";

}  // namespace

LUM_CONSOLE_CTRL::LUM_CONSOLE_CTRL(QObject* parent) : QObject(parent), m_model(this) {
  m_command_line = "\"" + gen_get_module_path() + "vexa_sta\" --ipc_sh";
  m_report.set_display(&m_display);
  LUM_IPC_OBJECT::get_startup_event().reset();
  m_display.set_lines_queued_callback([this] { schedule_drain(); });

  m_timer.setInterval(TIMER_PERIOD_MS);
  connect(&m_timer, &QTimer::timeout, this, &LUM_CONSOLE_CTRL::on_timer);
  m_timer.start();
  m_drain_soon.setSingleShot(true);
  connect(&m_drain_soon, &QTimer::timeout, this, [this] { drain_lines(); });

  if (cfg_is_on("debug_msg") && !gen_is_in_ui_process()) {
    msg_set_debug_sink([this](const std::string& line) {
      std::lock_guard<std::mutex> lock(m_debug_mutex);
      m_debug_lines.push_back(line);
    });
    m_debug_sink_installed = true;
  }
}

LUM_CONSOLE_CTRL::~LUM_CONSOLE_CTRL() {
  m_timer.stop();
  m_drain_soon.stop();
  MwShutdown();
  if (m_debug_sink_installed) msg_set_debug_sink(nullptr);
  if (msg_get_default_report() == &m_report) msg_set_default_report(nullptr);
  m_report.set_display(nullptr);
}

// ---- engine process -----------------------------------------------------------

bool LUM_CONSOLE_CTRL::startup() {
  m_awaiting_continuation = false;
  m_display.discard_all();
  m_model.clear();
  set_kro_is_busy(true);
  return open_pipes();
}

bool LUM_CONSOLE_CTRL::is_kro_running() const {
  return m_thread != nullptr && m_ipc_object && !m_ipc_object->has_ended();
}

LUM_ENGINE_END LUM_CONSOLE_CTRL::get_engine_end() const {
  LUM_ENGINE_END end;
  if (!m_ipc_object) return end;
  m_ipc_object->get_exit(&end.exit_code, &end.signal_number);
  end.last_error_lines = lum_last_lines(m_ipc_object->get_stderr_tail(), 12);
  return end;
}

bool LUM_CONSOLE_CTRL::restart() {
  m_awaiting_continuation = false;
  m_pending.clear();
  set_kro_is_busy(true);
  const bool started = open_pipes();
  if (started) {
    // The new engine's first prompt is already posted; show it at once.
    atcl_flush_queue(1, 0);
    while (m_display.has_lines()) drain_lines();
    m_interactive = true;
  } else {
    set_kro_is_busy(false);
  }
  return started;
}

bool LUM_CONSOLE_CTRL::open_pipes() {
  emit kro_loading(true);
  struct LOADING_GUARD {
    LUM_CONSOLE_CTRL* ctrl;
    ~LOADING_GUARD() { emit ctrl->kro_loading(false); }
  } guard{this};

  // A previous engine, if any, is stopped first so that only one reader runs.
  if (m_thread != nullptr) close_pipes();
  m_ipc_object = std::make_unique<LUM_IPC_OBJECT>();
  m_ipc_object->set_msg_target(&m_report);
  m_ipc_object->set_display(&m_display);
  m_exit_not_yet_reported = true;

  m_thread_param = std::make_unique<LUM_READ_THREAD_PARAM>();
  m_thread_param->m_command_line = m_command_line;
  m_thread_param->m_ipc_object = m_ipc_object.get();
  m_thread = thr_thread_create(lum_read_thread_proc, m_thread_param.get());
  if (m_thread == nullptr) {
    m_ipc_object.reset();
    return false;
  }
  if (cfg_is_on("lum_dont_wait_for_sta_to_startup")) return true;

  int status = IPC_COMMAND::STATUS_UNKNOWN;
  while (status == IPC_COMMAND::STATUS_UNKNOWN) status = m_ipc_object->get_process_status(10);
  bool started = status == IPC_COMMAND::STATUS_RUNNING && wait_for_first_prompt();
  // A failed start is reported by the caller; the exit watch must not report it again.
  if (!started) m_exit_not_yet_reported = false;
  return started;
}

bool LUM_CONSOLE_CTRL::wait_for_first_prompt() {
  THR_EVENT& startup = LUM_IPC_OBJECT::get_startup_event();
  // The engine may die before it ever prompts; the reader thread then ends and
  // the start fails instead of hanging the window. An engine that stays alive
  // without ever prompting is given up after the start-up limit and stopped.
  long limit_s = std::atol(cfg_get_value("lum_sta_startup_timeout", DEFAULT_STARTUP_TIMEOUT_S).c_str());
  QElapsedTimer waited;
  waited.start();
  for (;;) {
    if (startup.wait(WAIT_SLICE_MS)) return true;
    if (m_ipc_object->has_ended()) return startup.is_posted();
    if (limit_s > 0 && waited.elapsed() > limit_s * 1000) {
      m_ipc_object->set_unthrottled(true);
      m_ipc_object->kill_child(9);
      thr_thread_wait(m_thread, -1);
      return startup.is_posted();
    }
  }
}

int LUM_CONSOLE_CTRL::write_to_kro(const char* text) {
  if (!m_ipc_object || text == nullptr) return 0;
  return m_ipc_object->write_to_stdin(text, strlen(text));
}

bool LUM_CONSOLE_CTRL::MwShutdown() {
  if (m_shut_down) return true;
  m_shut_down = true;
  if (!gen_is_in_ui_process()) {
    if (msg_get_default_report() == &m_report) msg_set_default_report(nullptr);
    if (m_ipc_object) m_ipc_object->set_msg_target(nullptr);
  }
  m_shutting_down = true;
  close_pipes();
  return true;
}

void LUM_CONSOLE_CTRL::close_pipes() {
  if (m_ipc_object && m_thread != nullptr) {
    // The GUI thread stops draining the queue now; the reader must not wait for it.
    m_ipc_object->set_unthrottled(true);
    write_to_kro("exit\n");
    // The engine normally ends at once. One that ignores "exit" is given end
    // of file and finally killed, so that closing the window cannot hang.
    if (!thr_thread_wait(m_thread, EXIT_GRACE_MS)) {
      m_ipc_object->close_stdin();
      if (!thr_thread_wait(m_thread, EOF_GRACE_MS)) m_ipc_object->kill_child(9);
    }
    thr_thread_wait(m_thread, -1);
  }
  if (m_thread != nullptr) {
    thr_thread_close(m_thread);
    m_thread = nullptr;
  }
  atcl_flush_queue(1, 0);
  m_ipc_object.reset();
  m_thread_param.reset();
}

// ---- commands -----------------------------------------------------------------

void LUM_CONSOLE_CTRL::run_command(const std::string& command, std::vector<std::string>* hidden_result) {
  std::string text = command;
  if (!text.empty() && text.back() == '\n') text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();

  if (hidden_result != nullptr) {
    text += '\n';
    if (!MSG_ASSERT(m_ipc_object != NULL, MODULE)) return;
    // While the engine waits for the rest of a command, a hidden command
    // would become part of it and the prompt it waits for would never come.
    if (m_busy || m_awaiting_continuation) {
      msg_show_catalogue_message(LUM_MSG_STA_IS_BUSY);
      return;
    }
    m_ipc_object->write_to_stdin_hidden(text.c_str(), hidden_result);
    return;
  }

  m_pending.push_back(std::move(text));
  if (!m_busy) run_next_command();
}

void LUM_CONSOLE_CTRL::run_next_command() {
  if (m_pending.empty()) return;
  std::string command = std::move(m_pending.front());
  m_pending.pop_front();

  set_kro_is_busy(true);
  if (LUM_FRAME_IFACE* frame = lum_get_frame()) frame->update_tasks_status();

  if (!command.empty()) {
    if (m_history.empty() || m_history.front() != command) m_history.insert(m_history.begin(), command);
    m_history_cursor = -1;
  }
  m_current_command = command;
  print_current_command();

  command += '\n';
  if (command == "clear\n") {
    // Busy already: the blank line's prompt ends this command.
    clear();
    write_to_kro(" \n");
  } else if (command == "exit\n") {
    set_kro_is_busy(false);
    if (LUM_FRAME_IFACE* frame = lum_get_frame()) frame->post_close_request();
  } else {
    for (std::string& constraint : lum_constraint_commands(command))
      m_session_constraints.push_back(std::move(constraint));
    write_to_kro(command.c_str());
  }
  // Without a running engine (switched off, or ended) no prompt will end the
  // command; the console must not stay busy for ever.
  if (m_busy && !is_kro_running()) set_kro_is_busy(false);
}

void LUM_CONSOLE_CTRL::print_current_command() {
  // The open prompt row takes the command; when there is none (the console
  // was just cleared or the engine has not prompted yet) a prompt row is made.
  int row = m_model.row_count() - 1;
  if (row < 0 || (m_model.row_type(row) != LUM_KRO_OUTPUT_TCL_PROMPT &&
                  m_model.row_type(row) != LUM_KRO_OUTPUT_TCL_CONT_PROMPT) ||
      !m_model.row_text(row).empty()) {
    row = m_model.add_prompt_row(LUM_KRO_OUTPUT_TCL_PROMPT);
  }
  m_model.set_row_text(row, m_current_command);
  QString command = QString::fromStdString(m_current_command);
  emit command_printed(row, command);
  emit history_entry_added(command);
}

void LUM_CONSOLE_CTRL::set_kro_is_busy(bool busy) {
  bool changed = busy != m_busy;
  m_busy = busy;
  if (LUM_FRAME_IFACE* frame = lum_get_frame()) {
    frame->set_status_pane_text(1, busy ? "Busy" : "Ready");
    frame->show_busy(busy);
  }
  if (changed) emit busy_changed(busy);
}

// ---- history ------------------------------------------------------------------

std::string LUM_CONSOLE_CTRL::history_older() {
  if (m_history.empty()) return std::string();
  if (m_history_cursor + 1 < static_cast<int>(m_history.size())) ++m_history_cursor;
  return m_history[m_history_cursor];
}

std::string LUM_CONSOLE_CTRL::history_newer() {
  if (m_history_cursor <= 0) {
    m_history_cursor = -1;
    return std::string();
  }
  --m_history_cursor;
  return m_history[m_history_cursor];
}

std::string LUM_CONSOLE_CTRL::history_oldest() {
  if (m_history.empty()) return std::string();
  m_history_cursor = static_cast<int>(m_history.size()) - 1;
  return m_history[m_history_cursor];
}

// ---- rows ---------------------------------------------------------------------

void LUM_CONSOLE_CTRL::clear() {
  m_model.clear();
  emit console_cleared();
  // Every prompt the engine prints must end exactly one command. While a
  // command runs (the typed "clear" is one) its own prompt makes the fresh
  // row; while the engine waits for the rest of a command, a blank line
  // would become part of it, so the row is made here. Otherwise the blank
  // line is a command of its own: the console is busy until its prompt.
  if (m_busy) return;
  if (m_awaiting_continuation || !is_kro_running()) {
    m_model.add_prompt_row(m_awaiting_continuation ? LUM_KRO_OUTPUT_TCL_CONT_PROMPT : LUM_KRO_OUTPUT_TCL_PROMPT);
    return;
  }
  set_kro_is_busy(true);
  write_to_kro(" \n");
}

int LUM_CONSOLE_CTRL::add_one_line(const LUM_KRO_OUTPUT_LINE* line) {
  if (line == nullptr) return -1;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  switch (line->get_type()) {
    case LUM_KRO_OUTPUT_MESSAGE:
      return m_model.insert_message(line->get_msg());
    case LUM_KRO_OUTPUT_TCL_PROMPT: {
      m_awaiting_continuation = false;
      int row = m_model.add_prompt_row(LUM_KRO_OUTPUT_TCL_PROMPT);
      set_kro_is_busy(false);
      if (frame) {
        frame->update_tasks_status();
        frame->start_next_task();
      }
      run_next_command();
      return row;
    }
    case LUM_KRO_OUTPUT_TCL_CONT_PROMPT: {
      m_awaiting_continuation = true;
      int row = m_model.add_prompt_row(LUM_KRO_OUTPUT_TCL_CONT_PROMPT);
      set_kro_is_busy(false);
      return row;
    }
    case LUM_KRO_OUTPUT_STDOUT: {
      const std::string* text = line->get_stdout_str();
      return m_model.add_text_rows(text ? std::string_view(*text) : std::string_view());
    }
  }
  return -1;
}

std::vector<std::string> LUM_CONSOLE_CTRL::take_debug_lines() {
  std::lock_guard<std::mutex> lock(m_debug_mutex);
  std::vector<std::string> lines;
  lines.swap(m_debug_lines);
  return lines;
}

// ---- timer --------------------------------------------------------------------

void LUM_CONSOLE_CTRL::schedule_drain() {
  if (m_drain_soon.isActive()) return;
  // After a drain that used its whole budget too, the event loop runs for
  // DRAIN_SOON_MS first: paints and input are handled between drains.
  m_drain_soon.start(DRAIN_SOON_MS);
}

int LUM_CONSOLE_CTRL::drain_lines() {
  if (!m_display.has_lines()) return 0;
  QElapsedTimer tick;
  tick.start();
  int added = 0;
  int taken = 0;
  int last_row = -1;
  m_model.begin_append();
  while (m_display.has_lines()) {
    std::unique_ptr<LUM_KRO_OUTPUT_LINE> line = m_display.take_front();
    int row = add_one_line(line.get());
    if (row >= 0) {
      last_row = row;
      ++added;
    }
    // The clock is read every 16 queued lines (a text line holds up to a
    // block of rows): cheap enough, and fine enough for the budget.
    if ((++taken & 15) == 0 && tick.elapsed() >= m_drain_budget_ms) break;
  }
  m_model.end_append();
  m_drain_ns += tick.nsecsElapsed();
  // A "clear" started by a drained prompt may have removed rows meanwhile.
  last_row = std::min(last_row, m_model.row_count() - 1);
  if (last_row >= 0) emit rows_drained(last_row);
  if (!m_display.has_lines() && !m_busy && m_interactive && m_has_focus) emit open_edit_line_requested();
  // Re-armed after every drain, but only while the engine runs: an engine
  // that has ended is reported once.
  if (is_kro_running()) m_exit_not_yet_reported = true;
  if (m_display.has_lines()) schedule_drain();
  return added;
}

void LUM_CONSOLE_CTRL::on_timer() {
  bool debug_waiting;
  {
    std::lock_guard<std::mutex> lock(m_debug_mutex);
    debug_waiting = !m_debug_lines.empty();
  }
  if (debug_waiting) emit debug_lines_ready();
  drain_lines();

  if (m_thread != nullptr && m_exit_not_yet_reported && thr_thread_wait(m_thread, 1)) {
    // Cleared first: a call-back run below may open a box whose event loop
    // ticks this timer again, and the exit must be reported once.
    m_exit_not_yet_reported = false;
    // The reader posted everything the engine printed before it ended; it is
    // run and shown now, whatever the drain budget, because the exit report
    // closes the frame and lines still queued would be lost.
    atcl_flush_queue(1, 0);
    while (m_display.has_lines()) drain_lines();
    if (m_display.get_internal_error_seen_event().is_posted()) {
      m_exit_not_yet_reported = true;  // reported once the internal error has been shown
      return;
    }
    QMetaObject::invokeMethod(this, &LUM_CONSOLE_CTRL::on_kro_exited, Qt::QueuedConnection);
  }
}

void LUM_CONSOLE_CTRL::on_kro_exited() {
  set_kro_is_busy(false);
  m_interactive = false;
  emit kro_exited();
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (!MSG_ASSERT(frame != NULL, MODULE)) return;
  if (cfg_is_on("lum_dont_startup_sta") || m_shutting_down) return;
  // A frame that can keep its window says why and offers a restart itself.
  if (frame->engine_ended(get_engine_end())) return;
  msg_show_catalogue_message(LUM_MSG_STA_EXITED);
  frame->post_close_request();
}
