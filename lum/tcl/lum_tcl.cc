// The engine call-back commands. Each acts on the main frame only through
// LUM_FRAME_IFACE and does nothing while no frame is registered; bad
// arguments leave the argument library's message and change nothing.
#include <algorithm>
#include <cstring>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "lum_tcl_args_auto.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_tcl";

// A one-character state value, or 0 when the value is absent or of another length.
char state_value(const char* value) { return (value != nullptr && strlen(value) == 1) ? value[0] : 0; }

LUM_MSG_DISPLAY* console_display(LUM_FRAME_IFACE* frame) {
  LUM_CONSOLE_CTRL* console = frame->get_console();
  return console ? console->get_msg_display() : nullptr;
}

}  // namespace

int lum_lum_reload_sta_report(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_reload_sta_report(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  frame->reload_sta_report(args.get_one_arg_option(LUM_AUTO_ARG_OPEN_PANEL));
  return TCL_OK;
}

int lum_lum_tcl_prompt(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_tcl_prompt(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  if (LUM_MSG_DISPLAY* display = console_display(frame)) display->display_tcl_prompt();
  return TCL_OK;
}

int lum_lum_tcl_cont_prompt(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_tcl_cont_prompt(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  if (LUM_MSG_DISPLAY* display = console_display(frame)) display->display_tcl_cont_prompt();
  return TCL_OK;
}

int lum_lum_report_status(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_report_status(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  const char* value = args.get_one_arg_pos_option(0);
  frame->set_status_pane_text(1, value ? value : "");
  return TCL_OK;
}

int lum_lum_echo_stdout(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  // Engine texts that could read as options arrive after "--" (the engine
  // link adds it), so "-h" here asks for the command's help.
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_echo_stdout(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  const char* text = args.get_one_arg_pos_option(0);
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  if (LUM_MSG_DISPLAY* display = console_display(frame)) display->echo_stdout(text);
  return TCL_OK;
}

int lum_lum_set_state(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_set_state(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;

  if (char value = state_value(args.get_one_arg_option(LUM_AUTO_ARG_PROJECT_IS_OPEN))) {
    frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, value);
    frame->update_tasks_status();
    if (value == '0') frame->sta_closed_a_project();
  }
  if (char value = state_value(args.get_one_arg_option(LUM_AUTO_ARG_NETLIST_IS_CREATED))) {
    frame->set_netlist_is_created(value);
  }
  if (char value = state_value(args.get_one_arg_option(LUM_AUTO_ARG_SDC_FILE_IS_LOADED))) {
    frame->set_state_flag(LUM_STATE_FLAG::SDC_FILE_IS_LOADED, value);
    frame->update_tasks_status();
  }
  if (char value = state_value(args.get_one_arg_option(LUM_AUTO_ARG_NETLIST_IS_UP_TO_DATE))) {
    // Constraints entered after the netlist was up to date have not been
    // written to an SDC file yet. A netlist that is deleted (no longer
    // created) is out of date without any constraint.
    if (frame->get_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN) == '1' &&
        frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_CREATED) == '1' &&
        frame->get_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE) == '1' && value == '0') {
      frame->set_sdc_needs_saving(true);
    }
    frame->set_state_flag(LUM_STATE_FLAG::NETLIST_IS_UP_TO_DATE, value);
    frame->update_report_tree_status();
    frame->update_tasks_status();
  }
  return TCL_OK;
}

int lum_set_time_unit(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_set_time_unit(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  const char* unit = args.get_one_arg_pos_option(0);
  frame->set_time_unit(unit ? unit : "");
  return TCL_OK;
}

int lum_open_project(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_open_project(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  const char* vpf_value = args.get_one_arg_option(LUM_AUTO_ARG_VPF);
  const char* revision_value = args.get_one_arg_option(LUM_AUTO_ARG_REVISION);
  if (!MSG_ASSERT(vpf_value != NULL, MODULE) || !MSG_ASSERT(revision_value != NULL, MODULE) ||
      !MSG_ASSERT(gen_strlen(vpf_value) > 0, MODULE) || !MSG_ASSERT(gen_strlen(revision_value) > 0, MODULE)) {
    return TCL_OK;
  }
  frame->sta_opened_a_project(vpf_value, revision_value);
  frame->set_state_flag(LUM_STATE_FLAG::PROJECT_IS_OPEN, '1');
  frame->update_tasks_status();
  return TCL_OK;
}

int lum_lum_register_clock(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_lum_register_clock(&args, &help_shown, argc, argv);
  if (result != TCL_OK || help_shown) return result;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (frame == nullptr) return TCL_OK;
  const char* name = args.get_one_arg_option(LUM_AUTO_ARG_NAME);
  if (name == nullptr || *name == 0) return TCL_OK;
  std::vector<std::string>& clocks = frame->get_clock_names();
  auto it = std::find(clocks.begin(), clocks.end(), name);
  if (args.get_no_arg_option(LUM_AUTO_ARG_REMOVE)) {
    if (it != clocks.end()) clocks.erase(it);
  } else if (it == clocks.end()) {
    clocks.push_back(name);
  }
  return TCL_OK;
}
