#include "Tracking/Tracking.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/ApplicationTrackerFactory.h"
#include "Analytics/JsonLinesApplicationTracker.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>
#include <mutex>
#include <ostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using Velkor::Analytics::ApplicationTrackerFactory;
using Velkor::Analytics::IApplicationTracker;
using Velkor::Analytics::Properties;
using Velkor::Analytics::RefCounted;
using Velkor::Analytics::RefPtr;
using Velkor::Analytics::ScopedApplicationTrackerCreator;
using Velkor::App::CustomizationManager;
using Velkor::App::ioPath;
using Velkor::App::SessionId;
using Velkor::KT::ProductSettings;
using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::ForwardKtTracker;
using Velkor::KT::Tracking::IKtTrackingEndpoint;

namespace
{

// One log shared by the endpoints and the analytics tracker of a test, so the order of
// deliveries across them can be checked.
struct Journal
{
    std::mutex mutex;
    std::vector<std::string> entries;
    std::vector<const Event*> addresses;

    void Add(const std::string& entry, const Event* address = nullptr)
    {
        std::lock_guard<std::mutex> lock(mutex);
        entries.push_back(entry);
        addresses.push_back(address);
    }
};

class RecordingEndpoint : public IKtTrackingEndpoint
{
public:
    RecordingEndpoint(std::string label, Journal& journal, bool throws = false)
        : m_label(std::move(label)), m_journal(journal), m_throws(throws)
    {
    }

    void Track(const Event& event) override
    {
        m_journal.Add(m_label + ":" + event.name, &event);
        if (m_throws)
        {
            throw std::runtime_error("endpoint failed");
        }
    }

private:
    std::string m_label;
    Journal& m_journal;
    bool m_throws;
};

class RecordingApplicationTracker : public IApplicationTracker
{
public:
    explicit RecordingApplicationTracker(Journal& journal, bool* destroyed = nullptr)
        : m_journal(journal), m_destroyed(destroyed)
    {
    }
    ~RecordingApplicationTracker() override
    {
        if (m_destroyed)
        {
            *m_destroyed = true;
        }
    }

    bool Track(const std::string& name, const Properties& properties) override
    {
        std::string entry = "analytics:" + name;
        for (const auto& [key, value] : properties)
        {
            entry += " " + key + "=" + value;
        }
        m_journal.Add(entry);
        return true;
    }
    bool Track(const std::string& name, const std::string& key, const std::string& value) override
    {
        return Track(name, Properties{{key, value}});
    }
    void AddDefaultProperties(const Properties&) override {}
    bool Initialize(const Properties& defaults, const std::string& identity,
                    const std::string& directory) override
    {
        std::string entry = "init:" + identity + "|" + directory;
        for (const auto& [key, value] : defaults)
        {
            entry += " " + key + "=" + value;
        }
        m_journal.Add(entry);
        return true;
    }

private:
    Journal& m_journal;
    bool* m_destroyed;
};

using Recording = RefCounted<RecordingApplicationTracker>;

struct Fixture
{
    std::shared_ptr<CustomizationManager> customization =
        std::make_shared<CustomizationManager>("recorder", "");
    std::shared_ptr<ProductSettings> settings = std::make_shared<ProductSettings>();
    std::shared_ptr<SessionId> session = std::make_shared<SessionId>("S1");
};

// --- Delivery order ---------------------------------------------------------------------------

struct DeliveryRow
{
    const char* label;
    std::vector<std::string> endpoints;
    bool analyticsAvailable;
    bool allowed;
    std::vector<std::string> expected;  // journal after the events "E1" and "E2"
};

void PrintTo(const DeliveryRow& row, std::ostream* out)
{
    *out << row.label;
}

class ForwardKtTrackerDeliveryTest : public testing::TestWithParam<DeliveryRow>
{
};

TEST_P(ForwardKtTrackerDeliveryTest, ReachesEndpointsInOrderThenAnalytics)
{
    const DeliveryRow& row = GetParam();
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        row.analyticsAvailable
            ? ApplicationTrackerFactory::Creator(
                  [&journal] { return RefPtr<IApplicationTracker>(new Recording(journal)); })
            : ApplicationTrackerFactory::Creator());
    Fixture fixture;
    fixture.settings->SetAllowSendStatistics(row.allowed);
    std::vector<std::shared_ptr<IKtTrackingEndpoint>> endpoints;
    for (const auto& label : row.endpoints)
    {
        endpoints.push_back(std::make_shared<RecordingEndpoint>(label, journal));
    }
    ForwardKtTracker tracker(fixture.customization, fixture.settings, fixture.session,
                             ioPath("/data"), endpoints);
    tracker.Track(Event{"E1", {{"K", "v"}}});
    tracker.Track(Event{"E2", {}});

    EXPECT_EQ(journal.entries, row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Endpoints, ForwardKtTrackerDeliveryTest,
    testing::Values(DeliveryRow{"NoEndpointsAnalyticsOnly",
                                {},
                                true,
                                true,
                                {"init:recorder|/data SID=S1", "analytics:E1 K=v", "analytics:E2"}},
                    DeliveryRow{"AThenBThenAnalytics",
                                {"A", "B"},
                                true,
                                true,
                                {"init:recorder|/data SID=S1", "A:E1", "B:E1", "analytics:E1 K=v",
                                 "A:E2", "B:E2", "analytics:E2"}},
                    DeliveryRow{"NotAllowedStillReachesEndpoints",
                                {"A", "B"},
                                true,
                                false,
                                {"init:recorder|/data SID=S1", "A:E1", "B:E1", "A:E2", "B:E2"}},
                    DeliveryRow{"NoAnalyticsTrackerIsInert", {"A"}, false, true, {"A:E1", "A:E2"}},
                    DeliveryRow{"NothingAtAll", {}, false, true, {}}),
    [](const testing::TestParamInfo<DeliveryRow>& info) { return std::string(info.param.label); });

TEST(ForwardKtTrackerTest, PermissionIsReadForEveryEvent)
{
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        [&journal] { return RefPtr<IApplicationTracker>(new Recording(journal)); });
    Fixture fixture;
    fixture.settings->SetAllowSendStatistics(true);
    ForwardKtTracker tracker(fixture.customization, fixture.settings, fixture.session, ioPath("/d"),
                             {std::make_shared<RecordingEndpoint>("A", journal),
                              std::make_shared<RecordingEndpoint>("B", journal)});
    tracker.Track(Event{"FIRST", {}});
    fixture.settings->SetAllowSendStatistics(false);
    tracker.Track(Event{"SECOND", {}});
    fixture.settings->SetAllowSendStatistics(true);
    tracker.Track(Event{"THIRD", {}});

    EXPECT_EQ(journal.entries,
              (std::vector<std::string>{"init:recorder|/d SID=S1", "A:FIRST", "B:FIRST",
                                        "analytics:FIRST", "A:SECOND", "B:SECOND", "A:THIRD",
                                        "B:THIRD", "analytics:THIRD"}));
}

TEST(ForwardKtTrackerTest, EveryEndpointGetsTheCallersEventItself)
{
    Journal journal;
    ScopedApplicationTrackerCreator creator({});
    Fixture fixture;
    ForwardKtTracker tracker(fixture.customization, fixture.settings, fixture.session, ioPath(),
                             {std::make_shared<RecordingEndpoint>("A", journal),
                              std::make_shared<RecordingEndpoint>("B", journal)});
    const Event event{"E", {{"K", "v"}}};
    tracker.Track(event);
    EXPECT_EQ(journal.addresses, (std::vector<const Event*>{&event, &event}));
}

TEST(ForwardKtTrackerTest, ThrowingEndpointStopsTheLoopAndReachesTheCaller)
{
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        [&journal] { return RefPtr<IApplicationTracker>(new Recording(journal)); });
    Fixture fixture;
    fixture.settings->SetAllowSendStatistics(true);
    ForwardKtTracker tracker(fixture.customization, fixture.settings, fixture.session, ioPath("/d"),
                             {std::make_shared<RecordingEndpoint>("A", journal),
                              std::make_shared<RecordingEndpoint>("X", journal, true),
                              std::make_shared<RecordingEndpoint>("B", journal)});
    EXPECT_THROW(tracker.Track(Event{"E", {}}), std::runtime_error);
    EXPECT_EQ(journal.entries, (std::vector<std::string>{"init:recorder|/d SID=S1", "A:E", "X:E"}));
}

// --- Construction -----------------------------------------------------------------------------

struct InitRow
{
    const char* label;
    std::string product;
    std::string partner;
    bool withCustomization;
    bool withSession;
    QString directory;
    std::string expected;
};

void PrintTo(const InitRow& row, std::ostream* out)
{
    *out << row.label;
}

class ForwardKtTrackerInitTest : public testing::TestWithParam<InitRow>
{
};

TEST_P(ForwardKtTrackerInitTest, InitialisesTheAnalyticsTrackerOnce)
{
    const InitRow& row = GetParam();
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        [&journal] { return RefPtr<IApplicationTracker>(new Recording(journal)); });
    auto customization = row.withCustomization
                             ? std::make_shared<CustomizationManager>(row.product, row.partner)
                             : nullptr;
    auto session = row.withSession ? std::make_shared<SessionId>("S1") : nullptr;
    ForwardKtTracker tracker(customization, std::make_shared<ProductSettings>(), session,
                             ioPath(row.directory), {});
    EXPECT_EQ(journal.entries, std::vector<std::string>{row.expected});
}

INSTANTIATE_TEST_SUITE_P(
    Identity, ForwardKtTrackerInitTest,
    testing::Values(
        InitRow{"ProductOnly", "recorder", "", true, true, "/d", "init:recorder|/d SID=S1"},
        InitRow{"ProductAndPartner", "recorder", "oem", true, true, "/d",
                "init:recorder/oem|/d SID=S1"},
        InitRow{"DirectoryInUtf8", "recorder", "", true, true,
                QString::fromUtf8("/home/j\xC3\xBCrgen/\xE6\x95\xB0\xE6\x8D\xAE"),
                "init:recorder|/home/j\xC3\xBCrgen/\xE6\x95\xB0\xE6\x8D\xAE SID=S1"},
        InitRow{"NoCustomizationNoSession", "", "", false, false, "/d", "init:|/d SID="}),
    [](const testing::TestParamInfo<InitRow>& info) { return std::string(info.param.label); });

TEST(ForwardKtTrackerTest, NullProductSettingsThrowsBeforeAskingTheFactory)
{
    int created = 0;
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        [&]
        {
            ++created;
            return RefPtr<IApplicationTracker>(new Recording(journal));
        });
    Fixture fixture;
    try
    {
        ForwardKtTracker tracker(fixture.customization, nullptr, fixture.session, ioPath("/d"), {});
        FAIL() << "constructed without product settings";
    }
    catch (const std::logic_error& error)
    {
        EXPECT_STREQ(error.what(), "NotNull can not initialized by null");
    }
    EXPECT_EQ(created, 0);
}

TEST(ForwardKtTrackerTest, ReleasesTheAnalyticsTrackerAndEndpointsWhenDestroyed)
{
    bool destroyed = false;
    Journal journal;
    ScopedApplicationTrackerCreator creator(
        [&] { return RefPtr<IApplicationTracker>(new Recording(journal, &destroyed)); });
    Fixture fixture;
    auto endpoint = std::make_shared<RecordingEndpoint>("A", journal);
    const std::weak_ptr<RecordingEndpoint> weakEndpoint = endpoint;
    auto tracker = std::make_unique<ForwardKtTracker>(
        fixture.customization, fixture.settings, fixture.session, ioPath("/d"),
        std::vector<std::shared_ptr<IKtTrackingEndpoint>>{endpoint});
    endpoint.reset();
    EXPECT_FALSE(destroyed);
    EXPECT_FALSE(weakEndpoint.expired());
    tracker.reset();
    EXPECT_TRUE(destroyed);
    EXPECT_TRUE(weakEndpoint.expired());
}

// --- Into the reference tracker ---------------------------------------------------------------

TEST(ForwardKtTrackerTest, ConcurrentCallersReachTheReferenceTrackerExactlyOnce)
{
    constexpr int kThreads = 4;
    constexpr int kPerThread = 250;
    QTemporaryDir directory;
    ScopedApplicationTrackerCreator creator(
        [] {
            return RefPtr<IApplicationTracker>(
                Velkor::Analytics::JsonLinesApplicationTracker::Create());
        });
    Fixture fixture;
    fixture.settings->SetAllowSendStatistics(true);
    {
        ForwardKtTracker tracker(fixture.customization, fixture.settings, fixture.session,
                                 ioPath(directory.path()), {});
        std::vector<std::thread> threads;
        for (int t = 0; t < kThreads; ++t)
        {
            threads.emplace_back(
                [&tracker, t]
                {
                    for (int i = 0; i < kPerThread; ++i)
                    {
                        tracker.Track(Event{"E", {{"N", std::to_string(t * kPerThread + i)}}});
                    }
                });
        }
        for (auto& thread : threads)
        {
            thread.join();
        }
    }
    QFile file(directory.path() + "/events.jsonl");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    std::vector<int> seen(kThreads * kPerThread, 0);
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        if (line.isEmpty())
        {
            continue;
        }
        const int at = line.indexOf("\"N\":\"");
        ASSERT_GE(at, 0) << line.toStdString();
        ASSERT_NE(line.indexOf("\"sid\":\"S1\""), -1) << line.toStdString();
        ++seen.at(static_cast<std::size_t>(line.mid(at + 5).split('"').front().toInt()));
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 1), kThreads * kPerThread);
}

}  // namespace
