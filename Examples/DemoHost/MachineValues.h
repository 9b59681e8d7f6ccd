#pragma once

#include <string>

namespace Velkor::Demo
{

// What the session printout shows instead of a machine fact.
inline constexpr const char kMachineValue[] = "<machine>";

// Whether a property describes the machine the demo runs on (operating system, hardware,
// monitors, acceleration, system country, bitness) rather than the session.
bool IsMachineKey(const std::string& key);

// The viewer text of an event ("NAME\n\tKEY=VALUE\n...") with the value of every machine
// property replaced by kMachineValue. Other lines stay as they are.
std::string MaskMachineValues(const std::string& eventText);

}  // namespace Velkor::Demo
