#include "KT/InstanceRegistry.h"

#include "KT/ObserverList.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>
#include <stdexcept>

#if defined(__GNUG__)
#include <cxxabi.h>
#endif

namespace Velkor::KT
{

namespace
{

std::atomic<InstanceRegistry*> g_instance{nullptr};

void RemovePrefix(std::string& name, const std::string& prefix)
{
    std::string::size_type at = 0;
    while ((at = name.find(prefix, at)) != std::string::npos)
    {
        const bool wordStart =
            at == 0 || name[at - 1] == '<' || name[at - 1] == ' ' || name[at - 1] == ',';
        if (wordStart)
        {
            name.erase(at, prefix.size());
        }
        else
        {
            at += prefix.size();
        }
    }
}

}  // namespace

std::string ReadableTypeName(const std::type_info& type)
{
    std::string name = type.name();
#if defined(__GNUG__)
    int status = 0;
    char* demangled = abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status);
    if (status == 0 && demangled)
    {
        name = demangled;
    }
    std::free(demangled);
#endif
    RemovePrefix(name, "class ");
    RemovePrefix(name, "struct ");
    return name;
}

class InstanceRegistry::Private
{
public:
    mutable std::mutex mutex;
    std::map<std::string, std::vector<void*>> instances;
    ObserverList<IInstanceRegistryObserver> observers;
};

InstanceRegistry::InstanceRegistry() : d(std::make_unique<Private>())
{
    InstanceRegistry* expected = nullptr;
    if (!g_instance.compare_exchange_strong(expected, this))
    {
        throw std::logic_error("InstanceRegistry already exists");
    }
}

InstanceRegistry::~InstanceRegistry()
{
    g_instance.store(nullptr);
}

InstanceRegistry* InstanceRegistry::Instance()
{
    return g_instance.load();
}

std::vector<void*> InstanceRegistry::DoGet(const std::string& typeName) const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    const auto found = d->instances.find(typeName);
    return found == d->instances.end() ? std::vector<void*>{} : found->second;
}

void InstanceRegistry::DoRegister(const std::string& typeName, void* instance)
{
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        auto& list = d->instances[typeName];
        if (std::find(list.begin(), list.end(), instance) != list.end())
        {
            return;
        }
        list.push_back(instance);
    }
    d->observers.ForEach([&](IInstanceRegistryObserver* observer)
                         { observer->OnInstanceRegistered(typeName); });
}

void InstanceRegistry::DoUnregister(const std::string& typeName, void* instance)
{
    {
        std::lock_guard<std::mutex> lock(d->mutex);
        const auto found = d->instances.find(typeName);
        if (found == d->instances.end())
        {
            return;
        }
        auto& list = found->second;
        const auto at = std::find(list.begin(), list.end(), instance);
        if (at == list.end())
        {
            return;
        }
        list.erase(at);
    }
    d->observers.ForEach([&](IInstanceRegistryObserver* observer)
                         { observer->OnInstanceUnregistered(typeName, instance); });
}

void InstanceRegistry::AddObserver(IInstanceRegistryObserver* observer)
{
    d->observers.Add(observer);
}

void InstanceRegistry::RemoveObserver(IInstanceRegistryObserver* observer)
{
    d->observers.Remove(observer);
}

}  // namespace Velkor::KT
