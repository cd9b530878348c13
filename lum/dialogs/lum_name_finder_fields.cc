#include "dialogs/lum_name_finder_fields.hh"

#include <tcl.h>

#include <algorithm>
#include <cstdlib>

#include "dialogs/lum_tcl_word.hh"
#include "platform/gen.hh"

namespace {

// The engine variable that holds a search's result between its pages.
const char* const RESULT_VARIABLE = "::lum_name_finder_matches";

std::string with_thousands(size_t n) {
  std::string digits = std::to_string(n);
  for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<size_t>(i), ",");
  return digits;
}

}  // namespace

const std::vector<std::string>& lum_name_finder_collections() {
  static const std::vector<std::string> collections = {"get_cells", "get_clocks", "get_keepers", "get_nets",
                                                       "get_nodes", "get_pins",   "get_ports",   "get_registers"};
  return collections;
}

std::vector<std::string> LUM_NAME_FINDER_FIELDS::offered_collections() const {
  std::vector<std::string> offered;
  const auto& all = lum_name_finder_collections();
  for (size_t bit = 0; bit < all.size(); ++bit)
    if (collection_mask & (1u << bit)) offered.push_back(all[bit]);
  return offered;
}

std::string LUM_NAME_FINDER_FIELDS::initial_collection() const {
  const std::vector<std::string> offered = offered_collections();
  if (offered.empty()) return std::string();
  if (std::find(offered.begin(), offered.end(), "get_keepers") != offered.end()) return "get_keepers";
  return offered.front();
}

bool LUM_NAME_FINDER_FIELDS::hierarchy_options_apply() const {
  return collection == "get_cells" || collection == "get_pins";
}

void LUM_NAME_FINDER_FIELDS::normalise() {
  if (hierarchy_options_apply()) return;
  hierarchical = false;
  compatibility_mode = false;
}

std::string LUM_NAME_FINDER_FIELDS::command_prefix() const {
  std::string prefix = collection;
  if (no_case) prefix += " -no_case";
  if (hierarchical) prefix += " -hierarchical";
  if (compatibility_mode) prefix += " -compatibility_mode";
  return prefix + " ";
}

std::string LUM_NAME_FINDER_FIELDS::filter_expression() const { return "[" + command_prefix() + pattern + "]"; }

std::string LUM_NAME_FINDER_FIELDS::sdc_expression() const {
  std::string body = command_prefix();
  if (selected.empty())
    body += pattern;
  else if (selected.size() == 1)
    body += lum_tcl_word(selected.front());
  else
    body += "{" + lum_tcl_list(selected) + "}";
  return "[" + body + "]";
}

std::string LUM_NAME_FINDER_FIELDS::selected_header() const {
  if (selected.empty()) return "No selected names";
  if (selected.size() == 1) return "1 selected name";
  return std::to_string(selected.size()) + " selected names";
}

std::string LUM_NAME_FINDER_FIELDS::matches_header(size_t count) {
  if (count == 0) return "No matches found";
  return std::to_string(count) + " matches found";
}

void LUM_NAME_FINDER_FIELDS::copy_one(const std::vector<std::string>& chosen) {
  for (const std::string& name : chosen)
    if (std::find(selected.begin(), selected.end(), name) == selected.end()) selected.push_back(name);
}

void LUM_NAME_FINDER_FIELDS::copy_all(const std::vector<std::string>& matches) {
  selected.insert(selected.end(), matches.begin(), matches.end());
}

void LUM_NAME_FINDER_FIELDS::remove_rows(std::vector<int> rows) {
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  // From the last to the first, so that earlier rows keep their numbers.
  for (auto it = rows.rbegin(); it != rows.rend(); ++it)
    if (*it >= 0 && *it < static_cast<int>(selected.size())) selected.erase(selected.begin() + *it);
}

void lum_sort_names(std::vector<std::string>& names) {
  // A strict order: equal names are interchangeable, and the sort needs an
  // irreflexive predicate.
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return gen_lexcmp(a.c_str(), b.c_str()) < 0; });
}

bool lum_name_matches(const std::string& name, const std::string& pattern, bool no_case) {
  return Tcl_StringCaseMatch(name.c_str(), pattern.c_str(), no_case ? TCL_MATCH_NOCASE : 0) != 0;
}

// ---- paged search ----------------------------------------------------------------

LUM_NAME_FINDER_SEARCH::LUM_NAME_FINDER_SEARCH(RUN_HIDDEN run_hidden, std::string filter_expression, size_t page,
                                               size_t cap)
    : m_run_hidden(std::move(run_hidden)), m_filter(std::move(filter_expression)), m_page(page ? page : 1), m_cap(cap) {}

std::string LUM_NAME_FINDER_SEARCH::count_command(const std::string& filter_expression) {
  return std::string("llength [set ") + RESULT_VARIABLE + " " + filter_expression + "]";
}

std::string LUM_NAME_FINDER_SEARCH::page_command(size_t first, size_t last) {
  return std::string("foreach_in_collection a [lrange $") + RESULT_VARIABLE + " " + std::to_string(first) + " " +
         std::to_string(last) + "] {puts [get_object_info $a -name]}";
}

std::string LUM_NAME_FINDER_SEARCH::release_command() {
  return std::string("unset -nocomplain ") + RESULT_VARIABLE;
}

bool LUM_NAME_FINDER_SEARCH::start() {
  m_names.clear();
  m_total = 0;
  m_started = true;
  const std::vector<std::string> answer = m_run_hidden(count_command(m_filter));
  // The size is the last line; an error leaves no text at all.
  if (answer.empty()) return false;
  const std::string& last = answer.back();
  char* end = nullptr;
  const unsigned long long total = std::strtoull(last.c_str(), &end, 10);
  if (last.empty() || end == nullptr || *end != '\0') return false;
  m_total = static_cast<size_t>(total);
  m_names.reserve(wanted());
  return true;
}

bool LUM_NAME_FINDER_SEARCH::next_page() {
  if (!m_started || m_names.size() >= wanted()) return false;
  const size_t first = m_names.size();
  const size_t last = std::min(wanted(), first + m_page) - 1;
  std::vector<std::string> page = m_run_hidden(page_command(first, last));
  // A page that brings nothing (the engine failed meanwhile) ends the search.
  if (page.empty()) {
    m_total = m_names.size();
    return false;
  }
  if (page.size() > last - first + 1) page.resize(last - first + 1);
  for (std::string& name : page) m_names.push_back(std::move(name));
  return m_names.size() < wanted();
}

void LUM_NAME_FINDER_SEARCH::finish() {
  if (m_started) m_run_hidden(release_command());
  m_started = false;
}

std::string LUM_NAME_FINDER_SEARCH::cap_note() const {
  if (!capped()) return std::string();
  return "Showing the first " + with_thousands(m_cap) + " of " + with_thousands(m_total) +
         " matches; narrow the pattern to see the others.";
}
