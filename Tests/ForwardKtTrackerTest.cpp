#include "Tracking/Tracking.h"

#include "Analytics/AnalyticsConstants.h"
#include "Analytics/ApplicationTrackerFactory.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
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
    std::vector<std::string> entries;
    std::vector<const Event*> addresses;

    void Add(const std::string& entry, const Event* address = nullptr)
    {
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

std::string Entry(std::string entry, const Properties& properties)
{
    for (const auto& [key, value] : properties)
    {
        entry += " " + key + "=" + value;
    }
    return entry;
}

// Journals its initialisation, its events and its destruction.
class RecordingApplicationTracker : public IApplicationTracker
{
public:
    explicit RecordingApplicationTracker(Journal& journal) : m_journal(journal) {}
    ~RecordingApplicationTracker() override { m_journal.Add("destroyed"); }

    bool Track(const std::string& name, const Properties& properties) override
    {
        m_journal.Add(Entry("analytics:" + name, properties));
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
        m_journal.Add(Entry("init:" + identity + "|" + directory, defaults));
        return true;
    }

private:
    Journal& m_journal;
};

using Recording = RefCounted<RecordingApplicationTracker>;

// Analytics trackers that journal into `journal`.
ApplicationTrackerFactory::Creator JournalingCreator(Journal& journal)
{
    return [&journal] { return RefPtr<IApplicationTracker>(new Recording(journal)); };
}

// A forward tracker of the product "recorder", session "S1", over `endpoints`; analytics trackers
// journal into `journal`.
struct Fixture
{
    Fixture(Journal& journal, std::vector<std::shared_ptr<IKtTrackingEndpoint>> endpoints,
            bool analyticsAvailable = true)
        : creator(analyticsAvailable ? JournalingCreator(journal) : nullptr),
          tracker(std::make_unique<ForwardKtTracker>(
              std::make_shared<CustomizationManager>("recorder", ""), settings,
              std::make_shared<SessionId>("S1"), ioPath("/d"), std::move(endpoints)))
    {
    }

    ScopedApplicationTrackerCreator creator;
    std::shared_ptr<ProductSettings> settings = std::make_shared<ProductSettings>();
    std::unique_ptr<ForwardKtTracker> tracker;
};

// --- Delivery order ---------------------------------------------------------------------------

struct DeliveryRow
{
    const char* label;
    std::vector<std::string> endpoints;
    bool analyticsAvailable;
    std::string allowed;  // per event E1, E2, ...: '1' if sending is allowed when it is tracked
    std::vector<std::string> expected;
};

using ForwardKtTrackerDeliveryTest = KtTest::Table<DeliveryRow>;

TEST_P(ForwardKtTrackerDeliveryTest, ReachesEndpointsInOrderThenAnalytics)
{
    const DeliveryRow& row = GetParam();
    Journal journal;
    std::vector<std::shared_ptr<IKtTrackingEndpoint>> endpoints;
    for (const auto& label : row.endpoints)
    {
        endpoints.push_back(std::make_shared<RecordingEndpoint>(label, journal));
    }
    Fixture fixture(journal, endpoints, row.analyticsAvailable);
    for (std::size_t i = 0; i < row.allowed.size(); ++i)
    {
        fixture.settings->SetAllowSendStatistics(row.allowed[i] == '1');
        fixture.tracker->Track(Event{"E" + std::to_string(i + 1),
                                     i == 0 ? Event::Params{{"K", "v"}} : Event::Params{}});
    }
    EXPECT_EQ(journal.entries, row.expected);
}

const char kInit[] = "init:recorder|/d SID=S1";

KT_ROWS(ForwardKtTrackerDeliveryTest,
        {{"PermissionIsReadForEveryEvent",
          {"A", "B"},
          true,
          "101",
          {kInit, "A:E1", "B:E1", "analytics:E1 K=v", "A:E2", "B:E2", "A:E3", "B:E3",
           "analytics:E3"}},
         {"NoAnalyticsTrackerIsInert", {"A"}, false, "11", {"A:E1", "A:E2"}}});

// A throwing endpoint stops the loop and reaches the caller; destroyed, the tracker releases the
// analytics tracker and the endpoints.
TEST(ForwardKtTrackerTest, ThrowingEndpointReachesTheCallerAndDestructionReleasesAll)
{
    Journal journal;
    auto endpoint = std::make_shared<RecordingEndpoint>("A", journal);
    const std::weak_ptr<RecordingEndpoint> weakEndpoint = endpoint;
    Fixture fixture(journal, {endpoint, std::make_shared<RecordingEndpoint>("X", journal, true),
                              std::make_shared<RecordingEndpoint>("B", journal)});
    endpoint.reset();
    fixture.settings->SetAllowSendStatistics(true);
    const Event event{"E", {}};
    EXPECT_THROW(fixture.tracker->Track(event), std::runtime_error);
    EXPECT_EQ(journal.entries, (std::vector<std::string>{"init:recorder|/d SID=S1", "A:E", "X:E"}));
    // Every endpoint gets the caller's event itself, not a copy.
    EXPECT_EQ(journal.addresses, (std::vector<const Event*>{nullptr, &event, &event}));
    EXPECT_FALSE(weakEndpoint.expired());
    fixture.tracker.reset();
    EXPECT_EQ(journal.entries.back(), "destroyed");
    EXPECT_TRUE(weakEndpoint.expired());
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

using ForwardKtTrackerInitTest = KtTest::Table<InitRow>;

TEST_P(ForwardKtTrackerInitTest, InitialisesTheAnalyticsTrackerOnce)
{
    const InitRow& row = GetParam();
    Journal journal;
    ScopedApplicationTrackerCreator creator(JournalingCreator(journal));
    auto customization = row.withCustomization
                             ? std::make_shared<CustomizationManager>(row.product, row.partner)
                             : nullptr;
    auto session = row.withSession ? std::make_shared<SessionId>("S1") : nullptr;
    ForwardKtTracker tracker(customization, std::make_shared<ProductSettings>(), session,
                             ioPath(row.directory), {});
    EXPECT_EQ(journal.entries, std::vector<std::string>{row.expected});
}

KT_ROWS(ForwardKtTrackerInitTest,
        {InitRow{"ProductAndPartner", "recorder", "oem", true, true, "/d",
                 "init:recorder/oem|/d SID=S1"},
         InitRow{"DirectoryInUtf8", "recorder", "", true, true,
                 QString::fromUtf8("/home/j\xC3\xBCrgen/\xE6\x95\xB0\xE6\x8D\xAE"),
                 "init:recorder|/home/j\xC3\xBCrgen/\xE6\x95\xB0\xE6\x8D\xAE SID=S1"},
         InitRow{"NoCustomizationNoSession", "", "", false, false, "/d", "init:|/d SID="}});

}  // namespace
