// The seeded random fuzz driver the fuzz tests share: a target starts from
// the files of its corpus folder and then runs mutated inputs (a fixed seed,
// so a failure repeats) for CHRONEL_FUZZ_SECONDS seconds (default 3).
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace chronel_fuzz {

inline std::vector<std::string> corpus(const std::string &corpus_dir, const std::string &target)
{
  std::vector<std::string> seeds;
  std::filesystem::path dir = std::filesystem::path(corpus_dir) / target;
  for (const auto &entry : std::filesystem::directory_iterator(dir)) {
    std::ifstream in(entry.path(), std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    seeds.push_back(text.str());
  }
  return seeds;
}

// One mutation of text: flip, insert, delete or repeat bytes, or splice in
// a piece of another seed or one of the tokens that readers treat specially.
inline std::string mutate(std::string text, const std::vector<std::string> &seeds, std::mt19937 &random)
{
  static const char *const tokens[] = {"{", "}", "\"", "[", "]", "\\", "\n", "",  // a NUL byte, inserted below
                                       "*D_NET x 1\n", "*END\n", "module m(a);\n", "endmodule\n",
                                       "[99999999999999999999:0]", "_0000000000000010_p_Pin",
                                       "1e999", "nan", "= ", "#", ";", "(*", "*)", "//", "/*"};
  int rounds = 1 + static_cast<int>(random() % 4);
  for (int r = 0; r < rounds; ++r) {
    size_t at = text.empty() ? 0 : random() % (text.size() + 1);
    switch (random() % 6) {
    case 0:
      if (!text.empty())
        text[at % text.size()] ^= static_cast<char>(1u << (random() % 8));
      break;
    case 1:
      text.insert(at, 1, static_cast<char>(random() % 256));
      break;
    case 2:
      if (!text.empty())
        text.erase(at % text.size(), 1 + random() % 16);
      break;
    case 3: {
      const std::string &other = seeds[random() % seeds.size()];
      size_t from = other.empty() ? 0 : random() % other.size();
      text.insert(at, other.substr(from, random() % 64));
      break;
    }
    case 4: {
      size_t which = random() % (sizeof tokens / sizeof tokens[0]);
      text.insert(at, which == 7 ? std::string(1, '\0') : std::string(tokens[which]));
      break;
    }
    default:
      if (!text.empty() && text.size() < 100000) {
        size_t from = at % text.size();
        text.insert(at, text.substr(from, 1 + random() % 32));
      }
    }
  }
  return text;
}

// Runs check on every seed and then on mutated seeds until the time is up;
// returns the number of inputs tried.
inline long run_target(const std::string &corpus_dir, const std::string &target, const std::function<void(const std::string &)> &check)
{
  std::vector<std::string> seeds = corpus(corpus_dir, target);
  EXPECT_FALSE(seeds.empty()) << "no corpus for " << target;
  if (seeds.empty())
    return 0;
  const char *env = std::getenv("CHRONEL_FUZZ_SECONDS");
  double seconds = env ? std::atof(env) : 3.0;
  std::mt19937 random(20261123);
  auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  long tried = 0;
  for (const std::string &seed : seeds) {
    check(seed);
    ++tried;
  }
  std::string current = seeds.front();
  while (std::chrono::steady_clock::now() < end && !::testing::Test::HasFailure()) {
    current = random() % 8 == 0 ? seeds[random() % seeds.size()] : mutate(current, seeds, random);
    check(current);
    ++tried;
  }
  std::printf("%s: %ld inputs\n", target.c_str(), tried);
  return tried;
}

} // namespace chronel_fuzz
