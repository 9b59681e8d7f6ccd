#pragma once

#include "Analytics/FileDescriptor_p.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Velkor::Analytics
{

// The files of one directory that lines are appended to, named after `baseName`, at most
// `maxFiles` of them (Shifting takes zero as one, Numbered as no limit), in one of two namings:
// - Shifting: "<base>.jsonl" is written; older files are "<base>.1.jsonl", "<base>.2.jsonl", ...,
//   and a rotation renames each one up by one.
// - Numbered: "<base>.<n>.jsonl" with n = 1, 2, ...; the highest number is written, a rotation
//   starts number n + 1 and renames nothing, so a position (number, offset) keeps naming the
//   same line for as long as its file exists.
//
// Append() hands a line to the kernel with one write(2) on the current file, opened with
// O_APPEND, and takes back what part of it made it when the write fails, so that the files only
// ever hold whole lines. A line that would take the current file past `maxFileBytes` first
// rotates the files (the oldest is deleted when every number is taken); a single longer line
// gets a file of its own. Opening cuts off a torn last line, left behind by a process that died
// while writing it, and appends after what is there.
//
// The directory belongs to one object at a time: Open() takes an exclusive lock on
// "<base>.lock" for the object's life. Not safe for concurrent calls: the owner serialises them.
class RotatingAppendFile
{
public:
    enum class Naming
    {
        Shifting,
        Numbered,
    };

    RotatingAppendFile(std::string baseName, std::uint64_t maxFileBytes, unsigned maxFiles,
                       Naming naming = Naming::Shifting);

    // Takes the lock of `directory`, made as needed, and opens its current file. Fails when
    // another object, in this or another process, holds the lock, or when the directory or the
    // file cannot be made.
    bool Open(const std::string& directory);
    // Appends `line`, which ends with a line end, whole or not at all.
    bool Append(std::string_view line);
    // Starts a new current file now (Numbered: the next number; Shifting: after shifting the
    // others), unless the current one is empty.
    bool Rotate();

    std::string CurrentPath() const;
    // The current file's size in bytes, and its number (Numbered; 0 for Shifting).
    std::uint64_t CurrentSize() const { return m_fileSize; }
    std::uint64_t CurrentNumber() const { return m_number; }
    // The path of file `number`: Numbered "<base>.<number>.jsonl"; Shifting "<base>.jsonl" for
    // 0, else "<base>.<number>.jsonl".
    std::string FilePath(std::uint64_t number) const;
    // Numbered: the numbers of the files that exist now, ascending.
    std::vector<std::uint64_t> ExistingNumbers() const;

private:
    bool OpenCurrent();
    bool RotateShifting();
    bool RotateNumbered();

    const std::string m_baseName;
    const std::uint64_t m_maxFileBytes;
    const unsigned m_maxFiles;
    const Naming m_naming;
    std::string m_directory;
    FileDescriptor m_lock;
    FileDescriptor m_file;
    std::uint64_t m_fileSize = 0;
    std::uint64_t m_number = 0;
};

}  // namespace Velkor::Analytics
