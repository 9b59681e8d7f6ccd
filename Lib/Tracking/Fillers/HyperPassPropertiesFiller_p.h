#pragma once

#include "Analytics/IDataFiller.h"
#include "Tracking/Events/NotNull_p.h"

#include <memory>

namespace Velkor::KT
{
class ConvertationSettings;
}

namespace Velkor::KT::Tracking::Fillers
{

// Writes "HP_ENABLED" = "YES" or "NO": whether HyperPass conversion is switched on in the
// conversion settings at the moment of the Fill.
class HyperPassPropertiesFiller : public Velkor::Tracking::IDataFiller
{
public:
    // Throws std::logic_error("NotNull can not initialized by null") without settings.
    explicit HyperPassPropertiesFiller(const std::shared_ptr<ConvertationSettings>& settings);

    void Fill(std::map<std::string, std::string>& params) override;

private:
    const NotNull<ConvertationSettings> m_settings;
};

}  // namespace Velkor::KT::Tracking::Fillers
