#pragma once

namespace Velkor::App
{

// What kind of launch of the application this is.
class ILaunchTypeProcessor
{
public:
    enum LaunchType
    {
        // The first start on this machine (or the first after an update to a new major version).
        FirstStart = 1,
        // An ordinary start: the same version ran before.
        EveryStart = 2,
        // The first start after an update that kept the major version.
        FirstStartAfterMinorUpdate = 3,
    };

    virtual ~ILaunchTypeProcessor() = default;

    // One of LaunchType; hosts may answer other values, which count as an ordinary start.
    virtual int GetLaunchType() const = 0;
};

}  // namespace Velkor::App
