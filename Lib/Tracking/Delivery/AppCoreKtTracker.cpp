#include "Tracking/Delivery/AppCoreKtTracker.h"

#include "Tracking/Delivery/ApplicationTrackerAdapter_p.h"

#include "App/ApplicationTrackerWrapper.h"

namespace Velkor::KT::Tracking
{

// Members are destroyed in reverse order: the adapter, then the wrapper, then the next tracker.
class AppCoreKtTracker::Private
{
public:
    std::shared_ptr<IKtTracker> next;
    Analytics::RefPtr<Analytics::IApplicationTracker> wrapper;
    Analytics::RefPtr<Analytics::IApplicationTracker> adapter;
};

AppCoreKtTracker::AppCoreKtTracker(const std::shared_ptr<App::IProductSettingsManager>& settings,
                                   const std::shared_ptr<IKtTracker>& next)
    : d(std::make_unique<Private>())
{
    d->next = next;
    auto wrapper = App::ApplicationTrackerWrapper::Create(
        settings, App::ApplicationTrackerWrapper::ExcludeOwnFillers);
    auto adapter = ApplicationTrackerAdapter::Create(d->next);
    wrapper->SetSuccessor(adapter);
    d->wrapper = wrapper;
    d->adapter = adapter;
}

AppCoreKtTracker::~AppCoreKtTracker() = default;

void AppCoreKtTracker::Track(const Event& event)
{
    d->wrapper->Track(event.name, event.params);
}

}  // namespace Velkor::KT::Tracking
