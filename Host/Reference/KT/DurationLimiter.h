#pragma once

#include "KT/IDurationLimiter.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

// Reference duration limiter: its timers call the warning and stopping operations.
class DurationLimiter : public ObservableService<IDurationLimiter, IDurationLimiterObserver>
{
public:
    void WarnUserLimit() { Notify(&IDurationLimiterObserver::OnBeforeUserStop); }
    void WarnScheduleEnd() { Notify(&IDurationLimiterObserver::OnBeforeScheduleStop); }
    void StopByUserLimit() { Notify(&IDurationLimiterObserver::OnUserStop); }
    void StopBySchedule() { Notify(&IDurationLimiterObserver::OnScheduleStop); }
};

}  // namespace Velkor::KT
