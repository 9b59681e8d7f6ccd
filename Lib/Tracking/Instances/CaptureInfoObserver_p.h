#pragma once

#include "KT/ICaptureInfo.h"
#include "Tracking/Instances/AttachedObserver_p.h"
#include "Tracking/Instances/ParseContext_p.h"

#include "Tracking/Config/KtmStat.hxx"

#include <mutex>
#include <optional>
#include <string>

namespace Velkor::KT::Tracking
{

// Observer of the capture service. Each event gets, after its fixed params: the capture type,
// the recording type of the latest start (empty before the first), and the duration in whole
// seconds (microseconds / 1,000,000, truncated toward zero), each only where its key is set.
//
// Text forms chosen here:
// - project size: bytes, decimal;
// - colours: "#rrggbb"; click sound: its name as given; counts, rates and sizes in pixels:
//   decimal;
// - sources (`providers`): the configured key receives every contributing source's device text
//   followed by "_" (audio sources with a non-zero level; video sources on a start only), or
//   "NONE" when none contributes. Beside it, "AUDIO_SOURCES" receives the audio device texts
//   joined by "_" (empty when there is none); on a start also "VIDEO_SOURCES" receives the video
//   device texts joined by "_" ("NONE" when there is none) and "NOISE_CONTROL" "YES" when a
//   contributing audio source has noise suppression on, else "NO".
class CaptureInfoObserver : public AttachedObserver<KT::ICaptureInfo, KT::ICaptureInfoObserver>
{
public:
    CaptureInfoObserver(KT::ICaptureInfo* service, IKtTracker* tracker,
                        const Config::ICaptureInfo& section, AcceleratorProperties accelerators);

    void OnCaptureStarted(const QRect& area, const KT::CaptureSettings& settings,
                          const std::vector<KT::CaptureSource>& sources,
                          const KT::Project& project) override;
    void OnCapturePaused(int flag) override;
    void OnCaptureResumed() override;
    void OnCaptureStopped(int reason, const KT::Project& project,
                          const std::vector<KT::CaptureSource>& sources) override;
    void OnCaptureError() override;

    // "UNKNOWN", "WEB_CAMERA_CAPTURING", "AUDIO_CAPTURING" or "CAPTURING".
    static std::string RecordingType(const QRect& area,
                                     const std::vector<KT::CaptureSource>& sources);

private:
    void Complete(Event& event, const Config::CaptureInfoEvent& element) const;
    void Simple(const std::optional<Config::CaptureInfoEvent>& element, const Event& prebuilt);
    void AddSources(Event& event, const std::string& key,
                    const std::vector<KT::CaptureSource>& sources, bool start) const;

    std::optional<Config::CaptureStartEvent> m_start;
    std::optional<Config::CaptureInfoEvent> m_pause;
    std::optional<Config::CaptureInfoEvent> m_resume;
    std::optional<Config::CaptureStopEvent> m_stop;
    std::optional<Config::CaptureInfoEvent> m_cancel;
    std::optional<Config::CaptureInfoEvent> m_error;
    Event m_startEvent;
    Event m_pauseEvent;
    Event m_resumeEvent;
    Event m_stopEvent;
    Event m_cancelEvent;
    Event m_errorEvent;
    const AcceleratorProperties m_accelerators;

    mutable std::mutex m_mutex;
    std::string m_recordingType;
};

}  // namespace Velkor::KT::Tracking
