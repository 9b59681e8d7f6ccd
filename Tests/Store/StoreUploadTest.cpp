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
#include "Support/HttpStub.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>

#include <atomic>
#include <map>
#include <memory>
#include <numeric>
#include <set>
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

const std::string kSchema = KT_STORE_DIR "/schema.sql";

struct StoredEvent
{
    std::string name;
    std::string sid;
    std::string app;
    std::string version;
    std::map<std::string, std::string> params;
};

class StoreUploadTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_server = new ClickHouseServer();
        ASSERT_NO_THROW(s_server->Start());
    }

    static void TearDownTestSuite()
    {
        delete s_server;
        s_server = nullptr;
    }

    void SetUp() override
    {
        ASSERT_NE(s_server, nullptr);
        m_database = testing::UnitTest::GetInstance()->current_test_info()->name();
        ASSERT_NO_THROW(s_server->CreateDatabase(m_database, kSchema));
    }

    UploadOptions Options() const
    {
        UploadOptions options;
        options.url = s_server->Url();
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

    std::string Count(const std::string& what) const
    {
        return s_server->Query("SELECT " + what + " FROM events FINAL", m_database);
    }

    // Every event in the store, by its property I.
    std::multimap<long long, StoredEvent> Stored() const
    {
        std::multimap<long long, StoredEvent> events;
        const std::string rows = s_server->Query(
            "SELECT name, sid, app, version, params.key AS keys, params.value AS values "
            "FROM events FINAL FORMAT JSONEachRow",
            m_database);
        for (const QByteArray& line : QByteArray::fromStdString(rows).split('\n'))
        {
            if (line.isEmpty())
            {
                continue;
            }
            const QJsonObject row = QJsonDocument::fromJson(line).object();
            StoredEvent event{row.value("name").toString().toStdString(),
                              row.value("sid").toString().toStdString(),
                              row.value("app").toString().toStdString(),
                              row.value("version").toString().toStdString(),
                              {}};
            const QJsonArray keys = row.value("keys").toArray();
            const QJsonArray values = row.value("values").toArray();
            for (int i = 0; i < keys.size(); ++i)
            {
                event.params[keys.at(i).toString().toStdString()] =
                    values.at(i).toString().toStdString();
            }
            events.emplace(std::stoll(event.params["I"]), event);
        }
        return events;
    }

    // The numbers I of the stored events, each once.
    std::vector<long long> StoredNumbers() const
    {
        std::vector<long long> numbers;
        for (const auto& entry : Stored())
        {
            numbers.push_back(entry.first);
        }
        return numbers;
    }

    static std::vector<long long> Range(long long first, long long count)
    {
        std::vector<long long> numbers(static_cast<std::size_t>(count));
        std::iota(numbers.begin(), numbers.end(), first);
        return numbers;
    }

    static ClickHouseServer* s_server;
    std::string m_database;
    QTemporaryDir m_directory;
};

ClickHouseServer* StoreUploadTest::s_server = nullptr;

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

    EXPECT_EQ(Count("count(), uniqExact(id), uniqExact(params.value[indexOf(params.key, 'I')])"),
              "100000\t100000\t100000\n");
    const auto stored = Stored();
    ASSERT_EQ(stored.size(), static_cast<std::size_t>(kEvents));
    long long i = 0;
    for (const auto& [number, event] : stored)
    {
        ASSERT_EQ(number, i);
        const auto expected = EventNumber(i);
        ASSERT_EQ(event.name, expected.name) << "event " << i;
        ASSERT_EQ(event.params, (std::map<std::string, std::string>(expected.params.begin(),
                                                                    expected.params.end())))
            << "event " << i;
        ASSERT_EQ(event.sid + " " + event.app + " " + event.version,
                  "session-1 recorder/partner 3.1.0");
        ++i;
    }
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
    for (long long i = 0; i < kEvents; ++i)
    {
        ASSERT_TRUE(tracker->Track("E", {{"I", std::to_string(i)}}));
    }
    const auto deadline = std::chrono::steady_clock::now() + seconds(120);
    while (tracker->Counters().sent < 5000 && std::chrono::steady_clock::now() < deadline)
    {
        std::this_thread::sleep_for(milliseconds(1));
    }
    s_server->Kill();
    ASSERT_GT(tracker->Counters().backlog, 0u) << "everything was sent before the kill";
    std::this_thread::sleep_for(milliseconds(300));
    ASSERT_NO_THROW(s_server->Start());
    ASSERT_TRUE(tracker->Flush(seconds(240))) << tracker->Counters().lastError;

    EXPECT_EQ(StoredNumbers(), Range(0, kEvents));
    EXPECT_EQ(Count("count(), uniqExact(id)"), "30000\t30000\n");
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
            const auto reply = KtStoreTest::HttpPost(s_server->GetPorts().http, request.target,
                                                     request.rawBody, headers);
            if (++forwarded == 3 && reply.status == 200)
            {
                ::kill(static_cast<pid_t>(child.load()), SIGKILL);
                HttpStub::Reply hangUp;
                hangUp.hangUp = true;
                return hangUp;
            }
            return HttpStub::Reply(reply.status, reply.body);
        });
    const auto run = [&](long long count, bool expectKilled)
    {
        QProcess burst;
        burst.start(KT_UPLOAD_BURST,
                    {m_directory.path(), QString::fromStdString(proxy.Url()),
                     QString::fromStdString(m_database), "0", QString::number(count), "1000"});
        EXPECT_TRUE(burst.waitForStarted());
        child = burst.processId();
        EXPECT_TRUE(burst.waitForFinished(240000));
        EXPECT_EQ(burst.exitStatus() == QProcess::CrashExit, expectKilled)
            << burst.readAllStandardOutput().toStdString();
        if (!expectKilled)
        {
            EXPECT_EQ(burst.exitCode(), 0) << burst.readAllStandardOutput().toStdString();
        }
    };
    run(5000, true);
    run(0, false);

    const auto requests = proxy.Requests();
    ASSERT_GE(requests.size(), 4u);
    EXPECT_EQ(requests[3].body, requests[2].body) << "the batch in flight is sent again";
    EXPECT_EQ(StoredNumbers(), Range(0, 5000));
    EXPECT_EQ(Count("count(), uniqExact(id)"), "5000\t5000\n");
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
    const auto track = [&](long long first, long long count, bool stored)
    {
        for (long long i = first; i < first + count; ++i)
        {
            ASSERT_EQ(tracker->Track("E", {{"I", std::to_string(i)}}), stored) << i;
        }
    };
    track(0, 100, true);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    track(100, 100, true);  // waits for a fuller batch

    settings->SetAllowSendStatistics(false);
    qint64 spooled = 0;
    for (const QFileInfo& file : QDir(m_directory.path()).entryInfoList({"spool.*"}, QDir::Files))
    {
        spooled += file.fileName().endsWith(".jsonl") ? file.size() : 0;
    }
    EXPECT_EQ(spooled, 0);
    EXPECT_EQ(tracker->Counters().backlog, 0u);
    track(200, 50, false);
    EXPECT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(StoredNumbers(), Range(0, 100));

    settings->SetAllowSendStatistics(true);
    track(300, 10, true);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    std::vector<long long> expected = Range(0, 100);
    const auto later = Range(300, 10);
    expected.insert(expected.end(), later.begin(), later.end());
    EXPECT_EQ(StoredNumbers(), expected);
}

// Lines damaged by hand (a truncated one, one of binary bytes) are passed over and counted; the
// others are uploaded.
TEST_F(StoreUploadTest, DamagedSpoolLinesAreSkippedAndTheRestUploaded)
{
    const quint16 closedPort = []
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost, 0);
        return server.serverPort();
    }();
    UploadOptions offline = Options();
    offline.url = "http://127.0.0.1:" + std::to_string(closedPort) + "/";
    {
        auto tracker = Started(offline);
        for (int i = 0; i < 20; ++i)
        {
            ASSERT_TRUE(tracker->Track("E", {{"I", std::to_string(i)}}));
        }
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

    auto tracker = Started(Options());
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(StoredNumbers(), Range(0, 20));
    const UploadCounters counters = tracker->Counters();
    EXPECT_EQ(counters.skipped, 2u);
    EXPECT_EQ(counters.sent, 20u);
    EXPECT_EQ(counters.backlog, 0u);
}

// The credentials travel in headers: the server refuses a wrong key (401), which pauses the
// upload without dropping anything; the right key delivers.
TEST_F(StoreUploadTest, WrongKeyPausesTheUploadRightKeyDelivers)
{
    UploadOptions options = Options();
    options.user = "uploader";
    options.key = "wrong";
    {
        auto tracker = Started(options);
        for (int i = 0; i < 5; ++i)
        {
            ASSERT_TRUE(tracker->Track("E", {{"I", std::to_string(i)}}));
        }
        EXPECT_FALSE(tracker->Flush(seconds(60)));
        const UploadCounters counters = tracker->Counters();
        EXPECT_TRUE(counters.paused);
        EXPECT_NE(counters.lastError.find("HTTP 401"), std::string::npos) << counters.lastError;
        EXPECT_EQ(counters.backlog, 5u);
        EXPECT_EQ(counters.dropped + counters.deadLettered, 0u);
    }
    options.key = "secret";
    auto tracker = Started(options);
    ASSERT_TRUE(tracker->Flush(seconds(60)));
    EXPECT_EQ(StoredNumbers(), Range(0, 5));
}

}  // namespace
