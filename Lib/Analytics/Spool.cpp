#include "Analytics/Spool_p.h"

#include "Analytics/FileDescriptor_p.h"

#include <glog/logging.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Velkor::Analytics
{

namespace
{

constexpr char kBaseName[] = "spool";

// The lines of bytes [from, size) of a file; a last line without its line end counts too.
std::uint64_t CountLines(const std::string& path, std::uint64_t from, std::uint64_t size)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file.valid() || from >= size)
    {
        return 0;
    }
    std::vector<char> buffer(1 << 20);
    std::uint64_t lines = 0;
    char last = '\n';
    for (std::uint64_t at = from; at < size;)
    {
        const std::size_t want =
            static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), size - at));
        const ssize_t got = ::pread(file.get(), buffer.data(), want, static_cast<off_t>(at));
        if (got <= 0)
        {
            break;
        }
        const char* data = buffer.data();
        const char* end = data + got;
        while ((data = static_cast<const char*>(
                    std::memchr(data, '\n', static_cast<std::size_t>(end - data)))))
        {
            ++lines;
            ++data;
        }
        last = buffer[static_cast<std::size_t>(got - 1)];
        at += static_cast<std::uint64_t>(got);
    }
    return lines + (last != '\n' ? 1 : 0);
}

std::uint64_t FileSize(const std::string& path)
{
    struct stat status
    {
    };
    return ::stat(path.c_str(), &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

}  // namespace

Spool::Spool(const Limits& limits)
    : m_limits(limits),
      m_file(kBaseName, limits.segmentBytes, 0, RotatingAppendFile::Naming::Numbered)
{
}

bool Spool::Open(const std::string& directory)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_file.Open(directory))
    {
        return false;
    }
    m_cursorFile.emplace(directory, kBaseName);
    m_cursor = m_cursorFile->Load();
    const std::uint64_t current = m_file.CurrentNumber();
    if (m_cursor.segment > current)
    {
        m_cursor = {};  // a cursor of files that are all gone
    }
    for (const std::uint64_t number : m_file.ExistingNumbers())
    {
        const std::string path = m_file.FilePath(number);
        if (number < m_cursor.segment && number != current)
        {
            ::unlink(path.c_str());
            continue;
        }
        Segment segment;
        segment.number = number;
        segment.bytes = number == current ? m_file.CurrentSize() : FileSize(path);
        const std::uint64_t from =
            number == m_cursor.segment ? std::min(m_cursor.offset, segment.bytes) : 0;
        segment.unsentLines = CountLines(path, from, segment.bytes);
        m_totalBytes += segment.bytes;
        m_counts.backlog += segment.unsentLines;
        m_segments.push_back(segment);
    }
    if (m_segments.empty() || m_segments.back().number != current)
    {
        return false;
    }
    if (m_cursor.segment < m_segments.front().number)
    {
        m_cursor = {m_segments.front().number, 0};
    }
    return true;
}

Spool::Appended Spool::Append(std::string_view line)
{
    Appended appended;
    std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_accepting || m_segments.empty())
    {
        return appended;
    }
    const std::uint64_t need = line.size();
    if (m_segments.back().bytes > 0 && m_segments.back().bytes + need > m_limits.segmentBytes)
    {
        if (!m_file.Rotate())
        {
            return appended;
        }
        m_segments.push_back({m_file.CurrentNumber(), 0, 0});
    }
    while (m_totalBytes + need > m_limits.capBytes && DropOldestForCap())
    {
    }
    if (m_totalBytes + need > m_limits.capBytes)
    {
        ++m_counts.dropped;
        return appended;
    }
    if (!m_file.Append(line))
    {
        return appended;
    }
    Segment& current = m_segments.back();
    current.bytes += need;
    ++current.unsentLines;
    m_totalBytes += need;
    ++m_counts.backlog;
    ++m_counts.spooled;
    appended.stored = true;
    if ((m_wakeLines > 0 && m_counts.backlog >= m_wakeLines) ||
        (m_wakeBytes > 0 && UnsentBytes() >= m_wakeBytes))
    {
        appended.wake = true;
        m_wakeLines = 0;
        m_wakeBytes = 0;
    }
    return appended;
}

bool Spool::DropOldestForCap()
{
    if (m_segments.size() < 2)
    {
        return false;  // only the file being written is left
    }
    const Segment victim = m_segments.front();
    if (!m_dropping)
    {
        m_dropping = true;
        LOG(WARNING) << "Statistics spool full (" << m_limits.capBytes
                     << " bytes): dropping the oldest unsent events until it empties";
    }
    ::unlink(m_file.FilePath(victim.number).c_str());
    m_totalBytes -= victim.bytes;
    m_counts.dropped += victim.unsentLines;
    m_counts.backlog -= victim.unsentLines;
    if (m_pinned && *m_pinned == victim.number)
    {
        // Its batch may still reach the store: a Commit() then takes those events back.
        m_droppedInFlight = DroppedInFlight{victim.number, victim.unsentLines};
    }
    m_segments.pop_front();
    if (m_cursor.segment <= victim.number)
    {
        m_cursor = {m_segments.front().number, 0};
    }
    return true;
}

std::uint64_t Spool::UnsentBytes() const
{
    const bool inFront = !m_segments.empty() && m_cursor.segment == m_segments.front().number;
    return m_totalBytes - (inFront ? std::min(m_cursor.offset, m_totalBytes) : 0);
}

bool Spool::WakeWhen(std::uint64_t lines, std::uint64_t bytes)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_counts.backlog >= lines || UnsentBytes() >= bytes)
    {
        return true;
    }
    m_wakeLines = lines;
    m_wakeBytes = bytes;
    return false;
}

std::optional<Spool::Unsent> Spool::NextUnsent()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (std::size_t index = 0; index < m_segments.size(); ++index)
    {
        const Segment& segment = m_segments[index];
        if (segment.number < m_cursor.segment)
        {
            continue;
        }
        if (segment.number > m_cursor.segment)
        {
            m_cursor = {segment.number, 0};
        }
        const bool sealed = index + 1 < m_segments.size();
        m_droppedInFlight.reset();
        if (m_cursor.offset >= segment.bytes)
        {
            if (!sealed)
            {
                m_wakeLines = 1;
                m_wakeBytes = 1;
                return std::nullopt;
            }
            m_cursor = {m_segments[index + 1].number, 0};
            continue;
        }
        m_pinned = segment.number;
        Unsent unsent;
        unsent.path = m_file.FilePath(segment.number);
        unsent.from = m_cursor;
        unsent.end = segment.bytes;
        unsent.sealed = sealed;
        unsent.backlog = m_counts.backlog;
        unsent.generation = m_generation;
        return unsent;
    }
    m_wakeLines = 1;
    m_wakeBytes = 1;
    return std::nullopt;
}

std::optional<Spool::Unsent> Spool::UnsentAfter(const SpoolPosition& position) const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    for (std::size_t index = 0; index < m_segments.size(); ++index)
    {
        const Segment& segment = m_segments[index];
        const bool sealed = index + 1 < m_segments.size();
        if (segment.number < position.segment ||
            (segment.number == position.segment && position.offset >= segment.bytes))
        {
            if (segment.number == position.segment && !sealed)
            {
                return std::nullopt;
            }
            continue;
        }
        Unsent unsent;
        unsent.path = m_file.FilePath(segment.number);
        unsent.from = {segment.number, segment.number == position.segment ? position.offset : 0};
        unsent.end = segment.bytes;
        unsent.sealed = sealed;
        unsent.backlog = m_counts.backlog;
        unsent.generation = m_generation;
        return unsent;
    }
    return std::nullopt;
}

bool Spool::Commit(const SpoolPosition& end, std::uint64_t lines, std::uint64_t generation)
{
    std::string finished;
    SpoolPosition saved;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_pinned.reset();
        if (generation != m_generation)
        {
            return true;
        }
        const auto segment =
            std::find_if(m_segments.begin(), m_segments.end(),
                         [&](const Segment& s) { return s.number == end.segment; });
        if (segment == m_segments.end())
        {
            // Dropped for the cap while its batch was on the way, which the store has now:
            // those events were not lost after all.
            if (m_droppedInFlight && m_droppedInFlight->segment == end.segment)
            {
                const std::uint64_t delivered = std::min(lines, m_droppedInFlight->lines);
                m_droppedInFlight->lines -= delivered;
                m_counts.dropped -= delivered;
            }
            return true;
        }
        const std::uint64_t handled = std::min(lines, segment->unsentLines);
        segment->unsentLines -= handled;
        m_counts.backlog -= std::min(handled, m_counts.backlog);
        m_cursor = end;
        if (segment + 1 != m_segments.end() && end.offset >= segment->bytes)
        {
            finished = m_file.FilePath(segment->number);
            m_totalBytes -= segment->bytes;
            m_cursor = {(segment + 1)->number, 0};
            m_segments.erase(segment);
        }
        if (m_counts.backlog == 0)
        {
            m_dropping = false;
        }
        saved = m_cursor;
    }
    const bool ok = m_cursorFile->Save(saved);
    if (!finished.empty())
    {
        ::unlink(finished.c_str());
    }
    return ok;
}

void Spool::Unpin()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_pinned.reset();
}

void Spool::Discard()
{
    std::lock_guard<std::mutex> lock(m_mutex);
    if (m_segments.empty())
    {
        return;
    }
    ++m_generation;
    m_pinned.reset();
    for (std::size_t index = 0; index + 1 < m_segments.size(); ++index)
    {
        ::unlink(m_file.FilePath(m_segments[index].number).c_str());
    }
    const std::uint64_t current = m_segments.back().number;
    if (m_segments.back().bytes > 0 && m_file.Rotate())
    {
        ::unlink(m_file.FilePath(current).c_str());
    }
    m_segments = {Segment{m_file.CurrentNumber(), m_file.CurrentSize(), 0}};
    m_totalBytes = m_segments.back().bytes;
    m_cursor = {m_segments.back().number, m_segments.back().bytes};
    m_counts.backlog = 0;
    m_wakeLines = 1;
    m_wakeBytes = 1;
    m_dropping = false;
}

void Spool::SetAccepting(bool accepting)
{
    std::lock_guard<std::mutex> lock(m_mutex);
    m_accepting = accepting;
}

Spool::Counts Spool::GetCounts() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_counts;
}

}  // namespace Velkor::Analytics
