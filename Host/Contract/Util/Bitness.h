#pragma once

#include "HostExport.h"

#include <string>

namespace Velkor::Util
{

// The bitness of the running application as text: "64" for a 64-bit build, "32" for a 32-bit
// one.
KT_HOST_EXPORT std::string GetApplicationBits();

}  // namespace Velkor::Util
