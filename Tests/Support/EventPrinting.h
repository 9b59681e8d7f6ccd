#pragma once

#include "Tracking/Events/Event.h"

#include <ostream>

namespace Velkor::KT::Tracking
{

// Readable test failures: NAME{K=V, ...}
inline void PrintTo(const Event& event, std::ostream* out)
{
    *out << event.name << '{';
    const char* separator = "";
    for (const auto& [key, value] : event.params)
    {
        *out << separator << key << '=' << value;
        separator = ", ";
    }
    *out << '}';
}

}  // namespace Velkor::KT::Tracking
