#include "frame/lum_scripted_run.hh"

#include <QApplication>

#include <cstdio>
#include <fstream>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_console_model.hh"
#include "frame/lum_detached_frame.hh"
#include "platform/atcl.hh"
#include "platform/msg.hh"

int LUM_SCRIPTED_RUN::m_status = 0;

std::string lum_console_transcript(const LUM_CONSOLE_MODEL& model) {
  std::string text;
  for (int row = 0; row < model.row_count(); ++row) {
    const LUM_KRO_OUTPUT_TYPE_ENUM type = model.row_type(row);
    if (type == LUM_KRO_OUTPUT_TCL_PROMPT)
      text += "tcl> ";
    else if (type == LUM_KRO_OUTPUT_TCL_CONT_PROMPT)
      text += "> ";
    else if (model.row_kind(row) >= 0)
      text.append(2 * static_cast<size_t>(model.row_level(row)), ' ');
    text += model.row_text(row);
    text += '\n';
  }
  return text;
}

LUM_SCRIPTED_RUN* LUM_SCRIPTED_RUN::start(LUM_DETACHED_FRAME* frame, LUM_SCRIPTED_RUN_OPTIONS options) {
  if (frame == nullptr) return nullptr;
  return new LUM_SCRIPTED_RUN(frame, std::move(options));
}

LUM_SCRIPTED_RUN::LUM_SCRIPTED_RUN(LUM_DETACHED_FRAME* frame, LUM_SCRIPTED_RUN_OPTIONS options)
    : QObject(frame), m_frame(frame), m_options(std::move(options)) {
  if (!m_options.transcript.empty())
    connect(frame, &LUM_DETACHED_FRAME::closing, this, [this] { write_transcript(); });
  connect(&m_timer, &QTimer::timeout, this, [this] { on_tick(); });
  m_timer.start(100);
}

bool LUM_SCRIPTED_RUN::engine_is_idle() const {
  LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl();
  if (console == nullptr) return true;
  return !console->is_busy() && console->pending_count() == 0 && !console->get_msg_display()->has_lines() &&
         atcl_queue_size() == 0;
}

void LUM_SCRIPTED_RUN::on_tick() {
  // A dialog the script opened runs its own event loop, in which this timer
  // keeps ticking: nothing happens until the script has returned.
  if (m_state == STATE::RUNNING || m_state == STATE::EXITING) return;
  const bool idle = engine_is_idle() && QApplication::activeModalWidget() == nullptr;
  // Two idle ticks in a row, so that the last call-backs have run.
  m_idle_ticks = idle ? m_idle_ticks + 1 : 0;
  if (m_idle_ticks < 2) return;
  m_idle_ticks = 0;
  if (m_state == STATE::WAITING) {
    run_script();
    return;
  }
  if (!m_options.exit_when_idle) {
    m_timer.stop();
    return;
  }
  m_state = STATE::EXITING;
  m_timer.stop();
  // A scripted run asks no questions on the way out.
  m_frame->set_sdc_needs_saving(false);
  m_frame->close();
}

void LUM_SCRIPTED_RUN::run_script() {
  m_state = STATE::RUNNING;
  if (!m_options.script.empty()) {
    Tcl_Interp* interp = atcl_get_interpreter();
    const int code = Tcl_EvalFile(interp, m_options.script.c_str());
    if (code != TCL_OK) {
      m_status = 1;
      const char* info = Tcl_GetVar(interp, "errorInfo", TCL_GLOBAL_ONLY);
      const std::string text = "Error in script " + m_options.script + ": " +
                               (info != nullptr ? std::string(info) : std::string(Tcl_GetStringResult(interp)));
      std::fprintf(stderr, "vexa_lumex: %s\n", text.c_str());
      if (LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl())
        console->get_msg_report()->post(MSG_POST(MSG_KIND::ERROR, "LUM-SCRIPT", text));
    }
  }
  m_state = STATE::RAN;
  if (!m_options.exit_when_idle) m_timer.stop();
}

void LUM_SCRIPTED_RUN::write_transcript() {
  LUM_CONSOLE_CTRL* console = m_frame->get_console_ctrl();
  if (console == nullptr) return;
  // Lines still waiting for the drain belong to the transcript too.
  console->drain_lines();
  std::ofstream out(m_options.transcript, std::ios::binary | std::ios::trunc);
  out << lum_console_transcript(*console->get_model());
  if (!out) std::fprintf(stderr, "vexa_lumex: cannot write the transcript %s\n", m_options.transcript.c_str());
}
