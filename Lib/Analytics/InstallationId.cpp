#include "Analytics/InstallationId_p.h"

#include "Analytics/FileDescriptor_p.h"
#include "Analytics/RandomId_p.h"

#include <algorithm>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace Velkor::Analytics
{

std::string LoadOrCreateInstallationId(const std::string& directory)
{
    const std::string path = directory + "/installation";
    {
        const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        char text[128] = {};
        const ssize_t got = file.valid() ? ::read(file.get(), text, sizeof text - 1) : -1;
        if (got > 0)
        {
            std::string id(text, static_cast<std::size_t>(got));
            id.resize(std::min(id.find('\n'), id.size()));
            if (!id.empty() && id.size() <= 64 &&
                std::all_of(id.begin(), id.end(), [](char c) { return c > ' ' && c < 127; }))
            {
                return id;
            }
        }
    }
    std::string id;
    AppendRandomId(id);
    const std::string temporary = path + ".new";
    const std::string line = id + '\n';
    {
        const FileDescriptor file(
            ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
        if (!file.valid() ||
            ::write(file.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size()) ||
            ::fdatasync(file.get()) != 0)
        {
            return id;
        }
    }
    std::rename(temporary.c_str(), path.c_str());
    return id;
}

}  // namespace Velkor::Analytics
