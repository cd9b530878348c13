// Encoding of engine output for the line protocol of `vexa_sta --ipc_sh`.
//
// The front end reads the engine's stdout line by line. Text that a command
// prints must reach it exactly, in two ways at once: in normal mode the line
// "echo_stdout X" becomes the Tcl command "lum_echo_stdout X" whose single
// argument must be the text; in hidden mode the front end takes the line from
// its fourteenth character on. The functions here produce such lines and the
// quoted words of message posts and call-backs. They are pure functions of
// their input (Tcl is only consulted as the authority on list syntax).
#pragma once

#include <string>
#include <string_view>

namespace vexa {

// True when text is non-empty and holds no whitespace and none of the
// characters [ ] { } $ \ " ; — such text is one Tcl word as it stands.
bool is_plain_token(std::string_view text);

// Encodes one physical line of text (no "\n" inside) as protocol lines, each
// ending in "\n": "echo_stdout  R" for plain text, "echo_stdout {R" + "}" for
// text that braces carry exactly, otherwise "echo_stdout  " followed by R with
// every ASCII character outside [A-Za-z0-9_.:/-] backslash-escaped.
std::string encode_text_line(std::string_view line);

// A double-quoted Tcl word whose value is text, kept on one line: the
// characters $ [ ] " and backslash are escaped with a backslash; newline
// becomes \n, tab \t and carriage return \r.
std::string quote_word(std::string_view text);

// Text as a call-back argument: as it stands when plain, else quote_word.
std::string callback_word(std::string_view text);

} // namespace vexa
