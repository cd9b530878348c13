// The Tcl scripts listed under the Script menu: the project folder's scripts,
// those of the user libraries, and those of the global user library, each a
// list of full paths with its own range of command identifiers. The lists and
// the identifiers are plain data; the frame rebuilds the menu from them each
// time it opens.
//
// Where the lists come from: the project folder is the open project's; the
// user libraries are the folders of the switch "lum_user_libraries" (separated
// by ":" or ";"); the global user library is the folder of the switch
// "lum_global_user_library".
#pragma once

#include <string>
#include <vector>

struct LUM_SCRIPT_LISTS {
  std::vector<std::string> project;
  std::vector<std::string> user_libs;
  std::vector<std::string> global;
};

// Appends the "*.tcl" files of a folder (full paths, by name) to a list. A
// missing folder adds nothing.
void lum_add_scripts_in_dir(std::vector<std::string>* list, const std::string& dir);

// The three lists from their folders; an empty project folder means no project.
LUM_SCRIPT_LISTS lum_load_tcl_scripts(const std::string& project_dir, const std::vector<std::string>& user_lib_dirs,
                                      const std::string& global_dir);

// The folders of a list switch: split at ":" and ";", blanks trimmed, empties dropped.
std::vector<std::string> lum_split_dir_list(const std::string& value);

// One entry of the script menu: a script with its identifier, or a separator
// (id 0) after each non-empty list. At most 199 scripts of each list are shown.
struct LUM_SCRIPT_MENU_ENTRY {
  unsigned id = 0;
  std::string path;
};
std::vector<LUM_SCRIPT_MENU_ENTRY> lum_script_menu_entries(const LUM_SCRIPT_LISTS& lists);

// The script of a menu identifier; empty when the identifier is outside the
// ranges or past the end of its list.
std::string lum_script_for_id(const LUM_SCRIPT_LISTS& lists, unsigned id);
