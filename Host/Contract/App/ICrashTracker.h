#pragma once

#include <string>
#include <vector>

namespace Velkor::App
{

// Knows the earlier sessions of the application that ended in a failure.
class ICrashTracker
{
public:
    virtual ~ICrashTracker() = default;

    // The identifiers of failed sessions that have not been reported yet, oldest first. A session
    // handed out here counts as reported and is not handed out again.
    virtual std::vector<std::string> TakeUnreportedFailedSessions() = 0;
};

}  // namespace Velkor::App
