#pragma once
// Worst slack per path group and analysis, read from OpenSTA endpoint reports.
//
// Both programs under comparison print the same OpenSTA report,
//   report_checks -path_delay max|min -format end -digits 4
// which gives, for every path group (one per capturing clock, plus
// "**async_default**" for recovery and removal checks), a heading such as
// "max_delay/setup group clk" followed by a table whose first row is the worst
// endpoint.  Anything else in the output is ignored.

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace chronel::truth {

enum class Analysis { setup, hold };
const char* analysis_name(Analysis a);

// Worst slack in ns, keyed by analysis and path group name.
using SlackTable = std::map<std::pair<Analysis, std::string>, double>;

// Reads every group's worst slack.  A group heading without a slack row
// before the next heading is reported in `problems` rather than dropped.
SlackTable parse_endpoint_reports(const std::string& output, std::vector<std::string>& problems);

// Differences between a reference table and a table under test: groups
// missing on either side and slacks that differ by `tolerance_ns` or more.
// Empty when the two agree.
std::vector<std::string> compare_slack_tables(const SlackTable& reference, const SlackTable& tested,
                                              double tolerance_ns);

}  // namespace chronel::truth
