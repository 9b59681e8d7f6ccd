#pragma once

#include <map>
#include <string>

namespace Velkor::KT::Tracking
{

// One usage fact: a name and its string properties.
//
// Keys are kept in ascending byte order (std::less<std::string>), never in insertion order.
// Writers either assign (params[key] = value, last writer wins) or insert
// (params.emplace(key, value), first writer wins); each writer documents which it uses.
struct Event
{
    using Params = std::map<std::string, std::string>;

    std::string name;
    Params params;
};

inline bool operator==(const Event& lhs, const Event& rhs)
{
    return lhs.name == rhs.name && lhs.params == rhs.params;
}

inline bool operator!=(const Event& lhs, const Event& rhs)
{
    return !(lhs == rhs);
}

}  // namespace Velkor::KT::Tracking
