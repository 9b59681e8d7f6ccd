#include "Analytics/SpoolCursor_p.h"

#include <cstring>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Velkor::Analytics
{

namespace
{

struct Slot
{
    std::uint64_t sequence;
    std::uint64_t segment;
    std::uint64_t offset;
    std::uint64_t check;
};
static_assert(sizeof(Slot) == 32);

// FNV-1a over the slot's first three words: a torn or foreign slot does not pass.
std::uint64_t CheckOf(const Slot& slot)
{
    std::uint64_t hash = 0xcbf29ce484222325ull;
    unsigned char bytes[24];
    std::memcpy(bytes, &slot, sizeof bytes);
    for (const unsigned char byte : bytes)
    {
        hash = (hash ^ byte) * 0x100000001b3ull;
    }
    return hash;
}

}  // namespace

SpoolCursor::SpoolCursor(std::string directory, const std::string& baseName)
    : m_directory(std::move(directory)), m_path(m_directory + '/' + baseName + ".cursor")
{
}

SpoolPosition SpoolCursor::Load()
{
    SpoolPosition position;
    const FileDescriptor file(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    Slot saved[2] = {};
    if (!file.valid() || ::pread(file.get(), saved, sizeof saved, 0) != sizeof saved)
    {
        return position;
    }
    for (const Slot& slot : saved)
    {
        if (slot.sequence > m_sequence && slot.check == CheckOf(slot))
        {
            m_sequence = slot.sequence;
            position = {slot.segment, slot.offset};
        }
    }
    return position;
}

bool SpoolCursor::Save(const SpoolPosition& position)
{
    if (!m_file.valid())
    {
        const bool existed = ::access(m_path.c_str(), F_OK) == 0;
        m_file = FileDescriptor(::open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
        if (!m_file.valid())
        {
            return false;
        }
        if (!existed)
        {
            // Once: the file's name in the directory must be on disk too.
            const FileDescriptor directory(
                ::open(m_directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
            if (!directory.valid() || ::fsync(directory.get()) != 0)
            {
                return false;
            }
        }
    }
    Slot slot{m_sequence + 1, position.segment, position.offset, 0};
    slot.check = CheckOf(slot);
    const off_t at = static_cast<off_t>((slot.sequence % 2) * sizeof(Slot));
    if (::pwrite(m_file.get(), &slot, sizeof slot, at) != sizeof slot ||
        ::fdatasync(m_file.get()) != 0)
    {
        return false;
    }
    m_sequence = slot.sequence;
    return true;
}

}  // namespace Velkor::Analytics
