#include "report/lum_table_sort.hh"

#include "report/lum_lexcmp.hh"

#include <algorithm>
#include <cstring>
#include <thread>

namespace {

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
  const std::string* reference = nullptr;
  size_t reference_offset = 0;
  size_t common = 0;
  for (const LUM_SORT_CHUNK& chunk : chunks) {
    for (const LUM_SORT_ITEM& item : chunk.items) {
      const char* key = chunk.keys.data() + item.offset;
      if (!reference) {
        reference = &chunk.keys;
        reference_offset = item.offset;
        common = item.length;
        continue;
      }
      const char* ref = reference->data() + reference_offset;
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

}  // namespace

bool lum_key_rows(const LUM_TABLE_SOURCE& source, int64_t first, int64_t last, int column, uint32_t chunk_index,
                  LUM_SORT_CHUNK* chunk, const std::atomic<bool>* cancel) {
  std::vector<std::string> cells;
  chunk->items.reserve(chunk->items.size() + static_cast<size_t>(std::max<int64_t>(0, last - first)));
  for (int64_t at = first; at < last; at += FETCH_ROWS) {
    if (cancelled(cancel)) return false;
    const int count = static_cast<int>(std::min<int64_t>(FETCH_ROWS, last - at));
    source.fetch_column(at, count, column, &cells);
    for (int i = 0; i < count; ++i) {
      LUM_SORT_ITEM item;
      item.offset = static_cast<uint32_t>(chunk->keys.size());
      if (i < static_cast<int>(cells.size())) lum_append_sort_key(cells[i], &chunk->keys);
      item.length = static_cast<uint32_t>(chunk->keys.size() - item.offset);
      item.row = static_cast<uint32_t>(at + i);
      item.chunk = chunk_index;
      chunk->items.push_back(item);
    }
  }
  return true;
}

std::vector<uint32_t> lum_sort_chunks(std::vector<LUM_SORT_CHUNK>& chunks, bool ascending,
                                      const std::atomic<bool>* cancel, std::vector<bool>* group_starts) {
  const size_t skip = common_prefix(chunks);
  const ITEM_ORDER order(chunks, skip, ascending);
  auto sort_chunk = [&order, skip](LUM_SORT_CHUNK* chunk) {
    set_prefixes(chunk, skip);
    std::sort(chunk->items.begin(), chunk->items.end(), order);
  };
  std::vector<std::thread> threads;
  for (size_t i = 1; i < chunks.size(); ++i) threads.emplace_back(sort_chunk, &chunks[i]);
  if (!chunks.empty()) sort_chunk(&chunks[0]);
  for (std::thread& thread : threads) thread.join();
  if (cancelled(cancel)) return {};

  std::vector<LUM_SORT_ITEM> merged;
  for (LUM_SORT_CHUNK& chunk : chunks) {
    if (merged.empty()) {
      merged.swap(chunk.items);
      continue;
    }
    std::vector<LUM_SORT_ITEM> next;
    next.reserve(merged.size() + chunk.items.size());
    std::merge(merged.begin(), merged.end(), chunk.items.begin(), chunk.items.end(), std::back_inserter(next), order);
    merged.swap(next);
    std::vector<LUM_SORT_ITEM>().swap(chunk.items);
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
