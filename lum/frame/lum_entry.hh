// The library's entry points, exported by name with C linkage so that the
// launcher (or any host) finds them with dlsym after loading libtsm_lum.so.
#pragma once

extern "C" {

// Reasons given to tsm_lum_DllMain.
enum { TSM_LUM_DETACH = 0, TSM_LUM_ATTACH = 1 };

// Load-time initialiser, run by the loader itself when the library is loaded
// (and again with TSM_LUM_DETACH when it is unloaded): keeps the module handle
// for resource loading. Returns 1, or 0 when the library cannot be initialised.
int tsm_lum_DllMain(void* module_handle, unsigned long reason);
// The handle kept by tsm_lum_DllMain (the library's load address).
void* tsm_lum_get_module_handle();
// Opens the analyzer: creates the main frame (starting the engine) or, when it
// exists, activates it. Needs a QApplication. Returns the frame, or null when
// it cannot be made (the user has been told why).
void* lum_dyn_adv_kro_tool();

// Launcher services. A switch "name=value" of the launcher's --set option;
// returns 0 when malformed.
int lum_set_switch(const char* assignment);
// Opens a project in the frame made by lum_dyn_adv_kro_tool; returns 0 when
// there is no frame or the project was refused (the user has been told why).
int lum_open_project_file(const char* path);
}

extern "C" {
// Queues an engine command line in the frame's console, as if typed (the
// launcher's --command). Returns 0 when there is no frame.
int lum_queue_engine_command(const char* command);
// Once the engine has gone idle with nothing queued, saves a picture of the
// main window as PNG to path and closes the window (the launcher's
// --screenshot, used for the documentation). Returns 0 when there is no frame.
int lum_save_screenshot_when_idle(const char* png_path);
}

extern "C" {
// Scripted runs (the launcher's --script, --transcript, --exit-when-idle):
// script (may be null) is evaluated in the front end's interpreter once the
// engine is idle with nothing queued; the console's text is written to
// transcript (may be null) when the frame closes; with exit_when_idle the
// frame closes once the script has run and all is idle. Returns 0 when there
// is no frame.
int lum_start_scripted_run(const char* script, const char* transcript, int exit_when_idle);
// 0 while no script of a scripted run failed, else 1.
int lum_scripted_run_status();
}
