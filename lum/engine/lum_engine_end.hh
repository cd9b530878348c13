// What the front end keeps when the engine dies: why it ended, the last lines
// it wrote to its standard error, and the constraint commands sent to it in
// this session (so that they can be saved as an SDC file). Plain functions,
// tested without a window; the frame's engine-ended dialog shows them.
#pragma once

#include <string>
#include <vector>

struct LUM_ENGINE_END {
  int exit_code = -1;    // -1 when a signal ended it
  int signal_number = 0; // 0 when it exited
  std::vector<std::string> last_error_lines;
};

// "it exited with status 3", "it was ended by signal 9 (Killed)", or "it
// ended" when neither is known.
std::string lum_engine_end_reason(const LUM_ENGINE_END& end);

// The last `count` non-empty lines of `text` (a line end at the very end adds
// no empty line).
std::vector<std::string> lum_last_lines(const std::string& text, size_t count);

// The constraint commands among the commands of one command line (a line may
// hold several, separated by ";" or line breaks): those whose first word is a
// command that changes the engine's constraints (create_clock,
// set_input_delay, set_false_path, remove_clock, ...), each as its own text.
// A line that is not well-formed Tcl yields none.
std::vector<std::string> lum_constraint_commands(const std::string& line);

// The text of an SDC file holding the commands, one a line, after a comment
// that says where they come from.
std::string lum_session_sdc_text(const std::vector<std::string>& constraints);
