#pragma once

#include "KT/ObservableSettings.h"

#include <functional>
#include <memory>

namespace Velkor::KT
{
class ProductSettings;
}

namespace Velkor::Analytics
{

// Tells `changed` every new value of the product settings' "statisticsEnabled" (the user's
// consent to sending statistics), on the thread that set it, for as long as it exists.
class ConsentObserver : public KT::ISettingsObserver
{
public:
    ConsentObserver(std::shared_ptr<KT::ProductSettings> settings,
                    std::function<void(bool allowed)> changed);
    ~ConsentObserver() override;

    void OnSettingChanged(const std::string& field, const QVariantList& value) override;

private:
    const std::shared_ptr<KT::ProductSettings> m_settings;
    const std::function<void(bool)> m_changed;
};

}  // namespace Velkor::Analytics
