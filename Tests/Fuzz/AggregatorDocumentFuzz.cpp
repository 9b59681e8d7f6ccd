// Aggregator documents: the input is read by AggregatorKtTracker::SetConfig over earlier rules,
// then a fixed set of events and, for each block of the input, its affecting events and its main
// event are tracked twice. No event held back by the rules in force may be passed on. A document
// the tracker cannot read must be logged and leave the earlier rules in force.

#include "RuleStage.h"

#include "Tracking/Config/Aggregator.h"
#include "Tracking/Rules/AggregatorKtTracker.h"

#include <set>

namespace
{

namespace A = Velkor::KT::Tracking::Config::Aggregator;
using KtFuzz::Event;

const char* const kEarlierRules = R"(<aggregator>
  <event event="MAIN"><affectingEventName>CAUSE</affectingEventName></event>
  <event event="CAPTURE_STOP"><affectingEventName>BUTTON_CAPTURE_STOP_EVENT</affectingEventName>
  </event>
</aggregator>)";

const std::vector<Event> kFixedEvents = {
    {"CAUSE", {{"METHOD", "BUTTON"}}},
    {"MAIN", {{"OWN", "1"}, {"METHOD", "OWN"}}},
    {"BUTTON_CAPTURE_STOP_EVENT", {{"METHOD", "BUTTON"}}},
    {"CAPTURE_STOP", {{"DURATION", "90"}}},
    {"", {{"METHOD", "NONE"}}},
    {"HOTKEY_CAPTURE_START_STOP_EVENT", {{"METHOD", "HOTKEY"}}},
    {"CAPTURE_START", {}},
};

// For each block (the first 32): each of its affecting events (the first 8), then its main event.
std::vector<Event> EventsFor(const A::Aggregator& rules)
{
    std::vector<Event> events;
    std::size_t blocks = 0;
    for (const auto& block : rules.event())
    {
        if (++blocks > 32)
        {
            break;
        }
        std::size_t causes = 0;
        for (const auto& affecting : block.affectingEventName())
        {
            if (++causes > 8)
            {
                break;
            }
            events.push_back({affecting, {{"CAUSE", affecting}, {"OWN", "cause"}}});
        }
        events.push_back({block.event(), {{"OWN", "main"}}});
    }
    return events;
}

// The names held back: those listed as affecting a main event other than themselves (a block's
// own main event is never held back by its block).
std::set<std::string> HeldBack(const A::Aggregator& rules)
{
    std::set<std::string> names;
    for (const auto& block : rules.event())
    {
        for (const auto& affecting : block.affectingEventName())
        {
            if (affecting != block.event())
            {
                names.insert(affecting);
            }
        }
    }
    return names;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Aggregator = Velkor::KT::Tracking::AggregatorKtTracker;
    KtFuzz::InitProcess();
    static const std::vector<Event> underEarlierRules =
        KtFuzz::RunStage<Aggregator>(kEarlierRules, nullptr, kFixedEvents).delivered;
    static const std::set<std::string> earlierHeldBack =
        HeldBack(*KtFuzz::ReadRules(kEarlierRules, &A::aggregator));

    const std::string document(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<A::Aggregator> rules = KtFuzz::ReadRules(document, &A::aggregator);
    std::vector<Event> events = kFixedEvents;
    if (rules)
    {
        const std::vector<Event> more = EventsFor(*rules);
        events.insert(events.end(), more.begin(), more.end());
    }
    const KtFuzz::StageOutcome outcome =
        KtFuzz::RunStage<Aggregator>(kEarlierRules, &document, events);
    KtFuzz::CheckRefusal(!rules, outcome, underEarlierRules);
    const std::set<std::string> heldBack = rules ? HeldBack(*rules) : earlierHeldBack;
    for (const Event& event : outcome.delivered)
    {
        if (heldBack.count(event.name))
        {
            KtFuzz::Fail("the held-back event " + event.name + " was passed on");
        }
    }
    return 0;
}
