// The console's message display: the queue of LUM_KRO_OUTPUT_LINE objects
// between the call-back commands (which fill it) and the console's timer
// (which drains it). Both sides run on the GUI thread, so the queue has no
// lock; only the internal-error-seen event is touched by the reader thread.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "lum_kro_output_line.hh"
#include "platform/msg.hh"
#include "platform/thr.hh"

class LUM_MSG_DISPLAY : public MSG_DISPLAY {
 public:
  // Appends a message line holding a copy of the post.
  void post_display(const MSG_POST* post, int flags) override;
  // Shows the engine's internal-error text (as an internal-error message row
  // and through the platform's internal-error service), then resets the
  // internal-error-seen event so that a later engine exit is reported again.
  void internal_error_display(const char* text) override;

  void display_tcl_prompt();
  void display_tcl_cont_prompt();
  // Cuts text at every carriage return, line feed and form feed (runs of them
  // give no empty pieces) and appends the pieces as rows of standard-output
  // text. Consecutive rows share one queued line (up to TEXT_BLOCK_BYTES),
  // its text holding them joined by line feeds, so that a flood costs one
  // queued line per block instead of one per row.
  void echo_stdout(const char* text);
  static constexpr size_t TEXT_BLOCK_BYTES = 16384;

  bool has_lines() const { return !m_lines.empty(); }
  size_t line_count() const { return m_lines.size(); }
  // Takes the oldest queued line, or null.
  std::unique_ptr<LUM_KRO_OUTPUT_LINE> take_front();
  void discard_all() { m_lines.clear(); }

  // Posted by the engine reader when the engine reports an internal error;
  // while posted, the console does not report the engine's exit.
  THR_EVENT& get_internal_error_seen_event() { return m_internal_error_seen; }

  // Called (GUI thread) whenever a line is appended to an empty queue, so the
  // console can drain soon instead of waiting for its next timer tick.
  void set_lines_queued_callback(std::function<void()> callback) { m_lines_queued = std::move(callback); }

 private:
  void append(std::unique_ptr<LUM_KRO_OUTPUT_LINE> line);

  std::deque<std::unique_ptr<LUM_KRO_OUTPUT_LINE>> m_lines;
  THR_EVENT m_internal_error_seen;
  std::function<void()> m_lines_queued;
};
