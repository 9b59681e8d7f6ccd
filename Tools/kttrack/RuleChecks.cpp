#include "RuleChecks.h"

#include "ProducedEvents.h"
#include "Report.h"
#include "RuleDocument.h"
#include "RuleLines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <vector>

namespace Velkor::KT::KtTrack
{

namespace Filter = Tracking::Config::Filter;

namespace
{

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string Quote(const std::string& name)
{
    return "'" + name + "'";
}

// The shortest text that reads back as `value`.
std::string Number(double value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

template <typename Function>
void ForEachMatcher(const Filter::Param& param, Function&& function)
{
    for (const auto& m : param.equal())
    {
        function(m);
    }
    for (const auto& m : param.startsWith())
    {
        function(m);
    }
    for (const auto& m : param.endsWith())
    {
        function(m);
    }
    for (const auto& m : param.contains())
    {
        function(m);
    }
    for (const auto& m : param.inRange())
    {
        function(m);
    }
    for (const auto& m : param.any())
    {
        function(m);
    }
}

// The names the matchers of `block` can rename an event to.
std::vector<std::string> Renames(const Filter::Event& block)
{
    std::vector<std::string> names;
    for (const auto& param : block.param())
    {
        ForEachMatcher(param,
                       [&names](const Filter::Matcher& matcher)
                       {
                           for (const auto& modEvent : matcher.modEvent())
                           {
                               names.push_back(modEvent.name());
                           }
                       });
    }
    return names;
}

struct Range
{
    double from;
    double to;
    std::string text;  // as the author wrote it
};

std::string RangeText(const Filter::MatcherRange& range)
{
    std::string text = "inRange";
    if (range.from())
    {
        text += " from=\"" + Number(*range.from()) + "\"";
    }
    if (range.to())
    {
        text += " to=\"" + Number(*range.to()) + "\"";
    }
    return text;
}

// Whether the union of `earlier` covers every value of [from, to].
bool Covered(std::vector<Range> earlier, double from, double to)
{
    std::sort(earlier.begin(), earlier.end(),
              [](const Range& a, const Range& b) { return a.from < b.from; });
    double reached = from;
    bool started = false;
    for (const Range& range : earlier)
    {
        if (range.to < reached || (started && range.to == reached))
        {
            continue;
        }
        if (range.from > reached)
        {
            return false;
        }
        reached = range.to;
        started = true;
        if (reached >= to)
        {
            return true;
        }
    }
    return false;
}

void CheckRanges(const std::string& path, const std::string& where,
                 const Filter::Param::inRange_sequence& matchers, Report& report)
{
    std::vector<Range> ranges;
    for (const auto& matcher : matchers)
    {
        if (!matcher.actOn())
        {
            // Inverted: matches outside its range, which is not a range among the others.
            continue;
        }
        if (!matcher.from() && !matcher.to())
        {
            report.Warning(path, where + "inRange without \"from\" or \"to\" never matches");
            continue;
        }
        Range range{matcher.from() ? double(*matcher.from()) : -kInfinity,
                    matcher.to() ? double(*matcher.to()) : kInfinity, RangeText(matcher)};
        if (range.from > range.to)
        {
            report.Warning(path, where + range.text + " is empty and never matches");
            continue;
        }
        if (Covered(ranges, range.from, range.to))
        {
            report.Warning(path, where + range.text +
                                     " never matches: the ranges before it cover all its values");
            continue;
        }
        for (const Range& earlier : ranges)
        {
            const double low = std::max(earlier.from, range.from);
            const double high = std::min(earlier.to, range.to);
            if (low == high)
            {
                report.Warning(path, where + earlier.text + " and " + range.text + " touch: " +
                                         Number(low) + " matches only " + earlier.text);
            }
        }
        ranges.push_back(range);
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& a, const Range& b) { return a.from < b.from; });
    for (std::size_t i = 1; i < ranges.size(); ++i)
    {
        const double reached =
            std::max_element(ranges.begin(), ranges.begin() + i,
                             [](const Range& a, const Range& b) { return a.to < b.to; })
                ->to;
        if (ranges[i].from > reached)
        {
            report.Warning(path, where + "no range matches the values between " + Number(reached) +
                                     " and " + Number(ranges[i].from) + " (such as " +
                                     Number(reached + (ranges[i].from - reached) / 2) + ")");
        }
    }
}

// The key the aggregator hands from a cause to its main event.
const char* const kMethod = "METHOD";

// `block` applies to the events named by it that reach the filter, whose keys `seen` holds. A
// rule on a key no sender sets never matches (warned at `ruleAt`); the others add their keys to
// the event, and make the events they rename it to reach the blocks after it with its keys.
template <typename RuleAt>
void ApplyBlock(const Filter::Event& block, std::map<std::string, std::set<std::string>>& seen,
                const std::string& mainPath, RuleAt ruleAt, Report& report)
{
    std::set<std::string>& keys = seen[block.event()];
    std::set<std::string> renames;
    for (std::size_t j = 0; j < block.param().size(); ++j)
    {
        const std::string& key = block.param()[j].key();
        if (!MaySet(keys, key))
        {
            report.Warning(ruleAt(int(j)), "the rule for param " + Quote(key) + " of " +
                                               Quote(block.event()) + " never applies: neither " +
                                               mainPath + " nor the rules before it set " +
                                               Quote(key) + " on " + Quote(block.event()));
            continue;
        }
        ForEachMatcher(block.param()[j],
                       [&](const Filter::Updater& matcher)
                       {
                           for (const auto& add : matcher.addParam())
                           {
                               keys.insert(add.key());
                           }
                           for (const auto& mod : matcher.modParam())
                           {
                               keys.insert(mod.key());
                           }
                           for (const auto& rename : matcher.modEvent())
                           {
                               renames.insert(rename.name());
                           }
                       });
    }
    const std::set<std::string> carried = keys;
    for (const std::string& name : renames)
    {
        seen[name].insert(carried.begin(), carried.end());
    }
}

}  // namespace

void CheckFilterRanges(const RuleDocument& filter, Report& report)
{
    for (const auto& block : filter.filter->event())
    {
        for (const auto& param : block.param())
        {
            CheckRanges(filter.path,
                        "event " + Quote(block.event()) + ", param " + Quote(param.key()) + ": ",
                        param.inRange(), report);
        }
    }
}

void CheckAggregatorRoles(const RuleDocument& aggregator, Report& report)
{
    std::set<std::string> mains;
    for (const auto& block : aggregator.aggregator->event())
    {
        mains.insert(block.event());
    }
    std::set<std::string> reported;
    for (const auto& block : aggregator.aggregator->event())
    {
        for (const auto& affecting : block.affectingEventName())
        {
            if (mains.count(affecting) && reported.insert(affecting).second)
            {
                report.Warning(aggregator.path,
                               Quote(affecting) +
                                   " is a main event and also an affecting event of " +
                                   Quote(block.event()) + ": it is never delivered");
            }
        }
    }
}

void CrossCheck(const RuleDocument& main, const RuleDocument* filter,
                const RuleDocument* aggregator, Report& report)
{
    // Each name that reaches the rules, with the keys it may carry there.
    std::map<std::string, std::set<std::string>> seen = ProducedBy(*main.main).events;
    if (filter)
    {
        const FilterLines lines = MapFilterLines(filter->text, *filter->filter);
        const auto& blocks = filter->filter->event();
        std::map<std::string, std::size_t> firstRename;
        for (std::size_t i = 0; i < blocks.size(); ++i)
        {
            for (const std::string& name : Renames(blocks[i]))
            {
                firstRename.emplace(name, i);
            }
        }
        std::set<std::string> reported;
        for (std::size_t i = 0; i < blocks.size(); ++i)
        {
            const std::string& name = blocks[i].event();
            if (seen.count(name))
            {
                ApplyBlock(
                    blocks[i], seen, main.path,
                    [&](int rule) { return At(filter->path, lines.RuleLine(int(i), rule)); },
                    report);
                continue;
            }
            if (!reported.insert(name).second)
            {
                continue;
            }
            const auto later = firstRename.find(name);
            std::string message = "the block for " + Quote(name) + " never applies: " + main.path +
                                  " emits no such event";
            if (later == firstRename.end())
            {
                message += " and no block renames events to it";
            }
            else if (later->second > i)
            {
                message +=
                    ", and only a later block renames events to it (blocks apply in "
                    "document order)";
            }
            else
            {
                message += ", and the blocks before it that rename events to it never apply";
            }
            report.Warning(filter->path, message);
        }
    }
    if (!aggregator)
    {
        return;
    }
    const AggregatorLines lines = MapAggregatorLines(aggregator->text, *aggregator->aggregator);
    const std::string source =
        filter ? "neither " + main.path + " nor the renames of " + filter->path + " produce it"
               : main.path + " does not emit it";
    std::set<std::string> reported;
    std::set<std::string> withoutMethod;
    const auto& blocks = aggregator->aggregator->event();
    for (std::size_t i = 0; i < blocks.size(); ++i)
    {
        const auto& block = blocks[i];
        if (!seen.count(block.event()) && reported.insert(block.event()).second)
        {
            report.Warning(aggregator->path,
                           "main event " + Quote(block.event()) + " never arrives: " + source);
        }
        for (std::size_t k = 0; k < block.affectingEventName().size(); ++k)
        {
            const std::string& affecting = block.affectingEventName()[k];
            const auto found = seen.find(affecting);
            if (found == seen.end())
            {
                if (reported.insert(affecting).second)
                {
                    report.Warning(aggregator->path, "affecting event " + Quote(affecting) +
                                                         " of " + Quote(block.event()) +
                                                         " never arrives: " + source);
                }
            }
            else if (!MaySet(found->second, kMethod) && withoutMethod.insert(affecting).second)
            {
                report.Warning(At(aggregator->path, lines.AffectingLine(int(i), int(k))),
                               "affecting event " + Quote(affecting) + " of " +
                                   Quote(block.event()) + " never carries " + Quote(kMethod) +
                                   ": " + Quote(block.event()) + " is not told what caused it");
            }
        }
    }
}

}  // namespace Velkor::KT::KtTrack
