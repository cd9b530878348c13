// A child process with pipes. run() starts the child and then, on the calling
// thread, reads its standard output and calls process_line() once per line
// until the child closes its output and has ended. Other threads may write to
// the child's standard input and ask for its status meanwhile.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>

class IPC_COMMAND {
 public:
  enum STATUS { STATUS_UNKNOWN = 0, STATUS_ENDED = 1, STATUS_RUNNING = 2, STATUS_FAILED = 3 };

  IPC_COMMAND();
  virtual ~IPC_COMMAND();
  IPC_COMMAND(const IPC_COMMAND&) = delete;
  IPC_COMMAND& operator=(const IPC_COMMAND&) = delete;

  // Starts command_line (a program path, double-quoted if it holds blanks, then
  // blank-separated arguments, which may be double-quoted too). input_file,
  // when non-empty, is given to the child as its standard input instead of the
  // pipe; working_dir, when non-empty, is the child's directory. Blocks until
  // the child has ended and all its output has been handed to process_line.
  // Returns the child's exit status (128 + signal number when killed), or -1
  // when the program could not be started (the status then becomes
  // STATUS_FAILED, so that waiters never hang).
  int run(const char* command_line, const char* input_file, const char* working_dir);

  // Called on run()'s thread for every line of the child's standard output,
  // without its line end ("\n" or "\r\n"); a last line without a line end is
  // delivered when the output closes.
  virtual void process_line(const std::string& line) = 0;

  // Called on run()'s thread when the reader has handed every line read so
  // far to process_line and the child writes nothing more for
  // BLOCK_DONE_PAUSE_MS, at least every BLOCK_DONE_MAX_MS while its output
  // flows, and once after the last line: a handler that gathers lines passes
  // them on then.
  virtual void block_delivered() {}
  static constexpr int BLOCK_DONE_PAUSE_MS = 1;
  static constexpr int BLOCK_DONE_MAX_MS = 20;

  // Writes bytes to the child's standard input. Returns the number of bytes
  // written, or -1 when there is no running child or the pipe is closed
  // (SIGPIPE is ignored; EINTR is retried).
  virtual int write_to_stdin(const char* text, size_t length);

  // STATUS_UNKNOWN while the child is being started, STATUS_RUNNING once it
  // runs, STATUS_ENDED after it ended, STATUS_FAILED if it could not start.
  // Waits up to timeout_ms for the status to leave STATUS_UNKNOWN.
  int get_process_status(int timeout_ms);

  // The child's process id, or -1.
  pid_t get_pid() const;
  // Sends a signal to the child, if it runs. For tests and forced shutdown.
  void kill_child(int signal_number);
  // Closes the child's standard input (the child sees end of file).
  void close_stdin();

  // How the last child ended, once get_process_status() is STATUS_ENDED: its
  // exit code (-1 when a signal ended it) and the signal (0 when it exited).
  void get_exit(int* code, int* signal_number) const;
  // The last part (up to STDERR_TAIL_BYTES) of what the child wrote to its
  // standard error; the whole of it also goes on to our own standard error.
  static constexpr size_t STDERR_TAIL_BYTES = 8192;
  std::string get_stderr_tail() const;

  // Why the last run() returned -1 (e.g. "cannot run \"x\": No such file or
  // directory"); empty after a successful start.
  std::string get_start_error() const;

  // Splits a command line as run() does. Exposed for tests. Every argument in
  // *args_joined_by_nul is followed by one NUL byte, so that an empty argument
  // ("" on the command line) stays distinguishable from no argument.
  static bool split_command_line(const std::string& line, std::string* program,
                                 std::string* args_joined_by_nul, std::string* error);

 private:
  mutable std::mutex m_mutex;
  std::condition_variable m_status_changed;
  int m_status = STATUS_UNKNOWN;
  pid_t m_pid = -1;
  int m_stdin_fd = -1;
  // Held while writing to or closing the child's standard input, so that a
  // write never meets a descriptor closed (and perhaps reused) under it, and
  // without blocking status queries behind a full pipe.
  std::mutex m_write_mutex;
  std::string m_start_error;
  int m_exit_code = -1;
  int m_exit_signal = 0;
  std::string m_stderr_tail;
};
