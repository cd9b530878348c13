// The frame's side of the dialogs: each registered dialog becomes the action
// of its menu command (so the command enables by its rule), the name finder
// command copies its result to the clipboard, the dialog-opening Tcl commands
// open their dialogs over the frame, and "lum_edit_clock" reaches the clock
// dialogs.
#include <QApplication>
#include <QClipboard>

#include "dialogs/lum_clock_dlgs.hh"
#include "dialogs/lum_dialog_registry.hh"
#include "dialogs/lum_name_finder_dlg.hh"
#include "dialogs/lum_report_dlgs.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_frame_commands.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"

#define LUM_MSG_NAME_FINDER_STRING_COPIED_TO_CLIPBOARD \
  "The SDC command %1!s! has been copied to the clipboard./OLUM_NAME_FINDER_STRING_COPIED_TO_CLIPBOARD"

void LUM_DETACHED_FRAME::install_dialogs() {
  for (const LUM_DIALOG_DEF& def : lum_dialog_defs()) {
    const LUM_COMMAND_DEF* command = lum_find_command_by_handler(def.menu_handler);
    if (command == nullptr) continue;
    set_command_dialog(command->id, [def](QWidget* parent) {
      std::unique_ptr<LUM_DIALOG_BASE> dialog = def.make(parent);
      const LUM_DIALOG_OUTCOME outcome = lum_run_dialog(*dialog);
      return outcome.accepted ? outcome.command : std::string();
    });
  }
  set_command_dialog(LUM_ID_VIEW_NAME_FINDER, [](QWidget* parent) {
    LUM_NAME_FINDER_DLG finder(parent);
    const LUM_DIALOG_OUTCOME outcome = lum_run_dialog(finder);
    if (outcome.accepted && !outcome.command.empty()) {
      QApplication::clipboard()->setText(QString::fromStdString(outcome.command));
      msg_show_catalogue_message(LUM_MSG_NAME_FINDER_STRING_COPIED_TO_CLIPBOARD, outcome.command.c_str());
    }
    // The name finder sends nothing to the engine.
    return std::string();
  });
  // Report timing is modeless: the menu shows the frame's one dialog, which
  // sends its own command.
  set_command_dialog(LUM_ID_REPORT_TIMING, [](QWidget* parent) {
    lum_show_report_timing_dlg(parent);
    return std::string();
  });
  connect(this, &LUM_DETACHED_FRAME::project_changed, this, [] {
    if (LUM_REPORT_TIMING_DLG* dialog = lum_get_report_timing_dlg()) dialog->clear_data();
  });
  // List paths runs its command in the front end's interpreter, not in the engine.
  set_command_dialog(LUM_ID_LIST_PATHS, [](QWidget* parent) {
    LUM_ADV_LIST_PATHS_DLG dialog(parent);
    dialog.on_change();
    if (cfg_is_on("dialog_auto_ok"))
      dialog.run_list_path();
    else
      dialog.exec();
    return std::string();
  });
  lum_install_dialog_openers(this);
  lum_install_report_timing_opener(true);
}

void LUM_DETACHED_FRAME::uninstall_dialogs() {
  lum_install_dialog_openers(nullptr);
  lum_install_report_timing_opener(false);
  delete lum_get_report_timing_dlg();
}

void LUM_DETACHED_FRAME::open_create_clock_dlg(const LUM_CLOCK_DLG_VALUES& values) {
  lum_open_create_clock_dlg(this, values);
}

void LUM_DETACHED_FRAME::open_create_generated_clock_dlg(const LUM_GENERATED_CLOCK_DLG_VALUES& values) {
  lum_open_create_generated_clock_dlg(this, values);
}
