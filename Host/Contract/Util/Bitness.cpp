#include "Util/Bitness.h"

#include <climits>

namespace Velkor::Util
{

std::string GetApplicationBits()
{
    // This library is loaded into the application's process, so its pointer width is the
    // application's.
    return std::to_string(sizeof(void*) * CHAR_BIT);
}

}  // namespace Velkor::Util
