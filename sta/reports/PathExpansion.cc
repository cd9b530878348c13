#include "reports/PathExpansion.hh"

#include "Machine.hh"
#include "Graph.hh"
#include "Latches.hh"
#include "Path.hh"
#include "PathRef.hh"
#include "StaState.hh"
#include "TimingArc.hh"
#include "TimingRole.hh"

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

} // namespace

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
  Key key{path.vertex(m_sta), path.tag(m_sta)};
  auto [it, fresh] = m_entries.try_emplace(key);
  Entry &entry = it->second;
  if (fresh) {
    ++m_misses;
    path.prevPath(m_sta, prev, arc);
    int prev_index = 0;
    if (prev.isNull() || stored_slot(prev, prev_index)) {
      entry.vertex = prev.isNull() ? nullptr : prev.vertex(m_sta);
      entry.tag = prev.isNull() ? nullptr : prev.tag(m_sta);
      entry.arrival_index = prev_index;
      entry.arc = arc;
    } else {
      // A predecessor without a vertex slot cannot be rebuilt from the
      // entry; forget it so the next asker gets it directly too.
      m_entries.erase(it);
    }
    return;
  }
  arc = entry.arc;
  if (entry.vertex == nullptr)
    prev.init();
  else
    prev.init(entry.vertex, entry.tag, entry.arrival_index);
}

void ExpandedPath::expand(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta)
{
  m_points.clear();
  m_arcs.clear();
  m_start = 0;
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
          found_start = true;
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

} // namespace vexa
