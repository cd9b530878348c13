#include "program_run.hh"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace chronel::truth {

std::string ProgramResult::describe() const {
  if (!started) return "could not be started";
  if (signal != 0) return "killed by signal " + std::to_string(signal);
  return "exit status " + std::to_string(exit_status);
}

ProgramResult run_program(const std::string& program, const std::vector<std::string>& args,
                          const std::string& cwd) {
  ProgramResult result;
  int fds[2];
  if (pipe(fds) != 0) {
    result.output = std::string("pipe: ") + std::strerror(errno);
    return result;
  }
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);

  const auto start = std::chrono::steady_clock::now();
  pid_t pid = fork();
  if (pid == 0) {
    int null_in = open("/dev/null", O_RDONLY);
    if (null_in >= 0) dup2(null_in, 0);
    dup2(fds[1], 1);
    dup2(fds[1], 2);
    close(fds[0]);
    close(fds[1]);
    if (!cwd.empty() && chdir(cwd.c_str()) != 0) _exit(126);
    execvp(program.c_str(), argv.data());
    _exit(127);
  }
  close(fds[1]);
  if (pid < 0) {
    close(fds[0]);
    result.output = std::string("fork: ") + std::strerror(errno);
    return result;
  }
  char buffer[65536];
  for (;;) {
    ssize_t n = read(fds[0], buffer, sizeof buffer);
    if (n > 0) {
      result.output.append(buffer, static_cast<size_t>(n));
    } else if (n == 0 || errno != EINTR) {
      break;
    }
  }
  close(fds[0]);
  int status = 0;
  struct rusage usage {};
  while (wait4(pid, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  result.wall_s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  result.cpu_s = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                 static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
  result.peak_rss_kb = usage.ru_maxrss;
  if (WIFEXITED(status)) {
    result.exit_status = WEXITSTATUS(status);
    // 127 from the child itself means execvp failed.
    result.started = result.exit_status != 127 || !result.output.empty();
  } else if (WIFSIGNALED(status)) {
    result.started = true;
    result.signal = WTERMSIG(status);
  }
  return result;
}

}  // namespace chronel::truth
