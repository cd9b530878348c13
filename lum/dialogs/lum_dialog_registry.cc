#include "dialogs/lum_dialog_registry.hh"

#include <QPointer>
#include <QWidget>

#include "dialogs/lum_dialog_base.hh"
#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "platform/cfg.hh"
#include "tcl/lum_tcl_dialogs.hh"

namespace {

std::vector<LUM_DIALOG_DEF>& defs() {
  static std::vector<LUM_DIALOG_DEF> registered;
  return registered;
}

}  // namespace

LUM_DIALOG_REGISTRATION::LUM_DIALOG_REGISTRATION(LUM_DIALOG_DEF def) { defs().push_back(std::move(def)); }

const std::vector<LUM_DIALOG_DEF>& lum_dialog_defs() { return defs(); }

const LUM_DIALOG_DEF* lum_find_dialog_by_handler(const std::string& menu_handler) {
  for (const LUM_DIALOG_DEF& def : defs())
    if (!menu_handler.empty() && def.menu_handler == menu_handler) return &def;
  return nullptr;
}

const LUM_DIALOG_DEF* lum_find_dialog_by_tcl_command(const std::string& tcl_command) {
  for (const LUM_DIALOG_DEF& def : defs())
    if (!tcl_command.empty() && def.tcl_command == tcl_command) return &def;
  return nullptr;
}

LUM_DIALOG_OUTCOME lum_run_dialog(LUM_DIALOG_BASE& dialog) {
  LUM_DIALOG_OUTCOME outcome;
  dialog.on_change();
  if (cfg_is_on("dialog_auto_ok")) {
    outcome.refusal = dialog.get_refusal();
    outcome.accepted = outcome.refusal.empty();
  } else {
    outcome.accepted = dialog.exec() == QDialog::Accepted;
  }
  if (outcome.accepted) outcome.command = dialog.get_command();
  return outcome;
}

bool lum_send_dialog_command(const std::string& command) {
  LUM_FRAME_IFACE* frame = lum_get_frame();
  LUM_CONSOLE_CTRL* console = frame ? frame->get_console() : nullptr;
  if (console == nullptr) return false;
  console->run_command(command);
  return true;
}

void lum_install_dialog_openers(QWidget* parent) {
  QPointer<QWidget> owner(parent);
  for (const LUM_DIALOG_DEF& def : defs()) {
    if (def.tcl_command.empty()) continue;
    if (parent == nullptr) {
      lum_set_dialog_opener(def.tcl_command, nullptr);
      continue;
    }
    lum_set_dialog_opener(def.tcl_command, [owner, def](const LUM_DIALOG_REQUEST& request) {
      std::unique_ptr<LUM_DIALOG_BASE> dialog = def.make(owner.data());
      if (def.fill) def.fill(*dialog, *request.args);
      dialog->write_back();
      const LUM_DIALOG_OUTCOME outcome = lum_run_dialog(*dialog);
      if (!outcome.refusal.empty()) {
        // A script asked for a command the engine would refuse: say so.
        Tcl_SetObjResult(request.interp, Tcl_ObjPrintf("%s: %s (nothing was sent)", request.command_name,
                                                       outcome.refusal.c_str()));
        return TCL_ERROR;
      }
      if (outcome.accepted) lum_send_dialog_command(outcome.command);
      return TCL_OK;
    });
  }
}
