#include "Recorder.h"

#include "HostServices.h"

#include <QDir>

namespace Velkor::Demo
{

namespace
{

int IntSetting(const KT::ObservableSettings& settings, const std::string& field, int index = 0)
{
    const QVariantList value = settings.Get(field);
    return index < value.size() ? value.at(index).toInt() : 0;
}

bool FlagSetting(const KT::ObservableSettings& settings, const std::string& field)
{
    const QVariantList value = settings.Get(field);
    return !value.isEmpty() && value.first().toBool();
}

const char kMicrophoneId[] = "microphone-1";
const char kSystemAudioId[] = "system-audio";

}  // namespace

Recorder::Recorder(HostServices& services, const SimulatedClock& clock, QObject* parent)
    : QObject(parent), m_services(services), m_clock(clock)
{
}

std::int64_t Recorder::Elapsed() const
{
    return m_recorded +
           (m_state == State::Recording ? m_clock.NowMicroseconds() - m_segmentStart : 0);
}

std::vector<KT::CaptureSource> Recorder::Sources() const
{
    std::vector<KT::CaptureSource> sources{{KT::kScreen, "screen-1", false}};
    if (m_webCamera)
    {
        sources.push_back({KT::kWebCamera, "webcam-1", false});
    }
    if (m_microphone)
    {
        sources.push_back({KT::kMicrophone, kMicrophoneId, true});
    }
    if (m_systemAudio)
    {
        sources.push_back({KT::kSystemAudio, kSystemAudioId, false});
    }
    return sources;
}

KT::CaptureSettings Recorder::Settings() const
{
    KT::CaptureSettings settings;
    const auto& video = m_services.video;
    settings.video.codec = IntSetting(video, "codec");
    settings.video.frameRate = IntSetting(video, "frameRate");
    settings.video.captureMethod = IntSetting(video, "captureMethod");
    settings.video.captureMode = m_captureMode;
    settings.video.textureSharingEnabled = FlagSetting(video, "textureSharingEnabled");
    settings.video.codecSettings = {IntSetting(video, "codecSettings", 0),
                                    IntSetting(video, "codecSettings", 1),
                                    IntSetting(video, "codecSettings", 2)};
    settings.audio.isSystem = m_systemAudio;
    settings.audio.quality = IntSetting(m_services.audio, "audioQuality");
    const auto& cursor = m_services.cursor;
    settings.effects.keystrokes = FlagSetting(m_services.keyboard, "recordKeystrokes") ? 1 : 0;
    settings.effects.showCursor = FlagSetting(cursor, "cursorEnabled");
    settings.effects.highlightCursor = FlagSetting(cursor, "cursorHighlightEnabled");
    settings.effects.highlightCursorSize = IntSetting(cursor, "cursorHighlightSize");
    settings.effects.highlightCursorColor =
        cursor.Get("cursorHighlightColor").value(0).value<QColor>();
    settings.effects.highlightClicks = FlagSetting(cursor, "clicksHighlightEnabled");
    settings.effects.highlightClicksColorLeft =
        cursor.Get("leftClicksHighlightColor").value(0).value<QColor>();
    settings.effects.highlightClicksColorRight =
        cursor.Get("rightClicksHighlightColor").value(0).value<QColor>();
    settings.effects.useClickSounds = FlagSetting(cursor, "useClickSounds");
    settings.effects.customClickDownSound = cursor.Get("customClickDownSound").value(0).toString();
    settings.effects.volumeClickSound = IntSetting(cursor, "volumeClick");
    const auto& webCamera = m_services.webCamera;
    settings.webCamera.captureResolution = webCamera.Get("captureResolution").value(0).toSize();
    settings.webCamera.frameRate = IntSetting(webCamera, "frameRate");
    settings.webCamera.pipPosition = IntSetting(webCamera, "pipPosition");
    settings.webCamera.pipSize = IntSetting(webCamera, "pipSize");
    return settings;
}

void Recorder::SetState(State state)
{
    m_state = state;
    emit StateChanged(state);
}

void Recorder::StartRecording()
{
    if (m_state != State::Idle)
    {
        return;
    }
    m_recorded = 0;
    m_segmentStart = m_clock.NowMicroseconds();
    m_cutIntervals.clear();
    auto& capture = m_services.captureInfo;
    capture.SetCaptureType(0);
    capture.SetCaptureDuration(0);
    capture.SetLevel(kMicrophoneId, m_microphone ? 1 : 0);
    capture.SetLevel(kSystemAudioId, m_systemAudio ? 1 : 0);
    m_state = State::Recording;
    capture.Start(CaptureArea(), Settings(), Sources(), KT::Project{0});
    emit StateChanged(m_state);
}

void Recorder::Finish(int reason)
{
    if (m_state == State::Idle)
    {
        return;
    }
    const std::int64_t elapsed = Elapsed();
    m_recorded = elapsed;
    m_state = State::Idle;
    m_lastSize = elapsed / 1000000 * kBytesPerSecond;
    m_services.captureInfo.SetCaptureDuration(elapsed);
    m_services.captureInfo.Stop(reason, KT::Project{m_lastSize}, Sources());
    emit StateChanged(m_state);
    if (reason == KT::kCaptureFinished)
    {
        ++m_recordings;
        emit RecordingFinished();
    }
}

void Recorder::StopRecording()
{
    Finish(KT::kCaptureFinished);
}

void Recorder::CancelRecording()
{
    Finish(KT::kCaptureCanceled);
}

void Recorder::PauseRecording()
{
    if (m_state != State::Recording)
    {
        return;
    }
    m_recorded = Elapsed();
    m_state = State::Paused;
    m_services.captureInfo.SetCaptureDuration(m_recorded);
    m_services.captureInfo.Pause(0);
    emit StateChanged(m_state);
}

void Recorder::ResumeRecording()
{
    if (m_state != State::Paused)
    {
        return;
    }
    m_segmentStart = m_clock.NowMicroseconds();
    m_state = State::Recording;
    m_services.captureInfo.SetCaptureDuration(m_recorded);
    m_services.captureInfo.Resume();
    emit StateChanged(m_state);
}

void Recorder::ToggleStartStop()
{
    if (m_state == State::Idle)
    {
        StartRecording();
    }
    else
    {
        StopRecording();
    }
}

void Recorder::TogglePause()
{
    if (m_state == State::Recording)
    {
        PauseRecording();
    }
    else
    {
        ResumeRecording();
    }
}

void Recorder::TakeScreenshot()
{
    m_services.screenshotTaker.Succeed(0);
}

void Recorder::SetCaptureMode(int mode)
{
    m_captureMode = mode;
}

void Recorder::SetWebCameraEnabled(bool enabled)
{
    m_webCamera = enabled;
}

void Recorder::SetMicrophoneEnabled(bool enabled)
{
    m_microphone = enabled;
}

void Recorder::SetSystemAudioEnabled(bool enabled)
{
    m_systemAudio = enabled;
}

void Recorder::DrawShape(const std::string& shape)
{
    m_services.painting.AddShape(shape);
}

void Recorder::RemoveInterval(int beginSeconds, int endSeconds)
{
    m_cutIntervals.emplace_back(std::int64_t(beginSeconds) * 1000000,
                                std::int64_t(endSeconds) * 1000000);
}

void Recorder::Save(const QString& presetName)
{
    if (m_recordings == 0)
    {
        return;
    }
    const App::ioPath videos(QDir(m_services.dataDirectory).filePath("Videos"));
    m_services.fileManager.CreateDirectories(videos);
    m_lastFile = videos / QString("Recording %1.mp4").arg(m_recordings);

    KT::ConvertationContext context;
    context.project.size = m_lastSize;
    context.outputFilePath = m_lastFile.ToQString();
    context.preset.name = presetName.toStdString();
    context.preset.properties.put("$$VIDEO_CODEC$$.codec_id", "h264");
    context.preset.properties.put("$$AUDIO_CODEC$$.codec_id", "aac");
    context.preset.properties.put("container", "mp4");
    context.cutIntervals = m_cutIntervals;

    auto& converter = m_services.converter;
    converter.SetAccelerationType(m_services.convertationSettings->IsHyperPassEnabled() ? 1 : 0);
    converter.Start(context);
    converter.Progress(50);
    converter.Progress(100);
    converter.Finish(0);
}

void Recorder::Share(int target)
{
    if (m_lastFile.IsEmpty())
    {
        return;
    }
    auto& manager = target == kShareOnYouTube ? m_services.youTubeSharing : m_services.emailSharing;
    manager.Finish(m_lastFile, true);
}

void Recorder::ShowInFolder()
{
    if (!m_lastFile.IsEmpty())
    {
        m_services.fileManager.Explore(m_lastFile);
    }
}

void Recorder::MoveToTrash()
{
    if (!m_lastFile.IsEmpty())
    {
        m_services.fileManager.MoveToTrash(m_lastFile);
        m_lastFile = App::ioPath();
    }
}

void Recorder::RunScheduledCapture()
{
    if (m_state == State::Idle)
    {
        m_services.scheduler.StartScheduledCapture();
        StartRecording();
    }
}

void Recorder::ReachTimeLimit()
{
    if (m_state != State::Idle)
    {
        m_services.durationLimiter.WarnUserLimit();
        m_services.durationLimiter.StopByUserLimit();
        StopRecording();
    }
}

}  // namespace Velkor::Demo
