// The recording stage: what it writes and when, and that it always passes events on unchanged.
// Concurrent Track calls: ChainStressTest. Reading the lines back: KtTrackTest.

#include "Tracking/Tracking.h"

#include "Support/EventPrinting.h"
#include "Support/LogCapture.h"
#include "Support/RecordingTracker.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <string>

using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::RecordingKtTracker;

namespace
{

std::string Contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : "<unreadable>";
}

const Event kStop{"CAPTURE_STOP", {{"DURATION", "90"}, {"FILE", "a \"b\".mp4"}}};
const std::string kStopLine =
    R"({"name":"CAPTURE_STOP","params":{"DURATION":"90","FILE":"a \"b\".mp4"}})"
    "\n";

struct ModeRow
{
    const char* label;
    RecordingKtTracker::OpenMode mode;
    std::string expected;  // after "old\n" and then kStop
};

using RecordingModeTest = KtTest::Table<ModeRow>;

// Each line is in the file as soon as its event has passed, before the stage is released.
TEST_P(RecordingModeTest, WritesEachEventAtOnceAndPassesItOn)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("raw.jsonl");
    QFile old(path);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old\n");
    old.close();

    const auto next = std::make_shared<KtTest::RecordingTracker>();
    RecordingKtTracker recorder(next, path, GetParam().mode);
    EXPECT_TRUE(recorder.IsRecording());
    recorder.Track(kStop);
    EXPECT_EQ(Contents(path), GetParam().expected);
    EXPECT_EQ(next->Events(), std::vector<Event>{kStop});
}

KT_ROWS(RecordingModeTest,
        {ModeRow{"Truncate", RecordingKtTracker::OpenMode::Truncate, kStopLine},
         ModeRow{"Append", RecordingKtTracker::OpenMode::Append, "old\n" + kStopLine}});

// A file that cannot be opened, or one that stops taking lines (a full disk: /dev/full opens but
// takes nothing), is logged once; recording stops there and every event still passes on.
struct FailureRow
{
    const char* label;
    QString path;
    bool opens;
};

using RecordingFailureTest = KtTest::Table<FailureRow>;

TEST_P(RecordingFailureTest, IsLoggedOnceAndEventsStillPass)
{
    KtTest::LogCapture log;
    const auto next = std::make_shared<KtTest::RecordingTracker>();
    RecordingKtTracker recorder(next, GetParam().path);
    EXPECT_EQ(recorder.IsRecording(), GetParam().opens);
    recorder.Track(kStop);
    recorder.Track(kStop);
    recorder.Track(kStop);
    EXPECT_FALSE(recorder.IsRecording());
    EXPECT_EQ(next->Events(), std::vector<Event>(3, kStop));
    ASSERT_EQ(log.Lines().size(), 1u);
    EXPECT_EQ(log.Lines().front().severity, google::GLOG_ERROR);
    const std::string prefix = "Can't record events to " + GetParam().path.toStdString() + ": ";
    EXPECT_EQ(log.Messages().front().rfind(prefix, 0), 0u) << log.Messages().front();
}

KT_ROWS(RecordingFailureTest, {{"Unopenable", "/nonexistent-directory/raw.jsonl", false},
                               {"StopsTakingLines", "/dev/full", true}});

TEST(RecordingKtTrackerTest, NullSuccessorIsRefused)
{
    QTemporaryDir dir;
    EXPECT_THROW(RecordingKtTracker(nullptr, dir.filePath("raw.jsonl")), std::logic_error);
    EXPECT_FALSE(QFile::exists(dir.filePath("raw.jsonl")));
}

}  // namespace
