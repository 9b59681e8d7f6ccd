#pragma once

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

}  // namespace Velkor::KT
