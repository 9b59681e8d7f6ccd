#pragma once

namespace Velkor::KT::Tracking::BadMemoryManagment
{

// An observer attached to one host object by the instances handler.
class IObserver
{
public:
    virtual ~IObserver() = default;

    // Removes the observer from the object it was attached to. Called at most once, and only
    // while that object is alive.
    virtual void Detach() = 0;
};

}  // namespace Velkor::KT::Tracking::BadMemoryManagment
