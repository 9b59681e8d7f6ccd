#include "App/CustomizationManager.h"

#include <utility>

namespace Velkor::App
{

CustomizationManager::CustomizationManager(std::string productId, std::string partnerId)
    : m_productId(std::move(productId)), m_partnerId(std::move(partnerId))
{
}

std::string CustomizationManager::GetProductId() const
{
    return m_productId;
}

std::string CustomizationManager::GetPartnerId() const
{
    return m_partnerId;
}

}  // namespace Velkor::App
