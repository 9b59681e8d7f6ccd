// The store on two shards (two ClickHouse servers, a Distributed table sharded by installation):
// every event arrives, each shard holds a share, whole installations stay on one shard, and the
// analysts' queries answer as on one server.

#include "Analytics/UploadingApplicationTracker.h"

#include "Support/ClickHouseServer.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

using namespace Velkor::Analytics;
using KtStoreTest::ClickHouseServer;
using KtStoreTest::SqlStatements;

namespace
{

const std::string kStore = KT_STORE_DIR;

// A few sessions of one installation: starts, captures with their settings, a failure now and
// then, saves and shares.
void PlaySessions(UploadingApplicationTracker& tracker, int installation)
{
    const char* codecs[] = {"CODEC_ID_H264", "CODEC_ID_MJPEG", "CODEC_ID_HEVC"};
    for (int session = 0; session < 3; ++session)
    {
        tracker.Track(session == 0 ? "APP_FIRST_START" : "APP_EVERY_START", {});
        if ((installation + session) % 4 == 0)
        {
            tracker.Track("APP_FAILED", {{"SID", "earlier"}});
        }
        for (int capture = 0; capture <= (installation + session) % 3; ++capture)
        {
            tracker.Track("CAPTURE_START", {{"FPS", (installation + capture) % 2 ? "30" : "60"},
                                            {"CODEC", codecs[(installation + session) % 3]}});
            tracker.Track("CAPTURE_STOP", {{"DURATION", std::to_string(10 * capture)}});
        }
        tracker.Track(installation % 2 ? "SHOW_IN_FOLDER" : "YOUTUBE_VIDEO_SHARING_START", {});
        tracker.Track("APP_EXIT", {});
    }
}

TEST(StoreShardsTest, EveryEventArrivesAndTheQueriesAnswerAsOnOneServer)
{
    const ClickHouseServer::Ports first = ClickHouseServer::FreePorts();
    const ClickHouseServer::Ports second = ClickHouseServer::FreePorts();
    ClickHouseServer shard1(first, {first.tcp, second.tcp});
    ClickHouseServer shard2(second, {first.tcp, second.tcp});
    for (ClickHouseServer* shard : {&shard1, &shard2})
    {
        ASSERT_NO_THROW(shard->Start());
        ASSERT_NO_THROW(shard->CreateDatabase("sharded", kStore + "/schema-sharded.sql"));
    }
    ASSERT_NO_THROW(shard1.CreateDatabase("single", kStore + "/schema.sql"));

    // Each installation's sessions go to the Distributed table (on the first server) and, for
    // comparison, to the single-server table.
    constexpr int kInstallations = 16;
    for (int installation = 0; installation < kInstallations; ++installation)
    {
        for (const char* database : {"sharded", "single"})
        {
            QTemporaryDir directory;
            UploadOptions options;
            options.url = shard1.Url();
            options.database = database;
            options.applicationVersion = installation % 3 ? "3.1.0" : "3.2.0";
            options.installationId = "installation-" + std::to_string(installation);
            auto tracker = UploadingApplicationTracker::Create(options);
            ASSERT_TRUE(tracker->Initialize({{"SID", "session-" + std::to_string(installation)}},
                                            "recorder", directory.path().toStdString()));
            PlaySessions(*tracker, installation);
            ASSERT_TRUE(tracker->Flush(std::chrono::seconds(60))) << tracker->Counters().lastError;
        }
    }
    // The Distributed table hands rows on to the shards in the background.
    const std::string total = shard1.Query("SELECT count() FROM events", "single");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (shard2.Query("SELECT count() FROM events", "sharded") != total &&
           std::chrono::steady_clock::now() < deadline)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ASSERT_EQ(shard2.Query("SELECT count() FROM events FINAL", "sharded"), total);

    // Both shards hold a share, and no installation is split between them: the installations
    // of the two shards add up to all of them.
    int installations = 0;
    for (const ClickHouseServer* shard : {&shard1, &shard2})
    {
        const std::string share =
            shard->Query("SELECT count(), uniqExact(installation) FROM events_local", "sharded");
        EXPECT_NE(share.rfind("0\t", 0), 0u) << share;
        installations += std::stoi(share.substr(share.find('\t') + 1));
    }
    EXPECT_EQ(installations, kInstallations);

    for (const auto& [name, query] : SqlStatements(kStore + "/queries.sql"))
    {
        const std::string single = shard1.Query(query, "single");
        EXPECT_GT(single.size(), 0u) << name;
        EXPECT_EQ(shard2.Query(query, "sharded"), single) << name;
    }
}

}  // namespace
