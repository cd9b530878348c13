// The layout of a timing-path report (report_timing), streamed path by path.
//
// In the database the panel is a folder:
//   <panel>
//     Summary of Paths      table: Slack, From Node, To Node, Launch Clock,
//                           Latch Clock, Relationship, Clock Skew, Data Delay
//     Path 1 .. Path N      path objects (unless summary only), each with
//       Path Summary        headerless table of (property, value)
//       Path Delay Stats    chart: cell delay and interconnect delay
//       Data Arrival Path   Total, Incr, RF, Type, Fanout, Location, Element
//       Data Required Path  the same columns
// A report of several analyses puts that layout into one folder per analysis
// ("Setup", "Hold", "Recovery", "Removal") of the panel.
// The text form prints the summary table first, then each path.
//
// Paths are written as they are found so that ten thousand paths never sit
// in memory at once (only the text form buffers its path details).
#pragma once

#include "reports/ReportRecords.hh"
#include "reports/ReportTable.hh"

#include <array>
#include <functional>
#include <iosfwd>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>

class RDB_PANEL_WRITER;
class RDB_TABLE_WRITER;

namespace vexa {

struct PathPanelOptions
{
  bool summary_only = false;
  // Show interconnect rows (load pins) in the point tables.
  bool show_routing = false;
  std::string time_unit = "ns";
  // The folder of the panel that holds the paths: "" for the panel itself,
  // "Hold" when a report of several analyses gives each its own folder.
  std::string folder;
};

// Names of the objects of the panel.
inline constexpr const char *paths_summary_name = "Summary of Paths";
std::string path_object_name(size_t index);  // "Path 1", ...

class PathPanelWriter
{
public:
  // Either output may be null.
  PathPanelWriter(RDB_PANEL_WRITER *panel, std::ostream *text, PathPanelOptions options);
  ~PathPanelWriter();
  void add(const TimingPathRecord &path);
  // Writes the buffered text; call once after the last path.
  void finish();
  size_t count() const { return m_count; }

private:
  void add_text(const TimingPathRecord &path);
  void add_database(const TimingPathRecord &path);
  // Where an object of the panel goes, inside the folder of the options.
  std::string where(const std::string &name) const;

  RDB_PANEL_WRITER *m_panel;
  std::ostream *m_text;
  PathPanelOptions m_options;
  std::unique_ptr<RDB_TABLE_WRITER> m_summary;
  std::string m_chart_axis;  // "Delay (ps)"
  ReportTable m_summary_text;
  std::ostringstream m_details;
  size_t m_count = 0;
};

// Hands paths to a PathPanelWriter that writes them on a thread of its own,
// so that the rows of one path are encoded while the next paths are laid
// out (in a large report the two take about as long). The writer must be
// used by nothing else until finish() has returned. add() waits while many
// paths are queued; finish() waits until every path is written and throws
// what the writer threw (the first failure stops the writing; later add()s
// then throw it at once). Dropped unfinished, it stops its thread and
// discards what is queued.
class PathPanelPipeline
{
public:
  explicit PathPanelPipeline(PathPanelWriter &writer);
  ~PathPanelPipeline();
  PathPanelPipeline(const PathPanelPipeline &) = delete;
  PathPanelPipeline &operator=(const PathPanelPipeline &) = delete;
  void add(TimingPathRecord &&path);
  void finish();
  // Seconds the thread spent writing (known after finish()).
  double writing_seconds() const { return m_writing_seconds; }

private:
  struct State;
  void run();
  void stop();

  PathPanelWriter &m_writer;
  std::unique_ptr<State> m_state;
  double m_writing_seconds = 0;
};

// The summary-table cells of one path (shared by both forms, and tested).
std::vector<std::string> path_summary_cells(const TimingPathRecord &path);
// The point-table rows of one side of a path; without routing the
// interconnect rows are folded into the next row.
std::vector<std::vector<std::string>> path_point_rows(const std::vector<PathPointRecord> &points,
                                                      bool show_routing);
// The same rows handed over one at a time, as views valid during the call.
using PointCells = std::array<std::string_view, 7>;
void visit_point_rows(const std::vector<PathPointRecord> &points, bool show_routing,
                      const std::function<void(const PointCells &)> &visit);
extern const std::vector<std::string> path_summary_columns;
extern const std::vector<std::string> path_point_columns;

} // namespace vexa
