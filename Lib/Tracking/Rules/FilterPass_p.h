#pragma once

// Internal: the filter's evaluation of one event under one document.

#include "Tracking/Config/Filter.h"
#include "Tracking/Events/Event.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <map>
#include <string>

namespace Velkor::KT::Tracking
{

// The rewrite of one event by the rules of `document`: each block that names the event, each of
// its rules on a property the event has, the first matcher that passes of each rule, and its
// actions; `repeats` is the memory of skipFullRepeats. With `Traced`, each step is reported to
// `trace`, which must then be set; without it, nothing of the trace is compiled in.
// FilterKtTracker runs one or the other under its lock.
template <bool Traced>
class FilterPass
{
public:
    FilterPass(const Config::Filter::Filter& document,
               std::map<std::string, Event::Params>& repeats, IRuleTraceListener* trace)
        : document(document), repeats(repeats), trace(trace)
    {
    }

    // The event as the rules leave it; an empty name means dropped.
    Event Run(const Event& event);

private:
    const Config::Filter::Filter& document;
    std::map<std::string, Event::Params>& repeats;
    IRuleTraceListener* const trace;
};

extern template class FilterPass<false>;
extern template class FilterPass<true>;

}  // namespace Velkor::KT::Tracking
