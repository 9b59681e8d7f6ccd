#pragma once

#include "Tracking/Fillers/FillerFactory_p.h"

#include <QtGlobal>

#include <memory>

namespace Velkor::App
{
class ICrashTracker;
class ILaunchTypeProcessor;
}  // namespace Velkor::App

namespace Velkor::KT::Tracking
{

class IKtTracker;

// The events of the application's life: at construction one failure event per failed session
// the crash tracker has not reported yet, in its order, then one start event named by the launch
// type; at destruction the exit event. Each is enriched by the fillers that were requested.
class CommonEventsTracker
{
public:
    // `fillers` enrich the events (Fillers::CreateAvailableFillers()). Throws std::logic_error for
    // a missing tracker, launch-type processor or crash tracker, and whatever sending the events
    // throws.
    CommonEventsTracker(const std::shared_ptr<IKtTracker>& tracker,
                        const std::shared_ptr<App::ILaunchTypeProcessor>& launchType,
                        const std::shared_ptr<App::ICrashTracker>& crashTracker,
                        Fillers::FillerMap fillers);
    // Sends the exit event; an exception from the chain is logged, never thrown.
    ~CommonEventsTracker();

private:
    Q_DISABLE_COPY(CommonEventsTracker)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
