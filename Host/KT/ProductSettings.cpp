#include "KT/ProductSettings.h"

#include <atomic>
#include <mutex>

namespace Velkor::KT
{

class ProductSettings::Private
{
public:
    std::atomic<bool> autoUpdateEnabled{true};
    std::atomic<bool> statisticsEnabled{false};
    std::atomic<bool> autoStartEnabled{false};

    mutable std::mutex localeMutex;
    std::string currentLocale;
};

ProductSettings::ProductSettings() : d(std::make_unique<Private>()) {}

ProductSettings::~ProductSettings() = default;

bool ProductSettings::IsAutoUpdateEnabled() const
{
    return d->autoUpdateEnabled.load();
}

void ProductSettings::SetAutoUpdateEnabled(bool enabled)
{
    d->autoUpdateEnabled.store(enabled);
}

bool ProductSettings::IsAllowSendStatistics() const
{
    return d->statisticsEnabled.load();
}

void ProductSettings::SetAllowSendStatistics(bool allowed)
{
    d->statisticsEnabled.store(allowed);
}

bool ProductSettings::IsAutoStartEnabled() const
{
    return d->autoStartEnabled.load();
}

void ProductSettings::SetAutoStartEnabled(bool enabled)
{
    d->autoStartEnabled.store(enabled);
}

std::string ProductSettings::GetCurrentLocale() const
{
    std::lock_guard<std::mutex> lock(d->localeMutex);
    return d->currentLocale;
}

void ProductSettings::SetCurrentLocale(const std::string& locale)
{
    std::lock_guard<std::mutex> lock(d->localeMutex);
    d->currentLocale = locale;
}

}  // namespace Velkor::KT
