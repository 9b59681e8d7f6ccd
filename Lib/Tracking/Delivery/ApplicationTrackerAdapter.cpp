#include "Tracking/Delivery/ApplicationTrackerAdapter_p.h"

#include <utility>

namespace Velkor::KT::Tracking
{

Analytics::RefPtr<ApplicationTrackerAdapter> ApplicationTrackerAdapter::Create(
    std::shared_ptr<::Velkor::KT::Tracking::IKtTracker> next)
{
    return Analytics::RefPtr<ApplicationTrackerAdapter>(
        new ApplicationTrackerAdapter(std::move(next)));
}

ApplicationTrackerAdapter::ApplicationTrackerAdapter(
    std::shared_ptr<::Velkor::KT::Tracking::IKtTracker> next)
    : RefCounted(std::move(next))
{
}

ApplicationTrackerAdapter::~ApplicationTrackerAdapter() = default;

}  // namespace Velkor::KT::Tracking
