#include "Analytics/ConsentObserver_p.h"

#include "KT/ProductSettings.h"

#include <utility>

namespace Velkor::Analytics
{

ConsentObserver::ConsentObserver(std::shared_ptr<KT::ProductSettings> settings,
                                 std::function<void(bool allowed)> changed)
    : m_settings(std::move(settings)), m_changed(std::move(changed))
{
    m_settings->AddObserver(this);
}

ConsentObserver::~ConsentObserver()
{
    m_settings->RemoveObserver(this);
}

void ConsentObserver::OnSettingChanged(const std::string& field, const QVariantList& value)
{
    if (field == "statisticsEnabled")
    {
        m_changed(value.value(0).toBool());
    }
}

}  // namespace Velkor::Analytics
