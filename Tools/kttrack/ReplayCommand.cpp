#include "ReplayCommand.h"

#include "EventDiff.h"
#include "EventsJson.h"
#include "Explain.h"
#include "Report.h"
#include "RuleDocument.h"
#include "Schemas.h"
#include "SessionTrace.h"
#include "ToolError.h"

#include "Tracking/Events/EventJson.h"
#include "Tracking/Events/EventText.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <set>

namespace Velkor::KT::KtTrack
{

namespace
{

class Collector : public Tracking::IKtTracker
{
public:
    void Track(const Tracking::Event& event) override { events.push_back(event); }

    std::vector<Tracking::Event> events;
};

struct ReplayOptions
{
    std::string filter;  // empty: the shipped document
    std::string aggregator;
    std::optional<std::string> format;  // jsonl unless explaining, then text
    std::optional<std::string> expect;
    bool explain = false;
    std::set<int> lines;  // with --explain: only the events on these lines; empty: all
    std::string events;
};

ReplayOptions ParseOptions(const std::vector<std::string>& args)
{
    ReplayOptions options;
    bool haveEvents = false;
    for (std::size_t i = 0; i < args.size(); ++i)
    {
        std::string arg = args[i];
        std::optional<std::string> value;
        const std::size_t equals = arg.find('=');
        if (arg.rfind("--", 0) == 0 && equals != std::string::npos)
        {
            value = arg.substr(equals + 1);
            arg.resize(equals);
        }
        const auto take = [&]() -> std::string
        {
            if (value)
            {
                return *value;
            }
            if (i + 1 == args.size())
            {
                throw ToolError("replay: " + arg + " needs a value");
            }
            return args[++i];
        };
        if (arg == "--filter")
        {
            options.filter = take();
        }
        else if (arg == "--aggregator")
        {
            options.aggregator = take();
        }
        else if (arg == "--format")
        {
            options.format = take();
            if (options.format != "jsonl" && options.format != "text")
            {
                throw ToolError("replay: unknown format '" + *options.format + "' (jsonl or text)");
            }
        }
        else if (arg == "--expect")
        {
            options.expect = take();
        }
        else if (arg == "--explain" && !value)
        {
            options.explain = true;
        }
        else if (arg == "--line")
        {
            const std::string line = take();
            if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos)
            {
                throw ToolError("replay: --line takes a line number, not '" + line + "'");
            }
            options.lines.insert(std::stoi(line));
        }
        else if (arg.size() > 1 && arg[0] == '-')
        {
            throw ToolError("replay: unknown option " + arg);
        }
        else if (haveEvents)
        {
            throw ToolError("replay: only one events file, got " + options.events + " and " + arg);
        }
        else
        {
            options.events = arg;
            haveEvents = true;
        }
    }
    if (!haveEvents)
    {
        throw ToolError("replay: no events file (use - for standard input)");
    }
    if (options.explain && options.expect)
    {
        throw ToolError("replay: --explain and --expect cannot be used together");
    }
    if (!options.lines.empty() && !options.explain)
    {
        throw ToolError("replay: --line needs --explain");
    }
    if (options.expect && *options.expect == "-" && options.events == "-")
    {
        throw ToolError(
            "replay: the events and the expected events cannot both be read from "
            "standard input");
    }
    return options;
}

}  // namespace

std::vector<Tracking::Event> Replay(const std::vector<Tracking::Event>& events,
                                    const std::string* filterDocument,
                                    const std::string* aggregatorDocument)
{
    const auto collector = std::make_shared<Collector>();
    const auto aggregator = std::make_shared<Tracking::AggregatorKtTracker>(collector);
    if (aggregatorDocument)
    {
        aggregator->SetConfig(*aggregatorDocument);
    }
    const auto filter = std::make_shared<Tracking::FilterKtTracker>(aggregator);
    if (filterDocument)
    {
        filter->SetConfig(*filterDocument);
    }
    for (const Tracking::Event& event : events)
    {
        filter->Track(event);
    }
    return collector->events;
}

int RunReplay(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
              std::ostream& err)
{
    try
    {
        const ReplayOptions options = ParseOptions(args);
        Schemas schemas;
        StageRules rules;
        rules.Set(StageDocument("replay", options.filter, DocumentKind::Filter, schemas, err));
        rules.Set(
            StageDocument("replay", options.aggregator, DocumentKind::Aggregator, schemas, err));

        std::vector<NumberedEvent> numbered = ReadSession(options.events, in);
        if (options.explain)
        {
            std::vector<EventRoad> roads = TraceSession(numbered, rules);
            if (!options.lines.empty())
            {
                roads.erase(std::remove_if(roads.begin(), roads.end(),
                                           [&](const EventRoad& road)
                                           { return !options.lines.count(road.input.line); }),
                            roads.end());
            }
            WriteExplanation(roads, rules, SessionName(options.events),
                             options.format.value_or("text") == "jsonl", out);
            return 0;
        }
        std::vector<Tracking::Event> events;
        for (NumberedEvent& event : numbered)
        {
            events.push_back(std::move(event.event));
        }
        std::vector<NumberedEvent> expected;
        if (options.expect)
        {
            expected = ParseEvents(ReadInput(*options.expect, in), SessionName(*options.expect));
        }

        const std::vector<Tracking::Event> delivered =
            Replay(events, rules.filter ? &rules.filter->text : nullptr,
                   rules.aggregator ? &rules.aggregator->text : nullptr);

        if (options.expect)
        {
            const std::vector<std::string> differences =
                DiffEvents(expected, delivered, SessionName(*options.expect));
            for (const std::string& line : differences)
            {
                out << line << '\n';
            }
            if (!differences.empty())
            {
                err << "kttrack: the delivered events differ from " << SessionName(*options.expect)
                    << " (" << differences.size() << " differences)\n";
                return 1;
            }
            return 0;
        }
        for (const Tracking::Event& event : delivered)
        {
            out << (options.format == std::optional<std::string>("text")
                        ? Tracking::EventText(event)
                        : Tracking::EventJson(event) + "\n");
        }
        return 0;
    }
    catch (const ToolError& error)
    {
        err << error.what() << '\n';
        return 2;
    }
}

}  // namespace Velkor::KT::KtTrack
