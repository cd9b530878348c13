// One line of engine output on its way to the console: made on the GUI thread
// by the call-back commands (prompts, echoed text) and by the console's
// message display (posts), queued in LUM_MSG_DISPLAY and drained into the
// console rows by the console's timer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/msg.hh"

// The values are part of the console's contract (rows keep them as their type).
enum LUM_KRO_OUTPUT_TYPE_ENUM : int32_t {
  LUM_KRO_OUTPUT_MESSAGE = 0,         // a message row with its sub-message rows
  LUM_KRO_OUTPUT_TCL_PROMPT = 1,      // the engine is ready: ends the running command
  LUM_KRO_OUTPUT_TCL_CONT_PROMPT = 2, // the engine waits for the rest of a command
  LUM_KRO_OUTPUT_STDOUT = 3,          // rows of engine text, joined by line feeds
};

class LUM_KRO_OUTPUT_LINE {
 public:
  explicit LUM_KRO_OUTPUT_LINE(LUM_KRO_OUTPUT_TYPE_ENUM type) : m_type(type) {}
  // A message line holding its own copy of the post.
  explicit LUM_KRO_OUTPUT_LINE(const MSG_POST* post);
  // A standard-output line holding its own copy of the text: one row, or
  // several joined by line feeds.
  explicit LUM_KRO_OUTPUT_LINE(std::string text);

  LUM_KRO_OUTPUT_TYPE_ENUM get_type() const { return m_type; }
  const MSG_POST* get_msg() const { return m_msg.get(); }
  // Null for lines that carry no text.
  const std::string* get_stdout_str() const { return m_text.get(); }
  std::string* get_stdout_text() { return m_text.get(); }

  void set_msg(const MSG_POST* post);
  void set_stdout_str(std::string text);

 private:
  LUM_KRO_OUTPUT_TYPE_ENUM m_type;
  std::unique_ptr<MSG_POST> m_msg;
  std::unique_ptr<std::string> m_text;
};
