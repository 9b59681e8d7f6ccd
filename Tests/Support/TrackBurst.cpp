// Tracks a numbered burst of events into the reference analytics tracker and reports each event
// the tracker acknowledged by writing its number and a newline to standard output, after the
// tracker answered. Used by the tests that kill a writer in the middle of a burst.
//
//   TrackBurst DIRECTORY FIRST COUNT MAX_FILE_BYTES MAX_FILES PADDING
//
// Event i is "BURST" with "I" = i and "PAD" = PADDING bytes of filler text.

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonLinesApplicationTracker.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace
{

bool WriteAll(const std::string& text)
{
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0)
    {
        const ssize_t written = ::write(STDOUT_FILENO, data, left);
        if (written < 0 && errno == EINTR)
        {
            continue;
        }
        if (written <= 0)
        {
            return false;
        }
        data += written;
        left -= static_cast<std::size_t>(written);
    }
    return true;
}

}  // namespace

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
        if (tracker->Track("BURST", {{"I", std::to_string(i)}, {"PAD", padding}}))
        {
            if (!WriteAll(std::to_string(i) + '\n'))
            {
                return 3;
            }
        }
    }
    return 0;
}
