// Composition of the engine command lines that the main frame sends. Paths are
// written in full inside double quotation marks with Tcl's special characters
// escaped, so that names holding blanks, brackets, braces, quotes or "$" reach
// the engine exactly as they are on disk.
#pragma once

#include <string>

// A Tcl word that carries text exactly: the text itself when it is a plain
// token (no white space and none of [ ] { } $ \ " ;), else the text in double
// quotation marks with the special characters escaped.
std::string lum_tcl_word(const std::string& text);
// Always the double-quoted form, as file paths are written.
std::string lum_quoted_path(const std::string& path);

// "project_open "<path>"" and, when a revision is given, " -revision <rev>"
// (the revision as a plain word; quoted only if it is not a plain token).
std::string lum_project_open_command(const std::string& project_path, const std::string& revision);
std::string lum_read_sdc_command(const std::string& sdc_path);
std::string lum_write_sdc_command(const std::string& sdc_path);
std::string lum_source_command(const std::string& script_path);
