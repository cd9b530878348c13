// Seeded random fuzzing of the engine's readers of untrusted text: the
// command assembler, the key = value reader of project files, the Verilog
// and SPEF pre-scans and the object-handle finder. Inputs are the corpus
// files mutated by a fixed-seed generator (so a failure repeats), each
// target for a bounded time; every input must be answered without a crash
// and with the invariants each reader promises.
#include "netlist/InputChecks.hh"
#include "project/KeyValueFile.hh"
#include "shell/CommandAssembler.hh"
#include "shell/HandleWords.hh"

#include "FuzzDriver.hh"

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

using namespace vexa;

namespace {

long run_target(const std::string &target, const std::function<void(const std::string &)> &check)
{
  return chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, target, check);
}

std::vector<std::string> lines_of(const std::string &text)
{
  std::vector<std::string> lines;
  std::string line;
  std::istringstream in(text);
  while (std::getline(in, line))
    lines.push_back(line);
  return lines;
}

} // namespace

TEST(Fuzz, CommandAssemblerHandsOverEveryByteOnceAndNeverANul)
{
  run_target("assembler", [](const std::string &text) {
    CommandAssembler input;
    size_t given = 0, taken = 0;
    std::vector<std::string> lines = lines_of(text);
    for (const std::string &line : lines) {
      bool nul = line.find('\0') != std::string::npos;
      given += line.size();
      if (!input.add(line))
        continue;
      bool refused = input.refused();
      std::string command = input.take();
      EXPECT_EQ(refused, nul) << "a NUL line must be refused, and only such a line";
      EXPECT_EQ(command.find('\0'), std::string::npos);
      EXPECT_FALSE(input.pending());
      if (!refused) {
        EXPECT_TRUE(Tcl_CommandComplete(command.c_str()));
      }
      taken += command.size();
    }
    taken += input.take().size();
    EXPECT_LE(taken, given + lines.size());
  });
}

TEST(Fuzz, KeyValueReaderAnswersEveryTextWithEntriesOrALocatedError)
{
  run_target("keyvalue", [](const std::string &text) {
    for (bool sections : {false, true}) {
      KeyValueFile file;
      std::string error;
      if (parse_key_value_text("p.vpf", text, sections, file, error)) {
        for (const KeyValueEntry &e : file.entries) {
          EXPECT_GE(e.line, 1);
          EXPECT_FALSE(e.key.empty());
        }
      } else {
        EXPECT_EQ(error.rfind("p.vpf", 0), 0u) << error;
      }
    }
  });
}

TEST(Fuzz, VerilogScanAndCycleSearchFinishOnAnyText)
{
  run_target("verilog", [](const std::string &text) {
    ModuleGraph modules;
    std::string fault = scan_verilog(text, modules);
    if (!fault.empty()) {
      EXPECT_NE(fault.find(": "), std::string::npos) << fault;
    }
    std::string cycle = module_cycle(modules);
    if (!cycle.empty()) {
      // The chain ends where it began.
      size_t first = cycle.find(" -> ");
      ASSERT_NE(first, std::string::npos) << cycle;
      std::string head = cycle.substr(0, first);
      EXPECT_EQ(cycle.substr(cycle.size() - head.size()), head) << cycle;
    }
  });
}

TEST(Fuzz, SpefScanNamesALineWithinTheText)
{
  run_target("spef", [](const std::string &text) {
    std::string fault = scan_spef(text);
    if (fault.empty())
      return;
    long line = std::atol(fault.c_str());
    long lines = 1 + static_cast<long>(std::count(text.begin(), text.end(), '\n'));
    EXPECT_GE(line, 1) << fault;
    EXPECT_LE(line, lines) << fault;
  });
}

TEST(Fuzz, HandleWordsAreWholeWordsOfTheText)
{
  run_target("handles", [](const std::string &text) {
    for (const HandleWord &h : handle_words(text)) {
      ASSERT_GE(h.text.data(), text.data());
      ASSERT_LE(h.text.data() + h.text.size(), text.data() + text.size());
      EXPECT_EQ(h.text[0], '_');
      EXPECT_NE(h.text.find("_p_"), std::string_view::npos);
      EXPECT_EQ(h.text.substr(h.text.size() - h.type.size()), h.type);
    }
  });
}
