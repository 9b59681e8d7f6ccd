#include "Tracking/Rules/AggregatorPass_p.h"

namespace Velkor::KT::Tracking
{

template <bool Traced>
Event AggregatorPass<Traced>::Run(const Event& event)
{
    Event w = event;
    if constexpr (Traced)
    {
        trace->AggregatorStarted(w);
    }
    bool holdBack = false;
    int index = -1;
    for (const auto& block : document.event())
    {
        ++index;
        const std::string& mainName = block.event();
        if (mainName == w.name)
        {
            const auto held = pending.find(mainName);
            const bool merging = held != pending.end() && !held->second.empty();
            if constexpr (Traced)
            {
                trace->AggregatorMainEvent(index, merging);
            }
            if (merging)
            {
                // The cause's properties win over the main event's own.
                for (const auto& [key, value] : held->second)
                {
                    if constexpr (Traced)
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
                if constexpr (Traced)
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
    if constexpr (Traced)
    {
        trace->AggregatorFinished(w);
    }
    return w;
}

template <bool Traced>
void AggregatorPass<Traced>::TraceMerge(int block, const std::string& key, const std::string& value,
                                        const Event& w)
{
    const auto own = w.params.find(key);
    trace->AggregatorMerged(block, key, own == w.params.end() ? nullptr : &own->second, value);
}

template class AggregatorPass<false>;
template class AggregatorPass<true>;

}  // namespace Velkor::KT::Tracking
