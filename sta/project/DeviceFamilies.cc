#include "project/DeviceFamilies.hh"

#include "project/KeyValueFile.hh"

#include <filesystem>
#include <strings.h>

namespace vexa {

const SpeedGrade *DeviceFamily::find_grade(const std::string &grade) const
{
  for (const SpeedGrade &g : grades)
    if (g.name == grade)
      return &g;
  return nullptr;
}

const DeviceFamily *DeviceFamilies::find(const std::string &family) const
{
  for (const DeviceFamily &f : m_families)
    if (strcasecmp(f.name.c_str(), family.c_str()) == 0)
      return &f;
  return nullptr;
}

bool DeviceFamilies::load(const std::string &path, std::string &error)
{
  KeyValueFile file;
  if (!read_key_value_file(path, true, file, error))
    return false;
  std::string dir = std::filesystem::path(path).parent_path().string();
  std::vector<DeviceFamily> families;
  for (const KeyValueEntry &e : file.entries) {
    if (e.section.empty()) {
      error = located_error(path, e.line, "\"" + e.key + "\" before the first [FAMILY] section");
      return false;
    }
    if (families.empty() || families.back().name != e.section) {
      for (const DeviceFamily &f : families)
        if (f.name == e.section) {
          error = located_error(path, e.line, "family \"" + e.section + "\" appears twice");
          return false;
        }
      families.push_back(DeviceFamily{e.section, false, {}});
    }
    DeviceFamily &family = families.back();
    if (e.key == "rise_fall") {
      if (e.value != "yes" && e.value != "no") {
        error = located_error(path, e.line, "rise_fall must be \"yes\" or \"no\"");
        return false;
      }
      family.rise_fall = e.value == "yes";
    } else if (e.key == "speed_grade") {
      if (e.value.empty() || family.find_grade(e.value)) {
        error = located_error(path, e.line, "empty or repeated speed grade \"" + e.value + "\"");
        return false;
      }
      family.grades.push_back(SpeedGrade{e.value, "", ""});
    } else if (e.key == "slow_liberty" || e.key == "fast_liberty") {
      if (family.grades.empty()) {
        error = located_error(path, e.line, "\"" + e.key + "\" before any speed_grade");
        return false;
      }
      SpeedGrade &grade = family.grades.back();
      (e.key == "slow_liberty" ? grade.slow_liberty : grade.fast_liberty)
        = resolve_path(dir, e.value);
    } else {
      error = located_error(path, e.line, "unknown key \"" + e.key + "\"");
      return false;
    }
  }
  for (const DeviceFamily &f : families)
    for (const SpeedGrade &g : f.grades)
      if (g.slow_liberty.empty() || g.fast_liberty.empty()) {
        error = path + ": speed grade \"" + g.name + "\" of family \"" + f.name
              + "\" needs both slow_liberty and fast_liberty";
        return false;
      }
  m_families = std::move(families);
  return true;
}

} // namespace vexa
