#pragma once

#include "KT/InstanceRegistry.h"
#include "KT/ObserverList.h"

#include <cstddef>

namespace Velkor::Core
{

// A publisher of the notifications of observer interface `Observer`: Publish() calls one of its
// operations on every added observer.
template <class Observer>
class EventPublisher
{
public:
    virtual ~EventPublisher() = default;

    void AddObserver(Observer* observer) { m_observers.Add(observer); }
    void RemoveObserver(Observer* observer) { m_observers.Remove(observer); }
    std::size_t ObserverCount() const { return m_observers.Count(); }

    template <class... Parameters, class... Arguments>
    void Publish(void (Observer::*method)(Parameters...), const Arguments&... arguments) const
    {
        m_observers.ForEach([&](Observer* observer) { (observer->*method)(arguments...); });
    }

private:
    KT::ObserverList<Observer> m_observers;
};

// A publisher that files itself in the instance registry (when one exists) for its whole life,
// under its own type, so that anybody can find it and subscribe.
template <class Publisher>
class EventHandlerRegistrator : public Publisher
{
public:
    EventHandlerRegistrator()
    {
        if (auto* registry = KT::InstanceRegistry::Instance())
        {
            registry->Register(this);
        }
    }

    ~EventHandlerRegistrator() override
    {
        if (auto* registry = KT::InstanceRegistry::Instance())
        {
            registry->Unregister(this);
        }
    }

    EventHandlerRegistrator(const EventHandlerRegistrator&) = delete;
    EventHandlerRegistrator& operator=(const EventHandlerRegistrator&) = delete;
};

}  // namespace Velkor::Core
