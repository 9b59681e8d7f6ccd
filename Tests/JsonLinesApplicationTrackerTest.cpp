#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "Analytics/JsonText.h"

#include "Support/StoredFiles.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <vector>

using Velkor::Analytics::AppendJsonString;
using Velkor::Analytics::JsonLinesApplicationTracker;
using Velkor::Analytics::SID;

namespace
{

using Options = JsonLinesApplicationTracker::Options;

// The parameter `key` of a stored line, which must be a JSON object.
std::string Param(const std::string& line, const QString& key)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(line));
    EXPECT_TRUE(document.isObject()) << line;
    return document.object().value("params").toObject().value(key).toString().toStdString();
}

// --- Escaping ---------------------------------------------------------------------------------
// Quotes, backslashes, the usual controls and valid UTF-8 read back through the line format's
// reader (Tests/Store/EventLineTest.cpp); what it cannot tell apart is pinned here.

struct EscapeRow
{
    const char* label;
    std::string input;
    std::string literal;  // what is written, quotes included
};

using JsonEscapeTest = KtTest::Table<EscapeRow>;

TEST_P(JsonEscapeTest, WritesTheLiteral)
{
    std::string out = "x";
    AppendJsonString(out, GetParam().input);
    EXPECT_EQ(out, "x" + GetParam().literal);
}

const std::string kFFFD = "\xEF\xBF\xBD";

KT_ROWS(JsonEscapeTest,
        {{"OtherControlsAndDel", std::string("\x01\x1f\x7f", 3), R"("\u0001\u001f\u007f")"},
         {"NulInside", std::string("a\0b", 3), R"("a\u0000b")"},
         {"StrayContinuation", "a\x80z", "\"a" + kFFFD + "z\""},
         {"TruncatedSequenceIsOneReplacement", "\xE2\x82z", "\"" + kFFFD + "z\""},
         {"TruncatedAtEnd", "a\xF0\x9F\x8E", "\"a" + kFFFD + "\""},
         {"Overlong", "\xC0\xAF", "\"" + kFFFD + kFFFD + "\""},
         {"Surrogate", "\xED\xA0\x80", "\"" + kFFFD + kFFFD + kFFFD + "\""},
         {"AboveUnicode", "\xF4\x90\x80\x80", "\"" + kFFFD + kFFFD + kFFFD + kFFFD + "\""}});

// --- What the tracker writes and refuses ----------------------------------------------------

// The directory is made as needed. Refused: Track before Initialize, a second Initialize, a
// second tracker on a directory in use, which is free again once its tracker is gone. (The line
// format and the file set are the analytics component's: Tests/Store/EventLineTest.cpp,
// DurableAppendTest.cpp.)
TEST(JsonLinesApplicationTrackerTest, WritesALinePerEventAndRefusesWhatItCannotStore)
{
    QTemporaryDir directory;
    const QString nested = directory.path() + "/a/b";
    auto tracker = JsonLinesApplicationTracker::Create();
    EXPECT_FALSE(tracker->Track("REFUSED", {}));
    EXPECT_TRUE(tracker->CurrentFilePath().empty());
    ASSERT_TRUE(tracker->Initialize({{SID, "s-42"}, {"LANG", "en"}, {"B", "default"}},
                                    "recorder/partner", nested.toStdString()));
    EXPECT_FALSE(tracker->Initialize({}, "", nested.toStdString()));
    auto other = JsonLinesApplicationTracker::Create();
    EXPECT_FALSE(other->Initialize({}, "", nested.toStdString()));
    EXPECT_FALSE(other->Track("REFUSED", {}));
    tracker->AddDefaultProperties({{"LANG", "fr"}, {"Z", "z"}});  // first value of LANG stays
    ASSERT_TRUE(tracker->Track("CAPTURE\"STOP", {{"B", "own\n"}, {"A", "a"}, {SID, "crashed"}}));
    ASSERT_TRUE(tracker->Track("TWO", "K", "v"));
    EXPECT_EQ(tracker->CurrentFilePath(), (nested + "/events.jsonl").toStdString());

    const std::vector<std::string> lines = KtTest::ReadStoredFiles(nested, true).lines;
    ASSERT_EQ(lines.size(), 2u);
    // The event's own values win, the session's SID is not repeated, keys come in byte order.
    EXPECT_NE(
        lines[0].find(R"(,"sid":"s-42","inst":"","app":"recorder/partner","ver":"",)"
                      R"("name":"CAPTURE\"STOP",)"
                      R"("params":{"A":"a","B":"own\n","LANG":"en","SID":"crashed","Z":"z"}})"),
        std::string::npos)
        << lines[0];
    EXPECT_NE(
        lines[1].find(R"("name":"TWO","params":{"B":"default","K":"v","LANG":"en","Z":"z"}})"),
        std::string::npos)
        << lines[1];
    tracker = nullptr;
    EXPECT_TRUE(JsonLinesApplicationTracker::Create()->Initialize({}, "", nested.toStdString()));
}

// --- Threads ----------------------------------------------------------------------------------

TEST(JsonLinesApplicationTrackerTest, ConcurrentWritersLoseNothingAndKeepEachThreadsOrder)
{
    QTemporaryDir directory;
    // Files of 16 KiB: they rotate while the threads compete.
    auto tracker = JsonLinesApplicationTracker::Create(Options{"events", 16 * 1024, 1000});
    ASSERT_TRUE(tracker->Initialize({}, "", directory.path().toStdString()));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back(
            [&, t]
            {
                for (int i = 0; i < 400; ++i)
                {
                    EXPECT_TRUE(
                        tracker->Track("E", {{"T", std::to_string(t)}, {"I", std::to_string(i)}}));
                }
            });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    std::vector<int> next(4, 0);
    const std::vector<std::string> lines = KtTest::ReadStoredFiles(directory.path(), true).lines;
    EXPECT_EQ(lines.size(), 1600u);
    for (const auto& line : lines)
    {
        ASSERT_EQ(std::stoi(Param(line, "I")), next.at(std::stoul(Param(line, "T")))++) << line;
    }
}

// --- Killed writer ----------------------------------------------------------------------------

struct Burst
{
    std::vector<long long> acknowledged;
    bool killed = false;
    int exitCode = -1;
};

// Runs the burst helper on files of 64 KiB, so that rotations happen in the middle of the bursts,
// with lines of about 3 KB, which often straddle a page, so that a kill can land inside a write.
// With killAfter > 0 it is killed with SIGKILL once that many events have been acknowledged.
// Every acknowledgement written before the kill is collected.
Burst RunBurst(const QString& directory, long long first, long long count, int killAfter)
{
    Burst burst;
    QProcess helper;
    helper.start(KT_TRACK_BURST_PATH, {directory, QString::number(first), QString::number(count),
                                       "65536", "10000", "3000"});
    EXPECT_TRUE(helper.waitForStarted());
    bool killing = false;
    while (helper.waitForReadyRead(60000))
    {
        while (helper.canReadLine())
        {
            burst.acknowledged.push_back(helper.readLine().trimmed().toLongLong());
        }
        if (killAfter > 0 && !killing && static_cast<int>(burst.acknowledged.size()) >= killAfter)
        {
            helper.kill();  // SIGKILL; acknowledgements already in the pipe still count
            killing = true;
        }
    }
    EXPECT_TRUE(helper.state() == QProcess::NotRunning || helper.waitForFinished())
        << "the burst helper stopped answering";
    for (const QByteArray& line : helper.readAllStandardOutput().split('\n'))
    {
        if (!line.isEmpty())
        {
            burst.acknowledged.push_back(line.toLongLong());
        }
    }
    burst.killed = helper.exitStatus() == QProcess::CrashExit;
    burst.exitCode = helper.exitCode();
    return burst;
}

TEST(JsonLinesApplicationTrackerTest, EveryAcknowledgedEventSurvivesSigkillExactlyOnce)
{
    QTemporaryDir directory;
    std::set<long long> acknowledged;
    std::set<long long> allowedExtra;  // the event being written when a round was killed
    for (int round = 0; round < 4; ++round)
    {
        const Burst burst =
            RunBurst(directory.path(), round * 10000000LL, 5000000, 200 + 50 * round);
        ASSERT_TRUE(burst.killed && !burst.acknowledged.empty()) << "round " << round;
        acknowledged.insert(burst.acknowledged.begin(), burst.acknowledged.end());
        allowedExtra.insert(burst.acknowledged.back() + 1);
    }
    const Burst last = RunBurst(directory.path(), 40000000LL, 300, 0);
    ASSERT_TRUE(!last.killed && last.exitCode == 0) << last.exitCode;
    ASSERT_EQ(last.acknowledged.size(), 300u);
    acknowledged.insert(last.acknowledged.begin(), last.acknowledged.end());

    const KtTest::StoredFiles files = KtTest::ReadStoredFiles(directory.path(), true);
    std::vector<long long> inFile;
    for (const auto& line : files.lines)
    {
        inFile.push_back(std::stoll(Param(line, "I")));
    }
    EXPECT_TRUE(files.allEndInNewline);
    // Strictly increasing: nothing doubled, nothing out of order.
    EXPECT_TRUE(std::adjacent_find(inFile.begin(), inFile.end(), std::greater_equal<>()) ==
                inFile.end());
    const std::set<long long> stored(inFile.begin(), inFile.end());
    for (const long long index : acknowledged)
    {
        ASSERT_EQ(stored.count(index), 1u) << "acknowledged event " << index << " lost";
    }
    for (const long long index : stored)
    {
        EXPECT_TRUE(acknowledged.count(index) || allowedExtra.count(index))
            << "unexpected event " << index;
    }
}

}  // namespace
