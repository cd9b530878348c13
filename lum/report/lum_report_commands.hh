// How the report browser sends command lines, and what it needs to know about
// the main frame.
//
// A command line that begins with "lum_" (exactly, case-sensitively) is a
// command of the front end's own package: it goes to the front end's
// interpreter through the post queue and never reaches the engine. Every other
// line goes to the engine through the console (queued, echoed and put in the
// history like a typed command). Tests and the benchmark replace the engine's
// side with a sink of their own.
#pragma once

#include <functional>
#include <string>

// Routes one command line as described above.
void lum_report_run_command(const std::string& command);

// Routes a command taken from a report database (a panel's command for
// Regenerate, a table's row command) only when lum_stored_command_is_runnable
// allows it; otherwise the command is shown as text in a warning and not run.
// Returns whether it was sent.
bool lum_report_run_stored_command(const std::string& command);

// Replaces the way to the engine (null restores the console). Lines that
// begin "lum_" never reach the sink.
using LUM_ENGINE_COMMAND_SINK = std::function<void(const std::string& command)>;
void lum_report_set_engine_sink(LUM_ENGINE_COMMAND_SINK sink);

// The frame's netlist_is_created / netlist_is_up_to_date flags ('1', '0', 'e');
// '\0' when there is no frame.
char lum_report_netlist_is_created();
char lum_report_netlist_is_up_to_date();

// Tells the user about a report problem on the console (a warning post of
// the console's message report, else of the default one), or on standard
// error when there is neither.
void lum_report_warning(const std::string& id, const std::string& text);
