// vexa_lumex: opens the Chronel Timing Analyzer's window on its own.
//
//   vexa_lumex [--set name=value]... [--command line]... [--screenshot file.png]
//              [--script file.tcl] [--transcript file.txt] [--exit-when-idle]
//              [project.vpf | revision.vsf]
//
// The program only makes the application object, loads the front-end library
// (libtsm_lum.so, looked up in ../lib next to the program, then by the
// loader's usual search) and hands over to its entry points; everything else
// lives in the library.
#include <dlfcn.h>

#include <QApplication>
#include <QIcon>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

using DLL_MAIN = int (*)(void*, unsigned long);
using OPEN_TOOL = void* (*)();
using SET_SWITCH = int (*)(const char*);
using OPEN_PROJECT = int (*)(const char*);
using QUEUE_COMMAND = int (*)(const char*);
using SCREENSHOT = int (*)(const char*);
using SCRIPTED_RUN = int (*)(const char*, const char*, int);
using SCRIPTED_STATUS = int (*)();

void usage(FILE* out) {
  std::fprintf(out,
               "Usage: vexa_lumex [--set name=value]... [project]\n"
               "Opens the Chronel Timing Analyzer.\n"
               "  project            a project file (.vpf) or a revision settings file (.vsf) to open\n"
               "  --set name=value   sets a switch for this run (e.g. --set debug_msg=1)\n"
               "  --command line     runs an engine command once the project is open (repeatable)\n"
               "  --screenshot file  saves a picture of the window as PNG once the engine is idle, then exits\n"
               "  --script file      evaluates a Tcl file in the front end's interpreter once the project is\n"
               "                     open and the engine idle (without a project: once the engine is ready)\n"
               "  --transcript file  writes the console's text (commands and their output) on exit\n"
               "  --exit-when-idle   exits once the script has run and the engine is idle with nothing queued\n"
               "  --set dialog_auto_ok=1  dialogs opened by a script accept their fields at once, as if OK\n"
               "                     were pressed\n"
               "  --help             shows this text\n");
}

std::string program_directory(const char* argv0) {
  char buffer[4096];
  ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
  std::string path = n > 0 ? std::string(buffer, static_cast<size_t>(n)) : std::string(argv0);
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

void* load_library(const std::string& dir) {
  std::string errors;
  for (const std::string& candidate : {dir + "/../lib/libtsm_lum.so", dir + "/libtsm_lum.so", std::string("libtsm_lum.so")}) {
    if (void* handle = dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL)) return handle;
    errors += std::string("\n  ") + dlerror();
  }
  std::fprintf(stderr, "vexa_lumex: cannot load the front-end library libtsm_lum.so:%s\n", errors.c_str());
  return nullptr;
}

template <typename T>
T symbol(void* library, const char* name) {
  void* address = dlsym(library, name);
  if (address == nullptr) std::fprintf(stderr, "vexa_lumex: libtsm_lum.so lacks %s\n", name);
  return reinterpret_cast<T>(address);
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> switches;
  std::vector<std::string> commands;
  std::string project;
  std::string screenshot;
  std::string script;
  std::string transcript;
  bool exit_when_idle = false;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h") {
      usage(stdout);
      return 0;
    } else if (arg == "--set" && i + 1 < argc) {
      switches.push_back(argv[++i]);
    } else if (arg == "--command" && i + 1 < argc) {
      commands.push_back(argv[++i]);
    } else if (arg == "--screenshot" && i + 1 < argc) {
      screenshot = argv[++i];
    } else if (arg == "--script" && i + 1 < argc) {
      script = argv[++i];
    } else if (arg == "--transcript" && i + 1 < argc) {
      transcript = argv[++i];
    } else if (arg == "--exit-when-idle") {
      exit_when_idle = true;
    } else if (arg.rfind("--set=", 0) == 0) {
      switches.push_back(arg.substr(6));
    } else if (!arg.empty() && arg[0] == '-' && arg != "-") {
      std::fprintf(stderr, "vexa_lumex: unknown option %s\n", arg.c_str());
      usage(stderr);
      return 2;
    } else if (project.empty()) {
      project = arg;
    } else {
      std::fprintf(stderr, "vexa_lumex: only one project can be opened (got %s and %s)\n", project.c_str(), arg.c_str());
      return 2;
    }
  }

  QApplication app(argc, argv);
  QApplication::setApplicationName("Chronel Timing Analyzer");
  QApplication::setOrganizationName("Chronel");
  QApplication::setApplicationDisplayName("Chronel Timing Analyzer");

  void* library = load_library(program_directory(argv[0]));
  if (library == nullptr) return 1;
  auto set_switch = symbol<SET_SWITCH>(library, "lum_set_switch");
  auto open_tool = symbol<OPEN_TOOL>(library, "lum_dyn_adv_kro_tool");
  auto open_project = symbol<OPEN_PROJECT>(library, "lum_open_project_file");
  auto queue_command = symbol<QUEUE_COMMAND>(library, "lum_queue_engine_command");
  auto save_screenshot = symbol<SCREENSHOT>(library, "lum_save_screenshot_when_idle");
  auto scripted_run = symbol<SCRIPTED_RUN>(library, "lum_start_scripted_run");
  auto scripted_status = symbol<SCRIPTED_STATUS>(library, "lum_scripted_run_status");
  if (!set_switch || !open_tool || !open_project || !queue_command || !save_screenshot || !scripted_run ||
      !scripted_status)
    return 1;

  for (const std::string& assignment : switches) {
    if (set_switch(assignment.c_str()) == 0) {
      std::fprintf(stderr, "vexa_lumex: --set needs name=value, got '%s'\n", assignment.c_str());
      return 2;
    }
  }
  if (open_tool() == nullptr) return 1;
  if (!project.empty()) open_project(project.c_str());
  for (const std::string& command : commands) queue_command(command.c_str());
  if (!screenshot.empty()) save_screenshot(screenshot.c_str());
  if (!script.empty() || !transcript.empty() || exit_when_idle)
    scripted_run(script.empty() ? nullptr : script.c_str(), transcript.empty() ? nullptr : transcript.c_str(),
                 exit_when_idle ? 1 : 0);
  const int code = app.exec();
  // A script that failed makes the run fail, for regression scripts.
  return code != 0 ? code : scripted_status();
}
