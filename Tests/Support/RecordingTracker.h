#pragma once

#include "Tracking/IKtTrackingEndpoint.h"

#include <mutex>
#include <vector>

namespace KtTest
{

// An endpoint that keeps every event it is given, in order. Safe to call from several threads.
class RecordingTracker : public Velkor::KT::Tracking::IKtTrackingEndpoint
{
public:
    void Track(const Velkor::KT::Tracking::Event& event) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_events.push_back(event);
    }

    std::vector<Velkor::KT::Tracking::Event> Events() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_events;
    }

    void Clear()
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_events.clear();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<Velkor::KT::Tracking::Event> m_events;
};

}  // namespace KtTest
