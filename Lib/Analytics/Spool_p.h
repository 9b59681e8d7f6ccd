#pragma once

#include "Analytics/RotatingAppendFile_p.h"
#include "Analytics/SpoolCursor_p.h"
#include "Analytics/SpoolPosition_p.h"

#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace Velkor::Analytics
{

// The uploader's queue on disk: event lines appended by any thread to numbered segment files
// ("spool.<n>.jsonl", RotatingAppendFile), read and acknowledged in order by the one worker that
// sends them, with the position up to which they are sent kept durably (SpoolCursor).
//
// - A segment is sealed when the next line would take it past `segmentBytes`; a batch never
//   reaches past the end of its segment.
// - The segments together never hold more than `capBytes`. When a line would take them past it,
//   the oldest sealed segment is deleted with its unsent lines, which count as dropped (logged
//   once, until the spool is empty again), even while the worker sends from it: should that
//   batch then reach the store, its events no longer count as dropped. When nothing but the
//   segment being written is left, the new line itself is dropped.
// - Segments that are wholly sent are deleted once the cursor has been saved past them.
//
// Every operation may be called from any thread.
class Spool
{
public:
    struct Limits
    {
        std::uint64_t capBytes = 0;
        std::uint64_t segmentBytes = 0;
    };

    struct Counts
    {
        std::uint64_t spooled = 0;
        std::uint64_t dropped = 0;
        std::uint64_t backlog = 0;  // lines not yet sent or passed over
    };

    struct Appended
    {
        bool stored = false;
        bool wake = false;  // the spool reached what the worker waits for (WakeWhen)
    };

    // What the worker sends next: the unsent lines of the segment at the cursor.
    struct Unsent
    {
        std::string path;
        SpoolPosition from;
        std::uint64_t end = 0;  // the segment's bytes, all of them whole lines
        bool sealed = false;
        std::uint64_t backlog = 0;
        std::uint64_t generation = 0;
    };

    explicit Spool(const Limits& limits);

    // Takes the directory's lock, reads the cursor, deletes segments before it and counts the
    // unsent lines of the others.
    bool Open(const std::string& directory);

    Appended Append(std::string_view line);

    // The unsent part of the segment at the cursor, or nothing when everything is sent (and
    // then the next Append() wakes the worker). Its segment counts as being sent until Commit()
    // or Unpin().
    std::optional<Unsent> NextUnsent();
    // The worker waits for a batch to fill: the first Append() that brings the unsent lines to
    // `lines` or their bytes to `bytes` answers `wake`, once. Answers true, arming nothing, when
    // the spool holds that much already.
    bool WakeWhen(std::uint64_t lines, std::uint64_t bytes);
    // What follows `position` (the end of a batch in flight), to make the next batch ahead:
    // the rest of its segment, or the next segment when it is sealed and done. Moves nothing:
    // only a later NextUnsent() that starts at the same place confirms it.
    std::optional<Unsent> UnsentAfter(const SpoolPosition& position) const;
    // Everything before `end` has been handled, `lines` lines of the segment being sent: moves
    // the cursor there, saves it durably and deletes the segment when it is sealed and done.
    // Ignored when the spool was discarded after NextUnsent() answered `generation`, and when the
    // segment was dropped meanwhile (but for the dropped count). Answers whether the cursor could
    // be saved.
    bool Commit(const SpoolPosition& end, std::uint64_t lines, std::uint64_t generation);
    void Unpin();

    // Deletes every unsent line. While not accepting, Append() stores nothing.
    void Discard();
    void SetAccepting(bool accepting);

    Counts GetCounts() const;

private:
    struct Segment
    {
        std::uint64_t number = 0;
        std::uint64_t bytes = 0;
        std::uint64_t unsentLines = 0;
    };

    bool DropOldestForCap();
    std::uint64_t UnsentBytes() const;
    void DeleteSegmentFront();

    const Limits m_limits;
    mutable std::mutex m_mutex;
    RotatingAppendFile m_file;
    std::optional<SpoolCursor> m_cursorFile;
    std::deque<Segment> m_segments;  // ascending; the last is the one appended to
    SpoolPosition m_cursor;
    std::uint64_t m_totalBytes = 0;
    std::optional<std::uint64_t> m_pinned;  // the segment being sent
    struct DroppedInFlight
    {
        std::uint64_t segment;
        std::uint64_t lines;  // counted as dropped, maybe delivered after all
    };
    std::optional<DroppedInFlight> m_droppedInFlight;
    std::uint64_t m_generation = 0;
    Counts m_counts;
    // What wakes the worker: unsent lines or bytes reaching these (0: nothing armed).
    std::uint64_t m_wakeLines = 1;
    std::uint64_t m_wakeBytes = 1;
    bool m_accepting = true;
    bool m_dropping = false;
};

}  // namespace Velkor::Analytics
