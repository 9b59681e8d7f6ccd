#pragma once

#include "App/ApplicationSettingsManager.h"
#include "App/CrashTracker.h"
#include "App/CustomizationManager.h"
#include "App/LaunchTypeProcessor.h"
#include "App/LookAndFeelManager.h"
#include "App/ProductSettingsManager.h"
#include "App/SessionId.h"
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
#include "Module/Editing/IVECommunicationObserver.h"

#include <QString>

#include <memory>

namespace Velkor::Demo
{

// Sharing targets of the reference sharing managers.
enum SharingTarget : int
{
    kShareByEmail = 3,
    kShareOnYouTube = 4,
};

// The recorder's services and settings objects, filed in the instance registry for their whole
// life. The application-core services keep their state under `dataDirectory`, so a second run
// on the same directory is an ordinary start and finds no failed session.
class HostServices
{
public:
    explicit HostServices(const QString& dataDirectory);
    ~HostServices();

    static constexpr const char kProductVersion[] = "3.1.0";

    const QString dataDirectory;

    KT::InstanceRegistry registry;

    // Application core.
    std::shared_ptr<App::SessionId> sessionId;
    std::shared_ptr<App::CustomizationManager> customization;
    std::shared_ptr<App::LookAndFeelManager> lookAndFeel;
    std::shared_ptr<KT::ProductSettings> productSettings;
    std::shared_ptr<App::ProductSettingsManager> productSettingsManager;
    std::shared_ptr<App::ApplicationSettingsManager> applicationSettings;
    std::shared_ptr<App::LaunchTypeProcessor> launchType;
    std::shared_ptr<App::CrashTracker> crashTracker;
    std::shared_ptr<KT::ConvertationSettings> convertationSettings;

    // Recorder services.
    KT::CaptureInfo captureInfo;
    KT::CaptureMonitor captureMonitor;
    KT::Converter converter;
    KT::Scheduler scheduler;
    KT::DurationLimiter durationLimiter;
    KT::ScreenshotTaker screenshotTaker;
    KT::FileManager fileManager;
    KT::Service::Sharing::SharingManager emailSharing{kShareByEmail};
    KT::Service::Sharing::SharingManager youTubeSharing{kShareOnYouTube};
    KT::Service::ScreenPainting::PaintingController painting;
    KT::Service::Tutorial::TutorialManager tutorial;
    KT::Service::AreaSelector::Selector areaSelector;

    // Settings objects.
    KT::PathsSettings paths;
    KT::CaptureGeneralSettings general;
    KT::CaptureKeyboardSettings keyboard;
    KT::WatermarkSettings watermark;
    KT::CaptureAudioSettings audio;
    KT::CaptureWebCameraSettings webCamera;
    KT::CaptureStreamingSettings streaming;
    KT::HotkeySettings hotkeys;
    KT::OverlaySettings overlays;
    KT::CaptureFinishActionSettings finishAction;
    KT::IUiSettings ui;
    KT::ICaptureDurationLimitSettings durationLimit;
    KT::ICaptureSchedulerSettings schedulerSettings;
    KT::CaptureVideoSettings video;
    KT::CaptureCursorSettings cursor;

    // Registers itself for its own life.
    std::unique_ptr<Module::Editing::VECommunicationEventPublisher> videoEditor;

private:
    void SetInitialValues();
    void RegisterAll();
    void UnregisterAll();

    Q_DISABLE_COPY(HostServices)
};

}  // namespace Velkor::Demo
