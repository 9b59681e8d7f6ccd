#include "Tracking/Delivery/VelkorKtTracker_p.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/ApplicationTrackerFactory.h"

namespace Velkor::KT::Tracking
{

VelkorKtTracker::VelkorKtTracker(const std::shared_ptr<App::ICustomizationManager>& customization,
                                 const std::shared_ptr<KT::ProductSettings>& productSettings,
                                 const std::shared_ptr<App::ISessionId>& session,
                                 const App::ioPath& dataDirectory)
    : m_productSettings(productSettings),
      m_tracker(Analytics::ApplicationTrackerFactory::CreateApplicationTracker())
{
    if (!m_tracker)
    {
        return;
    }
    const Analytics::Properties defaults{
        {Analytics::SID, session ? session->GetSessionId() : std::string()}};
    const std::string identity =
        customization ? App::AnalyticsIdentity(*customization) : std::string();
    m_tracker->Initialize(defaults, identity, dataDirectory.ToUtf8());
}

VelkorKtTracker::~VelkorKtTracker() = default;

void VelkorKtTracker::Track(const Event& event)
{
    if (!m_tracker)
    {
        return;
    }
    // Asked for every event: switching the permission off takes effect at once.
    if (!m_productSettings->IsAllowSendStatistics())
    {
        return;
    }
    m_tracker->Track(event.name, event.params);
}

}  // namespace Velkor::KT::Tracking
