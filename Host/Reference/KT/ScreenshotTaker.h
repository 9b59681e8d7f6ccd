#pragma once

#include "KT/AbstractScreenshotTakerWrapper.h"
#include "KT/ObserverList.h"

namespace Velkor::KT
{

// Reference screenshot taker: reports how each screenshot ended, by destination.
class ScreenshotTaker
    : public ObservableService<AbstractScreenshotTakerWrapper, IScreenshotTakerObserver>
{
public:
    void Succeed(int destination) { Notify(&IScreenshotTakerObserver::OnSuccess, destination); }
    void Fail(int destination) { Notify(&IScreenshotTakerObserver::OnError, destination); }
    void Cancel(int destination) { Notify(&IScreenshotTakerObserver::OnCanceled, destination); }
};

}  // namespace Velkor::KT
