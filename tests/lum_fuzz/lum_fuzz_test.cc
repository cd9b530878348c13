// The table sort comparison on arbitrary cell pairs: it is antisymmetric and
// its sort keys order exactly as it does. Each input is two cells, one a line.
#include "report/lum_lexcmp.hh"

#include "FuzzDriver.hh"

namespace {

int sign(int value) { return (value > 0) - (value < 0); }

}  // namespace

TEST(LumFuzz, LexcmpIsAntisymmetricAndItsKeysAgree) {
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "lexcmp", [](const std::string& text) {
    std::string clean = text;
    clean.erase(std::remove(clean.begin(), clean.end(), '\0'), clean.end());
    size_t cut = clean.find('\n');
    std::string a = clean.substr(0, cut);
    std::string b = cut == std::string::npos ? std::string() : clean.substr(cut + 1);
    int ab = sign(lum_lexcmp(a.c_str(), b.c_str()));
    EXPECT_EQ(ab, -sign(lum_lexcmp(b.c_str(), a.c_str()))) << a << " | " << b;
    EXPECT_EQ(ab, sign(lum_sort_key(a).compare(lum_sort_key(b)))) << a << " | " << b;
    EXPECT_EQ(lum_lexcmp(a.c_str(), a.c_str()), 0) << a;
  });
}
