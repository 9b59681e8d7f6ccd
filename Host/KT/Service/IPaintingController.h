#pragma once

#include "KT/ObserverList.h"

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

class PaintingController : public ObservableService<IPaintingController, IPaintingObserver>
{
public:
    void AddShape(const std::string& shape) { Notify(&IPaintingObserver::OnShapeAdded, shape); }
    void RemoveShape(const std::string& shape)
    {
        Notify(&IPaintingObserver::OnShapeRemoved, shape);
    }
};

}  // namespace Velkor::KT::Service::ScreenPainting
