// "list_path", a command of the front end's own interpreter that the list
// paths dialog evaluates. It lists the worst paths of the chosen kinds
// through the engine: each kind becomes one hidden report_timing of the
// matching analysis between the matching start and end points, and the
// command returns how many paths were listed. With -file the reports are
// written there as text, one kind after the other (the file is emptied
// first).
//
//   list_path ?-npaths N? ?-from names? ?-to names? ?-clock_filter clock?
//             ?-file F? ?-tsu? ?-th? ?-tco? ?-tpd? ?-min_tco? ?-min_tpd?
//             ?-clock_setup? ?-clock_hold? ?-clock_setup_io? ?-clock_hold_io?
//
// The kinds, as analysis / start points / end points:
//   tsu, th             setup, hold / input ports / register data pins
//   tco, min_tco        setup, hold / register clock pins / output ports
//   tpd, min_tpd        setup, hold / input ports / output ports
//   clock_setup, _hold  setup, hold / register clock pins / register data pins
//   clock_setup_io, _hold_io   setup, hold / everywhere
// A given -from or -to takes the place of the kind's start or end points;
// -clock_filter keeps the paths captured by that clock. Without a kind the
// setup paths of the whole design are listed.
#pragma once

#include <tcl.h>

#include <string>
#include <vector>

struct LUM_LIST_PATH_REQUEST {
  std::string npaths = "1";
  std::string from;
  std::string to;
  std::string clock_filter;
  std::string file;
  std::vector<int> kinds;  // LUM_PATH_KIND values in option order
};

// Parses the words after the command name. False with a message (starting
// "list_path:") for an unknown option, a missing value or a bad count.
bool lum_parse_list_path(const std::vector<std::string>& words, LUM_LIST_PATH_REQUEST* request, std::string* error);

// The hidden engine script of each kind. Each prints the report text, or the
// line LUM_LIST_PATH_FAILED followed by the engine's message.
std::vector<std::string> lum_list_path_scripts(const LUM_LIST_PATH_REQUEST& request);
extern const char* const LUM_LIST_PATH_FAILED;

// The number of paths in a report's text: the rows of its summary table.
int lum_count_listed_paths(const std::vector<std::string>& lines);

// Creates the command "list_path" in an interpreter.
void lum_register_list_path(Tcl_Interp* interp);
