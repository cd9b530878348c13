// The stored forms the writer composes without the codec's general helpers
// must be byte for byte what those helpers give: readers and older files
// depend on them.
#include "rdb/rdb_codec.hh"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using rdb_internal::encode_properties;

// Values with the characters that need escapes, and keys that sort around
// the ones merged in.
const std::vector<std::map<std::string, std::string>> kPropertySets = {
    {},
    {{"chart_type", "2"}, {"x_axis", "Delay\\Type"}, {"y_axis", "Delay\n(ps)"}},
    {{"x_label", "a=b"}, {"x_scale", "1"}, {"x_unit", "\\n"}, {"y_label", "\n\n\\"}},
    {{"path", "p"}, {"rows", "old"}, {"zeta", ""}},
    {{"a", "1"}, {"page_rows", "old"}, {"q", "\\"}},
};

TEST(RDB_CODEC, PropertiesPutOneByOneEqualTheEncodedMap) {
  for (const auto& properties : kPropertySets) {
    std::string direct;
    for (const auto& [key, value] : properties)
      rdb_internal::put_property(direct, key, value);
    EXPECT_EQ(direct, encode_properties(properties));
    EXPECT_EQ(rdb_internal::decode_properties(direct), properties);
  }
}

TEST(RDB_CODEC, MergedPropertiesEqualTheEncodedMergedMap) {
  const std::pair<std::string_view, std::string_view> counts[2] = {{"page_rows", "256"},
                                                                   {"rows", "12\\\n"}};
  for (const auto& properties : kPropertySets) {
    std::map<std::string, std::string> merged = properties;
    merged["page_rows"] = "256";
    merged["rows"] = "12\\\n";
    std::string direct = "kept";  // merge_properties appends
    rdb_internal::merge_properties(direct, encode_properties(properties), counts, 2);
    EXPECT_EQ(direct, "kept" + encode_properties(merged));
  }
}

TEST(RDB_CODEC, RowsWrittenInPlaceDecodeAsWritten) {
  // Cells of every length the copy treats apart (short ones are copied in
  // overlapping pieces), one with a NUL, and one over 127 bytes.
  const std::string alphabet = "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::vector<std::string> texts;
  for (size_t size : {0, 1, 3, 4, 5, 7, 8, 9, 15, 16, 17, 40})
    texts.push_back(alphabet.substr(size % 7, size));
  texts.push_back(std::string("u_core/\0x", 9));
  texts.push_back(std::string(300, 'w') + "end");
  std::vector<std::string_view> cells(texts.begin(), texts.end());
  const size_t columns = 300;
  const RDB_CELL_COLOR colors[2] = {{0, 0xff0000, RDB_NO_COLOR}, {200, 1, 2}};
  // A page of two rows: the second has fewer cells than columns and a colour
  // whose column needs a two-byte varint.
  std::string page(1, '\2');
  for (size_t row = 0; row < 2; ++row) {
    size_t count = row ? 3 : cells.size();
    size_t size = rdb_internal::encoded_row_size(cells.data(), count, columns, colors, row + 1);
    size_t start = page.size();
    page.resize(start + size + 8, '#');  // the bytes after must stay as they are
    char* end = rdb_internal::encode_row(page.data() + start, cells.data(), count, columns,
                                         colors, row + 1);
    EXPECT_EQ(end - (page.data() + start), static_cast<ptrdiff_t>(size));
    EXPECT_EQ(page.substr(start + size), std::string(8, '#'));
    page.resize(start + size);
  }
  std::vector<RDB_TABLE_ROW> rows;
  ASSERT_TRUE(rdb_internal::decode_page(page, columns, rows));
  ASSERT_EQ(rows.size(), 2u);
  for (size_t c = 0; c < cells.size(); ++c)
    EXPECT_EQ(rows[0].cells[c], texts[c]) << c;
  EXPECT_EQ(rows[0].cells[cells.size()], "");
  EXPECT_EQ(rows[1].cells[2], texts[2]);
  EXPECT_EQ(rows[1].cells[3], "");
  ASSERT_EQ(rows[1].colors.size(), 2u);
  EXPECT_EQ(rows[1].colors[1].column, 200);
  EXPECT_EQ(rows[1].colors[1].background, 2u);
}

}  // namespace
