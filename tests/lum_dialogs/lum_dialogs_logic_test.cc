// Command composition of every constraint dialog (fields in, exact text out,
// double blanks included), the refusals that keep OK disabled, the quoting of
// names, and the name finder's rules and paged search, all without a window.
#include <gtest/gtest.h>

#include <tcl.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/lum_constraint_fields.hh"
#include "dialogs/lum_name_finder_fields.hh"
#include "dialogs/lum_tcl_word.hh"

namespace {

template <typename FIELDS>
struct CASE {
  const char* what;
  std::function<void(FIELDS&)> set;
  const char* expected;
};

template <typename FIELDS>
void check_table(const std::vector<CASE<FIELDS>>& cases) {
  for (const auto& c : cases) {
    FIELDS fields;
    if (c.set) c.set(fields);
    EXPECT_EQ(fields.compose(), c.expected) << c.what;
  }
}

TEST(ClockComposition, CreateClockFollowsItsOptionOrder) {
  using F = LUM_CREATE_CLOCK_FIELDS;
  check_table<F>({
      {"defaults", nullptr, "create_clock -period 10.000"},
      {"two targets are braced",
       [](F& f) { f.name = "clk"; f.rise = "0"; f.fall = "5"; f.targets = "a b"; },
       "create_clock -period 10.000 -name clk -waveform {0 5} {a b}"},
      {"one target as it stands", [](F& f) { f.targets = "clk_in"; }, "create_clock -period 10.000 clk_in"},
      {"a collection command stays unbraced", [](F& f) { f.targets = "[get_ports {a b}]"; },
       "create_clock -period 10.000 [get_ports {a b}]"},
      {"text beginning with a blank stays unbraced", [](F& f) { f.targets = " a b"; },
       "create_clock -period 10.000  a b"},
      {"rise without fall: no waveform", [](F& f) { f.rise = "1"; }, "create_clock -period 10.000"},
      {"fall without rise: no waveform", [](F& f) { f.fall = "1"; }, "create_clock -period 10.000"},
      {"add after the waveform", [](F& f) { f.add = true; f.rise = "0"; f.fall = "2"; },
       "create_clock -period 10.000 -waveform {0 2} -add"},
      {"empty period left out", [](F& f) { f.period.clear(); f.name = "v"; }, "create_clock -name v"},
  });
}

TEST(ClockComposition, GeneratedClockKeepsItsBlanks) {
  using F = LUM_GENERATED_CLOCK_FIELDS;
  check_table<F>({
      {"nothing filled in: empty source and targets", nullptr, "create_generated_clock -source  "},
      {"divide mode in its order",
       [](F& f) {
         f.name = "g"; f.master_clock = "clk"; f.source = "r1/CLK"; f.divide_by = "2"; f.multiply_by = "3";
         f.duty_cycle = "50"; f.phase = "1"; f.offset = "0.5"; f.targets = "r2/Q";
       },
       "create_generated_clock -name g -master_clock clk -source r1/CLK -divide_by 2 -multiply_by 3 -duty_cycle 50"
       " -phase 1 -offset 0.5 r2/Q"},
      {"edges with two empty",
       [](F& f) { f.mode = F::EDGES; f.edges[0] = "1"; f.source = "s"; },
       "create_generated_clock -source s -edges {1  } "},
      {"edge shifts tested on the first only",
       [](F& f) { f.mode = F::EDGES; f.edges[0] = "1"; f.edges[1] = "3"; f.edges[2] = "5"; f.edge_shifts[0] = "0";
                  f.edge_shifts[2] = "2"; f.source = "s"; },
       "create_generated_clock -source s -edges {1 3 5} -edge_shift {0  2} "},
      {"edges mode ignores divide fields", [](F& f) { f.mode = F::EDGES; f.divide_by = "2"; f.source = "s"; },
       "create_generated_clock -source s "},
      {"divide mode ignores edges", [](F& f) { f.edges[0] = "1"; f.source = "s"; }, "create_generated_clock -source s "},
      {"invert then add", [](F& f) { f.invert = true; f.add = true; f.source = "s"; f.targets = "t"; },
       "create_generated_clock -source s -invert -add t"},
  });
  F fresh;
  EXPECT_FALSE(fresh.refusal().empty()) << "an empty source is refused";
  fresh.source = "r1/CLK";
  EXPECT_EQ(fresh.refusal(), "");
}

TEST(ClockComposition, RemoveClockAndNamesThatNeedQuoting) {
  LUM_REMOVE_CLOCK_FIELDS remove;
  EXPECT_EQ(remove.compose(), "remove_clock");
  remove.name = "clk";
  EXPECT_EQ(remove.compose(), "remove_clock -name clk");
  // A literal name with Tcl's special characters reaches the engine intact.
  remove.name = "a b$c[d]";
  EXPECT_EQ(remove.compose(), "remove_clock -name {a b$c[d]}");
  LUM_CREATE_CLOCK_FIELDS create;
  create.name = "[get_clocks x]";
  EXPECT_EQ(create.compose(), "create_clock -period 10.000 -name [get_clocks x]") << "a typed command substitution stays";
}

TEST(LatencyComposition, LatencyAndUncertainty) {
  using L = LUM_CLOCK_LATENCY_FIELDS;
  check_table<L>({
      {"fresh with latency and target", [](L& f) { f.latency = "1"; f.targets = "a"; }, "set_clock_latency -source 1 a"},
      {"late before fall", [](L& f) { f.source = false; f.early_late = LUM_CHOICE_LATE; f.rise_fall = LUM_CHOICE_FALL; },
       "set_clock_latency -late -fall  "},
      {"clock, early, rise", [](L& f) { f.clock = "clk"; f.early_late = LUM_CHOICE_EARLY; f.rise_fall = LUM_CHOICE_RISE;
                                          f.latency = "0.2"; f.targets = "[get_clocks clk]"; },
       "set_clock_latency -clock clk -source -early -rise 0.2 [get_clocks clk]"},
  });
  L refused;
  refused.source = false;
  refused.early_late = LUM_CHOICE_EARLY;
  EXPECT_NE(refused.refusal(), "") << "early without source latency";
  refused.early_late = LUM_CHOICE_EARLY_AND_LATE;
  EXPECT_EQ(refused.refusal(), "");

  using U = LUM_CLOCK_UNCERTAINTY_FIELDS;
  check_table<U>({
      {"fresh with uncertainty", [](U& f) { f.uncertainty = "0.1"; }, "set_clock_uncertainty -setup 0.1"},
      {"both checks and both clocks",
       [](U& f) { f.from_clock = "a"; f.to_clock = "b"; f.hold = true; f.uncertainty = "0.2"; },
       "set_clock_uncertainty -from a -to b -setup -hold 0.2"},
      {"neither check, empty value", [](U& f) { f.setup = false; }, "set_clock_uncertainty "},
  });
}

TEST(DelayComposition, InputOutputAndMinMaxDelays) {
  using D = LUM_IO_DELAY_FIELDS;
  check_table<D>({
      {"fresh input delay", [](D& f) { f.delay = "2"; f.targets = "a"; }, "set_input_delay 2 a"},
      {"output with fall and min",
       [](D& f) { f.input = false; f.clock = "clk"; f.rise_fall = LUM_CHOICE_FALL; f.min_max = LUM_CHOICE_MIN;
                  f.delay = "1.5"; f.targets = "[get_ports out*]"; },
       "set_output_delay -clock clk -fall -min 1.5 [get_ports out*]"},
      {"every flag in order",
       [](D& f) { f.clock = "c"; f.clock_fall = true; f.rise_fall = LUM_CHOICE_RISE; f.min_max = LUM_CHOICE_MAX;
                  f.add_delay = true; f.delay = "1"; f.targets = "x"; },
       "set_input_delay -clock c -clock_fall -rise -max -add_delay 1 x"},
      {"empty delay and targets leave blanks", nullptr, "set_input_delay  "},
  });
  using M = LUM_M_DELAY_FIELDS;
  check_table<M>({
      {"max with all three", [](M& f) { f.path = {"a", "b", "c"}; f.delay = "5"; },
       "set_max_delay -from a -thru b -to c 5"},
      {"min with to only", [](M& f) { f.minimum = true; f.path.to = "c"; f.delay = "0.1"; }, "set_min_delay -to c 0.1"},
      {"nothing", nullptr, "set_max_delay "},
  });
}

TEST(ExceptionComposition, FalsePathAndMulticycle) {
  LUM_FALSE_PATH_FIELDS false_path;
  EXPECT_EQ(false_path.compose(), "set_false_path");
  EXPECT_NE(false_path.refusal(), "") << "no from, through or to";
  for (std::string LUM_PATH_FIELDS::*member : {&LUM_PATH_FIELDS::from, &LUM_PATH_FIELDS::through, &LUM_PATH_FIELDS::to}) {
    LUM_FALSE_PATH_FIELDS one;
    one.path.*member = "x";
    EXPECT_EQ(one.refusal(), "");
  }
  false_path.path = {"[get_clocks a]", "", "[get_clocks b]"};
  EXPECT_EQ(false_path.compose(), "set_false_path -from [get_clocks a] -to [get_clocks b]");

  using P = LUM_MULTICYCLE_PATH_FIELDS;
  check_table<P>({
      {"fresh with multiplier", [](P& f) { f.multiplier = "2"; }, "set_multicycle_path -setup -end 2"},
      {"all four checks in order", [](P& f) { f.hold = true; f.start = true; f.path.from = "a"; f.multiplier = "1"; },
       "set_multicycle_path -from a -setup -hold -start -end 1"},
      {"no checks, empty multiplier", [](P& f) { f.setup = false; f.end = false; }, "set_multicycle_path "},
  });
  P both;
  both.start = true;
  EXPECT_NE(both.refusal(), "") << "start and end together";
  both.end = false;
  EXPECT_EQ(both.refusal(), "");
}

// What the engine's interpreter reads back from a quoted word.
std::string read_back(const std::string& word) {
  Tcl_Interp* interp = Tcl_CreateInterp();
  std::string result;
  if (Tcl_Eval(interp, ("set x " + word).c_str()) == TCL_OK) result = Tcl_GetStringResult(interp);
  else result = "<error: " + std::string(Tcl_GetStringResult(interp)) + ">";
  Tcl_DeleteInterp(interp);
  return result;
}

TEST(TclWords, EveryTextComesBackIntact) {
  for (const std::string text : {"plain", "a b", "$x", "[exit]", "q\"uote", "back\\slash", "{open", "close}", "",
                                  "tail\\", "#hash", "new\nline", "mixed {a} $b [c] \\d \"e\""}) {
    EXPECT_EQ(read_back(lum_tcl_word(text)), text) << lum_tcl_word(text);
  }
  EXPECT_EQ(lum_tcl_word("clk"), "clk") << "plain names stay as typed";
  EXPECT_EQ(lum_tcl_name_word("[get_clocks c]"), "[get_clocks c]");
  EXPECT_EQ(lum_tcl_list({"a", "b c"}), "a {b c}");
}

TEST(NameFinderFields, ExpressionsAndOptions) {
  LUM_NAME_FINDER_FIELDS f;
  f.collection = f.initial_collection();
  EXPECT_EQ(f.collection, "get_keepers");
  EXPECT_EQ(f.sdc_expression(), "[get_keepers *]");
  EXPECT_EQ(f.filter_expression(), "[get_keepers *]");

  f.collection = "get_cells";
  f.no_case = f.hierarchical = f.compatibility_mode = true;
  f.pattern = "u*";
  EXPECT_EQ(f.filter_expression(), "[get_cells -no_case -hierarchical -compatibility_mode u*]");
  f.collection = "get_nets";
  f.normalise();
  EXPECT_FALSE(f.hierarchical);
  EXPECT_FALSE(f.compatibility_mode);
  EXPECT_EQ(f.sdc_expression(), "[get_nets -no_case u*]");

  LUM_NAME_FINDER_FIELDS pins;
  pins.collection = "get_pins";
  pins.selected = {"a|b"};
  EXPECT_EQ(pins.sdc_expression(), "[get_pins a|b]") << "one name: no braces";
  EXPECT_EQ(pins.selected_header(), "1 selected name");
  pins.selected.push_back("c|d");
  EXPECT_EQ(pins.sdc_expression(), "[get_pins {a|b c|d}]");
  EXPECT_EQ(pins.selected_header(), "2 selected names");
  pins.selected.push_back("q[0] x");
  EXPECT_EQ(pins.sdc_expression(), "[get_pins {a|b c|d {q[0] x}}]") << "a name with a blank stays one name";
  EXPECT_EQ(LUM_NAME_FINDER_FIELDS::matches_header(0), "No matches found");
  EXPECT_EQ(LUM_NAME_FINDER_FIELDS::matches_header(3), "3 matches found");
}

TEST(NameFinderFields, MaskCopyAndRemove) {
  LUM_NAME_FINDER_FIELDS f;
  f.collection_mask = (1u << 0) | (1u << 5);  // cells and pins only
  EXPECT_EQ(f.offered_collections(), (std::vector<std::string>{"get_cells", "get_pins"}));
  EXPECT_EQ(f.initial_collection(), "get_cells") << "no get_keepers: the first";
  f.collection_mask = 0;
  EXPECT_EQ(f.initial_collection(), "");

  LUM_NAME_FINDER_FIELDS s;
  s.copy_all({"a", "b"});
  s.copy_all({"a", "b"});
  EXPECT_EQ(s.selected, (std::vector<std::string>{"a", "b", "a", "b"})) << "copy all keeps duplicates";
  LUM_NAME_FINDER_FIELDS one;
  one.copy_one({"b", "a"});
  one.copy_one({"a", "c"});
  EXPECT_EQ(one.selected, (std::vector<std::string>{"b", "a", "c"})) << "copy one never duplicates";
  one.remove_rows({2, 0, 2});
  EXPECT_EQ(one.selected, (std::vector<std::string>{"a"}));
}

TEST(NameFinderFields, SortAndGlobFilter) {
  std::vector<std::string> names = {"r10", "r2", "R2", "a", "r1"};
  lum_sort_names(names);
  EXPECT_EQ(names, (std::vector<std::string>{"a", "r1", "R2", "r2", "r10"}));
  EXPECT_TRUE(lum_name_matches("reg[3]/Q", "reg\\[3\\]/*", false));
  EXPECT_FALSE(lum_name_matches("REG1", "reg*", false));
  EXPECT_TRUE(lum_name_matches("REG1", "reg*", true));
}

// A fake engine for the paged search: answers the count and each page from a list.
struct FAKE_ENGINE {
  std::vector<std::string> names;
  std::vector<std::string> commands;
  bool fail_count = false;
  std::vector<std::string> run(const std::string& command) {
    commands.push_back(command);
    if (command.rfind("llength", 0) == 0) {
      if (fail_count) return {};
      return {std::to_string(names.size())};
    }
    size_t first = 0, last = 0;
    if (std::sscanf(command.c_str(), "foreach_in_collection a [lrange $::lum_name_finder_matches %zu %zu]", &first,
                    &last) == 2) {
      std::vector<std::string> page;
      for (size_t i = first; i <= last && i < names.size(); ++i) page.push_back(names[i]);
      return page;
    }
    return {};
  }
};

TEST(NameFinderSearch, PagesCapAndErrors) {
  FAKE_ENGINE engine;
  for (int i = 0; i < 25; ++i) engine.names.push_back("n" + std::to_string(i));
  auto runner = [&engine](const std::string& c) { return engine.run(c); };

  LUM_NAME_FINDER_SEARCH all(runner, "[get_keepers *]", 10, 100);
  ASSERT_TRUE(all.start());
  int pages = 0;
  while (all.next_page()) ++pages;
  all.finish();
  EXPECT_EQ(all.names().size(), 25u);
  EXPECT_EQ(pages + 1, 3) << "three pages of at most ten";
  EXPECT_EQ(engine.commands.front(), "llength [set ::lum_name_finder_matches [get_keepers *]]");
  EXPECT_EQ(engine.commands[1], "foreach_in_collection a [lrange $::lum_name_finder_matches 0 9] {puts [get_object_info $a -name]}");
  EXPECT_EQ(engine.commands.back(), "unset -nocomplain ::lum_name_finder_matches");
  EXPECT_EQ(all.cap_note(), "");

  LUM_NAME_FINDER_SEARCH capped(runner, "[get_pins *]", 10, 12);
  ASSERT_TRUE(capped.start());
  while (capped.next_page()) {
  }
  EXPECT_EQ(capped.names().size(), 12u);
  EXPECT_TRUE(capped.capped());
  EXPECT_EQ(capped.cap_note(), "Showing the first 12 of 25 matches; narrow the pattern to see the others.");

  engine.fail_count = true;
  LUM_NAME_FINDER_SEARCH failed(runner, "[get_pins nothing]", 10, 12);
  EXPECT_FALSE(failed.start()) << "an engine error gives no number and so no matches";
  EXPECT_FALSE(failed.next_page());
}

}  // namespace
