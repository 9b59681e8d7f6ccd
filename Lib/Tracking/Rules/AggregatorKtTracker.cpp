#include "Tracking/Rules/AggregatorKtTracker.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/XercesSession_p.h"
#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Rules/AggregatorPass_p.h"
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
        std::lock_guard<std::mutex> lock(mutex);
        if (!document)
        {
            return event;
        }
        if (trace)
        {
            return AggregatorPass<true>(*document, pending, trace.get()).Run(event);
        }
        return AggregatorPass<false>(*document, pending, nullptr).Run(event);
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
