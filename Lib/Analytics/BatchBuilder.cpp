#include "Analytics/BatchBuilder_p.h"

namespace Velkor::Analytics
{

void BuildBatch(std::string_view data, std::size_t maxEvents, const Sink& sink, Batch& batch)
{
    batch.body.clear();
    batch.events.clear();
    batch.consumedBytes = 0;
    batch.consumedLines = 0;
    batch.damagedLines = 0;
    EventLineFields fields;
    std::size_t at = 0;
    while (at < data.size() && batch.events.size() < maxEvents)
    {
        std::size_t end = data.find('\n', at);
        const std::size_t next = end == std::string_view::npos ? data.size() : end + 1;
        end = end == std::string_view::npos ? data.size() : end;
        const std::string_view line = data.substr(at, end - at);
        if (ReadEventLine(line, fields))
        {
            sink.AppendRow(batch.body, line, fields);
            batch.events.push_back(line);
        }
        else
        {
            ++batch.damagedLines;
        }
        ++batch.consumedLines;
        at = next;
    }
    batch.consumedBytes = at;
}

}  // namespace Velkor::Analytics
