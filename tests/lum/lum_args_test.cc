// The argument framework of the package "::vexa::lum": name lookup with
// abbreviations, and the parse rules (kinds, positionals, required arguments,
// exclusive groups, help) over the real command tables.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <sstream>

#include "tcl/lum_tcl_args_auto.hh"

namespace {

struct LOOKUP_CASE {
  const char* command;
  const char* word;      // as typed after the dash
  const char* expected;  // argument name, or "" for not found
};

class ArgumentLookup : public ::testing::TestWithParam<LOOKUP_CASE> {};

int command_number(const char* name) {
  for (int i = 0; i < LUM_AUTO_COMMAND_COUNT; ++i)
    if (!strcmp(lum_auto_get_definition(i)->command_name, name)) return i;
  return -1;
}

TEST_P(ArgumentLookup, ResolvesExactNamesThenUniqueAbbreviations) {
  const LOOKUP_CASE& c = GetParam();
  int number = command_number(c.command);
  ASSERT_GE(number, 0) << c.command;
  int value = lum_auto_get_definition(number)->string_to_enum(c.word);
  EXPECT_STREQ(lum_auto_get_string_by_argument_enum(value), c.expected) << c.command << " -" << c.word;
}

INSTANTIATE_TEST_SUITE_P(
    Tables, ArgumentLookup,
    ::testing::Values(
        LOOKUP_CASE{"lum_edit_clock", "di", "divide_by"}, LOOKUP_CASE{"lum_edit_clock", "du", "duty_cycle"},
        LOOKUP_CASE{"lum_edit_clock", "d", ""}, LOOKUP_CASE{"lum_edit_clock", "edge_l", "edge_list"},
        LOOKUP_CASE{"lum_edit_clock", "edge_", ""}, LOOKUP_CASE{"lum_edit_clock", "source", "source"},
        LOOKUP_CASE{"lum_edit_clock", "source_", "source_objects"}, LOOKUP_CASE{"lum_edit_clock", "sourc", ""},
        LOOKUP_CASE{"lum_edit_clock", "he", "help"}, LOOKUP_CASE{"lum_edit_clock", "hel", "help"},
        LOOKUP_CASE{"lum_edit_clock", "h", "h"}, LOOKUP_CASE{"lum_edit_clock", "l", "long_help"},
        LOOKUP_CASE{"lum_edit_clock", "long_hel", "long_help"}, LOOKUP_CASE{"lum_locate", "loc", "locations"},
        LOOKUP_CASE{"lum_locate", "lon", "long_help"}, LOOKUP_CASE{"lum_locate", "l", ""},
        LOOKUP_CASE{"lum_locate", "lo", ""},
        // A whole name of any command is found exactly; whether it belongs
        // to the command is the parser's decision.
        LOOKUP_CASE{"lum_set_false_path", "max", "max"}, LOOKUP_CASE{"lum_set_false_path", "zz", ""}));

// Every command's arguments are reachable by their whole names, in the
// command's own table and in the global one; the global lookup takes no
// abbreviations and tells a blank name from an unknown one.
TEST(ArgumentNames, EveryCommandIsRegisteredInTableOrderAndEveryArgumentIsReachable) {
  std::set<std::string> names;
  for (int i = 0; i < LUM_AUTO_COMMAND_COUNT; ++i) {
    const ATCL_CMD_DEFINITION* def = lum_auto_get_definition(i);
    ASSERT_NE(def, nullptr);
    EXPECT_STREQ(lum_lum_tcl_callbacks[i].name, def->command_name);
    EXPECT_STREQ(def->package_short_name, "lum");
    names.insert(def->command_name);
    for (const ATCL_ARG_RECORD* r = def->arguments; r->enum_value != 0; ++r) {
      const char* name = lum_auto_get_string_by_argument_enum(r->enum_value);
      if (!(r->attributes & ATCL_ARG_POSITIONAL)) {
        EXPECT_EQ(def->string_to_enum(name), r->enum_value) << name;
        EXPECT_EQ(lum_auto_get_argument_enum_by_string(name), r->enum_value) << name;
      }
    }
  }
  EXPECT_EQ(lum_lum_tcl_callbacks[LUM_AUTO_COMMAND_COUNT].name, nullptr);
  EXPECT_EQ(names.size(), static_cast<size_t>(LUM_AUTO_COMMAND_COUNT));
  EXPECT_EQ(lum_auto_get_argument_enum_by_string("vp"), LUM_AUTO_ARG_NOT_FOUND);
  EXPECT_EQ(lum_auto_get_argument_enum_by_string(""), LUM_AUTO_ARG_NULL_NAME);
  EXPECT_EQ(lum_auto_get_argument_enum_by_string(nullptr), LUM_AUTO_ARG_NULL_NAME);
  EXPECT_FALSE(lum_auto_exists_argument_enum_by_string(""));
  EXPECT_STREQ(lum_auto_get_string_by_argument_enum(LUM_AUTO_ARGUMENT_COUNT), "");
}

// ---- parsing ----------------------------------------------------------------------

struct PARSE_CASE {
  const char* line;     // a Tcl list: the command and its words
  int code;             // TCL_OK or TCL_ERROR
  const char* message;  // a part of the interpreter result (errors and help), or ""
};

std::ostream& operator<<(std::ostream& out, const PARSE_CASE& c) { return out << c.line; }

class ArgumentParsing : public ::testing::TestWithParam<PARSE_CASE> {};

// Parses a call the way a handler does, and returns the result text.
int parse(const char* line, std::string* result, ATCL_ARGS* args, bool* help_shown) {
  Tcl_Interp* interp = atcl_get_interpreter();
  int argc;
  const char** argv;
  EXPECT_EQ(Tcl_SplitList(interp, line, &argc, &argv), TCL_OK);
  int number = command_number(argv[0]);
  EXPECT_GE(number, 0) << argv[0];
  ATCL_CMD* cmd = LUM_AUTO_MANAGER::get_instance().register_command(number, lum_auto_get_definition(number));
  int code = args->process_tcl_command_arguments(cmd, help_shown, argc, argv);
  *result = Tcl_GetStringResult(interp);
  Tcl_Free(reinterpret_cast<char*>(argv));
  return code;
}

TEST_P(ArgumentParsing, AcceptsOrRefusesWithAClearMessage) {
  const PARSE_CASE& c = GetParam();
  ATCL_ARGS args;
  bool help_shown = false;
  std::string result;
  EXPECT_EQ(parse(c.line, &result, &args, &help_shown), c.code) << result;
  EXPECT_NE(result.find(c.message), std::string::npos) << "result: " << result;
}

INSTANTIATE_TEST_SUITE_P(
    Rules, ArgumentParsing,
    ::testing::Values(
        // required options and positionals
        PARSE_CASE{"lum_open_project -vpf /p.vpf -revision r", TCL_OK, ""},
        PARSE_CASE{"lum_open_project -vpf /p.vpf", TCL_ERROR, "missing required option \"-revision\""},
        PARSE_CASE{"lum_open_project -revision r", TCL_ERROR, "missing required option \"-vpf\""},
        PARSE_CASE{"lum_register_clock -remove", TCL_ERROR, "missing required option \"-name\""},
        PARSE_CASE{"lum_edit_clock -name c", TCL_ERROR, "missing required option \"-type\""},
        PARSE_CASE{"lum_report_status", TCL_ERROR, "missing required argument <percent complete>"},
        PARSE_CASE{"lum_set_time_unit", TCL_ERROR, "<unit>"},
        PARSE_CASE{"lum_set_clock_latency 1.0", TCL_ERROR, "missing required argument <targets>"},
        PARSE_CASE{"lum_set_input_delay -clock c 1.0", TCL_ERROR, "<targets>"},
        PARSE_CASE{"lum_tcl_prompt extra", TCL_ERROR, "too many arguments"},
        PARSE_CASE{"lum_echo_stdout a b", TCL_ERROR, "too many arguments"},
        // option values and kinds
        PARSE_CASE{"lum_open_project -vpf", TCL_ERROR, "option \"-vpf\" needs a value"},
        PARSE_CASE{"lum_report_timing -npaths ten", TCL_ERROR, "expects an integer but got \"ten\""},
        PARSE_CASE{"lum_set_multicycle_path -setup x", TCL_ERROR, "<value> expects an integer"},
        PARSE_CASE{"lum_locate -names {a b} -chip_editor", TCL_OK, ""},
        PARSE_CASE{"lum_locate -names \"a {b\" -fled", TCL_ERROR, "expects a Tcl list"},
        PARSE_CASE{"lum_register_clock -name c -name d", TCL_ERROR, "more than once"},
        // unknown, ambiguous, other commands' options
        PARSE_CASE{"lum_set_input_delay -m 1 t", TCL_ERROR, "\"-m\" is ambiguous: -max, -min"},
        PARSE_CASE{"lum_set_input_delay -r 1 t", TCL_ERROR, "ambiguous: -reference_pin, -rise"},
        PARSE_CASE{"lum_set_false_path -max", TCL_ERROR, "unknown option \"-max\""},
        PARSE_CASE{"lum_reload_sta_report -bogus", TCL_ERROR, "unknown option \"-bogus\""},
        // text beginning with "-" where a positional slot remains, and "--"
        PARSE_CASE{"lum_echo_stdout -max", TCL_ERROR, "unknown option \"-max\""},
        PARSE_CASE{"lum_set_input_delay -clock clk -bogus t", TCL_ERROR, "unknown option \"-bogus\""},
        PARSE_CASE{"lum_set_input_delay -clock clk -0.5 t", TCL_OK, ""},
        PARSE_CASE{"lum_echo_stdout -h", TCL_OK, "Usage: lum_echo_stdout <text>"},
        PARSE_CASE{"lum_echo_stdout -- -h", TCL_OK, ""},
        PARSE_CASE{"lum_set_multicycle_path -hold -1", TCL_OK, ""},
        PARSE_CASE{"lum_register_clock -name -remove", TCL_OK, ""},
        // exclusive groups, every command that has them
        PARSE_CASE{"lum_set_clock_latency -early -late 1 t", TCL_ERROR, "-early and -late cannot be used together"},
        PARSE_CASE{"lum_set_clock_latency -fall -rise 1 t", TCL_ERROR, "-fall and -rise cannot be used together"},
        PARSE_CASE{"lum_set_clock_latency -early -rise 1 t", TCL_OK, ""},
        PARSE_CASE{"lum_set_clock_uncertainty -hold -setup 1", TCL_ERROR, "-hold and -setup"},
        PARSE_CASE{"lum_set_clock_uncertainty -from a -rise_from b -to c 1", TCL_ERROR, "-from and -rise_from"},
        PARSE_CASE{"lum_set_clock_uncertainty -from a -t c -fall_t d 1", TCL_ERROR, "-fall_to and -to"},
        PARSE_CASE{"lum_set_input_delay -max -min 1 t", TCL_ERROR, "-max and -min"},
        PARSE_CASE{"lum_set_output_delay -fall -rise 1 t", TCL_ERROR, "-fall and -rise"},
        PARSE_CASE{"lum_set_output_delay -ma -ri 1 t", TCL_OK, ""},
        PARSE_CASE{"lum_set_multicycle_path -end -start 2", TCL_ERROR, "-end and -start"},
        PARSE_CASE{"lum_set_multicycle_path -hold -setup 2", TCL_ERROR, "-hold and -setup"},
        PARSE_CASE{"lum_report_timing -recovery -removal", TCL_ERROR, "-recovery and -removal"},
        PARSE_CASE{"lum_report_timing -setup -hold", TCL_ERROR, "-hold and -setup"},
        PARSE_CASE{"lum_locate -chip_editor -fled -names a", TCL_ERROR, "-chip_editor and -fled"},
        PARSE_CASE{"lum_locate -batch_mode_start -batch_mode_stop", TCL_ERROR, "-batch_mode_start and -batch_mode_stop"},
        // groups that go together
        PARSE_CASE{"lum_set_clock_uncertainty -from a 1", TCL_ERROR, "also needs one of -fall_to, -rise_to, -to"},
        PARSE_CASE{"lum_set_clock_uncertainty -rise_to a 1", TCL_ERROR, "-fall_from, -from, -rise_from"},
        PARSE_CASE{"lum_set_clock_uncertainty -from a -to b 0.1", TCL_OK, ""},
        PARSE_CASE{"lum_set_clock_uncertainty 0.1", TCL_OK, ""},
        PARSE_CASE{"lum_locate -names a", TCL_ERROR, "-chip_editor, -fled"},
        PARSE_CASE{"lum_locate -batch_mode_start", TCL_OK, ""},
        // help
        PARSE_CASE{"lum_set_state -help", TCL_OK, "Usage: lum_set_state [-netlist_is_created <netlist_is_created>]"},
        PARSE_CASE{"lum_open_project -long_help", TCL_OK, "-vpf: string, required"},
        PARSE_CASE{"lum_set_input_delay -long_h", TCL_OK, "At most one of: -max, -min"}));

TEST(ArgumentParsing, HelpSetsTheHelpShownFlagEvenBesideBadArguments) {
  for (const char* line : {"lum_tcl_prompt -h", "lum_open_project -he", "lum_locate -lon"}) {
    ATCL_ARGS args;
    bool help_shown = false;
    std::string result;
    EXPECT_EQ(parse(line, &result, &args, &help_shown), TCL_OK) << line;
    EXPECT_TRUE(help_shown) << line;
    EXPECT_NE(result.find("Usage: "), std::string::npos) << line;
  }
}

TEST(ArgumentParsing, GettersReturnValuesByKind) {
  ATCL_ARGS args;
  bool help_shown = false;
  std::string result;
  ASSERT_EQ(parse("lum_report_timing -npaths 12 -from a -setup -panel_name {Summary (Setup)} -to -x", &result, &args,
                  &help_shown),
            TCL_OK)
      << result;
  bool given = false;
  EXPECT_EQ(args.get_uint_arg_option(LUM_AUTO_ARG_NPATHS, &given), 12u);
  EXPECT_TRUE(given);
  EXPECT_STREQ(args.get_one_arg_option(LUM_AUTO_ARG_FROM), "a");
  EXPECT_STREQ(args.get_one_arg_option(LUM_AUTO_ARG_PANEL_NAME), "Summary (Setup)");
  EXPECT_STREQ(args.get_one_arg_option(LUM_AUTO_ARG_TO), "-x");
  EXPECT_TRUE(args.get_no_arg_option(LUM_AUTO_ARG_SETUP));
  EXPECT_FALSE(args.get_no_arg_option(LUM_AUTO_ARG_HOLD));
  EXPECT_EQ(args.get_one_arg_option(LUM_AUTO_ARG_FILE), nullptr);
  args.get_uint_arg_option(LUM_AUTO_ARG_NWORST, &given);
  EXPECT_FALSE(given);

  ASSERT_EQ(parse("lum_set_input_delay -clock c 2.5 {a b}", &result, &args, &help_shown), TCL_OK) << result;
  EXPECT_STREQ(args.get_one_arg_pos_option(LUM_AUTO_ARG_DELAY), "2.5");
  EXPECT_STREQ(args.get_one_arg_pos_option(LUM_AUTO_ARG_TARGETS), "a b");
  EXPECT_STREQ(args.get_one_arg_pos_option(0), "2.5");
  EXPECT_STREQ(args.get_one_arg_option(LUM_AUTO_ARG_CLOCK), "c");

  ASSERT_EQ(parse("lum_locate -locations {x {y z}} -fled", &result, &args, &help_shown), TCL_OK) << result;
  std::vector<std::string> elements;
  EXPECT_TRUE(args.get_list_arg_option(LUM_AUTO_ARG_LOCATIONS, &elements));
  EXPECT_EQ(elements, (std::vector<std::string>{"x", "y z"}));
  EXPECT_FALSE(args.get_list_arg_option(LUM_AUTO_ARG_NAMES, &elements));
}

}  // namespace
