// Argument parsing shared by the report commands.
//
// Each command lists its options in a table; an option is a flag or takes
// one value. Options may be abbreviated to any unique prefix ("-np" for
// -npaths). Words that do not start with "-" are positional arguments, up to
// the count the command allows. Every mistake throws ReportError naming the
// command and the option, before the command has done anything.
#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <tcl.h>

namespace vexa {

struct OptionSpec
{
  const char *name;   // with its dash: "-npaths"
  bool takes_value;
};

class ReportArgs
{
public:
  ReportArgs(const char *command, int objc, Tcl_Obj *const objv[],
             std::initializer_list<OptionSpec> options, size_t max_positionals);

  bool has(const char *option) const { return m_values.count(option) != 0; }
  // The value of an option given with a value; "" when absent. When an
  // option is given more than once the last value counts, except through
  // values(), which returns every one in order (report_timing's -thru).
  std::string value(const char *option) const;
  std::vector<std::string> values(const char *option) const;
  const std::vector<std::string> &positionals() const { return m_positionals; }

  // Typed accessors; each throws ReportError for a bad value.
  std::optional<int> positive_int(const char *option) const;
  std::optional<double> number(const char *option) const;
  // The value split as a Tcl list (empty when absent).
  std::vector<std::string> list(const char *option) const;

  // The command line as given, re-quoted as one Tcl command.
  const std::string &command_line() const { return m_command_line; }
  const char *command() const { return m_command; }

private:
  const char *m_command;
  std::map<std::string, std::string> m_values;
  std::map<std::string, std::vector<std::string>> m_all_values;
  std::vector<std::string> m_positionals;
  std::string m_command_line;
};

// Splits a Tcl list; throws ReportError when `text` is not a list.
std::vector<std::string> split_tcl_list(const std::string &text);

} // namespace vexa
