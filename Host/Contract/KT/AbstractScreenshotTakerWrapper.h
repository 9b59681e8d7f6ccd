#pragma once

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

}  // namespace Velkor::KT
