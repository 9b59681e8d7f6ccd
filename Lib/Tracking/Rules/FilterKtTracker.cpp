#include "Tracking/Rules/FilterKtTracker.h"

#include "Tracking/Config/Filter.h"
#include "Tracking/Config/XercesSession_p.h"
#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Rules/FilterPass_p.h"
#include "Tracking/Rules/RuleDocument_p.h"

#include <map>
#include <mutex>

namespace Velkor::KT::Tracking
{

namespace F = Config::Filter;

class FilterKtTracker::Private
{
public:
    explicit Private(const std::shared_ptr<IKtTracker>& next) : next(next) {}

    Event Rewrite(const Event& event)
    {
        std::lock_guard<std::mutex> lock(mutex);
        if (!document)
        {
            return event;
        }
        if (trace)
        {
            return FilterPass<true>(*document, repeats, trace.get()).Run(event);
        }
        return FilterPass<false>(*document, repeats, nullptr).Run(event);
    }

    NotNull<IKtTracker> next;
    // The documents given over the tracker's life share one initialisation of Xerces.
    Config::Detail::XercesSession xerces;
    std::unique_ptr<F::Filter> document;
    std::mutex mutex;
    std::map<std::string, Event::Params> repeats;
    std::shared_ptr<IRuleTraceListener> trace;
};

FilterKtTracker::FilterKtTracker(const std::shared_ptr<IKtTracker>& next)
    : d(std::make_unique<Private>(next))
{
}

FilterKtTracker::~FilterKtTracker() = default;

void FilterKtTracker::SetConfig(const std::string& config)
{
    std::unique_ptr<F::Filter> parsed = ParseRuleDocument(config, &F::filter);
    if (!parsed)
    {
        return;
    }
    std::lock_guard<std::mutex> lock(d->mutex);
    d->document = std::move(parsed);
}

void FilterKtTracker::SetTraceListener(const std::shared_ptr<IRuleTraceListener>& listener)
{
    std::shared_ptr<IRuleTraceListener> previous = listener;
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        d->trace.swap(previous);
    }
}

void FilterKtTracker::Track(const Event& event)
{
    const Event w = d->Rewrite(event);
    if (!w.name.empty())
    {
        d->next->Track(w);
    }
}

}  // namespace Velkor::KT::Tracking
