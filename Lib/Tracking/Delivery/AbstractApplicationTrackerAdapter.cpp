#include "Tracking/Delivery/AbstractApplicationTrackerAdapter_p.h"

#include <utility>

namespace Velkor::KT::Tracking
{

AbstractApplicationTrackerAdapter::AbstractApplicationTrackerAdapter(
    std::shared_ptr<IKtTracker> next)
    : m_next(std::move(next))
{
}

AbstractApplicationTrackerAdapter::~AbstractApplicationTrackerAdapter() = default;

bool AbstractApplicationTrackerAdapter::Track(const std::string& name,
                                              const Analytics::Properties& properties)
{
    if (!m_next)
    {
        return false;
    }
    Event event{name, properties};
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto& [key, value] : m_defaults)
        {
            event.params[key] = value;
        }
    }
    static_cast<IKtTracker&>(*this).Track(event);
    return true;
}

bool AbstractApplicationTrackerAdapter::Track(const std::string& name, const std::string& key,
                                              const std::string& value)
{
    return Track(name, Analytics::Properties{{key, value}});
}

void AbstractApplicationTrackerAdapter::AddDefaultProperties(
    const Analytics::Properties& properties)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_defaults.insert(properties.begin(), properties.end());
}

bool AbstractApplicationTrackerAdapter::Initialize(const Analytics::Properties& defaultProperties,
                                                   const std::string& /*identity*/,
                                                   const std::string& /*dataDirectory*/)
{
    AddDefaultProperties(defaultProperties);
    return true;
}

void AbstractApplicationTrackerAdapter::Track(const Event& event)
{
    m_next->Track(event);
}

}  // namespace Velkor::KT::Tracking
