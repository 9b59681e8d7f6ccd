#pragma once

// What the filter and aggregator targets share: a rule stage run over earlier rules, and the
// checks of a document the stage reads or refuses.

// First: it selects the C++11 flavour of the data binding runtime.
#include "Tracking/Config/XmlSchema.hxx"

#include "FuzzTarget.h"
#include "Support/LogCapture.h"

#include <istream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace KtFuzz
{

struct StageOutcome
{
    bool refused = false;  // the stage logged "Can't parse configuration: "
    std::vector<Event> delivered;
};

// A new `Stage` (FilterKtTracker, AggregatorKtTracker) reads `earlier`, then `document` when
// given; then `events` go through it twice.
template <class Stage>
StageOutcome RunStage(const char* earlier, const std::string* document,
                      const std::vector<Event>& events)
{
    const auto recorder = std::make_shared<Recorder>();
    Stage stage(recorder);
    stage.SetConfig(earlier);
    StageOutcome outcome;
    if (document)
    {
        const KtTest::LogCapture errors;
        stage.SetConfig(*document);
        outcome.refused = errors.Count(google::GLOG_ERROR, "Can't parse configuration: ") > 0;
    }
    for (int round = 0; round < 2; ++round)
    {
        for (const Event& event : events)
        {
            stage.Track(event);
        }
    }
    outcome.delivered = std::move(recorder->events);
    return outcome;
}

// The rules of `document` read with `read` (a root function of the object model), or null when
// the reader refuses it.
template <class Rules>
std::unique_ptr<Rules> ReadRules(const std::string& document,
                                 std::unique_ptr<Rules> (*read)(std::istream&, ::xml_schema::flags,
                                                                const ::xml_schema::properties&))
{
    try
    {
        std::istringstream input(document);
        return read(input, ::xml_schema::flags::dont_validate, ::xml_schema::properties());
    }
    catch (const ::xml_schema::exception&)
    {
        return nullptr;
    }
}

// The stage refuses (and logs) exactly the documents the reader refuses, and a refused one
// leaves the earlier rules in force: the stage delivers what it delivers under them alone.
inline void CheckRefusal(bool readerRefuses, const StageOutcome& outcome,
                         const std::vector<Event>& underEarlierRules)
{
    if (outcome.refused != readerRefuses)
    {
        Fail(readerRefuses ? "the stage did not log a document the reader refuses"
                           : "the stage logged a document the reader reads");
    }
    if (outcome.refused)
    {
        ExpectSame(underEarlierRules, outcome.delivered, "a refused document changed the rules");
    }
}

}  // namespace KtFuzz
