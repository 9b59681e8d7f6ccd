#include "Analytics/AnalyticsConstants.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "Analytics/JsonText.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

using Velkor::Analytics::AppendJsonString;
using Velkor::Analytics::JsonLinesApplicationTracker;
using Velkor::Analytics::Properties;
using Velkor::Analytics::RefPtr;
using Velkor::Analytics::SID;

namespace
{

using Options = JsonLinesApplicationTracker::Options;

// The files of a data directory, oldest first, split into lines.
struct Stored
{
    std::vector<std::string> lines;
    bool allEndInNewline = true;
};

Stored ReadStored(const QString& directory, const Options& options)
{
    Stored stored;
    const QString base = QString::fromStdString(options.baseName);
    const QRegularExpression pattern('^' + QRegularExpression::escape(base) +
                                     R"((?:\.(\d+))?\.jsonl$)");
    std::map<int, QString, std::greater<>> byAge;  // oldest (highest number) first
    for (const QString& name : QDir(directory).entryList({"*.jsonl"}, QDir::Files))
    {
        const auto match = pattern.match(name);
        if (match.hasMatch())
        {
            byAge[match.captured(1).isEmpty() ? 0 : match.captured(1).toInt()] = name;
        }
    }
    for (const auto& entry : byAge)
    {
        QFile file(directory + '/' + entry.second);
        if (!file.open(QIODevice::ReadOnly))
        {
            ADD_FAILURE() << "cannot read " << entry.second.toStdString();
            continue;
        }
        const QByteArray content = file.readAll();
        if (!content.isEmpty() && !content.endsWith('\n'))
        {
            stored.allEndInNewline = false;
        }
        for (const QByteArray& line : content.split('\n'))
        {
            if (!line.isEmpty())
            {
                stored.lines.push_back(line.toStdString());
            }
        }
    }
    return stored;
}

QJsonObject ParseLine(const std::string& line)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(line), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError)
        << error.errorString().toStdString() << " in " << line;
    EXPECT_TRUE(document.isObject()) << line;
    return document.object();
}

std::map<std::string, std::string> ParamsOf(const QJsonObject& object)
{
    std::map<std::string, std::string> params;
    const QJsonObject json = object.value("params").toObject();
    for (auto it = json.begin(); it != json.end(); ++it)
    {
        params[it.key().toStdString()] = it.value().toString().toStdString();
    }
    return params;
}

RefPtr<JsonLinesApplicationTracker> Initialized(const QString& directory,
                                                const Options& options = Options())
{
    auto tracker = JsonLinesApplicationTracker::Create(options);
    EXPECT_TRUE(tracker->Initialize({{SID, "session-1"}}, "recorder", directory.toStdString()));
    return tracker;
}

// --- Escaping ---------------------------------------------------------------------------------

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
        {{"QuoteAndBackslash", "a\"b\\c", R"("a\"b\\c")"},
         {"NamedControls", "\b\f\n\r\t", R"("\b\f\n\r\t")"},
         {"OtherControlsAndDel", std::string("\x01\x1f\x7f", 3), R"("\u0001\u001f\u007f")"},
         {"NulInside", std::string("a\0b", 3), R"("a\u0000b")"},
         {"Utf8PassesUnchanged", "d\xC3\xA9j\xC3\xA0 \xE2\x82\xAC \xF0\x9F\x8E\xA5",
          "\"d\xC3\xA9j\xC3\xA0 \xE2\x82\xAC \xF0\x9F\x8E\xA5\""},
         {"StrayContinuation", "a\x80z", "\"a" + kFFFD + "z\""},
         {"TruncatedSequenceIsOneReplacement", "\xE2\x82z", "\"" + kFFFD + "z\""},
         {"TruncatedAtEnd", "a\xF0\x9F\x8E", "\"a" + kFFFD + "\""},
         {"Overlong", "\xC0\xAF", "\"" + kFFFD + kFFFD + "\""},
         {"Surrogate", "\xED\xA0\x80", "\"" + kFFFD + kFFFD + kFFFD + "\""},
         {"AboveUnicode", "\xF4\x90\x80\x80", "\"" + kFFFD + kFFFD + kFFFD + kFFFD + "\""}});

// --- Lines ------------------------------------------------------------------------------------

// The directory is made as needed; name and values are escaped. (The line format and the file set
// are the analytics component's: Tests/Store/EventLineTest.cpp, DurableAppendTest.cpp.)
TEST(JsonLinesApplicationTrackerTest, LineCarriesIdTimeSessionIdentityNameAndMergedParams)
{
    QTemporaryDir directory;
    const QString nested = directory.path() + "/a/b";
    auto tracker = JsonLinesApplicationTracker::Create();
    ASSERT_TRUE(tracker->Initialize({{SID, "s-42"}, {"LANG", "en"}, {"B", "default"}},
                                    "recorder/partner", nested.toStdString()));
    tracker->AddDefaultProperties({{"LANG", "fr"}, {"Z", "z"}});  // first value of LANG stays
    ASSERT_TRUE(tracker->Track("CAPTURE\"STOP", {{"B", "own\n"}, {"A", "a"}, {SID, "crashed"}}));
    EXPECT_EQ(tracker->CurrentFilePath(), (nested + "/events.jsonl").toStdString());

    const Stored stored = ReadStored(nested, Options());
    ASSERT_EQ(stored.lines.size(), 1u);
    const std::string& line = stored.lines[0];
    EXPECT_TRUE(QRegularExpression(R"(^\{"id":"[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}",)"
                                   R"("time":"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z",)"
                                   R"("sid":"s-42","inst":"","app":"recorder/partner","ver":"",)"
                                   R"("name":"CAPTURE\\"STOP","params":\{)")
                    .match(QString::fromStdString(line))
                    .hasMatch())
        << line;
    // The event's own values win, the session's SID is not repeated, keys come in byte order.
    EXPECT_NE(line.find(R"("params":{"A":"a","B":"own\n","LANG":"en","SID":"crashed","Z":"z"}})"),
              std::string::npos)
        << line;
}

// Before Initialize, a second Initialize, a second tracker on a directory in use: refused, and
// the directory is free again once its tracker is gone.
TEST(JsonLinesApplicationTrackerTest, RefusesWhatItCannotStore)
{
    QTemporaryDir directory;
    const std::string path = directory.path().toStdString();
    auto tracker = JsonLinesApplicationTracker::Create();
    EXPECT_FALSE(tracker->Track("REFUSED", {}));
    EXPECT_TRUE(tracker->CurrentFilePath().empty());
    ASSERT_TRUE(tracker->Initialize({}, "", path));
    EXPECT_FALSE(tracker->Initialize({}, "", path));
    auto other = JsonLinesApplicationTracker::Create();
    EXPECT_FALSE(other->Initialize({}, "", path));
    EXPECT_FALSE(other->Track("REFUSED", {}));
    EXPECT_TRUE(tracker->Track("STILL_WORKS", "K", "v"));
    const Stored stored = ReadStored(directory.path(), Options());
    ASSERT_EQ(stored.lines.size(), 1u);
    EXPECT_NE(stored.lines[0].find(R"("name":"STILL_WORKS","params":{"K":"v"}})"),
              std::string::npos);
    tracker = nullptr;
    EXPECT_TRUE(JsonLinesApplicationTracker::Create()->Initialize({}, "", path));
}

// --- Threads ----------------------------------------------------------------------------------

TEST(JsonLinesApplicationTrackerTest, ConcurrentWritersLoseNothingAndKeepEachThreadsOrder)
{
    constexpr int kThreads = 4;
    constexpr int kPerThread = 400;
    QTemporaryDir directory;
    Options options;
    options.maxFileBytes = 16 * 1024;  // rotate while the threads compete
    options.maxFiles = 1000;
    auto tracker = Initialized(directory.path(), options);

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
    {
        threads.emplace_back(
            [&, t]
            {
                for (int i = 0; i < kPerThread; ++i)
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

    std::vector<int> next(kThreads, 0);
    const Stored stored = ReadStored(directory.path(), options);
    EXPECT_EQ(stored.lines.size(), static_cast<std::size_t>(kThreads * kPerThread));
    for (const auto& line : stored.lines)
    {
        const auto params = ParamsOf(ParseLine(line));
        const int t = std::stoi(params.at("T"));
        ASSERT_EQ(std::stoi(params.at("I")), next[static_cast<std::size_t>(t)]++) << line;
    }
}

// --- Killed writer ----------------------------------------------------------------------------

struct Burst
{
    std::vector<long long> acknowledged;
    bool killed = false;
    int exitCode = -1;
};

// Runs the burst helper; with killAfter > 0 it is killed with SIGKILL once that many events
// have been acknowledged. Every acknowledgement written before the kill is collected.
Burst RunBurst(const QString& directory, long long first, long long count, int killAfter,
               const Options& options, int padding)
{
    Burst burst;
    QProcess helper;
    helper.start(KT_TRACK_BURST_PATH,
                 {directory, QString::number(first), QString::number(count),
                  QString::number(options.maxFileBytes), QString::number(options.maxFiles),
                  QString::number(padding)});
    EXPECT_TRUE(helper.waitForStarted());
    bool killed = false;
    while (helper.state() == QProcess::Running || helper.canReadLine())
    {
        if (!helper.canReadLine() && !helper.waitForReadyRead(60000) &&
            helper.state() == QProcess::Running)
        {
            ADD_FAILURE() << "the burst helper stopped answering";
            helper.kill();
            break;
        }
        while (helper.canReadLine())
        {
            burst.acknowledged.push_back(helper.readLine().trimmed().toLongLong());
        }
        if (killAfter > 0 && !killed && static_cast<int>(burst.acknowledged.size()) >= killAfter)
        {
            helper.kill();  // SIGKILL; acknowledgements already in the pipe still count
            killed = true;
        }
    }
    helper.waitForFinished();
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
    Options options;
    options.maxFileBytes = 64 * 1024;  // rotations happen in the middle of the bursts
    options.maxFiles = 10000;
    // Lines of about 3 KB often straddle a page, so a kill can land inside a write.
    constexpr int kPadding = 3000;
    constexpr int kRounds = 4;

    std::set<long long> acknowledged;
    std::vector<long long> lastAcknowledged;
    for (int round = 0; round < kRounds; ++round)
    {
        const long long first = round * 10000000LL;
        const Burst burst =
            RunBurst(directory.path(), first, 5000000, 200 + 50 * round, options, kPadding);
        ASSERT_TRUE(burst.killed) << "round " << round;
        ASSERT_FALSE(burst.acknowledged.empty());
        acknowledged.insert(burst.acknowledged.begin(), burst.acknowledged.end());
        lastAcknowledged.push_back(burst.acknowledged.back());
    }
    const long long finalFirst = kRounds * 10000000LL;
    const Burst last = RunBurst(directory.path(), finalFirst, 300, 0, options, kPadding);
    ASSERT_TRUE(!last.killed && last.exitCode == 0) << last.exitCode;
    ASSERT_EQ(last.acknowledged.size(), 300u);
    acknowledged.insert(last.acknowledged.begin(), last.acknowledged.end());

    const Stored stored = ReadStored(directory.path(), options);
    EXPECT_TRUE(stored.allEndInNewline);
    std::vector<long long> inFile;
    for (const auto& line : stored.lines)
    {
        const QJsonObject object = ParseLine(line);
        ASSERT_FALSE(object.isEmpty()) << line;
        inFile.push_back(std::stoll(ParamsOf(object).at("I")));
    }
    // Strictly increasing: nothing doubled, nothing out of order.
    EXPECT_TRUE(std::adjacent_find(inFile.begin(), inFile.end(), std::greater_equal<>()) ==
                inFile.end());
    const std::set<long long> stored_(inFile.begin(), inFile.end());
    for (const long long index : acknowledged)
    {
        ASSERT_EQ(stored_.count(index), 1u) << "acknowledged event " << index << " lost";
    }
    // Besides the acknowledged events, at most the one being written when a round was killed.
    std::set<long long> allowedExtra;
    for (const long long index : lastAcknowledged)
    {
        allowedExtra.insert(index + 1);
    }
    for (const long long index : stored_)
    {
        if (!acknowledged.count(index))
        {
            EXPECT_EQ(allowedExtra.count(index), 1u) << "unexpected event " << index;
        }
    }
}

}  // namespace
