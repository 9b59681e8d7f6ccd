#pragma once

#include <string>

namespace Velkor::App
{

// The identifier of the running session of the application.
class ISessionId
{
public:
    virtual ~ISessionId() = default;

    virtual std::string GetSessionId() const = 0;
};

}  // namespace Velkor::App
