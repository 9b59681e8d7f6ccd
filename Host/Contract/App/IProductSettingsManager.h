#pragma once

#include <memory>
#include <string>

namespace Velkor::KT
{
class ProductSettings;
}

namespace Velkor::App
{

// The application core's access to the product: its name and version and its product-wide
// settings, which include whether sending usage statistics is allowed.
class IProductSettingsManager
{
public:
    virtual ~IProductSettingsManager() = default;

    virtual std::string GetProductName() const = 0;
    virtual std::string GetProductVersion() const = 0;

    // Never null.
    virtual std::shared_ptr<KT::ProductSettings> GetProductSettings() const = 0;

    // Whether sending usage statistics is allowed right now.
    virtual bool IsAllowSendStatistics() const = 0;
};

}  // namespace Velkor::App
