// A stand-in for vexa_sta --ipc_sh that a test controls line by line: it
// prints a prompt "tcl> " at start and after each command, and understands
// a few commands that produce exactly the output a test needs, including
// faults (dying mid-command, partial lines, floods, no prompt at all).
//
// Options:  --log FILE           append every received command line to FILE
//           --startup-delay MS   wait before the first prompt
//           --no-prompt          never print the first prompt (stay alive)
//           --die-before-prompt  exit with status 3 before the first prompt
//           --ignore-exit        treat "exit" as any command (ends on end of input)
// Commands (one per line):
//   exit              end with status 0
//   raw TEXT          print TEXT with "\n" sequences as line ends, then the prompt
//   rawnp TEXT        the same without the prompt
//   flood N           print N lines "echo_stdout  line<i>", then the prompt
//   sleep MS          wait, then the prompt
//   die               exit with status 7 at once, without a prompt
//   die N             print N lines "echo_stdout  line<i>", then die
//   partial A|B       print A, flush, wait 100 ms, print B "\n", then the prompt
//   blank line        the prompt only
//   anything else     print "echo_stdout  ran", then the prompt
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <thread>

namespace {

std::string unescape(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
      out += '\n';
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

void prompt() {
  std::fputs("tcl> \n", stdout);
  std::fflush(stdout);
}

void sleep_ms(long ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

}  // namespace

int main(int argc, char** argv) {
  const char* log_path = nullptr;
  long startup_delay = 0;
  bool no_prompt = false, die_before_prompt = false, ignore_exit = false;
  for (int i = 1; i < argc; ++i) {
    if (!strcmp(argv[i], "--log") && i + 1 < argc) log_path = argv[++i];
    else if (!strcmp(argv[i], "--startup-delay") && i + 1 < argc) startup_delay = atol(argv[++i]);
    else if (!strcmp(argv[i], "--no-prompt")) no_prompt = true;
    else if (!strcmp(argv[i], "--die-before-prompt")) die_before_prompt = true;
    else if (!strcmp(argv[i], "--ignore-exit")) ignore_exit = true;
  }
  sleep_ms(startup_delay);
  if (die_before_prompt) return 3;
  if (!no_prompt) prompt();

  std::string line;
  while (std::getline(std::cin, line)) {
    if (log_path) {
      if (FILE* log = std::fopen(log_path, "a")) {
        std::fprintf(log, "%s\n", line.c_str());
        std::fclose(log);
      }
    }
    if (line == "exit" && !ignore_exit) return 0;
    if (line.find_first_not_of(" \t") == std::string::npos) {
      prompt();
    } else if (line.rfind("raw ", 0) == 0) {
      std::fputs((unescape(line.substr(4)) + "\n").c_str(), stdout);
      prompt();
    } else if (line.rfind("rawnp ", 0) == 0) {
      std::fputs((unescape(line.substr(6)) + "\n").c_str(), stdout);
      std::fflush(stdout);
    } else if (line.rfind("flood ", 0) == 0) {
      long count = atol(line.c_str() + 6);
      for (long i = 0; i < count; ++i) std::printf("echo_stdout  line%ld\n", i);
      prompt();
    } else if (line.rfind("sleep ", 0) == 0) {
      sleep_ms(atol(line.c_str() + 6));
      prompt();
    } else if (line == "die" || line.rfind("die ", 0) == 0) {
      long count = line.size() > 4 ? atol(line.c_str() + 4) : 0;
      for (long i = 0; i < count; ++i) std::printf("echo_stdout  line%ld\n", i);
      std::fflush(stdout);
      _exit(7);
    } else if (line.rfind("partial ", 0) == 0) {
      std::string rest = line.substr(8);
      size_t bar = rest.find('|');
      std::fputs(rest.substr(0, bar).c_str(), stdout);
      std::fflush(stdout);
      sleep_ms(100);
      std::fputs((bar == std::string::npos ? std::string() : rest.substr(bar + 1)).c_str(), stdout);
      std::fputs("\n", stdout);
      prompt();
    } else {
      std::fputs("echo_stdout  ran\n", stdout);
      prompt();
    }
  }
  return 0;
}
