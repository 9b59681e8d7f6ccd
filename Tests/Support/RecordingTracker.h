#pragma once

#include "Tracking/Events/IKtTrackingEndpoint.h"

#include <mutex>
#include <string>
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

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& event : Events())
        {
            names.push_back(event.name);
        }
        return names;
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
