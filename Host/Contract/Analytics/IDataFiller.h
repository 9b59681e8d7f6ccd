#pragma once

#include <map>
#include <string>

namespace Velkor::Tracking
{

// Adds facts of one kind to an event's properties.
class IDataFiller
{
public:
    // Writes this filler's keys into params; a key already present is overwritten.
    virtual void Fill(std::map<std::string, std::string>& params) = 0;
    virtual ~IDataFiller() = default;
};

}  // namespace Velkor::Tracking
