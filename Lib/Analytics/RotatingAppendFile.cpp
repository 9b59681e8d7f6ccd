#include "Analytics/RotatingAppendFile_p.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Velkor::Analytics
{

namespace
{

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

}  // namespace

RotatingAppendFile::RotatingAppendFile(std::string baseName, std::uint64_t maxFileBytes,
                                       unsigned maxFiles, Naming naming)
    : m_baseName(std::move(baseName)),
      m_maxFileBytes(maxFileBytes),
      m_maxFiles(naming == Naming::Shifting ? std::max(maxFiles, 1u) : maxFiles),
      m_naming(naming)
{
}

bool RotatingAppendFile::Open(const std::string& directory)
{
    std::error_code ignored;  // a directory that cannot be made fails at the lock below
    std::filesystem::create_directories(directory, ignored);
    m_directory = directory;
    const std::string lockPath = m_directory + '/' + m_baseName + ".lock";
    FileDescriptor lock(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (!lock.valid() || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
    {
        return false;
    }
    m_lock = std::move(lock);
    if (m_naming == Naming::Numbered)
    {
        const auto numbers = ExistingNumbers();
        m_number = numbers.empty() ? 1 : numbers.back();
    }
    if (!OpenCurrent())
    {
        m_lock = FileDescriptor();
        return false;
    }
    return true;
}

std::string RotatingAppendFile::FilePath(std::uint64_t number) const
{
    std::string path = m_directory + '/' + m_baseName;
    if (number > 0)
    {
        path += '.' + std::to_string(number);
    }
    return path + ".jsonl";
}

std::string RotatingAppendFile::CurrentPath() const
{
    return FilePath(m_number);
}

std::vector<std::uint64_t> RotatingAppendFile::ExistingNumbers() const
{
    std::vector<std::uint64_t> numbers;
    DIR* directory = ::opendir(m_directory.c_str());
    if (!directory)
    {
        return numbers;
    }
    const std::string prefix = m_baseName + '.';
    while (const dirent* entry = ::readdir(directory))
    {
        const std::string_view name(entry->d_name);
        constexpr std::string_view suffix = ".jsonl";
        if (name.size() <= prefix.size() + suffix.size() ||
            name.substr(0, prefix.size()) != prefix ||
            name.substr(name.size() - suffix.size()) != suffix)
        {
            continue;
        }
        const std::string_view digits =
            name.substr(prefix.size(), name.size() - prefix.size() - suffix.size());
        if (digits.size() > 18 || digits.front() == '0' ||
            !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        {
            continue;
        }
        numbers.push_back(std::strtoull(std::string(digits).c_str(), nullptr, 10));
    }
    ::closedir(directory);
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

bool RotatingAppendFile::OpenCurrent()
{
    m_file = OpenForAppend(CurrentPath());
    if (!m_file.valid())
    {
        return false;
    }
    const off_t size = DropTornTail(m_file.get());
    if (size < 0)
    {
        m_file = FileDescriptor();
        return false;
    }
    m_fileSize = static_cast<std::uint64_t>(size);
    return true;
}

bool RotatingAppendFile::Rotate()
{
    if (m_file.valid() && m_fileSize == 0)
    {
        return true;
    }
    return m_naming == Naming::Shifting ? RotateShifting() : RotateNumbered();
}

// Shifts the run of rotated files that starts at number 1 up by one, dropping the oldest when
// every number is taken, and starts a new current file. Renames are atomic, so a process killed
// in the middle leaves every line in exactly one file; the gap it may leave ends the run, and
// the next rotation fills it.
bool RotatingAppendFile::RotateShifting()
{
    m_file = FileDescriptor();
    const unsigned last = m_maxFiles - 1;
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

bool RotatingAppendFile::RotateNumbered()
{
    m_file = FileDescriptor();
    ++m_number;
    if (m_maxFiles > 0)
    {
        for (const std::uint64_t number : ExistingNumbers())
        {
            if (number + m_maxFiles <= m_number)
            {
                ::unlink(FilePath(number).c_str());
            }
        }
    }
    return OpenCurrent();
}

bool RotatingAppendFile::Append(std::string_view line)
{
    if (m_fileSize > 0 && m_fileSize + line.size() > m_maxFileBytes)
    {
        if (!Rotate())
        {
            return false;
        }
    }
    if (!m_file.valid() && !OpenCurrent())
    {
        return false;
    }
    const char* data = line.data();
    std::size_t left = line.size();
    while (left > 0)
    {
        const ssize_t written = ::write(m_file.get(), data, left);
        if (written < 0 && errno == EINTR)
        {
            continue;
        }
        if (written <= 0)
        {
            // Take back what part of the line made it, so the next line starts clean.
            if (::ftruncate(m_file.get(), static_cast<off_t>(m_fileSize)) != 0)
            {
                m_file = FileDescriptor();
            }
            return false;
        }
        data += written;
        left -= static_cast<std::size_t>(written);
    }
    m_fileSize += line.size();
    return true;
}

}  // namespace Velkor::Analytics
