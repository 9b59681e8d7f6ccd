#pragma once

#include "Analytics/IApplicationTracker.h"

#include <string>

namespace Velkor::Analytics
{

// The line the reference analytics tracker keeps for one event, with its line end:
//
//   {"time":"2026-11-21T11:37:30.123Z","sid":"...","app":"...","name":"...","params":{...}}
//
// "time" is the UTC time of the call, "sid" the default property SID (empty without one),
// "app" `identity`, "params" the event's properties plus every other default property whose key
// the event does not have, in byte order of the keys. Texts are escaped as AppendJsonString()
// describes.
std::string FormatEventLine(const std::string& identity, const Properties& defaults,
                            const std::string& name, const Properties& properties);

}  // namespace Velkor::Analytics
