#pragma once

// Events written the way failures print them, for compact tables: "NAME{K=V,K2=V2} NAME2{}".
// EventsFrom reads that text: a value runs from '=' to the next ',' or '}' (spaces included),
// an empty name is "{K=V}". EventsText writes it, values as they are.

#include "Tracking/Events/Event.h"

#include <string>
#include <vector>

namespace KtTest
{

inline std::vector<Velkor::KT::Tracking::Event> EventsFrom(const std::string& text)
{
    std::vector<Velkor::KT::Tracking::Event> events;
    std::size_t at = 0;
    while ((at = text.find_first_not_of(' ', at)) != std::string::npos)
    {
        const std::size_t open = text.find('{', at);
        const std::size_t close = text.find('}', open);
        events.push_back({text.substr(at, open - at), {}});
        for (std::size_t from = open + 1; from < close;)
        {
            const std::size_t end = std::min(text.find(',', from), close);
            const std::size_t equals = text.find('=', from);
            events.back().params[text.substr(from, equals - from)] =
                text.substr(equals + 1, end - equals - 1);
            from = end + 1;
        }
        at = close + 1;
    }
    return events;
}

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
