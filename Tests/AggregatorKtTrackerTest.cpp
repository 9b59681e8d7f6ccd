#include "Tracking/Tracking.h"

#include "Support/EventPrinting.h"
#include "Support/EventText.h"
#include "Support/LogCapture.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

using Velkor::KT::Tracking::AggregatorKtTracker;
using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::IRuleTraceListener;
using Velkor::KT::Tracking::LoadConfigFromQrc;

namespace
{

using Events = std::vector<Event>;

const char kShipped[] = "/KT/Tracking/AggregatorConfig.xml";

struct Stage
{
    std::shared_ptr<KtTest::RecordingTracker> out = std::make_shared<KtTest::RecordingTracker>();
    std::shared_ptr<AggregatorKtTracker> aggregator = std::make_shared<AggregatorKtTracker>(out);

    Events Run(const Events& input)
    {
        for (const auto& event : input)
        {
            aggregator->Track(event);
        }
        return out->Events();
    }
};

struct Row
{
    const char* label;
    std::string document;  // text, or a resource path starting with "/KT/"
    std::string input;     // events as KtTest::EventsFrom reads them
    std::string expected;
};

using AggregatorTest = KtTest::Table<Row>;

TEST_P(AggregatorTest, MergesCausesIntoTheNextMainEvent)
{
    const Row& row = GetParam();
    const std::string text =
        row.document.rfind("/KT/", 0) == 0 ? LoadConfigFromQrc(row.document) : row.document;
    ASSERT_FALSE(text.empty());
    Stage stage;
    KtTest::LogCapture log;
    stage.aggregator->SetConfig(text);
    ASSERT_TRUE(log.Messages().empty()) << log.Messages().front();
    const Events input = KtTest::EventsFrom(row.input);
    EXPECT_EQ(stage.Run(input), KtTest::EventsFrom(row.expected));

    Stage traced;
    traced.aggregator->SetTraceListener(std::make_shared<IRuleTraceListener>());
    traced.aggregator->SetConfig(text);
    EXPECT_EQ(traced.Run(input), KtTest::EventsFrom(row.expected)) << "with a trace listener";
}

const std::string kMainFirst =
    "<aggregator><event event=\"A\"><affectingEventName>X</affectingEventName></event>"
    "<event event=\"B\"><affectingEventName>A</affectingEventName></event></aggregator>";
const std::string kAffectingFirst =
    "<aggregator><event event=\"B\"><affectingEventName>A</affectingEventName></event>"
    "<event event=\"A\"><affectingEventName>X</affectingEventName></event></aggregator>";

KT_ROWS(AggregatorTest,
        {{"TrayCauseReachesOnlyTheNextStart", kShipped,
          "TRAY_CAPTURE_START_EVENT{METHOD=TRAY} CAPTURE_START{A=1} CAPTURE_START{A=2}",
          "CAPTURE_START{A=1,METHOD=TRAY} CAPTURE_START{A=2}"},
         {"HotkeyFeedsStartAndStopUntilReplaced", kShipped,
          "HOTKEY_CAPTURE_START_STOP_EVENT{METHOD=HOTKEY} CAPTURE_START{} "
          "BUTTON_CAPTURE_STOP_EVENT{BUTTON=stop} CAPTURE_STOP{}",
          "CAPTURE_START{METHOD=HOTKEY} CAPTURE_STOP{BUTTON=stop}"},
         {"LastCauseWinsWhole", kShipped,
          "MENU_BAR_CAPTURE_START_EVENT{METHOD=MENU,EXTRA=1} TRAY_CAPTURE_START_EVENT{METHOD=TRAY} "
          "CAPTURE_START{}",
          "CAPTURE_START{METHOD=TRAY}"},
         {"CauseBeatsTheMainEventsOwnValue", kShipped,
          "TRAY_CAPTURE_START_EVENT{METHOD=TRAY} CAPTURE_START{METHOD=OWN,Z=z}",
          "CAPTURE_START{METHOD=TRAY,Z=z}"},
         {"SharedListKeepsOneCopyPerMainEvent", kShipped,
          "HOTKEY_TAKE_SCREENSHOT_EVENT{METHOD=HOTKEY_CAPTURING} SCREENSHOT_SAVE{} "
          "SCREENSHOT_ERROR{} SCREENSHOT_SAVE{}",
          "SCREENSHOT_SAVE{METHOD=HOTKEY_CAPTURING} SCREENSHOT_ERROR{METHOD=HOTKEY_CAPTURING} "
          "SCREENSHOT_SAVE{}"},
         {"PauseAndResumeShareTheButton", kShipped,
          "BUTTON_CAPTURE_PAUSE_RESUME_EVENT{METHOD=BUTTON} CAPTURE_RESUME{} CAPTURE_PAUSE{}",
          "CAPTURE_RESUME{METHOD=BUTTON} CAPTURE_PAUSE{METHOD=BUTTON}"},
         {"OtherEventsPassEmptyNamesDont", kShipped, "EMAIL_DIALOG_SHOWN{LANG=en} {K=v}",
          "EMAIL_DIALOG_SHOWN{LANG=en}"},
         {"EmptyCauseMergesNothing", kShipped, "TRAY_CAPTURE_START_EVENT{} CAPTURE_START{A=1}",
          "CAPTURE_START{A=1}"},
         {"BlockWithoutCausesPassesItsMainEvent", "<aggregator><event event=\"M\"/></aggregator>",
          "M{K=v}", "M{K=v}"},
         {"MainAndAffectingMainBlockFirst", kMainFirst, "X{k=1} A{a=2} B{}", "B{a=2,k=1}"},
         {"MainAndAffectingAffectingBlockFirst", kAffectingFirst, "X{k=1} A{a=2} B{} A{} B{}",
          "B{a=2} B{}"}});

TEST(AggregatorKtTrackerTest, WithoutDocumentPassesEverythingButEmptyNames)
{
    Stage stage;
    EXPECT_EQ(stage.Run(KtTest::EventsFrom("TRAY_CAPTURE_START_EVENT{} {} CAPTURE_START{}")),
              KtTest::EventsFrom("TRAY_CAPTURE_START_EVENT{} CAPTURE_START{}"));
}

TEST(AggregatorKtTrackerTest, HeldCausesSurviveANewDocument)
{
    Stage stage;
    stage.aggregator->SetConfig(LoadConfigFromQrc(kShipped));
    stage.aggregator->Track({"TRAY_CAPTURE_START_EVENT", {{"METHOD", "TRAY"}}});
    stage.aggregator->SetConfig("<aggregator><event event=\"CAPTURE_START\"/></aggregator>");
    stage.aggregator->Track({"TRAY_CAPTURE_START_EVENT", {{"METHOD", "IGNORED"}}});
    stage.aggregator->Track({"CAPTURE_START", {}});
    EXPECT_EQ(stage.out->Events(), (Events{{"TRAY_CAPTURE_START_EVENT", {{"METHOD", "IGNORED"}}},
                                           {"CAPTURE_START", {{"METHOD", "TRAY"}}}}));
}

TEST(AggregatorKtTrackerTest, BadDocumentIsLoggedAndTheOldOneKept)
{
    Stage stage;
    stage.aggregator->SetConfig(LoadConfigFromQrc(kShipped));
    KtTest::LogCapture log;
    stage.aggregator->SetConfig(
        "<aggregator><event><affectingEventName>X</affectingEventName></event></aggregator>");
    stage.aggregator->SetConfig("<filter/>");
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 2u);
    for (const auto& line : lines)
    {
        EXPECT_EQ(line.severity, google::GLOG_ERROR);
        EXPECT_EQ(line.message.rfind("Can't parse configuration: ", 0), 0u) << line.message;
    }
    EXPECT_NE(lines[0].message.find("event"), std::string::npos) << lines[0].message;
    EXPECT_NE(lines[1].message.find("aggregator"), std::string::npos) << lines[1].message;
    EXPECT_EQ(
        stage.Run(KtTest::EventsFrom("TRAY_CAPTURE_START_EVENT{METHOD=TRAY} CAPTURE_START{}")),
        KtTest::EventsFrom("CAPTURE_START{METHOD=TRAY}"));
}

}  // namespace
