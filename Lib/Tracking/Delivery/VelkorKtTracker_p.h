#pragma once

#include "Tracking/Events/IKtTrackingEndpoint.h"
#include "Tracking/Events/NotNull_p.h"

#include "Analytics/IApplicationTracker.h"
#include "App/ICustomizationManager.h"
#include "App/ISessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include <memory>

namespace Velkor::KT::Tracking
{

// The endpoint of the forwarding tracker that hands events to the application's analytics
// service, as long as the product settings allow sending statistics. Without an analytics
// tracker from the factory it ignores every event.
class VelkorKtTracker final : public IKtTrackingEndpoint
{
public:
    // Throws std::logic_error for null product settings. Customisation and session may be null:
    // the identity or the session identifier are then empty.
    VelkorKtTracker(const std::shared_ptr<App::ICustomizationManager>& customization,
                    const std::shared_ptr<KT::ProductSettings>& productSettings,
                    const std::shared_ptr<App::ISessionId>& session,
                    const App::ioPath& dataDirectory);
    ~VelkorKtTracker() override;

    void Track(const Event& event) override;

private:
    VelkorKtTracker(const VelkorKtTracker&) = delete;
    VelkorKtTracker& operator=(const VelkorKtTracker&) = delete;

    const NotNull<KT::ProductSettings> m_productSettings;
    const Analytics::RefPtr<Analytics::IApplicationTracker> m_tracker;
};

}  // namespace Velkor::KT::Tracking
