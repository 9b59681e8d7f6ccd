#pragma once

#include "HostExport.h"

#include <QtGlobal>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

namespace Velkor::KT
{

// The readable run-time type name of a type, e.g. "Velkor::KT::IScheduler": the demangled
// type-information name, without the "class "/"struct " prefixes some compilers add.
KT_HOST_EXPORT std::string ReadableTypeName(const std::type_info& type);

template <class T>
std::string TypeNameOf()
{
    return ReadableTypeName(typeid(T));
}

// Told by the registry about every registration and unregistration, after the registry has
// been updated and without any of its locks held.
class IInstanceRegistryObserver
{
public:
    virtual ~IInstanceRegistryObserver() = default;

    virtual void OnInstanceRegistered(const std::string& typeName) = 0;
    virtual void OnInstanceUnregistered(const std::string& typeName, void* instance) = 0;
};

// The application's directory of live service and settings objects, filed under the readable
// type name of the interface they are registered as. The registry owns nothing.
//
// At most one registry exists at a time: while it lives, Instance() returns it; before and
// after, Instance() returns null. An object is registered as a pointer to its interface type T
// and DoGet() returns that pointer as void*, so static_cast<T*> of it is the object again.
class KT_HOST_EXPORT InstanceRegistry
{
public:
    // Throws std::logic_error if another registry is alive.
    InstanceRegistry();
    ~InstanceRegistry();

    static InstanceRegistry* Instance();

    template <class T>
    void Register(T* instance)
    {
        DoRegister(TypeNameOf<T>(), static_cast<void*>(instance));
    }

    template <class T>
    void Unregister(T* instance)
    {
        DoUnregister(TypeNameOf<T>(), static_cast<void*>(instance));
    }

    template <class T>
    std::vector<T*> Get() const
    {
        std::vector<T*> result;
        for (void* instance : DoGet(TypeNameOf<T>()))
        {
            result.push_back(static_cast<T*>(instance));
        }
        return result;
    }

    // The live objects registered under `typeName`, in registration order. Registering an
    // object twice under one name files it once; unregistering an unknown one does nothing and
    // tells nobody.
    std::vector<void*> DoGet(const std::string& typeName) const;
    void DoRegister(const std::string& typeName, void* instance);
    void DoUnregister(const std::string& typeName, void* instance);

    // An observer added twice is told once. An observer removed while a notice is being
    // delivered is not told anything more.
    void AddObserver(IInstanceRegistryObserver* observer);
    void RemoveObserver(IInstanceRegistryObserver* observer);

private:
    Q_DISABLE_COPY(InstanceRegistry)
    class Private;
    std::unique_ptr<Private> const d;
};

}  // namespace Velkor::KT
