#pragma once

#include "Analytics/FileDescriptor_p.h"
#include "Analytics/SpoolPosition_p.h"

#include <cstdint>
#include <string>

namespace Velkor::Analytics
{

// The durable record of how far the spool has been sent: the file "<base>.cursor" of the spool's
// directory, two slots of 32 bytes, each a position with a sequence number and a check sum.
// Save() overwrites the older slot in place and syncs it to disk (one fdatasync, no rename), so
// after a crash of the process or of the machine one slot holds the newest saved position or a
// torn write, and the other the one before: Load() takes the newest slot that is whole.
class SpoolCursor
{
public:
    SpoolCursor(std::string directory, const std::string& baseName);

    // The newest saved position; {0, 0} (the start) when there is none.
    SpoolPosition Load();
    // Not safe for concurrent calls: the one uploading thread saves.
    bool Save(const SpoolPosition& position);

private:
    const std::string m_directory;
    const std::string m_path;
    FileDescriptor m_file;
    std::uint64_t m_sequence = 0;
};

}  // namespace Velkor::Analytics
