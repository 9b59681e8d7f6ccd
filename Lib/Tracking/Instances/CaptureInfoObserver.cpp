#include "Tracking/Instances/CaptureInfoObserver_p.h"

#include "Tracking/Events/IKtTracker.h"
#include "Tracking/Instances/ValueCallback_p.h"
#include "Tracking/Instances/ValueTexts_p.h"

#include <algorithm>

namespace Velkor::KT::Tracking
{

namespace
{

template <class Element>
std::optional<Element> Copy(const ::xsd::cxx::tree::optional<Element>& element)
{
    return element ? std::optional<Element>(*element) : std::nullopt;
}

template <class Element>
Event Prebuilt(const std::optional<Element>& element)
{
    return element ? PrebuiltEvent(*element) : Event{};
}

std::string ColorText(const QColor& color)
{
    return color.name().toStdString();
}

void AddSettings(Event& event, const Config::CaptureSettings& config, const QRect& area,
                 const KT::CaptureSettings& settings)
{
    if (const auto& c = config.area())
    {
        Put(event, c->areaRect(), [&] { return RectText(area); });
        Put(event, c->areaSize(), [&] { return SizeText(area.size()); });
    }
    if (const auto& c = config.video())
    {
        const auto& video = settings.video;
        Put(event, c->codec(), [&] { return CodecText(video.codec); });
        Put(event, c->frameRate(), [&] { return std::to_string(video.frameRate); });
        Put(event, c->frameSize(), [&] { return SizeText(area.size()); });
        Put(event, c->captureMethod(), [&] { return CaptureMethodText(video.captureMethod); });
        Put(event, c->captureMode(), [&] { return CaptureModeText(video.captureMode); });
        Put(event, c->textureSharingEnabled(),
            [&] { return BoolText(video.textureSharingEnabled); });
        if (const auto& codec = c->codecSettings())
        {
            const auto& values = video.codecSettings;
            Put(event, codec->bitrateType(), [&] { return BitrateTypeText(values.bitrateType); });
            Put(event, codec->bitrateQuality(),
                [&] { return std::to_string(values.bitrateQuality); });
            Put(event, codec->convertationPreset(),
                [&] { return EncoderPresetText(values.convertationPreset); });
        }
    }
    if (const auto& c = config.audio())
    {
        Put(event, c->isSystem(), [&] { return BoolText(settings.audio.isSystem); });
        Put(event, c->quality(), [&] { return AudioQualityText(settings.audio.quality); });
    }
    if (const auto& c = config.effects())
    {
        const auto& effects = settings.effects;
        Put(event, c->keystrokes(), [&] { return KeystrokesText(effects.keystrokes); });
        Put(event, c->keystrokesTranslate(), [&] { return BoolText(effects.keystrokesTranslate); });
        Put(event, c->showCursor(), [&] { return BoolText(effects.showCursor); });
        Put(event, c->highlightCursor(), [&] { return BoolText(effects.highlightCursor); });
        Put(event, c->highlightCursorSize(),
            [&] { return std::to_string(effects.highlightCursorSize); });
        Put(event, c->highlightCursorColor(),
            [&] { return ColorText(effects.highlightCursorColor); });
        Put(event, c->highlightClicks(), [&] { return BoolText(effects.highlightClicks); });
        Put(event, c->highlightClicksColorLeft(),
            [&] { return ColorText(effects.highlightClicksColorLeft); });
        Put(event, c->highlightClicksColorRight(),
            [&] { return ColorText(effects.highlightClicksColorRight); });
        Put(event, c->useClickSounds(), [&] { return BoolText(effects.useClickSounds); });
        Put(event, c->customClickDownSound(),
            [&] { return effects.customClickDownSound.toStdString(); });
        Put(event, c->volumeClickSound(), [&] { return std::to_string(effects.volumeClickSound); });
    }
    if (const auto& c = config.webCamera())
    {
        const auto& camera = settings.webCamera;
        Put(event, c->captureResolution(), [&] { return SizeText(camera.captureResolution); });
        Put(event, c->frameRate(), [&] { return std::to_string(camera.frameRate); });
        Put(event, c->pipPosition(), [&] { return PipPositionText(camera.pipPosition); });
        Put(event, c->pipSize(), [&] { return std::to_string(camera.pipSize); });
        Put(event, c->pipShape(), [&] { return PipShapeText(camera.pipShape); });
    }
    if (const auto& c = config.streaming())
    {
        const auto& streaming = settings.streaming;
        Put(event, c->serviceName(), [&] { return streaming.serviceName.toStdString(); });
        Put(event, c->serverName(), [&] { return streaming.serverName.toStdString(); });
        Put(event, c->fileRecordingEnabled(),
            [&] { return BoolText(streaming.fileRecordingEnabled); });
    }
}

std::string Joined(const std::vector<std::string>& parts, const char* empty)
{
    if (parts.empty())
    {
        return empty;
    }
    std::string text = parts.front();
    for (std::size_t i = 1; i < parts.size(); ++i)
    {
        text += "_" + parts[i];
    }
    return text;
}

}  // namespace

CaptureInfoObserver::CaptureInfoObserver(KT::ICaptureInfo* service, IKtTracker* tracker,
                                         const Config::ICaptureInfo& section,
                                         AcceleratorProperties accelerators)
    : AttachedObserver(service, tracker),
      m_start(Copy(section.start())),
      m_pause(Copy(section.pause())),
      m_resume(Copy(section.resume())),
      m_stop(Copy(section.stop())),
      m_cancel(Copy(section.cancel())),
      m_error(Copy(section.error())),
      m_startEvent(Prebuilt(m_start)),
      m_pauseEvent(Prebuilt(m_pause)),
      m_resumeEvent(Prebuilt(m_resume)),
      m_stopEvent(Prebuilt(m_stop)),
      m_cancelEvent(Prebuilt(m_cancel)),
      m_errorEvent(Prebuilt(m_error)),
      m_accelerators(std::move(accelerators))
{
}

std::string CaptureInfoObserver::RecordingType(const QRect& area,
                                               const std::vector<KT::CaptureSource>& sources)
{
    const bool webCamera = std::any_of(sources.begin(), sources.end(),
                                       [](const KT::CaptureSource& source)
                                       { return source.deviceType == KT::kWebCamera; });
    const bool audio = std::any_of(sources.begin(), sources.end(),
                                   [](const KT::CaptureSource& source)
                                   { return (source.deviceType & KT::kAudioDevice) != 0; });
    if (area.isEmpty() && !webCamera && !audio)
    {
        return "UNKNOWN";
    }
    if (area.isEmpty())
    {
        return webCamera ? "WEB_CAMERA_CAPTURING" : "AUDIO_CAPTURING";
    }
    return "CAPTURING";
}

void CaptureInfoObserver::Complete(Event& event, const Config::CaptureInfoEvent& element) const
{
    Put(event, element.captureType(), [&] { return CaptureTypeText(m_service->GetCaptureType()); });
    Put(event, element.captureRecordingType(),
        [&]
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            return m_recordingType;
        });
    Put(event, element.duration(),
        [&] { return std::to_string(m_service->GetCaptureDuration() / 1000000); });
}

void CaptureInfoObserver::AddSources(Event& event, const std::string& key,
                                     const std::vector<KT::CaptureSource>& sources,
                                     bool start) const
{
    std::string all;
    std::vector<std::string> audio;
    std::vector<std::string> video;
    bool noiseControl = false;
    for (const KT::CaptureSource& source : sources)
    {
        if ((source.deviceType & KT::kAudioDevice) != 0)
        {
            if (m_service->GetLevel(source) != 0)
            {
                audio.push_back(DeviceTypeText(source.deviceType));
                all += audio.back() + "_";
                noiseControl = noiseControl || source.noiseControl;
            }
        }
        else if ((source.deviceType & KT::kVideoDevice) != 0 && start)
        {
            video.push_back(DeviceTypeText(source.deviceType));
            all += video.back() + "_";
        }
    }
    event.params[key] = all.empty() ? "NONE" : all;
    event.params["AUDIO_SOURCES"] = Joined(audio, "");
    if (start)
    {
        event.params["VIDEO_SOURCES"] = Joined(video, "NONE");
        event.params["NOISE_CONTROL"] = BoolText(noiseControl);
    }
}

void CaptureInfoObserver::OnCaptureStarted(const QRect& area, const KT::CaptureSettings& settings,
                                           const std::vector<KT::CaptureSource>& sources,
                                           const KT::Project& project)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_recordingType = RecordingType(area, sources);
    }
    if (!m_start || m_startEvent.name.empty())
    {
        return;
    }
    Event event = m_startEvent;
    Complete(event, *m_start);
    if (const auto& c = m_start->project())
    {
        Put(event, c->size(), [&] { return std::to_string(project.size); });
    }
    if (const auto& c = m_start->settings())
    {
        AddSettings(event, *c, area, settings);
    }
    if (const auto& c = m_start->providers(); c && c->deviceType())
    {
        AddSources(event, *c->deviceType(), sources, true);
    }
    if (m_accelerators)
    {
        m_accelerators(event.params);
    }
    m_tracker->Track(event);
}

void CaptureInfoObserver::Simple(const std::optional<Config::CaptureInfoEvent>& element,
                                 const Event& prebuilt)
{
    if (!element || prebuilt.name.empty())
    {
        return;
    }
    Event event = prebuilt;
    Complete(event, *element);
    m_tracker->Track(event);
}

void CaptureInfoObserver::OnCapturePaused(int flag)
{
    if (flag == 0)
    {
        Simple(m_pause, m_pauseEvent);
    }
}

void CaptureInfoObserver::OnCaptureResumed()
{
    Simple(m_resume, m_resumeEvent);
}

void CaptureInfoObserver::OnCaptureStopped(int reason, const KT::Project& project,
                                           const std::vector<KT::CaptureSource>& sources)
{
    if (reason == KT::kCaptureCanceled)
    {
        Simple(m_cancel, m_cancelEvent);
        return;
    }
    if (!m_stop || m_stopEvent.name.empty())
    {
        return;
    }
    Event event = m_stopEvent;
    Complete(event, *m_stop);
    if (const auto& c = m_stop->project())
    {
        Put(event, c->size(), [&] { return std::to_string(project.size); });
    }
    if (const auto& c = m_stop->providers(); c && c->deviceType())
    {
        AddSources(event, *c->deviceType(), sources, false);
    }
    m_tracker->Track(event);
}

void CaptureInfoObserver::OnCaptureError()
{
    Simple(m_error, m_errorEvent);
}

}  // namespace Velkor::KT::Tracking
