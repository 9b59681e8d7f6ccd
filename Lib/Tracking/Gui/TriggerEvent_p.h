#pragma once

#include "Tracking/Config/KtmStat.h"
#include "Tracking/Events/Event.h"

#include <optional>
#include <string>

namespace Velkor::KT::Tracking
{

class IKtTracker;

// An optional attribute of the document as a key.
inline std::optional<std::string> OptionalKey(
    const ::xsd::cxx::tree::optional<::xml_schema::string>& value)
{
    if (!value)
    {
        return std::nullopt;
    }
    return std::string(*value);
}

// The event of a trigger element: its name and its `param` children, of which the first of a key
// counts.
Event ConfiguredEvent(const Config::Event& config);

// The event one hook sends, made once when the hook is made (ConfiguredEvent()). A trigger may add
// one value of its own under a key; whether that value replaces a `param` of the same key or leaves
// it be is part of each trigger's contract.
class TriggerEvent
{
public:
    enum class Put
    {
        Assign,  // the trigger's value replaces a `param` of the same key
        Insert,  // a `param` of the same key keeps its value
    };

    TriggerEvent(IKtTracker* tracker, const Config::Event& config,
                 std::optional<std::string> key = std::nullopt, Put put = Put::Assign);

    // The event as configured.
    void Send() const;
    // With `value` under the key; without a key, the event as configured.
    void Send(std::string value) const;

private:
    IKtTracker* m_tracker;
    Event m_event;
    std::optional<std::string> m_key;
    Put m_put;
};

}  // namespace Velkor::KT::Tracking
