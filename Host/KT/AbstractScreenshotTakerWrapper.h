#pragma once

#include "KT/ObserverList.h"

namespace Velkor::KT
{

// Screenshot destinations: 0 a file on disk, 1 the clipboard.
class IScreenshotTakerObserver
{
public:
    virtual ~IScreenshotTakerObserver() = default;

    virtual void OnSuccess(int destination) = 0;
    virtual void OnError(int destination) = 0;
    virtual void OnCanceled(int destination) = 0;
};

class AbstractScreenshotTakerWrapper
{
public:
    virtual ~AbstractScreenshotTakerWrapper() = default;

    virtual void AddObserver(IScreenshotTakerObserver* observer) = 0;
    virtual void RemoveObserver(IScreenshotTakerObserver* observer) = 0;
};

class ScreenshotTaker
    : public ObservableService<AbstractScreenshotTakerWrapper, IScreenshotTakerObserver>
{
public:
    void Succeed(int destination) { Notify(&IScreenshotTakerObserver::OnSuccess, destination); }
    void Fail(int destination) { Notify(&IScreenshotTakerObserver::OnError, destination); }
    void Cancel(int destination) { Notify(&IScreenshotTakerObserver::OnCanceled, destination); }
};

}  // namespace Velkor::KT
