#include "KT/ConvertationSettings.h"

#include <algorithm>
#include <atomic>

namespace Velkor::KT
{

class ConvertationSettings::Private
{
public:
    std::atomic<bool> hyperPassEnabled{false};
    std::atomic<bool> deleteProject{false};
    std::atomic<int> screenshotQuality{90};
};

ConvertationSettings::ConvertationSettings() : d(std::make_unique<Private>()) {}

ConvertationSettings::~ConvertationSettings() = default;

bool ConvertationSettings::IsHyperPassEnabled() const
{
    return d->hyperPassEnabled.load();
}

void ConvertationSettings::SetHyperPassEnabled(bool enabled)
{
    d->hyperPassEnabled.store(enabled);
}

bool ConvertationSettings::IsDeleteProject() const
{
    return d->deleteProject.load();
}

void ConvertationSettings::SetDeleteProject(bool enabled)
{
    d->deleteProject.store(enabled);
}

int ConvertationSettings::GetScreenshotQuality() const
{
    return d->screenshotQuality.load();
}

void ConvertationSettings::SetScreenshotQuality(int quality)
{
    d->screenshotQuality.store(std::clamp(quality, 1, 100));
}

}  // namespace Velkor::KT
