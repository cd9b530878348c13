#include "frame/lum_project_files.hh"

#include "rdb/rdb_error.hh"
#include "rdb/rdb_report.hh"

#include "platform/cfg.hh"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>

namespace fs = std::filesystem;

const char* const LUM_PROJECT_EXTENSION = "vpf";
const char* const LUM_REVISION_EXTENSION = "vsf";

const char* const LUM_MSG_PROJECT_NOT_FOUND =
    "The project file %1!s! does not exist./OLUM_PROJECT_NOT_FOUND";
const char* const LUM_MSG_PROJECT_HAS_NO_REVISION =
    "The project file %1!s! names no revision.  Add a line \"revision = <name>\" for each revision "
    "settings file of the project./OLUM_PROJECT_HAS_NO_REVISION";
const char* const LUM_MSG_REVISION_NOT_FOUND =
    "The revision settings file %1!s! does not exist./OLUM_REVISION_NOT_FOUND";
const char* const LUM_MSG_NETLIST_NOT_FOUND =
    "The netlist file %1!s! named by the revision settings does not exist./OLUM_NETLIST_NOT_FOUND";
const char* const LUM_MSG_CANT_CREATE_PROJECT =
    "Unable to create the project file %1!s!./OLUM_CANT_CREATE_PROJECT";
const char* const LUM_MSG_PROJECT_INCOMPATIBLE =
    "The project is not compatible with the current version of the Vexa Chronel Timing Analyzer.  Do you "
    "want to convert it now, overwriting the old project database?/COLUM_PROJECT_INCOMPATIBLE";
const char* const LUM_MSG_CANT_REPLACE_PROJECT_DATABASE =
    "Unable to remove the old project database of %1!s!./OLUM_CANT_REPLACE_PROJECT_DATABASE";

namespace {

std::string trim(const std::string& text) {
  size_t b = 0, e = text.size();
  while (b < e && std::isspace(static_cast<unsigned char>(text[b]))) ++b;
  while (e > b && std::isspace(static_cast<unsigned char>(text[e - 1]))) --e;
  return text.substr(b, e - b);
}

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

bool file_exists(const std::string& path) {
  std::error_code ec;
  return fs::is_regular_file(path, ec);
}

std::string resolve(const std::string& folder, const std::string& path) {
  fs::path p(path);
  if (p.is_absolute()) return p.lexically_normal().string();
  return (fs::path(folder) / p).lexically_normal().string();
}

}  // namespace

bool lum_read_setting_lines(const std::string& path, std::vector<LUM_PROJECT_SETTING>* settings) {
  std::ifstream in(path);
  if (!in) return false;
  settings->clear();
  std::string line;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    std::string text = trim(line);
    if (text.empty() || text[0] == '#') continue;
    size_t eq = text.find('=');
    if (eq == std::string::npos) continue;
    LUM_PROJECT_SETTING s;
    s.key = lower(trim(text.substr(0, eq)));
    s.value = trim(text.substr(eq + 1));
    if (s.value.size() >= 2 && s.value.front() == '"' && s.value.back() == '"') {
      // Inside the quotes \" and \\ stand for " and \.
      const std::string quoted = s.value.substr(1, s.value.size() - 2);
      s.value.clear();
      for (size_t i = 0; i < quoted.size(); ++i) {
        if (quoted[i] == '\\' && i + 1 < quoted.size() && (quoted[i + 1] == '"' || quoted[i + 1] == '\\')) ++i;
        s.value += quoted[i];
      }
    }
    s.line = number;
    settings->push_back(std::move(s));
  }
  return true;
}

bool lum_read_project_file(const std::string& vpf_path, LUM_PROJECT_FILE* project) {
  std::vector<LUM_PROJECT_SETTING> settings;
  if (!lum_read_setting_lines(vpf_path, &settings)) return false;
  *project = LUM_PROJECT_FILE();
  for (const LUM_PROJECT_SETTING& s : settings) {
    if (s.key == "project_name") project->project_name = s.value;
    else if (s.key == "revision" && !s.value.empty()) project->revisions.push_back(s.value);
  }
  return true;
}

bool lum_read_revision_settings(const std::string& vsf_path, LUM_REVISION_SETTINGS* revision) {
  std::vector<LUM_PROJECT_SETTING> settings;
  if (!lum_read_setting_lines(vsf_path, &settings)) return false;
  *revision = LUM_REVISION_SETTINGS();
  const std::string folder = lum_path_directory(vsf_path);
  for (const LUM_PROJECT_SETTING& s : settings) {
    if (s.key == "top_module") revision->top_module = s.value;
    else if (s.key == "family") revision->family = s.value;
    else if (s.key == "speed_grade") revision->speed_grade = s.value;
    else if (s.key == "verilog_file" && !s.value.empty()) revision->verilog_files.push_back(resolve(folder, s.value));
  }
  return true;
}

std::string lum_path_extension(const std::string& path) {
  std::string ext = fs::path(path).extension().string();
  return ext.empty() ? ext : ext.substr(1);
}

std::string lum_path_base_name(const std::string& path) { return fs::path(path).stem().string(); }

std::string lum_path_directory(const std::string& path) {
  std::string dir = fs::path(path).parent_path().string();
  if (dir.empty()) return dir;
  return dir.back() == '/' ? dir : dir + "/";
}

std::string lum_path_with_extension(const std::string& path, const std::string& extension) {
  fs::path p(path);
  p.replace_extension(extension);
  return p.string();
}

std::string lum_absolute_path(const std::string& path) {
  std::error_code ec;
  fs::path p = fs::absolute(fs::path(path), ec);
  return ec ? path : p.lexically_normal().string();
}

LUM_PROJECT_OPEN_PLAN lum_plan_project_open(const std::string& picked_path) {
  LUM_PROJECT_OPEN_PLAN plan;
  std::string path = lum_absolute_path(picked_path);
  std::string ext = lum_path_extension(path);
  if (ext.empty()) {
    plan.debug_lines.push_back("LUMEX trying to open project '" + path +
                               "' with no extension; assuming project extension is .vpf");
    path = lum_path_with_extension(path, LUM_PROJECT_EXTENSION);
    ext = LUM_PROJECT_EXTENSION;
  }
  const std::string base = lum_path_base_name(path);
  const std::string folder = lum_path_directory(path);

  if (ext == LUM_REVISION_EXTENSION) {
    if (!file_exists(path)) {
      plan.error_entry = LUM_MSG_REVISION_NOT_FOUND;
      plan.error_insert = path;
      return plan;
    }
    plan.project_path = lum_path_with_extension(path, LUM_PROJECT_EXTENSION);
    plan.revision = base;
    if (!file_exists(plan.project_path)) {
      plan.debug_lines.push_back("LUMEX needs to create a vpf '" + plan.project_path + "' for the revision '" +
                                 base + "'.");
      plan.create_project_file = true;
    }
  } else {
    // Any other extension is treated as the project file of that base name.
    plan.project_path = lum_path_with_extension(path, LUM_PROJECT_EXTENSION);
    LUM_PROJECT_FILE project;
    if (!lum_read_project_file(plan.project_path, &project)) {
      plan.error_entry = LUM_MSG_PROJECT_NOT_FOUND;
      plan.error_insert = plan.project_path;
      return plan;
    }
    if (project.revisions.empty()) {
      plan.error_entry = LUM_MSG_PROJECT_HAS_NO_REVISION;
      plan.error_insert = plan.project_path;
      return plan;
    }
    plan.revision = project.revisions.front();
    if (plan.revision != base)
      plan.debug_lines.push_back("LUMEX trying to open project '" + plan.project_path +
                                 "', converting to use revision '" + plan.revision + "'");
  }

  // The revision's own settings and its netlist must be there.
  const std::string vsf = folder + plan.revision + "." + LUM_REVISION_EXTENSION;
  LUM_REVISION_SETTINGS settings;
  if (!lum_read_revision_settings(vsf, &settings)) {
    plan.error_entry = LUM_MSG_REVISION_NOT_FOUND;
    plan.error_insert = vsf;
    return plan;
  }
  for (const std::string& netlist : settings.verilog_files) {
    if (!file_exists(netlist)) {
      plan.error_entry = LUM_MSG_NETLIST_NOT_FOUND;
      plan.error_insert = netlist;
      return plan;
    }
  }
  return plan;
}

bool lum_create_project_file_for_revision(const std::string& vpf_path, const std::string& revision) {
  std::ofstream out(vpf_path);
  if (!out) return false;
  // Quoted (with \" and \\ inside) whenever the name would not read back as it stands.
  const bool plain = !revision.empty() && revision.find_first_of(" \t\"\\") == std::string::npos;
  std::string value = plain ? revision : "\"";
  if (!plain) {
    for (char c : revision) {
      if (c == '"' || c == '\\') value += '\\';
      value += c;
    }
    value += '"';
  }
  out << "# Project file made by the Chronel Timing Analyzer for the revision " << revision << ".\n"
      << "project_name = " << value << "\n"
      << "revision = " << value << "\n";
  return static_cast<bool>(out);
}

namespace {

// Calls visit(key, value) for each "key = value" line of a family's section
// of the families file (keys lower-cased), in file order.
void visit_family_section(const std::string& families_file, const std::string& family,
                          const std::function<void(const std::string&, const std::string&)>& visit) {
  std::ifstream in(families_file);
  if (!in || family.empty()) return;
  std::string line;
  bool inside = false;
  while (std::getline(in, line)) {
    std::string text = trim(line);
    if (text.empty() || text[0] == '#') continue;
    if (text.front() == '[' && text.back() == ']') {
      inside = lower(text.substr(1, text.size() - 2)) == lower(family);
      continue;
    }
    if (!inside) continue;
    size_t eq = text.find('=');
    if (eq == std::string::npos) continue;
    visit(lower(trim(text.substr(0, eq))), trim(text.substr(eq + 1)));
  }
}

}  // namespace

bool lum_family_has_rise_fall(const std::string& families_file, const std::string& family) {
  bool rise_fall = false;
  visit_family_section(families_file, family, [&](const std::string& key, const std::string& value) {
    if (key != "rise_fall") return;
    const std::string v = lower(value);
    rise_fall = v == "yes" || v == "1" || v == "true" || v == "on";
  });
  return rise_fall;
}

std::vector<std::string> lum_family_speed_grades(const std::string& families_file, const std::string& family) {
  std::vector<std::string> grades;
  visit_family_section(families_file, family, [&](const std::string& key, const std::string& value) {
    if (key == "speed_grade" && !value.empty()) grades.push_back(value);
  });
  return grades;
}

namespace {
const char* const RECENT_KEY = "RecentProjectList";
std::string recent_name(int index) { return "File" + std::to_string(index + 1); }
}  // namespace

void LUM_RECENT_PROJECTS::load() {
  m_entries.clear();
  CFG_REGISTRY_KEY key(RECENT_KEY);
  for (int i = 0; i < MAX_ENTRIES; ++i) {
    std::string entry = key.get_string(recent_name(i));
    if (!entry.empty()) m_entries.push_back(entry);
  }
}

void LUM_RECENT_PROJECTS::save() const {
  CFG_REGISTRY_KEY key(RECENT_KEY);
  for (int i = 0; i < MAX_ENTRIES; ++i) {
    if (i < static_cast<int>(m_entries.size())) key.set_string(recent_name(i), m_entries[i]);
    else key.remove(recent_name(i));
  }
}

void LUM_RECENT_PROJECTS::add(const std::string& path) {
  if (path.empty()) return;
  m_entries.erase(std::remove(m_entries.begin(), m_entries.end(), path), m_entries.end());
  m_entries.insert(m_entries.begin(), path);
  if (m_entries.size() > static_cast<size_t>(MAX_ENTRIES)) m_entries.resize(MAX_ENTRIES);
}

std::string LUM_RECENT_PROJECTS::at(int index) const {
  if (index < 0 || index >= static_cast<int>(m_entries.size())) return {};
  return m_entries[index];
}

std::string lum_project_database_problem(const std::string& vpf_path, const std::string& revision) {
  const std::string file = rdb_report_file_path(lum_path_directory(vpf_path), revision, RDB_TIMING_REPORT);
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return std::string();
  try {
    RDB_REPORT::open(file);
  } catch (const RDB_ERROR& e) {
    if (e.get_reason().rfind("the file is locked", 0) == 0) return std::string();
    return e.get_reason();
  }
  return std::string();
}

bool lum_remove_project_database(const std::string& vpf_path, const std::string& revision) {
  const std::string file = rdb_report_file_path(lum_path_directory(vpf_path), revision, RDB_TIMING_REPORT);
  bool all_gone = true;
  for (const std::string& name : {file, file + "-wal", file + "-shm"}) {
    std::error_code error;
    std::filesystem::remove(name, error);
    if (std::filesystem::exists(name, error)) all_gone = false;
  }
  return all_gone;
}
