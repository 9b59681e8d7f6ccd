#pragma once

#include "Analytics/IDataFiller.h"

namespace Velkor::KT::Tracking::Fillers
{

// Writes "APP_BITS" = the application's bitness, "64" or "32".
class AppConfigFiller : public Velkor::Tracking::IDataFiller
{
public:
    void Fill(std::map<std::string, std::string>& params) override;
};

}  // namespace Velkor::KT::Tracking::Fillers
