// Tracks a numbered burst of events into an uploader and waits until they are uploaded; the
// store tests kill it in the middle.
//
//   KtUploadBurst DATA_DIRECTORY URL DATABASE COUNT
//
// Event i is "BURST" with "I" = i, in batches of 1,000. Exits with 0 when nothing is left.

#include "Analytics/UploadingApplicationTracker.h"

#include <QCoreApplication>

#include <cstdlib>
#include <string>

int main(int argc, char** argv)
{
    using namespace Velkor::Analytics;
    QCoreApplication application(argc, argv);
    if (argc != 5)
    {
        return 64;
    }
    UploadOptions options;
    options.url = argv[2];
    options.database = argv[3];
    options.maxBatchEvents = 1000;
    options.maxBatchAge = std::chrono::hours(1);
    options.minRetryDelay = std::chrono::milliseconds(20);
    options.maxRetryDelay = std::chrono::milliseconds(200);
    options.installationId = "burst";
    auto tracker = UploadingApplicationTracker::Create(options);
    if (!tracker->Initialize({{"SID", "burst"}}, "burst-test", argv[1]))
    {
        return 2;
    }
    for (long long i = 0; i < std::atoll(argv[4]); ++i)
    {
        if (!tracker->Track("BURST", {{"I", std::to_string(i)}}))
        {
            return 3;
        }
    }
    return tracker->Flush(std::chrono::seconds(120)) ? 0 : 1;
}
