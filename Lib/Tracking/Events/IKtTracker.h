#pragma once

#include "Tracking/Events/Event.h"
#include "Tracking/TrackingExport.h"

namespace Velkor::KT::Tracking
{

// A link of the tracker chain. Track() has no result and no error channel: a tracker never
// tells its caller whether it kept, changed, dropped or failed to deliver the event, and never
// modifies the event it is given. Track() may be called on any thread.
class KT_TRACKING_EXPORT IKtTracker
{
public:
    virtual ~IKtTracker();

    virtual void Track(const Event& event) = 0;
};

}  // namespace Velkor::KT::Tracking
