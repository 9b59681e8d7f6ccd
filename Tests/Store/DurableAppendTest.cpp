// The durable append under the spool and the reference JSON Lines tracker: torn lines cut on
// opening, whole lines only, rotation within the size cap, in both namings of the files.

#include "Analytics/RotatingAppendFile_p.h"

#include "Support/StoredFiles.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

using Velkor::Analytics::RotatingAppendFile;
using Naming = RotatingAppendFile::Naming;

namespace
{

// --- Torn lines -------------------------------------------------------------------------------

struct TornRow
{
    const char* label;
    Naming naming;  // the current file: events.jsonl, or events.7.jsonl when numbered
    std::string existing;
    std::vector<std::string> linesAfter;  // after one more line "NEW"
};

using DurableAppendTornTailTest = KtTest::Table<TornRow>;

TEST_P(DurableAppendTornTailTest, OpeningCutsTheIncompleteLastLine)
{
    const TornRow& row = GetParam();
    QTemporaryDir directory;
    const QString current =
        directory.filePath(row.naming == Naming::Shifting ? "events.jsonl" : "events.7.jsonl");
    {
        QFile file(current);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(row.existing));
    }
    RotatingAppendFile files("events", 1 << 20, 3, row.naming);
    ASSERT_TRUE(files.Open(directory.path().toStdString()));
    ASSERT_TRUE(files.Append("NEW\n"));
    EXPECT_EQ(files.CurrentPath(), current.toStdString());

    const KtTest::StoredFiles stored =
        KtTest::ReadStoredFiles(directory.path(), row.naming == Naming::Shifting);
    EXPECT_TRUE(stored.allEndInNewline);
    EXPECT_EQ(stored.lines, row.linesAfter);
}

KT_ROWS(
    DurableAppendTornTailTest,
    {TornRow{"EmptyFile", Naming::Shifting, "", {"NEW"}},
     {"CompleteLinesKept", Naming::Shifting, "OLD\nOLD\n", {"OLD", "OLD", "NEW"}},
     {"TornLineCut", Naming::Shifting, "OLD\nHAL", {"OLD", "NEW"}},
     {"OnlyATornLine", Naming::Shifting, "HAL", {"NEW"}},
     // Longer than the scanning buffer, so the newline is found a chunk back.
     {"LongTornLineCut", Naming::Shifting, "OLD\n" + std::string(200 * 1024, 'x'), {"OLD", "NEW"}},
     // Numbered: the highest number is the current file, and the one that can be torn.
     {"NumberedHighestIsCurrent", Naming::Numbered, "OLD\nHAL", {"OLD", "NEW"}}});

// --- Size cap ---------------------------------------------------------------------------------

struct CapRow
{
    const char* label;
    Naming naming;
    std::uint64_t maxFileBytes;
    unsigned maxFiles;
    int lines;
    std::size_t padding;
};

using DurableAppendSizeCapTest = KtTest::Table<CapRow>;

TEST_P(DurableAppendSizeCapTest, KeepsTheNewestLinesWithinTheCap)
{
    const CapRow& row = GetParam();
    QTemporaryDir directory;
    {
        RotatingAppendFile files("events", row.maxFileBytes, row.maxFiles, row.naming);
        ASSERT_TRUE(files.Open(directory.path().toStdString()));
        for (int i = 0; i < row.lines; ++i)
        {
            ASSERT_TRUE(
                files.Append(std::to_string(i) + ' ' + std::string(row.padding, 'p') + '\n'));
        }
    }
    const KtTest::StoredFiles stored =
        KtTest::ReadStoredFiles(directory.path(), row.naming == Naming::Shifting);
    ASSERT_FALSE(stored.lines.empty());
    const std::size_t longestLine = std::to_string(row.lines).size() + row.padding + 2;

    if (row.maxFiles > 0)
    {
        EXPECT_LE(stored.files, static_cast<int>(row.maxFiles));
    }
    for (const qint64 size : stored.fileSizes)
    {
        EXPECT_LE(static_cast<std::uint64_t>(size),
                  std::max<std::uint64_t>(row.maxFileBytes, longestLine));
    }
    // What is kept is an unbroken run of the newest lines, in order, ending with the last.
    const int kept = static_cast<int>(stored.lines.size());
    for (int index = 0; index < kept; ++index)
    {
        const std::string& line = stored.lines[static_cast<std::size_t>(index)];
        ASSERT_EQ(line.substr(0, line.find(' ')), std::to_string(row.lines - kept + index));
    }
    // Rotation happens only when needed: the files dropped could not all have been kept.
    const std::uint64_t keptBytes =
        std::accumulate(stored.fileSizes.begin(), stored.fileSizes.end(), std::uint64_t{0});
    if (kept < row.lines)
    {
        EXPECT_GT(keptBytes + longestLine, (row.maxFiles - 1) * row.maxFileBytes);
    }
}

KT_ROWS(DurableAppendSizeCapTest,
        {CapRow{"NoRotationNeeded", Naming::Shifting, 1 << 20, 3, 100, 10},
         CapRow{"RotatesAndDropsOldest", Naming::Shifting, 4096, 3, 500, 10},
         CapRow{"SingleFileStartsOver", Naming::Shifting, 4096, 1, 500, 10},
         CapRow{"LineLargerThanCapGetsOwnFile", Naming::Shifting, 1024, 3, 10, 4000},
         CapRow{"NumberedDropsLowest", Naming::Numbered, 4096, 3, 500, 10},
         CapRow{"NumberedWithoutLimitKeepsAll", Naming::Numbered, 4096, 0, 500, 10}});

// A file is full exactly at its size: the line that reaches it stays, one byte more rotates.
struct BoundaryRow
{
    const char* label;
    Naming naming;
    std::vector<std::size_t> lineBytes;  // each line's length with its line end
    std::vector<qint64> fileSizes;       // oldest first
};

using DurableAppendRotationBoundaryTest = KtTest::Table<BoundaryRow>;

TEST_P(DurableAppendRotationBoundaryTest, RotatesOnlyPastTheSize)
{
    const BoundaryRow& row = GetParam();
    QTemporaryDir directory;
    {
        RotatingAppendFile files("events", 100, 3, row.naming);
        ASSERT_TRUE(files.Open(directory.path().toStdString()));
        for (const std::size_t bytes : row.lineBytes)
        {
            ASSERT_TRUE(files.Append(std::string(bytes - 1, 'x') + '\n'));
        }
    }
    EXPECT_EQ(KtTest::ReadStoredFiles(directory.path(), row.naming == Naming::Shifting).fileSizes,
              row.fileSizes);
}

KT_ROWS(DurableAppendRotationBoundaryTest,
        {BoundaryRow{"ReachesTheSize", Naming::Shifting, {60, 40}, {100}},
         BoundaryRow{"OneBytePast", Naming::Shifting, {60, 41}, {60, 41}},
         BoundaryRow{"FullThenOneByte", Naming::Shifting, {100, 1}, {100, 1}},
         BoundaryRow{"NumberedReachesTheSize", Naming::Numbered, {99, 1, 1}, {100, 1}},
         BoundaryRow{"NumberedOneBytePast", Naming::Numbered, {50, 51}, {50, 51}}});

// Numbered files are never renamed: a position in one stays valid while lines are added.
TEST(DurableAppendTest, NumberedRotationRenamesNothing)
{
    QTemporaryDir directory;
    RotatingAppendFile files("events", 64, 0, Naming::Numbered);
    ASSERT_TRUE(files.Open(directory.path().toStdString()));
    EXPECT_EQ(files.CurrentNumber(), 1u);
    ASSERT_TRUE(files.Append(std::string(40, 'a') + '\n'));
    ASSERT_TRUE(files.Append(std::string(40, 'b') + '\n'));
    ASSERT_TRUE(files.Rotate());
    EXPECT_EQ(files.CurrentNumber(), 3u);
    EXPECT_EQ(files.ExistingNumbers(), (std::vector<std::uint64_t>{1, 2, 3}));
    QFile first(QString::fromStdString(files.FilePath(1)));
    ASSERT_TRUE(first.open(QIODevice::ReadOnly));
    EXPECT_EQ(first.readAll(), QByteArray(40, 'a') + '\n');
    // An empty current file is not rotated again.
    ASSERT_TRUE(files.Rotate());
    EXPECT_EQ(files.CurrentNumber(), 3u);
}

}  // namespace
