#include "Tracking/Events/EventText.h"

#include <sstream>

namespace Velkor::KT::Tracking
{

std::string EventText(const Event& event)
{
    std::ostringstream text;
    text << event.name << '\n';
    for (const auto& [key, value] : event.params)
    {
        text << '\t' << key << '=' << value << '\n';
    }
    return text.str();
}

}  // namespace Velkor::KT::Tracking
