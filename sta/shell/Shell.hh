// The three ways vexa_sta runs: the line protocol for the front end
// (--ipc_sh), an interactive terminal shell, and batch scripts (-t).
//
// All three evaluate commands the same way (evaluate_command): a successful
// command's non-empty result is printed like tclsh does (collections of
// design objects are shown as a list of their names), a failed command
// becomes an error post whose text is the first line of errorInfo and whose
// one sub-message carries the rest of it (the interactive shell leaves that
// trace out, as tclsh does; it stays in $errorInfo). SIGINT interrupts the running
// command (Engine::request_interrupt) and the shell goes on. A fatal signal
// (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT) ends the engine with one error
// line naming the command that was running and exit status 128 + signal.
#pragma once

#include <string>
#include <vector>

namespace vexa {

class Engine;

// Evaluates one complete command at global level and reports its outcome.
// Returns the Tcl code.
int evaluate_command(Engine &engine, const std::string &command);

// Each returns the process exit status.
int run_protocol_shell(Engine &engine);
int run_interactive_shell(Engine &engine, const std::string &project_path);
// A project named on the command line is opened before the script runs; if
// it cannot be opened the script does not run and the status is 1.
int run_batch(Engine &engine, const std::string &script, const std::vector<std::string> &args,
              const std::string &project_path = std::string());

// True for the names of standard input (/dev/stdin and its aliases), which
// in protocol mode carries the front end's commands.
bool reads_standard_input(const std::string &path);

// Routes SIGINT to engine.request_interrupt() and installs the fatal-signal
// handlers.
void install_interrupt_handler(Engine &engine);

} // namespace vexa
