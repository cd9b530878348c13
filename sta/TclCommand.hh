// Registration of the engine's C++ Tcl commands.
//
// Every command function receives the Engine. The one trampoline here turns
// C++ exceptions (OpenSTA throws sta::Exception, a std::exception) into
// TCL_ERROR with the exception's text, so no command can take the engine
// down; an exception of unknown type is reported as an internal error.
#pragma once

#include <tcl.h>

namespace vexa {

class Engine;

using CommandFunction = int (*)(Engine &engine, Tcl_Interp *interp, int objc,
                                Tcl_Obj *const objv[]);

// help_args, when given, is the argument summary the "help" command lists for
// the command (in OpenSTA's style, e.g. "[-revision name] project_file"), so
// that the engine's own commands are listed beside OpenSTA's and a command
// that replaces one of OpenSTA's does not keep the old summary.
void add_command(Engine &engine, const char *name, CommandFunction function,
                 const char *help_args = nullptr);

// Each command module registers its commands with one of these.
void register_shell_commands(Engine &engine);
void register_project_commands(Engine &engine);
void register_netlist_commands(Engine &engine);
void register_sdc_commands(Engine &engine);
void register_collection_commands(Engine &engine);
// Checks put in front of OpenSTA's file readers (after the SDC layer, whose
// wrapping they use).
void register_input_guards(Engine &engine);
// Guards of the interpreter itself: bounded format widths, object handles
// checked against the design before OpenSTA dereferences them.
void register_tcl_guards(Engine &engine);

} // namespace vexa
