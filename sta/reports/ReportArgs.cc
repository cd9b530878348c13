#include "reports/ReportArgs.hh"

#include "reports/PathFinder.hh"

#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdlib>

namespace vexa {

std::vector<std::string> split_tcl_list(const std::string &text)
{
  int count = 0;
  const char **words = nullptr;
  if (Tcl_SplitList(nullptr, text.c_str(), &count, &words) != TCL_OK)
    throw ReportError("\"" + text + "\" is not a valid Tcl list.");
  std::vector<std::string> result(words, words + count);
  Tcl_Free(reinterpret_cast<char *>(words));
  return result;
}

ReportArgs::ReportArgs(const char *command, int objc, Tcl_Obj *const objv[],
                       std::initializer_list<OptionSpec> options, size_t max_positionals)
    : m_command(command)
{
  Tcl_Obj *line = Tcl_NewListObj(objc, objv);
  Tcl_IncrRefCount(line);
  m_command_line = Tcl_GetString(line);
  Tcl_DecrRefCount(line);

  // The option a word names (exactly or by a unique prefix), with the
  // number of options it could name.
  auto find_option = [&options](const std::string &word, int &prefix_matches) {
    const OptionSpec *match = nullptr;
    prefix_matches = 0;
    for (const OptionSpec &option : options) {
      std::string name = option.name;
      if (name == word) {
        prefix_matches = 1;
        return &option;
      }
      if (name.compare(0, word.size(), word) == 0) {
        match = &option;
        prefix_matches++;
      }
    }
    return match;
  };
  auto looks_like_option = [](const std::string &word) {
    return word.size() > 1 && word[0] == '-' && !std::isdigit(static_cast<unsigned char>(word[1]));
  };

  for (int i = 1; i < objc; i++) {
    std::string word = Tcl_GetString(objv[i]);
    if (looks_like_option(word)) {
      int prefix_matches = 0;
      const OptionSpec *match = find_option(word, prefix_matches);
      if (prefix_matches != 1 || match == nullptr) {
        std::string known;
        for (const OptionSpec &option : options)
          known += std::string(known.empty() ? "" : ", ") + option.name;
        throw ReportError(std::string(command) + ": " +
                          (prefix_matches > 1 ? "ambiguous" : "unknown") + " option \"" + word +
                          "\"; the options are " + known + ".");
      }
      if (match->takes_value) {
        // An empty field of a dialog leaves the option without its value, so
        // the next word is another option ("-npaths -panel_name P"): that is
        // a missing value, not a value.
        int next_matches = 0;
        if (i + 1 >= objc || (looks_like_option(Tcl_GetString(objv[i + 1])) &&
                              find_option(Tcl_GetString(objv[i + 1]), next_matches) != nullptr &&
                              next_matches == 1))
          throw ReportError(std::string(command) + ": option " + match->name +
                            " needs a value.");
        m_values[match->name] = Tcl_GetString(objv[++i]);
        m_all_values[match->name].push_back(m_values[match->name]);
      } else {
        m_values[match->name] = "";
      }
    } else {
      if (m_positionals.size() >= max_positionals)
        throw ReportError(std::string(command) + ": unexpected argument \"" + word + "\".");
      m_positionals.push_back(word);
    }
  }
}

std::string ReportArgs::value(const char *option) const
{
  auto it = m_values.find(option);
  return it == m_values.end() ? std::string() : it->second;
}

std::vector<std::string> ReportArgs::values(const char *option) const
{
  auto it = m_all_values.find(option);
  return it == m_all_values.end() ? std::vector<std::string>() : it->second;
}

std::optional<int> ReportArgs::positive_int(const char *option) const
{
  if (!has(option))
    return std::nullopt;
  std::string text = value(option);
  char *end = nullptr;
  errno = 0;
  long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0 || number < 1 || number > 100000000)
    throw ReportError(std::string(m_command) + ": option " + option +
                      " needs a positive integer, not \"" + text + "\".");
  return static_cast<int>(number);
}

std::optional<double> ReportArgs::number(const char *option) const
{
  if (!has(option))
    return std::nullopt;
  std::string text = value(option);
  char *end = nullptr;
  double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(number))
    throw ReportError(std::string(m_command) + ": option " + option + " needs a number, not \"" +
                      text + "\".");
  return number;
}

std::vector<std::string> ReportArgs::list(const char *option) const
{
  if (!has(option))
    return {};
  return split_tcl_list(value(option));
}

} // namespace vexa
