#pragma once

#include "KT/ObserverList.h"

#include <QRect>

namespace Velkor::KT::Service::AreaSelector
{

class ISelectorObserver
{
public:
    virtual ~ISelectorObserver() = default;

    // The user chose a capture area, in screen coordinates.
    virtual void OnAreaSelected(const QRect& area) = 0;
};

class ISelector
{
public:
    virtual ~ISelector() = default;

    virtual void AddObserver(ISelectorObserver* observer) = 0;
    virtual void RemoveObserver(ISelectorObserver* observer) = 0;
};

class Selector : public ObservableService<ISelector, ISelectorObserver>
{
public:
    void Select(const QRect& area) { Notify(&ISelectorObserver::OnAreaSelected, area); }
};

}  // namespace Velkor::KT::Service::AreaSelector
