#pragma once

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

}  // namespace Velkor::KT::Service::AreaSelector
