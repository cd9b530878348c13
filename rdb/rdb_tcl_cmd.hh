// Command templates of Tcl tables: quoting a cell as one Tcl word and
// filling "%{C}" / "%r{C}" placeholders (see RDB_TCL_TABLE_OBJECT::build_cmd).
#pragma once

#include <string>
#include <string_view>
#include <vector>

// `text` written with Tcl's list quoting so that Tcl reads it back as exactly
// one word: unchanged when it holds nothing special, in braces when that is
// safe, otherwise with backslash sequences. The result never holds a line
// break. `first` quotes a leading "#" (the first word of a command).
std::string rdb_tcl_quote(std::string_view text, bool first = false);

// Fills a template from one row. `columns` are the titles (for names) and
// `cells` the row's texts. The template is read as a list of Tcl words; in
// each word every placeholder ("%{C}" or "%r{C}", the same) stands for the
// text of column C ("%l{C}": that text as a one-element Tcl list, for options
// that take a list of names), and the filled word is quoted again as one word. So a
// cell can never add a word, end a brace or start a substitution. A
// placeholder naming no column yields "" and, when `error` is given, a
// message there; a template that is not a list of words (or holds the
// control character 0x01) yields "" and a message.
std::string rdb_fill_command_template(std::string_view command_template,
                                      const std::vector<std::string>& columns,
                                      const std::vector<std::string>& cells,
                                      std::string* error = nullptr);
