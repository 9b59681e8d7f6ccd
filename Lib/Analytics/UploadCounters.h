#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace Velkor::Analytics
{

// What an uploading tracker has done since it was initialised (UploadingApplicationTracker::
// Counters()). Events are counted once each: every spooled event ends up sent, dead-lettered,
// dropped, skipped, discarded when consent is withdrawn, or still in the backlog.
struct UploadCounters
{
    std::uint64_t spooled = 0;       // events appended to the spool
    std::uint64_t sent = 0;          // events the store acknowledged (2xx)
    std::uint64_t retried = 0;       // attempts that failed and are tried again later
    std::uint64_t deadLettered = 0;  // events the store refused, kept in the dead-letter file
    std::uint64_t dropped = 0;       // unsent events deleted to keep the spool within its cap
    std::uint64_t skipped = 0;       // damaged spool lines passed over
    std::uint64_t backlog = 0;       // spool lines not sent yet, those of earlier runs included
    bool paused = false;             // the store answered 401, 403 or 404 (or alike)
    // The wait before the next attempt after a failure; zero when none is planned.
    std::chrono::milliseconds retryDelay{0};
    // The last failure, e.g. "HTTP 503 from http://store:8123/: ..."; kept after a success.
    std::string lastError;
};

}  // namespace Velkor::Analytics
