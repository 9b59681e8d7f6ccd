#include "App/ApplicationSettingsManager.h"

#include <QSettings>
#include <QString>

#include <mutex>

namespace Velkor::App
{

class ApplicationSettingsManager::Private
{
public:
    explicit Private(const std::string& path)
        : settings(QString::fromStdString(path), QSettings::IniFormat)
    {
    }

    mutable std::mutex mutex;
    QSettings settings;
};

ApplicationSettingsManager::ApplicationSettingsManager(const std::string& iniFilePath)
    : d(std::make_unique<Private>(iniFilePath))
{
}

ApplicationSettingsManager::~ApplicationSettingsManager() = default;

std::string ApplicationSettingsManager::GetValue(const std::string& key,
                                                 const std::string& defaultValue) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    const QVariant value = d->settings.value(QString::fromStdString(key));
    return value.isValid() ? value.toString().toStdString() : defaultValue;
}

void ApplicationSettingsManager::SetValue(const std::string& key, const std::string& value)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->settings.setValue(QString::fromStdString(key), QString::fromStdString(value));
    d->settings.sync();
}

}  // namespace Velkor::App
