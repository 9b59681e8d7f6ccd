#include "Tracking/Instances/SectionRuns.h"

#include "KT/ProductSettings.h"
#include "KT/SettingsKinds.h"
#include "Tracking/Instances/CaptureInfoObserver.h"
#include "Tracking/Instances/ConverterObserver.h"
#include "Tracking/Instances/ServiceObservers.h"
#include "Tracking/Instances/SettingsObserver.h"
#include "Tracking/Instances/SharingObserver.h"
#include "Tracking/ValueTexts.h"

#include "Tracking/Config/KtmStat.hxx"

#include <functional>
#include <map>
#include <memory>

namespace Velkor::KT::Tracking
{

namespace
{

using Sections = Config::Instances;

// Runs a service section: `configured` tells whether it sets any callback; `make` builds the
// observer of one object.
template <class Host, class Section, class Configured, class Make>
void RunService(const ::xsd::cxx::tree::optional<Section>& section, const ParseContext& context,
                Configured configured, Make make)
{
    if (!section || !configured(*section))
    {
        return;
    }
    AttachToAll<Host>(context, [&](Host* host) { return make(host, *section); });
}

// A field of a settings section: its name in the host's settings object and how its callback
// is built from the section.
template <class Section>
struct Field
{
    const char* name;
    std::function<ValueCallback(const Section&)> build;
};

template <class Host, class Section>
void RunSettings(const ::xsd::cxx::tree::optional<Section>& section, const ParseContext& context,
                 const std::vector<Field<Section>>& fields)
{
    if (!section)
    {
        return;
    }
    std::map<std::string, ValueCallback> callbacks;
    for (const auto& field : fields)
    {
        ValueCallback callback = field.build(*section);
        if (callback.IsConfigured())
        {
            callbacks.emplace(field.name, std::move(callback));
        }
    }
    if (callbacks.empty())
    {
        return;
    }
    AttachToAll<Host>(
        context, [&](Host* host)
        { return std::make_unique<SettingsObserver>(host, context.tracker, callbacks); });
}

template <class Section, class Get>
Field<Section> MakeField(const char* name, Get get, Converter convert)
{
    return {name, [get, convert](const Section& section)
            { return IfPresent(get(section), OneValueWith(convert)); }};
}

#define KT_FIELD(Section, name, converter) \
    MakeField<Config::Section>(            \
        #name, [](const Config::Section& s) -> decltype(auto) { return s.name(); }, converter)

const Converter kText = Convert::Text;
const Converter kDecimal = Convert::Decimal;
const Converter kFlag = Convert::Flag;
const Converter kSize = Convert::Size;

void RunScheduler(const Sections& config, const ParseContext& context)
{
    RunService<KT::IScheduler>(
        config.IScheduler(), context,
        [](const Config::IScheduler& s) { return static_cast<bool>(s.start()); },
        [&](KT::IScheduler* host, const Config::IScheduler& section)
        { return std::make_unique<SchedulerObserver>(host, context.tracker, section); });
}

void RunDurationLimiter(const Sections& config, const ParseContext& context)
{
    RunService<KT::IDurationLimiter>(
        config.IDurationLimiter(), context,
        [](const Config::IDurationLimiter& s) {
            return s.beforeUserStop() || s.beforeScheduleStop() || s.userStop() || s.scheduleStop();
        },
        [&](KT::IDurationLimiter* host, const Config::IDurationLimiter& section)
        { return std::make_unique<DurationLimiterObserver>(host, context.tracker, section); });
}

// `cancel` alone does not count: a section with only `cancel` attaches nothing.
void RunCaptureInfo(const Sections& config, const ParseContext& context)
{
    RunService<KT::ICaptureInfo>(
        config.ICaptureInfo(), context,
        [](const Config::ICaptureInfo& s)
        { return s.start() || s.pause() || s.resume() || s.stop() || s.error(); },
        [&](KT::ICaptureInfo* host, const Config::ICaptureInfo& section)
        {
            return std::make_unique<CaptureInfoObserver>(
                host, context.tracker, section,
                context.accelerators ? *context.accelerators : AcceleratorProperties());
        });
}

void RunCaptureMonitor(const Sections& config, const ParseContext& context)
{
    RunService<KT::ICaptureMonitor>(
        config.ICaptureMonitor(), context,
        [](const Config::ICaptureMonitor& s) { return s.overflowDrive() || s.deviceDisconnect(); },
        [&](KT::ICaptureMonitor* host, const Config::ICaptureMonitor& section)
        { return std::make_unique<CaptureMonitorObserver>(host, context.tracker, section); });
}

void RunConverter(const Sections& config, const ParseContext& context)
{
    RunService<KT::IConverter>(
        config.IConverter(), context,
        [](const Config::IConverter& s)
        { return s.start() || s.pause() || s.resume() || s.stop() || s.error(); },
        [&](KT::IConverter* host, const Config::IConverter& section)
        { return std::make_unique<ConverterObserver>(host, context.tracker, section); });
}

void RunPaths(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::PathsSettings>(config.PathsSettings(), context,
                                   {KT_FIELD(PathsSettings, screenshotFileExt, kText)});
}

void RunGeneral(const Sections& config, const ParseContext& context)
{
    const Converter triState = Convert::Enum(TriStateText);
    RunSettings<KT::CaptureGeneralSettings>(
        config.CaptureGeneralSettings(), context,
        {KT_FIELD(CaptureGeneralSettings, separateStreamsEnabled, triState),
         KT_FIELD(CaptureGeneralSettings, isIndicatorVisible, triState)});
}

void RunKeyboard(const Sections& config, const ParseContext& context)
{
    const Converter keystrokes = Convert::Enum(KeystrokesText);
    RunSettings<KT::CaptureKeyboardSettings>(
        config.CaptureKeyboardSettings(), context,
        {KT_FIELD(CaptureKeyboardSettings, recordKeystrokes, keystrokes)});
}

void RunWatermark(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::WatermarkSettings>(config.WatermarkSettings(), context,
                                       {KT_FIELD(WatermarkSettings, isWatermarkVisible, kFlag)});
}

void RunAudio(const Sections& config, const ParseContext& context)
{
    const Converter quality = Convert::Enum(AudioQualityText);
    RunSettings<KT::CaptureAudioSettings>(config.CaptureAudioSettings(), context,
                                          {KT_FIELD(CaptureAudioSettings, audioQuality, quality)});
}

void RunWebCamera(const Sections& config, const ParseContext& context)
{
    const Converter position = Convert::Enum(PipPositionText);
    RunSettings<KT::CaptureWebCameraSettings>(
        config.CaptureWebCameraSettings(), context,
        {KT_FIELD(CaptureWebCameraSettings, captureDeviceUid, kText),
         KT_FIELD(CaptureWebCameraSettings, captureResolution, kSize),
         KT_FIELD(CaptureWebCameraSettings, frameRate, kDecimal),
         KT_FIELD(CaptureWebCameraSettings, pipPosition, position),
         KT_FIELD(CaptureWebCameraSettings, pipSize, kDecimal)});
}

void RunStreaming(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::CaptureStreamingSettings>(
        config.CaptureStreamingSettings(), context,
        {KT_FIELD(CaptureStreamingSettings, serviceName, kText),
         KT_FIELD(CaptureStreamingSettings, serverName, kText)});
}

void RunHotkeys(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::HotkeySettings>(
        config.HotkeySettings(), context,
        {KT_FIELD(HotkeySettings, startStop, kText),
         KT_FIELD(HotkeySettings, audioStartStop, kText),
         KT_FIELD(HotkeySettings, webCameraStartStop, kText),
         KT_FIELD(HotkeySettings, startStopStreaming, kText),
         KT_FIELD(HotkeySettings, pauseResume, kText),
         KT_FIELD(HotkeySettings, takeScreenshot, kText),
         KT_FIELD(HotkeySettings, showHideOverlays, kText),
         Field<Config::HotkeySettings>{"fastPreset", [](const Config::HotkeySettings& s)
                                       {
                                           return IfPresent(
                                               s.fastPreset(), [](const Config::TwoValueEvent& e)
                                               { return TwoValueCallback(e, kText, kText); });
                                       }}});
}

void RunOverlays(const Sections& config, const ParseContext& context)
{
    const Converter position = Convert::Enum(OverlayPositionText);
    const Converter drawing = Convert::Enum(DrawingTypeText);
    RunSettings<KT::OverlaySettings>(config.OverlaySettings(), context,
                                     {KT_FIELD(OverlaySettings, fpsOverlayEnabled, kFlag),
                                      KT_FIELD(OverlaySettings, recordingTimeOverlayEnabled, kFlag),
                                      KT_FIELD(OverlaySettings, freeDiskSpaceOverlayEnabled, kFlag),
                                      KT_FIELD(OverlaySettings, projectSizeOverlayEnabled, kFlag),
                                      KT_FIELD(OverlaySettings, gapiOverlayEnabled, kFlag),
                                      KT_FIELD(OverlaySettings, overlayPosition, position),
                                      KT_FIELD(OverlaySettings, drawingType, drawing),
                                      KT_FIELD(OverlaySettings, shortcutsOverlayEnabled, kFlag)});
}

void RunProduct(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::ProductSettings>(config.ProductSettings(), context,
                                     {KT_FIELD(ProductSettings, autoUpdateEnabled, kFlag),
                                      KT_FIELD(ProductSettings, statisticsEnabled, kFlag),
                                      KT_FIELD(ProductSettings, autoStartEnabled, kFlag),
                                      KT_FIELD(ProductSettings, currentLocale, kText)});
}

void RunFinishAction(const Sections& config, const ParseContext& context)
{
    const Converter action = Convert::Enum(FinishActionText);
    RunSettings<KT::CaptureFinishActionSettings>(
        config.CaptureFinishActionSettings(), context,
        {KT_FIELD(CaptureFinishActionSettings, finishAction, action)});
}

void RunConvertation(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::ConvertationSettings>(
        config.ConvertationSettings(), context,
        {KT_FIELD(ConvertationSettings, hyperPassEnabled, kFlag),
         KT_FIELD(ConvertationSettings, deleteProject, kFlag),
         KT_FIELD(ConvertationSettings, screenshotQuality, kDecimal)});
}

void RunUi(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::IUiSettings>(config.IUiSettings(), context,
                                 {KT_FIELD(IUiSettings, showCountdown, kFlag),
                                  KT_FIELD(IUiSettings, disableCaptureFrameBlinking, kFlag),
                                  KT_FIELD(IUiSettings, showCapturePanel, kFlag),
                                  KT_FIELD(IUiSettings, soundNotificationEnabled, kFlag),
                                  KT_FIELD(IUiSettings, webCameraOverlayEnabled, kFlag)});
}

void RunDurationLimit(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::ICaptureDurationLimitSettings>(
        config.IDurationLimitSettings(), context,
        {KT_FIELD(IDurationLimitSettings, limitEnabled, kFlag),
         KT_FIELD(IDurationLimitSettings, limit, kDecimal)});
}

void RunSchedulerSettings(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::ICaptureSchedulerSettings>(
        config.ISchedulerSettings(), context,
        {KT_FIELD(ISchedulerSettings, schedulerEnabled, kFlag)});
}

void RunVideo(const Sections& config, const ParseContext& context)
{
    const Converter codec = Convert::Enum(CodecText);
    const Converter scale = Convert::Enum(FrameScaleText);
    const Converter method = Convert::Enum(CaptureMethodText);
    RunSettings<KT::CaptureVideoSettings>(
        config.IVideoSettings(), context,
        {KT_FIELD(IVideoSettings, codec, codec), KT_FIELD(IVideoSettings, frameRate, kDecimal),
         KT_FIELD(IVideoSettings, frameSize, scale),
         KT_FIELD(IVideoSettings, captureMethod, method),
         Field<Config::IVideoSettings>{
             "codecSettings", [](const Config::IVideoSettings& s)
             { return IfPresent(s.codecSettings(), CodecSettingsCallback); }},
         KT_FIELD(IVideoSettings, textureSharingEnabled, kFlag)});
}

void RunCursor(const Sections& config, const ParseContext& context)
{
    RunSettings<KT::CaptureCursorSettings>(
        config.ICursorSettings(), context,
        {KT_FIELD(ICursorSettings, cursorEnabled, kFlag),
         KT_FIELD(ICursorSettings, cursorHighlightEnabled, kFlag),
         KT_FIELD(ICursorSettings, cursorHighlightColor, kText),
         KT_FIELD(ICursorSettings, cursorHighlightSize, kDecimal),
         KT_FIELD(ICursorSettings, clicksHighlightEnabled, kFlag),
         KT_FIELD(ICursorSettings, leftClicksHighlightColor, kText),
         KT_FIELD(ICursorSettings, rightClicksHighlightColor, kText),
         KT_FIELD(ICursorSettings, useClickSounds, kFlag),
         KT_FIELD(ICursorSettings, customClickDownSound, kText),
         KT_FIELD(ICursorSettings, volumeClick, kDecimal)});
}

#undef KT_FIELD

void RunScreenshots(const Sections& config, const ParseContext& context)
{
    RunService<KT::AbstractScreenshotTakerWrapper>(
        config.AbstractScreenshotTakerWrapper(), context,
        [](const Config::AbstractScreenshotTakerWrapper& s)
        { return s.onSuccess() || s.onError() || s.onCanceled(); },
        [&](KT::AbstractScreenshotTakerWrapper* host,
            const Config::AbstractScreenshotTakerWrapper& section)
        { return std::make_unique<ScreenshotObserver>(host, context.tracker, section); });
}

void RunFiles(const Sections& config, const ParseContext& context)
{
    RunService<KT::IFileManager>(
        config.IFileManager(), context,
        [](const Config::IFileManager& s)
        {
            return s.onFileExplored() || s.onFileMovedToTrash() || s.onFileRemoved() ||
                   s.onCreateDirectories();
        },
        [&](KT::IFileManager* host, const Config::IFileManager& section)
        { return std::make_unique<FileManagerObserver>(host, context.tracker, section); });
}

void RunSharing(const Sections& config, const ParseContext& context)
{
    using Manager = KT::Service::Sharing::AbstractSharingManager;
    RunService<Manager>(
        config.AbstractSharing(), context,
        [](const Config::AbstractSharing& s) { return !!s.sharingFinish(); },
        [&](Manager* host, const Config::AbstractSharing& section)
        { return std::make_unique<SharingObserver>(host, context.tracker, section); });
}

void RunPainting(const Sections& config, const ParseContext& context)
{
    using Controller = KT::Service::ScreenPainting::IPaintingController;
    RunService<Controller>(
        config.IPaintingController(), context,
        [](const Config::IPaintingController& s) { return s.shapeAdded() || s.shapeRemoved(); },
        [&](Controller* host, const Config::IPaintingController& section)
        { return std::make_unique<PaintingObserver>(host, context.tracker, section); });
}

void RunTutorial(const Sections& config, const ParseContext& context)
{
    using Manager = KT::Service::Tutorial::ITutorialManager;
    RunService<Manager>(
        config.ITutorialManager(), context,
        [](const Config::ITutorialManager& s) { return s.slideShow() || s.slideClick(); },
        [&](Manager* host, const Config::ITutorialManager& section)
        { return std::make_unique<TutorialObserver>(host, context.tracker, section); });
}

void RunVECommunication(const Sections& config, const ParseContext& context)
{
    RunService<VECommunicationPublisher>(
        config.VECommunicationEventPublisher(), context,
        [](const Config::VECommunicationEventPublisher& s) { return !!s.veExportRequested(); },
        [&](VECommunicationPublisher* host, const Config::VECommunicationEventPublisher& section)
        { return std::make_unique<VECommunicationObserver>(host, context.tracker, section); });
}

void RunSelector(const Sections& config, const ParseContext& context)
{
    using Selector = KT::Service::AreaSelector::ISelector;
    RunService<Selector>(
        config.ISelector(), context, [](const Config::ISelector& s) { return !!s.areaSelected(); },
        [&](Selector* host, const Config::ISelector& section)
        { return std::make_unique<SelectorObserver>(host, context.tracker, section); });
}

}  // namespace

const std::vector<InstancesSection>& InstancesSections()
{
    static const std::vector<InstancesSection> kSections = {
        {KT::TypeNameOf<KT::IScheduler>(), RunScheduler},
        {KT::TypeNameOf<KT::IDurationLimiter>(), RunDurationLimiter},
        {KT::TypeNameOf<KT::ICaptureInfo>(), RunCaptureInfo},
        {KT::TypeNameOf<KT::ICaptureMonitor>(), RunCaptureMonitor},
        {KT::TypeNameOf<KT::IConverter>(), RunConverter},
        {KT::TypeNameOf<KT::PathsSettings>(), RunPaths},
        {KT::TypeNameOf<KT::CaptureGeneralSettings>(), RunGeneral},
        {KT::TypeNameOf<KT::CaptureKeyboardSettings>(), RunKeyboard},
        {KT::TypeNameOf<KT::WatermarkSettings>(), RunWatermark},
        {KT::TypeNameOf<KT::CaptureAudioSettings>(), RunAudio},
        {KT::TypeNameOf<KT::CaptureWebCameraSettings>(), RunWebCamera},
        // Reached only by an explicit attach.
        {std::string(), RunStreaming},
        {KT::TypeNameOf<KT::HotkeySettings>(), RunHotkeys},
        {KT::TypeNameOf<KT::OverlaySettings>(), RunOverlays},
        {KT::TypeNameOf<KT::ProductSettings>(), RunProduct},
        // Reached only by an explicit attach.
        {std::string(), RunFinishAction},
        {KT::TypeNameOf<KT::ConvertationSettings>(), RunConvertation},
        {KT::TypeNameOf<KT::IUiSettings>(), RunUi},
        {KT::TypeNameOf<KT::ICaptureDurationLimitSettings>(), RunDurationLimit},
        {KT::TypeNameOf<KT::ICaptureSchedulerSettings>(), RunSchedulerSettings},
        {KT::TypeNameOf<KT::CaptureVideoSettings>(), RunVideo},
        {KT::TypeNameOf<KT::CaptureCursorSettings>(), RunCursor},
        {KT::TypeNameOf<KT::AbstractScreenshotTakerWrapper>(), RunScreenshots},
        {KT::TypeNameOf<KT::IFileManager>(), RunFiles},
        {KT::TypeNameOf<KT::Service::Sharing::AbstractSharingManager>(), RunSharing},
        {KT::TypeNameOf<KT::Service::ScreenPainting::IPaintingController>(), RunPainting},
        {KT::TypeNameOf<KT::Service::Tutorial::ITutorialManager>(), RunTutorial},
        {KT::TypeNameOf<VECommunicationPublisher>(), RunVECommunication},
        {KT::TypeNameOf<KT::Service::AreaSelector::ISelector>(), RunSelector},
    };
    return kSections;
}

}  // namespace Velkor::KT::Tracking
