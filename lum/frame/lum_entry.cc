#include "frame/lum_entry.hh"

#include <dlfcn.h>

#include <memory>

#include <QApplication>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

#include "dialogs/lum_list_path.hh"
#include "engine/lum_console_ctrl.hh"
#include "frame/lum_detached_frame.hh"
#include "frame/lum_scripted_run.hh"
#include "frame/lum_steps_wnd.hh"
#include "report/lum_report_install.hh"
#include "tcl/lum_tcl_args_auto.hh"
#include "platform/atcl.hh"
#include "platform/cfg.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_detached_frame";
void* g_module_handle = nullptr;

// The loader runs these around the library's life, like a platform's DLL
// entry: nothing else has to remember to call tsm_lum_DllMain.
__attribute__((constructor)) void lum_library_loaded() {
  Dl_info info;
  void* handle = nullptr;
  if (dladdr(reinterpret_cast<void*>(&lum_library_loaded), &info) != 0) handle = info.dli_fbase;
  tsm_lum_DllMain(handle, TSM_LUM_ATTACH);
}

__attribute__((destructor)) void lum_library_unloaded() { tsm_lum_DllMain(g_module_handle, TSM_LUM_DETACH); }

// The front end's own packages in its interpreter, as the engine's call-backs need them.
void load_front_end_packages() {
  // "::vexa::lum" brings the message commands msg_post and msg_internal_error with it.
  if (lum_lum_register_tcl() != TCL_OK) msg_internal_error("lum_lum_register_tcl() == TCL_OK", MODULE, __LINE__);
  // The list paths dialog's command lives beside the package, not in it.
  lum_register_list_path(atcl_get_interpreter());
  // Bus names as the engine writes them; the command belongs to a package
  // that may be absent, which is no error.
  atcl_tcl_eval("catch {enable_natural_bus_naming}");
}

}  // namespace

extern "C" int tsm_lum_DllMain(void* module_handle, unsigned long reason) {
  if (reason == TSM_LUM_ATTACH) g_module_handle = module_handle;
  else if (reason == TSM_LUM_DETACH) g_module_handle = nullptr;
  return 1;
}

extern "C" void* tsm_lum_get_module_handle() { return g_module_handle; }

extern "C" void* lum_dyn_adv_kro_tool() {
  if (qApp == nullptr) {
    msg_internal_error("qApp != NULL", MODULE, __LINE__);
    return nullptr;
  }
  if (LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance()) {
    frame->activate_frame(-1);
    return frame;
  }
  load_front_end_packages();
  LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::load_frame();
  if (frame == nullptr) return nullptr;
  // The report browser takes the Report pane and the centre.
  lum_install_report_browser(frame);
  // The Tasks pane takes its bar; its statuses read the report tree.
  lum_install_tasks_pane(frame);
  frame->show_home_page();
  frame->activate_frame(1);
  return frame;
}

extern "C" int lum_set_switch(const char* assignment) {
  return assignment != nullptr && cfg_set_override_from_assignment(assignment) ? 1 : 0;
}

extern "C" int lum_open_project_file(const char* path) {
  LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance();
  if (frame == nullptr || path == nullptr) return 0;
  return frame->open_project(path) ? 1 : 0;
}

extern "C" int lum_queue_engine_command(const char* command) {
  LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance();
  if (frame == nullptr || frame->get_console_ctrl() == nullptr || command == nullptr) return 0;
  frame->get_console_ctrl()->run_command(command);
  return 1;
}

extern "C" int lum_save_screenshot_when_idle(const char* png_path) {
  LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance();
  if (frame == nullptr || png_path == nullptr) return 0;
  auto* timer = new QTimer(frame);
  auto idle_ticks = std::make_shared<int>(0);
  const QString path = QString::fromUtf8(png_path);
  QObject::connect(timer, &QTimer::timeout, frame, [frame, timer, idle_ticks, path] {
    LUM_CONSOLE_CTRL* console = frame->get_console_ctrl();
    const bool idle = console == nullptr || (!console->is_busy() && console->pending_count() == 0 &&
                                             !console->get_msg_display()->has_lines() && atcl_queue_size() == 0);
    // Two idle ticks in a row, so that the last rows have been painted.
    *idle_ticks = idle ? *idle_ticks + 1 : 0;
    if (*idle_ticks < 2) return;
    timer->stop();
    frame->grab().save(path, "PNG");
    // A scripted run has no constraints of the user's to save.
    frame->set_sdc_needs_saving(false);
    frame->close();
  });
  timer->start(250);
  return 1;
}

extern "C" int lum_start_scripted_run(const char* script, const char* transcript, int exit_when_idle) {
  LUM_DETACHED_FRAME* frame = LUM_DETACHED_FRAME::get_instance();
  if (frame == nullptr) return 0;
  LUM_SCRIPTED_RUN_OPTIONS options;
  options.script = script != nullptr ? script : "";
  options.transcript = transcript != nullptr ? transcript : "";
  options.exit_when_idle = exit_when_idle != 0;
  return LUM_SCRIPTED_RUN::start(frame, std::move(options)) != nullptr ? 1 : 0;
}

extern "C" int lum_scripted_run_status() { return LUM_SCRIPTED_RUN::get_status(); }
