// Small rules of the report browser that need no window: how a panel name is
// read from a database path, the engine commands composed for a panel, the
// proposed export file name and where a page control splits. They live apart
// from the widgets so that they are tested without a screen.
#pragma once

#include <string>

// The panel part of a database path: everything after the first "||"
// ("Timing Analyzer||Summary (Setup)" gives "Summary (Setup)"). A path
// without "||" loses only its first character, as the panel commands have
// always done; such paths do not occur in a well-formed report.
std::string lum_panel_name_from_rdb_path(const std::string& rdb_path);

// "delete_timing_report_panel -name \"<panel>\"", the panel name escaped for a
// double-quoted Tcl word.
std::string lum_delete_panel_command(const std::string& panel_name);

// The file name proposed when a panel is exported: "<revision>-<label>.rpt"
// with every character that is unsafe in a file name (: \ / " | > < * ? &)
// replaced by "-".
std::string lum_export_file_name(const std::string& revision, const std::string& label);

// How a page control divides its client area.
enum LUM_SPLIT_ENUM {
  LUM_SPLIT_NONE = 0,          // one page
  LUM_SPLIT_HORIZONTAL = 1,    // two panes, one above the other
  LUM_SPLIT_VERTICAL = 2,      // two panes side by side
  LUM_SPLIT_FOUR_WAY = 3,      // two by two panes
};

// Split positions in pixels; 0 means not split that way.
struct LUM_SPLIT_POSITIONS {
  int row = 0;
  int column = 0;
  bool operator==(const LUM_SPLIT_POSITIONS&) const = default;
};

// The positions of a split of a width x height client area: a row split at
// half the height and/or a column split at half the width.
LUM_SPLIT_POSITIONS lum_split_positions(LUM_SPLIT_ENUM mode, int width, int height);
// The number of panes the positions make (1, 2 or 4).
int lum_split_pane_count(const LUM_SPLIT_POSITIONS& positions);

// Why a table of a panel has no rows, from the command that made the panel
// (its first word and report options), in the words the text form of the
// report uses where it has some.
std::string lum_empty_table_reason(const std::string& panel_command);
