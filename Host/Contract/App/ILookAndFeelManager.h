#pragma once

#include <string>

namespace Velkor::App
{

// The look and feel of the application's interface, of which the statistics read the language.
class ILookAndFeelManager
{
public:
    virtual ~ILookAndFeelManager() = default;

    // The language the interface is shown in right now, e.g. "en" or "pt_BR".
    virtual std::string GetLanguage() const = 0;
};

}  // namespace Velkor::App
