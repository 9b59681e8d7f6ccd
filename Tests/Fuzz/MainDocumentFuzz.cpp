// Main documents: a session reads its own document and works its windows and services, then
// reads the input, attaches a second set of windows and works everything again. A document the
// manager cannot read must leave the first one in force: the session then delivers what it
// delivers when the second round reads nothing.

#include "MainSession.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
    static const KtFuzz::SessionOutcome unchanged =
        KtFuzz::RunSession({KtFuzz::kSessionDocument, std::nullopt});
    if (unchanged.refused.front())
    {
        KtFuzz::Fail("the session's own document is refused");
    }

    const KtFuzz::SessionOutcome outcome = KtFuzz::RunSession(
        {KtFuzz::kSessionDocument, std::string(reinterpret_cast<const char*>(data), size)});
    if (outcome.refused.back())
    {
        KtFuzz::ExpectSame(unchanged.delivered, outcome.delivered,
                           "a refused document changed the configuration in force");
    }
    return 0;
}
