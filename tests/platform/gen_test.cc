// Number-aware comparison, the integer reader and the path helpers.
#include "platform/gen.hh"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

int sign(int value) { return (value > 0) - (value < 0); }

TEST(GenLexcmp, PairsCompareNaturally) {
  const struct {
    const char* a;
    const char* b;
    int expected;
  } cases[] = {
      {"reg2", "reg10", -1},
      {"a1b2", "a1b10", -1},
      {"a10", "a9", 1},
      {"data[2]", "data[10]", -1},
      {"x7", "x007", -1},  // equal value: the shorter spelling first
      {"abc", "ABD", -1},  // case-insensitive first
      {"ABC", "abc", -1},  // case only breaks ties: upper first
      {"ab", "a", 1},
      {"", "a", -1},
      {"a", "1", 1},  // digits sort before letters, as in plain text
      {"a 1", "a1", -1},
      // Slack columns: signed decimals compare by value.
      {"-0.5", "0.25", -1},
      {"-5", "-3", -1},
      {"0.25", "0.3", -1},
      {"1.10", "1.1", 1},   // equal value, longer spelling after
      {"1.5", "1.25", 1},   // a fraction, not a second number
      {"-0", "0", 1},
      {"-1.0", "-1", 1},
      {"slack -0.5 ns", "slack 0.25 ns", -1},
      // A dash inside a name is not a sign.
      {"a-1", "a-2", -1},
      // Digit runs far beyond any integer type.
      {"n123456789012345678901234567890", "n123456789012345678901234567891", -1},
      {"n00000000000000000000000000000000001", "n2", -1},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(sign(gen_lexcmp(c.a, c.b)), c.expected) << c.a << " vs " << c.b;
    EXPECT_EQ(sign(gen_lexcmp(c.b, c.a)), -c.expected) << c.b << " vs " << c.a;
  }
  EXPECT_EQ(gen_lexcmp(nullptr, ""), 0);
}

// Sorting relies on a strict weak ordering: check it over a mixed set.
TEST(GenLexcmp, OrdersMixedTextsConsistently) {
  std::vector<std::string> texts = {"reg10", "Reg2",  "reg2",  "-1.5", "0.25", "-0.25", "10",
                                    "9",     "x-1",   "x -1",  "x",    "",     "a1b10", "a1b2",
                                    "007",   "7",     "-0",    "0",    "1.10", "1.1",   "-",
                                    "-x",    "-5",    "(3)",   "a.5",  "a5",   "A5",    "1e3"};
  for (const auto& a : texts)
    for (const auto& b : texts) {
      ASSERT_EQ(sign(gen_lexcmp(a.c_str(), b.c_str())), -sign(gen_lexcmp(b.c_str(), a.c_str())))
          << a << " / " << b;
      if (a != b) {
        ASSERT_NE(gen_lexcmp(a.c_str(), b.c_str()), 0) << a << " / " << b;
      }
      for (const auto& c : texts) {
        if (gen_lexcmp(a.c_str(), b.c_str()) < 0 && gen_lexcmp(b.c_str(), c.c_str()) < 0) {
          ASSERT_LT(gen_lexcmp(a.c_str(), c.c_str()), 0) << a << " < " << b << " < " << c;
        }
      }
    }
}

TEST(GenAtoi, ReadsSignedNumbersAndAdvancesPastTheDigits) {
  const struct {
    const char* text;
    int value;
    size_t consumed;
  } cases[] = {
      {"123abc", 123, 3},   {"-42", -42, 3},   {"+7x", 7, 2},        {"007", 7, 3},
      {"abc", 0, 0},        {"-x", 0, 0},      {"", 0, 0},           {"99999999999999999999", 2147483647, 20},
      {"-99999999999999999999", -2147483647 - 1, 21},
  };
  for (const auto& c : cases) {
    const char* p = c.text;
    EXPECT_EQ(gen_atoi(&p), c.value) << c.text;
    EXPECT_EQ(static_cast<size_t>(p - c.text), c.consumed) << c.text;
  }
}

TEST(GenPaths, ModulePathIsTheProgramsDirectoryWithASlash) {
  std::string path = gen_get_module_path();
  ASSERT_FALSE(path.empty());
  EXPECT_EQ(path.back(), '/');
  EXPECT_EQ(std::filesystem::canonical(path), std::filesystem::canonical(CHRONEL_BIN_DIR));
  // Not installed: misc files come from the source tree.
  EXPECT_EQ(gen_get_common_misc_fullpath("lum_menu.xml"), std::string(CHRONEL_MISC_DIR) + "/lum_menu.xml");
}

TEST(GenPaths, FindFileTakesTheFirstDirectoryHoldingIt) {
  auto base = std::filesystem::temp_directory_path() / ("chronel_gen_" + std::to_string(getpid()));
  std::filesystem::create_directories(base / "one");
  std::filesystem::create_directories(base / "two");
  std::ofstream(base / "two" / "f.txt") << "x";
  std::ofstream(base / "one" / "g.txt") << "x";
  std::vector<std::string> dirs = {(base / "missing").string(), (base / "one").string() + "/",
                                   (base / "two").string()};
  EXPECT_EQ(gen_find_file("f.txt", dirs), (base / "two" / "f.txt").string());
  EXPECT_EQ(gen_find_file("g.txt", dirs), (base / "one" / "g.txt").string());
  EXPECT_EQ(gen_find_file("h.txt", dirs), "");
  EXPECT_EQ(gen_find_file((base / "two" / "f.txt").string(), {}), (base / "two" / "f.txt").string());
  std::filesystem::remove_all(base);
}

}  // namespace
