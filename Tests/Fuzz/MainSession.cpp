#include "MainSession.h"

#include "App/LookAndFeelManager.h"
#include "App/ioPath.h"
#include "KT/CaptureInfo.h"
#include "KT/CaptureMonitor.h"
#include "KT/ConvertationSettings.h"
#include "KT/Converter.h"
#include "KT/DurationLimiter.h"
#include "KT/FileManager.h"
#include "KT/InstanceRegistry.h"
#include "KT/ProductSettings.h"
#include "KT/Scheduler.h"
#include "KT/ScreenshotTaker.h"
#include "KT/Service/PaintingController.h"
#include "KT/Service/Selector.h"
#include "KT/Service/SharingManager.h"
#include "KT/Service/TutorialManager.h"
#include "KT/SettingsKinds.h"
#include "Support/LaunchAndCrashDoubles.h"
#include "Support/Named.h"
#include "Tracking/Manager/StatisticsManager.h"
#include "Tracking/Rules/AggregatorKtTracker.h"
#include "Tracking/Rules/FilterKtTracker.h"
#include "UI/AbstractPresetButton.h"
#include "UI/ButtonWithPopUpList.h"

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>

#include <memory>
#include <vector>

namespace KtFuzz
{

namespace
{

namespace KT = Velkor::KT;
namespace App = Velkor::App;
using KtTest::Named;

// Host objects that report by signals of their own.
class SignalSource : public QObject
{
    Q_OBJECT

public:
    SignalSource(const char* name, QObject* parent) : QObject(parent) { setObjectName(name); }

signals:
    void HotkeyTriggeredId(const QString& id);
    void PlayButtonClicked();
    void IntervalRemoved(int seconds);
};

struct Windows
{
    Windows()
    {
        main.setObjectName("MainWindow");
        main.setCentralWidget(central);
        webCameraButton->setCheckable(true);
        captureMode->addItems({"Game", "Desktop"});
        microphone->addItem("Built-in", QString("mic-0"));
        microphone->addItem("Headset", QString("mic-1"));
        recent->SetItems({"first", "second"});
        startRecord = main.menuBar()->addMenu("Capture")->addAction("Start");
        startRecord->setObjectName("ActionStartRecord");
        startRecord->setProperty("state", "Configuring");
        main.addAction(startRecord);
        panel.setObjectName("CaptureControlPanel");
        brush->setCheckable(true);
        tray.setObjectName("TrayMenu");
        trayStop = tray.addAction("Stop recording");
        trayStop->setObjectName("TrayActionStopRecord");
    }

    void Work()
    {
        main.show();
        panel.show();
        QTest::mouseClick(recButton, Qt::LeftButton);
        QTest::mouseClick(stopButton, Qt::LeftButton);
        webCameraButton->click();
        brush->toggle();
        captureMode->setCurrentIndex(1 - captureMode->currentIndex());
        microphone->setCurrentIndex(1 - microphone->currentIndex());
        emit homePage->linkActivated("https://example.org/");
        preset->click();
        recent->SetCurrentIndex(1 - recent->CurrentIndex());
        startRecord->trigger();
        trayStop->trigger();
        emit hotkeys->HotkeyTriggeredId("captureStartStop");
        emit player->PlayButtonClicked();
        emit player->IntervalRemoved(12);
        panel.close();
    }

    QMainWindow main;
    QWidget panel;
    QMenu tray;
    QWidget* central = new QWidget(&main);
    QPushButton* recButton = Named<QPushButton>("recButton", "Rec", central);
    QPushButton* webCameraButton = Named<QPushButton>("webCameraButton", "Camera", central);
    QComboBox* captureMode = Named<QComboBox>("captureModeComboBox", central);
    QWidget* audio = Named<QWidget>("audioSourcesPanel", central);
    QComboBox* microphone = Named<QComboBox>("microphoneComboBox", audio);
    QLabel* homePage = Named<QLabel>("homePageLabel", central);
    KT::UI::AbstractPresetButton* preset = Named<KT::UI::AbstractPresetButton>(
        "capturePresetButton", "Capture-FullscreenCapture", central);
    KT::ButtonWithPopUpList* recent =
        Named<KT::ButtonWithPopUpList>("recentProjectsButton", central);
    SignalSource* hotkeys = new SignalSource("GlobalHotkeyManager", &main);
    SignalSource* player = new SignalSource("playerControl", central);
    QAction* startRecord;
    QPushButton* stopButton = Named<QPushButton>("stopButton", "Stop", &panel);
    QPushButton* brush = Named<QPushButton>("brushSettingsButton", "Brush", &panel);
    QAction* trayStop;
};

// The reference services and settings objects, registered for their whole life (the registry
// goes last, after the manager and the objects).
struct Services
{
    Services()
    {
        registry.Register<KT::ICaptureInfo>(&capture);
        registry.Register<KT::ICaptureMonitor>(&monitor);
        registry.Register<KT::IConverter>(&converter);
        registry.Register<KT::IScheduler>(&scheduler);
        registry.Register<KT::IDurationLimiter>(&limiter);
        registry.Register<KT::AbstractScreenshotTakerWrapper>(&screenshots);
        registry.Register<KT::IFileManager>(&files);
        registry.Register<KT::Service::Sharing::AbstractSharingManager>(&sharing);
        registry.Register<KT::Service::ScreenPainting::IPaintingController>(&painting);
        registry.Register<KT::Service::Tutorial::ITutorialManager>(&tutorial);
        registry.Register<KT::Service::AreaSelector::ISelector>(&selector);
        registry.Register(&product);
        registry.Register(convertation.get());
        registry.Register(&hotkeys);
        registry.Register(&audio);
        registry.Register(&video);
        registry.Register(&ui);
    }

    void Work()
    {
        KT::CaptureSettings settings;
        settings.video.frameRate = 30;
        capture.Start(QRect(0, 0, 1920, 1080), settings,
                      {{KT::kScreen, "screen-0", false}, {KT::kMicrophone, "mic-0", true}},
                      KT::Project{});
        capture.SetCaptureDuration(30'000'000);
        capture.Pause(0);
        capture.Resume();
        capture.SetCaptureDuration(90'000'000);
        capture.Stop(KT::kCaptureFinished, KT::Project{5 * 1024 * 1024}, {});
        capture.Fail();
        monitor.ReportDriveFull();
        KT::ConvertationContext context;
        context.outputFilePath = "/videos/clip.mp4";
        context.cutIntervals = {{0, 1'000'000}};
        converter.Start(context);
        converter.Progress(50);
        converter.Finish(0);
        scheduler.StartScheduledCapture();
        limiter.WarnUserLimit();
        limiter.StopBySchedule();
        screenshots.Succeed(1);
        screenshots.Cancel(0);
        files.Remove(App::ioPath("/videos/clip.mp4"));
        sharing.Finish(App::ioPath("/videos/clip.mp4"), true);
        painting.AddShape("arrow");
        tutorial.ShowSlide("welcome");
        tutorial.ClickSlide(2);
        selector.Select(QRect(10, 10, 640, 480));
        // Each setting changes and changes back, so every round starts from the same values.
        product.SetAutoUpdateEnabled(!product.IsAutoUpdateEnabled());
        product.SetAutoUpdateEnabled(!product.IsAutoUpdateEnabled());
        convertation->SetHyperPassEnabled(!convertation->IsHyperPassEnabled());
        convertation->SetHyperPassEnabled(!convertation->IsHyperPassEnabled());
        hotkeys.Set("startStop", {QString("Ctrl+F10")});
        hotkeys.Set("startStop", {QString("Ctrl+F9")});
        audio.Set("audioQuality", {2});
        audio.Set("audioQuality", {1});
        video.Set("frameSize", {QSize(1280, 720)});
        video.Set("frameSize", {QSize(1920, 1080)});
        ui.Set("showCountdown", {true});
        ui.Set("showCountdown", {false});
    }

    KT::InstanceRegistry registry;
    KT::CaptureInfo capture;
    KT::CaptureMonitor monitor;
    KT::Converter converter;
    KT::Scheduler scheduler;
    KT::DurationLimiter limiter;
    KT::ScreenshotTaker screenshots;
    KT::FileManager files;
    KT::Service::Sharing::SharingManager sharing{4};
    KT::Service::ScreenPainting::PaintingController painting;
    KT::Service::Tutorial::TutorialManager tutorial;
    KT::Service::AreaSelector::Selector selector;
    KT::ProductSettings product;
    std::shared_ptr<KT::ConvertationSettings> convertation =
        std::make_shared<KT::ConvertationSettings>();
    KT::HotkeySettings hotkeys;
    KT::CaptureAudioSettings audio;
    KT::CaptureVideoSettings video;
    KT::IUiSettings ui;
};

}  // namespace

const char* const kSessionDocument = R"doc(<ktmstat><gui>
  <widget id="MainWindow">
    <show-event event="SHOW_WINDOW"><param key="WINDOW" value="MAIN"/></show-event>
    <button id="recButton"><mouse-release-event event="BUTTON_CAPTURE_START_EVENT">
      <param key="METHOD" value="BUTTON"/></mouse-release-event></button>
    <combobox id="captureModeComboBox">
      <current-index-changed-event event="CUSTOMER_ACTION" mapped="SELECT_CAPTURE_MODE">
        <map key="0" value="GAME"/><map key="1" value="DESKTOP"/></current-index-changed-event>
    </combobox>
    <object id="GlobalHotkeyManager">
      <stringSignal event="HOTKEY_TRIGGERED" signal="2HotkeyTriggeredId(QString)" key="HOTKEY_ID"/>
    </object>
  </widget>
  <action id="ActionStartRecord" propertyName="state" propertyValue="Configuring">
    <triggered-event event="MENU_BAR_CAPTURE_START_EVENT"/></action>
</gui><instances>
  <ICaptureInfo><stop event="CAPTURE_STOP" duration="DURATION">
    <param key="REASON_STOP" value="SUCCESS"/><project size="FILE_SIZE"/></stop></ICaptureInfo>
  <HotkeySettings><startStop event="PREF_CHANGE" value="HOTKEY_START_STOP"/></HotkeySettings>
</instances></ktmstat>)doc";

SessionOutcome RunSession(const std::vector<std::optional<std::string>>& rounds)
{
    namespace T = Velkor::KT::Tracking;
    SessionOutcome outcome;
    const auto recorder = std::make_shared<Recorder>();
    {
        std::vector<std::unique_ptr<Windows>> windows;
        Services services;
        const auto aggregator = std::make_shared<T::AggregatorKtTracker>(recorder);
        const auto filter = std::make_shared<T::FilterKtTracker>(aggregator);
        T::StatisticsManager manager(
            filter, std::make_shared<App::LookAndFeelManager>("en"), nullptr, nullptr,
            std::make_shared<KtTest::FixedLaunchType>(App::ILaunchTypeProcessor::EveryStart),
            std::make_shared<KtTest::ListCrashTracker>(std::vector<std::string>{}),
            services.convertation, {});
        for (const std::optional<std::string>& document : rounds)
        {
            bool refused = false;
            if (document)
            {
                const KtTest::LogCapture errors;
                manager.SetConfig(*document);
                refused = errors.Count(google::GLOG_ERROR, "Can't read configuration: ") > 0;
            }
            outcome.refused.push_back(refused);
            // Windows of earlier rounds keep the hooks of their round's document.
            windows.push_back(std::make_unique<Windows>());
            manager.AttachAllTopLevelWindows();
            manager.AttachInstances();
            for (const auto& each : windows)
            {
                each->Work();
            }
            services.Work();
        }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    outcome.delivered = std::move(recorder->events);
    return outcome;
}

}  // namespace KtFuzz

#include "MainSession.moc"
