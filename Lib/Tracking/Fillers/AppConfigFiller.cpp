#include "Tracking/Fillers/AppConfigFiller_p.h"

#include "Util/Bitness.h"

namespace Velkor::KT::Tracking::Fillers
{

void AppConfigFiller::Fill(std::map<std::string, std::string>& params)
{
    params["APP_BITS"] = Util::GetApplicationBits();
}

}  // namespace Velkor::KT::Tracking::Fillers
