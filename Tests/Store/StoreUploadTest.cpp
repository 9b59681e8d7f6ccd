// The uploader against a real ClickHouse server (one for the whole file, started by the test):
// every event arrives once and intact, through a killed server, a killed host, withdrawn consent,
// damaged spool lines and wrong credentials.

#include "Analytics/ApplicationTrackerFactory.h"
#include "Analytics/UploadingApplicationTracker.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"
#include "Tracking/Tracking.h"

#include "Support/ClickHouseServer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <signal.h>

using namespace Velkor::Analytics;
using KtStoreTest::ClickHouseServer;
using KtStoreTest::HttpStub;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace
{

ClickHouseServer& Store()
{
    return ClickHouseServer::Shared();
}

void TrackNumbered(UploadingApplicationTracker& tracker, long long first, long long count,
                   bool stored = true)
{
    for (long long i = first; i < first + count; ++i)
    {
        ASSERT_EQ(tracker.Track("E", {{"I", std::to_string(i)}}), stored) << i;
    }
}

// "first,...,first + count - 1"
std::string Range(long long first, long long count)
{
    std::string numbers;
    for (long long i = first; i < first + count; ++i)
    {
        numbers += (i == first ? "" : ",") + std::to_string(i);
    }
    return numbers;
}

// Each test has a database of its name in the server of the program, and a spool directory.
class StoreUploadTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_database = testing::UnitTest::GetInstance()->current_test_info()->name();
        ASSERT_NO_THROW(Store().CreateDatabase(m_database, KT_STORE_DIR "/schema.sql"));
    }

    UploadOptions Options() const
    {
        UploadOptions options;
        options.url = Store().Url();
        options.database = m_database;
        options.maxBatchAge = std::chrono::hours(1);
        options.minRetryDelay = milliseconds(20);
        options.maxRetryDelay = milliseconds(200);
        options.applicationVersion = "3.1.0";
        return options;
    }

    RefPtr<UploadingApplicationTracker> Started(const UploadOptions& options) const
    {
        auto tracker = UploadingApplicationTracker::Create(options);
        EXPECT_TRUE(
            tracker->Initialize({{"SID", "s-1"}}, "recorder", m_directory.path().toStdString()));
        return tracker;
    }

    std::string Query(const std::string& what) const
    {
        return Store().Query("SELECT " + what + " FROM events FINAL", m_database);
    }

    // The numbers I of the stored events in order, as Range() writes them.
    std::string Numbers() const
    {
        const std::string numbers = Query(
            "arrayStringConcat(arrayMap(x -> toString(x), arraySort(groupArray("
            "toInt64(params.value[indexOf(params.key, 'I')])))), ',')");
        return numbers.substr(0, numbers.size() - 1);
    }

    std::string m_database;
    QTemporaryDir m_directory;
};

// The texts the store must keep as they were given.
std::string Hostile(long long i)
{
    switch (i / 1000 % 5)
    {
        case 0:
            return "Zo\xC3\xAB \xE2\x9C\x93 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x8E\xA5";
        case 1:
            return R"(say "hi" to C:\dir\ and \\server)";
        case 2:
            return "line 1\nline 2\r\n\tindented";
        case 3:
            return "";
        default:
            return std::string(64 * 1024, static_cast<char>('a' + i % 26));
    }
}

Velkor::KT::Tracking::Event EventNumber(long long i)
{
    Velkor::KT::Tracking::Event event{"E" + std::to_string(i % 7), {{"I", std::to_string(i)}}};
    if (i % 1000 == 0)
    {
        event.name = "NAME \"" + Hostile(i + 1000) + "\" \\ \xC3\xBC";
        event.params["TEXT"] = Hostile(i);
        event.params[""] = "empty key";
    }
    return event;
}

// 100,000 events from the forwarding tracker reach the store through the spool: each once, by
// id, with its name and properties as they were.
TEST_F(StoreUploadTest, HundredThousandEventsArriveOnceAndIntact)
{
    constexpr long long kEvents = 100000;
    auto uploader = UploadingApplicationTracker::Create(Options());
    ScopedApplicationTrackerCreator creator([uploader]
                                            { return RefPtr<IApplicationTracker>(uploader); });
    auto settings = std::make_shared<Velkor::KT::ProductSettings>();
    settings->SetAllowSendStatistics(true);
    Velkor::KT::Tracking::ForwardKtTracker forward(
        std::make_shared<Velkor::App::CustomizationManager>("recorder", "partner"), settings,
        std::make_shared<Velkor::App::SessionId>("session-1"),
        Velkor::App::ioPath(m_directory.path()), {});
    for (long long i = 0; i < kEvents; ++i)
    {
        forward.Track(EventNumber(i));
    }
    ASSERT_TRUE(uploader->Flush(seconds(240))) << uploader->Counters().lastError;

    EXPECT_EQ(Query("count(), uniqExact(id), uniqExact(params.value[indexOf(params.key, 'I')])"),
              "100000\t100000\t100000\n");
    const std::string rows = Store().Query(
        "SELECT name, sid, app, version, params.key AS keys, params.value AS values FROM events "
        "FINAL ORDER BY toInt64(params.value[indexOf(params.key, 'I')]) FORMAT JSONEachRow",
        m_database);
    long long i = 0;
    for (const QByteArray& line : QByteArray::fromStdString(rows).trimmed().split('\n'))
    {
        const QJsonObject row = QJsonDocument::fromJson(line).object();
        const QJsonArray keys = row.value("keys").toArray();
        std::map<std::string, std::string> params;
        for (int k = 0; k < keys.size(); ++k)
        {
            params[keys.at(k).toString().toStdString()] =
                row.value("values").toArray().at(k).toString().toStdString();
        }
        const auto expected = EventNumber(i);
        ASSERT_EQ(row.value("name").toString().toStdString(), expected.name) << "event " << i;
        ASSERT_EQ(params, (std::map<std::string, std::string>(expected.params.begin(),
                                                              expected.params.end())))
            << "event " << i;
        ASSERT_EQ(QStringList({row.value("sid").toString(), row.value("app").toString(),
                               row.value("version").toString()}),
                  QStringList({"session-1", "recorder/partner", "3.1.0"}));
        ++i;
    }
    EXPECT_EQ(i, kEvents);
    const UploadCounters counters = uploader->Counters();
    EXPECT_EQ(counters.sent, static_cast<std::uint64_t>(kEvents));
    EXPECT_EQ(counters.spooled, static_cast<std::uint64_t>(kEvents));
}

// The server is killed while batches are on their way and started again on its data: nothing
// is lost, and what was sent twice is counted once.
TEST_F(StoreUploadTest, KilledServerLosesNothingAndCountsNothingTwice)
{
    constexpr long long kEvents = 30000;
    UploadOptions options = Options();
    options.maxBatchEvents = 1000;
    auto tracker = Started(options);
    TrackNumbered(*tracker, 0, kEvents);
    const auto deadline = std::chrono::steady_clock::now() + seconds(120);
    while (tracker->Counters().sent < 5000 && std::chrono::steady_clock::now() < deadline)
    {
        std::this_thread::sleep_for(milliseconds(1));
    }
    Store().Kill();
    ASSERT_GT(tracker->Counters().backlog, 0u) << "everything was sent before the kill";
    std::this_thread::sleep_for(milliseconds(300));
    ASSERT_NO_THROW(Store().Start());
    ASSERT_TRUE(tracker->Flush(seconds(240))) << tracker->Counters().lastError;

    EXPECT_EQ(Numbers(), Range(0, kEvents));
    EXPECT_EQ(Query("count(), uniqExact(id)"), "30000\t30000\n");
    EXPECT_GT(tracker->Counters().retried, 0u);
}

// The host is killed after the store took a batch and before the host heard so (and saved its
// cursor): started again, it sends that batch again, and the store counts it once.
TEST_F(StoreUploadTest, KilledHostResendsTheBatchCountedOnce)
{
    std::atomic<qint64> child{0};
    std::atomic<int> forwarded{0};
    HttpStub proxy(
        [&](const HttpStub::Request& request)
        {
            KtStoreTest::Headers headers;
            for (const auto& [name, value] : request.headers)
            {
                if (name == "content-encoding" || name.rfind("x-clickhouse-", 0) == 0)
                {
                    headers.emplace_back(name, value);
                }
            }
            const auto reply = KtStoreTest::HttpPost(Store().GetPorts().http, request.target,
                                                     request.rawBody, headers);
            if (++forwarded == 3 && reply.status == 200)
            {
                ::kill(static_cast<pid_t>(child.load()), SIGKILL);
                return HttpStub::Reply{0, {}, {}, true};  // hung up
            }
            return HttpStub::Reply{reply.status, reply.body};
        });
    // Its exit code, -1 when it was killed.
    const auto run = [&](long long count)
    {
        QProcess burst;
        burst.start(KT_UPLOAD_BURST, {m_directory.path(), QString::fromStdString(proxy.Url()),
                                      QString::fromStdString(m_database), QString::number(count)});
        EXPECT_TRUE(burst.waitForStarted());
        child = burst.processId();
        EXPECT_TRUE(burst.waitForFinished(240000));
        return burst.exitStatus() == QProcess::CrashExit ? -1 : burst.exitCode();
    };
    ASSERT_EQ(run(5000), -1);
    ASSERT_EQ(run(0), 0) << "the second start leaves nothing";

    const auto requests = proxy.Requests();
    ASSERT_GE(requests.size(), 4u);
    EXPECT_EQ(requests[3].body, requests[2].body) << "the batch in flight is sent again";
    EXPECT_EQ(Numbers(), Range(0, 5000));
    EXPECT_EQ(Query("count(), uniqExact(id)"), "5000\t5000\n");
}

// Consent withdrawn: what was not sent is deleted, nothing tracked afterwards is stored or sent;
// given again, new events go out.
TEST_F(StoreUploadTest, WithdrawnConsentSendsNothingMoreAndDeletesTheSpool)
{
    auto settings = std::make_shared<Velkor::KT::ProductSettings>();
    settings->SetAllowSendStatistics(true);
    UploadOptions options = Options();
    options.productSettings = settings;
    auto tracker = Started(options);
    TrackNumbered(*tracker, 0, 100);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    TrackNumbered(*tracker, 100, 100);  // waits for a fuller batch

    settings->SetAllowSendStatistics(false);
    for (const QFileInfo& file : QDir(m_directory.path()).entryInfoList({"spool.*.jsonl"}))
    {
        EXPECT_EQ(file.size(), 0) << file.fileName().toStdString();
    }
    EXPECT_EQ(tracker->Counters().backlog, 0u);
    TrackNumbered(*tracker, 200, 50, false);
    EXPECT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(Numbers(), Range(0, 100));

    settings->SetAllowSendStatistics(true);
    TrackNumbered(*tracker, 300, 10);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(Numbers(), Range(0, 100) + "," + Range(300, 10));
}

// The credentials travel in headers: the server refuses a wrong key (401), which pauses the
// upload without dropping anything. Lines then damaged by hand (a truncated one, one of binary
// bytes) are passed over and counted, and the right key delivers the others.
TEST_F(StoreUploadTest, WrongKeyPausesDamagedLinesAreSkippedRightKeyDelivers)
{
    UploadOptions options = Options();
    options.user = "uploader";
    options.key = "wrong";
    {
        auto tracker = Started(options);
        TrackNumbered(*tracker, 0, 20);
        EXPECT_FALSE(tracker->Flush(seconds(60)));
        const UploadCounters counters = tracker->Counters();
        EXPECT_TRUE(counters.paused);
        EXPECT_NE(counters.lastError.find("HTTP 401"), std::string::npos) << counters.lastError;
        EXPECT_EQ(counters.backlog, 20u);
        EXPECT_EQ(counters.dropped + counters.deadLettered, 0u);
    }
    QFile spool(m_directory.filePath("spool.1.jsonl"));
    ASSERT_TRUE(spool.open(QIODevice::ReadOnly));
    QList<QByteArray> lines = spool.readAll().split('\n');
    spool.close();
    ASSERT_EQ(lines.size(), 21);  // the last is empty
    lines.insert(12, QByteArray("\x00\xff\x13garbage\x80\x01", 12));
    lines.insert(6, lines[6].left(40));
    ASSERT_TRUE(spool.open(QIODevice::WriteOnly | QIODevice::Truncate));
    spool.write(lines.join('\n'));
    spool.close();

    options.key = "secret";
    auto tracker = Started(options);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(Numbers(), Range(0, 20));
    const UploadCounters counters = tracker->Counters();
    EXPECT_EQ(counters.skipped, 2u);
    EXPECT_EQ(counters.sent, 20u);
    EXPECT_EQ(counters.backlog, 0u);
}

}  // namespace
