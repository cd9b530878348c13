#include "reports/report_commands.hh"

namespace vexa {

// The report commands are added here by their own module; none exist yet.
void register_report_commands(Engine &)
{
}

} // namespace vexa
