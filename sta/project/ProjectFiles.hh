// Project files: the project file "<name>.vpf" and the revision settings
// files "<revision>.vsf" (formats in docs/project-files.md).
//
// Parsing checks the syntax and the keys only; whether the family, the
// speed grade and the files exist is checked when a project is opened, so
// that each fault names the file and line it came from.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vexa {

struct ProjectFile
{
  std::string path;                     // absolute path of the .vpf
  std::string directory;                // its directory
  std::string name;                     // project_name, or the file's base name
  std::vector<std::string> revisions;   // in file order; the first is the default
};

// clock_requirement = NAME PORT PERIOD [RISE FALL]
struct ClockRequirement
{
  int line = 0;
  std::string name;
  std::string port;
  double period = 0.0;
  std::optional<double> rise;
  std::optional<double> fall;
};

struct RevisionSettings
{
  std::string path;                        // absolute path of the .vsf
  std::string top_module;
  std::string family;
  int family_line = 0;
  std::string speed_grade;
  int speed_grade_line = 0;
  std::vector<std::string> verilog_files;  // absolute
  std::vector<int> verilog_lines;
  std::string spef_file;                   // absolute or ""
  std::string sdf_file;                    // absolute or ""
  std::vector<std::string> sdc_files;      // absolute
  std::vector<ClockRequirement> clock_requirements;
};

// Both return false with "FILE:LINE: reason" (or "FILE: reason") in error.
bool read_project_file(const std::string &path, ProjectFile &out, std::string &error);
bool read_revision_settings(const std::string &path, RevisionSettings &out, std::string &error);

// Path of the settings file of revision in project's directory.
std::string revision_settings_path(const ProjectFile &project, const std::string &revision);

// The revision's clock requirements as SDC create_clock commands, one a line.
std::string clock_requirements_sdc(const RevisionSettings &settings);

} // namespace vexa
