#pragma once

#include "Tracking/Delivery/AbstractApplicationTrackerAdapter_p.h"

namespace Velkor::KT::Tracking
{

// The adapter that is actually created: AbstractApplicationTrackerAdapter with its reference
// count. It lives as long as a RefPtr holds it.
// (The chain's tracker interface is a private base, so it is named with its full scope here.)
class ApplicationTrackerAdapter final
    : public Analytics::RefCounted<AbstractApplicationTrackerAdapter>
{
public:
    static Analytics::RefPtr<ApplicationTrackerAdapter> Create(
        std::shared_ptr<::Velkor::KT::Tracking::IKtTracker> next);

private:
    explicit ApplicationTrackerAdapter(std::shared_ptr<::Velkor::KT::Tracking::IKtTracker> next);
    ~ApplicationTrackerAdapter() override;
};

}  // namespace Velkor::KT::Tracking
