#include "Tracking/Delivery/ForwardKtTracker.h"

#include "Tracking/Delivery/VelkorKtTracker_p.h"

namespace Velkor::KT::Tracking
{

class ForwardKtTracker::Private
{
public:
    std::vector<std::shared_ptr<IKtTrackingEndpoint>> endpoints;
};

ForwardKtTracker::ForwardKtTracker(
    const std::shared_ptr<App::ICustomizationManager>& customization,
    const std::shared_ptr<KT::ProductSettings>& productSettings,
    const std::shared_ptr<App::ISessionId>& session, const App::ioPath& dataDirectory,
    const std::vector<std::shared_ptr<IKtTrackingEndpoint>>& endpoints)
    : d(std::make_unique<Private>())
{
    d->endpoints.reserve(endpoints.size() + 1);
    d->endpoints = endpoints;
    d->endpoints.push_back(
        std::make_shared<VelkorKtTracker>(customization, productSettings, session, dataDirectory));
}

ForwardKtTracker::~ForwardKtTracker() = default;

void ForwardKtTracker::Track(const Event& event)
{
    for (const auto& entry : d->endpoints)
    {
        // A copy keeps the endpoint alive for the length of its own call.
        const std::shared_ptr<IKtTrackingEndpoint> endpoint = entry;
        endpoint->Track(event);
    }
}

}  // namespace Velkor::KT::Tracking
