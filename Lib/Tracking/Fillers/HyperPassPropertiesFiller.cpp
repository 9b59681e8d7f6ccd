#include "Tracking/Fillers/HyperPassPropertiesFiller_p.h"

#include "KT/ConvertationSettings.h"

namespace Velkor::KT::Tracking::Fillers
{

HyperPassPropertiesFiller::HyperPassPropertiesFiller(
    const std::shared_ptr<ConvertationSettings>& settings)
    : m_settings(settings)
{
}

void HyperPassPropertiesFiller::Fill(std::map<std::string, std::string>& params)
{
    params["HP_ENABLED"] = m_settings->IsHyperPassEnabled() ? "YES" : "NO";
}

}  // namespace Velkor::KT::Tracking::Fillers
