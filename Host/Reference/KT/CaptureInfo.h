#pragma once

#include "KT/ICaptureInfo.h"
#include "KT/ObserverList.h"

#include <QRect>

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace Velkor::KT
{

// Reference capture service: the recorder's capture controller calls the notifying operations
// and keeps the getters' values up to date.
class CaptureInfo : public ObservableService<ICaptureInfo, ICaptureInfoObserver>
{
public:
    int GetCaptureType() const override { return m_captureType.load(); }
    std::int64_t GetCaptureDuration() const override { return m_duration.load(); }
    int GetLevel(const CaptureSource& source) const override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_levels.find(source.id);
        return found == m_levels.end() ? 0 : found->second;
    }

    void SetCaptureType(int type) { m_captureType.store(type); }
    void SetCaptureDuration(std::int64_t microseconds) { m_duration.store(microseconds); }
    void SetLevel(const std::string& sourceId, int level)
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_levels[sourceId] = level;
    }

    void Start(const QRect& area, const CaptureSettings& settings,
               const std::vector<CaptureSource>& sources, const Project& project)
    {
        Notify(&ICaptureInfoObserver::OnCaptureStarted, area, settings, sources, project);
    }
    void Pause(int flag) { Notify(&ICaptureInfoObserver::OnCapturePaused, flag); }
    void Resume() { Notify(&ICaptureInfoObserver::OnCaptureResumed); }
    void Stop(int reason, const Project& project, const std::vector<CaptureSource>& sources)
    {
        Notify(&ICaptureInfoObserver::OnCaptureStopped, reason, project, sources);
    }
    void Fail() { Notify(&ICaptureInfoObserver::OnCaptureError); }

private:
    std::atomic<int> m_captureType{0};
    std::atomic<std::int64_t> m_duration{0};
    mutable std::mutex m_mutex;
    std::map<std::string, int> m_levels;
};

}  // namespace Velkor::KT
