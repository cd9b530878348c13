// Drives a vexa_sta process over pipes for the engine tests.
#pragma once

#include <string>
#include <vector>

namespace vexa::test {

class EngineDriver
{
public:
  // Starts build/bin/vexa_sta with the given arguments.
  explicit EngineDriver(const std::vector<std::string> &args = {"--ipc_sh"});
  ~EngineDriver();
  EngineDriver(const EngineDriver &) = delete;
  EngineDriver &operator=(const EngineDriver &) = delete;

  // Writes text (a "\n" is added) to the engine's stdin.
  void send(const std::string &text);
  // Reads lines until one equals "tcl> " (returned, without it) or the
  // timeout passes (then timed_out() is true; lines read so far are lost
  // to the caller but stay in the transcript).
  std::vector<std::string> read_to_prompt(double timeout_seconds = 60.0);
  // Reads one line (false at end of output or timeout).
  bool read_line(std::string &line, double timeout_seconds = 60.0);
  // send + read_to_prompt.
  std::vector<std::string> command(const std::string &text, double timeout_seconds = 60.0);
  // Closes stdin and waits for the exit status (-1 on abnormal end).
  int finish(double timeout_seconds = 30.0);
  void interrupt();
  bool timed_out() const { return m_timed_out; }
  // The engine's process id (-1 once it has been waited for).
  int pid() const { return m_pid; }
  // Every stdout line seen so far.
  const std::vector<std::string> &transcript() const { return m_transcript; }

private:
  int m_pid = -1;
  int m_in = -1;
  int m_out = -1;
  bool m_timed_out = false;
  std::string m_buffer;
  std::vector<std::string> m_transcript;
};

// Path of the engine program.
std::string engine_path();

// True when line is one of the protocol's line kinds.
bool is_protocol_line(const std::string &line);

// The texts of the echo_stdout lines as the hidden mode sees them (from the
// fourteenth character on); the lone "}" closing lines are skipped.
std::vector<std::string> hidden_texts(const std::vector<std::string> &lines);

// The lines that begin with prefix.
std::vector<std::string> lines_starting(const std::vector<std::string> &lines,
                                        const std::string &prefix);

} // namespace vexa::test
