// Engine commands that the charts of the report browser lead to. Every name
// that goes into a command is quoted as one Tcl list element, so that no
// clock name or panel name of a report database can add a word.
#pragma once

#include <string>
#include <vector>

// Joins words into one command line, each quoted as a Tcl list element.
std::string lum_command_from_words(const std::vector<std::string>& words);

// A time for a command line: the shortest decimal that reads back as the
// same double ("-0.25", "1e-07" is never written: at most 9 decimals).
std::string lum_command_number(double value);

// The report_timing command that lists the end points of one slack range of
// a slack histogram: the clock and analysis come from the command that made
// the histogram panel (create_slack_histogram ... -clock_name C ?-hold?).
// Without a lower / upper bound (-inf / +inf) that option is left out.
// Empty, with the reason in *why, when the histogram's command is not a
// slack histogram command or names no clock, or when count is not positive.
struct LUM_SLACK_RANGE {
  double from = 0;
  double to = 0;
  bool to_inclusive = false;  // the last bin holds its upper edge
  long long count = 0;
  std::string unit;  // for the panel name
};
std::string lum_slack_range_command(const std::string& histogram_command, const LUM_SLACK_RANGE& range,
                                    std::string* why);
