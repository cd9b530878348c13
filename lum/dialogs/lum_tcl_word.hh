// Text that becomes one word of a Tcl command line. The dialogs insert most
// fields as typed (a target may be a collection command in brackets), but a
// name the user means literally (a clock name, a panel name, a file name, a
// name picked in the name finder) must reach the engine intact whatever it
// holds: blanks, "$", "[", "\"", "\\", braces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The text quoted as one Tcl word (Tcl's list quoting of a one-element list):
// a plain word stays as it is, anything else is braced or backslash-escaped
// so that the engine reads back exactly the text. The empty text gives "{}".
std::string lum_tcl_word(std::string_view text);

// A name field: text that begins with "[" is a command substitution the user
// typed on purpose and stays as it is; any other text becomes lum_tcl_word.
std::string lum_tcl_name_word(std::string_view text);

// The texts as a proper Tcl list (blank-separated, each element quoted).
std::string lum_tcl_list(const std::vector<std::string>& texts);
