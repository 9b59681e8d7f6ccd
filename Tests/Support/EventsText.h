#pragma once

// Events as one line of text, for comparing a whole sequence with one expected string.

#include "Tracking/Event.h"

#include <string>
#include <vector>

namespace KtTest
{

// "NAME{KEY=value,KEY=value} NAME{}": events blank-separated, keys in the event's own order.
inline std::string EventsText(const std::vector<Velkor::KT::Tracking::Event>& events)
{
    std::string text;
    for (const auto& event : events)
    {
        text += (text.empty() ? "" : " ") + event.name + "{";
        for (const auto& [key, value] : event.params)
        {
            text += (text.back() == '{' ? "" : ",") + key + "=" + value;
        }
        text += "}";
    }
    return text;
}

}  // namespace KtTest
