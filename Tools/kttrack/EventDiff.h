#pragma once

#include "EventsJson.h"

#include "Tracking/Events/Event.h"

#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// Compares the delivered events with the expected ones and describes each difference on one
// line; no lines when they are equal. Events are paired by name in order (the longest common
// sequence of names), so a missing or an extra event does not make every later one differ:
//
//   OUT:7: event #2 CAPTURE_STOP: "METHOD": expected "BUTTON", delivered "MENU_BAR"
//   OUT:7: event #2 CAPTURE_STOP: "REASON": expected "SUCCESS", not delivered
//   OUT:7: event #2 CAPTURE_STOP: "EXTRA": not expected, delivered "1"
//   OUT:9: event #3 missing: {"name":"CAPTURE_START","params":{}}
//   delivered event #4 not expected: {"name":"SHOW_WINDOW","params":{}}
//
// `expectedName` is the name of the expected file; "#N" counts expected events, with the
// delivered event's own number added in parentheses where it differs.
std::vector<std::string> DiffEvents(const std::vector<NumberedEvent>& expected,
                                    const std::vector<Tracking::Event>& delivered,
                                    const std::string& expectedName);

}  // namespace Velkor::KT::KtTrack
