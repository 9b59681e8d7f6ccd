#include "Tracking/Tracking.h"

#include "Support/StageTable.h"

#include <gtest/gtest.h>

#include <string>

using Velkor::KT::Tracking::FilterKtTracker;

namespace
{

using Stage = KtTest::Stage<FilterKtTracker>;
using FilterTest = KtTest::Table<KtTest::StageRow>;

TEST_P(FilterTest, RewritesAsTheRulesSay)
{
    KtTest::ExpectDelivers<FilterKtTracker>(GetParam());
}

const char kFull[] = "/KT/Tracking/FilterConfig.xml";
const char kSecond[] = "/KT/Tracking/FilterConfigGACA.xml";

std::string OneRule(const std::string& matchers)
{
    return "<filter><event event=\"E\"><param key=\"K\">" + matchers + "</param></event></filter>";
}

KT_ROWS(
    FilterTest,
    {{"WithoutDocumentAllButEmptyNamesPass", "", "A{K=v} {K=v} B{}", "A{K=v} B{}"},
     {"UnknownEventPassesUnchanged", kFull, "EMAIL_DIALOG_SHOWN{LANG=en}",
      "EMAIL_DIALOG_SHOWN{LANG=en}"},
     {"EmptyNameIsDropped", kFull, "{K=v}", ""},
     {"HotkeyScreenshotRenamedWithMethod", kFull, "HOTKEY_TRIGGERED{HOTKEY_ID=takeScreenshot}",
      "HOTKEY_TAKE_SCREENSHOT_EVENT{METHOD=HOTKEY_CAPTURING}"},
     {"HotkeyStartStopRenamed", kFull, "HOTKEY_TRIGGERED{HOTKEY_ID=audioCaptureStartStop,X=1}",
      "HOTKEY_CAPTURE_START_STOP_EVENT{X=1}"},
     {"OtherHotkeyDropped", kFull, "HOTKEY_TRIGGERED{HOTKEY_ID=openEditor}", ""},
     {"HotkeyWithoutIdPasses", kFull, "HOTKEY_TRIGGERED{OTHER=x}", "HOTKEY_TRIGGERED{OTHER=x}"},
     {"FileSizeAtFirstBound", kFull, "CAPTURE_STOP{FILE_SIZE=1048576}",
      "CAPTURE_STOP{FILE_SIZE=1048576,FILE_SIZE_PRESET=UP_TO_1_MB}"},
     {"FileSizeAboveTenGigabytes", kFull, "CAPTURE_STOP{FILE_SIZE=10737418241}",
      "CAPTURE_STOP{FILE_SIZE=10737418241,FILE_SIZE_PRESET=OVER_10_GB}"},
     {"FileSizeExactlyTenGigabytes", kFull, "CAPTURE_STOP{FILE_SIZE=10737418240}",
      "CAPTURE_STOP{FILE_SIZE=10737418240,FILE_SIZE_PRESET=1_10_GB}"},
     {"FileSizeNotANumber", kFull, "CAPTURE_STOP{FILE_SIZE=abc}", "CAPTURE_STOP{FILE_SIZE=abc}"},
     {"FileSizeOverflowingDoubleGetsNothing", kFull, "CAPTURE_STOP{FILE_SIZE=1e999}",
      "CAPTURE_STOP{FILE_SIZE=1e999}"},
     {"DurationTouchingRangesTakeTheEarlier", kFull, "CAPTURE_PAUSE{DURATION=3600}",
      "CAPTURE_PAUSE{DURATION=3600,DURATION_ID=30_60_MIN}"},
     {"DurationInAGapGetsNothing", kFull, "CAPTURE_CANCEL{DURATION=120.5}",
      "CAPTURE_CANCEL{DURATION=120.5}"},
     {"DurationOverThreeHours", kFull, "CAPTURE_STOP{DURATION=10801}",
      "CAPTURE_STOP{DURATION=10801,DURATION_ID=OVER_3_HOURS}"},
     {"AudioOffKeepsExistingQuantity", kFull,
      "CAPTURE_START{AUDIO_SOURCES=,QUANTITY_AUDIO_SOURCE=5}",
      "CAPTURE_START{AUDIO_SOURCES=OFF,QUANTITY_AUDIO_SOURCE=5}"},
     {"NoWebcameraAddsNone", kFull,
      "CAPTURE_START{VIDEO_SOURCES=SCREEN,AUDIO_SOURCES=MICROPHONE_SYSTEM}",
      "CAPTURE_START{VIDEO_SOURCES=SCREEN,AUDIO_SOURCES=MICROPHONE_SYSTEM,QUANTITY_AUDIO_SOURCE=2,"
      "SIZE_WEBCAMERA=NONE,POSITION_WEBCAMERA=NONE}"},
     {"WebcameraKeepsItsSize", kFull,
      "CAPTURE_START{VIDEO_SOURCES=SCREEN_WEBCAMERA,SIZE_WEBCAMERA=SMALL}",
      "CAPTURE_START{VIDEO_SOURCES=SCREEN_WEBCAMERA,SIZE_WEBCAMERA=SMALL}"},
     {"ClickSoundEmptyIsDefault", kFull, "PREF_CHANGE{CLICK_SOUND_TYPE=}",
      "PREF_CHANGE{CLICK_SOUND_TYPE=DEFAULT}"},
     {"ClickSoundAnyOtherIsCustom", kFull, "PREF_CHANGE{CLICK_SOUND_TYPE=C:/sounds/click.wav}",
      "PREF_CHANGE{CLICK_SOUND_TYPE=CUSTOM}"},
     {"SecondPrefChangeBlockApplies", kFull, "PREF_CHANGE{HOT_KEYS_PRESET=Capture-RegionCapture}",
      "PREF_CHANGE{HOT_KEYS_PRESET=PRESET_RECORD_REGION}"},
     {"RepeatedWindowDroppedSettingsAlwaysPasses", kFull,
      "SHOW_WINDOW{WINDOW=EDITOR} SHOW_WINDOW{WINDOW=EDITOR} SHOW_WINDOW{WINDOW=SETTINGS} "
      "SHOW_WINDOW{WINDOW=SETTINGS} SHOW_WINDOW{WINDOW=EDITOR} SHOW_WINDOW{WINDOW=PLAYER} "
      "SHOW_WINDOW{WINDOW=EDITOR}",
      "SHOW_WINDOW{WINDOW=EDITOR} SHOW_WINDOW{WINDOW=SETTINGS} SHOW_WINDOW{WINDOW=SETTINGS} "
      "SHOW_WINDOW{WINDOW=PLAYER} SHOW_WINDOW{WINDOW=EDITOR}"},
     {"RepeatNeedsEveryParameterEqual", kFull,
      "SHOW_WINDOW{WINDOW=EDITOR,N=1} SHOW_WINDOW{WINDOW=EDITOR,N=2}",
      "SHOW_WINDOW{WINDOW=EDITOR,N=1} SHOW_WINDOW{WINDOW=EDITOR,N=2}"},
     {"DeleteFileByExtension", kFull,
      "DELETE_FILE{TYPE=C:/a/b.webm} DELETE_FILE{TYPE=song.mp3} DELETE_FILE{TYPE=shot.png}",
      "DELETE_FILE{TYPE=VIDEO} DELETE_FILE{TYPE=AUDIO} DELETE_FILE{TYPE=SCREENSHOT}"},
     {"SharingFinishInvalidType", kFull, "SHARING_FINISH{TYPE=notes.txt}",
      "SHARING_FINISH{TYPE=INVALID}"},
     {"YoutubeBothBlocks", kFull,
      "YOUTUBE_VIDEO_SHARING_START{RESOLUTION=youtube___hd_720p_sharing,CATEGORY=20}",
      "YOUTUBE_VIDEO_SHARING_START{RESOLUTION=720PHD,CATEGORY=GAMING}"},
     {"SavingPresetUserIsCustom", kFull, "SAVING_CAPTURE_START{PRESET_ID=user_42}",
      "SAVING_CAPTURE_START{PRESET_ID=CUSTOM}"},
     {"CustomerActionPreset", kFull,
      "CUSTOMER_ACTION{CHOOSE_SCREENSHOT_PRESET=presetAction_Screenshot-Scrolling}",
      "CUSTOMER_ACTION{CHOOSE_SCREENSHOT_PRESET=PRESET_SCROLL_SCREENSHOT}"},
     {"SidebarFeature", kFull, "SIDEBAR_FEATURE_REMOVE{ID=scheduler}",
      "SIDEBAR_FEATURE_REMOVE{ID=capture_schedule}"},
     {"SecondVariantStreamingRenamedAndStillBucketed", kSecond,
      "CAPTURE_START{CAPTURE_TYPE=STREAMING,AUDIO_SOURCES=,VIDEO_SOURCES=WEBCAMERA,NVENC_ENABLED="
      "NO,NVENC_AVAILABLE=YES,AMF_ENABLED=NO}",
      "STREAMING_START{CAPTURE_TYPE=STREAMING,AUDIO_SOURCES=OFF,QUANTITY_AUDIO_SOURCE=0,VIDEO_"
      "SOURCES=WEBCAMERA,NVENC_ENABLED=NO}"},
     {"SecondVariantRecordingDropsStreamingKeys", kSecond,
      "CAPTURE_START{CAPTURE_TYPE=RECORDING,SERVICE_NAME=s,SERVER_NAME=x,FILE_RECORDING_ENABLED="
      "YES,VIDEO_SOURCES=WEBCAMERA}",
      "CAPTURE_START{CAPTURE_TYPE=RECORDING,VIDEO_SOURCES=WEBCAMERA}"},
     {"SecondVariantResolution", kSecond,
      "CUSTOMER_ACTION{SELECT_RESOLUTION=1920x1080} CUSTOMER_ACTION{SELECT_RESOLUTION=1024x768} "
      "CUSTOMER_ACTION{SELECT_RESOLUTION=Custom}",
      "CUSTOMER_ACTION{SELECT_RESOLUTION=1920x1080} CUSTOMER_ACTION{SELECT_RESOLUTION=1024x768} "
      "CUSTOMER_ACTION{SELECT_RESOLUTION=ORIGINAL}"},
     {"SecondVariantHasNoHotkeyRules", kSecond, "HOTKEY_TRIGGERED{HOTKEY_ID=openEditor}",
      "HOTKEY_TRIGGERED{HOTKEY_ID=openEditor}"},
     // The corners of the rule language, on small documents.
     {"EndsWithInvertedNeedsALongEnoughValue",
      OneRule(R"(<endsWith value=".webm" actOn="false"><setValue value="X"/></endsWith>)"),
      "E{K=a.gif} E{K=gif} E{K=b.webm}", "E{K=X} E{K=gif} E{K=b.webm}"},
     {"StartsWithInvertedPassesForAShorterValue",
      OneRule(R"(<startsWith value="abcdef" actOn="false"><setValue value="X"/></startsWith>)"),
      "E{K=abc} E{K=abcdefg} E{K=zzz}", "E{K=X} E{K=abcdefg} E{K=X}"},
     {"ContainsEmptyAlwaysAndInvertedNever",
      "<filter><event event=\"E\"><param key=\"K\"><contains value=\"\"><setValue "
      "value=\"X\"/></contains></param>"
      "<param key=\"J\"><contains value=\"\" actOn=\"false\"><setValue "
      "value=\"Y\"/></contains></param></event></filter>",
      "E{K=,J=j}", "E{K=X,J=j}"},
     {"EqualEmptyInvertedMatchesAnyNonEmpty",
      OneRule(R"(<equal value="" actOn="false"><setValue value="SET"/></equal>)"), "E{K=} E{K= }",
      "E{K=} E{K=SET}"},
     {"RangeWithoutBoundsNeverInvertedPassesOutside",
      "<filter><event event=\"E\"><param key=\"K\"><inRange><setValue "
      "value=\"X\"/></inRange></param>"
      "<param key=\"J\"><inRange actOn=\"false\" from=\"1\"><setValue "
      "value=\"Y\"/></inRange></param></event></filter>",
      "E{K=5,J=abc} E{K=5,J=0.5} E{K=5,J=2}", "E{K=5,J=Y} E{K=5,J=Y} E{K=5,J=2}"},
     {"RangeBoundsInclusiveAndNumbersReadLikeStod",
      OneRule(R"(<inRange from="-1.5" to="2e3"><setValue value="IN"/></inRange>)"),
      "E{K=-1.5} E{K=2000} E{K=2000.001} E{K= \t+7xyz} E{K=0x10} E{K=nan} E{K=}",
      "E{K=IN} E{K=IN} E{K=2000.001} E{K=IN} E{K=IN} E{K=nan} E{K=}"},
     {"AnyInvertedNeverFires", OneRule(R"(<any actOn="false"><setValue value="X"/></any>)"),
      "E{K=v}", "E{K=v}"},
     {"KindOrderBeatsTextOrder",
      OneRule(
          R"(<any><setValue value="ANY"/></any><contains value="b"><setValue value="CONTAINS"/></contains><equal value="abc"><setValue value="EQUAL"/></equal>)"),
      "E{K=abc} E{K=xbx} E{K=zzz}", "E{K=EQUAL} E{K=CONTAINS} E{K=ANY}"},
     {"FirstMatchOfAKindWinsInDocumentOrder",
      OneRule(
          R"(<startsWith value="a"><setValue value="FIRST"/></startsWith><startsWith value="ab"><setValue value="SECOND"/></startsWith>)"),
      "E{K=abc}", "E{K=FIRST}"},
     {"MatcherWithoutActionsShieldsLaterKinds",
      OneRule(R"(<equal value="keep"/><any><setValue value="OTHER"/></any>)"),
      "E{K=keep} E{K=drop}", "E{K=keep} E{K=OTHER}"},
     {"ActionKindsRunInFixedOrderWhateverTheText",
      OneRule(
          R"(<any><delParam key="A"/><modParam key="B" value="mod"/><addParam key="A" value="add"/><addParam key="B" value="add"/><setValue value="S"/></any>)"),
      "E{K=v}", "E{K=S,B=mod}"},
     {"AddParamInsertsOnlyModParamAssigns",
      OneRule(R"(<any><addParam key="A" value="new"/><modParam key="B" value="new"/></any>)"),
      "E{K=v,A=old,B=old}", "E{K=v,A=old,B=new}"},
     {"SeveralModEventLastWins",
      OneRule(R"(<any><modEvent name="FIRST"/><modEvent name="LAST"/></any>)"), "E{K=v}",
      "LAST{K=v}"},
     {"RenamedEventMeetsLaterBlocksOnly",
      "<filter><event event=\"F\"><param key=\"K\"><any><setValue "
      "value=\"EARLY\"/></any></param></event>"
      "<event event=\"E\"><param key=\"K\"><any><modEvent name=\"F\"/></any></param>"
      "<param key=\"J\"><any><setValue value=\"SAME_BLOCK\"/></any></param></event>"
      "<event event=\"F\"><param key=\"J\"><any><addParam key=\"L\" "
      "value=\"LATE\"/></any></param></event></filter>",
      "E{K=v,J=j}", "F{K=v,J=SAME_BLOCK,L=LATE}"},
     {"BlocksOfOneNameAllApplyInOrder",
      "<filter><event event=\"E\"><param key=\"K\"><any><setValue "
      "value=\"1\"/></any></param></event>"
      "<event event=\"E\"><param key=\"K\"><equal value=\"1\"><setValue "
      "value=\"2\"/></equal></param></event></filter>",
      "E{K=v}", "E{K=2}"},
     {"DeletedParameterIsNotSeenByLaterRules",
      "<filter><event event=\"E\"><param key=\"K\"><any><delParam key=\"J\"/></any></param>"
      "<param key=\"J\"><any><setValue value=\"X\"/></any></param>"
      "<param key=\"M\"><any><setValue value=\"X\"/></any></param></event></filter>",
      "E{K=v,J=j}", "E{K=v}"},
     {"RuleMayDeleteTheParameterItInspects",
      OneRule(R"(<equal value="x"><modEvent name="R"/><delParam key="K"/></equal>)"), "E{K=x}",
      "R{}"},
     {"RepeatMemoryTakenAfterModEventBeforeDelParam",
      OneRule(
          R"(<any><modEvent name="R"/><skipEvent skipFullRepeats="true"/><delParam key="N"/></any>)"),
      "E{K=1,N=1} E{K=1,N=2} E{K=1,N=2} R{K=1,N=2}", "R{K=1} R{K=1} R{K=1,N=2}"},
     {"OnlyConsecutiveRepeatsAreDropped", OneRule(R"(<any><skipEvent skipFullRepeats="1"/></any>)"),
      "E{K=x} E{K=x} E{K=y} E{K=x} E{K=x}", "E{K=x} E{K=y} E{K=x}"},
     {"PlainSkipDropsAlways", OneRule(R"(<equal value="x"><skipEvent/></equal>)"), "E{K=x} E{K=y}",
      "E{K=y}"},
     {"ValuesAreTakenByteForByte", OneRule(R"(<equal value=" A"><setValue value="X"/></equal>)"),
      "E{K=A} E{K= a} E{K= A}", "E{K=A} E{K= a} E{K=X}"}});

using FilterBadDocumentTest = KtTest::Table<KtTest::RefusedRow>;

TEST_P(FilterBadDocumentTest, IsLoggedAndChangesNothing)
{
    KtTest::ExpectRefused<FilterKtTracker>(GetParam(),
                                           OneRule(R"(<any><setValue value="OLD_RULES"/></any>)"),
                                           "E{K=v}", "E{K=OLD_RULES}");
}

KT_ROWS(FilterBadDocumentTest,
        {{"Empty", "", ""},
         {"WrongRoot", "<aggregator/>", "filter"},
         {"MissingEventName", "<filter><event/></filter>", "event"},
         {"MissingKey", "<filter><event event=\"E\"><param/></event></filter>", "key"}});

TEST(FilterKtTrackerTest, RepeatMemorySurvivesANewDocument)
{
    Stage stage;
    const std::string rules = OneRule(R"(<any><skipEvent skipFullRepeats="true"/></any>)");
    stage.tracker->SetConfig(rules);
    stage.Run("E{K=x}");
    stage.tracker->SetConfig(rules);
    EXPECT_EQ(stage.Run("E{K=x}"), KtTest::EventsFrom("E{K=x}"));
}

}  // namespace
