// The spool: what a restart finds, what the cap drops, what withdrawing consent leaves.

#include "Analytics/Spool_p.h"

#include "Support/LogCapture.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>
#include <string>
#include <vector>

using Velkor::Analytics::Spool;
using Velkor::Analytics::SpoolPosition;

namespace
{

std::string Line(int number)
{
    std::string text = std::to_string(number);
    return text + std::string(20 - text.size(), '.') + '\n';  // 21 bytes
}

qint64 SegmentBytes(const QString& directory)
{
    qint64 total = 0;
    for (const QFileInfo& file : QDir(directory).entryInfoList({"spool.*.jsonl"}, QDir::Files))
    {
        total += file.size();
    }
    return total;
}

// The numbers of the lines from the cursor on, read the way the worker reads them.
std::vector<int> Unsent(Spool& spool)
{
    std::vector<int> numbers;
    while (const auto unsent = spool.NextUnsent())
    {
        QFile file(QString::fromStdString(unsent->path));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        file.seek(static_cast<qint64>(unsent->from.offset));
        const QByteArray data = file.read(static_cast<qint64>(unsent->end - unsent->from.offset));
        int lines = 0;
        for (const QByteArray& line : data.split('\n'))
        {
            if (!line.isEmpty())
            {
                numbers.push_back(line.left(line.indexOf('.')).toInt());
                ++lines;
            }
        }
        spool.Commit({unsent->from.segment, unsent->end}, static_cast<std::uint64_t>(lines),
                     unsent->generation);
    }
    return numbers;
}

// A restart goes on where the saved cursor stands: what was handed out but not committed comes
// again, what was committed does not, and wholly sent segments are gone from the disk.
TEST(SpoolTest, RestartResumesAtTheSavedCursor)
{
    QTemporaryDir directory;
    const std::string path = directory.path().toStdString();
    SpoolPosition committed;
    {
        Spool spool(Spool::Limits{1 << 20, 5 * 21});
        ASSERT_TRUE(spool.Open(path));
        for (int i = 0; i < 12; ++i)
        {
            ASSERT_TRUE(spool.Append(Line(i)).stored);
        }
        // Segments of five lines: send the first, and three lines of the second.
        const auto first = spool.NextUnsent();
        ASSERT_TRUE(first && first->sealed);
        ASSERT_TRUE(spool.Commit({first->from.segment, first->end}, 5, first->generation));
        const auto second = spool.NextUnsent();
        ASSERT_TRUE(second);
        committed = {second->from.segment, second->from.offset + 3 * 21};
        ASSERT_TRUE(spool.Commit(committed, 3, second->generation));
        // Handed out again, never committed: the crash comes before the reply.
        ASSERT_TRUE(spool.NextUnsent());
        EXPECT_EQ(spool.GetCounts().backlog, 4u);
    }
    EXPECT_FALSE(QFileInfo::exists(directory.filePath("spool.1.jsonl")));

    Spool reopened(Spool::Limits{1 << 20, 5 * 21});
    ASSERT_TRUE(reopened.Open(path));
    EXPECT_EQ(reopened.GetCounts().backlog, 4u);
    const auto next = reopened.NextUnsent();
    ASSERT_TRUE(next);
    EXPECT_EQ(next->from, committed);
    reopened.Unpin();
    EXPECT_EQ(Unsent(reopened), (std::vector<int>{8, 9, 10, 11}));
    EXPECT_EQ(reopened.GetCounts().backlog, 0u);
}

struct SpoolCapRow
{
    const char* label;
    std::uint64_t cap;
    std::uint64_t segment;
    int lines;
    // The worker was sending the first segment's lines when the cap dropped it, and the store
    // took them after all.
    bool oldestInFlight;
    int expectedDropped;
};

using SpoolCapTest = KtTest::Table<SpoolCapRow>;

// The files never hold more than the cap; the oldest go first, what is lost is counted, and
// logged once.
TEST_P(SpoolCapTest, DropsTheOldestUnsentSegmentsAndCountsThem)
{
    const SpoolCapRow& row = GetParam();
    QTemporaryDir directory;
    KtTest::LogCapture log;
    Spool spool(Spool::Limits{row.cap, row.segment});
    ASSERT_TRUE(spool.Open(directory.path().toStdString()));
    std::optional<Spool::Unsent> inFlight;
    for (int i = 0; i < row.lines; ++i)
    {
        spool.Append(Line(i));
        ASSERT_LE(SegmentBytes(directory.path()), static_cast<qint64>(row.cap)) << "line " << i;
        if (row.oldestInFlight && !inFlight && i == 10)
        {
            inFlight = spool.NextUnsent();
        }
    }
    if (inFlight)
    {
        spool.Commit({inFlight->from.segment, inFlight->end}, 10, inFlight->generation);
    }
    const Spool::Counts counts = spool.GetCounts();
    EXPECT_EQ(counts.spooled, static_cast<std::uint64_t>(row.lines));
    EXPECT_EQ(static_cast<int>(counts.dropped), row.expectedDropped);
    EXPECT_EQ(counts.backlog + counts.dropped + (inFlight ? 10 : 0),
              static_cast<std::uint64_t>(row.lines));
    // What is left is an unbroken run of the newest lines.
    std::vector<int> expected;
    for (int i = row.lines - static_cast<int>(counts.backlog); i < row.lines; ++i)
    {
        expected.push_back(i);
    }
    EXPECT_EQ(Unsent(spool), expected);
    EXPECT_EQ(log.Count(google::GLOG_WARNING, "Statistics spool full (" + std::to_string(row.cap) +
                                                  " bytes): dropping the oldest unsent events "
                                                  "until it empties"),
              1);
}

KT_ROWS(SpoolCapTest,
        {// Ten segments fit; 200 lines lose ten segments of ten.
         SpoolCapRow{"OverTheCap", 100 * 21, 10 * 21, 200, false, 100},
         SpoolCapRow{"InFlightSegmentDeliveredAfterAll", 100 * 21, 10 * 21, 200, true, 90}});

// Withdrawn consent: every unsent line goes, nothing is stored until it is given again.
TEST(SpoolTest, DiscardDeletesTheUnsentLines)
{
    QTemporaryDir directory;
    Spool spool(Spool::Limits{1 << 20, 10 * 21});
    ASSERT_TRUE(spool.Open(directory.path().toStdString()));
    for (int i = 0; i < 25; ++i)
    {
        spool.Append(Line(i));
    }
    const auto inFlight = spool.NextUnsent();
    ASSERT_TRUE(inFlight);
    spool.SetAccepting(false);
    spool.Discard();
    EXPECT_FALSE(spool.Append(Line(99)).stored);
    EXPECT_EQ(SegmentBytes(directory.path()), 0);
    // The batch that was in flight when consent went does not move the cursor of the new lines.
    spool.Commit({inFlight->from.segment, inFlight->end}, 10, inFlight->generation);
    spool.SetAccepting(true);
    spool.Append(Line(100));
    EXPECT_EQ(Unsent(spool), std::vector<int>{100});
    const Spool::Counts counts = spool.GetCounts();
    EXPECT_EQ(counts.spooled, 26u);
    EXPECT_EQ(counts.backlog, 0u);
}

}  // namespace
