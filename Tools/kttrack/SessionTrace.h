#pragma once

// A session run through real rule stages with a trace listener attached: for each event, what
// the stages reported doing to it and what they delivered. The explanation (replay --explain),
// the coverage and the difference of two rule versions are all read from it.

#include "EventsJson.h"
#include "RuleDocument.h"
#include "RuleLines.h"

#include "Tracking/Events/Event.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

class Schemas;

// The documents of the two stages as a command runs them, and where their rules are written.
struct StageRules
{
    // Null: the stage has no document and passes everything.
    std::unique_ptr<RuleDocument> filter;
    std::unique_ptr<RuleDocument> aggregator;
    FilterLines filterLines;
    AggregatorLines aggregatorLines;

    // Sets the document of its kind (filter or aggregator) and maps its lines; null sets nothing.
    void Set(std::unique_ptr<RuleDocument> document);
};

// The document of `kind` that an option of `command` names: the shipped one for "" (named by its
// resource path, ":/KT/Tracking/FilterConfig.xml"), none for "none", else the file, which must be
// readable by the stage and of that kind. Throws ToolError otherwise, after writing the reader's
// errors to `err`.
std::unique_ptr<RuleDocument> StageDocument(const std::string& command, const std::string& option,
                                            DocumentKind kind, Schemas& schemas, std::ostream& err);

// Reads the filter and aggregator documents at `paths` into `rules`, telling them apart by their
// root; at most one of each kind. Throws ToolError for anything else, after writing the reader's
// errors to `err`.
void ReadStageDocuments(const std::string& command, const std::vector<std::string>& paths,
                        StageRules& rules, Schemas& schemas, std::ostream& err);

// The events of the session file at `path` ("-": `in`), and the name that messages give it.
std::vector<NumberedEvent> ReadSession(const std::string& path, std::istream& in);
std::string SessionName(const std::string& path);

// One step a stage reported (see IRuleTraceListener).
struct TraceStep
{
    enum class Kind
    {
        FilterBlock,      // block
        FilterMatcher,    // matcher, key, value
        FilterAction,     // matcher, action, index, key (not for modEvent and skipEvent),
                          // before, after, skip
        AggregatorMain,   // block, merging
        AggregatorMerge,  // block, key, before, after
        AggregatorHold,   // block, index (of the affecting name), held, discarded
    };

    Kind kind = Kind::FilterBlock;
    int block = 0;
    Tracking::FilterMatcherRef matcher;
    Tracking::FilterActionKind action = Tracking::FilterActionKind::SetValue;
    int index = 0;
    Tracking::FilterSkipVerdict skip = Tracking::FilterSkipVerdict::None;
    bool merging = false;
    std::string key;
    std::string value;
    std::optional<std::string> before;
    std::optional<std::string> after;
    Tracking::Event::Params held;
    Tracking::Event::Params discarded;
};

// What happened to one event of a session.
struct EventRoad
{
    NumberedEvent input;
    std::vector<TraceStep> steps;
    // What left the filter; none when the filter dropped the event.
    std::optional<Tracking::Event> filtered;
    // Whether the aggregator held the event back as a cause.
    bool held = false;
    // What left the aggregator: what the chain delivers.
    std::optional<Tracking::Event> delivered;
};

// Runs the events of `session`, in order, through a filter stage and then an aggregator stage
// with the documents of `rules`, both reporting to a listener.
std::vector<EventRoad> TraceSession(const std::vector<NumberedEvent>& session,
                                    const StageRules& rules);

}  // namespace Velkor::KT::KtTrack
