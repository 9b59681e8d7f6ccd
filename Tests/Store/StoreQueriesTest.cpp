// The analysts' queries (Lib/Analytics/Store/queries.sql) on the demo host's sessions in a real
// ClickHouse server, compared with the expected tables: the recorded raw session of the demo host
// replayed through the shipped rules into the uploader, and, where the demo host is built, the
// demo host itself uploading two sessions (KtDemoHost --upload).

#include "Analytics/ApplicationTrackerFactory.h"
#include "Analytics/UploadingApplicationTracker.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"
#include "Tracking/Tracking.h"

#include "Support/ClickHouseServer.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <fstream>
#include <iterator>
#include <string>

using namespace Velkor::Analytics;
using namespace Velkor::KT::Tracking;
using KtStoreTest::ClickHouseServer;
using KtStoreTest::SqlStatements;

namespace
{

// Every query's answer as a table under its name, dates written as <day>: the session's events
// carry the time they were uploaded; as the expected tables in Tests/Store/Data/<file>.
void ExpectAnswers(const std::string& database, const std::string& file)
{
    std::string answers;
    for (const auto& [name, sql] : SqlStatements(KT_STORE_DIR "/queries.sql"))
    {
        answers +=
            "-- query: " + name + "\n" +
            ClickHouseServer::Shared().Query(sql + " FORMAT TabSeparatedWithNames", database);
    }
    std::ifstream expected(KT_STORE_TEST_DATA "/" + file);
    EXPECT_EQ(QString::fromStdString(answers)
                  .replace(QRegularExpression(R"(\b\d{4}-\d\d-\d\d\b)"), "<day>")
                  .toStdString(),
              std::string(std::istreambuf_iterator<char>(expected), {}));
}

TEST(StoreQueriesTest, AnswerOnTheReplayedDemoSession)
{
    ASSERT_NO_THROW(
        ClickHouseServer::Shared().CreateDatabase("replayed", KT_STORE_DIR "/schema.sql"));
    QTemporaryDir directory;
    UploadOptions options;
    options.url = ClickHouseServer::Shared().Url();
    options.database = "replayed";
    options.applicationVersion = "3.1.0";  // the demo host's
    auto uploader = UploadingApplicationTracker::Create(options);
    {
        ScopedApplicationTrackerCreator creator([uploader]
                                                { return RefPtr<IApplicationTracker>(uploader); });
        auto settings = std::make_shared<Velkor::KT::ProductSettings>();
        settings->SetAllowSendStatistics(true);
        auto forward = std::make_shared<ForwardKtTracker>(
            std::make_shared<Velkor::App::CustomizationManager>("recorder", "demo"), settings,
            std::make_shared<Velkor::App::SessionId>(), Velkor::App::ioPath(directory.path()),
            std::vector<std::shared_ptr<IKtTrackingEndpoint>>{});
        auto aggregator = std::make_shared<AggregatorKtTracker>(forward);
        aggregator->SetConfig(LoadConfigFromQrc("/KT/Tracking/AggregatorConfig.xml"));
        FilterKtTracker filter(aggregator);
        filter.SetConfig(LoadConfigFromQrc("/KT/Tracking/FilterConfig.xml"));
        QFile raw(KT_DEMO_DATA "/DemoSessionRaw.jsonl");
        ASSERT_TRUE(raw.open(QIODevice::ReadOnly));
        while (!raw.atEnd())
        {
            const QJsonObject line = QJsonDocument::fromJson(raw.readLine()).object();
            Event event{line.value("name").toString().toStdString(), {}};
            const QJsonObject params = line.value("params").toObject();
            for (auto it = params.begin(); it != params.end(); ++it)
            {
                event.params[it.key().toStdString()] = it.value().toString().toStdString();
            }
            filter.Track(event);
        }
    }
    ASSERT_TRUE(uploader->Flush(std::chrono::seconds(60))) << uploader->Counters().lastError;
    ExpectAnswers("replayed", "DemoSessionQueries.expected");
}

#ifdef KT_DEMO_HOST
// The demo host uploads its own sessions and waits until they are drained: a first start, and a
// second start on the same data that finds a session which failed in between.
TEST(StoreQueriesTest, AnswerOnTheDemoHostsUploads)
{
    ASSERT_NO_THROW(ClickHouseServer::Shared().CreateDatabase("kt", KT_STORE_DIR "/schema.sql"));
    QTemporaryDir data;
    const auto play = [&](const char* expectedCounters)
    {
        QProcess demo;
        demo.start(KT_DEMO_HOST, {"--data-dir", data.path(), "--upload",
                                  QString::fromStdString(ClickHouseServer::Shared().Url())});
        ASSERT_TRUE(demo.waitForFinished(120000));
        const std::string errors = demo.readAllStandardError().toStdString();
        ASSERT_EQ(demo.exitCode(), 0) << errors;
        EXPECT_NE(errors.find(expectedCounters), std::string::npos) << errors;
    };
    play("upload: 74 spooled, 74 sent, 0 left");
    QFile marker(data.filePath("sessions/failed-session.session"));
    ASSERT_TRUE(marker.open(QIODevice::WriteOnly));
    marker.write("seq=1\n");
    marker.close();
    play(", 0 left");
    ExpectAnswers("kt", "DemoHostQueries.expected");
}
#endif

}  // namespace
