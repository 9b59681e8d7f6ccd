#include "HostServices.h"

#include <QColor>
#include <QDir>
#include <QSize>

namespace Velkor::Demo
{

namespace
{

std::string InDirectory(const QString& directory, const QString& name)
{
    return QDir(directory).filePath(name).toStdString();
}

}  // namespace

HostServices::HostServices(const QString& dataDirectory_)
    : dataDirectory(dataDirectory_),
      sessionId(std::make_shared<App::SessionId>()),
      customization(std::make_shared<App::CustomizationManager>("recorder", "demo")),
      lookAndFeel(std::make_shared<App::LookAndFeelManager>("en")),
      productSettings(std::make_shared<KT::ProductSettings>()),
      productSettingsManager(std::make_shared<App::ProductSettingsManager>(
          "Screen Recorder", kProductVersion, productSettings)),
      applicationSettings(std::make_shared<App::ApplicationSettingsManager>(
          InDirectory(dataDirectory, "application.ini"))),
      launchType(std::make_shared<App::LaunchTypeProcessor>(applicationSettings, kProductVersion)),
      crashTracker(std::make_shared<App::CrashTracker>(InDirectory(dataDirectory, "sessions"),
                                                       sessionId->GetSessionId())),
      convertationSettings(std::make_shared<KT::ConvertationSettings>())
{
    SetInitialValues();
    RegisterAll();
    videoEditor = std::make_unique<Module::Editing::VECommunicationEventPublisher>();
}

HostServices::~HostServices()
{
    videoEditor.reset();
    UnregisterAll();
    crashTracker->MarkCleanExit();
}

// Values a fresh installation starts with; set before anybody observes the objects.
void HostServices::SetInitialValues()
{
    productSettings->SetAllowSendStatistics(true);
    productSettings->SetAutoUpdateEnabled(true);
    productSettings->SetCurrentLocale("en_US");

    paths.Set("screenshotFileExt", {QString("png")});
    keyboard.Set("recordKeystrokes", {false});
    audio.Set("audioQuality", {1});
    hotkeys.Set("startStop", {QString("Ctrl+F9")});
    hotkeys.Set("pauseResume", {QString("Ctrl+F8")});
    hotkeys.Set("takeScreenshot", {QString("Ctrl+F7")});
    hotkeys.Set("showHideOverlays", {QString("Ctrl+F6")});
    video.Set("codec", {0});
    video.Set("frameRate", {30});
    video.Set("frameSize", {QSize(1920, 1080)});
    video.Set("captureMethod", {0});
    video.Set("codecSettings", {0, 1, 2});
    video.Set("textureSharingEnabled", {false});
    cursor.Set("cursorEnabled", {true});
    cursor.Set("cursorHighlightEnabled", {false});
    cursor.Set("cursorHighlightColor", {QColor(255, 255, 0)});
    cursor.Set("cursorHighlightSize", {40});
    cursor.Set("clicksHighlightEnabled", {false});
    cursor.Set("leftClicksHighlightColor", {QColor(255, 0, 0)});
    cursor.Set("rightClicksHighlightColor", {QColor(0, 0, 255)});
    cursor.Set("useClickSounds", {false});
    cursor.Set("customClickDownSound", {QString()});
    cursor.Set("volumeClick", {50});
    webCamera.Set("captureResolution", {QSize(640, 480)});
    webCamera.Set("frameRate", {30});
    webCamera.Set("pipPosition", {3});
    webCamera.Set("pipSize", {1});
}

void HostServices::RegisterAll()
{
    registry.Register(static_cast<KT::ICaptureInfo*>(&captureInfo));
    registry.Register(static_cast<KT::ICaptureMonitor*>(&captureMonitor));
    registry.Register(static_cast<KT::IConverter*>(&converter));
    registry.Register(static_cast<KT::IScheduler*>(&scheduler));
    registry.Register(static_cast<KT::IDurationLimiter*>(&durationLimiter));
    registry.Register(static_cast<KT::AbstractScreenshotTakerWrapper*>(&screenshotTaker));
    registry.Register(static_cast<KT::IFileManager*>(&fileManager));
    registry.Register(static_cast<KT::Service::Sharing::AbstractSharingManager*>(&emailSharing));
    registry.Register(static_cast<KT::Service::Sharing::AbstractSharingManager*>(&youTubeSharing));
    registry.Register(static_cast<KT::Service::ScreenPainting::IPaintingController*>(&painting));
    registry.Register(static_cast<KT::Service::Tutorial::ITutorialManager*>(&tutorial));
    registry.Register(static_cast<KT::Service::AreaSelector::ISelector*>(&areaSelector));

    registry.Register(productSettings.get());
    registry.Register(convertationSettings.get());
    registry.Register(&paths);
    registry.Register(&general);
    registry.Register(&keyboard);
    registry.Register(&watermark);
    registry.Register(&audio);
    registry.Register(&webCamera);
    registry.Register(&streaming);
    registry.Register(&hotkeys);
    registry.Register(&overlays);
    registry.Register(&finishAction);
    registry.Register(&ui);
    registry.Register(&durationLimit);
    registry.Register(&schedulerSettings);
    registry.Register(&video);
    registry.Register(&cursor);
}

void HostServices::UnregisterAll()
{
    registry.Unregister(&cursor);
    registry.Unregister(&video);
    registry.Unregister(&schedulerSettings);
    registry.Unregister(&durationLimit);
    registry.Unregister(&ui);
    registry.Unregister(&finishAction);
    registry.Unregister(&overlays);
    registry.Unregister(&hotkeys);
    registry.Unregister(&streaming);
    registry.Unregister(&webCamera);
    registry.Unregister(&audio);
    registry.Unregister(&watermark);
    registry.Unregister(&keyboard);
    registry.Unregister(&general);
    registry.Unregister(&paths);
    registry.Unregister(convertationSettings.get());
    registry.Unregister(productSettings.get());

    registry.Unregister(static_cast<KT::Service::AreaSelector::ISelector*>(&areaSelector));
    registry.Unregister(static_cast<KT::Service::Tutorial::ITutorialManager*>(&tutorial));
    registry.Unregister(static_cast<KT::Service::ScreenPainting::IPaintingController*>(&painting));
    registry.Unregister(
        static_cast<KT::Service::Sharing::AbstractSharingManager*>(&youTubeSharing));
    registry.Unregister(static_cast<KT::Service::Sharing::AbstractSharingManager*>(&emailSharing));
    registry.Unregister(static_cast<KT::IFileManager*>(&fileManager));
    registry.Unregister(static_cast<KT::AbstractScreenshotTakerWrapper*>(&screenshotTaker));
    registry.Unregister(static_cast<KT::IDurationLimiter*>(&durationLimiter));
    registry.Unregister(static_cast<KT::IScheduler*>(&scheduler));
    registry.Unregister(static_cast<KT::IConverter*>(&converter));
    registry.Unregister(static_cast<KT::ICaptureMonitor*>(&captureMonitor));
    registry.Unregister(static_cast<KT::ICaptureInfo*>(&captureInfo));
}

}  // namespace Velkor::Demo
