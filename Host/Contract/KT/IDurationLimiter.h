#pragma once

namespace Velkor::KT
{

// The duration limiter stops a capture when the user's time limit or the schedule's end is
// reached, and warns shortly before.
class IDurationLimiterObserver
{
public:
    virtual ~IDurationLimiterObserver() = default;

    virtual void OnBeforeUserStop() = 0;
    virtual void OnBeforeScheduleStop() = 0;
    virtual void OnUserStop() = 0;
    virtual void OnScheduleStop() = 0;
};

class IDurationLimiter
{
public:
    virtual ~IDurationLimiter() = default;

    virtual void AddObserver(IDurationLimiterObserver* observer) = 0;
    virtual void RemoveObserver(IDurationLimiterObserver* observer) = 0;
};

}  // namespace Velkor::KT
