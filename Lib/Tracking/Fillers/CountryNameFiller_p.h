#pragma once

#include "Analytics/IDataFiller.h"

namespace Velkor::KT::Tracking::Fillers
{

// Writes "COUNTRY_NAME" = the English name of the system locale's country, e.g. "Germany",
// in UTF-8.
class CountryNameFiller : public Velkor::Tracking::IDataFiller
{
public:
    void Fill(std::map<std::string, std::string>& params) override;
};

}  // namespace Velkor::KT::Tracking::Fillers
