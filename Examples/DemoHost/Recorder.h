#pragma once

#include "App/ioPath.h"
#include "KT/CaptureTypes.h"

#include <QObject>
#include <QRect>
#include <QString>

#include <cstdint>
#include <utility>
#include <vector>

namespace Velkor::Demo
{

class HostServices;

// The time the recorder measures recordings with. It only moves when told to, so that a scripted
// session gives the same durations and sizes on every run.
class SimulatedClock
{
public:
    std::int64_t NowMicroseconds() const { return m_now; }
    void Advance(int seconds) { m_now += std::int64_t(seconds) * 1000000; }

private:
    std::int64_t m_now = 0;
};

// A recorder without a capture engine: it keeps the state a real one keeps and tells the
// services' observers what a real one tells them, in the same order. Files are named, not
// written; a recording's size grows by a fixed byte rate.
class Recorder : public QObject
{
    Q_OBJECT

public:
    enum class State
    {
        Idle,
        Recording,
        Paused,
    };

    // Bytes a second of recording takes.
    static constexpr std::int64_t kBytesPerSecond = 62500;
    // The captured screen area.
    static QRect CaptureArea() { return QRect(0, 0, 1920, 1080); }

    Recorder(HostServices& services, const SimulatedClock& clock, QObject* parent = nullptr);

    State GetState() const { return m_state; }
    const App::ioPath& LastFile() const { return m_lastFile; }

    // Commands of the user; each does nothing in a state where it makes no sense.
    void StartRecording();
    void StopRecording();
    void CancelRecording();
    void PauseRecording();
    void ResumeRecording();
    void ToggleStartStop();
    void TogglePause();
    void TakeScreenshot();
    // 0 game, 1 desktop.
    void SetCaptureMode(int mode);
    void SetWebCameraEnabled(bool enabled);
    void SetMicrophoneEnabled(bool enabled);
    void SetSystemAudioEnabled(bool enabled);
    void DrawShape(const std::string& shape);
    void RemoveInterval(int beginSeconds, int endSeconds);
    // Converts the last recording with the named output preset.
    void Save(const QString& presetName);
    void Share(int target);
    void ShowInFolder();
    void MoveToTrash();

    // What the scheduler and the duration limiter do when their time comes.
    void RunScheduledCapture();
    void ReachTimeLimit();

signals:
    void StateChanged(Velkor::Demo::Recorder::State state);
    // A recording ended normally and can be saved.
    void RecordingFinished();

private:
    std::int64_t Elapsed() const;
    std::vector<KT::CaptureSource> Sources() const;
    KT::CaptureSettings Settings() const;
    void Finish(int reason);
    void SetState(State state);

    HostServices& m_services;
    const SimulatedClock& m_clock;
    State m_state = State::Idle;
    std::int64_t m_recorded = 0;
    std::int64_t m_segmentStart = 0;
    int m_captureMode = 1;
    bool m_webCamera = false;
    bool m_microphone = true;
    bool m_systemAudio = false;
    int m_recordings = 0;
    std::int64_t m_lastSize = 0;
    App::ioPath m_lastFile;
    std::vector<std::pair<std::int64_t, std::int64_t>> m_cutIntervals;
};

}  // namespace Velkor::Demo
