#pragma once

#include "Tracking/Events/IKtTracker.h"

namespace Velkor::KT::Tracking
{

// Marks a tracker that is a final destination of events rather than a stage that passes them
// on. Adds nothing to IKtTracker.
class KT_TRACKING_EXPORT IKtTrackingEndpoint : public IKtTracker
{
public:
    ~IKtTrackingEndpoint() override;
};

}  // namespace Velkor::KT::Tracking
