#include "Support/InstancesConfig.h"

#include "KT/CaptureInfo.h"
#include "KT/Converter.h"
#include "KT/InstanceRegistry.h"
#include "Tracking/Instances/InstancesHandler.h"

#include "Support/EventText.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

using namespace Velkor;
using InstancesTest::Event;
using KT::InstanceRegistry;

namespace
{

const KT::CaptureSource kScreen{KT::kScreen, "screen", false};
const KT::CaptureSource kCamera{KT::kWebCamera, "camera", false};
const KT::CaptureSource kMicrophone{KT::kMicrophone, "mic", true};
const KT::CaptureSource kSystem{KT::kSystemAudio, "system", false};
const QRect kFullHd(0, 0, 1920, 1080);

// The shipped configuration, the reference capture service and converter, and an acceleration
// facts function.
class CaptureFixture : public testing::Test
{
protected:
    CaptureFixture()
    {
        registry.Register<KT::ICaptureInfo>(&capture);
        registry.Register<KT::IConverter>(&converter);
        handler.SetConfig(InstancesTest::ShippedInstances());
        handler.AttachInstances();
    }

    InstanceRegistry registry;
    KT::CaptureInfo capture;
    KT::Converter converter;
    std::shared_ptr<InstancesTest::RecordingTracker> tracker =
        std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler{
        tracker, [](Event::Params& params) { params["NVENC_ENABLED"] = "NO"; }};
};

template <class Row>
class CaptureTable : public CaptureFixture, public testing::WithParamInterface<Row>
{
};

struct DurationRow
{
    const char* label;
    std::int64_t microseconds;
    std::string expected;
};

using DurationTest = CaptureTable<DurationRow>;

// Before any start the recording type is empty.
TEST_P(DurationTest, WholeSecondsTowardZero)
{
    capture.SetCaptureDuration(GetParam().microseconds);
    capture.Pause(0);
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              "CAPTURE_PAUSE{CAPTURE_RECORDING_TYPE=,DURATION=" + GetParam().expected + "}");
}

KT_ROWS(DurationTest, {{"JustUnderThree", 2999999, "2"},
                       {"NegativeUnderOne", -999999, "0"},
                       {"ExactlyOne", 1000000, "1"},
                       {"TenHours", 36000000000, "36000"}});

struct NotificationRow
{
    const char* label;
    std::function<void(KT::CaptureInfo&)> notify;
    std::vector<std::string> expected;
};

using NotificationTest = CaptureTable<NotificationRow>;

TEST_P(NotificationTest, FeedsItsCallback)
{
    GetParam().notify(capture);
    EXPECT_EQ(tracker->Names(), GetParam().expected);
}

KT_ROWS(NotificationTest,
        {{"UserPause", [](KT::CaptureInfo& c) { c.Pause(0); }, {"CAPTURE_PAUSE"}},
         {"InternalPause", [](KT::CaptureInfo& c) { c.Pause(1); }, {}},
         {"NegativePauseFlag", [](KT::CaptureInfo& c) { c.Pause(-1); }, {}},
         {"StopCanceled", [](KT::CaptureInfo& c) { c.Stop(1, {}, {}); }, {"CAPTURE_CANCEL"}},
         {"StopOtherReason", [](KT::CaptureInfo& c) { c.Stop(7, {}, {}); }, {"CAPTURE_STOP"}},
         {"Error", [](KT::CaptureInfo& c) { c.Fail(); }, {"CAPTURE_STOP"}}});

struct RecordingTypeRow
{
    const char* label;
    QRect area;
    std::vector<KT::CaptureSource> sources;
    std::string expected;
};

using RecordingTypeTest = CaptureTable<RecordingTypeRow>;

// The type of the start is kept for the later events of the capture.
TEST_P(RecordingTypeTest, ComputedAtStartAndKept)
{
    const RecordingTypeRow& row = GetParam();
    capture.Start(row.area, {}, row.sources, {});
    capture.Resume();
    const auto events = tracker->Events();
    ASSERT_EQ(events.size(), 2u);
    EXPECT_EQ(events[0].params.at("CAPTURE_RECORDING_TYPE"), row.expected);
    EXPECT_EQ(events[1].params.at("CAPTURE_RECORDING_TYPE"), row.expected);
}

KT_ROWS(RecordingTypeTest, {{"ScreenArea", kFullHd, {kScreen, kMicrophone}, "CAPTURING"},
                            {"AreaWithoutSources", kFullHd, {}, "CAPTURING"},
                            {"AudioOnly", QRect(), {kMicrophone}, "AUDIO_CAPTURING"},
                            {"CameraAndAudio", QRect(), {kCamera, kSystem}, "WEB_CAMERA_CAPTURING"},
                            {"NothingCaptured", QRect(), {}, "UNKNOWN"},
                            {"ScreenSourceWithoutArea", QRect(), {kScreen}, "UNKNOWN"}});

KT::CaptureSettings SampleSettings()
{
    KT::CaptureSettings settings;
    settings.video = {0, 60, 1, 0, true, {2, 75, 3}};
    settings.audio = {true, 7};
    settings.effects.keystrokes = 1;
    settings.effects.keystrokesTranslate = false;
    settings.effects.showCursor = true;
    settings.effects.highlightCursor = true;
    settings.effects.highlightCursorSize = 48;
    settings.effects.highlightCursorColor = QColor(255, 255, 0);
    settings.effects.highlightClicks = false;
    settings.effects.highlightClicksColorLeft = QColor(0, 0, 255);
    settings.effects.highlightClicksColorRight = QColor(255, 0, 0);
    settings.effects.useClickSounds = true;
    settings.effects.customClickDownSound = "click.wav";
    settings.effects.volumeClickSound = 70;
    settings.webCamera = {QSize(640, 480), 30, 6, 20, 2};
    return settings;
}

TEST_F(CaptureFixture, StartCarriesSettingsSourcesAndAcceleration)
{
    capture.SetCaptureType(1);
    capture.SetLevel("mic", 12);
    capture.SetLevel("system", 0);
    capture.Start(QRect(-1920, 0, 1920, 1080), SampleSettings(),
                  {kScreen, kSystem, kCamera, kMicrophone}, {4096});
    // The silent system audio contributes nothing; video sources keep their order.
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              "CAPTURE_START{"
              "AUDIO_QUALITY=48 kHz, stereo, 16-bit,AUDIO_SOURCES=MICROPHONE"
              ",AUDIO_VIDEO_SOURCES=SCREEN_WEBCAMERA_MICROPHONE_,BITRATE_QUALITY=75"
              ",BITRATE_TYPE=ABR,CAPTURE_AREA_RECT=-1920,0:1920x1080,CAPTURE_AREA_SIZE=1920x1080"
              ",CAPTURE_METHOD=DIRECTX,CAPTURE_MODE=GAME,CAPTURE_RECORDING_TYPE=CAPTURING"
              ",CAPTURE_TYPE=STREAMING,CODEC=CODEC_ID_H264,CONVERTATION_PRESET=Faster,FPS=60"
              ",FRAME_SIZE=1920x1080,HIGHLIGHT_CLICKS=NO,HIGHLIGHT_CLICKS_COLOR_LEFT=#0000ff"
              ",HIGHLIGHT_CLICKS_COLOR_RIGHT=#ff0000,HIGHLIGHT_CURSOR=YES"
              ",HIGHLIGHT_CURSOR_COLOR=#ffff00,HIGHLIGHT_CURSOR_SIZE=48,KEYSTROKES_TRANSLATE=NO"
              ",METHOD=UNKNOWN,NOISE_CONTROL=YES,NVENC_ENABLED=NO,POSITION_WEBCAMERA=CENTER"
              ",RECORD_KEYSTROKES=ALL,SHAPE_WEBCAMERA=CIRCLE,SHOW_CURSOR=YES,SIZE_WEBCAMERA=20"
              ",SYSTEM_AUDIO=YES,TEXTURE_SHARING_ENABLED=YES,USE_CLICK_SOUNDS=YES"
              ",VIDEO_SOURCES=SCREEN_WEBCAMERA,VOLUME_CLICK_SOUND=70,WEBCAMERA_FPS=30"
              ",WEBCAMERA_RESOLUTION=640x480"
              "}");
}

struct SourcesRow
{
    const char* label;
    std::vector<KT::CaptureSource> sources;
    std::string all;
    std::string audio;
};

using StopSourcesTest = CaptureTable<SourcesRow>;

// On a stop only audio sources with a level count; video sources never do.
TEST_P(StopSourcesTest, DescribesAudioOnly)
{
    capture.SetLevel("mic", 3);
    capture.SetLevel("system", 9);
    capture.SetCaptureDuration(90500000);
    capture.Stop(0, {5242880}, GetParam().sources);
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              "CAPTURE_STOP{AUDIO_SOURCES=" + GetParam().audio +
                  ",AUDIO_VIDEO_SOURCES=" + GetParam().all +
                  ",CAPTURE_RECORDING_TYPE=,DURATION=90,FILE_SIZE=5242880,REASON_STOP=SUCCESS}");
}

KT_ROWS(StopSourcesTest,
        {{"TwoAudio", {kScreen, kMicrophone, kSystem}, "MICROPHONE_SYSTEM_", "MICROPHONE_SYSTEM"},
         {"VideoOnly", {kScreen, kCamera}, "NONE", ""},
         {"UnknownAudioType", {{0x2080, "odd", false}}, "NONE", ""}});

TEST_F(CaptureFixture, ConversionStartCarriesContextPresetAndAcceleration)
{
    converter.SetAccelerationType(4);
    KT::ConvertationContext context;
    context.project.size = 123456789;
    context.outputFilePath = "/home/u/Videos/out.mp4";
    context.preset.name = "mp4-1080p";
    context.preset.properties.put("$$VIDEO_CODEC$$.codec_id", "h264");
    context.preset.properties.put("$$AUDIO_CODEC$$.codec_id", "aac");
    context.preset.properties.put("container", "mp4");
    context.cutIntervals = {{0, 1500000}, {6000000, 7000000}};
    converter.Start(context);
    converter.Progress(50);
    converter.Pause();
    converter.Resume();
    converter.Fail();
    // A preset without codecs gives empty texts.
    KT::ConvertationContext custom;
    custom.preset.name = "custom";
    converter.SetAccelerationType(9);
    converter.Start(custom);
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              "SAVING_CAPTURE_START{ACCELERATION_TYPE=NVENC,CUT=0-1500000;6000000-7000000,"
              "OUTPUT_AUDIO_CODEC=aac,OUTPUT_FORMAT=mp4,OUTPUT_VIDEO_CODEC=h264,"
              "PRESET_ID=mp4-1080p,PROJECT_SIZE=123456789} SAVING_CAPTURE_PAUSE{} "
              "SAVING_CAPTURE_RESUME{} SAVING_CAPTURE_ERROR{} "
              "SAVING_CAPTURE_START{ACCELERATION_TYPE=UNKNOWN,CUT=,OUTPUT_AUDIO_CODEC=,"
              "OUTPUT_FORMAT=,OUTPUT_VIDEO_CODEC=,PRESET_ID=custom,PROJECT_SIZE=0}");
}

struct ResultRow
{
    const char* label;
    int result;
    std::string expected;
};

using ConversionResultTest = CaptureTable<ResultRow>;

TEST_P(ConversionResultTest, StopCarriesResultText)
{
    converter.Finish(GetParam().result);
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              "SAVING_CAPTURE_FINISH{RESULT=" + GetParam().expected + "}");
}

KT_ROWS(ConversionResultTest, {{"Success", 0, "SUCCESS"},
                               {"Canceled", 1, "CANCELED"},
                               {"InvalidDir", 2, "INVALID_DIR"},
                               {"Error", 3, "PROCESSING_ERROR"},
                               {"AboveKnown", 4, "UNKNOWN"},
                               {"Negative", -1, "UNKNOWN"}});

TEST(ConverterObserverTest, OutputPathUnderItsConfiguredKey)
{
    InstanceRegistry registry;
    KT::Converter converter;
    registry.Register<KT::IConverter>(&converter);
    auto tracker = std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::InstancesFromText(
        R"(<IConverter><start event="S"><param key="K" value="V"/><context><outputFilePath>PATH</outputFilePath></context></start></IConverter>)"));
    handler.AttachInstances();
    KT::ConvertationContext context;
    context.outputFilePath = "C:/Users/u/out.avi";
    converter.Start(context);
    EXPECT_EQ(tracker->Events(),
              (std::vector<Event>{{"S", {{"K", "V"}, {"PATH", "C:/Users/u/out.avi"}}}}));
}

}  // namespace
