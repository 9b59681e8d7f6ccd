#pragma once

#include <string>

namespace Velkor::KT::Service::Tutorial
{

// Slide actions: 0 close, 1 next, 2 back, 3 repeat, 4 finish.
class ITutorialObserver
{
public:
    virtual ~ITutorialObserver() = default;

    virtual void OnSlideShow(const std::string& slide) = 0;
    virtual void OnSlideClick(int action) = 0;
};

class ITutorialManager
{
public:
    virtual ~ITutorialManager() = default;

    virtual void AddObserver(ITutorialObserver* observer) = 0;
    virtual void RemoveObserver(ITutorialObserver* observer) = 0;
};

}  // namespace Velkor::KT::Service::Tutorial
