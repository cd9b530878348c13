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
#include <unordered_map>
#include <vector>

namespace sta {
class Path;
class StaState;
class TimingArc;
class Vertex;
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
  struct Key
  {
    const sta::Vertex *vertex;
    const sta::Tag *tag;
    bool operator==(const Key &other) const = default;
  };
  struct KeyHash
  {
    size_t operator()(const Key &key) const
    {
      auto a = reinterpret_cast<std::uintptr_t>(key.vertex);
      auto b = reinterpret_cast<std::uintptr_t>(key.tag);
      return static_cast<size_t>((a * 0x9E3779B97F4A7C15ull) ^ (b + (a >> 17)));
    }
  };
  struct Entry
  {
    sta::Vertex *vertex = nullptr;  // null: no predecessor
    sta::Tag *tag = nullptr;
    int arrival_index = 0;
    sta::TimingArc *arc = nullptr;
  };

  const sta::StaState *m_sta;
  std::unordered_map<Key, Entry, KeyHash> m_entries;
  size_t m_lookups = 0;
  size_t m_misses = 0;
};

class ExpandedPath
{
public:
  ExpandedPath() = default;
  ExpandedPath(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta)
  {
    expand(path, cache, sta);
  }
  // Lays out `path`, replacing what was there (the storage is reused).
  void expand(const sta::Path *path, PrevPathCache &cache, const sta::StaState *sta);

  size_t size() const { return m_points.size(); }
  // path(0) is the first point (a clock source or an input), path(size()-1) the end.
  sta::PathRef *path(size_t index) { return &m_points[reversed(index)]; }
  // The arc that reaches point `index` (null for the first point).
  sta::TimingArc *prevArc(size_t index) const { return m_arcs[reversed(index)]; }
  // The point where the data path starts: the output of the launching
  // register or latch, else the first point.
  size_t startIndex() const { return reversed(m_start); }
  sta::PathRef *startPath() { return m_points.empty() ? nullptr : &m_points[m_start]; }

private:
  size_t reversed(size_t index) const { return m_points.size() - 1 - index; }

  // Stored end first, as they are found.
  std::vector<sta::PathRef> m_points;
  std::vector<sta::TimingArc *> m_arcs;
  size_t m_start = 0;
};

} // namespace vexa
