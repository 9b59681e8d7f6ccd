#pragma once

// Internal: the aggregator's evaluation of one event under one document.

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Events/Event.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <map>
#include <string>

namespace Velkor::KT::Tracking
{

// The merge of one event by the blocks of `document`: a main event takes the properties held
// for it, an affecting event replaces what is held for each main event it feeds and is held
// back. `pending` holds, per main event, the properties of its last affecting event not yet
// delivered. With `Traced`, each step is reported to `trace`, which must then be set; without
// it, nothing of the trace is compiled in. AggregatorKtTracker runs one or the other under its
// lock.
template <bool Traced>
class AggregatorPass
{
public:
    AggregatorPass(const Config::Aggregator::Aggregator& document,
                   std::map<std::string, Event::Params>& pending, IRuleTraceListener* trace)
        : document(document), pending(pending), trace(trace)
    {
    }

    // The event as the blocks leave it; an empty name means held back.
    Event Run(const Event& event);

private:
    void TraceMerge(int block, const std::string& key, const std::string& value, const Event& w);

    const Config::Aggregator::Aggregator& document;
    std::map<std::string, Event::Params>& pending;
    IRuleTraceListener* const trace;
};

extern template class AggregatorPass<false>;
extern template class AggregatorPass<true>;

}  // namespace Velkor::KT::Tracking
