#include "KT/ProductSettings.h"

namespace Velkor::KT
{

ProductSettings::ProductSettings()
    : ObservableSettings(
          {"autoUpdateEnabled", "statisticsEnabled", "autoStartEnabled", "currentLocale"})
{
    Initialize("autoUpdateEnabled", {true});
    Initialize("statisticsEnabled", {false});
    Initialize("autoStartEnabled", {false});
    Initialize("currentLocale", {QString()});
}

ProductSettings::~ProductSettings() = default;

bool ProductSettings::IsAutoUpdateEnabled() const
{
    return Get("autoUpdateEnabled").value(0).toBool();
}

void ProductSettings::SetAutoUpdateEnabled(bool enabled)
{
    Set("autoUpdateEnabled", {enabled});
}

bool ProductSettings::IsAllowSendStatistics() const
{
    return Get("statisticsEnabled").value(0).toBool();
}

void ProductSettings::SetAllowSendStatistics(bool allowed)
{
    Set("statisticsEnabled", {allowed});
}

bool ProductSettings::IsAutoStartEnabled() const
{
    return Get("autoStartEnabled").value(0).toBool();
}

void ProductSettings::SetAutoStartEnabled(bool enabled)
{
    Set("autoStartEnabled", {enabled});
}

std::string ProductSettings::GetCurrentLocale() const
{
    return Get("currentLocale").value(0).toString().toStdString();
}

void ProductSettings::SetCurrentLocale(const std::string& locale)
{
    Set("currentLocale", {QString::fromStdString(locale)});
}

}  // namespace Velkor::KT
