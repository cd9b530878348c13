// The points of a timing path, from its start to its end.
//
// OpenSTA keeps only the last point of a path; the points before it are
// found one at a time by asking each point for its predecessor, which means
// trying every fan-in arc of its vertex. A report of ten thousand paths asks
// that question for the same points over and over, since the worst paths
// into neighbouring end points share most of their cones. PrevPathCache
// remembers each answer for the length of one report, and ExpandedPath lays
// a path out from it, with the same points, arcs and start point as
// OpenSTA's own PathExpanded.
#pragma once

// OpenSTA's headers need its machine header first.
#include "Machine.hh"
#include "PathRef.hh"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace sta {
class Path;
class StaState;
class TimingArc;
class Vertex;
class Edge;
class Tag;
}

namespace vexa {

class PrevPathCache
{
public:
  explicit PrevPathCache(const sta::StaState *sta) : m_sta(sta) {}
  // The point before `path` (null at a start point) and the arc from it.
  void prev(const sta::PathRef &path, sta::PathRef &prev, sta::TimingArc *&arc);
  size_t lookups() const { return m_lookups; }
  size_t misses() const { return m_misses; }

private:
  struct Entry
  {
    sta::Vertex *vertex = nullptr;  // null: no predecessor
    sta::Tag *tag = nullptr;
    int arrival_index = 0;
    sta::TimingArc *arc = nullptr;
  };
  struct Slot
  {
    std::uint64_t key = 0;  // 0: empty
    Entry entry;
  };
  // A point's key: its vertex and tag numbers, never 0.
  static std::uint64_t key_of(std::uint32_t vertex_id, std::uint32_t tag_index)
  {
    return ((std::uint64_t(vertex_id) << 32) | tag_index) + 1;
  }
  // The slot of `key`, or the empty slot where it belongs. The table is
  // open-addressed (tens of thousands of entries per report, each looked
  // up about five times): one probe into one array instead of a node each.
  Slot &slot(std::uint64_t key);
  void grow();

  const sta::StaState *m_sta;
  std::vector<Slot> m_slots;
  size_t m_used = 0;
  int m_shift = 64;
  size_t m_lookups = 0;
  size_t m_misses = 0;
};

class ExpandedPath
{
public:
  // Lays out `path`, replacing what was there (the storage is reused).
  void expand(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta);

  void clear();
  // The first `count` points of `other` (its clock path, say), as a path of their own.
  void assign_prefix(const ExpandedPath &other, size_t count);

  size_t size() const { return m_points.size(); }
  // path(0) is the first point (a clock source or an input), path(size()-1) the end.
  sta::PathRef *path(size_t index) { return &m_points[reversed(index)]; }
  // The arc that reaches point `index` (null for the first point).
  sta::TimingArc *prevArc(size_t index) const { return m_arcs[reversed(index)]; }
  // The point where the data path starts: the output of the launching
  // register or latch, else the first point.
  size_t startIndex() const { return reversed(m_start); }
  sta::PathRef *startPath() { return m_points.empty() ? nullptr : &m_points[m_start]; }
  // The edge from a transparent latch's data input to its output when the
  // path starts there (path(0) is the data input, path(1) the output), else null.
  sta::Edge *latchDataEdge() const { return m_latch_edge; }

private:
  size_t reversed(size_t index) const { return m_points.size() - 1 - index; }

  // Stored end first, as they are found.
  std::vector<sta::PathRef> m_points;
  std::vector<sta::TimingArc *> m_arcs;
  size_t m_start = 0;
  sta::Edge *m_latch_edge = nullptr;
};

} // namespace vexa
