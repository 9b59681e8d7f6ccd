#pragma once

#include "SessionTrace.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// Writes what the stages did to each event of `roads` (traced with `rules`), in the session's
// order. Readably, each event is a header ("SESSION:LINE: NAME {properties}"), one line per step
// led by the FILE:LINE of the rule that made it, and the outcome:
//
//   stop.jsonl:2: CAPTURE_STOP {"DURATION":"90","FILE_SIZE":"5242880"}
//     FilterConfig.xml:310: filter block "CAPTURE_STOP" applies
//     FilterConfig.xml:312:   param "DURATION" = "90": inRange to="120" matches
//     FilterConfig.xml:313:     addParam "DURATION_ID": absent -> "UP_TO_2_MIN"
//     AggregatorConfig.xml:18: aggregator: main event "CAPTURE_STOP", merges its held cause
//     AggregatorConfig.xml:18:   "METHOD": absent -> "BUTTON"
//     => delivered CAPTURE_STOP {...}
//
// With `jsonl`, one JSON object per event: {"line":N,"event":{...},"steps":[{"stage":...,
// "at":"FILE:LINE","step":"block"|"match"|"action"|"main"|"merge"|"hold",...}],
// "outcome":"delivered"|"dropped"|"held","delivered":{...}|null}.
void WriteExplanation(const std::vector<EventRoad>& roads, const StageRules& rules,
                      const std::string& sessionName, bool jsonl, std::ostream& out);

}  // namespace Velkor::KT::KtTrack
