#pragma once

#include <string>

namespace Velkor::App
{

// The application's own persistent settings: named text values kept between sessions.
class IApplicationSettingsManager
{
public:
    virtual ~IApplicationSettingsManager() = default;

    // The stored value, or defaultValue when the key has never been written.
    virtual std::string GetValue(const std::string& key,
                                 const std::string& defaultValue = std::string()) const = 0;
    virtual void SetValue(const std::string& key, const std::string& value) = 0;
};

}  // namespace Velkor::App
