// Where a report goes: a panel of the report database, a text file, the
// console, or several of them.
//
// The rules of every report command: with -panel_name (or a command's own
// default panel) the panel is written and the front end is called back with
// lum_reload_sta_report -open_panel; with -file the text goes to the file
// (-append adds to it); the console gets the text with -stdout, or when the
// report goes nowhere else. Everything that can be checked is checked when
// the ReportOutput is made, before any work: a missing or out-of-date
// netlist, a panel name the database cannot take, a file that cannot be
// written. The panel itself is written in one transaction, so a failure
// while writing leaves the database as it was.
//
// Panels made before the timing last changed are marked out of date (and
// keep the command that made them, for regeneration) as soon as the timing
// is brought up to date again (update_timing_netlist), and at the latest
// when the next panel is written or deleted.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>

class RDB_PANEL_WRITER;

namespace vexa {

class Engine;
class ReportArgs;

// The timing report database of the open project's revision.
std::string report_database_file(const Engine &engine);

// Throws ReportError for a name that is empty or holds '"' or "||".
void check_panel_name(const std::string &name);

// Marks every panel out of date when the timing changed since the last
// panel was written (Engine::reports_may_be_stale), once.
void mark_stale_panels(Engine &engine);

class ReportOutput
{
public:
  ReportOutput(Engine &engine, const ReportArgs &args, std::string default_panel = "");

  const std::string &panel_name() const { return m_panel; }
  bool to_console() const { return m_console; }
  // Whether any text (file or console) is written.
  bool has_text() const { return m_console || !m_file.empty(); }

  void write(const std::function<void(RDB_PANEL_WRITER &)> &panel_content,
             const std::function<void(std::ostream &)> &text_content);

private:
  Engine &m_engine;
  std::string m_command_line;
  std::string m_panel;
  std::string m_file;
  bool m_append = false;
  bool m_console = false;
};

} // namespace vexa
