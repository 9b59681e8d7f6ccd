#pragma once

#include "Analytics/EventLineReader_p.h"
#include "Analytics/Sink_p.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Velkor::Analytics
{

// One batch made from spool lines.
struct Batch
{
    std::string body;                      // the sink's rows of the events
    std::vector<std::string_view> events;  // the lines behind the rows, in order
    std::uint64_t consumedBytes = 0;       // of the lines read, events and damaged ones
    std::uint64_t consumedLines = 0;
    std::uint64_t damagedLines = 0;
};

// Turns the lines of `data` (SegmentReader) into `batch`: each line that ReadEventLine() accepts
// becomes a row of `sink`, any other is counted as damaged and passed over. Stops after
// `maxEvents` events; `batch.events` views into `data`.
void BuildBatch(std::string_view data, std::size_t maxEvents, const Sink& sink, Batch& batch);

}  // namespace Velkor::Analytics
