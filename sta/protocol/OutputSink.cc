#include "protocol/OutputSink.hh"

#include "protocol/Encoder.hh"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace vexa {

OutputSink::OutputSink(OutputMode mode)
  : m_mode(mode)
{
  if (m_mode == OutputMode::protocol) {
    std::fflush(stdout);
    m_protocol_fd = dup(1);
    if (m_protocol_fd < 0)
      m_protocol_fd = 1;
    else
      dup2(2, 1);
  }
}

void OutputSink::write_fd(int fd, std::string_view bytes)
{
  while (!bytes.empty()) {
    ssize_t n = ::write(fd, bytes.data(), bytes.size());
    if (n < 0) {
      if (errno == EINTR)
        continue;
      return;
    }
    bytes.remove_prefix(static_cast<size_t>(n));
  }
}

void OutputSink::emit_line(std::string_view line)
{
  if (!line.empty() && line.back() == '\r')
    line.remove_suffix(1);
  if (m_filter && m_filter(line))
    return;
  write_fd(m_protocol_fd, encode_text_line(line));
}

void OutputSink::write_text(std::string_view text)
{
  if (m_mode == OutputMode::plain) {
    std::fflush(stdout);
    write_fd(1, text);
    return;
  }
  size_t start = 0;
  for (;;) {
    size_t nl = text.find('\n', start);
    if (nl == std::string_view::npos) {
      m_partial.append(text.substr(start));
      return;
    }
    // The filter may post, and posting flushes: hand the line over first.
    std::string line;
    line.swap(m_partial);
    line.append(text.substr(start, nl - start));
    emit_line(line);
    start = nl + 1;
  }
}

void OutputSink::write_error_text(std::string_view text)
{
  if (m_mode == OutputMode::plain) {
    write_fd(2, text);
    return;
  }
  write_text(text);
}

void OutputSink::flush_text()
{
  if (m_mode == OutputMode::protocol && !m_partial.empty()) {
    std::string line;
    line.swap(m_partial);
    emit_line(line);
  }
}

void OutputSink::write_protocol_line(std::string_view line)
{
  if (m_mode != OutputMode::protocol)
    return;
  flush_text();
  std::string whole;
  if (line.find_first_of("\r\n") != std::string_view::npos) {
    // A caller forgot to quote a word: the line would split and the front
    // end would run its second half as a command of its own.
    whole = "msg_internal_error 0 "
          + quote_word("a protocol line held a line break and was not sent: " + std::string(line));
  } else {
    whole = line;
  }
  whole.push_back('\n');
  write_fd(m_protocol_fd, whole);
}

void OutputSink::write_plain_prompt(std::string_view prompt)
{
  if (m_mode == OutputMode::plain)
    write_fd(1, prompt);
}

} // namespace vexa
