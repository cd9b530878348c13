#pragma once
// The paths of a `report_checks -format full_clock_expanded -fields {input_pins
// nets fanout}` report, read back into rows.

#include <map>
#include <string>
#include <vector>

namespace chronel::truth {

// One row of either half of a path: a pin ("u1/Y (INVX1)", "clk (in)") or a
// description ("clock clk (rise edge)", "library setup time").
struct StaRow {
  double incr = 0;
  double total = 0;
  std::string rise_fall;  // "R", "F" or ""
  std::string text;
  int fanout = -1;        // from the net line that follows a driver pin; -1: none
  bool after_wire = false;  // a load pin: the step to it crossed a net
};

struct StaPath {
  std::string startpoint;  // as the report names it: instance or port
  std::string group;
  std::vector<StaRow> arrival;   // up to and including "data arrival time"
  std::vector<StaRow> required;  // up to and including "data required time"
  double slack = 0;
  // The clock of the first row of a half ("clock clk (rise edge)"), or "".
  static std::string clock_of(const std::vector<StaRow>& rows);
  // The pin the path ends at: the last pin row of the arrival half.
  std::string endpoint_pin() const;
};

std::vector<StaPath> parse_full_paths(const std::string& output, std::vector<std::string>& problems);

// Rows with these descriptions and a zero increment say nothing and may be
// left out by either side: "clock reconvergence pessimism".
bool is_silent_row(const StaRow& row);

}  // namespace chronel::truth
