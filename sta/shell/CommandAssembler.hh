// Gathers input lines into complete Tcl commands.
//
// The protocol shell, the interactive shell and read_sdc all read text line
// by line and must evaluate whole commands only: a line that leaves a brace,
// quote or bracket open is joined with the next ones (with "\n") until
// Tcl_CommandComplete accepts the text.
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
    // Incomplete text is never empty, so an empty buffer means a new command.
    if (!m_text.empty())
      m_text += "\n";
    m_text += line;
    return Tcl_CommandComplete(m_text.c_str()) != 0;
  }

  // True while an incomplete command waits for more lines.
  bool pending() const { return !m_text.empty(); }

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
};

} // namespace vexa
