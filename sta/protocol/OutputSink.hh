// The one sink for all text the engine writes.
//
// Every byte of engine output passes through here: OpenSTA's report
// (EngineReport), Tcl's stdout and stderr channels (through that report),
// command results, message posts, prompts and call-backs. In protocol mode
// (--ipc_sh) text is cut into physical lines and each becomes an
// "echo_stdout" line (see Encoder.hh); protocol lines are written to a private
// copy of the original stdout, while file descriptor 1 itself is pointed at
// stderr so that nothing else can ever reach the front end. In plain mode
// (interactive and batch) text is written as it is.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vexa {

enum class OutputMode { plain, protocol };

class OutputSink
{
public:
  // Protocol mode takes over stdout as described above.
  explicit OutputSink(OutputMode mode);
  OutputSink(const OutputSink &) = delete;
  OutputSink &operator=(const OutputSink &) = delete;

  OutputMode mode() const { return m_mode; }

  // Ordinary output of commands. Partial lines are kept until their "\n" or
  // until flush_text(); a "\r" right before "\n" is dropped.
  void write_text(std::string_view text);
  // Error-stream output (Tcl's stderr, OpenSTA's error stream): the same
  // lines in protocol mode, stderr in plain mode.
  void write_error_text(std::string_view text);
  // Emits a pending partial line as a whole line.
  void flush_text();

  // One whole protocol line ("tcl> ", a call-back, a post); "\n" is added.
  // Pending text is flushed first so that the order is kept. In plain mode
  // protocol lines are not written (callers use plain-mode forms instead).
  // A line holding a line break (a word its caller forgot to quote) is not
  // sent; an internal-error line saying so is sent in its place.
  void write_protocol_line(std::string_view line);

  // Protocol mode: each complete text line is first offered to the filter;
  // a line it returns true for has been dealt with and is not written.
  void set_line_filter(std::function<bool(std::string_view)> filter)
  {
    m_filter = std::move(filter);
  }

  // Where protocol lines go (for a last line written from a signal handler).
  int protocol_fd() const { return m_protocol_fd; }

  // Plain-mode prompt text, written without a line end.
  void write_plain_prompt(std::string_view prompt);

private:
  void emit_line(std::string_view line);
  void write_fd(int fd, std::string_view bytes);

  OutputMode m_mode;
  int m_protocol_fd = 1;
  std::string m_partial;
  std::function<bool(std::string_view)> m_filter;
};

} // namespace vexa
