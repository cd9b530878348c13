#include "reports/PathExpansion.hh"

#include <algorithm>

#include "Machine.hh"
#include "Fuzzy.hh"
#include "Graph.hh"
#include "GraphDelayCalc.hh"
#include "Latches.hh"
#include "Path.hh"
#include "PathAnalysisPt.hh"
#include "PathRef.hh"
#include "PathVertex.hh"
#include "Search.hh"
#include "StaState.hh"
#include "Tag.hh"
#include "TimingArc.hh"
#include "TimingRole.hh"
#include "Transition.hh"

#include <bit>
#include <cmath>

namespace vexa {

namespace {

// Whether a path reference holds an enumerated path (one of the alternative
// paths to an end point) rather than a point stored on its vertex. Such a
// path shares its vertex and tag with the stored point but not its arrival
// or predecessor, so it must never be cached under them. PathRef has no
// public question for it; a derived class may name the member.
struct EnumeratedPathProbe : sta::PathRef
{
  static bool holds_enumerated(const sta::PathRef &path)
  {
    sta::PathEnumed *sta::PathRef::*member = &EnumeratedPathProbe::path_enumed_;
    return path.*member != nullptr;
  }
};

// The vertex slot of a stored path point, if it is one.
bool stored_slot(const sta::PathRef &path, int &arrival_index)
{
  if (path.isNull() || EnumeratedPathProbe::holds_enumerated(path))
    return false;
  bool exists = false;
  path.arrivalIndex(arrival_index, exists);
  return exists;
}

// Finds the point before a stored path point: the path on a fan-in vertex
// whose step over one of the fan-in arcs gives this point's tag and
// arrival. OpenSTA asks the same question by working out the resulting tag
// and arrival of every path on every fan-in arc; most of those paths end on
// the other transition or in the other analysis (min or max), which can
// never match, so they are passed over before that work is done. The first
// match in OpenSTA's own visiting order is taken, so the answer is the one
// OpenSTA gives.
class PredecessorFinder : public sta::PathVisitor
{
public:
  PredecessorFinder(const sta::PathRef &path, const sta::StaState *sta)
      : sta::PathVisitor(sta),
        m_arrival(path.arrival(sta)),
        m_tag(path.tag(sta)),
        m_tr_index(path.trIndex(sta)),
        m_ap_index(path.pathAnalysisPtIndex(sta)),
        m_tolerance(sta->graphDelayCalc()->incrementalDelayTolerance())
  {
  }
  sta::VertexVisitor *copy() override { return nullptr; }  // never visits in parallel
  void visit(sta::Vertex *) override {}

  const sta::PathVertex &found() const { return m_found; }
  sta::TimingArc *found_arc() const { return m_found_arc; }

protected:
  bool visitFromPath(const sta::Pin *from_pin, sta::Vertex *from_vertex,
                     const sta::TransRiseFall *from_tr, sta::PathVertex *from_path,
                     sta::Edge *edge, sta::TimingArc *arc, const sta::Pin *to_pin,
                     sta::Vertex *to_vertex, const sta::TransRiseFall *to_tr,
                     const sta::MinMax *min_max, const sta::PathAnalysisPt *path_ap) override
  {
    if (to_tr->index() != m_tr_index || path_ap->index() != m_ap_index)
      return true;
    return sta::PathVisitor::visitFromPath(from_pin, from_vertex, from_tr, from_path, edge, arc,
                                           to_pin, to_vertex, to_tr, min_max, path_ap);
  }

  bool visitFromToPath(const sta::Pin *, sta::Vertex *, const sta::TransRiseFall *,
                       sta::Tag *from_tag, sta::PathVertex *from_path, sta::Edge *,
                       sta::TimingArc *arc, sta::ArcDelay, sta::Vertex *,
                       const sta::TransRiseFall *to_tr, sta::Tag *to_tag,
                       sta::Arrival &to_arrival, const sta::MinMax *,
                       const sta::PathAnalysisPt *path_ap) override
  {
    if (to_tr->index() != m_tr_index || path_ap->index() != m_ap_index)
      return true;
    bool same_arrival = m_tolerance > 0.0
                          ? std::fabs(sta::delayAsFloat(to_arrival - m_arrival)) < m_tolerance
                          : sta::fuzzyEqual(to_arrival, m_arrival);
    if (!same_arrival)
      return true;
    // A filter that became active on this step is in the new tag but not
    // yet in the paths an earlier search left on the vertex.
    bool same_tag = sta::tagMatch(to_tag, m_tag, sta_) ||
                    (from_tag->isFilter() && !to_tag->isFilter() &&
                     sta::tagMatchNoCrpr(to_tag, m_tag));
    if (!same_tag)
      return true;
    int arrival_index = 0;
    bool exists = false;
    from_path->arrivalIndex(arrival_index, exists);
    if (!exists)
      return true;
    m_found.copy(from_path);
    m_found_arc = arc;
    return false;
  }

private:
  sta::Arrival m_arrival;
  const sta::Tag *m_tag;
  int m_tr_index;
  sta::PathAPIndex m_ap_index;
  float m_tolerance;
  sta::PathVertex m_found;
  sta::TimingArc *m_found_arc = nullptr;
};

// The predecessor of a stored point, as PathVertex::prevPath gives it.
void find_prev(const sta::PathRef &path, const sta::StaState *sta, sta::PathRef &prev,
               sta::TimingArc *&arc)
{
  sta::Vertex *vertex = path.vertex(sta);
  // Where the search kept its predecessors, OpenSTA reads them directly.
  if (sta->graph()->prevPaths(vertex) != nullptr) {
    path.prevPath(sta, prev, arc);
    return;
  }
  PredecessorFinder finder(path, sta);
  finder.visitFaninPaths(vertex);
  if (finder.found().isNull()) {
    prev.init();
    arc = nullptr;
    return;
  }
  prev.init(finder.found());
  arc = finder.found_arc();
}

} // namespace

PrevPathCache::PrevPathCache(const sta::StaState *sta, size_t expected_points) : m_sta(sta)
{
  size_t size = 4096;
  while (size < 2 * expected_points)
    size *= 2;
  m_slots = ZeroedArray<Slot>(size);
  m_shift = 64 - std::countr_zero(m_slots.size());
  m_nodes.reserve(expected_points);
}

PrevPathCache::Slot &PrevPathCache::slot(const sta::Vertex *vertex, std::uint32_t tag_index)
{
  const size_t mask = m_slots.size() - 1;
  // Fibonacci hashing: the top bits of the product mix every bit of the key.
  const std::uint64_t key = reinterpret_cast<std::uintptr_t>(vertex) ^
                            (std::uint64_t(tag_index) << 48) ^ tag_index;
  size_t i = static_cast<size_t>((key * 0x9E3779B97F4A7C15ull) >> m_shift);
  while (m_slots[i].vertex != nullptr &&
         (m_slots[i].vertex != vertex || m_slots[i].tag_index != tag_index))
    i = (i + 1) & mask;
  return m_slots[i];
}

void PrevPathCache::grow()
{
  ZeroedArray<Slot> old = std::move(m_slots);
  m_slots = ZeroedArray<Slot>(old.size() * 2);
  m_shift = 64 - std::countr_zero(m_slots.size());
  for (size_t i = 0; i < old.size(); i++)
    if (old[i].vertex != nullptr)
      slot(old[i].vertex, old[i].tag_index) = old[i];
}

std::uint32_t PrevPathCache::node_of(const sta::PathRef &path)
{
  int arrival_index = 0;
  // Only points stored on a vertex have a stable identity; enumerated
  // points (alternative paths) have no node.
  if (!stored_slot(path, arrival_index))
    return no_node;
  if ((m_nodes.size() + 1) * 2 > m_slots.size())
    grow();
  sta::Vertex *vertex = path.vertex(m_sta);
  const std::uint32_t tag_index = path.tagIndex(m_sta);
  Slot &found = slot(vertex, tag_index);
  if (found.vertex == nullptr) {
    found.vertex = vertex;
    found.tag_index = tag_index;
    found.node = static_cast<std::uint32_t>(m_nodes.size());
    Node &node = m_nodes.emplace_back();
    node.vertex = vertex;
    node.tag = path.tag(m_sta);
    node.arrival_index = arrival_index;
    node.arrival = path.arrival(m_sta);
  }
  return found.node;
}

std::uint32_t PrevPathCache::prev_node(std::uint32_t index, sta::PathRef &prev,
                                       sta::TimingArc *&arc)
{
  ++m_lookups;
  Node *node = &m_nodes[index];
  if (node->prev == unknown_prev) {
    ++m_misses;
    sta::PathRef path;
    path.init(node->vertex, node->tag, node->arrival_index);
    find_prev(path, m_sta, prev, arc);
    // A predecessor without a vertex slot has no node; it is asked for
    // again by the next path through here.
    const std::uint32_t found = prev.isNull() ? no_node : node_of(prev);
    node = &m_nodes[index];  // node_of may have moved the nodes
    if (prev.isNull() || found != no_node) {
      node->prev = found;
      node->arc = arc;
    }
    return found;
  }
  arc = node->arc;
  if (node->prev == no_node) {
    prev.init();
  } else {
    const Node &before = m_nodes[node->prev];
    prev.init(before.vertex, before.tag, before.arrival_index);
  }
  return node->prev;
}

void PrevPathCache::prev(const sta::PathRef &path, sta::PathRef &prev, sta::TimingArc *&arc)
{
  const std::uint32_t node = node_of(path);
  if (node != no_node) {
    prev_node(node, prev, arc);
    return;
  }
  ++m_lookups;
  ++m_misses;
  path.prevPath(m_sta, prev, arc);
}

void ExpandedPath::expand(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta)
{
  clear();
  m_cache = &cache;
  if (path == nullptr)
    return;
  const sta::Latches *latches = sta->latches();
  sta::PathRef point(path);
  std::uint32_t node = cache.node_of(point);
  bool found_start = false;
  while (!point.isNull()) {
    sta::PathRef prev;
    sta::TimingArc *arc = nullptr;
    std::uint32_t prev_node = PrevPathCache::no_node;
    if (node != PrevPathCache::no_node) {
      prev_node = cache.prev_node(node, prev, arc);
    } else {
      cache.prev(point, prev, arc);
      if (!prev.isNull())
        prev_node = cache.node_of(prev);
    }
    if (!found_start && arc != nullptr) {
      const sta::TimingRole *role = arc->role();
      if (role == sta::TimingRole::regClkToQ() || role == sta::TimingRole::latchEnToQ()) {
        m_start = m_points.size();
        found_start = true;
      } else if (role == sta::TimingRole::latchDtoQ()) {
        sta::Edge *edge = point.prevEdge(arc, sta);
        if (edge != nullptr && latches->isLatchDtoQ(edge)) {
          // A path through a transparent latch starts at its output; the
          // latch's data input closes the path so latch loops end here.
          m_start = m_points.size();
          m_latch_edge = edge;
          m_points.emplace_back(point);
          m_arcs.push_back(arc);
          m_nodes.push_back(node);
          m_points.emplace_back(prev);
          m_arcs.push_back(nullptr);
          m_nodes.push_back(prev_node);
          return;
        }
      }
    }
    m_points.emplace_back(point);
    m_arcs.push_back(arc);
    m_nodes.push_back(node);
    point.init(prev);
    node = prev_node;
  }
  if (!found_start && !m_points.empty())
    m_start = m_points.size() - 1;
}

float ExpandedPath::arrival(size_t index, const sta::StaState *sta)
{
  const std::uint32_t node = m_nodes[reversed(index)];
  if (node != PrevPathCache::no_node && m_cache != nullptr)
    return m_cache->node(node).arrival;
  return path(index)->arrival(sta);
}

void ExpandedPath::clear()
{
  m_points.clear();
  m_arcs.clear();
  m_nodes.clear();
  m_start = 0;
  m_latch_edge = nullptr;
}

void ExpandedPath::assign_prefix(const ExpandedPath &other, size_t count)
{
  clear();
  count = std::min(count, other.m_points.size());
  // Stored end first: the first `count` points are the last stored ones.
  const size_t skip = other.m_points.size() - count;
  m_points.assign(other.m_points.begin() + skip, other.m_points.end());
  m_arcs.assign(other.m_arcs.begin() + skip, other.m_arcs.end());
  m_nodes.assign(other.m_nodes.begin() + skip, other.m_nodes.end());
  m_cache = other.m_cache;
  m_start = m_points.empty() ? 0 : m_points.size() - 1;
}

} // namespace vexa
