#include "Tracking/Rules/AggregatorKtTracker.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/XercesSession_p.h"
#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Rules/RuleDocument_p.h"

#include <map>
#include <mutex>

namespace Velkor::KT::Tracking
{

namespace A = Config::Aggregator;

class AggregatorKtTracker::Private
{
public:
    explicit Private(const std::shared_ptr<IKtTracker>& next) : next(next) {}

    Event Merge(const Event& event)
    {
        Event w = event;
        std::lock_guard<std::mutex> lock(mutex);
        if (!document)
        {
            return w;
        }
        if (trace)
        {
            trace->AggregatorStarted(w);
        }
        bool holdBack = false;
        int index = -1;
        for (const auto& block : document->event())
        {
            ++index;
            const std::string& mainName = block.event();
            if (mainName == w.name)
            {
                const auto held = pending.find(mainName);
                const bool merging = held != pending.end() && !held->second.empty();
                if (trace)
                {
                    trace->AggregatorMainEvent(index, merging);
                }
                if (merging)
                {
                    // The cause's properties win over the main event's own.
                    for (const auto& [key, value] : held->second)
                    {
                        if (trace)
                        {
                            TraceMerge(index, key, value, w);
                        }
                        w.params[key] = value;
                    }
                    held->second.clear();
                }
                continue;
            }
            int affecting = 0;
            for (const auto& name : block.affectingEventName())
            {
                if (name == w.name)
                {
                    // The last cause wins: an earlier, unconsumed set is replaced.
                    Event::Params& slot = pending[mainName];
                    if (trace)
                    {
                        const Event::Params discarded = std::move(slot);
                        slot = w.params;
                        trace->AggregatorHeld(index, affecting, slot, discarded);
                    }
                    else
                    {
                        slot = w.params;
                    }
                    holdBack = true;
                    break;
                }
                ++affecting;
            }
        }
        if (holdBack)
        {
            w.name.clear();
        }
        if (trace)
        {
            trace->AggregatorFinished(w);
        }
        return w;
    }

    void TraceMerge(int block, const std::string& key, const std::string& value, const Event& w)
    {
        const auto own = w.params.find(key);
        trace->AggregatorMerged(block, key, own == w.params.end() ? nullptr : &own->second, value);
    }

    NotNull<IKtTracker> next;
    // The documents given over the tracker's life share one initialisation of Xerces.
    Config::Detail::XercesSession xerces;
    std::unique_ptr<A::Aggregator> document;
    std::mutex mutex;
    // Per main event, the properties of its last affecting event not yet delivered. Entries
    // are emptied when consumed, never removed.
    std::map<std::string, Event::Params> pending;
    std::shared_ptr<IRuleTraceListener> trace;
};

AggregatorKtTracker::AggregatorKtTracker(const std::shared_ptr<IKtTracker>& next)
    : d(std::make_unique<Private>(next))
{
}

AggregatorKtTracker::~AggregatorKtTracker() = default;

void AggregatorKtTracker::SetConfig(const std::string& config)
{
    std::unique_ptr<A::Aggregator> parsed = ParseRuleDocument(config, &A::aggregator);
    if (!parsed)
    {
        return;
    }
    std::lock_guard<std::mutex> lock(d->mutex);
    d->document = std::move(parsed);
}

void AggregatorKtTracker::SetTraceListener(const std::shared_ptr<IRuleTraceListener>& listener)
{
    std::shared_ptr<IRuleTraceListener> previous = listener;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        d->trace.swap(previous);
    }
}

void AggregatorKtTracker::Track(const Event& event)
{
    const Event w = d->Merge(event);
    if (!w.name.empty())
    {
        d->next->Track(w);
    }
}

}  // namespace Velkor::KT::Tracking
