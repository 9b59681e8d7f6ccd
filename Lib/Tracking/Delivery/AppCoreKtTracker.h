#pragma once

#include "Tracking/Events/IKtTracker.h"

#include <QtGlobal>

#include <memory>

namespace Velkor::App
{
class IProductSettingsManager;
}

namespace Velkor::KT::Tracking
{

// Lets the application core's own tracking layer see and enrich every event on its way down
// the chain: the event goes out as a name and a property map to the application core's tracker
// wrapper, which adds its properties (assigned over the event's) and hands the result to an
// adapter that turns it back into an Event for the next tracker. The wrapper's own fillers are
// switched off, since this library runs its fillers itself.
//
// No lock of its own; the passage through the wrapper runs on the caller's thread unless the
// wrapper defers it.
class KT_TRACKING_EXPORT AppCoreKtTracker : public IKtTracker
{
public:
    // The wrapper reads its properties from `settings`; without them the wrapper cannot be
    // created and construction throws std::invalid_argument. A null `next` ends events at the
    // adapter.
    AppCoreKtTracker(const std::shared_ptr<App::IProductSettingsManager>& settings,
                     const std::shared_ptr<IKtTracker>& next);
    ~AppCoreKtTracker() override;

    void Track(const Event& event) override;

private:
    Q_DISABLE_COPY(AppCoreKtTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
