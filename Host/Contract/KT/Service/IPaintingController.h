#pragma once

#include <string>

namespace Velkor::KT::Service::ScreenPainting
{

// Drawing on the screen during a capture; shapes are named by their tool ("ARROW", "PEN", ...).
class IPaintingObserver
{
public:
    virtual ~IPaintingObserver() = default;

    virtual void OnShapeAdded(const std::string& shape) = 0;
    virtual void OnShapeRemoved(const std::string& shape) = 0;
};

class IPaintingController
{
public:
    virtual ~IPaintingController() = default;

    virtual void AddObserver(IPaintingObserver* observer) = 0;
    virtual void RemoveObserver(IPaintingObserver* observer) = 0;
};

}  // namespace Velkor::KT::Service::ScreenPainting
