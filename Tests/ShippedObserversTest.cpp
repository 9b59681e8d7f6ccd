// The services' and settings' observers under the shipped configuration: each notification or
// change and the events it gives.

#include "KT/CaptureMonitor.h"
#include "KT/DurationLimiter.h"
#include "KT/FileManager.h"
#include "KT/InstanceRegistry.h"
#include "KT/ProductSettings.h"
#include "KT/ScreenshotTaker.h"
#include "KT/Service/PaintingController.h"
#include "KT/Service/Selector.h"
#include "KT/Service/TutorialManager.h"
#include "KT/SettingsKinds.h"
#include "Tracking/Instances/InstancesHandler.h"

#include "Support/EventText.h"
#include "Support/InstancesConfig.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QSize>

#include <functional>
#include <memory>
#include <string>

using namespace Velkor;
using KT::InstanceRegistry;

namespace
{

struct ObserverRow
{
    const char* label;
    std::string expected;
    // Registers an object, attaches `handler`, notifies, unregisters.
    std::function<void(InstanceRegistry&, KT::Tracking::InstancesHandler&)> run;
};

template <class Interface, class Object>
std::function<void(InstanceRegistry&, KT::Tracking::InstancesHandler&)> Run(
    std::function<void(Object&)> notify)
{
    return [notify](InstanceRegistry& registry, KT::Tracking::InstancesHandler& handler)
    {
        Object object;
        registry.Register<Interface>(&object);
        handler.AttachInstances();
        notify(object);
        registry.Unregister<Interface>(&object);
    };
}

// A service's notifications and the events they give.
template <class Interface, class Service>
ObserverRow Notifying(const char* label, std::string expected, std::function<void(Service&)> notify)
{
    return ObserverRow{label, std::move(expected), Run<Interface, Service>(std::move(notify))};
}

// A settings change, made twice, and its params: every change counts, also a repeated value.
template <class Settings>
ObserverRow Setting(const char* label, const char* field, QVariantList value, std::string params)
{
    const std::string event = "PREF_CHANGE{" + params + "}";
    return ObserverRow{label, event + " " + event,
                       Run<Settings, Settings>(
                           [field, value](Settings& settings)
                           {
                               settings.Set(field, value);
                               settings.Set(field, value);
                           })};
}

using ShippedObserversTest = KtTest::Table<ObserverRow>;

TEST_P(ShippedObserversTest, NotificationBecomesItsEvent)
{
    InstanceRegistry registry;
    auto tracker = std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::ShippedInstances());
    GetParam().run(registry, handler);
    EXPECT_EQ(KtTest::EventsText(tracker->Events()), GetParam().expected);
}

using Limiter = KT::DurationLimiter;
using Monitor = KT::CaptureMonitor;
using Screenshots = KT::ScreenshotTaker;
using Files = KT::FileManager;
using Painting = KT::Service::ScreenPainting::PaintingController;
using Tutorial = KT::Service::Tutorial::TutorialManager;
using Selector = KT::Service::AreaSelector::Selector;

// A callback without a value key reports its params only (SHOW_IN_FOLDER, CREATE_DIRECTORIES).
KT_ROWS(
    ShippedObserversTest,
    {Notifying<KT::IDurationLimiter, Limiter>(
         "LimiterInOrder",
         "CAPTURE_LIMIT_WARNING{LIMIT=TIMER} CAPTURE_LIMIT_WARNING{LIMIT=SCHEDULER} "
         "TIMER_AUTO_CAPTURE_STOP_EVENT{METHOD=TIMER} "
         "SCHEDULER_CAPTURE_STOP_EVENT{METHOD=SCHEDULER}",
         [](Limiter& s)
         {
             s.WarnUserLimit();
             s.WarnScheduleEnd();
             s.StopByUserLimit();
             s.StopBySchedule();
         }),
     Notifying<KT::ICaptureMonitor, Monitor>(
         "Monitor", "CAPTURE_DEVICE_DISCONNECTED{} LIMIT_SPACE_CAPTURE_STOP{METHOD=LIMIT_SPACE}",
         [](Monitor& s)
         {
             s.ReportDeviceDisconnected();
             s.ReportDriveFull();
         }),
     Notifying<KT::AbstractScreenshotTakerWrapper, Screenshots>(
         "Screenshots",
         "SCREENSHOT_SAVE{DESTINATION=CLIPBOARD} SCREENSHOT_ERROR{DESTINATION=DISK} "
         "SCREENSHOT_CANCEL{DESTINATION=UNKNOWN}",
         [](Screenshots& s)
         {
             s.Succeed(1);
             s.Fail(0);
             s.Cancel(5);
         }),
     Notifying<KT::IFileManager, Files>(
         "Files",
         "SHOW_IN_FOLDER{} DELETE_FILE{DELETE_MODE=TRASH,TYPE=/v/b.png} "
         "DELETE_FILE{DELETE_MODE=REMOVE,TYPE=/v/c.mp4} CREATE_DIRECTORIES{}",
         [](Files& s)
         {
             s.Explore(App::ioPath("/v/a.mp4"));
             s.MoveToTrash(App::ioPath("/v/b.png"));
             s.Remove(App::ioPath("/v/c.mp4"));
             s.CreateDirectories(App::ioPath("/v/new"));
         }),
     Notifying<KT::Service::ScreenPainting::IPaintingController, Painting>(
         "Painting", "DRAWING_SHAPE_ADDED{SHAPE=ARROW} DRAWING_SHAPE_REMOVED{SHAPE=PEN}",
         [](Painting& s)
         {
             s.AddShape("ARROW");
             s.RemoveShape("PEN");
         }),
     Notifying<KT::Service::Tutorial::ITutorialManager, Tutorial>(
         "Tutorial",
         "TUTORIAL_SLIDE_SHOW{SLIDE=welcome} TUTORIAL_SLIDE_CLICK{SLIDE_ACTION=REPEAT} "
         "TUTORIAL_SLIDE_CLICK{SLIDE_ACTION=UNKNOWN}",
         [](Tutorial& s)
         {
             s.ShowSlide("welcome");
             s.ClickSlide(3);
             s.ClickSlide(5);
         }),
     Notifying<KT::Service::AreaSelector::ISelector, Selector>(
         "Selector", "AREA_SELECTED{CAPTURE_AREA_RECT=100,50:1280x720}",
         [](Selector& s) { s.Select(QRect(100, 50, 1280, 720)); }),
     Setting<KT::PathsSettings>("ScreenshotFormat", "screenshotFileExt", {QString("png")},
                                "SCREENSHOT_FORMAT=png"),
     Setting<KT::CaptureGeneralSettings>("SeparateStreamsTriState", "separateStreamsEnabled", {1},
                                         "SEPARATE_STREAMS_ENABLED=YES"),
     Setting<KT::CaptureGeneralSettings>("IndicatorTriStateOutOfRange", "isIndicatorVisible", {2},
                                         "INDICATOR_VISIBLE=UNKNOWN"),
     Setting<KT::CaptureKeyboardSettings>("Keystrokes", "recordKeystrokes", {2},
                                          "RECORD_KEYSTROKES=HOT"),
     Setting<KT::WatermarkSettings>("WatermarkOff", "isWatermarkVisible", {false},
                                    "WATERMARK_VISIBLE=NO"),
     Setting<KT::WatermarkSettings>("WatermarkTwoElements", "isWatermarkVisible", {false, false},
                                    "WATERMARK_VISIBLE=YES"),
     Setting<KT::CaptureAudioSettings>("AudioQuality", "audioQuality", {9},
                                       "AUDIO_QUALITY=96 kHz, stereo, 16-bit"),
     Setting<KT::CaptureWebCameraSettings>("CameraResolution", "captureResolution",
                                           {QSize(1280, 720)}, "WEBCAMERA_RESOLUTION=1280x720"),
     Setting<KT::CaptureWebCameraSettings>("CameraPosition", "pipPosition", {3},
                                           "POSITION_WEBCAMERA=UPPER_LEFT"),
     Setting<KT::HotkeySettings>("FastPresetTwoValues", "fastPreset",
                                 {QString("Preset 2"), QString("Alt+2")},
                                 "HOT_KEYS_PRESET=Preset 2,HOT_KEYS_VALUE=Alt+2"),
     Setting<KT::OverlaySettings>("OverlayPositionNone", "overlayPosition", {7},
                                  "OVERLAY_POSITION=NONE"),
     Setting<KT::CaptureFinishActionSettings>("FinishActionShotdown", "finishAction", {2},
                                              "FINISH_ACTION=SHOTDOWN"),
     Setting<KT::IUiSettings>("Countdown", "showCountdown", {false}, "SHOW_COUNTDOWN=NO"),
     Setting<KT::ICaptureDurationLimitSettings>("Limit", "limit", {600}, "DURATION_LIMIT=600"),
     Setting<KT::ICaptureSchedulerSettings>("SchedulerEmptyFlag", "schedulerEnabled", {},
                                            "SCHEDULER_ENABLED=YES"),
     Setting<KT::CaptureVideoSettings>("FrameScale", "frameSize", {2}, "FRAME_SIZE=1/4_SIZE"),
     Setting<KT::CaptureVideoSettings>(
         "CodecSettingsThreeValues", "codecSettings", {1, 80, 5},
         "BITRATE_QUALITY=80,BITRATE_TYPE=VBR,CONVERTATION_PRESET=Medium"),
     Setting<KT::CaptureCursorSettings>("HighlightColour", "cursorHighlightColor",
                                        {QColor(255, 0, 0)}, "HIGHLIGHT_CURSOR_COLOR=#ff0000")});

TEST(SettingsObserverSingleTest, UnconfiguredFieldIsIgnored)
{
    InstanceRegistry registry;
    KT::HotkeySettings hotkeys;
    registry.Register(&hotkeys);
    auto tracker = std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::InstancesFromText(
        R"(<HotkeySettings><pauseResume event="PREF_CHANGE" value="K"><param key="P" value="1"/></pauseResume></HotkeySettings>)"));
    handler.AttachInstances();
    hotkeys.Set("startStop", {QString("F1")});
    hotkeys.Set("pauseResume", {QString("F2")});
    EXPECT_EQ(KtTest::EventsText(tracker->Events()), "PREF_CHANGE{K=F2,P=1}");
}

}  // namespace
