// Filter documents: the input is read by FilterKtTracker::SetConfig over earlier rules, then a
// fixed set of events and one pair of events made for each rule block of the input are tracked
// twice, so that the rules and the memory of repeats run. A document the tracker cannot read
// must be logged and leave the earlier rules in force; one it reads must not be logged.

#include "RuleStage.h"

#include "Tracking/Config/Filter.h"
#include "Tracking/Rules/FilterKtTracker.h"

#include <cstdio>

namespace
{

namespace F = Velkor::KT::Tracking::Config::Filter;
using KtFuzz::Event;

const char* const kEarlierRules = R"(<filter>
  <event event="PROBE">
    <param key="K">
      <equal value="a"><setValue value="b"/><addParam key="ADDED" value="1"/></equal>
      <any><modEvent name="PROBE_OTHER"/></any>
    </param>
  </event>
  <event event="REPEATED">
    <param key="K"><any><skipEvent skipFullRepeats="true"/></any></param>
  </event>
</filter>)";

// Events the earlier rules, the shipped rules and the seeds speak of, and one without a name.
const std::vector<Event> kFixedEvents = {
    {"PROBE", {{"K", "a"}}},
    {"PROBE", {{"K", "z"}, {"OTHER", ""}}},
    {"REPEATED", {{"K", "a"}}},
    {"", {{"K", "a"}}},
    {"HOTKEY_TRIGGERED", {{"HOTKEY_ID", "captureStartStop"}, {"METHOD", "HOTKEY"}}},
    {"CAPTURE_STOP", {{"AUDIO_SOURCES", ""}, {"DURATION", "90"}, {"FILE_SIZE", "5242880"}}},
    {"CAPTURE_PAUSE", {{"DURATION", "nan"}}},
    {"SHOW_WINDOW", {{"WINDOW", "MAIN"}}},
};

// A value that the first matcher of `rule` tests for.
template <typename Rule>
std::string SampleValue(const Rule& rule)
{
    if (!rule.equal().empty())
    {
        return rule.equal().front().value();
    }
    if (!rule.startsWith().empty())
    {
        return rule.startsWith().front().value() + "~";
    }
    if (!rule.endsWith().empty())
    {
        return "~" + rule.endsWith().front().value();
    }
    if (!rule.contains().empty())
    {
        return "~" + rule.contains().front().value() + "~";
    }
    if (!rule.inRange().empty())
    {
        const auto& range = rule.inRange().front();
        const double bound = range.from() ? *range.from() : range.to() ? *range.to() : 0;
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", bound);
        return text;
    }
    return "x";
}

// For each block (the first 32): an event whose params the block's rules test with their first
// matcher's value, and one with the same params empty.
std::vector<Event> EventsFor(const F::Filter& rules)
{
    std::vector<Event> events;
    std::size_t blocks = 0;
    for (const auto& block : rules.event())
    {
        if (++blocks > 32)
        {
            break;
        }
        Event sample{block.event(), {}};
        Event empty{block.event(), {}};
        for (const auto& rule : block.param())
        {
            sample.params.emplace(rule.key(), SampleValue(rule));
            empty.params.emplace(rule.key(), "");
        }
        events.push_back(sample);
        events.push_back(empty);
    }
    return events;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using Filter = Velkor::KT::Tracking::FilterKtTracker;
    KtFuzz::InitProcess();
    static const std::vector<Event> underEarlierRules =
        KtFuzz::RunStage<Filter>(kEarlierRules, nullptr, kFixedEvents).delivered;

    const std::string document(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<F::Filter> rules = KtFuzz::ReadRules(document, &F::filter);
    std::vector<Event> events = kFixedEvents;
    if (rules)
    {
        const std::vector<Event> more = EventsFor(*rules);
        events.insert(events.end(), more.begin(), more.end());
    }
    KtFuzz::CheckRefusal(!rules, KtFuzz::RunStage<Filter>(kEarlierRules, &document, events),
                         underEarlierRules);
    return 0;
}
