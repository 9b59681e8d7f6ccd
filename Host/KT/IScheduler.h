#pragma once

#include "KT/ObserverList.h"

namespace Velkor::KT
{

class ISchedulerObserver
{
public:
    virtual ~ISchedulerObserver() = default;

    // A scheduled capture is being started.
    virtual void OnScheduledCaptureStart() = 0;
};

class IScheduler
{
public:
    virtual ~IScheduler() = default;

    virtual void AddObserver(ISchedulerObserver* observer) = 0;
    virtual void RemoveObserver(ISchedulerObserver* observer) = 0;
};

// Reference scheduler: StartScheduledCapture() is what its timer does when a schedule is due.
class Scheduler : public ObservableService<IScheduler, ISchedulerObserver>
{
public:
    void StartScheduledCapture() { Notify(&ISchedulerObserver::OnScheduledCaptureStart); }
};

}  // namespace Velkor::KT
