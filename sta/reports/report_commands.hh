// Report commands of the engine (create_timing_summary, report_clocks, ...).
// Called once by Engine::start after every other command exists.
#pragma once

namespace vexa {
class Engine;
void register_report_commands(Engine &engine);
} // namespace vexa
