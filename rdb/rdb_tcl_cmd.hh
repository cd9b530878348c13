// Command templates of Tcl tables: quoting a cell as one Tcl word and
// filling "%{C}" / "%r{C}" placeholders (see RDB_TCL_TABLE_OBJECT::build_cmd).
#pragma once

#include <string>
#include <string_view>
#include <vector>

// `text` written so that Tcl reads it back as exactly one word: unchanged
// when it holds nothing special, in braces when that is safe, otherwise with
// backslashes before every special character.
std::string rdb_tcl_quote(std::string_view text);

// Fills a template from one row. `columns` are the titles (for names) and
// `cells` the row's texts. A placeholder naming no column yields "" and, when
// `error` is given, a message there.
std::string rdb_fill_command_template(std::string_view command_template,
                                      const std::vector<std::string>& columns,
                                      const std::vector<std::string>& cells,
                                      std::string* error = nullptr);
