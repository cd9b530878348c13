// Small string and path helpers shared by the front end.
#pragma once

#include <string>
#include <vector>

// Number-aware comparison: runs of digits compare by value, the rest by
// character (case-insensitively, then case-sensitively to break ties).
// Negative, zero or positive like strcmp.
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
