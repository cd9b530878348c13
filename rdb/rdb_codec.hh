// The stored form of a report database, private to the library: the schema,
// its version, and the packing of table rows into pages and of object
// properties into text. docs/report-database.md describes the same in prose.
#pragma once

#include "rdb/rdb_types.hh"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rdb_internal {

// PRAGMA application_id of every report database ("CRDB").
constexpr int32_t RDB_APPLICATION_ID = 0x43524442;
// PRAGMA user_version: the schema version this library writes and the
// highest it reads. Version 1 kept column titles as one rdb_column row per
// column and every table's rows in rdb_row_page; version 2 packs the titles
// into rdb_object.titles and keeps a small one-page table's rows in
// rdb_object.inline_rows. Version 3 records each panel's range of object ids
// in rdb_panel.first_object and last_object instead of indexing rdb_object by
// panel: keeping that index cost every object of a large panel an extra
// b-tree insert and delete, and only the writer ever searched it. Readers
// read all three; the writer upgrades an older file in place before it
// writes.
constexpr int RDB_SCHEMA_VERSION = 3;
// A table whose rows fit in one page blob of at most this many bytes keeps
// them in its object row: a path panel's many small tables then cost one
// insert each instead of two.
constexpr size_t RDB_INLINE_ROWS_BYTES = 4096;
// Rows per stored page unless the writer is told otherwise.
constexpr int RDB_DEFAULT_PAGE_ROWS = 256;

extern const char* const RDB_SCHEMA_SQL;
// Turns a version 1 file into version 2, minus the moving of the titles,
// which the writer does row by row between the two halves.
extern const char* const RDB_UPGRADE_1_TO_2_SQL;
extern const char* const RDB_UPGRADE_1_TO_2_FINISH_SQL;
// Turns a version 2 file into version 3.
extern const char* const RDB_UPGRADE_2_TO_3_SQL;

// Row pages live in one rowid table; the rowid packs the table object's id
// and the page number, so a page is one b-tree lookup and a table's pages are
// one contiguous range.
inline int64_t page_key(int64_t object_id, int64_t page) { return (object_id << 32) | page; }

// One row: per column a varint length and the bytes, then a varint count of
// coloured cells and per coloured cell a varint column and the foreground and
// background as 4-byte little-endian values. Missing cells are written
// empty. The writer sizes a row first and then writes it straight into its
// table's page buffer: encode_row writes exactly encoded_row_size bytes at
// `out` and returns the end.
size_t encoded_row_size(const std::string_view* cells, size_t cell_count, size_t columns,
                        const RDB_CELL_COLOR* colors, size_t color_count);
char* encode_row(char* out, const std::string_view* cells, size_t cell_count, size_t columns,
                 const RDB_CELL_COLOR* colors, size_t color_count);
// Decodes a page blob (a varint row count, then the rows). False when the
// blob is malformed.
bool decode_page(std::string_view blob, size_t columns, std::vector<RDB_TABLE_ROW>& rows);
// Calls visit(text) with the cell in `column` of the page's rows first ..
// last-1 (clipped to the page), in order, without copying the texts. False
// when the blob is malformed (visit may have been called for some rows).
bool decode_page_column(std::string_view blob, size_t columns, size_t column, int64_t first, int64_t last,
                        const std::function<void(std::string_view)>& visit);
void put_varint(std::string& out, uint64_t value);
// Writes the varint at `out` (at most 10 bytes) and returns the end.
char* put_varint(char* out, uint64_t value);
// Column titles packed into one blob: a varint count, then per title a
// varint byte length and the UTF-8 bytes. Decoding returns false for a
// malformed blob.
std::string encode_titles(const std::vector<std::string>& titles);
bool decode_titles(std::string_view blob, std::vector<std::string>& titles);

// Object properties are stored as "key=value" lines; "\" and newlines in
// values are escaped as "\\" and "\n".
std::string encode_properties(const std::map<std::string, std::string>& properties);
std::map<std::string, std::string> decode_properties(std::string_view text);
// The same text without a map: put_property appends one line as
// encode_properties writes it (the caller appends keys in sorted order), and
// merge_properties appends `encoded` with the `count` lines of `extra`
// (sorted by key) merged in key order, a key of `extra` replacing the same
// key of `encoded`, as if both had gone through one map.
void put_property(std::string& out, std::string_view key, std::string_view value);
void merge_properties(std::string& out, std::string_view encoded,
                      const std::pair<std::string_view, std::string_view>* extra, size_t count);

// Shortest text that reads back as the same double.
std::string format_double(double value);

}  // namespace rdb_internal
