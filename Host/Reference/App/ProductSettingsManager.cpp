#include "App/ProductSettingsManager.h"

#include "KT/ProductSettings.h"

#include <utility>

namespace Velkor::App
{

ProductSettingsManager::ProductSettingsManager(std::string productName, std::string productVersion,
                                               std::shared_ptr<KT::ProductSettings> settings)
    : m_productName(std::move(productName)),
      m_productVersion(std::move(productVersion)),
      m_settings(settings ? std::move(settings) : std::make_shared<KT::ProductSettings>())
{
}

ProductSettingsManager::~ProductSettingsManager() = default;

std::string ProductSettingsManager::GetProductName() const
{
    return m_productName;
}

std::string ProductSettingsManager::GetProductVersion() const
{
    return m_productVersion;
}

std::shared_ptr<KT::ProductSettings> ProductSettingsManager::GetProductSettings() const
{
    return m_settings;
}

bool ProductSettingsManager::IsAllowSendStatistics() const
{
    return m_settings->IsAllowSendStatistics();
}

}  // namespace Velkor::App
