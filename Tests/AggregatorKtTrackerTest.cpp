#include "Tracking/Tracking.h"

#include "Support/StageTable.h"

#include <gtest/gtest.h>

#include <string>

using Velkor::KT::Tracking::AggregatorKtTracker;

namespace
{

using Stage = KtTest::Stage<AggregatorKtTracker>;
using AggregatorTest = KtTest::Table<KtTest::StageRow>;

const char kShipped[] = "/KT/Tracking/AggregatorConfig.xml";

TEST_P(AggregatorTest, MergesCausesIntoTheNextMainEvent)
{
    KtTest::ExpectDelivers<AggregatorKtTracker>(GetParam());
}

const std::string kMainFirst =
    "<aggregator><event event=\"A\"><affectingEventName>X</affectingEventName></event>"
    "<event event=\"B\"><affectingEventName>A</affectingEventName></event></aggregator>";
const std::string kAffectingFirst =
    "<aggregator><event event=\"B\"><affectingEventName>A</affectingEventName></event>"
    "<event event=\"A\"><affectingEventName>X</affectingEventName></event></aggregator>";

KT_ROWS(AggregatorTest,
        {{"WithoutDocumentAllButEmptyNamesPass", "",
          "TRAY_CAPTURE_START_EVENT{} {} CAPTURE_START{}",
          "TRAY_CAPTURE_START_EVENT{} CAPTURE_START{}"},
         {"TrayCauseReachesOnlyTheNextStart", kShipped,
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

TEST(AggregatorKtTrackerTest, HeldCausesSurviveANewDocument)
{
    Stage stage;
    stage.tracker->SetConfig(KtTest::DocumentText(kShipped));
    stage.Run("TRAY_CAPTURE_START_EVENT{METHOD=TRAY}");
    stage.tracker->SetConfig("<aggregator><event event=\"CAPTURE_START\"/></aggregator>");
    EXPECT_EQ(
        stage.Run("TRAY_CAPTURE_START_EVENT{METHOD=IGNORED} CAPTURE_START{}"),
        KtTest::EventsFrom("TRAY_CAPTURE_START_EVENT{METHOD=IGNORED} CAPTURE_START{METHOD=TRAY}"));
}

using AggregatorBadDocumentTest = KtTest::Table<KtTest::RefusedRow>;

TEST_P(AggregatorBadDocumentTest, IsLoggedAndTheOldOneKept)
{
    KtTest::ExpectRefused<AggregatorKtTracker>(
        GetParam(), kShipped, "TRAY_CAPTURE_START_EVENT{METHOD=TRAY} CAPTURE_START{}",
        "CAPTURE_START{METHOD=TRAY}");
}

KT_ROWS(AggregatorBadDocumentTest,
        {{"MissingEventName",
          "<aggregator><event><affectingEventName>X</affectingEventName></event></aggregator>",
          "event"},
         {"WrongRoot", "<filter/>", "aggregator"}});

}  // namespace
