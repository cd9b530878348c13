// The device-family data file (misc/device_families.txt): the families the
// engine knows, their traits and their speed grades, each grade with the
// Liberty file of its slow and of its fast delay model.
#pragma once

#include <string>
#include <vector>

namespace vexa {

struct SpeedGrade
{
  std::string name;           // e.g. "035"
  std::string slow_liberty;   // absolute paths
  std::string fast_liberty;
};

struct DeviceFamily
{
  std::string name;               // e.g. "OSU"
  bool rise_fall = false;         // the family supports rise/fall netlists
  std::vector<SpeedGrade> grades; // in file order
  const SpeedGrade *find_grade(const std::string &grade) const;
};

class DeviceFamilies
{
public:
  // Reads the file; false with "FILE:LINE: reason" in error.
  bool load(const std::string &path, std::string &error);
  // Case-insensitive lookup by family name; nullptr when unknown.
  const DeviceFamily *find(const std::string &family) const;
  const std::vector<DeviceFamily> &families() const { return m_families; }

private:
  std::vector<DeviceFamily> m_families;
};

} // namespace vexa
