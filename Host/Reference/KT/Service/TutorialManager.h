#pragma once

#include "KT/ObserverList.h"
#include "KT/Service/ITutorialManager.h"

#include <string>

namespace Velkor::KT::Service::Tutorial
{

// Reference tutorial: the slide window reports each slide shown and each button clicked.
class TutorialManager : public ObservableService<ITutorialManager, ITutorialObserver>
{
public:
    void ShowSlide(const std::string& slide) { Notify(&ITutorialObserver::OnSlideShow, slide); }
    void ClickSlide(int action) { Notify(&ITutorialObserver::OnSlideClick, action); }
};

}  // namespace Velkor::KT::Service::Tutorial
