// The name finder's fields and rules, apart from its window: which collection
// commands it offers, the search and SDC expressions, the list headers, the
// copy and remove operations on the selected names, and the paged search by
// which a huge result reaches the window without freezing it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The collection commands in mask-bit order (bit 0 "get_cells" ... bit 7 "get_registers").
const std::vector<std::string>& lum_name_finder_collections();

struct LUM_NAME_FINDER_FIELDS {
  static constexpr std::uint8_t ALL_COLLECTIONS = 0xFF;

  std::uint8_t collection_mask = ALL_COLLECTIONS;
  std::string collection;
  std::string pattern = "*";
  bool no_case = false;
  bool hierarchical = false;
  bool compatibility_mode = false;
  std::vector<std::string> selected;  // the selected-names list, in its order

  // The commands the mask offers, in bit order, and the one chosen first
  // ("get_keepers" when offered, else the first; empty when none is offered).
  std::vector<std::string> offered_collections() const;
  std::string initial_collection() const;

  // The hierarchical options apply to get_cells and get_pins only.
  bool hierarchy_options_apply() const;
  // Clears the hierarchical options when they do not apply.
  void normalise();

  // "<collection>[ -no_case][ -hierarchical][ -compatibility_mode] ".
  std::string command_prefix() const;
  // "[<prefix><pattern>]": what a search lists.
  std::string filter_expression() const;
  // The result handed to the caller: the pattern with no selected name, the
  // one name, or the names as a braced list; each name quoted as Tcl needs.
  std::string sdc_expression() const;

  std::string selected_header() const;
  static std::string matches_header(size_t count);

  // ">": adds the chosen matches (in the order given) unless the same text is
  // already selected. ">>": appends every match, duplicates included.
  void copy_one(const std::vector<std::string>& chosen);
  void copy_all(const std::vector<std::string>& matches);
  // Removes the rows given (any order, repeats ignored).
  void remove_rows(std::vector<int> rows);
};

// Sorts names for the matches list with the platform's natural comparison.
void lum_sort_names(std::vector<std::string>& names);

// Whether name matches a glob pattern ("*", "?", "[a-z]", "\x"), optionally
// without regard to case: the filter applied while typing.
bool lum_name_matches(const std::string& name, const std::string& pattern, bool no_case);

// A search in pages. The engine first keeps the whole result and answers its
// size; then the names come page by page, so that the window can show
// progress between pages and the user can cancel. At most `cap` names are
// fetched; a larger result is cut there and noted.
class LUM_NAME_FINDER_SEARCH {
 public:
  // Runs one hidden engine command and returns its output lines.
  using RUN_HIDDEN = std::function<std::vector<std::string>(const std::string& command)>;

  static constexpr size_t DEFAULT_PAGE = 20000;
  static constexpr size_t DEFAULT_CAP = 250000;

  LUM_NAME_FINDER_SEARCH(RUN_HIDDEN run_hidden, std::string filter_expression, size_t page = DEFAULT_PAGE,
                         size_t cap = DEFAULT_CAP);

  // The engine command that keeps the result and answers its size, and the
  // one that prints the names from first to last (inclusive).
  static std::string count_command(const std::string& filter_expression);
  static std::string page_command(size_t first, size_t last);
  static std::string release_command();

  // Asks for the size; false when the engine answered no number (an error:
  // no matches).
  bool start();
  // Fetches the next page; false once everything wanted has arrived.
  bool next_page();
  // Drops the engine's copy of the result.
  void finish();

  size_t total() const { return m_total; }
  size_t wanted() const { return m_total < m_cap ? m_total : m_cap; }
  bool capped() const { return m_total > m_cap; }
  const std::vector<std::string>& names() const { return m_names; }
  std::vector<std::string> take_names() { return std::move(m_names); }
  // The note under a capped list, else empty.
  std::string cap_note() const;

 private:
  RUN_HIDDEN m_run_hidden;
  std::string m_filter;
  size_t m_page;
  size_t m_cap;
  size_t m_total = 0;
  bool m_started = false;
  std::vector<std::string> m_names;
};
