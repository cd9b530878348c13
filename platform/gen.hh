// Small string and path helpers shared by the front end.
#pragma once

#include <string>
#include <vector>

// Number-aware comparison: runs of digits compare by value, the rest by
// character (case-insensitively, then case-sensitively to break ties).
// Negative, zero or positive like strcmp.
//
// Numbers may carry a fraction and a minus sign, so that columns of slacks
// and delays sort by value ("-0.5" < "0.25" < "1.5"): a "." between digits
// starts a fraction ("1.5" > "1.25", also inside names: "u1.10" < "u1.2"), and
// a "-" before a digit is a minus sign at the start of the text or after a
// blank or one of ( [ { = , ; : (in "a-1" it is a character, so "a-1" < "a-2").
// Digit runs of any length compare without overflow. A number sorts where its
// digits stand among the characters (after blanks and punctuation such as
// "(" or "-", before letters). Equal values are ordered by their spelling,
// shorter first ("7" < "007", "1.5" < "1.50"), and equal texts up to case put
// upper case first, so only identical texts compare equal.
int gen_lexcmp(const char* a, const char* b);

// Reads a decimal integer (optional sign) at *text and advances *text past the
// digits. Returns 0 and leaves *text when there are no digits.
int gen_atoi(const char** text);

// Length of a string; 0 for null.
size_t gen_strlen(const char* text);

// The directory of the running program, with a trailing "/" (e.g.
// "/work/main/build/bin/"). The engine vexa_sta is looked up here.
std::string gen_get_module_path();

// Full path of a file in the misc/ directory (menu, steps, help and data files):
// the installed share directory next to the program, else the source tree's
// misc/. Returns the path even when the file does not exist there.
std::string gen_get_common_misc_fullpath(const std::string& file_name);

// The first directory of dirs that holds file_name, joined; empty if none.
std::string gen_find_file(const std::string& file_name, const std::vector<std::string>& dirs);

// Always false: the front end runs standalone, never inside a host program.
bool gen_is_in_ui_process();

// The product version, e.g. "0.1.0".
const char* gen_get_version();
