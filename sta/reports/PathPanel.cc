#include "reports/PathPanel.hh"

#include "rdb/rdb_writer.hh"
#include "shell/Interrupt.hh"

#include <charconv>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <ostream>
#include <string_view>
#include <thread>

namespace vexa {

const std::vector<std::string> path_summary_columns = {
  "Slack", "From Node", "To Node", "Launch Clock", "Latch Clock", "Relationship",
  "Clock Skew", "Data Delay"};

const std::vector<std::string> path_point_columns = {
  "Total", "Incr", "RF", "Type", "Fanout", "Location", "Element"};

std::string path_object_name(size_t index)
{
  return "Path " + std::to_string(index);
}

std::vector<std::string> path_summary_cells(const TimingPathRecord &path)
{
  return {format_time(path.slack), path.from_node, path.to_node, path.launch_clock,
          path.latch_clock, format_time(path.relationship), format_time(path.clock_skew),
          format_time(path.data_delay)};
}

void visit_point_rows(const std::vector<PathPointRecord> &points, bool show_routing,
                      const std::function<void(const PointCells &)> &visit)
{
  PointCells cells;
  TimeText total, incr;
  char fanout[16];
  // A folded interconnect row (a load pin of the data path followed by its
  // cell's output) passes its increment on to the row that follows. Clock
  // network rows are never folded: the launching clock pin must show.
  double pending = 0;
  for (size_t i = 0; i < points.size(); i++) {
    const PathPointRecord &point = points[i];
    bool next_is_cell = i + 1 < points.size() && (points[i + 1].type == "CELL" ||
                                                  points[i + 1].type == "uTco");
    if (!show_routing && point.type == "IC" && next_is_cell && !point.is_clock_path) {
      pending += point.incr;
      continue;
    }
    cells[0] = format_time(point.total, total);
    cells[1] = format_time(point.incr + pending, incr);
    pending = 0;
    cells[2] = point.rise_fall;
    cells[3] = point.type;
    if (point.fanout > 0) {
      auto [end, error] = std::to_chars(fanout, fanout + sizeof fanout, point.fanout);
      cells[4] = std::string_view(fanout, error == std::errc() ? end - fanout : 0);
    } else {
      cells[4] = {};
    }
    cells[5] = point.location;
    cells[6] = point.element;
    visit(cells);
  }
}

std::vector<std::vector<std::string>> path_point_rows(const std::vector<PathPointRecord> &points,
                                                      bool show_routing)
{
  std::vector<std::vector<std::string>> rows;
  visit_point_rows(points, show_routing, [&](const PointCells &cells) {
    rows.emplace_back(cells.begin(), cells.end());
  });
  return rows;
}

namespace {

// Delays are charted in thousandths of the time unit so that counts stay
// integers without losing the picoseconds of a nanosecond design.
std::string milli_unit(const std::string &unit)
{
  if (unit == "ns")
    return "ps";
  if (unit == "us")
    return "ns";
  if (unit == "ps")
    return "fs";
  return "1/1000 " + unit;
}

} // namespace

PathPanelWriter::PathPanelWriter(RDB_PANEL_WRITER *panel, std::ostream *text,
                                 PathPanelOptions options)
    : m_panel(panel), m_text(text), m_options(std::move(options))
{
  if (m_panel)
    m_summary = std::make_unique<RDB_TABLE_WRITER>(
      m_panel->add_table(where(paths_summary_name), RDB_KIND_TABLE, path_summary_columns));
  m_chart_axis = "Delay (" + milli_unit(m_options.time_unit) + ")";
  m_summary_text.title = paths_summary_name;
  m_summary_text.columns = path_summary_columns;
}

PathPanelWriter::~PathPanelWriter() = default;

std::string PathPanelWriter::where(const std::string &name) const
{
  return m_options.folder.empty() ? name : m_options.folder + "||" + name;
}

void PathPanelWriter::add(const TimingPathRecord &path)
{
  check_interrupt();
  ++m_count;
  if (m_panel)
    add_database(path);
  if (m_text)
    add_text(path);
}

// A large report writes ten thousand paths: the cells of each are handed
// over as views of a few local strings, not gathered into vectors first.
void PathPanelWriter::add_database(const TimingPathRecord &path)
{
  const std::string slack = format_time(path.slack), relationship = format_time(path.relationship),
                    skew = format_time(path.clock_skew), data_delay = format_time(path.data_delay);
  {
    const std::string_view cells[] = {slack, path.from_node, path.to_node, path.launch_clock,
                                      path.latch_clock, relationship, skew, data_delay};
    const RDB_CELL_COLOR violation{0, violation_color, RDB_NO_COLOR};
    m_summary->add_row(cells, std::size(cells), &violation, path.violated ? 1 : 0);
  }
  if (m_options.summary_only)
    return;
  const std::string path_where = where(path_object_name(m_count));
  m_panel->add_path(path_where, path.slack, path.violated);
  static const std::vector<std::string> property_columns = {"Property", "Value"};
  RDB_TABLE_WRITER summary =
    m_panel->add_path_table(path_where, RDB_PATH_PART::SUMMARY, property_columns,
                            RDB_KIND_HEADERLESS_TABLE);
  const std::string slack_text = path.violated ? slack + " (VIOLATED)" : slack;
  if (path.violated)
    summary.add_row({"Slack", slack_text}, {{1, violation_color, RDB_NO_COLOR}});
  else
    summary.add_row({"Slack", slack_text});
  summary.add_row({"From Node", path.from_node});
  summary.add_row({"To Node", path.to_node});
  summary.add_row({"Launch Clock", path.launch_clock});
  summary.add_row({"Latch Clock", path.latch_clock});
  summary.add_row({"Check", path.check});
  summary.add_row({"Data Arrival Time", format_time(path.arrival)});
  summary.add_row({"Data Required Time", format_time(path.required)});
  summary.add_row({"Relationship", relationship});
  summary.add_row({"Clock Skew", skew});
  summary.add_row({"Data Delay", data_delay});
  m_panel->add_path_chart(path_where, "Delay Type", m_chart_axis, 2,
                          {{"Cell Delay", std::llround(path.cell_delay * 1000)},
                           {"Interconnect Delay", std::llround(path.ic_delay * 1000)}});
  for (auto [part, points] : {std::make_pair(RDB_PATH_PART::ARRIVAL, &path.arrival_points),
                              std::make_pair(RDB_PATH_PART::REQUIRED, &path.required_points)}) {
    RDB_TABLE_WRITER table = m_panel->add_path_table(path_where, part, path_point_columns);
    visit_point_rows(*points, m_options.show_routing,
                     [&](const PointCells &cells) { table.add_row(cells.data(), cells.size()); });
  }
}

// Paths go over in batches, so that the threads meet once per batch rather
// than once per path; a few batches queued keep both busy through the bumps
// of either.
constexpr size_t pipeline_batch = 32;
constexpr size_t pipeline_batches = 4;

struct PathPanelPipeline::State
{
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<TimingPathRecord> filling;  // the producer's batch (its own)
  std::deque<std::vector<TimingPathRecord>> queue;
  bool closing = false;  // no more paths come
  bool busy = false;     // the thread is writing a batch
  std::exception_ptr failure;
  std::thread thread;
};

PathPanelPipeline::PathPanelPipeline(PathPanelWriter &writer)
    : m_writer(writer), m_state(std::make_unique<State>())
{
  m_state->thread = std::thread([this] { run(); });
}

PathPanelPipeline::~PathPanelPipeline()
{
  stop();
}

void PathPanelPipeline::run()
{
  State &state = *m_state;
  std::unique_lock<std::mutex> lock(state.mutex);
  for (;;) {
    state.changed.wait(lock, [&] { return state.closing || !state.queue.empty(); });
    if (state.queue.empty())
      return;
    std::vector<TimingPathRecord> batch = std::move(state.queue.front());
    state.queue.pop_front();
    state.busy = true;
    state.changed.notify_all();
    lock.unlock();
    const auto start = std::chrono::steady_clock::now();
    std::exception_ptr failure;
    try {
      for (const TimingPathRecord &path : batch)
        m_writer.add(path);
    } catch (...) {
      failure = std::current_exception();
    }
    batch.clear();
    m_writing_seconds +=
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    lock.lock();
    state.busy = false;
    if (failure) {
      state.failure = failure;
      state.queue.clear();
      state.closing = true;
    }
    state.changed.notify_all();
  }
}

void PathPanelPipeline::add(TimingPathRecord &&path)
{
  State &state = *m_state;
  state.filling.push_back(std::move(path));
  if (state.filling.size() < pipeline_batch)
    return;
  std::unique_lock<std::mutex> lock(state.mutex);
  state.changed.wait(lock,
                     [&] { return state.failure || state.queue.size() < pipeline_batches; });
  if (state.failure)
    std::rethrow_exception(state.failure);
  state.queue.push_back(std::move(state.filling));
  state.filling = {};
  state.filling.reserve(pipeline_batch);
  state.changed.notify_all();
}

void PathPanelPipeline::finish()
{
  State &state = *m_state;
  {
    std::unique_lock<std::mutex> lock(state.mutex);
    if (!state.filling.empty() && !state.failure) {
      state.queue.push_back(std::move(state.filling));
      state.filling = {};
      state.changed.notify_all();
    }
    state.changed.wait(lock, [&] { return state.failure || (state.queue.empty() && !state.busy); });
  }
  stop();
  if (state.failure)
    std::rethrow_exception(state.failure);
}

void PathPanelPipeline::stop()
{
  State &state = *m_state;
  {
    std::lock_guard<std::mutex> lock(state.mutex);
    state.closing = true;
    state.queue.clear();
  }
  state.changed.notify_all();
  if (state.thread.joinable())
    state.thread.join();
}

void PathPanelWriter::add_text(const TimingPathRecord &path)
{
  m_summary_text.add_row(path_summary_cells(path));
  if (m_options.summary_only)
    return;
  std::ostream &out = m_details;
  out << '\n' << path_object_name(m_count) << ": slack " << format_time(path.slack) << ' '
      << m_options.time_unit << (path.violated ? " (VIOLATED)" : " (MET)") << '\n';
  out << "  From " << path.from_node;
  if (!path.launch_clock.empty())
    out << " (" << path.launch_clock << ")";
  out << " to " << path.to_node;
  if (!path.latch_clock.empty())
    out << " (" << path.latch_clock << ")";
  out << ", " << path.check << " check\n";
  out << "  Data arrival time " << format_time(path.arrival) << ", data required time "
      << format_time(path.required) << ", relationship " << format_time(path.relationship)
      << ", clock skew " << format_time(path.clock_skew) << "\n\n";
  out << "Data Arrival Path\n";
  write_rows_text(out, path_point_columns, path_point_rows(path.arrival_points,
                                                           m_options.show_routing));
  out << "\nData Required Path\n";
  write_rows_text(out, path_point_columns, path_point_rows(path.required_points,
                                                           m_options.show_routing));
}

void PathPanelWriter::finish()
{
  if (!m_text)
    return;
  write_table_text(*m_text, m_summary_text);
  *m_text << m_details.str();
}

} // namespace vexa
