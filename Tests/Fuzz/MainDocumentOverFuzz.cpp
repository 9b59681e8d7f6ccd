// A main document read over another: the input holds both, the first before a line "====" and
// the second after it (without that line, the session's own document comes first and the whole
// input second). Each is read, attached and worked in its round. When the second is refused, the
// session must deliver what it delivers when the second round reads nothing.

#include "MainSession.h"

namespace
{

const char kSeparator[] = "\n====\n";

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t at = input.find(kSeparator);
    const std::string first =
        at == std::string::npos ? KtFuzz::kSessionDocument : input.substr(0, at);
    const std::string second =
        at == std::string::npos ? input : input.substr(at + sizeof kSeparator - 1);

    const KtFuzz::SessionOutcome outcome = KtFuzz::RunSession({first, second});
    if (outcome.refused.back())
    {
        KtFuzz::ExpectSame(KtFuzz::RunSession({first, std::nullopt}).delivered, outcome.delivered,
                           "a refused document changed the configuration in force");
    }
    return 0;
}
