#pragma once

#include "App/IApplicationSettingsManager.h"
#include "HostReferenceExport.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace Velkor::App
{

// Settings kept in an INI file. Every write reaches the file before SetValue returns, so a
// second object on the same file (or the next session) reads it. Safe to use from any thread.
class KT_HOST_REFERENCE_EXPORT ApplicationSettingsManager : public IApplicationSettingsManager
{
public:
    explicit ApplicationSettingsManager(const std::string& iniFilePath);
    ~ApplicationSettingsManager() override;

    std::string GetValue(const std::string& key,
                         const std::string& defaultValue = std::string()) const override;
    void SetValue(const std::string& key, const std::string& value) override;

private:
    Q_DISABLE_COPY(ApplicationSettingsManager)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::App
