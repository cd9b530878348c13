// OpenSTA's report, redirected to the engine's output sink.
//
// ReportTcl already routes Tcl's stdout and stderr channels through the
// report (it stacks its own channel type on them), so overriding the two
// console primitives catches OpenSTA's reports, its warnings and every
// "puts" in one place. Warnings and errors that OpenSTA reports through the
// report become message posts instead of plain text (and in protocol mode
// the sink's line filter, installed by Engine, does the same for the lines
// "Error: ..." and "Warning: ..." that OpenSTA's readers print).
#pragma once

#include "Machine.hh"
#include "ReportTcl.hh"

#include <string_view>

namespace vexa {

class Engine;

class EngineReport : public sta::ReportTcl
{
public:
  explicit EngineReport(Engine &engine) : m_engine(engine) {}

  void vwarn(const char *fmt, va_list args) override;
  void vfileWarn(const char *filename, int line, const char *fmt, va_list args) override;
  void verror(const char *fmt, va_list args) override;
  void vfileError(const char *filename, int line, const char *fmt, va_list args) override;

protected:
  size_t printConsole(const char *buffer, size_t length) override;
  size_t printErrorConsole(const char *buffer, size_t length) override;

private:
  Engine &m_engine;
};

} // namespace vexa
