#pragma once

#include "KT/IScheduler.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

// Reference scheduler: StartScheduledCapture() is what its timer does when a schedule is due.
class Scheduler : public ObservableService<IScheduler, ISchedulerObserver>
{
public:
    void StartScheduledCapture() { Notify(&ISchedulerObserver::OnScheduledCaptureStart); }
};

}  // namespace Velkor::KT
