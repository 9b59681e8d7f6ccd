#pragma once

#include <string>

namespace Velkor::App
{

// The customisation a build of the product was made with: which product it is and for which
// distribution partner.
class ICustomizationManager
{
public:
    virtual ~ICustomizationManager() = default;

    // Short identifier of the product, e.g. "recorder".
    virtual std::string GetProductId() const = 0;
    // Identifier of the distribution partner; empty for the vendor's own build.
    virtual std::string GetPartnerId() const = 0;
};

// The identity under which the application reports to the analytics service: the product
// identifier, followed by '/' and the partner identifier when there is one.
inline std::string AnalyticsIdentity(const ICustomizationManager& customization)
{
    const std::string partner = customization.GetPartnerId();
    return partner.empty() ? customization.GetProductId()
                           : customization.GetProductId() + '/' + partner;
}

}  // namespace Velkor::App
