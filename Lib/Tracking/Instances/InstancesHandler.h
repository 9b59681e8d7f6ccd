#pragma once

#include "Tracking/Events/Event.h"
#include "Tracking/TrackingExport.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace Velkor::KT::Tracking
{

class IKtTracker;

namespace Config
{
class Instances;
}

// Turns notifications of the application's service and settings objects into events, as the
// "instances" configuration section prescribes. Objects are found in the instance registry:
// AttachInstances() attaches to every live object of every configured section, and objects
// registered later are attached as they are registered (except the streaming and finish-action
// settings, which only AttachInstances() reaches). Each object gets at most one observer per
// handler; an unregistered object's observers are dropped without touching the object. At
// destruction every observer still attached is detached from its object.
//
// Attaching, registrations and unregistrations are expected on one thread; notifications may
// arrive on any thread and are tracked on it.
class KT_TRACKING_EXPORT InstancesHandler
{
public:
    using AcceleratorProperties = std::function<void(Event::Params&)>;

    // Throws std::logic_error for a null tracker. `accelerators`, if set, adds the machine's
    // hardware-acceleration facts to capture start events.
    explicit InstancesHandler(const std::shared_ptr<IKtTracker>& tracker,
                              AcceleratorProperties accelerators = {});
    ~InstancesHandler();

    // Replaces the configuration by a copy; observers attached before keep their configuration.
    void SetConfig(const Config::Instances& config);
    void AttachInstances();

private:
    Q_DISABLE_COPY(InstancesHandler)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT::Tracking
