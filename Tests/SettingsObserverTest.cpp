#include "Support/InstancesConfig.h"

#include "KT/InstanceRegistry.h"
#include "KT/ProductSettings.h"
#include "KT/SettingsKinds.h"
#include "Tracking/InstancesHandler.h"

#include "Support/EventsText.h"
#include "Support/Table.h"

#include <QColor>
#include <QSize>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

using namespace Velkor;
using InstancesTest::Event;
using KT::InstanceRegistry;

namespace
{

// One settings change under the shipped configuration and the one event it must produce.
struct SettingsRow
{
    const char* label;
    // Creates the settings object, registers it, hands it to `use`, unregisters it.
    std::function<void(InstanceRegistry&, const std::function<void(KT::ObservableSettings&)>&)>
        with;
    const char* field;
    QVariantList value;
    std::string expected;  // the params: KEY=value,...
};

template <class Settings>
SettingsRow Row(const char* label, const char* field, QVariantList value, std::string expected)
{
    return SettingsRow{
        label,
        [](InstanceRegistry& registry, const std::function<void(KT::ObservableSettings&)>& use)
        {
            Settings settings;
            registry.Register<Settings>(&settings);
            use(settings);
            registry.Unregister<Settings>(&settings);
        },
        field, std::move(value), std::move(expected)};
}

class SettingsObserverTest : public KtTest::Table<SettingsRow>
{
protected:
    InstanceRegistry registry;
    std::shared_ptr<InstancesTest::RecordingTracker> tracker =
        std::make_shared<InstancesTest::RecordingTracker>();
};

TEST_P(SettingsObserverTest, ChangeBecomesPrefChangeWithConvertedValue)
{
    const SettingsRow& row = GetParam();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::ShippedInstances());
    row.with(registry,
             [&](KT::ObservableSettings& settings)
             {
                 handler.AttachInstances();
                 settings.Set(row.field, row.value);
                 settings.Set(row.field, row.value);
             });
    // Every change counts, also a repeated value.
    const std::string expected = "PREF_CHANGE{" + row.expected + "}";
    EXPECT_EQ(KtTest::EventsText(tracker->Events()), expected + " " + expected);
}

KT_ROWS(SettingsObserverTest,
        {Row<KT::PathsSettings>("ScreenshotFormat", "screenshotFileExt", {QString("png")},
                                "SCREENSHOT_FORMAT=png"),
         Row<KT::CaptureGeneralSettings>("SeparateStreamsTriState", "separateStreamsEnabled", {1},
                                         "SEPARATE_STREAMS_ENABLED=YES"),
         Row<KT::CaptureGeneralSettings>("IndicatorTriStateOutOfRange", "isIndicatorVisible", {2},
                                         "INDICATOR_VISIBLE=UNKNOWN"),
         Row<KT::CaptureKeyboardSettings>("Keystrokes", "recordKeystrokes", {2},
                                          "RECORD_KEYSTROKES=HOT"),
         Row<KT::WatermarkSettings>("WatermarkOff", "isWatermarkVisible", {false},
                                    "WATERMARK_VISIBLE=NO"),
         Row<KT::WatermarkSettings>("WatermarkTwoElements", "isWatermarkVisible", {false, false},
                                    "WATERMARK_VISIBLE=YES"),
         Row<KT::CaptureAudioSettings>("AudioQuality", "audioQuality", {9},
                                       "AUDIO_QUALITY=96 kHz, stereo, 16-bit"),
         Row<KT::CaptureWebCameraSettings>("CameraResolution", "captureResolution",
                                           {QSize(1280, 720)}, "WEBCAMERA_RESOLUTION=1280x720"),
         Row<KT::CaptureWebCameraSettings>("CameraPosition", "pipPosition", {3},
                                           "POSITION_WEBCAMERA=UPPER_LEFT"),
         Row<KT::HotkeySettings>("FastPresetTwoValues", "fastPreset",
                                 {QString("Preset 2"), QString("Alt+2")},
                                 "HOT_KEYS_PRESET=Preset 2,HOT_KEYS_VALUE=Alt+2"),
         Row<KT::OverlaySettings>("OverlayPositionNone", "overlayPosition", {7},
                                  "OVERLAY_POSITION=NONE"),
         Row<KT::CaptureFinishActionSettings>("FinishActionShotdown", "finishAction", {2},
                                              "FINISH_ACTION=SHOTDOWN"),
         Row<KT::IUiSettings>("Countdown", "showCountdown", {false}, "SHOW_COUNTDOWN=NO"),
         Row<KT::ICaptureDurationLimitSettings>("Limit", "limit", {600}, "DURATION_LIMIT=600"),
         Row<KT::ICaptureSchedulerSettings>("SchedulerEmptyFlag", "schedulerEnabled", {},
                                            "SCHEDULER_ENABLED=YES"),
         Row<KT::CaptureVideoSettings>("FrameScale", "frameSize", {2}, "FRAME_SIZE=1/4_SIZE"),
         Row<KT::CaptureVideoSettings>(
             "CodecSettingsThreeValues", "codecSettings", {1, 80, 5},
             "BITRATE_QUALITY=80,BITRATE_TYPE=VBR,CONVERTATION_PRESET=Medium"),
         Row<KT::CaptureCursorSettings>("HighlightColour", "cursorHighlightColor",
                                        {QColor(255, 0, 0)}, "HIGHLIGHT_CURSOR_COLOR=#ff0000")});

TEST(SettingsObserverSingleTest, UnconfiguredFieldIsIgnored)
{
    InstanceRegistry registry;
    auto tracker = std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::InstancesFromText(
        R"(<HotkeySettings><pauseResume event="PREF_CHANGE" value="K"><param key="P" value="1"/></pauseResume></HotkeySettings>)"));
    KT::HotkeySettings hotkeys;
    registry.Register(&hotkeys);
    handler.AttachInstances();
    hotkeys.Set("startStop", {QString("F1")});
    hotkeys.Set("pauseResume", {QString("F2")});
    EXPECT_EQ(tracker->Events(), (std::vector<Event>{{"PREF_CHANGE", {{"K", "F2"}, {"P", "1"}}}}));
    registry.Unregister(&hotkeys);
}

}  // namespace
