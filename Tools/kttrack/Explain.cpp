#include "Explain.h"

#include "RuleText.h"

#include "Tracking/Events/EventJson.h"

#include <algorithm>
#include <ostream>
#include <utility>

namespace Velkor::KT::KtTrack
{

namespace
{

using Tracking::FilterActionKind;
using Tracking::FilterSkipVerdict;
using Kind = TraceStep::Kind;

// One step, readably and as JSON fields.
struct Described
{
    const char* stage;
    std::string at;
    const char* step;
    std::string text;
    std::vector<std::pair<const char*, std::string>> fields;  // name, JSON value
};

std::string Text(const std::optional<std::string>& value)
{
    return value ? Quoted(*value) : "absent";
}

std::string Json(const std::optional<std::string>& value)
{
    return value ? Quoted(*value) : "null";
}

const char* VerdictName(FilterSkipVerdict verdict)
{
    switch (verdict)
    {
        case FilterSkipVerdict::Dropped:
            return "dropped";
        case FilterSkipVerdict::FullRepeat:
            return "fullRepeat";
        case FilterSkipVerdict::Remembered:
            return "remembered";
        case FilterSkipVerdict::None:
            break;
    }
    return "";
}

std::string ActionText(const TraceStep& step)
{
    const std::string kind = ActionKindName(step.action);
    switch (step.action)
    {
        case FilterActionKind::ModEvent:
            return kind + ": " + Text(step.before) + " -> " + Text(step.after);
        case FilterActionKind::SkipEvent:
            if (step.skip == FilterSkipVerdict::FullRepeat)
            {
                return kind + " skipFullRepeats: the same properties as the last " +
                       Text(step.before) + " that passed: dropped";
            }
            if (step.skip == FilterSkipVerdict::Remembered)
            {
                return kind + " skipFullRepeats: not a repeat of the last " + Text(step.before) +
                       ": remembered, passes";
            }
            return kind + ": dropped";
        case FilterActionKind::AddParam:
            if (step.before)
            {
                return kind + " " + Quoted(step.key) + ": " + Text(step.before) +
                       " kept (already present)";
            }
            break;
        case FilterActionKind::DelParam:
            return kind + " " + Quoted(step.key) + ": " +
                   (step.before ? Text(step.before) + " -> deleted" : "absent");
        default:
            break;
    }
    return kind + " " + Quoted(step.key) + ": " + Text(step.before) + " -> " + Text(step.after);
}

Described DescribeFilterStep(const TraceStep& step, const StageRules& rules)
{
    const auto& file = rules.filter->path;
    const auto& block = rules.filter->filter->event()[step.block];
    switch (step.kind)
    {
        case Kind::FilterBlock:
            return {"filter",
                    At(file, rules.filterLines.BlockLine(step.block)),
                    "block",
                    "filter block " + Quoted(block.event()) + " applies",
                    {{"event", Quoted(block.event())}}};
        case Kind::FilterMatcher:
        {
            const std::string matcher = MatcherText(block.param()[step.matcher.rule],
                                                    step.matcher.kind, step.matcher.matcher);
            return {"filter",
                    At(file, rules.filterLines.MatcherLine(step.matcher)),
                    "match",
                    "  param " + Quoted(step.key) + " = " + Quoted(step.value) + ": " + matcher +
                        " matches",
                    {{"param", Quoted(step.key)},
                     {"value", Quoted(step.value)},
                     {"matcher", Quoted(matcher)}}};
        }
        default:
            break;
    }
    Described described{
        "filter",
        At(file, rules.filterLines.ActionLine(step.matcher, step.action, step.index)),
        "action",
        "    " + ActionText(step),
        {{"action", Quoted(ActionKindName(step.action))}}};
    if (!step.key.empty())
    {
        described.fields.emplace_back("param", Quoted(step.key));
    }
    described.fields.emplace_back("before", Json(step.before));
    described.fields.emplace_back("after", Json(step.after));
    if (step.skip != FilterSkipVerdict::None)
    {
        described.fields.emplace_back("verdict", Quoted(VerdictName(step.skip)));
    }
    return described;
}

Described DescribeAggregatorStep(const TraceStep& step, const StageRules& rules)
{
    const auto& file = rules.aggregator->path;
    const auto& block = rules.aggregator->aggregator->event()[step.block];
    const std::string main = Quoted(block.event());
    const std::string blockAt = At(file, rules.aggregatorLines.BlockLine(step.block));
    switch (step.kind)
    {
        case Kind::AggregatorMain:
            return {"aggregator",
                    blockAt,
                    "main",
                    "aggregator: main event " + main +
                        (step.merging ? ", merges its held cause" : ", no cause held"),
                    {{"event", main}, {"merging", step.merging ? "true" : "false"}}};
        case Kind::AggregatorMerge:
            return {"aggregator",
                    blockAt,
                    "merge",
                    "  " + Quoted(step.key) + ": " + Text(step.before) + " -> " + Text(step.after),
                    {{"param", Quoted(step.key)},
                     {"before", Json(step.before)},
                     {"after", Json(step.after)}}};
        default:
            break;
    }
    std::string text = "aggregator: held as a cause of " + main + ": " + ParamsJson(step.held);
    if (!step.discarded.empty())
    {
        text += ", replacing the unused cause " + ParamsJson(step.discarded);
    }
    return {"aggregator",
            At(file, rules.aggregatorLines.AffectingLine(step.block, step.index)),
            "hold",
            text,
            {{"main", main},
             {"held", ParamsJson(step.held)},
             {"discarded", ParamsJson(step.discarded)}}};
}

Described Describe(const TraceStep& step, const StageRules& rules)
{
    switch (step.kind)
    {
        case Kind::FilterBlock:
        case Kind::FilterMatcher:
        case Kind::FilterAction:
            return DescribeFilterStep(step, rules);
        default:
            return DescribeAggregatorStep(step, rules);
    }
}

const char* Outcome(const EventRoad& road)
{
    return road.delivered ? "delivered" : road.held ? "held" : "dropped";
}

bool IsFilterStep(const TraceStep& step)
{
    return step.kind == Kind::FilterBlock || step.kind == Kind::FilterMatcher ||
           step.kind == Kind::FilterAction;
}

void WriteText(const EventRoad& road, const StageRules& rules, const std::string& sessionName,
               std::ostream& out)
{
    out << sessionName << ':' << road.input.line << ": " << road.input.event.name << ' '
        << ParamsJson(road.input.event.params) << '\n';
    const auto aggregatorSteps =
        std::find_if_not(road.steps.begin(), road.steps.end(), IsFilterStep);
    const auto write = [&](auto begin, auto end)
    {
        for (auto step = begin; step != end; ++step)
        {
            const Described d = Describe(*step, rules);
            out << "  " << d.at << ": " << d.text << '\n';
        }
    };
    write(road.steps.begin(), aggregatorSteps);
    if (aggregatorSteps == road.steps.begin())
    {
        out << (rules.filter ? "  filter: no block applies\n" : "  filter: no document\n");
    }
    write(aggregatorSteps, road.steps.end());
    if (road.filtered && aggregatorSteps == road.steps.end())
    {
        out << (rules.aggregator ? "  aggregator: names no such event\n"
                                 : "  aggregator: no document\n");
    }
    if (road.delivered)
    {
        out << "  => delivered " << road.delivered->name << ' '
            << ParamsJson(road.delivered->params) << "\n\n";
    }
    else
    {
        out << (road.held ? "  => held back by the aggregator\n\n"
                          : "  => dropped by the filter\n\n");
    }
}

void WriteJson(const EventRoad& road, const StageRules& rules, std::ostream& out)
{
    out << "{\"line\":" << road.input.line << ",\"event\":" << Tracking::EventJson(road.input.event)
        << ",\"steps\":[";
    const char* separator = "";
    for (const TraceStep& step : road.steps)
    {
        const Described d = Describe(step, rules);
        out << separator << "{\"stage\":\"" << d.stage << "\",\"at\":" << Quoted(d.at)
            << ",\"step\":\"" << d.step << '"';
        for (const auto& [name, value] : d.fields)
        {
            out << ",\"" << name << "\":" << value;
        }
        out << '}';
        separator = ",";
    }
    out << "],\"outcome\":\"" << Outcome(road)
        << "\",\"delivered\":" << (road.delivered ? Tracking::EventJson(*road.delivered) : "null")
        << "}\n";
}

}  // namespace

void WriteExplanation(const std::vector<EventRoad>& roads, const StageRules& rules,
                      const std::string& sessionName, bool jsonl, std::ostream& out)
{
    for (const EventRoad& road : roads)
    {
        if (jsonl)
        {
            WriteJson(road, rules, out);
        }
        else
        {
            WriteText(road, rules, sessionName, out);
        }
    }
}

}  // namespace Velkor::KT::KtTrack
