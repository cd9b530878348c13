// The front end's own project services, standing in for the design suite's
// project manager: what a project file (.vpf) and a revision settings file
// (.vsf) say, the rules by which a file the user picked becomes a project and
// revision to open, the creation of a project file for a lone revision, the
// device-family traits and the list of recent projects. All of it works on
// plain files and strings, without windows.
#pragma once

#include <string>
#include <vector>

extern const char* const LUM_PROJECT_EXTENSION;   // "vpf"
extern const char* const LUM_REVISION_EXTENSION;  // "vsf"

// One "key = value" line of a project or settings file, with its line number.
struct LUM_PROJECT_SETTING {
  std::string key;
  std::string value;
  int line = 0;
};

// Reads a project or settings file: blank lines and lines starting with "#"
// are skipped, keys are lower-cased, values trimmed and unquoted when written
// in double quotation marks. False when the file cannot be read.
bool lum_read_setting_lines(const std::string& path, std::vector<LUM_PROJECT_SETTING>* settings);

struct LUM_PROJECT_FILE {
  std::string project_name;
  std::vector<std::string> revisions;  // the first is the default revision
};
bool lum_read_project_file(const std::string& vpf_path, LUM_PROJECT_FILE* project);

struct LUM_REVISION_SETTINGS {
  std::string top_module;
  std::string family;
  std::string speed_grade;
  std::vector<std::string> verilog_files;  // absolute (relative ones resolved against the file's folder)
};
bool lum_read_revision_settings(const std::string& vsf_path, LUM_REVISION_SETTINGS* settings);

// Path helpers: extension without the dot (empty when none), base name without
// folder and extension, folder with trailing "/", replacement of the extension.
std::string lum_path_extension(const std::string& path);
std::string lum_path_base_name(const std::string& path);
std::string lum_path_directory(const std::string& path);
std::string lum_path_with_extension(const std::string& path, const std::string& extension);
std::string lum_absolute_path(const std::string& path);

// How a picked file becomes the project to open.
struct LUM_PROJECT_OPEN_PLAN {
  std::string project_path;  // full path of the .vpf to open
  std::string revision;      // revision to open; never empty in a usable plan
  // The project file must be made first, listing only this revision.
  bool create_project_file = false;
  // When not empty, the plan cannot be carried out: a catalogue entry and the
  // text to insert in it (a full path).
  const char* error_entry = nullptr;
  std::string error_insert;
  // Debug lines written while deciding (for the debug channel).
  std::vector<std::string> debug_lines;
};

// The standalone rules: a path without extension gets ".vpf"; a project file
// opens its first revision; a settings file opens its own revision, in the
// project file of the same base name, which is created when missing. Checks
// that the project file, the revision's settings file and its netlist files
// exist, so that bad input is reported before anything reaches the engine.
LUM_PROJECT_OPEN_PLAN lum_plan_project_open(const std::string& picked_path);

// Writes a project file naming one revision ("project_name" and "revision"
// both the revision). False when the file cannot be written.
bool lum_create_project_file_for_revision(const std::string& vpf_path, const std::string& revision);

// Whether a device family of the families file models rise and fall delays
// apart ("rise_fall = yes" in its section). Unknown families have no traits.
bool lum_family_has_rise_fall(const std::string& families_file, const std::string& family);
// The speed grades of a device family, in the order of the families file
// (empty for an unknown family).
std::vector<std::string> lum_family_speed_grades(const std::string& families_file, const std::string& family);

// Whether the revision's timing report database can be used by this program:
// an empty reason when there is none yet or it reads (older schemas are
// upgraded in place by the engine), else why not: not a report database,
// written by a newer version, damaged. A file locked by another process counts
// as usable (it is not this file's fault).
std::string lum_project_database_problem(const std::string& vpf_path, const std::string& revision);
// Removes that database (and SQLite's -wal and -shm files beside it) so that
// the engine writes a new one. False when a file stays.
bool lum_remove_project_database(const std::string& vpf_path, const std::string& revision);

// Catalogue entries of the project checks.
extern const char* const LUM_MSG_PROJECT_NOT_FOUND;
extern const char* const LUM_MSG_PROJECT_HAS_NO_REVISION;
extern const char* const LUM_MSG_REVISION_NOT_FOUND;
extern const char* const LUM_MSG_NETLIST_NOT_FOUND;
extern const char* const LUM_MSG_CANT_CREATE_PROJECT;
extern const char* const LUM_MSG_PROJECT_INCOMPATIBLE;  // OK/Cancel
extern const char* const LUM_MSG_CANT_REPLACE_PROJECT_DATABASE;

// The most recently opened projects, newest first, at most sixteen (one per
// command of the recent-project range), kept in the per-user settings.
class LUM_RECENT_PROJECTS {
 public:
  static constexpr int MAX_ENTRIES = 16;
  void load();
  void save() const;
  // Puts path at the head, removing an equal entry further down.
  void add(const std::string& path);
  const std::vector<std::string>& entries() const { return m_entries; }
  // The entry at index, or empty when outside the list.
  std::string at(int index) const;

 private:
  std::vector<std::string> m_entries;
};
