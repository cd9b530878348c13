// A child process with pipes (POSIX fork/exec) whose output is read line by
// line on the thread that called run().
#include "platform/ipc.hh"

#include "platform/msg.hh"

#include <atomic>
#include <chrono>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// A child that ends while we write to it must give us EPIPE, not kill the
// whole front end, so SIGPIPE is ignored process-wide (children get the
// default disposition back before exec).
void ipc_ignore_sigpipe_once() {
  static std::once_flag once;
  std::call_once(once, [] { std::signal(SIGPIPE, SIG_IGN); });
}

void ipc_close(int* fd) {
  if (*fd >= 0) {
    ::close(*fd);
    *fd = -1;
  }
}

// Reads up to length bytes, retrying on EINTR. Returns what read() returns.
ssize_t ipc_read(int fd, char* buffer, size_t length) {
  for (;;) {
    ssize_t n = ::read(fd, buffer, length);
    if (n >= 0 || errno != EINTR) return n;
  }
}

// The child's side after fork(): only async-signal-safe calls until exec. On
// failure the errno value goes back through the status pipe.
[[noreturn]] void ipc_exec_child(const char* program, char* const argv[], int stdin_fd,
                                 int stdout_fd, int stderr_fd, int status_fd, const char* working_dir) {
  std::signal(SIGPIPE, SIG_DFL);
  // dup2 onto itself keeps close-on-exec, so clear it by hand in that case.
  auto move_to = [](int fd, int target) {
    return fd == target ? ::fcntl(fd, F_SETFD, 0) : ::dup2(fd, target);
  };
  if (move_to(stdin_fd, STDIN_FILENO) < 0 || move_to(stdout_fd, STDOUT_FILENO) < 0 ||
      move_to(stderr_fd, STDERR_FILENO) < 0) {
    int error = errno;
    (void)!::write(status_fd, &error, sizeof error);
    ::_exit(127);
  }
  if (working_dir != nullptr && ::chdir(working_dir) != 0) {
    int error = errno;
    (void)!::write(status_fd, &error, sizeof error);
    ::_exit(127);
  }
  ::execvp(program, argv);
  int error = errno;
  (void)!::write(status_fd, &error, sizeof error);
  ::_exit(127);
}

}  // namespace

IPC_COMMAND::IPC_COMMAND() { ipc_ignore_sigpipe_once(); }

IPC_COMMAND::~IPC_COMMAND() { close_stdin(); }

bool IPC_COMMAND::split_command_line(const std::string& line, std::string* program,
                                     std::string* args_joined_by_nul, std::string* error) {
  std::vector<std::string> words;
  size_t i = 0;
  const size_t n = line.size();
  for (;;) {
    while (i < n && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i >= n) break;
    std::string word;
    bool quoted = false;
    while (i < n && (quoted || (line[i] != ' ' && line[i] != '\t'))) {
      char c = line[i];
      if (c == '"') {
        quoted = !quoted;
        ++i;
      } else if (c == '\\' && i + 1 < n && (line[i + 1] == '"' || line[i + 1] == '\\')) {
        word.push_back(line[i + 1]);
        i += 2;
      } else {
        word.push_back(c);
        ++i;
      }
    }
    if (quoted) {
      if (error != nullptr) *error = "unterminated double quote in command line: " + line;
      return false;
    }
    words.push_back(std::move(word));
  }
  if (words.empty() || words[0].empty()) {
    if (error != nullptr) *error = "no program in command line \"" + line + "\"";
    return false;
  }
  if (program != nullptr) *program = words[0];
  if (args_joined_by_nul != nullptr) {
    args_joined_by_nul->clear();
    for (size_t w = 1; w < words.size(); ++w) {
      *args_joined_by_nul += words[w];
      args_joined_by_nul->push_back('\0');
    }
  }
  return true;
}

int IPC_COMMAND::run(const char* command_line, const char* input_file, const char* working_dir) {
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_status = STATUS_UNKNOWN;
    m_start_error.clear();
  }
  auto fail = [this](const std::string& reason) {
    msg_debug("IPC_COMMAND: %s", reason.c_str());
    std::lock_guard<std::mutex> lock(m_mutex);
    m_start_error = reason;
    m_status = STATUS_FAILED;
    m_status_changed.notify_all();
    return -1;
  };

  std::string program;
  std::string args;
  std::string error;
  if (!split_command_line(command_line != nullptr ? command_line : "", &program, &args, &error))
    return fail(error);

  // argv for the child, built before fork (no allocation in the child).
  std::vector<char*> argv;
  argv.push_back(program.data());
  for (size_t start = 0; start < args.size();) {
    argv.push_back(args.data() + start);
    start = args.find('\0', start) + 1;
  }
  argv.push_back(nullptr);

  int child_stdin = -1;
  int our_stdin = -1;
  if (input_file != nullptr && *input_file != '\0') {
    child_stdin = ::open(input_file, O_RDONLY | O_CLOEXEC);
    if (child_stdin < 0)
      return fail(std::string("cannot open input file \"") + input_file + "\": " +
                  std::strerror(errno));
  } else {
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0) return fail(std::string("pipe: ") + std::strerror(errno));
    child_stdin = fds[0];
    our_stdin = fds[1];
  }
  int out_fds[2];
  if (::pipe2(out_fds, O_CLOEXEC) != 0) {
    ipc_close(&child_stdin);
    ipc_close(&our_stdin);
    return fail(std::string("pipe: ") + std::strerror(errno));
  }
  // The child's standard error goes through us: it still reaches our own
  // standard error, and its last part is kept for get_stderr_tail().
  int err_fds[2];
  if (::pipe2(err_fds, O_CLOEXEC) != 0) {
    ipc_close(&child_stdin);
    ipc_close(&our_stdin);
    ipc_close(&out_fds[0]);
    ipc_close(&out_fds[1]);
    return fail(std::string("pipe: ") + std::strerror(errno));
  }
  // Closed by a successful exec; carries errno back when exec (or the set-up
  // before it) fails, so a missing program is reported instead of hanging.
  int status_fds[2];
  if (::pipe2(status_fds, O_CLOEXEC) != 0) {
    ipc_close(&child_stdin);
    ipc_close(&our_stdin);
    ipc_close(&out_fds[0]);
    ipc_close(&out_fds[1]);
    ipc_close(&err_fds[0]);
    ipc_close(&err_fds[1]);
    return fail(std::string("pipe: ") + std::strerror(errno));
  }
  const char* dir = working_dir != nullptr && *working_dir != '\0' ? working_dir : nullptr;

  pid_t pid = ::fork();
  if (pid == 0) ipc_exec_child(program.c_str(), argv.data(), child_stdin, out_fds[1], err_fds[1],
                               status_fds[1], dir);
  int fork_errno = errno;
  ipc_close(&child_stdin);
  ipc_close(&out_fds[1]);
  ipc_close(&err_fds[1]);
  ipc_close(&status_fds[1]);
  if (pid < 0) {
    ipc_close(&our_stdin);
    ipc_close(&out_fds[0]);
    ipc_close(&err_fds[0]);
    ipc_close(&status_fds[0]);
    return fail(std::string("fork: ") + std::strerror(fork_errno));
  }

  int exec_errno = 0;
  ssize_t got = ipc_read(status_fds[0], reinterpret_cast<char*>(&exec_errno), sizeof exec_errno);
  ipc_close(&status_fds[0]);
  if (got > 0) {
    ipc_close(&our_stdin);
    ipc_close(&out_fds[0]);
    ipc_close(&err_fds[0]);
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    std::string where = dir != nullptr && exec_errno != 0 && got == sizeof exec_errno
                            ? std::string(" (in \"") + dir + "\")"
                            : std::string();
    return fail("cannot run \"" + program + "\"" + where + ": " + std::strerror(exec_errno));
  }

  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_pid = pid;
    m_stdin_fd = our_stdin;
    m_status = STATUS_RUNNING;
    m_exit_code = -1;
    m_exit_signal = 0;
    m_stderr_tail.clear();
    m_status_changed.notify_all();
  }

  // Standard error is read on a thread of its own, so that neither stream
  // can block the other. It stops at end of file, or soon after the child
  // has been reaped (a grandchild may hold the pipe open).
  std::atomic<bool> child_reaped{false};
  std::thread stderr_reader([this, fd = err_fds[0], &child_reaped] {
    char block[4096];
    for (;;) {
      pollfd wait_for{fd, POLLIN, 0};
      int ready = ::poll(&wait_for, 1, 100);
      if (ready < 0 && errno != EINTR) break;
      if (ready <= 0) {
        if (child_reaped.load()) break;
        continue;
      }
      ssize_t n = ipc_read(fd, block, sizeof block);
      if (n <= 0) break;
      size_t written = 0;
      while (written < static_cast<size_t>(n)) {
        ssize_t w = ::write(STDERR_FILENO, block + written, static_cast<size_t>(n) - written);
        if (w <= 0 && errno != EINTR) break;
        if (w > 0) written += static_cast<size_t>(w);
      }
      std::lock_guard<std::mutex> lock(m_mutex);
      m_stderr_tail.append(block, static_cast<size_t>(n));
      if (m_stderr_tail.size() > 2 * STDERR_TAIL_BYTES)
        m_stderr_tail.erase(0, m_stderr_tail.size() - STDERR_TAIL_BYTES);
    }
  });

  // A line handler that throws must not leave the child and its pipes behind:
  // the failure is a broken invariant, reported, and reading goes on.
  auto deliver = [this](const std::string& text) {
    try {
      process_line(text);
    } catch (const std::exception& error) {
      msg_internal_error(error.what(), "ipc", __LINE__);
    } catch (...) {
      msg_internal_error("unknown exception in process_line", "ipc", __LINE__);
    }
  };

  auto block_done = [this] {
    try {
      block_delivered();
    } catch (const std::exception& error) {
      msg_internal_error(error.what(), "ipc", __LINE__);
    } catch (...) {
      msg_internal_error("unknown exception in block_delivered", "ipc", __LINE__);
    }
  };

  // Read the output in large blocks and cut it at line feeds. Lines have no
  // size limit: a partial line simply stays in the buffer until its end comes.
  const size_t k_block = 256 * 1024;
  std::string buffer;
  std::string line;
  size_t line_start = 0;
  auto last_block_done = std::chrono::steady_clock::now();
  for (;;) {
    size_t old_size = buffer.size();
    buffer.resize(old_size + k_block);
    ssize_t n = ipc_read(out_fds[0], buffer.data() + old_size, k_block);
    if (n <= 0) {
      buffer.resize(old_size);
      break;
    }
    buffer.resize(old_size + static_cast<size_t>(n));
    const char* data = buffer.data();
    size_t scan = old_size;
    for (;;) {
      const void* found = std::memchr(data + scan, '\n', buffer.size() - scan);
      if (found == nullptr) break;
      size_t end = static_cast<size_t>(static_cast<const char*>(found) - data);
      size_t length = end - line_start;
      if (length > 0 && data[end - 1] == '\r') --length;
      line.assign(data + line_start, length);
      deliver(line);
      line_start = end + 1;
      scan = line_start;
    }
    if (line_start > 0) {
      buffer.erase(0, line_start);
      line_start = 0;
    }
    // Lines gathered by the handler go on when the child pauses, not after
    // every block: a child that writes line by line would otherwise make one
    // tiny block per line. While output flows they go on every
    // BLOCK_DONE_MAX_MS all the same.
    pollfd more{out_fds[0], POLLIN, 0};
    const auto now = std::chrono::steady_clock::now();
    if (::poll(&more, 1, BLOCK_DONE_PAUSE_MS) <= 0 ||
        now - last_block_done >= std::chrono::milliseconds(BLOCK_DONE_MAX_MS)) {
      block_done();
      last_block_done = now;
    }
  }
  if (buffer.size() > line_start) {
    size_t length = buffer.size() - line_start;
    if (buffer[buffer.size() - 1] == '\r') --length;
    line.assign(buffer.data() + line_start, length);
    deliver(line);
  }
  block_done();
  ipc_close(&out_fds[0]);

  // Wait for the end without reaping first, so that kill_child() can never
  // signal a recycled process id; then forget the id and reap.
  siginfo_t info;
  while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
  }
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_pid = -1;
  }
  int wait_status = 0;
  while (::waitpid(pid, &wait_status, 0) < 0 && errno == EINTR) {
  }
  close_stdin();
  int result = WIFEXITED(wait_status)     ? WEXITSTATUS(wait_status)
               : WIFSIGNALED(wait_status) ? 128 + WTERMSIG(wait_status)
                                          : -1;
  child_reaped.store(true);
  stderr_reader.join();
  ipc_close(&err_fds[0]);
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stderr_tail.size() > STDERR_TAIL_BYTES)
      m_stderr_tail.erase(0, m_stderr_tail.size() - STDERR_TAIL_BYTES);
    m_exit_code = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : -1;
    m_exit_signal = WIFSIGNALED(wait_status) ? WTERMSIG(wait_status) : 0;
    m_status = STATUS_ENDED;
    m_status_changed.notify_all();
  }
  return result;
}

int IPC_COMMAND::write_to_stdin(const char* text, size_t length) {
  std::lock_guard<std::mutex> write_lock(m_write_mutex);
  int fd;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    fd = m_stdin_fd;
  }
  if (fd < 0) return -1;
  size_t done = 0;
  while (done < length) {
    ssize_t n = ::write(fd, text + done, length - done);
    if (n < 0) {
      if (errno == EINTR) continue;
      return -1;  // EPIPE: the child has closed its input or ended
    }
    done += static_cast<size_t>(n);
  }
  return static_cast<int>(done);
}

int IPC_COMMAND::get_process_status(int timeout_ms) {
  std::unique_lock<std::mutex> lock(m_mutex);
  auto known = [this] { return m_status != STATUS_UNKNOWN; };
  if (timeout_ms < 0)
    m_status_changed.wait(lock, known);
  else if (timeout_ms > 0)
    m_status_changed.wait_for(lock, std::chrono::milliseconds(timeout_ms), known);
  return m_status;
}

pid_t IPC_COMMAND::get_pid() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_pid;
}

void IPC_COMMAND::kill_child(int signal_number) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (m_pid > 0) ::kill(m_pid, signal_number);
}

void IPC_COMMAND::close_stdin() {
  std::lock_guard<std::mutex> write_lock(m_write_mutex);
  std::lock_guard<std::mutex> lock(m_mutex);
  ipc_close(&m_stdin_fd);
}

void IPC_COMMAND::get_exit(int* code, int* signal_number) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (code != nullptr) *code = m_exit_code;
  if (signal_number != nullptr) *signal_number = m_exit_signal;
}

std::string IPC_COMMAND::get_stderr_tail() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_stderr_tail;
}

std::string IPC_COMMAND::get_start_error() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return m_start_error;
}
