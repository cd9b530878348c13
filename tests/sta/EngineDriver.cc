#include "EngineDriver.hh"

#include <chrono>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vexa::test {

std::string engine_path()
{
  return std::string(CHRONEL_BIN_DIR) + "/vexa_sta";
}

EngineDriver::EngineDriver(const std::vector<std::string> &args)
{
  int to_child[2];
  int from_child[2];
  if (pipe(to_child) != 0 || pipe(from_child) != 0)
    return;
  m_pid = fork();
  if (m_pid == 0) {
    dup2(to_child[0], 0);
    dup2(from_child[1], 1);
    close(to_child[1]);
    close(from_child[0]);
    std::string program = engine_path();
    std::vector<char *> argv;
    argv.push_back(program.data());
    std::vector<std::string> copy = args;
    for (std::string &a : copy)
      argv.push_back(a.data());
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  close(to_child[0]);
  close(from_child[1]);
  m_in = to_child[1];
  m_out = from_child[0];
  signal(SIGPIPE, SIG_IGN);
}

EngineDriver::~EngineDriver()
{
  if (m_in >= 0)
    close(m_in);
  if (m_pid > 0) {
    int status = 0;
    if (waitpid(m_pid, &status, WNOHANG) == 0) {
      kill(m_pid, SIGKILL);
      waitpid(m_pid, &status, 0);
    }
  }
  if (m_out >= 0)
    close(m_out);
}

void EngineDriver::send(const std::string &text)
{
  std::string line = text + "\n";
  const char *p = line.data();
  size_t left = line.size();
  while (left > 0) {
    ssize_t n = write(m_in, p, left);
    if (n <= 0)
      return;
    p += n;
    left -= static_cast<size_t>(n);
  }
}

bool EngineDriver::read_line(std::string &line, double timeout_seconds)
{
  auto deadline = std::chrono::steady_clock::now()
                + std::chrono::milliseconds(static_cast<int>(timeout_seconds * 1000));
  for (;;) {
    size_t nl = m_buffer.find('\n');
    if (nl != std::string::npos) {
      line = m_buffer.substr(0, nl);
      m_buffer.erase(0, nl + 1);
      m_transcript.push_back(line);
      return true;
    }
    auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now()).count();
    if (left <= 0) {
      m_timed_out = true;
      return false;
    }
    pollfd fd{m_out, POLLIN, 0};
    if (poll(&fd, 1, static_cast<int>(left)) <= 0)
      continue;
    char chunk[4096];
    ssize_t n = read(m_out, chunk, sizeof chunk);
    if (n <= 0)
      return false;
    m_buffer.append(chunk, static_cast<size_t>(n));
  }
}

std::vector<std::string> EngineDriver::read_to_prompt(double timeout_seconds)
{
  m_timed_out = false;
  std::vector<std::string> lines;
  std::string line;
  while (read_line(line, timeout_seconds)) {
    if (line == "tcl> ")
      return lines;
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> EngineDriver::command(const std::string &text, double timeout_seconds)
{
  send(text);
  return read_to_prompt(timeout_seconds);
}

void EngineDriver::interrupt()
{
  if (m_pid > 0)
    kill(m_pid, SIGINT);
}

int EngineDriver::finish(double timeout_seconds)
{
  if (m_in >= 0) {
    close(m_in);
    m_in = -1;
  }
  std::string line;
  while (read_line(line, timeout_seconds)) {
  }
  int status = 0;
  if (m_pid <= 0 || waitpid(m_pid, &status, 0) != m_pid)
    return -1;
  m_pid = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool is_protocol_line(const std::string &line)
{
  static const char *prefixes[] = {"echo_stdout ", "msg_post 0 ", "msg_internal_error 0 ",
                                   "report_status ", "lum_"};
  if (line == "tcl> " || line == "> " || line == "}")
    return true;
  for (const char *p : prefixes)
    if (line.rfind(p, 0) == 0)
      return true;
  return false;
}

std::vector<std::string> hidden_texts(const std::vector<std::string> &lines)
{
  std::vector<std::string> out;
  for (const std::string &line : lines)
    if (line.rfind("echo_stdout ", 0) == 0)
      out.push_back(line.size() > 13 ? line.substr(13) : std::string());
  return out;
}

std::vector<std::string> lines_starting(const std::vector<std::string> &lines,
                                        const std::string &prefix)
{
  std::vector<std::string> out;
  for (const std::string &line : lines)
    if (line.rfind(prefix, 0) == 0)
      out.push_back(line);
  return out;
}

} // namespace vexa::test
