// Gathers input lines into complete Tcl commands.
//
// The protocol shell, the interactive shell and read_sdc all read text line
// by line and must evaluate whole commands only: a line that leaves a brace,
// quote or bracket open is joined with the next ones (with "\n") until
// Tcl_CommandComplete accepts the text.
//
// A line holding a NUL byte cannot belong to a command: Tcl's completeness
// test stops at the NUL, so a NUL inside quotes or braces would keep the
// command open for ever and swallow every later line. Such a line drops
// the command it belongs to; add() answers true, take() gives "", and
// refused() reports it once.
#pragma once

#include <tcl.h>

#include <string>

namespace vexa {

class CommandAssembler
{
public:
  // Adds one line; a "\r" at its end (a CRLF line end) is dropped. True when
  // the text gathered so far is a complete command, which take() hands over.
  bool add(std::string line)
  {
    if (!line.empty() && line.back() == '\r')
      line.pop_back();
    if (line.find('\0') != std::string::npos) {
      m_text.clear();
      m_refused = true;
      return true;
    }
    // Incomplete text is never empty, so an empty buffer means a new command.
    if (!m_text.empty())
      m_text += "\n";
    m_text += line;
    return Tcl_CommandComplete(m_text.c_str()) != 0;
  }

  // True while an incomplete command waits for more lines.
  bool pending() const { return !m_text.empty(); }

  // True (once) when the command just taken was dropped for a NUL byte.
  bool refused()
  {
    bool was = m_refused;
    m_refused = false;
    return was;
  }

  // The gathered text (complete, or what is left at the end of the input);
  // the assembler starts afresh.
  std::string take()
  {
    std::string command;
    command.swap(m_text);
    return command;
  }

private:
  std::string m_text;
  bool m_refused = false;
};

} // namespace vexa
