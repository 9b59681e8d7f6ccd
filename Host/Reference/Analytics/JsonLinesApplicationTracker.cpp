#include "Analytics/JsonLinesApplicationTracker.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonText.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Velkor::Analytics
{

namespace
{

class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ~FileDescriptor()
    {
        if (m_fd >= 0)
        {
            ::close(m_fd);
        }
    }

    int get() const { return m_fd; }
    bool valid() const { return m_fd >= 0; }

private:
    int m_fd = -1;
};

FileDescriptor OpenForAppend(const std::string& path)
{
    return FileDescriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
}

// Cuts off an incomplete last line, left behind by a process that died while writing it.
// Answers the size of the file afterwards, or -1 on failure.
off_t DropTornTail(int fd)
{
    struct stat status
    {
    };
    if (::fstat(fd, &status) != 0)
    {
        return -1;
    }
    off_t end = status.st_size;
    std::vector<char> buffer(64 * 1024);
    while (end > 0)
    {
        const off_t chunk = std::min<off_t>(end, static_cast<off_t>(buffer.size()));
        const off_t start = end - chunk;
        const ssize_t got = ::pread(fd, buffer.data(), static_cast<size_t>(chunk), start);
        if (got != chunk)
        {
            return -1;
        }
        for (off_t index = chunk; index > 0; --index)
        {
            if (buffer[static_cast<size_t>(index - 1)] == '\n')
            {
                const off_t keep = start + index;
                if (keep != status.st_size && ::ftruncate(fd, keep) != 0)
                {
                    return -1;
                }
                return keep;
            }
        }
        end = start;
    }
    if (status.st_size != 0 && ::ftruncate(fd, 0) != 0)
    {
        return -1;
    }
    return 0;
}

void AppendUtcTime(std::string& out)
{
    const auto now = std::chrono::system_clock::now();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() %
        1000;
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                                     utc.tm_year + 1900, utc.tm_mon + 1, utc.tm_mday, utc.tm_hour,
                                     utc.tm_min, utc.tm_sec, static_cast<int>(milliseconds));
    out.push_back('"');
    out.append(text, static_cast<size_t>(length));
    out.push_back('"');
}

}  // namespace

class JsonLinesApplicationTracker::Private
{
public:
    explicit Private(const Options& options) : options(options)
    {
        if (this->options.maxFiles == 0)
        {
            this->options.maxFiles = 1;
        }
    }

    std::string FilePath(unsigned index) const
    {
        std::string path = directory + '/' + options.baseName;
        if (index > 0)
        {
            path += '.' + std::to_string(index);
        }
        return path + ".jsonl";
    }

    bool OpenCurrent()
    {
        file = OpenForAppend(FilePath(0));
        if (!file.valid())
        {
            return false;
        }
        const off_t size = DropTornTail(file.get());
        if (size < 0)
        {
            file = FileDescriptor();
            return false;
        }
        fileSize = static_cast<std::uint64_t>(size);
        return true;
    }

    // Shifts the run of rotated files that starts at number 1 up by one, dropping the oldest
    // when every number is taken, and starts a new current file. Renames are atomic, so a
    // process killed in the middle leaves every line in exactly one file; the gap it may leave
    // ends the run, and the next rotation fills it.
    bool Rotate()
    {
        file = FileDescriptor();
        const unsigned last = options.maxFiles - 1;
        if (last == 0)
        {
            ::unlink(FilePath(0).c_str());
            return OpenCurrent();
        }
        unsigned free = 1;
        struct stat status
        {
        };
        while (free <= last && ::stat(FilePath(free).c_str(), &status) == 0)
        {
            ++free;
        }
        if (free > last)
        {
            ::unlink(FilePath(last).c_str());
            free = last;
        }
        for (unsigned index = free; index > 1; --index)
        {
            ::rename(FilePath(index - 1).c_str(), FilePath(index).c_str());
        }
        ::rename(FilePath(0).c_str(), FilePath(1).c_str());
        return OpenCurrent();
    }

    std::string FormatLine(const std::string& name, const Properties& properties) const
    {
        std::string line;
        line.reserve(128 + name.size() + properties.size() * 32);
        line += "{\"time\":";
        AppendUtcTime(line);
        line += ",\"sid\":";
        const auto sid = defaults.find(SID);
        AppendJsonString(line, sid == defaults.end() ? std::string() : sid->second);
        line += ",\"app\":";
        AppendJsonString(line, identity);
        line += ",\"name\":";
        AppendJsonString(line, name);
        line += ",\"params\":{";

        // Both maps are ordered alike: merge them so the keys come out in byte order.
        bool first = true;
        auto writeEntry = [&](const std::string& key, const std::string& value)
        {
            if (!first)
            {
                line.push_back(',');
            }
            first = false;
            AppendJsonString(line, key);
            line.push_back(':');
            AppendJsonString(line, value);
        };
        auto own = properties.begin();
        auto shared = defaults.begin();
        while (own != properties.end() || shared != defaults.end())
        {
            if (shared != defaults.end() && shared->first == SID)
            {
                ++shared;
                continue;
            }
            if (shared == defaults.end() ||
                (own != properties.end() && own->first <= shared->first))
            {
                if (shared != defaults.end() && own->first == shared->first)
                {
                    ++shared;  // the event's own value wins
                }
                writeEntry(own->first, own->second);
                ++own;
            }
            else
            {
                writeEntry(shared->first, shared->second);
                ++shared;
            }
        }
        line += "}}\n";
        return line;
    }

    bool Append(const std::string& line)
    {
        if (fileSize > 0 && fileSize + line.size() > options.maxFileBytes)
        {
            if (!Rotate())
            {
                return false;
            }
        }
        if (!file.valid() && !OpenCurrent())
        {
            return false;
        }
        const char* data = line.data();
        std::size_t left = line.size();
        while (left > 0)
        {
            const ssize_t written = ::write(file.get(), data, left);
            if (written < 0 && errno == EINTR)
            {
                continue;
            }
            if (written <= 0)
            {
                // Take back what part of the line made it, so the next line starts clean.
                if (::ftruncate(file.get(), static_cast<off_t>(fileSize)) != 0)
                {
                    file = FileDescriptor();
                }
                return false;
            }
            data += written;
            left -= static_cast<std::size_t>(written);
        }
        fileSize += line.size();
        return true;
    }

    Options options;

    mutable std::mutex mutex;
    bool initialized = false;
    std::string directory;
    std::string identity;
    Properties defaults;
    FileDescriptor lock;
    FileDescriptor file;
    std::uint64_t fileSize = 0;
};

RefPtr<JsonLinesApplicationTracker> JsonLinesApplicationTracker::Create()
{
    return Create(Options());
}

RefPtr<JsonLinesApplicationTracker> JsonLinesApplicationTracker::Create(const Options& options)
{
    class Counted final : public RefCounted<JsonLinesApplicationTracker>
    {
    public:
        explicit Counted(const Options& options) : RefCounted(options) {}
    };
    return RefPtr<JsonLinesApplicationTracker>(new Counted(options));
}

JsonLinesApplicationTracker::JsonLinesApplicationTracker(const Options& options)
    : d(std::make_unique<Private>(options))
{
}

JsonLinesApplicationTracker::~JsonLinesApplicationTracker() = default;

bool JsonLinesApplicationTracker::Track(const std::string& name, const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    if (!d->initialized)
    {
        return false;
    }
    return d->Append(d->FormatLine(name, properties));
}

bool JsonLinesApplicationTracker::Track(const std::string& name, const std::string& key,
                                        const std::string& value)
{
    return Track(name, Properties{{key, value}});
}

void JsonLinesApplicationTracker::AddDefaultProperties(const Properties& properties)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    d->defaults.insert(properties.begin(), properties.end());
}

bool JsonLinesApplicationTracker::Initialize(const Properties& defaultProperties,
                                             const std::string& identity,
                                             const std::string& dataDirectory)
{
    std::lock_guard<std::mutex> lock(d->mutex);
    if (d->initialized || dataDirectory.empty())
    {
        return false;
    }
    std::error_code error;
    std::filesystem::create_directories(dataDirectory, error);
    if (error && !std::filesystem::is_directory(dataDirectory))
    {
        return false;
    }
    d->directory = dataDirectory;

    const std::string lockPath = d->directory + '/' + d->options.baseName + ".lock";
    FileDescriptor lockFile(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (!lockFile.valid() || ::flock(lockFile.get(), LOCK_EX | LOCK_NB) != 0)
    {
        return false;
    }
    d->lock = std::move(lockFile);
    if (!d->OpenCurrent())
    {
        d->lock = FileDescriptor();
        return false;
    }
    d->identity = identity;
    d->defaults.insert(defaultProperties.begin(), defaultProperties.end());
    d->initialized = true;
    return true;
}

std::string JsonLinesApplicationTracker::CurrentFilePath() const
{
    std::lock_guard<std::mutex> lock(d->mutex);
    return d->initialized ? d->FilePath(0) : std::string();
}

}  // namespace Velkor::Analytics
