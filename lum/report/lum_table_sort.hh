// Sorting a report table's rows by one column without calling a comparison
// on cell strings: every cell is turned once into its lum_sort_key, packed
// into a chunk's buffer, and the rows are ordered by those keys.
//
// Chunks let the work be shared out: each thread reads and keys its own
// range of rows into its own chunk, the chunks are sorted side by side and
// then merged. Each key's first sixteen bytes after the prefix common to all
// keys are kept beside it as two numbers, so most comparisons look at no
// buffer at all (report columns such as hierarchical node names share long
// prefixes, which that skip removes).
#pragma once

#include "report/lum_table_source.hh"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// Sorting a large table fills some hundred megabytes of fresh memory, and
// first touching a page costs more than the work done on it, above all on
// virtual machines. Buffers of 4 MB or more therefore come from mappings
// that the kernel is asked to back with huge pages (one fault per 2 MB
// instead of per 4 KB); smaller ones from the heap. Elements are
// default-initialised (a resize does not clear the bytes).
void* lum_big_allocate(size_t bytes);
void lum_big_free(void* memory, size_t bytes);

template <typename T>
struct LUM_BIG_ALLOCATOR {
  using value_type = T;
  LUM_BIG_ALLOCATOR() = default;
  template <typename U>
  LUM_BIG_ALLOCATOR(const LUM_BIG_ALLOCATOR<U>&) {}
  T* allocate(size_t n) { return static_cast<T*>(lum_big_allocate(n * sizeof(T))); }
  void deallocate(T* p, size_t n) { lum_big_free(p, n * sizeof(T)); }
  template <typename U>
  void construct(U* p) {
    ::new (static_cast<void*>(p)) U;
  }
  template <typename U, typename... ARGS>
  void construct(U* p, ARGS&&... args) {
    ::new (static_cast<void*>(p)) U(std::forward<ARGS>(args)...);
  }
  template <typename U>
  bool operator==(const LUM_BIG_ALLOCATOR<U>&) const {
    return true;
  }
  template <typename U>
  bool operator!=(const LUM_BIG_ALLOCATOR<U>&) const {
    return false;
  }
};

struct LUM_SORT_ITEM {
  // Key bytes 0-7 and 8-15 after the common prefix, big endian, zero padded.
  uint64_t prefix = 0;
  uint64_t prefix2 = 0;
  uint32_t offset = 0;   // the key in its chunk's buffer
  uint32_t length = 0;
  uint32_t row = 0;      // the source row
  uint32_t chunk = 0;    // the chunk whose buffer holds the key
};

using LUM_SORT_ITEMS = std::vector<LUM_SORT_ITEM, LUM_BIG_ALLOCATOR<LUM_SORT_ITEM>>;

struct LUM_SORT_CHUNK {
  std::vector<char, LUM_BIG_ALLOCATOR<char>> keys;  // the packed keys
  LUM_SORT_ITEMS items;
};

// Reads rows first .. last-1 of a source and appends the keys of their cells
// in `column` to chunk (whose index among the chunks is chunk_index). Rows the
// source cannot give (a file damaged under us) sort as empty cells. Stops
// early, returning false, when *cancel becomes true.
bool lum_key_rows(const LUM_TABLE_SOURCE& source, int64_t first, int64_t last, int column, uint32_t chunk_index,
                  LUM_SORT_CHUNK* chunk, const std::atomic<bool>* cancel = nullptr);

// The source rows in sorted order: by key ascending or descending, equal keys
// in source order either way. Sorts the chunks on threads of their own, one
// per chunk. Empty when cancelled. With group_starts, also tells for each
// position of the order whether its key differs from the previous one's
// (true at position 0), which lets the opposite direction be derived
// without sorting again (lum_reverse_sort_order).
std::vector<uint32_t> lum_sort_chunks(std::vector<LUM_SORT_CHUNK>& chunks, bool ascending,
                                      const std::atomic<bool>* cancel = nullptr,
                                      std::vector<bool>* group_starts = nullptr);

// The order of the opposite direction from a sorted order and its groups of
// equal keys: the groups in reverse, each keeping its rows in source order.
// *group_starts is updated to describe the new order.
std::vector<uint32_t> lum_reverse_sort_order(const std::vector<uint32_t>& order, std::vector<bool>* group_starts);
