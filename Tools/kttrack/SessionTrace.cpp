#include "SessionTrace.h"

#include "Report.h"
#include "Schemas.h"
#include "ToolError.h"

#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"

namespace Velkor::KT::KtTrack
{

namespace
{

using Tracking::Event;

std::optional<std::string> Value(const std::string* text)
{
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

// Writes each report into the road of the event under way.
class RoadListener : public Tracking::IRuleTraceListener
{
public:
    void FilterBlockEntered(int block, const Event&) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::FilterBlock;
        step.block = block;
        Add(std::move(step));
    }

    void FilterMatcherFired(const Tracking::FilterMatcherRef& matcher, const std::string& key,
                            const std::string& value) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::FilterMatcher;
        step.block = matcher.block;
        step.matcher = matcher;
        step.key = key;
        step.value = value;
        Add(std::move(step));
    }

    void FilterActionRun(const Tracking::FilterActionTrace& action) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::FilterAction;
        step.block = action.matcher.block;
        step.matcher = action.matcher;
        step.action = action.kind;
        step.index = action.action;
        step.skip = action.skip;
        step.key = action.key ? *action.key : std::string();
        step.before = Value(action.before);
        step.after = Value(action.after);
        Add(std::move(step));
    }

    void AggregatorMainEvent(int block, bool merging) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::AggregatorMain;
        step.block = block;
        step.merging = merging;
        Add(std::move(step));
    }

    void AggregatorMerged(int block, const std::string& key, const std::string* before,
                          const std::string& after) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::AggregatorMerge;
        step.block = block;
        step.key = key;
        step.before = Value(before);
        step.after = after;
        Add(std::move(step));
    }

    void AggregatorHeld(int block, int affecting, const Event::Params& held,
                        const Event::Params& discarded) override
    {
        TraceStep step;
        step.kind = TraceStep::Kind::AggregatorHold;
        step.block = block;
        step.index = affecting;
        step.held = held;
        step.discarded = discarded;
        Add(std::move(step));
        road->held = true;
    }

    EventRoad* road = nullptr;

private:
    void Add(TraceStep step) { road->steps.push_back(std::move(step)); }
};

// Where the stages' output goes: the road of the event under way.
class RoadEnd : public Tracking::IKtTracker
{
public:
    explicit RoadEnd(bool filter) : m_filter(filter) {}

    void Track(const Event& event) override
    {
        if (m_filter)
        {
            road->filtered = event;
            next->Track(event);
        }
        else
        {
            road->delivered = event;
        }
    }

    EventRoad* road = nullptr;
    Tracking::IKtTracker* next = nullptr;

private:
    bool m_filter;
};

}  // namespace

void StageRules::Set(std::unique_ptr<RuleDocument> document)
{
    if (!document)
    {
        return;
    }
    if (document->kind == DocumentKind::Filter)
    {
        filterLines = MapFilterLines(document->text, *document->filter);
        filter = std::move(document);
    }
    else if (document->kind == DocumentKind::Aggregator)
    {
        aggregatorLines = MapAggregatorLines(document->text, *document->aggregator);
        aggregator = std::move(document);
    }
}

std::unique_ptr<RuleDocument> StageDocument(const std::string& command, const std::string& option,
                                            DocumentKind kind, Schemas& schemas, std::ostream& err)
{
    if (option == "none")
    {
        return nullptr;
    }
    Report report(err);
    std::unique_ptr<RuleDocument> document;
    if (option.empty())
    {
        const std::string resource =
            std::string("/KT/Tracking/") +
            (kind == DocumentKind::Filter ? "FilterConfig.xml" : "AggregatorConfig.xml");
        document = ParseRuleDocument(":" + resource, Tracking::LoadConfigFromQrc(resource), schemas,
                                     report);
    }
    else
    {
        document = ReadRuleDocument(option, schemas, report);
    }
    if (!document)
    {
        throw ToolError(command + ": cannot use " + option + " as the " + KindName(kind) +
                        " document");
    }
    if (document->kind != kind)
    {
        throw ToolError(option + ": error: this is a " + KindName(document->kind) +
                        " document, not a " + KindName(kind) + " document");
    }
    return document;
}

void ReadStageDocuments(const std::string& command, const std::vector<std::string>& paths,
                        StageRules& rules, Schemas& schemas, std::ostream& err)
{
    for (const std::string& path : paths)
    {
        Report report(err);
        std::unique_ptr<RuleDocument> document = ReadRuleDocument(path, schemas, report);
        if (!document)
        {
            throw ToolError(command + ": cannot use " + path);
        }
        if (document->kind == DocumentKind::Main)
        {
            throw ToolError(path + ": error: " + command +
                            " takes filter and aggregator documents, not a main document");
        }
        if ((document->kind == DocumentKind::Filter ? rules.filter : rules.aggregator) != nullptr)
        {
            throw ToolError(command + ": more than one " + KindName(document->kind) +
                            " document: " + path);
        }
        rules.Set(std::move(document));
    }
}

std::vector<NumberedEvent> ReadSession(const std::string& path, std::istream& in)
{
    return ParseEvents(ReadInput(path, in), SessionName(path));
}

std::string SessionName(const std::string& path)
{
    return path == "-" ? "<stdin>" : path;
}

std::vector<EventRoad> TraceSession(const std::vector<NumberedEvent>& session,
                                    const StageRules& rules)
{
    const auto listener = std::make_shared<RoadListener>();
    const auto delivered = std::make_shared<RoadEnd>(false);
    const auto aggregator = std::make_shared<Tracking::AggregatorKtTracker>(delivered);
    const auto filtered = std::make_shared<RoadEnd>(true);
    filtered->next = aggregator.get();
    const auto filter = std::make_shared<Tracking::FilterKtTracker>(filtered);
    if (rules.filter)
    {
        filter->SetConfig(rules.filter->text);
    }
    if (rules.aggregator)
    {
        aggregator->SetConfig(rules.aggregator->text);
    }
    filter->SetTraceListener(listener);
    aggregator->SetTraceListener(listener);

    std::vector<EventRoad> roads(session.size());
    for (std::size_t i = 0; i < session.size(); ++i)
    {
        EventRoad& road = roads[i];
        road.input = session[i];
        listener->road = filtered->road = delivered->road = &road;
        filter->Track(road.input.event);
    }
    return roads;
}

}  // namespace Velkor::KT::KtTrack
