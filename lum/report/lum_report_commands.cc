#include "report/lum_report_commands.hh"

#include "report/lum_stored_command.hh"

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "platform/atcl.hh"
#include "platform/msg.hh"

#include <cstdio>

namespace {
LUM_ENGINE_COMMAND_SINK& engine_sink() {
  static LUM_ENGINE_COMMAND_SINK sink;
  return sink;
}
}  // namespace

void lum_report_set_engine_sink(LUM_ENGINE_COMMAND_SINK sink) { engine_sink() = std::move(sink); }

void lum_report_run_command(const std::string& command) {
  if (command.compare(0, 4, "lum_") == 0) {
    msg_debug("Sending command through global interpreter: %s", command.c_str());
    atcl_post(command.c_str(), 0, nullptr);
    return;
  }
  msg_debug("Sending command to STA: %s", command.c_str());
  if (engine_sink()) {
    engine_sink()(command);
    return;
  }
  LUM_FRAME_IFACE* detached_frame = lum_get_frame();
  if (!MSG_ASSERT(detached_frame != nullptr, "lum_table")) return;
  LUM_CONSOLE_CTRL* console = detached_frame->get_console();
  if (!MSG_ASSERT(console != nullptr, "lum_table")) return;
  console->run_command(command);
}

bool lum_report_run_stored_command(const std::string& command) {
  std::string reason;
  if (!lum_stored_command_is_runnable(command, &reason)) {
    lum_report_warning("LUM-REPORT-5", "A command stored in the report database was not run, because " + reason +
                                           ". The command is: " + command);
    return false;
  }
  lum_report_run_command(command);
  return true;
}

char lum_report_netlist_is_created() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  return frame ? frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) : '\0';
}

char lum_report_netlist_is_up_to_date() {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  return frame ? frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) : '\0';
}

void lum_report_warning(const std::string& id, const std::string& text) {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  LUM_CONSOLE_CTRL* console = frame ? frame->get_console() : nullptr;
  if (MSG_REPORT* report = console ? console->get_msg_report() : msg_get_default_report()) {
    report->post(MSG_POST(MSG_KIND::WARNING, id, text));
    return;
  }
  std::fprintf(stderr, "Warning (%s): %s\n", id.c_str(), text.c_str());
}
