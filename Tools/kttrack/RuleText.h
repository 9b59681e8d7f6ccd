#pragma once

// Rules and events as the tool's reports write them.

#include "Tracking/Config/Filter.h"
#include "Tracking/Events/Event.h"
#include "Tracking/Rules/IRuleTraceListener.h"

#include <cstddef>
#include <string>

namespace Velkor::KT::KtTrack
{

// The element names: "equal" ... "any", "setValue" ... "delParam".
const char* MatcherKindName(Tracking::FilterMatcherKind kind);
const char* ActionKindName(Tracking::FilterActionKind kind);

// How many matchers of `kind` the rule has.
std::size_t MatcherCount(const Tracking::Config::Filter::Param& rule,
                         Tracking::FilterMatcherKind kind);

// A matcher as its tag is written, without the brackets and the actions:
//   equal value="SETTINGS"   inRange from="121" to="600"   any actOn="false"
std::string MatcherText(const Tracking::Config::Filter::Param& rule,
                        Tracking::FilterMatcherKind kind, std::size_t index);

// Texts and properties as JSON: "text", {"KEY":"VALUE",...}.
std::string Quoted(const std::string& text);
std::string ParamsJson(const Tracking::Event::Params& params);

}  // namespace Velkor::KT::KtTrack
