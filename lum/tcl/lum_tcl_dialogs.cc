#include "lum_tcl_dialogs.hh"

#include <strings.h>

#include <cstring>
#include <map>
#include <string>

#include "engine/lum_frame_iface.hh"
#include "lum_tcl_args_auto.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

std::map<std::string, LUM_DIALOG_OPENER>& openers() {
  static std::map<std::string, LUM_DIALOG_OPENER> registry;
  return registry;
}

// The common path of the dialog commands: a parse failure goes to the debug
// channel as "tcl <command> error: <message>" and is returned; a correct call
// reaches the command's opener when a main frame exists.
int open_dialog(const char* command_name, Tcl_Interp* interp, const ATCL_ARGS& args, int parse_result,
                bool help_shown) {
  if (parse_result != TCL_OK) {
    msg_debug("tcl %s error: %s", command_name, Tcl_GetStringResult(interp));
    return parse_result;
  }
  if (help_shown || lum_get_frame() == nullptr) return TCL_OK;
  auto it = openers().find(command_name);
  if (it == openers().end() || !it->second) return TCL_OK;
  LUM_DIALOG_REQUEST request{command_name, interp, &args};
  return it->second(request);
}

}  // namespace

void lum_set_dialog_opener(const std::string& command_name, LUM_DIALOG_OPENER opener) {
  if (opener)
    openers()[command_name] = std::move(opener);
  else
    openers().erase(command_name);
}

bool lum_has_dialog_opener(const std::string& command_name) { return openers().count(command_name) > 0; }

bool lum_is_value_given(const char* value) { return value != nullptr && *value != 0 && strcmp(value, "N/A") != 0; }

#define LUM_DIALOG_COMMAND(handler, stem, name)                                 \
  int handler(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {   \
    ATCL_ARGS args(interp);                                                     \
    bool help_shown = false;                                                    \
    int result = lum_init_##stem(&args, &help_shown, argc, argv);               \
    return open_dialog(name, interp, args, result, help_shown);                 \
  }

LUM_DIALOG_COMMAND(lum_set_clock_latency, set_clock_latency, "lum_set_clock_latency")
LUM_DIALOG_COMMAND(lum_set_clock_uncertainty, set_clock_uncertainty, "lum_set_clock_uncertainty")
LUM_DIALOG_COMMAND(lum_set_input_delay, set_input_delay, "lum_set_input_delay")
LUM_DIALOG_COMMAND(lum_set_output_delay, set_output_delay, "lum_set_output_delay")
LUM_DIALOG_COMMAND(lum_set_false_path, set_false_path, "lum_set_false_path")
LUM_DIALOG_COMMAND(lum_set_multicycle_path, set_multicycle_path, "lum_set_multicycle_path")
LUM_DIALOG_COMMAND(lum_set_max_delay, set_max_delay, "lum_set_max_delay")
LUM_DIALOG_COMMAND(lum_set_min_delay, set_min_delay, "lum_set_min_delay")
LUM_DIALOG_COMMAND(lum_report_timing, report_timing, "lum_report_timing")
LUM_DIALOG_COMMAND(lum_report_net_timing, report_net_timing, "lum_report_net_timing")
LUM_DIALOG_COMMAND(lum_report_min_pulse_width, report_min_pulse_width, "lum_report_min_pulse_width")
LUM_DIALOG_COMMAND(lum_create_slack_histogram, create_slack_histogram, "lum_create_slack_histogram")
#undef LUM_DIALOG_COMMAND

int lum_edit_clock(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_edit_clock(&args, &help_shown, argc, argv);
  if (result != TCL_OK) {
    msg_debug("tcl lum_edit_clock error: %s", Tcl_GetStringResult(interp));
    return result;
  }
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (help_shown || frame == nullptr) return TCL_OK;
  const char* type = args.get_one_arg_option(LUM_AUTO_ARG_TYPE);
  if (type == nullptr || *type == 0) return TCL_OK;
  auto text = [&args](int e) {
    const char* value = args.get_one_arg_option(e);
    return std::string(value ? value : "");
  };
  if (strcasecmp(type, "base") == 0 || strcasecmp(type, "virtual") == 0) {
    LUM_CLOCK_DLG_VALUES values;
    values.name = text(LUM_AUTO_ARG_NAME);
    values.period = text(LUM_AUTO_ARG_PERIOD);
    values.rise = text(LUM_AUTO_ARG_RISE);
    values.fall = text(LUM_AUTO_ARG_FALL);
    values.source_objects = text(LUM_AUTO_ARG_SOURCE_OBJECTS);
    frame->open_create_clock_dlg(values);
  } else if (strcasecmp(type, "generated") == 0) {
    LUM_GENERATED_CLOCK_DLG_VALUES values;
    values.source = text(LUM_AUTO_ARG_SOURCE);
    values.master_clock = text(LUM_AUTO_ARG_MASTER_CLOCK);
    values.name = text(LUM_AUTO_ARG_NAME);
    values.divide_by = args.get_uint_arg_option(LUM_AUTO_ARG_DIVIDE_BY, &values.has_divide_by);
    values.multiply_by = args.get_uint_arg_option(LUM_AUTO_ARG_MULTIPLY_BY, &values.has_multiply_by);
    values.duty_cycle = text(LUM_AUTO_ARG_DUTY_CYCLE);
    values.phase = text(LUM_AUTO_ARG_PHASE);
    values.offset = text(LUM_AUTO_ARG_OFFSET);
    values.edge_list = text(LUM_AUTO_ARG_EDGE_LIST);
    values.edge_shift = text(LUM_AUTO_ARG_EDGE_SHIFT);
    values.invert = args.get_no_arg_option(LUM_AUTO_ARG_INVERT);
    values.source_objects = text(LUM_AUTO_ARG_SOURCE_OBJECTS);
    frame->open_create_generated_clock_dlg(values);
  }
  return TCL_OK;
}

int lum_locate(ClientData, Tcl_Interp* interp, int argc, const char* argv[]) {
  ATCL_ARGS args(interp);
  bool help_shown = false;
  int result = lum_init_locate(&args, &help_shown, argc, argv);
  if (result != TCL_OK) {
    msg_debug("tcl lum_locate error: %s", Tcl_GetStringResult(interp));
    return result;
  }
  if (help_shown || lum_get_frame() == nullptr) return TCL_OK;
  // Locating hands names to other tools of the host's main program; the
  // standalone front end has none.
  if (!gen_is_in_ui_process()) {
    msg_show_catalogue_message(LUM_MSG_LOCATE_NOT_SUPPORTED);
    return TCL_OK;
  }
  return open_dialog("lum_locate", interp, args, TCL_OK, false);
}
