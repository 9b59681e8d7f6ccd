#pragma once

#include "Analytics/UploadCounters.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

namespace Velkor::Analytics
{

// What the upload thread tells the others: its counters (all but those the spool keeps), and a
// wake-up for those waiting on it.
class UploadState
{
public:
    // Changes the counters and wakes every waiter.
    void Update(const std::function<void(UploadCounters&)>& change);
    void Notify();
    UploadCounters Get() const;
    // Waits until `done(counters)` holds (true) or `deadline` passes (false); `done` runs with
    // the counters locked and is asked again after every Update() and Notify().
    bool WaitUntil(const std::function<bool(const UploadCounters&)>& done,
                   std::chrono::steady_clock::time_point deadline);

    // How many Flush() calls are waiting: while any is, batches leave without waiting to fill.
    std::atomic<int> flushers{0};

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    UploadCounters m_counters;
};

}  // namespace Velkor::Analytics
