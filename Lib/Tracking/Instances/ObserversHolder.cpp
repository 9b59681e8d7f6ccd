#include "Tracking/Instances/ObserversHolder_p.h"

namespace Velkor::KT::Tracking::BadMemoryManagment
{

ObserversHolder::ObserversHolder()
{
    if (auto* registry = KT::InstanceRegistry::Instance())
    {
        registry->AddObserver(this);
    }
}

ObserversHolder::~ObserversHolder()
{
    for (auto& entry : m_observers)
    {
        entry.second->Detach();
        entry.second.reset();
    }
    m_observers.clear();
    if (auto* registry = KT::InstanceRegistry::Instance())
    {
        registry->RemoveObserver(this);
    }
}

bool ObserversHolder::Has(const void* address) const
{
    return m_observers.find(address) != m_observers.end();
}

void ObserversHolder::Add(void* address, std::unique_ptr<IObserver> observer)
{
    m_observers.emplace(address, std::move(observer));
}

std::size_t ObserversHolder::Count() const
{
    return m_observers.size();
}

void ObserversHolder::OnInstanceRegistered(const std::string&) {}

void ObserversHolder::OnInstanceUnregistered(const std::string&, void* instance)
{
    m_observers.erase(instance);
}

}  // namespace Velkor::KT::Tracking::BadMemoryManagment
