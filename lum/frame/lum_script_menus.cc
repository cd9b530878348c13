#include "frame/lum_script_menus.hh"

#include <algorithm>
#include <filesystem>

#include "frame/lum_frame_commands.hh"

namespace fs = std::filesystem;

void lum_add_scripts_in_dir(std::vector<std::string>* list, const std::string& dir) {
  if (list == nullptr || dir.empty()) return;
  std::error_code error;
  std::vector<std::string> found;
  for (fs::directory_iterator it(dir, error), end; !error && it != end; it.increment(error)) {
    std::error_code type_error;
    if (it->path().extension() == ".tcl" && it->is_regular_file(type_error))
      found.push_back(fs::absolute(it->path(), type_error).string());
  }
  std::sort(found.begin(), found.end());
  list->insert(list->end(), found.begin(), found.end());
}

LUM_SCRIPT_LISTS lum_load_tcl_scripts(const std::string& project_dir, const std::vector<std::string>& user_lib_dirs,
                                      const std::string& global_dir) {
  LUM_SCRIPT_LISTS lists;
  lum_add_scripts_in_dir(&lists.project, project_dir);
  for (const std::string& dir : user_lib_dirs) lum_add_scripts_in_dir(&lists.user_libs, dir);
  lum_add_scripts_in_dir(&lists.global, global_dir);
  return lists;
}

std::vector<std::string> lum_split_dir_list(const std::string& value) {
  std::vector<std::string> dirs;
  std::string current;
  auto flush = [&] {
    const size_t first = current.find_first_not_of(" \t");
    const size_t last = current.find_last_not_of(" \t");
    if (first != std::string::npos) dirs.push_back(current.substr(first, last - first + 1));
    current.clear();
  };
  for (char c : value) {
    if (c == ':' || c == ';') flush();
    else current += c;
  }
  flush();
  return dirs;
}

namespace {

struct RANGE {
  const std::vector<std::string> LUM_SCRIPT_LISTS::*list;
  unsigned min, max;
};

const RANGE kRanges[] = {
    {&LUM_SCRIPT_LISTS::project, LUM_ID_RUN_PROJECT_TCL_SCRIPT_MIN, LUM_ID_RUN_PROJECT_TCL_SCRIPT_MAX},
    {&LUM_SCRIPT_LISTS::user_libs, LUM_ID_RUN_USER_LIBS_TCL_SCRIPT_MIN, LUM_ID_RUN_USER_LIBS_TCL_SCRIPT_MAX},
    {&LUM_SCRIPT_LISTS::global, LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MIN, LUM_ID_RUN_GLOBAL_USER_LIBS_TCL_SCRIPT_MAX},
};

}  // namespace

std::vector<LUM_SCRIPT_MENU_ENTRY> lum_script_menu_entries(const LUM_SCRIPT_LISTS& lists) {
  std::vector<LUM_SCRIPT_MENU_ENTRY> entries;
  for (const RANGE& range : kRanges) {
    const std::vector<std::string>& list = lists.*range.list;
    for (size_t i = 0; i < list.size() && range.min + i <= range.max; ++i)
      entries.push_back({static_cast<unsigned>(range.min + i), list[i]});
    if (!list.empty()) entries.push_back({0, std::string()});
  }
  return entries;
}

std::string lum_script_for_id(const LUM_SCRIPT_LISTS& lists, unsigned id) {
  for (const RANGE& range : kRanges) {
    if (id < range.min || id > range.max) continue;
    const std::vector<std::string>& list = lists.*range.list;
    return id - range.min < list.size() ? list[id - range.min] : std::string();
  }
  return {};
}
