#pragma once

#include "KT/ICaptureMonitor.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

// Reference capture monitor: the capture controller reports a full drive or a lost device.
class CaptureMonitor : public ObservableService<ICaptureMonitor, ICaptureMonitorObserver>
{
public:
    void ReportDriveFull() { Notify(&ICaptureMonitorObserver::OnOverflowDrive); }
    void ReportDeviceDisconnected() { Notify(&ICaptureMonitorObserver::OnDeviceDisconnect); }
};

}  // namespace Velkor::KT
