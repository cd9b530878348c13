#include "protocol/EngineReport.hh"

#include "Engine.hh"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace vexa {

namespace {

std::string format_message(const char *fmt, va_list args)
{
  va_list copy;
  va_copy(copy, args);
  int n = std::vsnprintf(nullptr, 0, fmt, copy);
  va_end(copy);
  if (n <= 0)
    return std::string();
  std::string text(static_cast<size_t>(n) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), fmt, args);
  text.resize(static_cast<size_t>(n));
  while (!text.empty() && text.back() == '\n')
    text.pop_back();
  return text;
}

std::string located(const char *filename, int line, const std::string &text)
{
  return std::string(filename ? filename : "") + " line " + std::to_string(line) + ": " + text;
}

} // namespace

void EngineReport::vwarn(const char *fmt, va_list args)
{
  m_engine.post(MessageKind::warning, "STA-0", format_message(fmt, args));
}

void EngineReport::vfileWarn(const char *filename, int line, const char *fmt, va_list args)
{
  m_engine.post(MessageKind::warning, "STA-0", located(filename, line, format_message(fmt, args)));
}

void EngineReport::verror(const char *fmt, va_list args)
{
  m_engine.post(MessageKind::error, "STA-0", format_message(fmt, args));
}

void EngineReport::vfileError(const char *filename, int line, const char *fmt, va_list args)
{
  m_engine.post(MessageKind::error, "STA-0", located(filename, line, format_message(fmt, args)));
}

size_t EngineReport::printConsole(const char *buffer, size_t length)
{
  m_engine.sink().write_text(std::string_view(buffer, length));
  return length;
}

size_t EngineReport::printErrorConsole(const char *buffer, size_t length)
{
  m_engine.sink().write_error_text(std::string_view(buffer, length));
  return length;
}

} // namespace vexa
