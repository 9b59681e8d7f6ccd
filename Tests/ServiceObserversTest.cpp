#include "Support/InstancesConfig.h"

#include "KT/CaptureMonitor.h"
#include "KT/DurationLimiter.h"
#include "KT/FileManager.h"
#include "KT/InstanceRegistry.h"
#include "KT/ScreenshotTaker.h"
#include "KT/Service/PaintingController.h"
#include "KT/Service/Selector.h"
#include "KT/Service/TutorialManager.h"
#include "Tracking/InstancesHandler.h"

#include "Support/EventsText.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

using namespace Velkor;
using KT::InstanceRegistry;

namespace
{

// Notifications of a service under the shipped configuration and the events they give.
struct ServiceRow
{
    const char* label;
    std::string expected;
    // Registers a service, attaches `handler`, notifies, unregisters.
    std::function<void(InstanceRegistry&, KT::Tracking::InstancesHandler&)> run;
};

template <class Interface, class Service>
ServiceRow Row(const char* label, std::string expected, std::function<void(Service&)> notify)
{
    return ServiceRow{label, std::move(expected),
                      [notify](InstanceRegistry& registry, KT::Tracking::InstancesHandler& handler)
                      {
                          Service service;
                          registry.Register<Interface>(&service);
                          handler.AttachInstances();
                          notify(service);
                          registry.Unregister<Interface>(&service);
                      }};
}

using ServiceObserversTest = KtTest::Table<ServiceRow>;

TEST_P(ServiceObserversTest, NotificationBecomesItsEvent)
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
KT_ROWS(ServiceObserversTest,
        {Row<KT::IDurationLimiter, Limiter>(
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
         Row<KT::ICaptureMonitor, Monitor>(
             "Monitor",
             "CAPTURE_DEVICE_DISCONNECTED{} LIMIT_SPACE_CAPTURE_STOP{METHOD=LIMIT_SPACE}",
             [](Monitor& s)
             {
                 s.ReportDeviceDisconnected();
                 s.ReportDriveFull();
             }),
         Row<KT::AbstractScreenshotTakerWrapper, Screenshots>(
             "Screenshots",
             "SCREENSHOT_SAVE{DESTINATION=CLIPBOARD} SCREENSHOT_ERROR{DESTINATION=DISK} "
             "SCREENSHOT_CANCEL{DESTINATION=UNKNOWN}",
             [](Screenshots& s)
             {
                 s.Succeed(1);
                 s.Fail(0);
                 s.Cancel(5);
             }),
         Row<KT::IFileManager, Files>(
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
         Row<KT::Service::ScreenPainting::IPaintingController, Painting>(
             "Painting", "DRAWING_SHAPE_ADDED{SHAPE=ARROW} DRAWING_SHAPE_REMOVED{SHAPE=PEN}",
             [](Painting& s)
             {
                 s.AddShape("ARROW");
                 s.RemoveShape("PEN");
             }),
         Row<KT::Service::Tutorial::ITutorialManager, Tutorial>(
             "Tutorial",
             "TUTORIAL_SLIDE_SHOW{SLIDE=welcome} TUTORIAL_SLIDE_CLICK{SLIDE_ACTION=REPEAT} "
             "TUTORIAL_SLIDE_CLICK{SLIDE_ACTION=UNKNOWN}",
             [](Tutorial& s)
             {
                 s.ShowSlide("welcome");
                 s.ClickSlide(3);
                 s.ClickSlide(5);
             }),
         Row<KT::Service::AreaSelector::ISelector, Selector>(
             "Selector", "AREA_SELECTED{CAPTURE_AREA_RECT=100,50:1280x720}",
             [](Selector& s) { s.Select(QRect(100, 50, 1280, 720)); })});

}  // namespace
