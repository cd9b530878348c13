#include "ReportTestEngine.hh"

#include "Engine.hh"
#include "reports/ReportOutput.hh"

#include <gtest/gtest.h>
#include <tcl.h>

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace fs = std::filesystem;

namespace vexa::test {

ReportTestEngine::ReportTestEngine()
    : m_engine(std::make_unique<Engine>(OutputMode::plain, CHRONEL_MISC_DIR))
{
  std::string error;
  if (!m_engine->start(error))
    ADD_FAILURE() << "engine start failed: " << error;
}

ReportTestEngine &ReportTestEngine::with_design(const std::string &design,
                                                const std::string &constraints)
{
  static ReportTestEngine *instance = new ReportTestEngine;
  if (instance->m_design != design || instance->m_constraints != constraints)
    instance->open_design(design, constraints);
  return *instance;
}

void ReportTestEngine::open_design(const std::string &design, const std::string &constraints)
{
  if (!m_design.empty())
    must("project_close");
  fs::path source = fs::path(CHRONEL_EXAMPLES_DIR) / design;
  fs::path target = fs::temp_directory_path() /
                    ("chronel_reports_" + std::to_string(getpid()) + "_" + design);
  // The previous design's copy goes, and the last one when the tests end.
  static std::string created;
  if (!created.empty() && created != target.string())
    fs::remove_all(created);
  if (created.empty())
    std::atexit([] {
      std::error_code ignored;
      fs::remove_all(created, ignored);
    });
  created = target.string();
  fs::remove_all(target);
  fs::create_directories(target);
  for (const fs::directory_entry &entry : fs::directory_iterator(source)) {
    std::string name = entry.path().filename().string();
    if (name == "vexa_db" || name == "rtl")
      continue;
    fs::copy(entry.path(), target / name, fs::copy_options::recursive);
  }
  m_dir = target.string();
  m_design = design;
  m_constraints = constraints;
  must("project_open " + (target / (design + ".vpf")).string());
  must("create_timing_netlist");
  must("read_sdc");
  if (!constraints.empty())
    must(constraints);
  must("update_timing_netlist");
}

CommandResult ReportTestEngine::run(const std::string &command)
{
  CommandResult result;
  result.code = m_engine->eval(command);
  result.result = Tcl_GetStringResult(m_engine->interp());
  Tcl_ResetResult(m_engine->interp());
  return result;
}

void ReportTestEngine::must(const std::string &command)
{
  CommandResult result = run(command);
  ASSERT_TRUE(result.ok()) << command << ": " << result.result;
}

std::string ReportTestEngine::database_file() const
{
  return report_database_file(*m_engine);
}

std::unique_ptr<RDB_REPORT> ReportTestEngine::open_report() const
{
  if (!fs::exists(database_file()))
    return nullptr;
  return RDB_REPORT::open(database_file());
}

std::string ReportTestEngine::netlist_file() const
{
  return m_dir + "/netlist/" + m_design + ".v";
}

std::string ReportTestEngine::sdc_file() const
{
  return m_dir + "/" + m_design + ".sdc";
}

} // namespace vexa::test
