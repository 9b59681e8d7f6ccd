#pragma once

#include "HostExport.h"

#include "KT/ObservableSettings.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace Velkor::KT
{

// The recorder's product-wide settings. Every getter and setter may be called from any thread;
// a setter takes effect for every later getter call and tells the observers (fields
// "autoUpdateEnabled", "statisticsEnabled", "autoStartEnabled": bool; "currentLocale": QString).
class KT_HOST_EXPORT ProductSettings : public ObservableSettings
{
public:
    ProductSettings();
    ~ProductSettings() override;

    bool IsAutoUpdateEnabled() const;
    void SetAutoUpdateEnabled(bool enabled);

    // Whether the user allows usage statistics to be sent (the "statistics enabled" setting).
    // Off until the user agrees.
    bool IsAllowSendStatistics() const;
    void SetAllowSendStatistics(bool allowed);

    bool IsAutoStartEnabled() const;
    void SetAutoStartEnabled(bool enabled);

    // The interface locale chosen by the user, e.g. "en_US"; empty for the system's.
    std::string GetCurrentLocale() const;
    void SetCurrentLocale(const std::string& locale);

private:
    Q_DISABLE_COPY(ProductSettings)
};

}  // namespace Velkor::KT
