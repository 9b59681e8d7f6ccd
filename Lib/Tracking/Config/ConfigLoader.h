#pragma once

#include "Tracking/TrackingExport.h"

#include <string>

namespace Velkor::KT::Tracking
{

// Returns the bytes of the resource at `path` (for example "/KT/Tracking/Config.xml"), exactly as
// stored, or an empty string when there is no such resource. Logs nothing.
KT_TRACKING_EXPORT std::string LoadConfigFromQrc(const std::string& path);

}  // namespace Velkor::KT::Tracking
