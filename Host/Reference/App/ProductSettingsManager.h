#pragma once

#include "App/IProductSettingsManager.h"
#include "HostReferenceExport.h"

#include <memory>
#include <string>

namespace Velkor::App
{

// Product name and version given at construction, over one shared settings object.
class KT_HOST_REFERENCE_EXPORT ProductSettingsManager : public IProductSettingsManager
{
public:
    // A null settings pointer gets a fresh settings object with its defaults.
    ProductSettingsManager(std::string productName, std::string productVersion,
                           std::shared_ptr<KT::ProductSettings> settings = nullptr);
    ~ProductSettingsManager() override;

    std::string GetProductName() const override;
    std::string GetProductVersion() const override;
    std::shared_ptr<KT::ProductSettings> GetProductSettings() const override;
    bool IsAllowSendStatistics() const override;

private:
    const std::string m_productName;
    const std::string m_productVersion;
    const std::shared_ptr<KT::ProductSettings> m_settings;
};

}  // namespace Velkor::App
