#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Velkor::Analytics
{

// Reads whole lines from the bytes [from, end) of a spool segment. Bytes after the last line end
// before `end` (only a damaged, sealed segment has them) are read as one more line.
class SegmentReader
{
public:
    // The lines from `from` on into `data`, line ends included: at least one line, then as many
    // more as fit into `maxBytes`. False when the file cannot be read.
    static bool Read(const std::string& path, std::uint64_t from, std::uint64_t end,
                     std::size_t maxBytes, std::string& data);
    // Only the first line, without its line end.
    static bool ReadFirstLine(const std::string& path, std::uint64_t from, std::uint64_t end,
                              std::string& line);
};

}  // namespace Velkor::Analytics
