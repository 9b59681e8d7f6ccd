#pragma once

#include "Tracking/Events/Event.h"

#include <functional>

namespace Velkor::KT
{
class InstanceRegistry;
}

namespace Velkor::KT::Tracking
{

class IKtTracker;

namespace BadMemoryManagment
{
class ObserversHolder;
}

// Writes the machine's hardware-acceleration facts into an event's properties.
using AcceleratorProperties = std::function<void(Event::Params&)>;

// What attaching a section works with; none of it is owned. `registry` may be null (no registry in
// this process); `accelerators` may be null or empty (no acceleration facts are added).
struct ParseContext
{
    IKtTracker* tracker = nullptr;
    KT::InstanceRegistry* registry = nullptr;
    BadMemoryManagment::ObserversHolder* holder = nullptr;
    const AcceleratorProperties* accelerators = nullptr;
};

}  // namespace Velkor::KT::Tracking
