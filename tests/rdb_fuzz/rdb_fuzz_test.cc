// The report database's blob decoders on damaged blobs: every blob is
// decoded or refused, and what decodes encodes back to a blob that decodes
// the same.
#include "rdb/rdb_codec.hh"

#include "FuzzDriver.hh"

using namespace rdb_internal;

TEST(RdbFuzz, DamagedBlobsDecodeOrAreRefusedAndDecodedTitlesRoundTrip) {
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "codec", [](const std::string& blob) {
    std::vector<std::string> titles;
    if (decode_titles(blob, titles)) {
      std::vector<std::string> again;
      ASSERT_TRUE(decode_titles(encode_titles(titles), again));
      EXPECT_EQ(again, titles);
    }
    for (size_t columns = 1; columns <= 4; ++columns) {
      std::vector<RDB_TABLE_ROW> rows;
      decode_page(blob, columns, rows);
    }
    std::map<std::string, std::string> properties = decode_properties(blob);
    EXPECT_EQ(decode_properties(encode_properties(properties)), properties);
  });
}
