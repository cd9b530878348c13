#include "reports/PathFinder.hh"

#include "reports/NodeNames.hh"
#include "shell/Interrupt.hh"

#include "Machine.hh"
#include "Clock.hh"
#include "TimingArc.hh"
#include "SdcClass.hh"
#include "ClkInfo.hh"
#include "Corner.hh"
#include "ExceptionPath.hh"
#include "Genclks.hh"
#include "Graph.hh"
#include "Latches.hh"
#include "MinMax.hh"
#include "Network.hh"
#include "PathEnd.hh"
#include "PathRef.hh"
#include "PathVertex.hh"
#include "Sdc.hh"
#include "Search.hh"
#include "Sta.hh"
#include "TimingArc.hh"
#include "TimingRole.hh"
#include "Transition.hh"
#include "Units.hh"

#include <tcl.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>

namespace vexa {

const char *analysis_name(Analysis analysis)
{
  switch (analysis) {
  case Analysis::setup: return "setup";
  case Analysis::hold: return "hold";
  case Analysis::recovery: return "recovery";
  case Analysis::removal: return "removal";
  }
  return "setup";
}

const char *analysis_title(Analysis analysis)
{
  switch (analysis) {
  case Analysis::setup: return "Setup";
  case Analysis::hold: return "Hold";
  case Analysis::recovery: return "Recovery";
  case Analysis::removal: return "Removal";
  }
  return "Setup";
}

bool analysis_is_max(Analysis analysis)
{
  return analysis == Analysis::setup || analysis == Analysis::recovery;
}

TimeUnit::TimeUnit(const sta::Sta *sta)
{
  const sta::Unit *unit = sta->units()->timeUnit();
  double scale = unit->scale();
  if (scale > 0)
    m_scale = scale;
  static const struct { double scale; const char *name; } names[] = {
    {1.0, "s"}, {1e-3, "ms"}, {1e-6, "us"}, {1e-9, "ns"}, {1e-12, "ps"}, {1e-15, "fs"}};
  m_name = "";
  for (const auto &entry : names)
    if (std::fabs(m_scale / entry.scale - 1.0) < 1e-6)
      m_name = entry.name;
  if (m_name.empty())
    m_name = unit->suffix() ? unit->suffix() : "";
}

std::string pin_display_name(const sta::Sta *sta, const sta::Pin *pin)
{
  if (pin == nullptr)
    return "";
  return sta->sdcNetwork()->pathName(pin);
}

namespace {

// The path-end filter flags of findPathEnds for one analysis.
struct AnalysisFlags
{
  bool setup = false, hold = false, recovery = false, removal = false;
};

AnalysisFlags flags_for(Analysis analysis)
{
  AnalysisFlags flags;
  switch (analysis) {
  case Analysis::setup: flags.setup = true; break;
  case Analysis::hold: flags.hold = true; break;
  case Analysis::recovery: flags.recovery = true; break;
  case Analysis::removal: flags.removal = true; break;
  }
  return flags;
}

const sta::MinMaxAll *min_max_for(Analysis analysis)
{
  return analysis_is_max(analysis) ? sta::MinMaxAll::max() : sta::MinMaxAll::min();
}

// Path ends returned by findPathEnds belong to the search; only the
// sequence is ours.
struct PathEndList
{
  sta::PathEndSeq *ends = nullptr;
  ~PathEndList() { delete ends; }
};

// The path ends of a search, worst first when `sorted`, else in no
// particular order.
sta::PathEndSeq *find_ends(sta::Sta *sta, sta::ExceptionFrom *from, sta::ExceptionThruSeq *thrus,
                           sta::ExceptionTo *to, Analysis analysis, int group_count,
                           int endpoint_count, bool sorted, float slack_max,
                           float slack_min = -sta::INF)
{
  AnalysisFlags flags = flags_for(analysis);
  // OpenSTA sorts the ends of each path group (a stable sort by PathEndLess)
  // and, asked to sort by slack, sorts their concatenation once more with
  // the same comparison, working out both slacks of every pair again: for
  // thousands of ends that costs more than the rest of the search. A
  // stable merge of the groups' sorted runs gives the same order.
  sta::PathEndSeq *ends =
    sta->findPathEnds(from, thrus, to, false, nullptr, min_max_for(analysis), group_count,
                      endpoint_count, false, slack_min, slack_max, false, nullptr, flags.setup,
                      flags.hold, flags.recovery, flags.removal, false, false);
  if (sorted && ends->size() > 1) {
    sta::PathEndLess less(sta);
    std::vector<size_t> runs;  // where each run after the first begins
    for (size_t i = 1; i < ends->size(); i++)
      if (less((*ends)[i], (*ends)[i - 1]))
        runs.push_back(i);
    runs.push_back(ends->size());
    for (size_t k = 0; k + 1 < runs.size(); k++)
      std::inplace_merge(ends->begin(), ends->begin() + runs[k], ends->begin() + runs[k + 1],
                         less);
  }
  return ends;
}

// A group count large enough to return every end point of a group.
int all_endpoints_count(sta::Sta *sta)
{
  sta::Network *network = sta->network();
  if (network->topInstance() == nullptr)
    return 1;
  int count = 1;
  sta::LeafInstanceIterator *iter = network->leafInstanceIterator();
  while (iter->hasNext()) {
    sta::Instance *inst = iter->next();
    sta::InstancePinIterator *pins = network->pinIterator(inst);
    while (pins->hasNext()) {
      pins->next();
      count++;
    }
    delete pins;
  }
  delete iter;
  sta::InstancePinIterator *ports = network->pinIterator(network->topInstance());
  while (ports->hasNext()) {
    ports->next();
    count++;
  }
  delete ports;
  return count;
}

// The loads on the net a pin drives. The timing graph has one wire edge
// from a driver to each of its loads, and walking them is much cheaper than
// collecting the net's connected pins (which gathers them into a set).
int fanout_of(const sta::Sta *sta, const sta::Pin *pin)
{
  const sta::Network *network = sta->network();
  if (!network->isDriver(pin))
    return 0;
  const sta::Graph *graph = sta->graph();
  sta::Vertex *driver = graph ? graph->pinDrvrVertex(pin) : nullptr;
  int count = 0;
  if (driver != nullptr) {
    sta::VertexOutEdgeIterator edges(driver, graph);
    while (edges.hasNext())
      if (edges.next()->isWire())
        count++;
    return count;
  }
  sta::PinConnectedPinIterator *iter = network->connectedPinIterator(pin);
  while (iter->hasNext()) {
    sta::Pin *other = iter->next();
    if (other != pin && network->isLoad(other))
      count++;
  }
  delete iter;
  return count;
}

std::string location_of(const sta::Network *network, const sta::Pin *pin)
{
  if (network->isTopLevelPort(pin))
    return "port";
  const sta::Instance *inst = network->instance(pin);
  const char *cell = inst ? network->cellName(inst) : nullptr;
  return cell ? cell : "";
}

std::string_view rise_fall_of(const sta::TransRiseFall *tr)
{
  if (tr == sta::TransRiseFall::rise())
    return "R";
  if (tr == sta::TransRiseFall::fall())
    return "F";
  return "";
}

std::string edge_text(const sta::ClockEdge *edge)
{
  if (edge == nullptr)
    return "";
  return std::string("clock ") + edge->clock()->name() +
         (edge->transition() == sta::TransRiseFall::rise() ? " (rise edge)" : " (fall edge)");
}

// The arc kind of the step that reached a point.
std::string_view arc_type(const sta::TimingArc *arc)
{
  if (arc == nullptr)
    return "";
  const sta::TimingRole *role = arc->role();
  if (role->isWire())
    return "IC";
  if (role == sta::TimingRole::regClkToQ() || role == sta::TimingRole::latchEnToQ())
    return "uTco";
  if (role == sta::TimingRole::regSetClr())
    return "uTco";
  return "CELL";
}

// The name of the check row of a required table.
std::string check_row_text(const sta::PathEnd *end, const sta::StaState *sta)
{
  if (end->isOutputDelay())
    return "output external delay";
  if (end->isPathDelay())
    return end->minMax(sta) == sta::MinMax::max() ? "max delay" : "min delay";
  const sta::TimingRole *role = end->checkRole(sta);
  if (role == nullptr)
    return "check";
  if (role == sta::TimingRole::recovery())
    return "library recovery time";
  if (role == sta::TimingRole::removal())
    return "library removal time";
  const sta::TimingRole *generic = role->genericRole();
  if (generic == sta::TimingRole::setup())
    return "library setup time";
  if (generic == sta::TimingRole::hold())
    return "library hold time";
  return std::string("library ") + role->asString() + " time";
}

std::string check_name(const sta::PathEnd *end, const sta::StaState *sta)
{
  if (end->isOutputDelay())
    return end->minMax(sta) == sta::MinMax::max() ? "output setup" : "output hold";
  if (end->isPathDelay())
    return end->minMax(sta) == sta::MinMax::max() ? "max delay" : "min delay";
  const sta::TimingRole *role = end->checkRole(sta);
  return role ? role->asString() : "";
}

// The point name shown for a register start: its instance, like the
// "Startpoint:" line of a terminal report; ports keep their own name.
std::string start_node_name(const sta::Sta *sta, const sta::Pin *pin)
{
  sta::Network *network = sta->sdcNetwork();
  if (pin == nullptr)
    return "";
  if (network->isTopLevelPort(pin))
    return network->pathName(pin);
  return network->pathName(network->instance(pin));
}

void add_row(std::vector<PathPointRecord> &rows, double &last_total, double total,
             PathPointRecord row)
{
  row.total = total;
  row.incr = total - last_total;
  last_total = total;
  rows.push_back(std::move(row));
}

// The rows of a propagated clock network: the clock's source latency, then
// each point of `clock` (a clock path ending at a register's clock pin),
// preceded by the source paths of the generated clocks it starts from. The
// last point lands on `end_total`; the others keep their distance from it.
void add_clock_network(std::vector<PathPointRecord> &rows, double &last, ExpandedPath &clock,
                       double end_total, PathReportCache &cache, sta::Sta *sta,
                       const TimeUnit &unit)
{
  struct Point
  {
    sta::PathRef path;
    sta::TimingArc *arc;
    double arrival;  // seconds, in the frame of the last point
  };
  std::vector<Point> points;
  for (size_t i = 0; i < clock.size(); i++)
    points.push_back({*clock.path(i), i ? clock.prevArc(i) : nullptr, clock.arrival(i, sta)});
  // A generated clock's points start at its source pin; its master's path
  // to that pin goes first (and so on for a clock generated from another).
  for (int depth = 0; depth < 8 && !points.empty(); depth++) {
    sta::PathRef &root = points.front().path;
    const sta::Clock *clk = root.clock(sta);
    if (clk == nullptr || !clk->isGenerated())
      break;
    sta::PathVertex source;
    sta->search()->genclks()->srcPath(&root, source);
    // A master clock taken as ideal shows no network of its own.
    if (source.isNull() || source.clock(sta) == nullptr || !source.clock(sta)->isPropagated())
      break;
    ExpandedPath &master = cache.source_clock_path();
    master.expand(&source, cache.prev_paths(), sta);
    if (master.size() < 2)
      break;
    const double shift = points.front().arrival - master.path(master.size() - 1)->arrival(sta);
    points.front().arc = master.prevArc(master.size() - 1);
    std::vector<Point> before;
    for (size_t i = 0; i + 1 < master.size(); i++)
      before.push_back({*master.path(i), i ? master.prevArc(i) : nullptr,
                        master.path(i)->arrival(sta) + shift});
    points.insert(points.begin(), before.begin(), before.end());
  }
  if (points.empty())
    return;
  const double end_arrival = points.back().arrival;
  auto total_of = [&](const Point &point) {
    return end_total - unit.to_user(end_arrival - point.arrival);
  };
  PathPointRecord latency;
  latency.element = "clock source latency";
  latency.type = "clock";
  latency.is_clock_path = true;
  add_row(rows, last, total_of(points.front()), latency);
  for (const Point &point : points) {
    PathPointRecord row;
    const PathReportCache::PinInfo &info = cache.pin(point.path.pin(sta));
    row.rise_fall = rise_fall_of(point.path.transition(sta));
    row.fanout = info.fanout;
    row.type = arc_type(point.arc);
    row.element = info.name;
    row.location = info.location;
    row.is_clock_path = true;
    add_row(rows, last, total_of(point), row);
  }
}

} // namespace

PathReportCache::PathReportCache(const sta::Sta *sta, size_t expected_points)
    : m_sta(sta), m_texts(std::make_shared<Texts>()), m_prev_paths(sta, expected_points)
{
}

PathReportCache::~PathReportCache() = default;

PathReportCache::PinInfo PathReportCache::make_info(const sta::Pin *pin) const
{
  PinInfo info;
  info.name = pin_display_name(m_sta, pin);
  info.location = location_of(m_sta->sdcNetwork(), pin);
  info.fanout = fanout_of(m_sta, pin);
  return info;
}

std::uint32_t PathReportCache::pin_entry(const sta::Pin *pin)
{
  std::deque<PinInfo> &pins = m_texts->pins;
  sta::Graph *graph = m_sta->graph();
  const sta::VertexId id = graph ? m_sta->network()->vertexId(pin) : 0;
  if (id != 0) {
    if (m_pin_by_vertex.empty())
      m_pin_by_vertex = ZeroedArray<std::uint32_t>(static_cast<size_t>(graph->vertexCount()) + 1);
    if (id < m_pin_by_vertex.size()) {
      std::uint32_t &slot = m_pin_by_vertex[id];
      if (slot == 0) {
        pins.push_back(make_info(pin));
        slot = static_cast<std::uint32_t>(pins.size());
      }
      return slot - 1;
    }
  }
  auto [it, fresh] = m_pins_without_vertex.try_emplace(pin, pins.size());
  if (fresh)
    pins.push_back(make_info(pin));
  return static_cast<std::uint32_t>(it->second);
}

const PathReportCache::PinInfo &PathReportCache::pin(const sta::Pin *pin)
{
  return m_texts->pins[pin_entry(pin)];
}

const PathReportCache::PinInfo &PathReportCache::point_pin(ExpandedPath &path, size_t index)
{
  const std::uint32_t node = path.node(index);
  if (node == PrevPathCache::no_node)
    return pin(path.path(index)->pin(m_sta));
  std::uint32_t &entry = m_prev_paths.node(node).pin_entry;
  if (entry == 0)
    entry = pin_entry(path.path(index)->pin(m_sta)) + 1;
  return m_texts->pins[entry - 1];
}

std::string_view PathReportCache::text(std::string_view text)
{
  return *m_texts->texts.emplace(text).first;
}

TimingPathRecord make_path_record(sta::Sta *sta, sta::PathEnd *end, Analysis analysis,
                                  bool with_points, PathReportCache *shared_cache, bool with_routing)
{
  std::optional<PathReportCache> own_cache;
  if (shared_cache == nullptr)
    own_cache.emplace(sta);
  PathReportCache &cache = shared_cache ? *shared_cache : *own_cache;
  TimeUnit unit(sta);
  TimingPathRecord record;
  record.texts = cache.texts();
  record.analysis = analysis;
  record.slack = unit.to_user(end->slack(sta));
  record.arrival = unit.to_user(end->dataArrivalTimeOffset(sta));
  record.required = unit.to_user(end->requiredTimeOffset(sta));
  record.violated = record.slack < 0;
  record.check = check_name(end, sta);

  ExpandedPath &expanded = cache.data_path();
  expanded.expand(end->path(), cache.prev_paths(), sta);
  const sta::Pin *end_pin = end->path()->pin(sta);
  record.to_node = pin_display_name(sta, end_pin);
  sta::PathRef *start = expanded.startPath();
  record.from_node = start_node_name(sta, start ? start->pin(sta) : nullptr);

  const sta::ClockEdge *src_edge = end->sourceClkEdge(sta);
  const sta::Clock *tgt_clk = end->targetClk(sta);
  record.launch_clock = src_edge ? src_edge->clock()->name() : "";
  record.latch_clock = tgt_clk ? tgt_clk->name() : "";

  const double src_offset = end->sourceClkOffset(sta);
  const double src_edge_time = (src_edge ? src_edge->time() : 0.0) + src_offset;
  const sta::ClockEdge *tgt_edge = end->targetClkEdge(sta);
  // The capture edge as the required table starts: multicycles included.
  const double tgt_base =
    tgt_edge ? end->targetClkTime(sta) + src_offset + end->targetClkMcpAdjustment(sta) : 0.0;
  const double tgt_latency = tgt_edge ? end->targetClkDelay(sta) : 0.0;
  if (src_edge && tgt_edge)
    record.relationship = unit.to_user(tgt_base - src_edge_time);

  // The launch: a register's clock pin (the last clock point before the
  // data), a transparent latch's enable pin (reached through its own clock
  // path), or an input port.
  size_t launch_index = 0;
  for (size_t i = 0; i < expanded.size(); i++)
    if (expanded.path(i)->isClock(sta))
      launch_index = i;
  const size_t start_index = expanded.startIndex();
  if (start_index < launch_index)
    launch_index = start_index;
  sta::Edge *latch_edge = expanded.latchDataEdge();
  ExpandedPath &launch_clock_path = cache.launch_clock_path();
  launch_clock_path.clear();
  if (src_edge && latch_edge != nullptr && expanded.size() > 1) {
    sta::PathVertex enable;
    sta->latches()->latchEnablePath(expanded.path(1), latch_edge, enable);
    if (!enable.isNull())
      launch_clock_path.expand(&enable, cache.prev_paths(), sta);
    launch_index = 0;
  } else if (src_edge && expanded.path(launch_index)->isClock(sta)) {
    launch_clock_path.assign_prefix(expanded, launch_index + 1);
  }
  const bool from_port = launch_clock_path.size() == 0;
  // A path may start on a clock network pin itself (a generated clock's
  // source register output feeding logic): that pin launches it.
  const bool from_clock_pin =
    !from_port && latch_edge == nullptr && start_index == launch_index;
  if (from_clock_pin)
    record.from_node = pin_display_name(sta, expanded.path(launch_index)->pin(sta));
  const sta::ClkInfo *launch_info =
    from_port ? expanded.path(launch_index)->clkInfo(sta)
              : launch_clock_path.path(launch_clock_path.size() - 1)->clkInfo(sta);
  const bool launch_propagated = launch_info && launch_info->isPropagated();
  // Where the launch clock arrives: at the clock pin, or (for an input
  // port) the clock's latency the input delay is counted from.
  double launch_clock_time = src_edge_time;
  if (src_edge && launch_info) {
    if (!from_port && launch_propagated)
      launch_clock_time =
        launch_clock_path.arrival(launch_clock_path.size() - 1, sta) + src_offset;
    else
      launch_clock_time = src_edge_time + launch_info->insertion() + launch_info->latency();
  }
  if (src_edge && tgt_edge)
    record.clock_skew = unit.to_user(tgt_latency - (launch_clock_time - src_edge_time));
  // The data delay is counted from the clock pin, or from the input port.
  const double launch_time =
    from_port ? expanded.arrival(launch_index, sta) + src_offset : launch_clock_time;
  record.data_delay = unit.to_user(end->dataArrivalTimeOffset(sta) - launch_time);

  // Without points (a summary) neither the tables nor the cell/interconnect
  // split, which is taken from the arrival rows, are shown.
  if (!with_points)
    return record;
  std::vector<PathPointRecord> &arrival_rows = record.arrival_points;
  arrival_rows.clear();
  arrival_rows.reserve(expanded.size() + launch_clock_path.size() + 4);

  auto pin_row = [&](const PathReportCache::PinInfo &info, sta::PathRef *path,
                     sta::TimingArc *arc, bool clock_path) {
    PathPointRecord row;
    row.rise_fall = rise_fall_of(path->transition(sta));
    row.fanout = info.fanout;
    row.type = arc_type(arc);
    row.element = info.name;
    row.location = info.location;
    row.is_clock_path = clock_path;
    return row;
  };
  // A point of a laid-out path; its pin is known from the cache's node.
  auto point_row = [&](ExpandedPath &path, size_t index, sta::TimingArc *arc, bool clock_path) {
    return pin_row(cache.point_pin(path, index), path.path(index), arc, clock_path);
  };
  auto clock_row = [](std::string_view text) {
    PathPointRecord row;
    row.element = text;
    row.type = "clock";
    row.is_clock_path = true;
    return row;
  };

  // Data arrival: launch edge, clock network, data path.
  size_t launch_row = 0;
  {
    std::vector<PathPointRecord> &rows = arrival_rows;
    double last = 0;
    double folded_wires = 0;
    size_t first_data = 0;
    if (src_edge) {
      add_row(rows, last, unit.to_user(src_edge_time), clock_row(cache.text(edge_text(src_edge))));
      if (from_port) {
        add_row(rows, last, unit.to_user(launch_clock_time),
                clock_row(launch_propagated ? "clock network delay (propagated)"
                                            : "clock network delay (ideal)"));
        PathPointRecord ext_row;
        ext_row.element = "input external delay";
        ext_row.type = "iExt";
        ext_row.rise_fall = rise_fall_of(expanded.path(launch_index)->transition(sta));
        add_row(rows, last, unit.to_user(launch_time), ext_row);
        launch_row = rows.size();
        add_row(rows, last, unit.to_user(launch_time),
                point_row(expanded, launch_index, nullptr, false));
      } else if (!launch_propagated && from_clock_pin) {
        if (launch_clock_time != src_edge_time)
          add_row(rows, last, unit.to_user(launch_clock_time), clock_row("clock source latency"));
        launch_row = rows.size();
        add_row(rows, last, unit.to_user(launch_clock_time),
                point_row(launch_clock_path, launch_clock_path.size() - 1, nullptr, true));
      } else if (!launch_propagated) {
        add_row(rows, last, unit.to_user(launch_clock_time),
                clock_row("clock network delay (ideal)"));
        launch_row = rows.size();
        add_row(rows, last, unit.to_user(launch_clock_time),
                point_row(launch_clock_path, launch_clock_path.size() - 1, nullptr, true));
      } else {
        add_clock_network(rows, last, launch_clock_path, unit.to_user(launch_clock_time), cache,
                          sta, unit);
        launch_row = rows.size() - 1;
      }
      first_data = launch_index + 1;
      if (latch_edge != nullptr && !from_port) {
        // The data reached the open latch after its enable: the time given
        // to the start point, then the latch's data input.
        const double data_in = unit.to_user(expanded.arrival(0, sta) + src_offset);
        PathPointRecord given;
        given.element = data_in >= rows.back().total ? "time given to startpoint"
                                                      : "time borrowed from startpoint";
        given.type = "borrow";
        add_row(rows, last, data_in, given);
        add_row(rows, last, data_in, point_row(expanded, 0, nullptr, false));
        first_data = 1;
      }
    }
    for (size_t i = first_data; i < expanded.size(); i++) {
      sta::TimingArc *arc = i == 0 ? nullptr : expanded.prevArc(i);
      // Without routing a load pin of the data path is left out when a cell
      // arc follows it; its wire delay then counts in the next row, whose
      // increment is taken from the totals.
      if (!with_routing && i + 1 < expanded.size() && arc_type(arc) == "IC" &&
          arc_type(expanded.prevArc(i + 1)) != "IC") {
        folded_wires += unit.to_user(expanded.arrival(i, sta) - expanded.arrival(i - 1, sta));
        continue;
      }
      double total = unit.to_user(expanded.arrival(i, sta) + src_offset);
      add_row(rows, last, total, point_row(expanded, i, arc, false));
    }
    // Cell and interconnect delay of the data path (after the launch point).
    for (size_t i = launch_row + 1; i < rows.size(); i++)
      (rows[i].type == "IC" ? record.ic_delay : record.cell_delay) += rows[i].incr;
    record.ic_delay += folded_wires;
    record.cell_delay -= folded_wires;
    PathPointRecord arrival_row;
    arrival_row.element = "data arrival time";
    add_row(rows, last, record.arrival, arrival_row);
    // The closing row repeats the last total; its increment is not a delay.
    rows.back().incr = 0;
  }

  // Data required: capture edge, capture clock network, check.
  {
    std::vector<PathPointRecord> &rows = record.required_points;
    double last = 0;
    if (tgt_edge) {
      add_row(rows, last, unit.to_user(tgt_base), clock_row(cache.text(edge_text(tgt_edge))));
      const sta::PathVertex *tgt_path = end->targetClkPath();
      bool propagated = false;
      if (tgt_path && !tgt_path->isNull()) {
        const sta::ClkInfo *clk_info = tgt_path->clkInfo(sta);
        propagated = clk_info && clk_info->isPropagated();
      }
      const double clock_total = unit.to_user(tgt_base + tgt_latency);
      const bool has_clock_path = tgt_path && !tgt_path->isNull();
      if (has_clock_path && propagated) {
        ExpandedPath &tgt_expanded = cache.clock_path();
        tgt_expanded.expand(tgt_path, cache.prev_paths(), sta);
        add_clock_network(rows, last, tgt_expanded, clock_total, cache, sta, unit);
      } else {
        // An output delay has no clock pin; its clock may still be propagated.
        propagated = !has_clock_path && tgt_clk && tgt_clk->isPropagated();
        add_row(rows, last, clock_total,
                clock_row(propagated ? "clock network delay (propagated)"
                                     : "clock network delay (ideal)"));
      }
      double crpr = end->commonClkPessimism(sta);
      if (crpr != 0.0) {
        PathPointRecord crpr_row = clock_row("clock reconvergence pessimism");
        double signed_crpr = analysis_is_max(analysis) ? crpr : -crpr;
        add_row(rows, last, last + unit.to_user(signed_crpr), crpr_row);
      }
      double uncertainty = end->targetClkUncertainty(sta);
      if (uncertainty != 0.0) {
        // OpenSTA gives the uncertainty signed for the check's direction
        // (earlier for setup, later for hold).
        add_row(rows, last, last + unit.to_user(uncertainty), clock_row("clock uncertainty"));
      }
      if (has_clock_path && !propagated) {
        // An ideal clock pin comes after the adjustments of the edge.
        sta::PathRef ref;
        tgt_path->setRef(ref);
        add_row(rows, last, last, pin_row(cache.pin(ref.pin(sta)), &ref, nullptr, true));
      }
    }
    PathPointRecord check_row;
    check_row.element = cache.text(check_row_text(end, sta));
    check_row.type = analysis_is_max(analysis) ? "uTsu" : "uTh";
    if (end->isOutputDelay())
      check_row.type = "oExt";
    if (end->checkRole(sta) == sta::TimingRole::latchSetup() && end->borrow(sta) != 0.0) {
      // An open latch captures late: the time it lends the path replaces
      // the setup time.
      check_row.element = end->borrow(sta) > 0 ? "time borrowed from endpoint"
                                               : "time given to endpoint";
      check_row.type = "borrow";
    } else if (!end->isOutputDelay() && !end->isPathDelay()) {
      check_row.location = cache.pin(end_pin).location;
    }
    add_row(rows, last, record.required, check_row);
    PathPointRecord required_row;
    required_row.element = "data required time";
    add_row(rows, last, record.required, required_row);
    rows.back().incr = 0;
  }
  return record;
}

namespace {

struct ExceptionParts
{
  sta::ExceptionFrom *from = nullptr;
  sta::ExceptionThruSeq *thrus = nullptr;
  sta::ExceptionTo *to = nullptr;
  // Launch and capture clocks the paths must also have. OpenSTA cannot
  // search from a set that mixes clocks with pins or instances (it crashes),
  // finds nothing from clocks through -thru points once timing is up to
  // date, and takes a -to set of clocks and pins as either of them. Such
  // queries search by the points alone and keep the paths of these clocks.
  std::vector<sta::Clock *> launch_clocks;
  std::vector<sta::Clock *> capture_clocks;
  bool filtered() const { return !launch_clocks.empty() || !capture_clocks.empty(); }
};

template <class SET, class T>
SET *set_of(const std::vector<T *> &items)
{
  if (items.empty())
    return nullptr;
  SET *set = new SET;
  for (T *item : items)
    set->insert(item);
  return set;
}

// A -thru set is kept as a Tcl list of names.
std::vector<std::string> split_name_list(const std::string &text)
{
  int count = 0;
  const char **words = nullptr;
  if (Tcl_SplitList(nullptr, text.c_str(), &count, &words) != TCL_OK)
    return {text};
  std::vector<std::string> names(words, words + count);
  Tcl_Free(reinterpret_cast<char *>(words));
  return names;
}

ExceptionParts make_exceptions(sta::Sta *sta, const PathQuery &query)
{
  // Resolve every name before building anything, so a bad name leaves no
  // half-made exception behind.
  ResolvedNodes from = resolve_nodes(sta, query.from, "-from", false);
  std::vector<ResolvedNodes> thrus;
  for (const std::string &thru : query.thru)
    thrus.push_back(resolve_nodes(sta, split_name_list(thru), "-thru", true));
  ResolvedNodes to = resolve_nodes(sta, query.to, "-to", false);
  std::vector<sta::Clock *> from_clocks = resolve_clocks(sta, query.from_clocks, "-from_clock");
  std::vector<sta::Clock *> to_clocks = resolve_clocks(sta, query.to_clocks, "-to_clock");

  ExceptionParts parts;
  const sta::TransRiseFallBoth *rf = sta::TransRiseFallBoth::riseFall();
  if (!from_clocks.empty() && (!from.empty() || !thrus.empty())) {
    parts.launch_clocks = from_clocks;
    from_clocks.clear();
  }
  if (!to_clocks.empty() && !to.empty()) {
    parts.capture_clocks = to_clocks;
    to_clocks.clear();
  }
  if (!from.empty() || !from_clocks.empty())
    parts.from = sta->makeExceptionFrom(set_of<sta::PinSet>(from.pins),
                                        set_of<sta::ClockSet>(from_clocks),
                                        set_of<sta::InstanceSet>(from.instances), rf);
  if (!thrus.empty()) {
    parts.thrus = new sta::ExceptionThruSeq;
    for (const ResolvedNodes &thru : thrus)
      parts.thrus->push_back(sta->makeExceptionThru(set_of<sta::PinSet>(thru.pins),
                                                    set_of<sta::NetSet>(thru.nets),
                                                    set_of<sta::InstanceSet>(thru.instances),
                                                    rf));
  }
  if (!to.empty() || !to_clocks.empty())
    parts.to = sta->makeExceptionTo(set_of<sta::PinSet>(to.pins),
                                    set_of<sta::ClockSet>(to_clocks),
                                    set_of<sta::InstanceSet>(to.instances), rf,
                                    sta::TransRiseFallBoth::riseFall());
  return parts;
}

} // namespace

void for_each_timing_path(sta::Sta *sta, const PathQuery &query,
                          const std::function<void(size_t count)> &prepared,
                          const std::function<void(TimingPathRecord &&)> &visit)
{
  if (query.npaths < 1)
    throw ReportError("The number of paths (-npaths) must be a positive integer.");
  if (sta->network()->topInstance() == nullptr)
    throw ReportError("No netlist is loaded.");
  TimeUnit unit(sta);
  ExceptionParts parts = make_exceptions(sta, query);
  float slack_max = query.less_than_slack ? static_cast<float>(unit.to_sta(*query.less_than_slack))
                                          : sta::INF;
  float slack_min = query.min_slack ? static_cast<float>(unit.to_sta(*query.min_slack))
                                    : -sta::INF;
  PathEndList list;
  std::vector<sta::PathEnd *> ends;
  if (!parts.filtered()) {
    list.ends = find_ends(sta, parts.from, parts.thrus, parts.to, query.analysis, query.npaths, 1,
                          true, slack_max, slack_min);
    ends.assign(list.ends->begin(), list.ends->end());
  } else {
    // Several paths per end point, since the worst one may belong to other
    // clocks; the worst kept one of each end point stands for it.
    const int per_endpoint = 4 * (static_cast<int>(sta->sdc()->clocks()->size()) + 1);
    list.ends = find_ends(sta, parts.from, parts.thrus, parts.to, query.analysis,
                          all_endpoints_count(sta), per_endpoint, true, slack_max, slack_min);
    std::set<const sta::Vertex *> seen;
    for (sta::PathEnd *end : *list.ends) {
      auto among = [](const std::vector<sta::Clock *> &clocks, const sta::Clock *clock) {
        return clocks.empty() || std::find(clocks.begin(), clocks.end(), clock) != clocks.end();
      };
      const sta::ClockEdge *edge = end->sourceClkEdge(sta);
      if (!among(parts.launch_clocks, edge ? edge->clock() : nullptr) ||
          !among(parts.capture_clocks, end->targetClk(sta)))
        continue;
      if (seen.insert(end->vertex(sta)).second)
        ends.push_back(end);
    }
    std::stable_sort(ends.begin(), ends.end(), [sta](sta::PathEnd *a, sta::PathEnd *b) {
      return a->slack(sta) < b->slack(sta);
    });
  }
  size_t count = std::min<size_t>(ends.size(), static_cast<size_t>(query.npaths));
  // findPathEnds compares less_than_slack inclusively; the option is strict.
  if (query.less_than_slack)
    while (count > 0 && !(ends[count - 1]->slack(sta) < slack_max))
      count--;
  if (prepared)
    prepared(count);
  // The worst paths of neighbouring end points share most of their points:
  // a few new points per path on a large design.
  PathReportCache cache(sta, std::min<size_t>(count * 8, size_t(1) << 20));
  for (size_t i = 0; i < count; i++, check_interrupt())
    visit(make_path_record(sta, ends[i], query.analysis, query.with_points, &cache,
                           query.with_routing));
}

std::vector<TimingPathRecord> find_timing_paths(sta::Sta *sta, const PathQuery &query)
{
  std::vector<TimingPathRecord> records;
  for_each_timing_path(
    sta, query, [&](size_t count) { records.reserve(count); },
    [&](TimingPathRecord &&record) { records.push_back(std::move(record)); });
  return records;
}

namespace {

// Visits the worst path of every checked end point of an analysis.
template <class VISIT>
void for_each_endpoint(sta::Sta *sta, Analysis analysis, VISIT visit)
{
  if (sta->network()->topInstance() == nullptr)
    throw ReportError("No netlist is loaded.");
  PathEndList list;
  // Sorted, so that sums over the end points (total negative slack) add
  // in the same order every time.
  list.ends = find_ends(sta, nullptr, nullptr, nullptr, analysis, all_endpoints_count(sta), 1,
                        true, sta::INF);
  for (sta::PathEnd *end : *list.ends) {
    check_interrupt();
    if (!end->isUnconstrained())
      visit(end);
  }
}

} // namespace

std::vector<DomainSummaryRow> domain_summary(sta::Sta *sta, Analysis analysis)
{
  TimeUnit unit(sta);
  std::map<const sta::Clock *, DomainSummaryRow> rows;
  for_each_endpoint(sta, analysis, [&](sta::PathEnd *end) {
    const sta::Clock *clock = end->targetClk(sta);
    if (clock == nullptr)
      return;
    auto [it, fresh] = rows.try_emplace(clock);
    DomainSummaryRow &row = it->second;
    double slack = unit.to_user(end->slack(sta));
    if (fresh) {
      row.clock = clock->name();
      row.worst_slack = slack;
    }
    row.worst_slack = std::min(row.worst_slack, slack);
    row.endpoints++;
    if (slack < 0) {
      row.total_negative_slack += slack;
      row.failing_endpoints++;
    }
  });
  std::vector<DomainSummaryRow> result;
  for (sta::Clock *clock : *sta->sdc()->clocks()) {
    auto it = rows.find(clock);
    if (it != rows.end())
      result.push_back(it->second);
  }
  return result;
}

std::vector<double> endpoint_slacks(sta::Sta *sta, Analysis analysis, const std::string &clock)
{
  TimeUnit unit(sta);
  std::vector<double> slacks;
  for_each_endpoint(sta, analysis, [&](sta::PathEnd *end) {
    const sta::Clock *target = end->targetClk(sta);
    if (!clock.empty() && (target == nullptr || clock != target->name()))
      return;
    slacks.push_back(unit.to_user(end->slack(sta)));
  });
  return slacks;
}

std::vector<ClockTransferRow> clock_transfers(sta::Sta *sta)
{
  std::map<std::pair<int, int>, ClockTransferRow> rows;
  for (Analysis analysis : {Analysis::setup, Analysis::hold, Analysis::recovery, Analysis::removal}) {
    for_each_endpoint(sta, analysis, [&](sta::PathEnd *end) {
      const sta::ClockEdge *src = end->sourceClkEdge(sta);
      const sta::Clock *tgt = end->targetClk(sta);
      if (src == nullptr || tgt == nullptr)
        return;
      ClockTransferRow &row = rows[{src->clock()->index(), tgt->index()}];
      row.from_clock = src->clock()->name();
      row.to_clock = tgt->name();
      switch (analysis) {
      case Analysis::setup: row.setup_paths++; break;
      case Analysis::hold: row.hold_paths++; break;
      case Analysis::recovery: row.recovery_paths++; break;
      case Analysis::removal: row.removal_paths++; break;
      }
    });
  }
  // Order by clock order of definition.
  std::map<int, int> order;
  int position = 0;
  for (sta::Clock *clock : *sta->sdc()->clocks())
    order[clock->index()] = position++;
  std::vector<std::pair<std::pair<int, int>, ClockTransferRow>> sorted(rows.begin(), rows.end());
  std::sort(sorted.begin(), sorted.end(), [&](const auto &a, const auto &b) {
    return std::make_pair(order[a.first.first], order[a.first.second]) <
           std::make_pair(order[b.first.first], order[b.first.second]);
  });
  std::vector<ClockTransferRow> result;
  for (auto &entry : sorted)
    result.push_back(entry.second);
  return result;
}

} // namespace vexa
