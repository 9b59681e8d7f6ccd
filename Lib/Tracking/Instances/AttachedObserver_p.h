#pragma once

#include "KT/InstanceRegistry.h"
#include "Tracking/Events/Event.h"
#include "Tracking/Instances/IObserver_p.h"
#include "Tracking/Instances/ObserversHolder_p.h"
#include "Tracking/Instances/ParseContext_p.h"

#include <memory>

namespace Velkor::KT::Tracking
{

// Base of the observers of services with add/remove-observer operations: the host's observer
// interface `HostObserver` of the service `Service`, attached by Attach() and removed by Detach().
template <class Service, class HostObserver>
class AttachedObserver : public HostObserver, public BadMemoryManagment::IObserver
{
public:
    void Attach() { m_service->AddObserver(this); }
    void Detach() override { m_service->RemoveObserver(this); }

protected:
    AttachedObserver(Service* service, IKtTracker* tracker) : m_service(service), m_tracker(tracker)
    {
    }

    Service* const m_service;
    IKtTracker* const m_tracker;
};

// Writes `value()` under the key of `attribute`, an optional attribute of the section, when the
// section sets it.
template <class Attribute, class Value>
void Put(Event& event, const Attribute& attribute, Value value)
{
    if (attribute)
    {
        event.params[*attribute] = value();
    }
}

// The common part of attaching every service and settings section: each live object registered as
// `Host` that the holder does not observe yet gets an observer made by make(Host*), attached, then
// handed to the holder.
template <class Host, class Make>
void AttachToAll(const ParseContext& context, Make make)
{
    if (!context.registry || !context.holder)
    {
        return;
    }
    for (void* address : context.registry->DoGet(KT::TypeNameOf<Host>()))
    {
        if (context.holder->Has(address))
        {
            continue;
        }
        auto observer = make(static_cast<Host*>(address));
        observer->Attach();
        context.holder->Add(address, std::move(observer));
    }
}

}  // namespace Velkor::KT::Tracking
