#include "report/lum_table_sort.hh"

#include "report/lum_lexcmp.hh"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <cstring>
#include <thread>

namespace {

constexpr size_t BIG_BUFFER = size_t{4} << 20;
constexpr size_t HUGE_PAGE = size_t{2} << 20;

size_t mapped_size(size_t bytes) { return (bytes + HUGE_PAGE - 1) & ~(HUGE_PAGE - 1); }

bool cancelled(const std::atomic<bool>* cancel) { return cancel && cancel->load(std::memory_order_relaxed); }

// Rows read from the source at a time.
constexpr int FETCH_ROWS = 4096;

class ITEM_ORDER {
 public:
  ITEM_ORDER(const std::vector<LUM_SORT_CHUNK>& chunks, size_t skip, bool ascending)
      : m_chunks(chunks), m_skip(skip), m_ascending(ascending) {}

  bool same_key(const LUM_SORT_ITEM& a, const LUM_SORT_ITEM& b) const {
    return a.prefix == b.prefix && a.prefix2 == b.prefix2 && compare_tails(a, b) == 0;
  }

  bool operator()(const LUM_SORT_ITEM& a, const LUM_SORT_ITEM& b) const {
    if (a.prefix != b.prefix) return m_ascending ? a.prefix < b.prefix : a.prefix > b.prefix;
    if (a.prefix2 != b.prefix2) return m_ascending ? a.prefix2 < b.prefix2 : a.prefix2 > b.prefix2;
    const int c = compare_tails(a, b);
    if (c != 0) return m_ascending ? c < 0 : c > 0;
    return a.row < b.row;
  }

 private:
  int compare_tails(const LUM_SORT_ITEM& a, const LUM_SORT_ITEM& b) const {
    const size_t a_length = a.length > m_skip ? a.length - m_skip : 0;
    const size_t b_length = b.length > m_skip ? b.length - m_skip : 0;
    const size_t common = std::min(a_length, b_length);
    if (common > 0) {
      const int c = std::memcmp(m_chunks[a.chunk].keys.data() + a.offset + m_skip,
                                m_chunks[b.chunk].keys.data() + b.offset + m_skip, common);
      if (c != 0) return c;
    }
    return a_length < b_length ? -1 : a_length > b_length ? 1 : 0;
  }

  const std::vector<LUM_SORT_CHUNK>& m_chunks;
  size_t m_skip;
  bool m_ascending;
};

// The length of the prefix that every key shares.
size_t common_prefix(const std::vector<LUM_SORT_CHUNK>& chunks) {
  const char* ref = nullptr;
  size_t common = 0;
  for (const LUM_SORT_CHUNK& chunk : chunks) {
    for (const LUM_SORT_ITEM& item : chunk.items) {
      const char* key = chunk.keys.data() + item.offset;
      if (!ref) {
        ref = key;
        common = item.length;
        continue;
      }
      size_t i = 0;
      const size_t limit = std::min<size_t>(common, item.length);
      while (i < limit && key[i] == ref[i]) ++i;
      common = i;
      if (common == 0) return 0;
    }
  }
  return common;
}

uint64_t key_bytes(const unsigned char* key, size_t length, size_t from) {
  uint64_t bytes = 0;
  for (size_t i = 0; i < 8; ++i) {
    const size_t at = from + i;
    bytes = (bytes << 8) | (at < length ? key[at] : 0u);
  }
  return bytes;
}

void set_prefixes(LUM_SORT_CHUNK* chunk, size_t skip) {
  for (LUM_SORT_ITEM& item : chunk->items) {
    const unsigned char* key = reinterpret_cast<const unsigned char*>(chunk->keys.data()) + item.offset;
    item.prefix = key_bytes(key, item.length, skip);
    item.prefix2 = key_bytes(key, item.length, skip + 8);
  }
}

// Sorts items by order: first into buckets by sixteen bits of their first
// key bytes, taken from the highest bit in which any two items differ (so
// the buckets follow the order, reversed when descending), then each bucket
// on its own. An item moves once to its bucket instead of at every level of
// one big sort, and the buckets' sorts stay within the cache.
void bucket_sort(LUM_SORT_ITEMS* items, const ITEM_ORDER& order, bool ascending) {
  constexpr size_t BUCKETS = 65536;
  if (items->size() < 4 * BUCKETS) {
    std::sort(items->begin(), items->end(), order);
    return;
  }
  uint64_t differ = 0;
  const uint64_t first = items->front().prefix;
  for (const LUM_SORT_ITEM& item : *items) differ |= item.prefix ^ first;
  if (differ == 0) {
    std::sort(items->begin(), items->end(), order);
    return;
  }
  const int top = 63 - __builtin_clzll(differ);
  const int shift = top >= 15 ? top - 15 : 0;
  auto bucket = [shift, ascending](const LUM_SORT_ITEM& item) {
    const size_t b = static_cast<size_t>((item.prefix >> shift) & (BUCKETS - 1));
    return ascending ? b : BUCKETS - 1 - b;
  };
  std::vector<uint32_t> ends(BUCKETS + 1, 0);
  for (const LUM_SORT_ITEM& item : *items) ++ends[bucket(item) + 1];
  for (size_t b = 1; b <= BUCKETS; ++b) ends[b] += ends[b - 1];
  LUM_SORT_ITEMS sorted(items->size());
  std::vector<uint32_t> next(ends.begin(), ends.end() - 1);
  for (const LUM_SORT_ITEM& item : *items) sorted[next[bucket(item)]++] = item;
  LUM_SORT_ITEMS().swap(*items);
  for (size_t b = 0; b < BUCKETS; ++b) {
    if (ends[b + 1] - ends[b] > 1) std::sort(sorted.begin() + ends[b], sorted.begin() + ends[b + 1], order);
  }
  items->swap(sorted);
}

}  // namespace

void* lum_big_allocate(size_t bytes) {
  if (bytes < BIG_BUFFER) {
    void* memory = ::operator new(bytes);
    return memory;
  }
  // A mapping one huge page larger than needed, trimmed to an aligned one.
  const size_t size = mapped_size(bytes);
  void* raw = ::mmap(nullptr, size + HUGE_PAGE, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (raw == MAP_FAILED) throw std::bad_alloc();
  const uintptr_t start = reinterpret_cast<uintptr_t>(raw);
  const uintptr_t aligned = (start + HUGE_PAGE - 1) & ~(uintptr_t{HUGE_PAGE} - 1);
  if (aligned > start) ::munmap(raw, aligned - start);
  const uintptr_t end = start + size + HUGE_PAGE;
  if (end > aligned + size) ::munmap(reinterpret_cast<void*>(aligned + size), end - (aligned + size));
  ::madvise(reinterpret_cast<void*>(aligned), size, MADV_HUGEPAGE);
  return reinterpret_cast<void*>(aligned);
}

void lum_big_free(void* memory, size_t bytes) {
  if (!memory) return;
  if (bytes < BIG_BUFFER) {
    ::operator delete(memory);
    return;
  }
  ::munmap(memory, mapped_size(bytes));
}

bool lum_key_rows(const LUM_TABLE_SOURCE& source, int64_t first, int64_t last, int column, uint32_t chunk_index,
                  LUM_SORT_CHUNK* chunk, const std::atomic<bool>* cancel) {
  const size_t total = static_cast<size_t>(std::max<int64_t>(0, last - first));
  chunk->items.reserve(chunk->items.size() + total);
  const size_t keys_before = chunk->keys.size();
  for (int64_t at = first; at < last; at += FETCH_ROWS) {
    if (cancelled(cancel)) return false;
    const int count = static_cast<int>(std::min<int64_t>(FETCH_ROWS, last - at));
    uint32_t row = static_cast<uint32_t>(at);
    source.visit_column(at, count, column, [&](std::string_view cell) {
      LUM_SORT_ITEM item;
      const size_t offset = chunk->keys.size();
      const size_t room = lum_sort_key_room(cell.size());
      if (chunk->keys.capacity() - offset < room) chunk->keys.reserve(std::max(2 * chunk->keys.capacity(), offset + room));
      chunk->keys.resize(offset + room);
      chunk->keys.resize(offset + lum_write_sort_key(cell, chunk->keys.data() + offset));
      item.offset = static_cast<uint32_t>(offset);
      item.length = static_cast<uint32_t>(chunk->keys.size() - offset);
      item.row = row++;
      item.chunk = chunk_index;
      chunk->items.push_back(item);
    });
    // Rows the source could not give sort as empty cells.
    for (; row < static_cast<uint32_t>(at + count); ++row) {
      LUM_SORT_ITEM item;
      item.offset = static_cast<uint32_t>(chunk->keys.size());
      item.row = row;
      item.chunk = chunk_index;
      chunk->items.push_back(item);
    }
    // Once the first rows show how long keys are, room for all of them is
    // taken at once rather than by doubling (copies of a large buffer).
    if (at == first && total > static_cast<size_t>(count)) {
      const size_t per_row = (chunk->keys.size() - keys_before) / static_cast<size_t>(count) + 1;
      chunk->keys.reserve(chunk->keys.size() + per_row * (total - static_cast<size_t>(count)) * 9 / 8);
    }
  }
  return true;
}

std::vector<uint32_t> lum_sort_chunks(std::vector<LUM_SORT_CHUNK>& chunks, bool ascending,
                                      const std::atomic<bool>* cancel, std::vector<bool>* group_starts) {
  const size_t skip = common_prefix(chunks);
  const ITEM_ORDER order(chunks, skip, ascending);
  auto sort_chunk = [&order, skip, ascending](LUM_SORT_CHUNK* chunk) {
    set_prefixes(chunk, skip);
    bucket_sort(&chunk->items, order, ascending);
  };
  std::vector<std::thread> threads;
  for (size_t i = 1; i < chunks.size(); ++i) threads.emplace_back(sort_chunk, &chunks[i]);
  if (!chunks.empty()) sort_chunk(&chunks[0]);
  for (std::thread& thread : threads) thread.join();
  if (cancelled(cancel)) return {};

  LUM_SORT_ITEMS merged;
  for (LUM_SORT_CHUNK& chunk : chunks) {
    if (merged.empty()) {
      merged.swap(chunk.items);
      continue;
    }
    LUM_SORT_ITEMS next;
    next.reserve(merged.size() + chunk.items.size());
    std::merge(merged.begin(), merged.end(), chunk.items.begin(), chunk.items.end(), std::back_inserter(next), order);
    merged.swap(next);
    LUM_SORT_ITEMS().swap(chunk.items);
  }
  std::vector<uint32_t> rows(merged.size());
  for (size_t i = 0; i < merged.size(); ++i) rows[i] = merged[i].row;
  if (group_starts) {
    group_starts->assign(merged.size(), false);
    for (size_t i = 0; i < merged.size(); ++i) (*group_starts)[i] = i == 0 || !order.same_key(merged[i - 1], merged[i]);
  }
  return rows;
}

std::vector<uint32_t> lum_reverse_sort_order(const std::vector<uint32_t>& order, std::vector<bool>* group_starts) {
  std::vector<uint32_t> reversed;
  std::vector<bool> starts;
  if (!group_starts || group_starts->size() != order.size()) return reversed;
  reversed.reserve(order.size());
  starts.reserve(order.size());
  size_t end = order.size();
  while (end > 0) {
    size_t begin = end - 1;
    while (begin > 0 && !(*group_starts)[begin]) --begin;
    for (size_t i = begin; i < end; ++i) {
      reversed.push_back(order[i]);
      starts.push_back(i == begin);
    }
    end = begin;
  }
  group_starts->swap(starts);
  return reversed;
}
