#include "Analytics/SegmentReader_p.h"

#include "Analytics/FileDescriptor_p.h"

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

namespace Velkor::Analytics
{

namespace
{

// Appends bytes [at, at + count) of the file to `data`.
bool ReadAt(int fd, std::uint64_t at, std::size_t count, std::string& data)
{
    const std::size_t start = data.size();
    data.resize(start + count);
    std::size_t done = 0;
    while (done < count)
    {
        const ssize_t got =
            ::pread(fd, &data[start + done], count - done, static_cast<off_t>(at + done));
        if (got <= 0)
        {
            data.resize(start + done);
            return false;
        }
        done += static_cast<std::size_t>(got);
    }
    return true;
}

// Reads from `from` until `data` holds a line end after `minimum` bytes or `end` is reached;
// cuts `data` after its last line end, unless it reaches `end`.
bool ReadLines(const std::string& path, std::uint64_t from, std::uint64_t end,
               std::size_t firstChunk, std::string& data)
{
    data.clear();
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.valid() || from >= end)
    {
        return false;
    }
    std::size_t chunk = std::max<std::size_t>(firstChunk, 1);
    std::uint64_t at = from;
    while (at < end)
    {
        const std::size_t searchFrom = data.size();
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(chunk, end - at));
        if (!ReadAt(file.get(), at, count, data))
        {
            return false;
        }
        at += count;
        const std::size_t lastEnd = data.rfind('\n');
        if (lastEnd != std::string::npos && lastEnd >= searchFrom)
        {
            if (at < end)
            {
                data.resize(lastEnd + 1);
            }
            return true;
        }
        chunk = std::max<std::size_t>(chunk, 64 * 1024) * 2;
    }
    return true;
}

}  // namespace

bool SegmentReader::Read(const std::string& path, std::uint64_t from, std::uint64_t end,
                         std::size_t maxBytes, std::string& data)
{
    return ReadLines(path, from, end, maxBytes, data);
}

bool SegmentReader::ReadFirstLine(const std::string& path, std::uint64_t from, std::uint64_t end,
                                  std::string& line)
{
    if (!ReadLines(path, from, end, 4096, line))
    {
        return false;
    }
    line.resize(std::min(line.find('\n'), line.size()));
    return true;
}

}  // namespace Velkor::Analytics
