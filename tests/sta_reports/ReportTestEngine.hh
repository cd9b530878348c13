// An engine inside the test process with one example design open, for the
// report tests. OpenSTA's Tcl commands reach the analysis through a global,
// so a process holds one engine; switching designs closes the project and
// opens the other. Each example is copied into a temporary directory first,
// so report databases never land in the source tree.
#pragma once

#include "rdb/rdb_report.hh"

#include <memory>
#include <string>

namespace vexa {
class Engine;
}

namespace vexa::test {

struct CommandResult
{
  int code = 0;          // TCL_OK or TCL_ERROR
  std::string result;    // the interpreter result (the error message)
  bool ok() const { return code == 0; }
};

class ReportTestEngine
{
public:
  // The process's engine with `design` ("datapath", "twoclocks", "resets")
  // open, its netlist created, its constraints read and timing up to date.
  // `constraints` are SDC commands applied after the design's own file (the
  // same commands run_sta-style comparisons must apply as well).
  static ReportTestEngine &with_design(const std::string &design,
                                       const std::string &constraints = "");

  CommandResult run(const std::string &command);
  // Runs and fails the current test when the command fails.
  void must(const std::string &command);
  Engine &engine() { return *m_engine; }
  const std::string &project_dir() const { return m_dir; }
  // The revision's timing report database, opened afresh (null when absent).
  std::unique_ptr<RDB_REPORT> open_report() const;
  std::string database_file() const;
  // The example's netlist and SDC files, for running Debian's sta on them.
  std::string netlist_file() const;
  std::string sdc_file() const;
  const std::string &design() const { return m_design; }

private:
  ReportTestEngine();
  void open_design(const std::string &design, const std::string &constraints);
  std::unique_ptr<Engine> m_engine;
  std::string m_design;
  std::string m_constraints;
  std::string m_dir;
};

} // namespace vexa::test
