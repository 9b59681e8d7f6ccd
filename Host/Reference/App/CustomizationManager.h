#pragma once

#include "App/ICustomizationManager.h"
#include "HostReferenceExport.h"

#include <string>

namespace Velkor::App
{

// Customisation data given at construction.
class KT_HOST_REFERENCE_EXPORT CustomizationManager : public ICustomizationManager
{
public:
    CustomizationManager(std::string productId, std::string partnerId);

    std::string GetProductId() const override;
    std::string GetPartnerId() const override;

private:
    const std::string m_productId;
    const std::string m_partnerId;
};

}  // namespace Velkor::App
