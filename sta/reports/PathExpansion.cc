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

PrevPathCache::Slot &PrevPathCache::slot(std::uint64_t key)
{
  const size_t mask = m_slots.size() - 1;
  // Fibonacci hashing: the top bits of the product mix every bit of the key.
  size_t i = static_cast<size_t>((key * 0x9E3779B97F4A7C15ull) >> m_shift);
  while (m_slots[i].key != 0 && m_slots[i].key != key)
    i = (i + 1) & mask;
  return m_slots[i];
}

void PrevPathCache::grow()
{
  std::vector<Slot> old = std::move(m_slots);
  m_slots.assign(old.empty() ? 4096 : old.size() * 2, Slot());
  m_shift = 64 - std::countr_zero(m_slots.size());
  for (const Slot &entry : old)
    if (entry.key != 0)
      slot(entry.key) = entry;
}

void PrevPathCache::prev(const sta::PathRef &path, sta::PathRef &prev, sta::TimingArc *&arc)
{
  ++m_lookups;
  int arrival_index = 0;
  // Only points stored on a vertex have a stable identity; enumerated
  // points (alternative paths) are asked directly.
  if (!stored_slot(path, arrival_index)) {
    ++m_misses;
    path.prevPath(m_sta, prev, arc);
    return;
  }
  if ((m_used + 1) * 2 > m_slots.size())
    grow();
  const std::uint64_t key = key_of(path.vertexId(m_sta), path.tagIndex(m_sta));
  Slot &found = slot(key);
  if (found.key == key) {
    const Entry &entry = found.entry;
    arc = entry.arc;
    if (entry.vertex == nullptr)
      prev.init();
    else
      prev.init(entry.vertex, entry.tag, entry.arrival_index);
    return;
  }
  ++m_misses;
  find_prev(path, m_sta, prev, arc);
  int prev_index = 0;
  // A predecessor without a vertex slot could not be rebuilt from an
  // entry; it is not kept, and the next asker finds it again.
  if (prev.isNull() || stored_slot(prev, prev_index)) {
    found.key = key;
    found.entry.vertex = prev.isNull() ? nullptr : prev.vertex(m_sta);
    found.entry.tag = prev.isNull() ? nullptr : prev.tag(m_sta);
    found.entry.arrival_index = prev_index;
    found.entry.arc = arc;
    ++m_used;
  }
}

void ExpandedPath::expand(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta)
{
  m_points.clear();
  m_arcs.clear();
  m_start = 0;
  m_latch_edge = nullptr;
  if (path == nullptr)
    return;
  const sta::Latches *latches = sta->latches();
  sta::PathRef point(path);
  bool found_start = false;
  while (!point.isNull()) {
    sta::PathRef prev;
    sta::TimingArc *arc = nullptr;
    cache.prev(point, prev, arc);
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
          m_points.emplace_back(prev);
          m_arcs.push_back(nullptr);
          return;
        }
      }
    }
    m_points.emplace_back(point);
    m_arcs.push_back(arc);
    point.init(prev);
  }
  if (!found_start && !m_points.empty())
    m_start = m_points.size() - 1;
}

void ExpandedPath::clear()
{
  m_points.clear();
  m_arcs.clear();
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
  m_start = m_points.empty() ? 0 : m_points.size() - 1;
}

} // namespace vexa
