#pragma once

#include "KT/ObserverList.h"
#include "KT/Service/ISelector.h"

#include <QRect>

namespace Velkor::KT::Service::AreaSelector
{

// Reference area selector: Select() is what the selection frame does when the user confirms.
class Selector : public ObservableService<ISelector, ISelectorObserver>
{
public:
    void Select(const QRect& area) { Notify(&ISelectorObserver::OnAreaSelected, area); }
};

}  // namespace Velkor::KT::Service::AreaSelector
