#pragma once

#include <cstdint>

namespace Velkor::Analytics
{

// A place in the spool: a byte offset into the segment file of a number. Segments that are gone
// count as passed: the first existing segment at or after `segment` is where reading goes on.
struct SpoolPosition
{
    std::uint64_t segment = 0;
    std::uint64_t offset = 0;

    friend bool operator==(const SpoolPosition& a, const SpoolPosition& b)
    {
        return a.segment == b.segment && a.offset == b.offset;
    }
};

}  // namespace Velkor::Analytics
