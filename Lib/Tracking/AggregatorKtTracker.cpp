#include "Tracking/AggregatorKtTracker.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Config/XercesSession.h"
#include "Tracking/NotNull.h"
#include "Tracking/RuleDocument.h"

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
        bool holdBack = false;
        for (const auto& block : document->event())
        {
            const std::string& mainName = block.event();
            if (mainName == w.name)
            {
                const auto held = pending.find(mainName);
                if (held != pending.end() && !held->second.empty())
                {
                    // The cause's properties win over the main event's own.
                    for (const auto& [key, value] : held->second)
                    {
                        w.params[key] = value;
                    }
                    held->second.clear();
                }
                continue;
            }
            for (const auto& affecting : block.affectingEventName())
            {
                if (affecting == w.name)
                {
                    // The last cause wins: an earlier, unconsumed set is replaced.
                    pending[mainName] = w.params;
                    holdBack = true;
                    break;
                }
            }
        }
        if (holdBack)
        {
            w.name.clear();
        }
        return w;
    }

    NotNull<IKtTracker> next;
    // The documents given over the tracker's life share one initialisation of Xerces.
    Config::Detail::XercesSession xerces;
    std::unique_ptr<A::Aggregator> document;
    std::mutex mutex;
    // Per main event, the properties of its last affecting event not yet delivered. Entries
    // are emptied when consumed, never removed.
    std::map<std::string, Event::Params> pending;
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

void AggregatorKtTracker::Track(const Event& event)
{
    const Event w = d->Merge(event);
    if (!w.name.empty())
    {
        d->next->Track(w);
    }
}

}  // namespace Velkor::KT::Tracking
