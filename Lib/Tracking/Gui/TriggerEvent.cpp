#include "Tracking/Gui/TriggerEvent_p.h"

#include "Tracking/Events/IKtTracker.h"

#include <utility>

namespace Velkor::KT::Tracking
{

Event ConfiguredEvent(const Config::Event& config)
{
    Event event{config.event(), {}};
    for (const Config::Param& param : config.param())
    {
        event.params.emplace(param.key(), param.value());
    }
    return event;
}

TriggerEvent::TriggerEvent(IKtTracker* tracker, const Config::Event& config,
                           std::optional<std::string> key, Put put)
    : m_tracker(tracker), m_event(ConfiguredEvent(config)), m_key(std::move(key)), m_put(put)
{
}

void TriggerEvent::Send() const
{
    m_tracker->Track(m_event);
}

void TriggerEvent::Send(std::string value) const
{
    if (!m_key)
    {
        Send();
        return;
    }
    Event copy = m_event;
    if (m_put == Put::Assign)
    {
        copy.params[*m_key] = std::move(value);
    }
    else
    {
        copy.params.emplace(*m_key, std::move(value));
    }
    m_tracker->Track(copy);
}

}  // namespace Velkor::KT::Tracking
