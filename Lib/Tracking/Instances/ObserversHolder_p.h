#pragma once

#include "KT/InstanceRegistry.h"
#include "Tracking/Instances/IObserver_p.h"

#include <QtGlobal>

#include <cstddef>
#include <map>
#include <memory>

namespace Velkor::KT::Tracking::BadMemoryManagment
{

// Owns the observers of the instances handler, filed under the address of the object each one
// observes. It listens to the instance registry (if one exists while it is built): when an
// object is unregistered, its observers are destroyed without being detached, as the object is
// going away. At destruction every observer still held is detached, then destroyed, in address
// order. Not locked: registrations, unregistrations and runs happen on one thread.
class ObserversHolder : public KT::IInstanceRegistryObserver
{
public:
    ObserversHolder();
    ~ObserversHolder() override;

    bool Has(const void* address) const;
    void Add(void* address, std::unique_ptr<IObserver> observer);
    std::size_t Count() const;

    void OnInstanceRegistered(const std::string& typeName) override;
    void OnInstanceUnregistered(const std::string& typeName, void* instance) override;

private:
    Q_DISABLE_COPY(ObserversHolder)
    std::multimap<const void*, std::unique_ptr<IObserver>> m_observers;
};

}  // namespace Velkor::KT::Tracking::BadMemoryManagment
