// The fields of the report dialogs (report timing, minimum pulse width, slack
// histogram, net timing, create timing netlist, list paths) and the command
// line each composes from them. Plain data with pure functions: each dialog
// keeps one of these structures, its controls write the fields, and compose()
// builds the command from scratch after every change, so every rule here is
// checked without a window.
//
// A report that would go nowhere goes to the console: compose() writes it
// so, and apply_output_rule() ticks the console box, for the dialog to show.
#pragma once

#include <string>
#include <vector>

// ---- words -----------------------------------------------------------------------

// A text inserted "as typed": unchanged when it holds nothing special to Tcl
// (no blank, none of $ [ ] { } " \ ;), else one Tcl word whose value is the
// text, so that whatever was typed reaches the engine unchanged.
std::string lum_typed_word(const std::string& text);

// A field naming design objects or clocks (from, thru, to, targets, clocks):
// a collection command in brackets ("[get_pins {a b}]", as the name finder
// writes it) and plain names go in as typed; otherwise the blank-separated
// names become one Tcl word holding their list, so names with $ [ ] " \ reach
// the engine intact.
std::string lum_names_word(const std::string& text);

// ---- where a report goes ---------------------------------------------------------

enum LUM_FILE_MODE { LUM_FILE_MODE_OVERWRITE = 0, LUM_FILE_MODE_APPEND = 1 };

struct LUM_REPORT_OUTPUT {
  bool to_panel = true;
  std::string panel_name;
  bool to_file = false;
  std::string file_name;
  int file_mode = LUM_FILE_MODE_OVERWRITE;
  bool to_console = false;

  // Appends the panel, file and console options: -panel_name "P" when to
  // panel is on with a name; -file "F" when to file is on with a name, then
  // -append in append mode (even without a name); -stdout when the console
  // is wanted beside a panel or a file. With neither a panel nor a file
  // nothing is written: the engine's default output is the console.
  void append_to(std::string& command) const;
  // With neither a panel nor a file, to console is switched on.
  void apply_output_rule();

  // Which output controls are enabled.
  bool panel_name_enabled() const { return to_panel; }
  bool file_controls_enabled() const { return to_file; }  // name, browse, the mode radios
  bool open_file_enabled() const { return to_file && !file_name.empty(); }
};

// ---- report timing -------------------------------------------------------------

enum LUM_DETAIL_LEVEL { LUM_DETAIL_LEVEL_FULL_PATH = 0, LUM_DETAIL_LEVEL_SUMMARY = 1 };

struct LUM_REPORT_TIMING_FIELDS {
  std::string from_clock;
  std::string to_clock;
  std::string from;
  std::string thru;
  std::string to;
  bool setup = true;
  bool hold = false;
  bool recovery = false;
  bool removal = false;
  std::string npaths = "1";
  std::string less_than_slack;
  int detail_level = LUM_DETAIL_LEVEL_FULL_PATH;
  LUM_REPORT_OUTPUT output{true, "Report Timing", false, "", LUM_FILE_MODE_OVERWRITE, false};

  std::string compose() const;
  // The panel name follows the detail level: " Summary" is added when the
  // summary is chosen (unless the name holds it already) and cut from the
  // end when the full path is chosen again.
  void detail_level_changed();
};

// ---- minimum pulse width -------------------------------------------------------------

struct LUM_MIN_PULSE_WIDTH_FIELDS {
  std::string nworst = "10";
  std::string targets;
  LUM_REPORT_OUTPUT output{true, "Minimum Pulse Width", false, "", LUM_FILE_MODE_OVERWRITE, false};

  std::string compose() const;
};

// ---- slack histogram ---------------------------------------------------------------

struct LUM_SLACK_HISTOGRAM_FIELDS {
  std::string clock_name;
  std::string max_slack;
  std::string min_slack;
  std::string num_bins;
  std::string panel_name;

  std::string compose() const;
  // A new clock name replaces the panel name by "Slack Histogram (<clock>)".
  void clock_changed();
};

// ---- net timing ----------------------------------------------------------------------

enum LUM_NET_TIMING_MODE { LUM_NET_TIMING_BY_DELAY = 0, LUM_NET_TIMING_BY_FANOUT = 1 };

struct LUM_NET_TIMING_FIELDS {
  int mode = LUM_NET_TIMING_BY_DELAY;
  std::string nworst_delay;
  std::string nworst_fanout;
  std::string nets;

  std::string compose() const;
  bool nworst_delay_enabled() const { return mode == LUM_NET_TIMING_BY_DELAY; }
  bool nworst_fanout_enabled() const { return mode == LUM_NET_TIMING_BY_FANOUT; }
};

// ---- create timing netlist ----------------------------------------------------------

// Only the post-map kind has an option of its own; the engine reads the
// gate-level netlist of the revision for each.
enum LUM_NETLIST_KIND { LUM_NETLIST_POST_FIT = 0, LUM_NETLIST_POST_ROUTE = 1, LUM_NETLIST_POST_MAP = 2 };
enum LUM_DELAY_MODEL { LUM_DELAY_MODEL_SLOW = 0, LUM_DELAY_MODEL_FAST = 1 };

struct LUM_TIMING_NETLIST_FIELDS {
  int netlist_kind = LUM_NETLIST_POST_FIT;
  int delay_model = LUM_DELAY_MODEL_SLOW;
  bool risefall = false;
  std::string speed_grade;

  std::string compose() const;
  // The speed grade applies to the slow model only.
  bool speed_grade_enabled() const { return delay_model == LUM_DELAY_MODEL_SLOW; }
};

// ---- list paths ------------------------------------------------------------------------

// The ten path kinds, in the order their options are written.
enum LUM_PATH_KIND {
  LUM_PATH_TSU,
  LUM_PATH_TH,
  LUM_PATH_TCO,
  LUM_PATH_TPD,
  LUM_PATH_MIN_TCO,
  LUM_PATH_MIN_TPD,
  LUM_PATH_CLOCK_SETUP,
  LUM_PATH_CLOCK_HOLD,
  LUM_PATH_CLOCK_SETUP_IO,
  LUM_PATH_CLOCK_HOLD_IO,
  LUM_PATH_KIND_COUNT
};
// "tsu", "th", ... (the option without its dash).
const char* lum_path_kind_name(int kind);

struct LUM_LIST_PATHS_FIELDS {
  std::string from;
  std::string to;
  std::string clock_filter;
  std::string file_name;
  std::string npaths = "1";
  bool kinds[LUM_PATH_KIND_COUNT] = {};

  std::string compose() const;
};
