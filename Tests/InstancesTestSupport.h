#pragma once

// Shared by the instances tests: a tracker that keeps what it is given, and configurations read
// from text or from the shipped main document.

#include "Tracking/Config/KtmStat.h"
#include "Tracking/ConfigLoader.h"
#include "Tracking/IKtTracker.h"

#include <memory>
#include <mutex>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace Velkor::KT::Tracking
{

// Found by argument-dependent lookup, so failed comparisons show the events.
inline void PrintTo(const Event& event, std::ostream* out)
{
    *out << event.name << " {";
    for (const auto& [key, value] : event.params)
    {
        *out << " " << key << "=\"" << value << "\"";
    }
    *out << " }";
}

}  // namespace Velkor::KT::Tracking

namespace InstancesTest
{

using Velkor::KT::Tracking::Event;

class RecordingTracker : public Velkor::KT::Tracking::IKtTracker
{
public:
    void Track(const Event& event) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_events.push_back(event);
    }

    std::vector<Event> Events() const
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        return m_events;
    }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const Event& event : Events())
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
    std::vector<Event> m_events;
};

inline Velkor::KT::Tracking::Config::Instances InstancesFromText(const std::string& instances)
{
    std::istringstream input("<ktmstat><instances>" + instances + "</instances></ktmstat>");
    const auto document =
        Velkor::KT::Tracking::Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    return *document->instances();
}

inline Velkor::KT::Tracking::Config::Instances ShippedInstances()
{
    std::istringstream input(Velkor::KT::Tracking::LoadConfigFromQrc("/KT/Tracking/Config.xml"));
    const auto document =
        Velkor::KT::Tracking::Config::ktmstat(input, ::xml_schema::flags::dont_validate);
    return *document->instances();
}

}  // namespace InstancesTest
