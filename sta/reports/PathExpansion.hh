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
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
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

// An array of zero bytes that the system hands out page by page as it is
// first touched (calloc of a large block maps zero pages): a table indexed
// by vertex or hashed over a large range then costs only the pages a report
// uses, instead of writing all of it first.
template <class T>
class ZeroedArray
{
  static_assert(std::is_trivially_copyable_v<T>);

public:
  ZeroedArray() = default;
  explicit ZeroedArray(size_t size)
      : m_data(static_cast<T *>(std::calloc(size ? size : 1, sizeof(T)))), m_size(size)
  {
    if (!m_data)
      throw std::bad_alloc();
  }
  T &operator[](size_t index) { return m_data.get()[index]; }
  const T &operator[](size_t index) const { return m_data.get()[index]; }
  size_t size() const { return m_size; }
  bool empty() const { return m_size == 0; }

private:
  struct Free
  {
    void operator()(T *data) const { std::free(data); }
  };
  std::unique_ptr<T, Free> m_data;
  size_t m_size = 0;
};

class PrevPathCache
{
public:
  // `expected_points`: how many distinct points the report is likely to
  // meet (the table is sized for them up front; it grows when needed).
  explicit PrevPathCache(const sta::StaState *sta, size_t expected_points = 0);
  // The point before `path` (null at a start point) and the arc from it.
  void prev(const sta::PathRef &path, sta::PathRef &prev, sta::TimingArc *&arc);
  size_t lookups() const { return m_lookups; }
  size_t misses() const { return m_misses; }

  // Every stored point met is a node: its place on its vertex, its arrival
  // and, once asked, its predecessor as another node. A path whose end was
  // laid out before is then followed from node to node, without a look-up
  // per point.
  static constexpr std::uint32_t no_node = 0xffffffffu;
  struct Node
  {
    sta::Vertex *vertex = nullptr;
    sta::Tag *tag = nullptr;
    int arrival_index = 0;
    float arrival = 0;                  // the point's arrival (OpenSTA's seconds)
    sta::TimingArc *arc = nullptr;      // the arc from the predecessor
    std::uint32_t prev = unknown_prev;  // predecessor node, no_node at a start
    // What the owner of the cache keeps about the point's pin (index + 1,
    // 0 while not asked).
    std::uint32_t pin_entry = 0;
  };
  // The node of a stored point (made on first sight), or no_node for an
  // enumerated point.
  std::uint32_t node_of(const sta::PathRef &path);
  Node &node(std::uint32_t index) { return m_nodes[index]; }
  // The predecessor of a node: `prev` and `arc` as prev() gives them, and
  // its node (no_node at a start point, or when the predecessor is not a
  // stored point).
  std::uint32_t prev_node(std::uint32_t index, sta::PathRef &prev, sta::TimingArc *&arc);

private:
  static constexpr std::uint32_t unknown_prev = 0xfffffffeu;
  struct Slot  // all zero: empty
  {
    const sta::Vertex *vertex;  // null: empty
    std::uint32_t tag_index;
    std::uint32_t node;
  };
  // The slot of a point, or the empty slot where it belongs. The table is
  // open-addressed (tens of thousands of points per report): one probe
  // into one array instead of a node each.
  Slot &slot(const sta::Vertex *vertex, std::uint32_t tag_index);
  void grow();

  const sta::StaState *m_sta;
  ZeroedArray<Slot> m_slots;
  std::vector<Node> m_nodes;
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
  // The cache's node of point `index`, or PrevPathCache::no_node.
  std::uint32_t node(size_t index) const { return m_nodes[reversed(index)]; }
  // The arrival of point `index` (as path(index)->arrival gives it).
  float arrival(size_t index, const sta::StaState *sta);
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
  std::vector<std::uint32_t> m_nodes;
  PrevPathCache *m_cache = nullptr;
  size_t m_start = 0;
  sta::Edge *m_latch_edge = nullptr;
};

} // namespace vexa
