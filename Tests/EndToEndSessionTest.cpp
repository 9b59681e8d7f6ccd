// A whole session through the library as a host assembles it: the shipped main document on a
// real window tree and registered services, the shipped filter and aggregator in the chain, the
// common events at both ends.

#include "Support/EventText.h"
#include "Support/InstancesConfig.h"
#include "Support/LaunchAndCrashDoubles.h"
#include "Support/Named.h"
#include "Support/QtPump.h"

#include "App/ILaunchTypeProcessor.h"
#include "App/LookAndFeelManager.h"
#include "KT/CaptureInfo.h"
#include "KT/ConvertationSettings.h"
#include "KT/InstanceRegistry.h"
#include "KT/ProductSettings.h"
#include "KT/ScreenshotTaker.h"
#include "KT/Service/SharingManager.h"
#include "Tracking/Config/ConfigLoader.h"
#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <string>
#include <vector>

using namespace Velkor;
using InstancesTest::RecordingTracker;
using KT::Tracking::Event;
using KT::Tracking::FillerTypes;
using KtTest::Named;

namespace
{

// The host's global hot-key manager, reporting each hot key by its identifier.
class HotkeyManager : public QObject
{
    Q_OBJECT

public:
    HotkeyManager() { setObjectName("GlobalHotkeyManager"); }

signals:
    void HotkeyTriggeredId(const QString& id);
};

// The windows of the host that the main document names.
struct Windows
{
    Windows()
    {
        main.setObjectName("MainWindow");
        main.setCentralWidget(central);
        captureMode->addItems({"Game", "Desktop"});
        takeScreenshot = main.menuBar()->addMenu("Capture")->addAction("Take screenshot");
        takeScreenshot->setObjectName("ActionTakeScreenshot");
        main.addAction(takeScreenshot);
        panel.setObjectName("CaptureControlPanel");
        tray.setObjectName("TrayMenu");
        trayStop = tray.addAction("Stop recording");
        trayStop->setObjectName("TrayActionStopRecord");
    }

    QMainWindow main;
    QWidget panel;
    QMenu tray;
    QWidget* central = new QWidget(&main);
    QPushButton* recButton = Named<QPushButton>("recButton", "Rec", central);
    QComboBox* captureMode = Named<QComboBox>("captureModeComboBox", central);
    QAction* takeScreenshot;
    QPushButton* pauseButton = Named<QPushButton>("pauseButton", "Pause", &panel);
    QAction* trayStop;
};

TEST(EndToEndSessionTest, DeliveredEventsOfAUserSession)
{
    KT::InstanceRegistry registry;
    KT::CaptureInfo capture;
    KT::ScreenshotTaker screenshots;
    KT::Service::Sharing::SharingManager sharing{4};  // YOUTUBE
    KT::ProductSettings productSettings;
    registry.Register<KT::ICaptureInfo>(&capture);
    registry.Register<KT::AbstractScreenshotTakerWrapper>(&screenshots);
    registry.Register<KT::Service::Sharing::AbstractSharingManager>(&sharing);
    registry.Register<KT::ProductSettings>(&productSettings);

    const auto delivered = std::make_shared<RecordingTracker>();
    auto aggregator = std::make_shared<KT::Tracking::AggregatorKtTracker>(delivered);
    aggregator->SetConfig(KT::Tracking::LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
    auto filter = std::make_shared<KT::Tracking::FilterKtTracker>(aggregator);
    filter->SetConfig(KT::Tracking::LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
    auto manager = std::make_unique<KT::Tracking::StatisticsManager>(
        filter, std::make_shared<App::LookAndFeelManager>("en"), nullptr, nullptr,
        std::make_shared<KtTest::FixedLaunchType>(App::ILaunchTypeProcessor::FirstStart),
        std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{"crashed-session"}),
        std::make_shared<KT::ConvertationSettings>(),
        std::vector<FillerTypes>{FillerTypes::AppLanguage, FillerTypes::HyperPass});

    Windows windows;
    HotkeyManager hotkeys;
    hotkeys.setParent(&windows.main);
    manager->SetConfig(KT::Tracking::LoadConfigFromQrc("/KT/Tracking/Config.xml"));
    manager->AttachAllTopLevelWindows();
    manager->AttachInstances();

    // The main window comes up.
    windows.main.show();
    windows.panel.show();
    KtTest::Pump();

    // A recording started by the button, paused by the panel, resumed by a hot key and stopped
    // from the tray; an unrelated hot key in between.
    QTest::mouseClick(windows.recButton, Qt::LeftButton);
    KT::CaptureSettings settings;
    capture.Start(QRect(0, 0, 1920, 1080), settings, {}, KT::Project{});
    QTest::mouseClick(windows.pauseButton, Qt::LeftButton);
    capture.SetCaptureDuration(30'000'000);
    capture.Pause(0);
    emit hotkeys.HotkeyTriggeredId("showHideOverlays");
    emit hotkeys.HotkeyTriggeredId("capturePauseResume");
    capture.Resume();
    windows.trayStop->trigger();
    capture.SetCaptureDuration(90'000'000);
    capture.Stop(KT::kCaptureFinished, KT::Project{5 * 1024 * 1024}, {});

    // The capture mode changes, a screenshot is taken from the menu, the video is shared, the
    // statistics switch is turned off in the settings.
    windows.captureMode->setCurrentIndex(1);
    windows.takeScreenshot->trigger();
    screenshots.Succeed(1);
    sharing.Finish(App::ioPath(std::string("/videos/clip.mp4")), true);
    productSettings.SetAutoUpdateEnabled(!productSettings.IsAutoUpdateEnabled());

    manager.reset();

    // The start is compared below, by the facts it must carry.
    const std::vector<Event> expectedExceptStart = KtTest::EventsFrom(
        "APP_FAILED{APP_LANGUAGE=en,EXCEPTION_MESSAGE=,EXCEPTION_STACKTRACE=,EXCEPTION_TYPE=,"
        "HP_ENABLED=NO,SID=crashed-session} "
        "APP_FIRST_START{APP_LANGUAGE=en} SHOW_WINDOW{WINDOW=MAIN} CAPTURE_START{} "
        "CAPTURE_PAUSE{CAPTURE_RECORDING_TYPE=CAPTURING,DURATION=30,DURATION_ID=UP_TO_2_MIN,"
        "METHOD=BUTTON} "
        "CAPTURE_RESUME{CAPTURE_RECORDING_TYPE=CAPTURING,DURATION=30,METHOD=HOTKEY} "
        "CAPTURE_STOP{AUDIO_SOURCES=OFF,AUDIO_VIDEO_SOURCES=NONE,CAPTURE_RECORDING_TYPE=CAPTURING,"
        "DURATION=90,DURATION_ID=UP_TO_2_MIN,FILE_SIZE=5242880,FILE_SIZE_PRESET=1_10_MB,"
        "METHOD=TRAY,REASON_STOP=SUCCESS} "
        "CUSTOMER_ACTION{SELECT_CAPTURE_MODE=DESKTOP} "
        "SCREENSHOT_SAVE{DESTINATION=CLIPBOARD,METHOD=MENU_BAR} "
        "SHARING_FINISH{METHOD=YOUTUBE,RESULT=SUCCESS,TYPE=VIDEO} "
        "PREF_CHANGE{AUTO_UPDATE_ENABLED=NO} APP_EXIT{APP_LANGUAGE=en}");

    std::vector<Event> events = delivered->Events();
    ASSERT_EQ(events.size(), expectedExceptStart.size()) << testing::PrintToString(events);
    const Event start = events[3];
    events[3].params.clear();
    EXPECT_EQ(events, expectedExceptStart);

    // The start carries the cause the button gave, the capture's own facts and the filter's
    // classification of the sources (no camera: its size and position are "NONE").
    EXPECT_EQ(start.name, "CAPTURE_START");
    Event::Params facts = KtTest::EventsFrom(
                              "S{METHOD=BUTTON,CAPTURE_TYPE=RECORDING,AUDIO_VIDEO_SOURCES=NONE,"
                              "CAPTURE_RECORDING_TYPE=CAPTURING,QUANTITY_AUDIO_SOURCE=0,"
                              "SIZE_WEBCAMERA=NONE,POSITION_WEBCAMERA=NONE}")
                              .at(0)
                              .params;
    facts["CAPTURE_AREA_RECT"] = "0,0:1920x1080";
    for (const auto& [key, value] : facts)
    {
        const auto found = start.params.find(key);
        ASSERT_NE(found, start.params.end()) << key;
        EXPECT_EQ(found->second, value) << key;
    }
}

}  // namespace

#include "EndToEndSessionTest.moc"
