#pragma once

#include "Tracking/Events/Event.h"
#include "Tracking/TrackingExport.h"

#include <string>
#include <string_view>

namespace Velkor::KT::Tracking
{

// Appends `text` to `out` as a JSON string literal, quotes included. The result is valid JSON
// in UTF-8 whatever the bytes: '"' and '\' are escaped, the control characters U+0000 to U+001F
// and U+007F are written as \b, \f, \n, \r, \t or \u00XX, U+FEFF as \ufeff (raw, it would be
// taken for a byte order mark and dropped by some readers), other UTF-8 text is copied as it is,
// and bytes that are not UTF-8 become U+FFFD (event texts are UTF-8, so nothing else is lost).
KT_TRACKING_EXPORT void AppendJsonString(std::string& out, std::string_view text);

// One event as one line of JSON Lines, without the line end:
//   {"name":"CAPTURE_STOP","params":{"DURATION":"90","METHOD":"BUTTON"}}
// The properties in key order. This is the form `kttrack replay` reads.
KT_TRACKING_EXPORT std::string EventJson(const Event& event);

}  // namespace Velkor::KT::Tracking
