// Aggregator documents: the input is read by AggregatorKtTracker::SetConfig over earlier rules,
// then a fixed set of events and, for each block of the input, its affecting events and its main
// event are tracked twice. No event held back by the rules in force may be passed on. A document
// the tracker cannot read must be logged and leave the earlier rules in force.

#include "FuzzSupport.h"

#include "Tracking/AggregatorKtTracker.h"
#include "Tracking/Config/Aggregator.h"

#include <memory>
#include <set>
#include <sstream>

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

std::unique_ptr<A::Aggregator> Read(const std::string& document)
{
    try
    {
        std::istringstream input(document);
        return A::aggregator(input, ::xml_schema::flags::dont_validate);
    }
    catch (const ::xml_schema::exception&)
    {
        return nullptr;
    }
}

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
std::set<std::string> AffectingNames(const A::Aggregator& rules)
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

struct Outcome
{
    bool rejected = false;
    std::vector<Event> delivered;
};

// The earlier rules, then `document` when given, then `events` twice.
Outcome Run(const std::string* document, const std::vector<Event>& events)
{
    const auto recorder = std::make_shared<KtFuzz::Recorder>();
    Velkor::KT::Tracking::AggregatorKtTracker aggregator(recorder);
    aggregator.SetConfig(kEarlierRules);
    Outcome outcome;
    if (document)
    {
        const KtFuzz::ErrorLines errors("Can't parse configuration: ");
        aggregator.SetConfig(*document);
        outcome.rejected = errors.Count() > 0;
    }
    for (int round = 0; round < 2; ++round)
    {
        for (const Event& event : events)
        {
            aggregator.Track(event);
        }
    }
    outcome.delivered = std::move(recorder->events);
    return outcome;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    KtFuzz::InitProcess();
    static const std::vector<Event> underEarlierRules = Run(nullptr, kFixedEvents).delivered;
    static const std::set<std::string> earlierAffecting = AffectingNames(*Read(kEarlierRules));

    const std::string document(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<A::Aggregator> rules = Read(document);
    std::vector<Event> events = kFixedEvents;
    if (rules)
    {
        const std::vector<Event> more = EventsFor(*rules);
        events.insert(events.end(), more.begin(), more.end());
    }
    const Outcome outcome = Run(&document, events);
    if (outcome.rejected == static_cast<bool>(rules))
    {
        KtFuzz::Fail(rules ? "the tracker logged a document the reader reads"
                           : "the tracker did not log a document the reader refuses");
    }
    if (outcome.rejected)
    {
        KtFuzz::ExpectSame(underEarlierRules, outcome.delivered,
                           "a refused document changed the rules in force");
    }
    const std::set<std::string> affecting = rules ? AffectingNames(*rules) : earlierAffecting;
    for (const Event& event : outcome.delivered)
    {
        if (affecting.count(event.name))
        {
            KtFuzz::Fail("the affecting event " + event.name + " was passed on");
        }
    }
    return 0;
}
