#pragma once

#include "Analytics/IApplicationTracker.h"

#include <string>

namespace Velkor::Analytics
{

// What every line of one tracker carries besides the event itself.
struct EventLineContext
{
    std::string identity;      // "app": the identity the tracker was initialised with
    std::string installation;  // "inst": the installation's id, empty when not known
    std::string version;       // "ver": the application's version, empty when not known
    Properties defaults;       // "sid" is the default SID; the others go into "params"
};

// Appends the line kept for one event, with its line end:
//
//   {"id":"1b4e28ba-2fa1-11d2-883f-0016d3cca427","time":"2026-11-21T11:37:30.123Z","sid":"...",
//    "inst":"...","app":"...","ver":"...","name":"...","params":{...}}
//
// (on one line). "id" is 128 random bits made for this line (AppendRandomId), "time" the UTC time
// of the call in milliseconds, "params" the event's properties plus every other default property
// whose key the event does not have, in byte order of the keys. Texts are escaped as
// AppendJsonString() describes. EventLineReader reads the line back.
void AppendEventLine(std::string& out, const EventLineContext& context, const std::string& name,
                     const Properties& properties);

}  // namespace Velkor::Analytics
