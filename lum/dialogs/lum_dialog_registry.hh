// The dialogs known to the frame. Each dialog's source file registers itself
// with a static LUM_DIALOG_REGISTRATION; the frame reads the list once, lets
// each menu command with a dialog open it (and so enables the command by its
// rule), and has each dialog-opening Tcl command open it filled from the
// command's arguments.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

class ATCL_ARGS;
class LUM_DIALOG_BASE;
class QWidget;

struct LUM_DIALOG_DEF {
  // The frame's handler of the menu command that opens the dialog, e.g.
  // "on_create_clock" (empty: none); the frame maps it to its command.
  std::string menu_handler;
  // The dialog-opening Tcl command, e.g. "lum_set_input_delay" (empty: none).
  std::string tcl_command;
  // Makes the dialog with its defaults.
  std::function<std::unique_ptr<LUM_DIALOG_BASE>(QWidget* parent)> make;
  // Copies the Tcl command's parsed arguments into the dialog's fields.
  std::function<void(LUM_DIALOG_BASE& dialog, const ATCL_ARGS& args)> fill;
};

struct LUM_DIALOG_REGISTRATION {
  explicit LUM_DIALOG_REGISTRATION(LUM_DIALOG_DEF def);
};

// Every registered dialog, in registration order.
const std::vector<LUM_DIALOG_DEF>& lum_dialog_defs();
const LUM_DIALOG_DEF* lum_find_dialog_by_handler(const std::string& menu_handler);
const LUM_DIALOG_DEF* lum_find_dialog_by_tcl_command(const std::string& tcl_command);

// How a dialog run ended.
struct LUM_DIALOG_OUTCOME {
  bool accepted = false;
  std::string command;  // the command to send, when accepted
  std::string refusal;  // why an automatic OK was not possible
};

// Runs a dialog modally; with the switch "dialog_auto_ok" on it is not shown
// but accepted at once with its filled-in fields, as if OK were pressed (not
// when the composed command would be refused: then the outcome carries the
// reason and nothing is sent).
LUM_DIALOG_OUTCOME lum_run_dialog(LUM_DIALOG_BASE& dialog);

// Sends an accepted dialog's command through the console of the frame, as if
// typed (echoed, in the history). Returns false without a frame or console.
bool lum_send_dialog_command(const std::string& command);

// Lets every registered Tcl command open its dialog, with parent as the
// dialogs' parent window. Called by the frame once it exists; null removes
// the openers again.
void lum_install_dialog_openers(QWidget* parent);
