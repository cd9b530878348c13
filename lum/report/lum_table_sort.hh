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
#include <cstdint>
#include <string>
#include <vector>

struct LUM_SORT_ITEM {
  // Key bytes 0-7 and 8-15 after the common prefix, big endian, zero padded.
  uint64_t prefix = 0;
  uint64_t prefix2 = 0;
  uint32_t offset = 0;   // the key in its chunk's buffer
  uint32_t length = 0;
  uint32_t row = 0;      // the source row
  uint32_t chunk = 0;    // the chunk whose buffer holds the key
};

struct LUM_SORT_CHUNK {
  std::string keys;  // the packed keys
  std::vector<LUM_SORT_ITEM> items;
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
