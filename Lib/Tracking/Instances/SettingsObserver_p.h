#pragma once

#include "KT/ObservableSettings.h"
#include "Tracking/Instances/AttachedObserver_p.h"
#include "Tracking/Instances/ValueCallback_p.h"

#include <map>
#include <string>

namespace Velkor::KT::Tracking
{

// Observer of one settings object: every change of a field with a configured callback tracks
// that callback's event with the converted new value; other fields are ignored.
class SettingsObserver : public AttachedObserver<KT::ObservableSettings, KT::ISettingsObserver>
{
public:
    SettingsObserver(KT::ObservableSettings* settings, IKtTracker* tracker,
                     std::map<std::string, ValueCallback> callbacks)
        : AttachedObserver(settings, tracker), m_callbacks(std::move(callbacks))
    {
    }

    void OnSettingChanged(const std::string& field, const QVariantList& value) override
    {
        const auto found = m_callbacks.find(field);
        if (found != m_callbacks.end())
        {
            found->second.Fire(*m_tracker, value);
        }
    }

private:
    const std::map<std::string, ValueCallback> m_callbacks;
};

}  // namespace Velkor::KT::Tracking
