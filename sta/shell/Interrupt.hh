// The stop request that SIGINT raises while a command runs.
//
// Tcl stops a script between commands (Engine::request_interrupt), but the
// engine's own long loops in C++ (paths of a report, rows of a panel, end
// points of a histogram) run inside one command: they call
// check_interrupt() on each turn, which throws Interrupted once SIGINT came,
// so the command fails within a turn of the loop instead of running on.
#pragma once

#include <csignal>
#include <stdexcept>

namespace vexa {

class Interrupted : public std::runtime_error
{
public:
  Interrupted() : std::runtime_error("interrupted by the user (SIGINT)") {}
};

// Set by the signal handler, lowered when the command has ended.
inline volatile std::sig_atomic_t interrupt_raised = 0;

inline void check_interrupt()
{
  if (interrupt_raised)
    throw Interrupted();
}

} // namespace vexa
