// Interpreter services: the front end's one Tcl interpreter, the queue through
// which other threads hand it commands, and the helpers that register a package
// of commands. Everything except atcl_post() belongs to the GUI thread.
#pragma once

#include <tcl.h>

#include <string>

// The front end's interpreter, created on first use (Tcl_FindExecutable is
// called before the first Tcl_CreateInterp). Never null after the first call.
Tcl_Interp* atcl_get_interpreter();

// Evaluates a script in the front end's interpreter. Returns the Tcl code
// (TCL_OK, TCL_ERROR, ...); the interpreter result goes into *result if given.
int atcl_tcl_eval(const char* script, std::string* result = nullptr);

// Called on the GUI thread after a posted command ran: its Tcl code and result.
using ATCL_POST_DONE = void (*)(int code, const char* result, void* data);

// Hands a command to the GUI thread's queue; callable from any thread. Commands
// run in the order they were posted, each evaluated at global level. When a Qt
// application object exists the queue drains by itself from the event loop;
// otherwise atcl_flush_queue() drains it. flags is reserved (pass 0).
void atcl_post(const char* command, int flags, ATCL_POST_DONE done, void* data = nullptr);

// Runs queued commands now on the calling (GUI) thread. With run_all non-zero
// it runs until the queue is empty; otherwise one command. timeout_ms > 0 first
// waits up to that long for a command to arrive when the queue is empty.
// Returns the number of commands run.
int atcl_flush_queue(int run_all, int timeout_ms);

// Number of commands waiting in the queue (any thread).
size_t atcl_queue_size();

// Escapes text for use inside a double-quoted Tcl word: $ [ ] " \ get a
// backslash, a newline becomes \n, a carriage return \r, a tab \t.
std::string atcl_transform_string(const std::string& text);

// One entry of a package's command table; the table ends with an all-null entry.
// Handlers get the arguments as strings (argc/argv), as Tcl_CmdProc does.
struct ATCL_CALLBACK {
  Tcl_CmdProc* proc;
  const char* name;
  ClientData client_data;
};

// Package set-up, in this order: begin (creates the namespace, e.g.
// "::vexa::lum"), register the command table (each command is created in the
// namespace and made callable by its plain name at global level), end.
// Each returns TCL_OK or TCL_ERROR (with a message in the interpreter result).
int atcl_begin_package_setup(const char* package_namespace, const char* version);
int atcl_register_callbacks(const ATCL_CALLBACK* table);
int atcl_end_package_setup();

// True while a package is being loaded dynamically (load command). The front
// end always links its package statically, so this is false outside set-up.
bool atcl_is_dynamically_loading();
