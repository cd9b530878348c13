// The engine process seen from the front end: runs vexa_sta, classifies every
// line it prints (on the reader thread) and hands the resulting Tcl commands
// to the front end's interpreter through atcl_post.
//
// Classification of a line, in normal mode, when no command is being gathered:
//   "msg_post 0 ..."           -> "msg_post <target> ..."            (message post)
//   "msg_internal_error 0 ..." -> "msg_internal_error <target> ..."  (engine internal error)
//   "tcl> "                    -> "lum_tcl_prompt"
//   "> "                       -> "lum_tcl_cont_prompt"
//   "echo_stdout X"            -> "lum_echo_stdout X" ("lum_echo_stdout -- X"
//                                 when the text begins with "-")
//   "report_status N"          -> "lum_report_status N%"
//   "lum_..."                  -> forwarded as it stands
//   anything else              -> dropped (debug message)
// A forwarded line whose Tcl command is incomplete (open brace, quote or
// bracket) gathers the following lines, joined by "\n", until it is complete.
//
// Plain text comes in floods, so it is batched: consecutive text lines whose
// word is taken literally by Tcl (a bare word without blanks or special
// characters, "{}", or a braced "echo_stdout {R" followed by a lone "}")
// are joined by line feeds into one "lum_echo_stdout -- {R1\nR2...}"
// (the console cuts at line feeds, so it shows the same rows as one command
// per line would). A batch of one line is forwarded exactly as above. The
// batch is forwarded before any other line, when it is full, and whenever
// the reader has read all there is (block_delivered), so no text waits for
// more output.
// A NUL byte in a line becomes Tcl's form of the character NUL (the bytes
// C0 80), so that a forwarded command is never cut short at it.
// In hidden mode (a hidden command outstanding) the engine's text lines go to
// the caller's result, exactly as the engine printed them (its encoding
// undone), and nothing is forwarded.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "platform/ipc.hh"
#include "platform/thr.hh"

class MSG_REPORT;
class LUM_MSG_DISPLAY;

// The line buffer is emptied when a gathered command grows beyond this.
constexpr size_t LUM_LINE_BUFFER_LIMIT = 104857600;

class LUM_IPC_OBJECT : public IPC_COMMAND {
 public:
  LUM_IPC_OBJECT();
  ~LUM_IPC_OBJECT() override;

  // Message target: the report whose target id is printed into rewritten post
  // lines. Null disables the recognition of first lines (shutdown).
  void set_msg_target(MSG_REPORT* report);
  MSG_REPORT* get_msg_target() const { return m_msg_target.load(); }
  void set_display(LUM_MSG_DISPLAY* display) { m_display = display; }

  // Reader thread: one engine line without its line end.
  void process_line(const std::string& line) override;
  // Reader thread: forwards the batched text lines.
  void block_delivered() override;

  // Resets the idle event, then writes.
  int write_to_stdin(const char* text, size_t length) override;

  // Runs text (ending in "\n") hidden: sets hidden mode, points the hidden
  // result at *result, writes, and waits until the engine's next prompt or
  // continuation prompt (or an engine internal error, or the end of the
  // engine process). Returns false
  // when the engine had already ended or the write failed.
  bool write_to_stdin_hidden(const char* text, std::vector<std::string>* result);

  // Posted at every prompt, internal error and at the end of the process;
  // reset before every write.
  THR_EVENT& get_idle_event() { return m_idle; }
  bool is_first_prompt_pending() const { return m_first_prompt.load(); }
  bool is_hidden_mode() const { return m_hidden_mode.load(); }

  // Set by the reader thread when run() has returned (the engine ended and
  // all its output was processed). Wakes every waiter.
  void mark_ended();
  bool has_ended() const { return m_ended.load(); }

  // Size of the command being gathered (tests).
  size_t get_line_buffer_size() const { return m_line_buffer.size(); }

  // Flow control. A flood of engine output must not pile up unboundedly in
  // the interpreter's queue (memory, and one endless drain on the GUI
  // thread): while this many forwarded lines wait to run (a batch counts as
  // the lines it holds), the reader stops reading, so the engine blocks on
  // its full pipe. Never while the GUI thread waits for the first prompt, or
  // once unthrottled (shutdown).
  static constexpr int MAX_OUTSTANDING_LINES = 65536;
  // A text batch is forwarded at the latest at MAX_OUTSTANDING_LINES / 8
  // lines or at this size.
  static constexpr size_t BATCH_BYTES = 262144;
  // Lines forwarded and not yet run, over all engines of the process.
  static int get_outstanding_lines();
  void set_unthrottled(bool unthrottled);

 protected:
  // Hands a complete command, made of this many engine lines, to the front
  // end's interpreter queue. Tests override it to see the commands.
  virtual void post_command(const std::string& command, int lines);

 public:

  // The process-wide engine-startup event: posted at the first prompt of an
  // engine; reset when a console is made.
  static THR_EVENT& get_startup_event();

 private:
  void forward_buffer();
  // The line classification described above, without batching.
  void classify_line(const std::string& line);
  // A line while a hidden command runs.
  void hidden_line(const std::string& line);
  // Takes a text line into the batch when it can go there.
  bool batch_text_line(const std::string& line);
  void add_to_batch(const std::string& line, bool braced);
  void flush_text_batch();
  // Forwards the batch and a held "echo_stdout {" line (before other lines).
  void flush_held_text();

  std::atomic<MSG_REPORT*> m_msg_target{nullptr};
  LUM_MSG_DISPLAY* m_display = nullptr;
  std::string m_line_buffer;
  std::atomic<bool> m_first_prompt{true};
  std::atomic<bool> m_hidden_mode{false};
  THR_EVENT m_hidden_done;
  std::vector<std::string>* m_hidden_result = nullptr;
  THR_EVENT m_idle;
  std::atomic<bool> m_ended{false};
  std::atomic<bool> m_unthrottled{false};
  bool m_forward = false;  // the first line of the gathered command was recognised
  std::string m_post_prefix;
  // The text batch (reader thread only): the joined texts, their number,
  // and the command of its first line as it would be forwarded alone.
  std::string m_batch_text;
  int m_batch_lines = 0;
  std::string m_batch_single;
  // An "echo_stdout {R" line waiting for its "}" line (empty: none).
  std::string m_brace_line;
  std::string m_ie_prefix;
};

// The reader thread: param is a LUM_READ_THREAD_PARAM. Runs the engine until
// it ends, then marks the IPC object ended (posting its idle event) and returns 0.
struct LUM_READ_THREAD_PARAM {
  std::string m_command_line;
  LUM_IPC_OBJECT* m_ipc_object = nullptr;
};
unsigned lum_read_thread_proc(void* param);
