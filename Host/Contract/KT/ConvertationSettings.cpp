#include "KT/ConvertationSettings.h"

#include <algorithm>

namespace Velkor::KT
{

ConvertationSettings::ConvertationSettings()
    : ObservableSettings({"hyperPassEnabled", "deleteProject", "screenshotQuality"})
{
    Initialize("hyperPassEnabled", {false});
    Initialize("deleteProject", {false});
    Initialize("screenshotQuality", {90});
}

ConvertationSettings::~ConvertationSettings() = default;

bool ConvertationSettings::IsHyperPassEnabled() const
{
    return Get("hyperPassEnabled").value(0).toBool();
}

void ConvertationSettings::SetHyperPassEnabled(bool enabled)
{
    Set("hyperPassEnabled", {enabled});
}

bool ConvertationSettings::IsDeleteProject() const
{
    return Get("deleteProject").value(0).toBool();
}

void ConvertationSettings::SetDeleteProject(bool enabled)
{
    Set("deleteProject", {enabled});
}

int ConvertationSettings::GetScreenshotQuality() const
{
    return Get("screenshotQuality").value(0).toInt();
}

void ConvertationSettings::SetScreenshotQuality(int quality)
{
    Set("screenshotQuality", {std::clamp(quality, 1, 100)});
}

}  // namespace Velkor::KT
