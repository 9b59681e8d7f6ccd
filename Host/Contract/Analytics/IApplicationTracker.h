#pragma once

#include "Analytics/RefCounted.h"

#include <map>
#include <string>

namespace Velkor::Analytics
{

// Property map of an analytics event: key to value, keys in ascending byte order.
using Properties = std::map<std::string, std::string>;

// An application's connection to the analytics service. Implementations are reference
// counted (IRefCounted) and held in RefPtr.
class IApplicationTracker : public virtual IRefCounted
{
public:
    // Sends one event. Answers whether the tracker accepted it; for a tracker that stores or
    // transmits events, true means the event has been handed over completely.
    virtual bool Track(const std::string& name, const Properties& properties) = 0;

    // Sends one event with a single property.
    virtual bool Track(const std::string& name, const std::string& key,
                       const std::string& value) = 0;

    // Adds properties that go with every later event. A key that is already a default keeps
    // its first value.
    virtual void AddDefaultProperties(const Properties& properties) = 0;

    // Prepares the tracker once, before the first event: its default properties (usually the
    // session identifier under SID), the identity of the sending application and the directory
    // (UTF-8) in which the tracker may keep its data. Answers whether the tracker is usable.
    virtual bool Initialize(const Properties& defaultProperties, const std::string& identity,
                            const std::string& dataDirectory) = 0;

protected:
    ~IApplicationTracker() override = default;
};

}  // namespace Velkor::Analytics
