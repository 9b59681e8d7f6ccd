#include "Analytics/SpoolCursor_p.h"

#include "Analytics/FileDescriptor_p.h"

#include <cinttypes>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Velkor::Analytics
{

SpoolCursor::SpoolCursor(std::string directory, const std::string& baseName)
    : m_directory(std::move(directory)), m_path(m_directory + '/' + baseName + ".cursor")
{
}

SpoolPosition SpoolCursor::Load() const
{
    SpoolPosition position;
    const FileDescriptor file(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.valid())
    {
        return position;
    }
    char text[64] = {};
    const ssize_t got = ::read(file.get(), text, sizeof text - 1);
    std::uint64_t segment = 0;
    std::uint64_t offset = 0;
    if (got > 0 && std::sscanf(text, "%" SCNu64 " %" SCNu64, &segment, &offset) == 2)
    {
        position = {segment, offset};
    }
    return position;
}

bool SpoolCursor::Save(const SpoolPosition& position) const
{
    char text[64];
    const int length = std::snprintf(text, sizeof text, "%" PRIu64 " %" PRIu64 "\n",
                                     position.segment, position.offset);
    const std::string temporary = m_path + ".new";
    {
        const FileDescriptor file(
            ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
        if (!file.valid() || ::write(file.get(), text, static_cast<size_t>(length)) != length ||
            ::fdatasync(file.get()) != 0)
        {
            return false;
        }
    }
    if (::rename(temporary.c_str(), m_path.c_str()) != 0)
    {
        return false;
    }
    const FileDescriptor directory(::open(m_directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return directory.valid() && ::fsync(directory.get()) == 0;
}

}  // namespace Velkor::Analytics
