// The record of the constraints entered since the netlist was created: every
// SDC command that succeeded, typed or read from a file, in order, written
// with its object arguments as get_* commands so that write_sdc produces a
// file that reads back to the same constraints.
#pragma once

#include <string>
#include <vector>

namespace vexa {

class ConstraintRecord
{
public:
  void add(std::string command_line) { m_lines.push_back(std::move(command_line)); }
  void clear() { m_lines.clear(); }
  const std::vector<std::string> &lines() const { return m_lines; }
  // Writes a commented header and the record; false with a reason on failure.
  bool write(const std::string &path, const std::string &design, std::string &error) const;

private:
  std::vector<std::string> m_lines;
};

} // namespace vexa
