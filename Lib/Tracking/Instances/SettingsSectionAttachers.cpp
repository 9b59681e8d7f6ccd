#include "Tracking/Instances/SettingsSectionAttachers_p.h"

#include "KT/ProductSettings.h"
#include "KT/SettingsKinds.h"
#include "Tracking/Instances/AttachedObserver_p.h"
#include "Tracking/Instances/SettingsObserver_p.h"
#include "Tracking/Instances/ValueCallback_p.h"
#include "Tracking/Instances/ValueTexts_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <functional>
#include <map>
#include <memory>

namespace Velkor::KT::Tracking
{

namespace
{

using Sections = Config::Instances;

// A field of a settings section: its name in the host's settings object and how its callback
// is built from the section.
template <class Section>
struct Field
{
    const char* name;
    std::function<ValueCallback(const Section&)> build;
};

template <class Host, class Section>
void AttachSettings(const ::xsd::cxx::tree::optional<Section>& section, const ParseContext& context,
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

}  // namespace

void AttachPaths(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::PathsSettings>(config.PathsSettings(), context,
                                      {KT_FIELD(PathsSettings, screenshotFileExt, kText)});
}

void AttachGeneral(const Sections& config, const ParseContext& context)
{
    const Converter triState = Convert::Enum(TriStateText);
    AttachSettings<KT::CaptureGeneralSettings>(
        config.CaptureGeneralSettings(), context,
        {KT_FIELD(CaptureGeneralSettings, separateStreamsEnabled, triState),
         KT_FIELD(CaptureGeneralSettings, isIndicatorVisible, triState)});
}

void AttachKeyboard(const Sections& config, const ParseContext& context)
{
    const Converter keystrokes = Convert::Enum(KeystrokesText);
    AttachSettings<KT::CaptureKeyboardSettings>(
        config.CaptureKeyboardSettings(), context,
        {KT_FIELD(CaptureKeyboardSettings, recordKeystrokes, keystrokes)});
}

void AttachWatermark(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::WatermarkSettings>(config.WatermarkSettings(), context,
                                          {KT_FIELD(WatermarkSettings, isWatermarkVisible, kFlag)});
}

void AttachAudio(const Sections& config, const ParseContext& context)
{
    const Converter quality = Convert::Enum(AudioQualityText);
    AttachSettings<KT::CaptureAudioSettings>(
        config.CaptureAudioSettings(), context,
        {KT_FIELD(CaptureAudioSettings, audioQuality, quality)});
}

void AttachWebCamera(const Sections& config, const ParseContext& context)
{
    const Converter position = Convert::Enum(PipPositionText);
    AttachSettings<KT::CaptureWebCameraSettings>(
        config.CaptureWebCameraSettings(), context,
        {KT_FIELD(CaptureWebCameraSettings, captureDeviceUid, kText),
         KT_FIELD(CaptureWebCameraSettings, captureResolution, kSize),
         KT_FIELD(CaptureWebCameraSettings, frameRate, kDecimal),
         KT_FIELD(CaptureWebCameraSettings, pipPosition, position),
         KT_FIELD(CaptureWebCameraSettings, pipSize, kDecimal)});
}

void AttachStreaming(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::CaptureStreamingSettings>(
        config.CaptureStreamingSettings(), context,
        {KT_FIELD(CaptureStreamingSettings, serviceName, kText),
         KT_FIELD(CaptureStreamingSettings, serverName, kText)});
}

void AttachHotkeys(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::HotkeySettings>(
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

void AttachOverlays(const Sections& config, const ParseContext& context)
{
    const Converter position = Convert::Enum(OverlayPositionText);
    const Converter drawing = Convert::Enum(DrawingTypeText);
    AttachSettings<KT::OverlaySettings>(
        config.OverlaySettings(), context,
        {KT_FIELD(OverlaySettings, fpsOverlayEnabled, kFlag),
         KT_FIELD(OverlaySettings, recordingTimeOverlayEnabled, kFlag),
         KT_FIELD(OverlaySettings, freeDiskSpaceOverlayEnabled, kFlag),
         KT_FIELD(OverlaySettings, projectSizeOverlayEnabled, kFlag),
         KT_FIELD(OverlaySettings, gapiOverlayEnabled, kFlag),
         KT_FIELD(OverlaySettings, overlayPosition, position),
         KT_FIELD(OverlaySettings, drawingType, drawing),
         KT_FIELD(OverlaySettings, shortcutsOverlayEnabled, kFlag)});
}

void AttachProduct(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::ProductSettings>(config.ProductSettings(), context,
                                        {KT_FIELD(ProductSettings, autoUpdateEnabled, kFlag),
                                         KT_FIELD(ProductSettings, statisticsEnabled, kFlag),
                                         KT_FIELD(ProductSettings, autoStartEnabled, kFlag),
                                         KT_FIELD(ProductSettings, currentLocale, kText)});
}

void AttachFinishAction(const Sections& config, const ParseContext& context)
{
    const Converter action = Convert::Enum(FinishActionText);
    AttachSettings<KT::CaptureFinishActionSettings>(
        config.CaptureFinishActionSettings(), context,
        {KT_FIELD(CaptureFinishActionSettings, finishAction, action)});
}

void AttachConvertation(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::ConvertationSettings>(
        config.ConvertationSettings(), context,
        {KT_FIELD(ConvertationSettings, hyperPassEnabled, kFlag),
         KT_FIELD(ConvertationSettings, deleteProject, kFlag),
         KT_FIELD(ConvertationSettings, screenshotQuality, kDecimal)});
}

void AttachUi(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::IUiSettings>(config.IUiSettings(), context,
                                    {KT_FIELD(IUiSettings, showCountdown, kFlag),
                                     KT_FIELD(IUiSettings, disableCaptureFrameBlinking, kFlag),
                                     KT_FIELD(IUiSettings, showCapturePanel, kFlag),
                                     KT_FIELD(IUiSettings, soundNotificationEnabled, kFlag),
                                     KT_FIELD(IUiSettings, webCameraOverlayEnabled, kFlag)});
}

void AttachDurationLimit(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::ICaptureDurationLimitSettings>(
        config.IDurationLimitSettings(), context,
        {KT_FIELD(IDurationLimitSettings, limitEnabled, kFlag),
         KT_FIELD(IDurationLimitSettings, limit, kDecimal)});
}

void AttachSchedulerSettings(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::ICaptureSchedulerSettings>(
        config.ISchedulerSettings(), context,
        {KT_FIELD(ISchedulerSettings, schedulerEnabled, kFlag)});
}

void AttachVideo(const Sections& config, const ParseContext& context)
{
    const Converter codec = Convert::Enum(CodecText);
    const Converter scale = Convert::Enum(FrameScaleText);
    const Converter method = Convert::Enum(CaptureMethodText);
    AttachSettings<KT::CaptureVideoSettings>(
        config.IVideoSettings(), context,
        {KT_FIELD(IVideoSettings, codec, codec), KT_FIELD(IVideoSettings, frameRate, kDecimal),
         KT_FIELD(IVideoSettings, frameSize, scale),
         KT_FIELD(IVideoSettings, captureMethod, method),
         Field<Config::IVideoSettings>{
             "codecSettings", [](const Config::IVideoSettings& s)
             { return IfPresent(s.codecSettings(), CodecSettingsCallback); }},
         KT_FIELD(IVideoSettings, textureSharingEnabled, kFlag)});
}

void AttachCursor(const Sections& config, const ParseContext& context)
{
    AttachSettings<KT::CaptureCursorSettings>(
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

}  // namespace Velkor::KT::Tracking
