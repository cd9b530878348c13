// A tiny project in a temporary directory for the engine tests: a
// hand-written OSU035 gate netlist of two registers, a bus output whose bit
// names carry brackets, and two revisions.
#pragma once

#include <string>

namespace vexa::test {

class TestProject
{
public:
  TestProject();
  ~TestProject();
  const std::string &dir() const { return m_dir; }
  std::string path(const std::string &name) const { return m_dir + "/" + name; }
  std::string vpf() const { return path("chip.vpf"); }
  // Writes (replaces) a file of the project.
  void write(const std::string &name, const std::string &text) const;

private:
  std::string m_dir;
};

} // namespace vexa::test
