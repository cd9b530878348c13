// The output sink in protocol mode, with the engine's stdout replaced by a
// pipe: text is cut into encoded lines, protocol lines keep their order and
// their one-line framing, and file descriptor 1 no longer reaches the pipe.
#include "protocol/OutputSink.hh"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace {

// Runs body with a protocol-mode sink whose stdout is a pipe; returns all
// that reached the pipe.
template <typename Body> std::string protocol_output(Body body)
{
  int saved = dup(1);
  int fds[2];
  EXPECT_EQ(pipe(fds), 0);
  dup2(fds[1], 1);
  close(fds[1]);
  {
    vexa::OutputSink sink(vexa::OutputMode::protocol);
    body(sink);
    sink.flush_text();
  }
  // The sink keeps its private copy of the pipe open; restoring fd 1 and
  // reading what is there is enough.
  dup2(saved, 1);
  close(saved);
  fcntl(fds[0], F_SETFL, O_NONBLOCK);
  std::string out;
  char chunk[4096];
  ssize_t n = 0;
  while ((n = read(fds[0], chunk, sizeof chunk)) > 0)
    out.append(chunk, static_cast<size_t>(n));
  close(fds[0]);
  return out;
}

} // namespace

TEST(OutputSink, TextIsCutIntoEncodedLinesInOrderWithProtocolLines)
{
  std::string out = protocol_output([](vexa::OutputSink &sink) {
    sink.write_text("one\r\ntw");
    sink.write_text("o words\npartial");
    sink.write_protocol_line("tcl> ");
    sink.write_error_text("err\n");
    (void)!write(1, "stray\n", 6);  // goes to stderr now
  });
  EXPECT_EQ(out, "echo_stdout  one\n"
                 "echo_stdout {two words\n}\n"
                 "echo_stdout  partial\n"
                 "tcl> \n"
                 "echo_stdout  err\n");
}

TEST(OutputSink, AProtocolLineWithALineBreakBecomesOneInternalErrorLine)
{
  std::string out = protocol_output([](vexa::OutputSink &sink) {
    sink.write_protocol_line("lum_register_clock -name clk\nexit");
  });
  EXPECT_EQ(out.rfind("msg_internal_error 0 \"", 0), 0u) << out;
  EXPECT_EQ(out.find('\n'), out.size() - 1) << out;
  EXPECT_NE(out.find("clk\\nexit"), std::string::npos) << out;
}

TEST(OutputSink, TheLineFilterTakesLinesItHandles)
{
  std::string out = protocol_output([](vexa::OutputSink &sink) {
    sink.set_line_filter([&sink](std::string_view line) {
      if (line.rfind("Error: ", 0) != 0)
        return false;
      sink.write_protocol_line("msg_post 0 error STA-0 \"" + std::string(line.substr(7)) + "\" \"\"");
      return true;
    });
    sink.write_text("before\nError: bad\nafter\n");
  });
  EXPECT_EQ(out, "echo_stdout  before\n"
                 "msg_post 0 error STA-0 \"bad\" \"\"\n"
                 "echo_stdout  after\n");
}
