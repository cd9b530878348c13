#pragma once
// Running another program to completion and collecting what it printed.

#include <string>
#include <vector>

namespace chronel::truth {

// What a finished program left behind: its exit status (or the signal that
// ended it) and everything it wrote to stdout and stderr, interleaved as written.
struct ProgramResult {
  bool started = false;  // false if the program could not be executed at all
  int exit_status = -1;  // valid when the program exited normally
  int signal = 0;        // non-zero when a signal ended the program
  std::string output;
  // Measurements of the child, from wait4(): wall time from fork to reaping,
  // user + system CPU time, and its peak resident memory.
  double wall_s = 0;
  double cpu_s = 0;
  long peak_rss_kb = 0;

  bool succeeded() const { return started && signal == 0 && exit_status == 0; }
  // One line for messages: "exit status 0", "killed by signal 11", ...
  std::string describe() const;
};

// Runs `program` (PATH is searched when it has no slash) with `args` in
// directory `cwd` (empty: the current one), stdin from /dev/null, and waits
// for it to end.
ProgramResult run_program(const std::string& program, const std::vector<std::string>& args,
                          const std::string& cwd = {});

}  // namespace chronel::truth
