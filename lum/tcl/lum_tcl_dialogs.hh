// The bridge from the dialog-opening commands (lum_edit_clock, lum_set_*,
// lum_report_*, lum_create_slack_histogram, lum_locate) to the dialogs.
//
// Each of those commands parses its arguments here; the dialogs register an
// opener per command name that fills the dialog from the parsed arguments,
// runs it and sends its command on OK (through the console's run_command).
// Without a main frame, or while no opener is registered for a command, a
// correctly formed call does nothing.
#pragma once

#include <tcl.h>

#include <functional>
#include <string>

class ATCL_ARGS;

// Everything an opener needs: the command's name and its parsed arguments
// (read with the getters of ATCL_ARGS and the LUM_AUTO_ARGUMENT_ENUM values).
struct LUM_DIALOG_REQUEST {
  const char* command_name;
  Tcl_Interp* interp;
  const ATCL_ARGS* args;
};

// Returns a Tcl code (TCL_OK when the dialog ran, whether OK or cancelled).
using LUM_DIALOG_OPENER = std::function<int(const LUM_DIALOG_REQUEST& request)>;

// Registers (or, with an empty function, removes) the opener of a command.
void lum_set_dialog_opener(const std::string& command_name, LUM_DIALOG_OPENER opener);
bool lum_has_dialog_opener(const std::string& command_name);

// The text "N/A" and the empty text leave a dialog field at its default.
bool lum_is_value_given(const char* value);

// The lum_locate message outside the host's main program.
#define LUM_MSG_LOCATE_NOT_SUPPORTED \
  "Location is only supported when LUM is launched from Vexa.exe/ILUM_LOCATE_NOT_SUPPORTED"
