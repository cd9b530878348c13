// Whether a command stored in a report database may run.
//
// A report database is a file a user may receive from someone else, so the
// commands it carries (the command that made a panel, for Regenerate, and the
// row commands of its tables) are not trusted. One runs only when it is a
// single command of one of the engine's own report commands, every word of
// it literal: no command or variable substitution, no {*} expansion, no
// second command, no comment, no line break (so no backslash-newline), no NUL,
// and no -file option (a received report must not write files elsewhere).
// Lines that begin "lum_" name the front end's own commands and never pass.
// The check reads the text with Tcl's own command parser, so it sees the
// words exactly as the engine would.
#pragma once

#include <string>
#include <vector>

// The engine's report commands (those that write report panels).
const std::vector<std::string>& lum_engine_report_commands();

// True when `command` may be run. Otherwise false, and *reason (when given)
// says why in a few words ("it runs a command substitution", ...).
bool lum_stored_command_is_runnable(const std::string& command, std::string* reason = nullptr);
