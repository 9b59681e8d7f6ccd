#pragma once

// What a main document makes the application send: each event name with every parameter key
// that some entry sending it may set, as the handlers hook the entries.

#include "Tracking/Config/KtmStat.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>

namespace Velkor::KT::KtTrack
{

// Stands among the keys of an event whose keys are not all known (the application's start,
// failure and exit events, which the fillers complete): any key may be set.
constexpr const char* kAnyKey = "*";

struct ProducedEvents
{
    // Event name -> the keys its senders may set.
    std::map<std::string, std::set<std::string>> events;
    // The entries of the document that send an event.
    std::size_t entries = 0;
};

// The events of `main` plus the start, failure and exit events the application sends on its own.
// Entries that are read but never hooked send nothing: `signal` triggers outside an `object`
// entry, and a capture section with only a `cancel` (its observer is not attached).
ProducedEvents ProducedBy(const Tracking::Config::KtmStat& main);

// Whether a sender of an event with `keys` may set `key`.
bool MaySet(const std::set<std::string>& keys, const std::string& key);

}  // namespace Velkor::KT::KtTrack
