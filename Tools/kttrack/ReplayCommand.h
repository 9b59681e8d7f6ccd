#pragma once

#include "Tracking/Events/Event.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Velkor::KT::KtTrack
{

// Runs `events` through a filter stage and then an aggregator stage, each configured with its
// document text, or passing everything through when it has none, and returns what leaves the
// aggregator, in order.
std::vector<Tracking::Event> Replay(const std::vector<Tracking::Event>& events,
                                    const std::string* filterDocument,
                                    const std::string* aggregatorDocument);

// kttrack replay [--filter F|none] [--aggregator A|none] [--format jsonl|text] [--expect OUT]
//                [--explain [--line N]...] EVENTS
// Returns the exit code: 0 done (or as expected), 1 not as expected, 2 unusable input.
int RunReplay(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
              std::ostream& err);

}  // namespace Velkor::KT::KtTrack
