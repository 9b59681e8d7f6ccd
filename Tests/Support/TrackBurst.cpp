// Tracks a numbered burst of events into the reference analytics tracker and reports each event
// the tracker acknowledged by writing its number and a newline to standard output, after the
// tracker answered. Used by the tests that kill a writer in the middle of a burst.
//
//   TrackBurst DIRECTORY FIRST COUNT MAX_FILE_BYTES MAX_FILES PADDING
//
// Event i is "BURST" with "I" = i and "PAD" = PADDING bytes of filler text.

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonLinesApplicationTracker.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv)
{
    using namespace Velkor::Analytics;
    if (argc != 7)
    {
        return 64;
    }
    const std::string directory = argv[1];
    const long long first = std::atoll(argv[2]);
    const long long count = std::atoll(argv[3]);
    JsonLinesApplicationTracker::Options options;
    options.maxFileBytes = std::strtoull(argv[4], nullptr, 10);
    options.maxFiles = static_cast<unsigned>(std::atoi(argv[5]));
    const std::string padding(static_cast<std::size_t>(std::atoi(argv[6])), 'p');

    auto tracker = JsonLinesApplicationTracker::Create(options);
    if (!tracker->Initialize({{SID, "burst"}}, "burst-test", directory))
    {
        return 2;
    }
    for (long long i = first; i < first + count; ++i)
    {
        // One write(2) per acknowledgement, after the tracker answered.
        if (tracker->Track("BURST", {{"I", std::to_string(i)}, {"PAD", padding}}) &&
            (std::printf("%lld\n", i) < 0 || std::fflush(stdout) != 0))
        {
            return 3;
        }
    }
    return 0;
}
