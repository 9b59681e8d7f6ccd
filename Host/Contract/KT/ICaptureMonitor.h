#pragma once

namespace Velkor::KT
{

class ICaptureMonitorObserver
{
public:
    virtual ~ICaptureMonitorObserver() = default;

    // The capture was stopped because the drive is full.
    virtual void OnOverflowDrive() = 0;
    // A capture device went away during a capture.
    virtual void OnDeviceDisconnect() = 0;
};

class ICaptureMonitor
{
public:
    virtual ~ICaptureMonitor() = default;

    virtual void AddObserver(ICaptureMonitorObserver* observer) = 0;
    virtual void RemoveObserver(ICaptureMonitorObserver* observer) = 0;
};

}  // namespace Velkor::KT
