#pragma once

#include "Tracking/Events/Event.h"
#include "Tracking/TrackingExport.h"

#include <string>

namespace Velkor::KT::Tracking
{

// The text the debug viewer shows for an event: the name and a line end, then one
// "\tKEY=VALUE" line per property in key order.
KT_TRACKING_EXPORT std::string EventText(const Event& event);

}  // namespace Velkor::KT::Tracking
