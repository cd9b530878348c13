#include "reports/ReportOutput.hh"

#include "Engine.hh"
#include "protocol/Encoder.hh"
#include "reports/PathFinder.hh"
#include "reports/ReportArgs.hh"

#include "rdb/rdb_writer.hh"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vexa {

std::string report_database_file(const Engine &engine)
{
  return rdb_report_file_path(engine.project_dir(), engine.revision(), RDB_TIMING_REPORT);
}

void check_panel_name(const std::string &name)
{
  if (name.empty())
    throw ReportError("The panel name (-panel_name) may not be empty.");
  if (name.find('"') != std::string::npos || name.find("||") != std::string::npos)
    throw ReportError("The panel name \"" + name +
                      "\" may not hold double quotes or \"||\".");
}

void mark_stale_panels(Engine &engine)
{
  if (!engine.reports_may_be_stale() || engine.project() == nullptr)
    return;
  // No database yet means no panel to mark; none is created for this.
  std::string file = report_database_file(engine);
  if (std::filesystem::exists(file)) {
    RDB_WRITER writer(file, RDB_TIMING_REPORT);
    writer.set_all_panels_enabled(false);
  }
  engine.clear_reports_stale();
}

ReportOutput::ReportOutput(Engine &engine, const ReportArgs &args, std::string default_panel)
    : m_engine(engine), m_command_line(args.command_line())
{
  const std::string command = args.command();
  if (!engine.require_netlist(command.c_str()))
    throw ReportError(Tcl_GetStringResult(engine.interp()));
  if (!engine.state().netlist_is_up_to_date)
    throw ReportError(command + ": the timing netlist is out of date; run update_timing_netlist "
                                "first.");
  m_panel = args.has("-panel_name") ? args.value("-panel_name") : default_panel;
  if (args.has("-panel_name") || !m_panel.empty())
    check_panel_name(m_panel);
  if (args.has("-append") && !args.has("-file"))
    throw ReportError(command + ": -append needs -file (the text file to append to).");
  if (args.has("-file")) {
    m_file = args.value("-file");
    if (m_file.empty())
      throw ReportError(command + ": the file name (-file) may not be empty.");
    m_append = args.has("-append");
    // Opening for appending creates the file if need be and keeps what is
    // there, so a report that fails later has not emptied the file.
    std::ofstream probe(m_file, std::ios::app);
    if (!probe)
      throw ReportError(command + ": cannot write the file \"" + m_file + "\": " +
                        std::strerror(errno) + ".");
  }
  m_console = args.has("-stdout") || (m_panel.empty() && m_file.empty());
}

void ReportOutput::write(const std::function<void(RDB_PANEL_WRITER &)> &panel_content,
                         const std::function<void(std::ostream &)> &text_content)
{
  if (!m_panel.empty()) {
    mark_stale_panels(m_engine);
    RDB_WRITER writer(report_database_file(m_engine), RDB_TIMING_REPORT);
    RDB_PANEL_WRITER panel = writer.begin_panel(m_panel, m_command_line);
    panel_content(panel);
    panel.commit();
  }
  if (!m_file.empty()) {
    std::ofstream out(m_file, m_append ? std::ios::app : std::ios::trunc);
    text_content(out);
    out.flush();
    if (!out)
      throw ReportError("cannot write the file \"" + m_file + "\".");
  }
  if (m_console) {
    std::ostringstream text;
    text_content(text);
    m_engine.sink().write_text(text.str());
    m_engine.sink().flush_text();
  }
  if (!m_panel.empty())
    m_engine.callback("lum_reload_sta_report -open_panel " + quote_word(m_panel));
}

} // namespace vexa
