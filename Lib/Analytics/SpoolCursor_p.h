#pragma once

#include "Analytics/SpoolPosition_p.h"

#include <string>

namespace Velkor::Analytics
{

// The durable record of how far the spool has been sent: the file "<base>.cursor" of the spool's
// directory, one line "<segment> <offset>". Save() writes a new file beside it, syncs it to disk,
// renames it over the old one and syncs the directory, so after a crash of the process or of the
// machine the file holds either the old position or the new one, never a mix.
class SpoolCursor
{
public:
    SpoolCursor(std::string directory, const std::string& baseName);

    // The saved position; {0, 0} (the start) when there is none or it cannot be read.
    SpoolPosition Load() const;
    bool Save(const SpoolPosition& position) const;

private:
    const std::string m_directory;
    const std::string m_path;
};

}  // namespace Velkor::Analytics
