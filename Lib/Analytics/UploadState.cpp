#include "Analytics/UploadState_p.h"

namespace Velkor::Analytics
{

void UploadState::Update(const std::function<void(UploadCounters&)>& change)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        change(m_counters);
    }
    m_changed.notify_all();
}

void UploadState::Notify()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
    }
    m_changed.notify_all();
}

UploadCounters UploadState::Get() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_counters;
}

bool UploadState::WaitUntil(const std::function<bool(const UploadCounters&)>& done,
                            std::chrono::steady_clock::time_point deadline)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_until(lock, deadline, [&] { return done(m_counters); });
}

}  // namespace Velkor::Analytics
