#pragma once

#include "KT/ObserverList.h"
#include "KT/Service/IPaintingController.h"

#include <string>

namespace Velkor::KT::Service::ScreenPainting
{

// Reference painting controller: the drawing tools report the shapes they add and remove.
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
