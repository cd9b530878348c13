// How the engine ends its process.
//
// OpenSTA's teardown is slow and its static state is not meant to be
// destroyed in order, so the engine leaves without running exit handlers
// once all output is written. In an AddressSanitizer build the leak checker
// would be skipped with them: it runs first, and a leak ends the process
// with the checker's failure status.
#pragma once

#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace vexa {

[[noreturn]] inline void end_process(int status)
{
#if defined(__SANITIZE_ADDRESS__)
  __lsan_do_leak_check();
#endif
  std::_Exit(status);
}

} // namespace vexa
