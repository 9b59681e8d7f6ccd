#include "Tracking/Events/IKtTracker.h"

#include "Tracking/Events/IKtTrackingEndpoint.h"

namespace Velkor::KT::Tracking
{

// Out of line so that the type information of both interfaces lives in this library only.
IKtTracker::~IKtTracker() = default;

IKtTrackingEndpoint::~IKtTrackingEndpoint() = default;

}  // namespace Velkor::KT::Tracking
