#include "rdb/rdb_codec.hh"

#include <charconv>
#include <cmath>
#include <cstring>

namespace rdb_internal {

const char* const RDB_SCHEMA_SQL = R"sql(
CREATE TABLE rdb_meta(
  key TEXT PRIMARY KEY,
  value TEXT NOT NULL);
CREATE TABLE rdb_panel(
  panel_id INTEGER PRIMARY KEY AUTOINCREMENT,
  name TEXT NOT NULL UNIQUE,
  position INTEGER NOT NULL,
  enabled INTEGER NOT NULL DEFAULT 1,
  command TEXT NOT NULL DEFAULT '',
  first_object INTEGER,
  last_object INTEGER);
CREATE TABLE rdb_object(
  object_id INTEGER PRIMARY KEY AUTOINCREMENT,
  panel_id INTEGER NOT NULL,
  parent_id INTEGER,
  position INTEGER NOT NULL,
  kind INTEGER NOT NULL,
  name TEXT NOT NULL,
  enabled INTEGER NOT NULL DEFAULT 1,
  properties TEXT NOT NULL DEFAULT '',
  titles BLOB,
  inline_rows BLOB);
CREATE TABLE rdb_text(
  object_id INTEGER PRIMARY KEY,
  body TEXT NOT NULL);
CREATE TABLE rdb_command(
  object_id INTEGER NOT NULL,
  cmd INTEGER NOT NULL,
  gui_name TEXT NOT NULL,
  template TEXT NOT NULL,
  PRIMARY KEY(object_id, cmd)) WITHOUT ROWID;
CREATE TABLE rdb_row_page(
  page_key INTEGER PRIMARY KEY,
  rows BLOB NOT NULL);
)sql";

const char* const RDB_UPGRADE_1_TO_2_SQL = R"sql(
ALTER TABLE rdb_object ADD COLUMN titles BLOB;
ALTER TABLE rdb_object ADD COLUMN inline_rows BLOB;
)sql";

const char* const RDB_UPGRADE_1_TO_2_FINISH_SQL = R"sql(
DROP TABLE rdb_column;
PRAGMA user_version = 2;
)sql";

// The ranges are filled while the old index still exists to find each
// panel's objects.
const char* const RDB_UPGRADE_2_TO_3_SQL = R"sql(
ALTER TABLE rdb_panel ADD COLUMN first_object INTEGER;
ALTER TABLE rdb_panel ADD COLUMN last_object INTEGER;
UPDATE rdb_panel SET (first_object, last_object) =
  (SELECT min(object_id), max(object_id) FROM rdb_object o WHERE o.panel_id = rdb_panel.panel_id);
DROP INDEX IF EXISTS rdb_object_by_panel;
PRAGMA user_version = 3;
)sql";

void put_varint(std::string& out, uint64_t value) {
  while (value >= 0x80) {
    out.push_back(static_cast<char>((value & 0x7f) | 0x80));
    value >>= 7;
  }
  out.push_back(static_cast<char>(value));
}

char* put_varint(char* out, uint64_t value) {
  while (value >= 0x80) {
    *out++ = static_cast<char>((value & 0x7f) | 0x80);
    value >>= 7;
  }
  *out++ = static_cast<char>(value);
  return out;
}

static size_t varint_size(uint64_t value) {
  size_t size = 1;
  while (value >= 0x80) {
    value >>= 7;
    ++size;
  }
  return size;
}

static char* put_u32(char* out, uint32_t value) {
  out[0] = static_cast<char>(value);
  out[1] = static_cast<char>(value >> 8);
  out[2] = static_cast<char>(value >> 16);
  out[3] = static_cast<char>(value >> 24);
  return out + 4;
}

namespace {
struct READER {
  const unsigned char* p;
  const unsigned char* end;
  bool ok = true;

  uint64_t varint() {
    uint64_t value = 0;
    for (int shift = 0; shift < 64; shift += 7) {
      if (p >= end) {
        ok = false;
        return 0;
      }
      unsigned char byte = *p++;
      value |= static_cast<uint64_t>(byte & 0x7f) << shift;
      if (!(byte & 0x80))
        return value;
    }
    ok = false;
    return 0;
  }
  uint32_t u32() {
    if (end - p < 4) {
      ok = false;
      return 0;
    }
    uint32_t value = p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<uint32_t>(p[3]) << 24);
    p += 4;
    return value;
  }
};
}  // namespace

std::string encode_titles(const std::vector<std::string>& titles) {
  std::string out;
  put_varint(out, titles.size());
  for (const std::string& title : titles) {
    put_varint(out, title.size());
    out += title;
  }
  return out;
}

bool decode_titles(std::string_view blob, std::vector<std::string>& titles) {
  READER in{reinterpret_cast<const unsigned char*>(blob.data()),
            reinterpret_cast<const unsigned char*>(blob.data()) + blob.size()};
  uint64_t count = in.varint();
  if (!in.ok || count > blob.size())
    return false;
  titles.clear();
  titles.reserve(count);
  for (uint64_t i = 0; i < count; ++i) {
    uint64_t size = in.varint();
    if (!in.ok || size > static_cast<uint64_t>(in.end - in.p))
      return false;
    titles.emplace_back(reinterpret_cast<const char*>(in.p), size);
    in.p += size;
  }
  return in.p == in.end;
}

// Most cells are a few bytes long: two fixed-size copies that may overlap
// are cheaper for them than a call to memcpy.
static inline void copy_cell(char* out, const char* text, size_t size) {
  if (size >= 8 && size <= 16) {
    std::memcpy(out, text, 8);
    std::memcpy(out + size - 8, text + size - 8, 8);
  } else if (size >= 4 && size < 8) {
    std::memcpy(out, text, 4);
    std::memcpy(out + size - 4, text + size - 4, 4);
  } else if (size < 4) {
    for (size_t i = 0; i < size; ++i)
      out[i] = text[i];
  } else {
    std::memcpy(out, text, size);
  }
}

size_t encoded_row_size(const std::string_view* cells, size_t cell_count, size_t columns,
                        const RDB_CELL_COLOR* colors, size_t color_count) {
  size_t size = varint_size(color_count);
  for (size_t c = 0; c < columns; ++c)
    size += c < cell_count ? varint_size(cells[c].size()) + cells[c].size() : 1;
  for (size_t i = 0; i < color_count; ++i)
    size += varint_size(static_cast<uint64_t>(colors[i].column)) + 8;
  return size;
}

char* encode_row(char* out, const std::string_view* cells, size_t cell_count, size_t columns,
                 const RDB_CELL_COLOR* colors, size_t color_count) {
  for (size_t c = 0; c < columns; ++c) {
    if (c < cell_count) {
      out = put_varint(out, cells[c].size());
      copy_cell(out, cells[c].data(), cells[c].size());
      out += cells[c].size();
    } else {
      *out++ = 0;
    }
  }
  out = put_varint(out, color_count);
  for (size_t i = 0; i < color_count; ++i) {
    out = put_varint(out, static_cast<uint64_t>(colors[i].column));
    out = put_u32(out, colors[i].foreground);
    out = put_u32(out, colors[i].background);
  }
  return out;
}

bool decode_page(std::string_view blob, size_t columns, std::vector<RDB_TABLE_ROW>& rows) {
  READER in{reinterpret_cast<const unsigned char*>(blob.data()),
            reinterpret_cast<const unsigned char*>(blob.data()) + blob.size()};
  uint64_t count = in.varint();
  if (!in.ok || count > blob.size())
    return false;
  rows.clear();
  rows.resize(count);
  for (auto& row : rows) {
    row.cells.resize(columns);
    for (auto& cell : row.cells) {
      uint64_t size = in.varint();
      if (!in.ok || size > static_cast<uint64_t>(in.end - in.p))
        return false;
      cell.assign(reinterpret_cast<const char*>(in.p), size);
      in.p += size;
    }
    uint64_t colored = in.varint();
    if (!in.ok || colored > columns)
      return false;
    row.colors.resize(colored);
    for (auto& color : row.colors) {
      color.column = static_cast<int>(in.varint());
      color.foreground = in.u32();
      color.background = in.u32();
    }
    if (!in.ok)
      return false;
  }
  return in.p == in.end;
}

bool decode_page_column(std::string_view blob, size_t columns, size_t column, int64_t first, int64_t last,
                        const std::function<void(std::string_view)>& visit) {
  READER in{reinterpret_cast<const unsigned char*>(blob.data()),
            reinterpret_cast<const unsigned char*>(blob.data()) + blob.size()};
  const uint64_t count = in.varint();
  if (!in.ok || count > blob.size() || column >= columns)
    return false;
  if (first < 0)
    first = 0;
  if (last > static_cast<int64_t>(count))
    last = static_cast<int64_t>(count);
  for (int64_t row = 0; row < last; ++row) {
    for (size_t c = 0; c < columns; ++c) {
      const uint64_t size = in.varint();
      if (!in.ok || size > static_cast<uint64_t>(in.end - in.p))
        return false;
      if (c == column && row >= first)
        visit(std::string_view(reinterpret_cast<const char*>(in.p), size));
      in.p += size;
    }
    const uint64_t colored = in.varint();
    if (!in.ok || colored > columns)
      return false;
    for (uint64_t i = 0; i < colored; ++i) {
      in.varint();
      in.u32();
      in.u32();
    }
    if (!in.ok)
      return false;
  }
  return true;
}

void put_property(std::string& out, std::string_view key, std::string_view value) {
  out += key;
  out += '=';
  for (char ch : value) {
    if (ch == '\\')
      out += "\\\\";
    else if (ch == '\n')
      out += "\\n";
    else
      out += ch;
  }
  out += '\n';
}

std::string encode_properties(const std::map<std::string, std::string>& properties) {
  std::string out;
  for (const auto& [key, value] : properties)
    put_property(out, key, value);
  return out;
}

void merge_properties(std::string& out, std::string_view encoded,
                      const std::pair<std::string_view, std::string_view>* extra, size_t count) {
  size_t next = 0;
  size_t pos = 0;
  while (pos < encoded.size()) {
    size_t eol = encoded.find('\n', pos);
    eol = eol == std::string_view::npos ? encoded.size() : eol + 1;
    std::string_view line = encoded.substr(pos, eol - pos);
    pos = eol;
    std::string_view key = line.substr(0, line.find('='));
    while (next < count && extra[next].first < key) {
      put_property(out, extra[next].first, extra[next].second);
      ++next;
    }
    if (next < count && extra[next].first == key) {
      put_property(out, extra[next].first, extra[next].second);
      ++next;
      continue;
    }
    out += line;
  }
  for (; next < count; ++next)
    put_property(out, extra[next].first, extra[next].second);
}

std::map<std::string, std::string> decode_properties(std::string_view text) {
  std::map<std::string, std::string> properties;
  size_t pos = 0;
  while (pos < text.size()) {
    size_t eol = text.find('\n', pos);
    if (eol == std::string_view::npos)
      eol = text.size();
    std::string_view line = text.substr(pos, eol - pos);
    pos = eol + 1;
    size_t eq = line.find('=');
    if (eq == std::string_view::npos)
      continue;
    std::string value;
    for (size_t i = eq + 1; i < line.size(); ++i) {
      if (line[i] == '\\' && i + 1 < line.size()) {
        ++i;
        value += line[i] == 'n' ? '\n' : line[i];
      } else {
        value += line[i];
      }
    }
    properties.emplace(std::string(line.substr(0, eq)), std::move(value));
  }
  return properties;
}

std::string format_double(double value) {
  // Shortest form that reads back the same, never in exponent form for the
  // magnitudes of times and counts (100000 stays "100000", not "1e+05").
  char buffer[64];
  const bool plain = std::isfinite(value) && std::fabs(value) < 1e15 &&
                     (value == 0 || std::fabs(value) >= 1e-9);
  auto result = plain ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed)
                      : std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

}  // namespace rdb_internal
