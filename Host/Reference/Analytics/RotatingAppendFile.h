#pragma once

#include "Analytics/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace Velkor::Analytics
{

// The files of one data directory that lines are appended to: "<base>.jsonl" is the current
// one, "<base>.1.jsonl", "<base>.2.jsonl", ... are older, at most `maxFiles` in all.
//
// Append() hands a line to the kernel with one write(2) on the current file, opened with
// O_APPEND, and takes back what part of it made it when the write fails, so that the file only
// ever holds whole lines. A line that would take the current file past `maxFileBytes` first
// rotates the files (the oldest is deleted when every number is taken); a single longer line
// gets a file of its own. Opening cuts off a torn last line, left behind by a process that died
// while writing it, and appends after what is there.
//
// The directory belongs to one object at a time: Open() takes an exclusive lock on
// "<base>.lock" for the object's life. Not safe for concurrent calls: the owner serialises them.
class RotatingAppendFile
{
public:
    // `maxFiles` counts the current file; zero is taken as one.
    RotatingAppendFile(std::string baseName, std::uint64_t maxFileBytes, unsigned maxFiles);

    // Takes the lock of the existing `directory` and opens its current file. Fails when another
    // object, in this or another process, holds the lock, or when the file cannot be opened.
    bool Open(const std::string& directory);
    // Appends `line`, which ends with a line end, whole or not at all.
    bool Append(const std::string& line);
    std::string CurrentPath() const { return FilePath(0); }

private:
    std::string FilePath(unsigned index) const;
    bool OpenCurrent();
    bool Rotate();

    const std::string m_baseName;
    const std::uint64_t m_maxFileBytes;
    const unsigned m_maxFiles;
    std::string m_directory;
    FileDescriptor m_lock;
    FileDescriptor m_file;
    std::uint64_t m_fileSize = 0;
};

}  // namespace Velkor::Analytics
