// Tracks a numbered burst of events into an uploader and waits until they are uploaded; the
// store tests kill it in the middle.
//
//   KtUploadBurst DATA_DIRECTORY URL DATABASE FIRST COUNT BATCH_EVENTS
//
// Event i is "BURST" with "I" = i. Prints "sent N, left M" and exits with 0 when nothing is left.

#include "Analytics/UploadingApplicationTracker.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv)
{
    using namespace Velkor::Analytics;
    QCoreApplication application(argc, argv);
    if (argc != 7)
    {
        return 64;
    }
    UploadOptions options;
    options.url = argv[2];
    options.database = argv[3];
    options.maxBatchEvents = static_cast<std::size_t>(std::atoi(argv[6]));
    options.maxBatchAge = std::chrono::hours(1);
    options.minRetryDelay = std::chrono::milliseconds(20);
    options.maxRetryDelay = std::chrono::milliseconds(200);
    options.installationId = "burst";
    auto tracker = UploadingApplicationTracker::Create(options);
    if (!tracker->Initialize({{"SID", "burst"}}, "burst-test", argv[1]))
    {
        return 2;
    }
    const long long first = std::atoll(argv[4]);
    const long long count = std::atoll(argv[5]);
    for (long long i = first; i < first + count; ++i)
    {
        if (!tracker->Track("BURST", {{"I", std::to_string(i)}}))
        {
            return 3;
        }
    }
    const bool drained = tracker->Flush(std::chrono::seconds(120));
    const UploadCounters counters = tracker->Counters();
    std::printf("sent %llu, left %llu\n", static_cast<unsigned long long>(counters.sent),
                static_cast<unsigned long long>(counters.backlog));
    return drained ? 0 : 1;
}
