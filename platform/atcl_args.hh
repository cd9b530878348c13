// The argument library of the front end's Tcl commands: a command is described
// by a constant, data-driven definition (its arguments and their kinds, its
// exclusive groups), and ATCL_ARGS parses one call against it.
//
// Parsing rules:
//   - An option is "-name", found by the command's string-to-enum function
//     (exact name, else a unique abbreviation); it must be one of the command's
//     arguments. Flags take no value; string, integer and list options take the
//     next word verbatim (a value may begin with "-").
//   - Other words fill the positional arguments in list order. A word that
//     begins with "-" but names no option of the command is a positional value
//     when a positional slot remains (so text beginning with "-" can be passed);
//     "--" ends the options.
//   - Required arguments must be given; at most one argument of each exclusive
//     group may be given; for the "together" groups, naming an argument of one
//     group requires an argument of every other group of the list.
//   - -h and -help put a usage line into the interpreter result, -long_help a
//     description of every argument; the call then succeeds with the
//     help-shown flag set and the command does nothing more.
//   - Any other problem leaves a message naming the command and the offending
//     word, followed by the usage line, in the interpreter result and fails.
#pragma once

#include <tcl.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Kinds of arguments.
enum ATCL_ARG_KIND : int32_t { ATCL_ARG_FLAG = 0, ATCL_ARG_STRING = 1, ATCL_ARG_INTEGER = 3, ATCL_ARG_LIST = 4 };

// Attribute bits: positional (no leading dash) and optional.
constexpr uint32_t ATCL_ARG_POSITIONAL = 0x1;
constexpr uint32_t ATCL_ARG_OPTIONAL = 0x100;

// One argument of a command. The record keeps the four fields of the original
// four-word layout, in the same order; a list ends with a record whose enum is 0.
struct ATCL_ARG_RECORD {
  int32_t enum_value;
  int32_t kind;        // ATCL_ARG_KIND
  uint32_t attributes; // ATCL_ARG_POSITIONAL | ATCL_ARG_OPTIONAL
  int32_t reserved;
};

// Argument name of an enum value, and the enum value of a name (0: unknown).
using ATCL_ENUM_TO_STRING = const char* (*)(int enum_value);
using ATCL_STRING_TO_ENUM = int (*)(const char* name);

// A command's constant definition. The original was sixteen 32-bit words,
// which cannot hold 64-bit pointers; this is a plain struct with the same
// fields in the same order, the unused words kept as reserved members.
struct ATCL_CMD_DEFINITION {
  const char* package_short_name;            // word 0, e.g. "lum"
  const char* command_name;                  // word 1
  ATCL_ENUM_TO_STRING enum_to_string;        // word 2
  ATCL_STRING_TO_ENUM string_to_enum;        // word 3
  intptr_t reserved_4;                       // word 4
  intptr_t reserved_5;                       // word 5
  const ATCL_ARG_RECORD* arguments;          // word 6, ended by enum 0
  const int* const* exclusive_groups;        // word 7, null-ended list of 0-ended groups, or null
  const int* const* together_groups;         // word 8, likewise, or null
  intptr_t reserved_9_15[7];                 // words 9 to 15
};

// A command made from its definition once; holds what parsing needs.
class ATCL_CMD {
 public:
  explicit ATCL_CMD(const ATCL_CMD_DEFINITION* definition);

  const ATCL_CMD_DEFINITION* get_definition() const { return m_definition; }
  const char* get_name() const { return m_definition->command_name; }
  // The argument record for an enum value, or null if it is not an argument.
  const ATCL_ARG_RECORD* find_argument(int enum_value) const;
  // Positional arguments in list order.
  const std::vector<const ATCL_ARG_RECORD*>& get_positionals() const { return m_positionals; }
  const std::vector<const ATCL_ARG_RECORD*>& get_arguments() const { return m_arguments; }
  std::string argument_name(int enum_value) const;
  // The argument's name as written in a call: "-name" or "<name>".
  std::string argument_display(const ATCL_ARG_RECORD& record) const;

  // "Usage: cmd [-flag] [-opt <opt>] -req <req> <pos> [<optpos>]"
  std::string usage() const;
  // The usage followed by one line per argument and the groups.
  std::string long_help() const;

 private:
  const ATCL_CMD_DEFINITION* m_definition;
  std::vector<const ATCL_ARG_RECORD*> m_arguments;
  std::vector<const ATCL_ARG_RECORD*> m_positionals;
};

// The values of one call.
class ATCL_ARGS {
 public:
  // Messages go to interp's result; null means the front end's interpreter.
  explicit ATCL_ARGS(Tcl_Interp* interp = nullptr);

  // Parses argv[1..argc-1] (argv[0] is the command name). Returns TCL_OK or
  // TCL_ERROR; *help_shown is set when a help option was handled.
  int process_tcl_command_arguments(const ATCL_CMD* cmd, bool* help_shown, int argc, const char* const* argv);

  // The value of an option with a value, or null when not given.
  const char* get_one_arg_option(int enum_value) const;
  // The value of a positional argument, or null when not given. 0 means the
  // command's first positional argument.
  const char* get_one_arg_pos_option(int enum_value) const;
  // True when the flag was given.
  bool get_no_arg_option(int enum_value) const;
  // The integer value of an option; *given tells whether it was given.
  unsigned get_uint_arg_option(int enum_value, bool* given) const;
  int get_int_arg_option(int enum_value, bool* given) const;
  // The elements of a list option; false when it was not given.
  bool get_list_arg_option(int enum_value, std::vector<std::string>* elements) const;
  // True when the argument (of any kind) was given.
  bool is_given(int enum_value) const;

 private:
  int fail(const ATCL_CMD* cmd, const std::string& message);

  Tcl_Interp* m_interp;
  const ATCL_CMD* m_cmd = nullptr;
  std::map<int, std::string> m_values;  // enum -> value ("" for flags)
};
