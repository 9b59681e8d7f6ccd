#pragma once

// The tables of the rule stages (FilterKtTracker, AggregatorKtTracker): a stage over a recording
// endpoint, rows of a document, the events put in and the events expected out, and the check of
// a document the stage refuses.

#include "Support/EventPrinting.h"
#include "Support/EventText.h"
#include "Support/LogCapture.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Events/Event.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace KtTest
{

template <class Tracker>
struct Stage
{
    std::shared_ptr<RecordingTracker> out = std::make_shared<RecordingTracker>();
    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>(out);

    std::vector<Velkor::KT::Tracking::Event> Run(const std::string& events)
    {
        for (const auto& event : EventsFrom(events))
        {
            tracker->Track(event);
        }
        return out->Events();
    }
};

struct StageRow
{
    const char* label;
    std::string document;  // text, a resource path starting with "/KT/", or empty for none
    std::string input;     // events as EventsFrom reads them
    std::string expected;
};

// The document's text: a resource is loaded.
inline std::string DocumentText(const std::string& document)
{
    return document.rfind("/KT/", 0) == 0 ? Velkor::KT::Tracking::LoadConfigFromQrc(document)
                                          : document;
}

// The stage reads the row's document without a log line and delivers what the row expects, with
// and without a trace listener.
template <class Tracker>
void ExpectDelivers(const StageRow& row)
{
    const std::string text = DocumentText(row.document);
    for (const bool traced : {false, true})
    {
        Stage<Tracker> stage;
        if (traced)
        {
            stage.tracker->SetTraceListener(
                std::make_shared<Velkor::KT::Tracking::IRuleTraceListener>());
        }
        if (!row.document.empty())
        {
            ASSERT_FALSE(text.empty()) << row.document;
            LogCapture log;
            stage.tracker->SetConfig(text);
            ASSERT_TRUE(log.Messages().empty()) << log.Messages().front();
        }
        EXPECT_EQ(stage.Run(row.input), EventsFrom(row.expected))
            << (traced ? "with a trace listener" : "without a trace listener");
    }
}

struct RefusedRow
{
    const char* label;
    std::string document;
    std::string mentions;  // a piece of the parser's description
};

// The stage, reading `rules` and then the row's document, logs one "Can't parse configuration: "
// error that mentions what the row says, and keeps `rules` in force: `input` still gives
// `expected`.
template <class Tracker>
void ExpectRefused(const RefusedRow& row, const std::string& rules, const std::string& input,
                   const std::string& expected)
{
    Stage<Tracker> stage;
    stage.tracker->SetConfig(DocumentText(rules));
    LogCapture log;
    stage.tracker->SetConfig(row.document);
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].severity, google::GLOG_ERROR);
    EXPECT_EQ(lines[0].message.rfind("Can't parse configuration: ", 0), 0u) << lines[0].message;
    EXPECT_NE(lines[0].message.find(row.mentions), std::string::npos) << lines[0].message;
    EXPECT_EQ(stage.Run(input), EventsFrom(expected));
}

}  // namespace KtTest
