#include "shell/Shell.hh"

#include "Engine.hh"
#include "TclCommand.hh"
#include "protocol/Encoder.hh"
#include "shell/CommandAssembler.hh"
#include "shell/ProcessExit.hh"

#include <tcl.h>
#include <readline/history.h>
#include <readline/readline.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <fcntl.h>
#include <unistd.h>

namespace vexa {

namespace {

Engine *interrupt_target = nullptr;

void on_sigint(int)
{
  if (interrupt_target)
    interrupt_target->request_interrupt();
}

// A fatal signal (a crash inside OpenSTA, an abort) ends the engine: after
// a wild write nothing it computes can be trusted. The handler writes one
// line naming the command that was running, prepared before the command
// started so that the handler itself only calls write(2), and exits with
// 128 + the signal number. The front end sees the line and the end of the
// process.
constexpr size_t fatal_line_capacity = 1024;
char fatal_line[fatal_line_capacity];
constexpr char fatal_number_mark = '\x01';
volatile size_t fatal_line_size = 0;
int fatal_fd = 2;
// Handlers run on their own stack, so that a stack overflow is reported too.
constexpr size_t fatal_stack_size = 64 * 1024;
alignas(16) char fatal_stack[fatal_stack_size];

void write_all(int fd, const char *bytes, size_t size)
{
  while (size > 0) {
    ssize_t written = ::write(fd, bytes, size);
    if (written < 0 && errno == EINTR)
      continue;
    if (written <= 0)
      return;
    bytes += written;
    size -= static_cast<size_t>(written);
  }
}

// The decimal digits of a small positive number, async-signal-safe.
size_t put_number(char *out, int value)
{
  char digits[12];
  size_t count = 0;
  do {
    digits[count++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0 && count < sizeof digits);
  for (size_t i = 0; i < count; i++)
    out[i] = digits[count - 1 - i];
  return count;
}

void on_fatal_signal(int signal_number)
{
  // The line was prepared with a mark where the signal number goes.
  char line[fatal_line_capacity + 16];
  size_t size = 0;
  const size_t prepared = fatal_line_size;
  for (size_t i = 0; i < prepared && size + 12 < sizeof line; i++) {
    if (fatal_line[i] == fatal_number_mark)
      size += put_number(line + size, signal_number);
    else
      line[size++] = fatal_line[i];
  }
  write_all(fatal_fd, line, size);
  _exit(128 + signal_number);
}

void install_fatal_handlers()
{
  stack_t stack;
  std::memset(&stack, 0, sizeof stack);
  stack.ss_sp = fatal_stack;
  stack.ss_size = fatal_stack_size;
  sigaltstack(&stack, nullptr);
  struct sigaction action;
  std::memset(&action, 0, sizeof action);
  action.sa_handler = on_fatal_signal;
  action.sa_flags = SA_ONSTACK | SA_RESETHAND;
  sigemptyset(&action.sa_mask);
  for (int s : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT})
    sigaction(s, &action, nullptr);
}

// What the fatal handler says when `activity` (a command, a script) is
// running: one protocol line for the front end, else an error on stderr.
void prepare_fatal_line(Engine &engine, const std::string &activity)
{
  std::string shown = activity;
  size_t nl = shown.find_first_of("\r\n");
  if (nl != std::string::npos)
    shown = shown.substr(0, nl) + " ...";
  if (shown.size() > 300)
    shown = shown.substr(0, 300) + " ...";
  // fatal_number_mark stands for the signal number.
  shown.erase(std::remove(shown.begin(), shown.end(), fatal_number_mark), shown.end());
  std::string text = std::string("the engine stopped on fatal signal ") + fatal_number_mark
                     + " while running " + shown
                     + "; its state cannot be trusted, so it exits (restart it to go on)";
  std::string line;
  if (engine.sink().mode() == OutputMode::protocol) {
    line = "msg_internal_error 0 " + quote_word(text) + "\n";
    fatal_fd = engine.sink().protocol_fd();
  } else {
    line = "Internal Error: " + text + "\n";
    fatal_fd = 2;
  }
  if (line.size() > fatal_line_capacity)
    line = line.substr(0, fatal_line_capacity - 1) + "\n";
  fatal_line_size = 0;
  std::memcpy(fatal_line, line.data(), line.size());
  fatal_line_size = line.size();
}

void flush_tcl_channels(Engine &engine)
{
  for (int which : {TCL_STDOUT, TCL_STDERR}) {
    Tcl_Channel channel = Tcl_GetStdChannel(which);
    if (channel)
      Tcl_Flush(channel);
  }
  engine.sink().flush_text();
}

// Text of a command result as the console shows it.
std::string display_text(Engine &engine, Tcl_Obj *result)
{
  const char *text = Tcl_GetString(result);
  if (text[0] != '_')
    return text;
  Tcl_Obj *words[2] = {Tcl_NewStringObj("::vexa::display_result", -1), result};
  Tcl_IncrRefCount(words[0]);
  Tcl_IncrRefCount(result);
  std::string shown = text;
  if (Tcl_EvalObjv(engine.interp(), 2, words, TCL_EVAL_GLOBAL) == TCL_OK)
    shown = Tcl_GetStringResult(engine.interp());
  Tcl_DecrRefCount(words[0]);
  Tcl_DecrRefCount(result);
  return shown;
}

// The interactive shell, like tclsh, shows only the message of a failed
// command: its trace mostly repeats the line just typed (or OpenSTA's
// unknown-command procedure) and stays readable in $errorInfo. Scripts and
// the front end get the trace as a sub-message.
bool show_error_traces = true;

void report_error(Engine &engine, bool interrupted = false)
{
  if (interrupted) {
    engine.post(MessageKind::error, "VSTA-1102", "interrupted by the user (SIGINT)");
    return;
  }
  std::string all = engine.error_info();
  size_t nl = all.find('\n');
  std::string first = all.substr(0, nl);
  if (first.rfind("Error: ", 0) == 0)
    first.erase(0, 7);
  std::vector<SubMessage> subs;
  if (show_error_traces && nl != std::string::npos && nl + 1 < all.size())
    subs.push_back(SubMessage{MessageKind::extra_info, "VSTA-1101", all.substr(nl + 1), {}});
  engine.post(MessageKind::error, "VSTA-1100", first, subs);
}

int exit_command(Engine &engine, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[])
{
  int status = 0;
  if (objc > 2)
    return engine.tcl_error("wrong # args: should be \"exit ?returnCode?\"");
  if (objc == 2 && Tcl_GetIntFromObj(interp, objv[1], &status) != TCL_OK)
    return TCL_ERROR;
  flush_tcl_channels(engine);
  std::fflush(stdout);
  std::fflush(stderr);
  end_process(status);
}

} // namespace

void register_shell_commands(Engine &engine)
{
  add_command(engine, "exit", exit_command, "[status]");
}

void install_interrupt_handler(Engine &engine)
{
  install_fatal_handlers();
  prepare_fatal_line(engine, "no command (the engine was idle)");
  interrupt_target = &engine;
  struct sigaction action;
  std::memset(&action, 0, sizeof action);
  action.sa_handler = on_sigint;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
}

int evaluate_command(Engine &engine, const std::string &command)
{
  Tcl_Interp *interp = engine.interp();
  engine.set_command_running(true);
  prepare_fatal_line(engine, "the command \"" + command + "\"");
  int code = TCL_OK;
  try {
    code = Tcl_EvalEx(interp, command.c_str(), static_cast<int>(command.size()), TCL_EVAL_GLOBAL);
  } catch (const std::exception &e) {
    engine.internal_error(std::string("exception escaped the command: ") + e.what());
    code = TCL_ERROR;
  }
  prepare_fatal_line(engine, "no command (the engine was idle)");
  engine.set_command_running(false);
  bool interrupted = engine.take_interrupt();
  if (code == TCL_ERROR) {
    flush_tcl_channels(engine);
    report_error(engine, interrupted);
  } else if (code == TCL_OK || code == TCL_RETURN) {
    Tcl_Obj *result = Tcl_GetObjResult(interp);
    Tcl_IncrRefCount(result);
    std::string shown = display_text(engine, result);
    Tcl_DecrRefCount(result);
    if (!shown.empty())
      Tcl_WriteChars(Tcl_GetStdChannel(TCL_STDOUT), (shown + "\n").c_str(), -1);
    flush_tcl_channels(engine);
  } else {
    flush_tcl_channels(engine);
    engine.post(MessageKind::error, "VSTA-1100",
                code == TCL_BREAK ? "invoked \"break\" outside of a loop"
                                  : "invoked \"continue\" outside of a loop");
  }
  Tcl_ResetResult(interp);
  return code;
}

namespace {

void refuse_nul(Engine &engine)
{
  engine.post(MessageKind::error, "VSTA-1103",
              "the command holds a NUL byte and was not run");
}

// Evaluates the command the assembler completed, or refuses it.
void evaluate_input(Engine &engine, CommandAssembler &input)
{
  bool refused = input.refused();
  std::string command = input.take();
  if (refused)
    refuse_nul(engine);
  else
    evaluate_command(engine, command);
}

// In protocol mode standard input carries the front end's commands: a
// script that read it (gets stdin, read_sdc /dev/stdin, a child process of
// exec) would eat them. The protocol moves to a descriptor of its own and
// descriptor 0 becomes /dev/null; reading stdin by name is refused.
FILE *take_protocol_input(Engine &engine)
{
  int protocol = fcntl(0, F_DUPFD_CLOEXEC, 3);
  if (protocol < 0)
    return stdin;
  int null = open("/dev/null", O_RDONLY);
  if (null >= 0) {
    dup2(null, 0);
    close(null);
  }
  engine.eval(R"TCL(
proc ::vexa::refuse_stdin {command arglist} {
  if {"stdin" in $arglist} {
    error "$command: standard input carries the front end's commands and cannot be read"
  }
}
foreach ::vexa::cmd {gets read} {
  rename ::$::vexa::cmd ::vexa::__stdin_$::vexa::cmd
  proc ::$::vexa::cmd args "::vexa::refuse_stdin $::vexa::cmd \$args
    tailcall ::vexa::__stdin_$::vexa::cmd {*}\$args"
}
unset ::vexa::cmd
)TCL");
  Tcl_ResetResult(engine.interp());
  FILE *in = fdopen(protocol, "r");
  return in ? in : stdin;
}

} // namespace

bool reads_standard_input(const std::string &path)
{
  return path == "/dev/stdin" || path == "/dev/fd/0" || path == "/proc/self/fd/0"
         || path == "-";
}

int run_protocol_shell(Engine &engine)
{
  OutputSink &sink = engine.sink();
  FILE *protocol = take_protocol_input(engine);
  sink.write_protocol_line("tcl> ");
  CommandAssembler input;
  char *buffer = nullptr;
  size_t capacity = 0;
  ssize_t length = 0;
  while ((length = getline(&buffer, &capacity, protocol)) >= 0) {
    std::string line(buffer, static_cast<size_t>(length));
    if (!line.empty() && line.back() == '\n')
      line.pop_back();
    if (!input.add(line)) {
      sink.write_protocol_line("> ");
      continue;
    }
    evaluate_input(engine, input);
    sink.write_protocol_line("tcl> ");
  }
  std::free(buffer);
  flush_tcl_channels(engine);
  return 0;
}

namespace {

// Opens the project named on the command line; returns the Tcl code.
int open_named_project(Engine &engine, const std::string &project_path)
{
  Tcl_Obj *words[2] = {Tcl_NewStringObj("project_open", -1),
                       Tcl_NewStringObj(project_path.c_str(), -1)};
  Tcl_Obj *list = Tcl_NewListObj(2, words);
  Tcl_IncrRefCount(list);
  int code = evaluate_command(engine, Tcl_GetString(list));
  Tcl_DecrRefCount(list);
  return code;
}

} // namespace

int run_interactive_shell(Engine &engine, const std::string &project_path)
{
  show_error_traces = false;
  if (!project_path.empty())
    open_named_project(engine, project_path);
  bool terminal = isatty(0);
  CommandAssembler input;
  for (;;) {
    const char *prompt = input.pending() ? "> " : "tcl> ";
    std::string line;
    if (terminal) {
      char *read = readline(prompt);
      if (!read)
        break;
      line = read;
      std::free(read);
    } else {
      engine.sink().write_plain_prompt(prompt);
      if (!std::getline(std::cin, line))
        break;
    }
    if (!input.add(line))
      continue;
    if (input.refused()) {
      input.take();
      refuse_nul(engine);
      continue;
    }
    std::string command = input.take();
    if (terminal && command.find_first_not_of(" \t") != std::string::npos)
      add_history(command.c_str());
    evaluate_command(engine, command);
  }
  if (!terminal)
    engine.sink().write_plain_prompt("\n");
  return 0;
}

int run_batch(Engine &engine, const std::string &script, const std::vector<std::string> &args,
              const std::string &project_path)
{
  Tcl_Interp *interp = engine.interp();
  if (!project_path.empty() && open_named_project(engine, project_path) != TCL_OK)
    return 1;
  Tcl_Obj *argv = Tcl_NewListObj(0, nullptr);
  for (const std::string &a : args)
    Tcl_ListObjAppendElement(nullptr, argv, Tcl_NewStringObj(a.c_str(), -1));
  Tcl_SetVar2Ex(interp, "argv", nullptr, argv, TCL_GLOBAL_ONLY);
  Tcl_SetVar2Ex(interp, "argc", nullptr, Tcl_NewIntObj(static_cast<int>(args.size())),
                TCL_GLOBAL_ONLY);
  Tcl_SetVar2Ex(interp, "argv0", nullptr, Tcl_NewStringObj(script.c_str(), -1), TCL_GLOBAL_ONLY);
  engine.set_command_running(true);
  prepare_fatal_line(engine, "the script \"" + script + "\"");
  int code = Tcl_EvalFile(interp, script.c_str());
  engine.set_command_running(false);
  bool interrupted = engine.take_interrupt();
  flush_tcl_channels(engine);
  if (code == TCL_ERROR) {
    report_error(engine, interrupted);
    return 1;
  }
  return 0;
}

} // namespace vexa
