#pragma once

#include "KT/CaptureTypes.h"

#include <QRect>

#include <cstdint>
#include <vector>

namespace Velkor::KT
{

// Stop reasons of a capture: 0 finished normally, 1 cancelled by the user; other values are
// failures of the host's own numbering.
enum CaptureStopReason : int
{
    kCaptureFinished = 0,
    kCaptureCanceled = 1,
};

class ICaptureInfoObserver
{
public:
    virtual ~ICaptureInfoObserver() = default;

    // `area` is the captured screen area, empty for a capture without screen (camera or audio
    // only); `sources` are the devices captured, in the order the capture uses them.
    virtual void OnCaptureStarted(const QRect& area, const CaptureSettings& settings,
                                  const std::vector<CaptureSource>& sources,
                                  const Project& project) = 0;
    // `flag` is zero for a pause asked for by the user, non-zero for an internal one.
    virtual void OnCapturePaused(int flag) = 0;
    virtual void OnCaptureResumed() = 0;
    virtual void OnCaptureStopped(int reason, const Project& project,
                                  const std::vector<CaptureSource>& sources) = 0;
    virtual void OnCaptureError() = 0;
};

class ICaptureInfo
{
public:
    virtual ~ICaptureInfo() = default;

    virtual void AddObserver(ICaptureInfoObserver* observer) = 0;
    virtual void RemoveObserver(ICaptureInfoObserver* observer) = 0;

    // 0 recording to a file, 1 streaming.
    virtual int GetCaptureType() const = 0;
    // Length of the current capture, in microseconds.
    virtual std::int64_t GetCaptureDuration() const = 0;
    // The signal level of a source; zero for a silent or unknown one.
    virtual int GetLevel(const CaptureSource& source) const = 0;
};

}  // namespace Velkor::KT
