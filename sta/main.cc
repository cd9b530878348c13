// vexa_sta: the Chronel Timing Analyzer's analysis engine.
//
//   vexa_sta [project.vpf]           interactive shell ("tcl> " prompt)
//   vexa_sta [project.vpf] -t script.tcl [args]
//                                    run a script (after opening the project,
//                                    when one is named), exit with its status
//   vexa_sta --ipc_sh                line protocol to the front end
//
// The directory of device_families.txt is taken from CHRONEL_MISC_DIR when
// set, else from the build's source tree, else from beside the program
// (../share/chronel/misc or ../misc, for an installed or copied engine).
#include "Engine.hh"
#include "shell/ProcessExit.hh"
#include "shell/Shell.hh"

#include <cstdio>
#include <filesystem>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

// Prints what was wrong with the command line (when anything was) and the usage.
void usage(const std::string &problem = std::string())
{
  if (!problem.empty())
    std::fprintf(stderr, "vexa_sta: %s\n", problem.c_str());
  std::fprintf(stderr,
               "usage: vexa_sta [project.vpf]\n"
               "       vexa_sta [project.vpf] -t script.tcl [args...]\n"
               "       vexa_sta --ipc_sh\n");
}

std::string find_misc_dir()
{
  const char *env = std::getenv("CHRONEL_MISC_DIR");
  if (env && *env)
    return env;
  namespace fs = std::filesystem;
  std::error_code ec;
  std::vector<fs::path> candidates{CHRONEL_MISC_DIR_DEFAULT};
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  if (!ec) {
    candidates.push_back(exe.parent_path() / "../share/chronel/misc");
    candidates.push_back(exe.parent_path() / "../misc");
  }
  for (const fs::path &dir : candidates)
    if (fs::exists(dir / "device_families.txt", ec))
      return dir.lexically_normal().string();
  return CHRONEL_MISC_DIR_DEFAULT;
}

} // namespace

int main(int argc, char *argv[])
{
  bool protocol = false;
  std::string script;
  std::string project;
  std::vector<std::string> script_args;
  for (int i = 1; i < argc; ++i) {
    if (!script.empty()) {
      script_args.emplace_back(argv[i]);
    } else if (std::strcmp(argv[i], "--ipc_sh") == 0 || std::strcmp(argv[i], "-ipc_sh") == 0) {
      protocol = true;
    } else if (std::strcmp(argv[i], "-t") == 0) {
      if (i + 1 >= argc) {
        usage("-t needs the name of a script file");
        return 2;
      }
      script = argv[++i];
    } else if (std::strcmp(argv[i], "-h") == 0 || std::strcmp(argv[i], "--help") == 0) {
      usage();
      return 0;
    } else if (argv[i][0] != '-' && project.empty()) {
      project = argv[i];
    } else if (argv[i][0] != '-') {
      usage("only one project may be named (\"" + project + "\" and \"" + argv[i] + "\")");
      return 2;
    } else {
      usage(std::string("unknown option \"") + argv[i] + "\"");
      return 2;
    }
  }
  if (protocol && (!project.empty() || !script.empty())) {
    usage("--ipc_sh takes no project and no script (the front end opens projects itself)");
    return 2;
  }
  vexa::Engine engine(protocol ? vexa::OutputMode::protocol : vexa::OutputMode::plain,
                      find_misc_dir());
  std::string error;
  if (!engine.start(error)) {
    engine.post(vexa::MessageKind::error, "VSTA-1000", error);
    return 1;
  }
  vexa::install_interrupt_handler(engine);
  int status = 0;
  if (protocol)
    status = vexa::run_protocol_shell(engine);
  else if (!script.empty())
    status = vexa::run_batch(engine, script, script_args, project);
  else
    status = vexa::run_interactive_shell(engine, project);
  std::fflush(stdout);
  std::fflush(stderr);
  vexa::end_process(status);
}
