#include "sdc/ConstraintRecord.hh"

#include <cerrno>
#include <cstring>
#include <fstream>

namespace vexa {

bool ConstraintRecord::write(const std::string &path, const std::string &design,
                             std::string &error) const
{
  std::ofstream out(path, std::ios::trunc);
  if (!out) {
    error = "cannot write \"" + path + "\": " + std::strerror(errno);
    return false;
  }
  out << "# SDC constraints written by vexa_sta";
  if (!design.empty())
    out << " for design " << design;
  out << "\n";
  for (const std::string &line : m_lines)
    out << line << "\n";
  out.flush();
  if (!out) {
    error = "error while writing \"" + path + "\"";
    return false;
  }
  return true;
}

} // namespace vexa
