#include "Tracking/Tracking.h"

#include "Tracking/ApplicationTrackerAdapter.h"

#include "App/ApplicationTrackerWrapper.h"
#include "App/ProductSettingsManager.h"
#include "KT/ProductSettings.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using Velkor::Analytics::Properties;
using Velkor::Analytics::RefPtr;
using Velkor::App::ProductSettingsManager;
using Velkor::KT::ProductSettings;
using Velkor::KT::Tracking::AppCoreKtTracker;
using Velkor::KT::Tracking::ApplicationTrackerAdapter;
using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::IKtTracker;

namespace
{

class RecordingTracker : public IKtTracker
{
public:
    void Track(const Event& event) override { events.push_back(event); }

    std::vector<Event> events;
};

// --- Through the application core -------------------------------------------------------------

struct PassageRow
{
    const char* label;
    std::string productName;
    std::string productVersion;
    std::string locale;  // would be added by the wrapper's own fillers, which are off
    Event in;
    Event out;
};

void PrintTo(const PassageRow& row, std::ostream* out)
{
    *out << row.label;
}

class AppCoreKtTrackerPassageTest : public testing::TestWithParam<PassageRow>
{
};

TEST_P(AppCoreKtTrackerPassageTest, ReachesTheNextTrackerOnceWithTheCoresProperties)
{
    const PassageRow& row = GetParam();
    auto settings = std::make_shared<ProductSettings>();
    settings->SetCurrentLocale(row.locale);
    auto next = std::make_shared<RecordingTracker>();
    AppCoreKtTracker tracker(
        std::make_shared<ProductSettingsManager>(row.productName, row.productVersion, settings),
        next);
    tracker.Track(row.in);
    EXPECT_EQ(next->events, std::vector<Event>{row.out});
}

INSTANTIATE_TEST_SUITE_P(
    Wrapper, AppCoreKtTrackerPassageTest,
    testing::Values(
        PassageRow{"WrapperAddsNothing",
                   "",
                   "",
                   "",
                   {"E", {{"K", "v"}, {"A", ""}}},
                   {"E", {{"K", "v"}, {"A", ""}}}},
        PassageRow{"NoParams", "", "", "", {"E", {}}, {"E", {}}},
        PassageRow{"AddsProductKeys",
                   "Recorder",
                   "5.1",
                   "",
                   {"E", {{"K", "v"}}},
                   {"E", {{"K", "v"}, {"PRODUCT_NAME", "Recorder"}, {"PRODUCT_VERSION", "5.1"}}}},
        PassageRow{"ReplacesEventValueUnderSameKey",
                   "",
                   "5.1",
                   "",
                   {"E", {{"PRODUCT_VERSION", "0.9"}}},
                   {"E", {{"PRODUCT_VERSION", "5.1"}}}},
        PassageRow{"OwnFillersStayOff", "", "", "de_DE", {"E", {{"K", "v"}}}, {"E", {{"K", "v"}}}}),
    [](const testing::TestParamInfo<PassageRow>& info) { return std::string(info.param.label); });

// The row "OwnFillersStayOff" above means something only if the wrapper has fillers to switch
// off: with them on, the same settings add the locale and the system's facts.
TEST(AppCoreKtTrackerTest, WrapperFillersWouldAddFactsWhenNotExcluded)
{
    using Velkor::App::ApplicationTrackerWrapper;
    auto settings = std::make_shared<ProductSettings>();
    settings->SetCurrentLocale("de_DE");
    auto next = std::make_shared<RecordingTracker>();
    auto wrapper = ApplicationTrackerWrapper::Create(
        std::make_shared<ProductSettingsManager>("", "", settings),
        ApplicationTrackerWrapper::NoOptions);
    wrapper->SetSuccessor(ApplicationTrackerAdapter::Create(next));
    EXPECT_TRUE(wrapper->Track("E", Properties{{"K", "v"}}));
    ASSERT_EQ(next->events.size(), 1u);
    const auto& params = next->events[0].params;
    EXPECT_EQ(params.at("APP_LOCALE"), "de_DE");
    EXPECT_EQ(params.count("OS_NAME"), 1u);
    EXPECT_EQ(params.at("K"), "v");
}

TEST(AppCoreKtTrackerTest, KeepsTheOrderOfEvents)
{
    auto next = std::make_shared<RecordingTracker>();
    AppCoreKtTracker tracker(std::make_shared<ProductSettingsManager>("", ""), next);
    for (const char* name : {"A", "B", "C", "A"})
    {
        tracker.Track(Event{name, {}});
    }
    ASSERT_EQ(next->events.size(), 4u);
    EXPECT_EQ(
        next->events[0].name + next->events[1].name + next->events[2].name + next->events[3].name,
        "ABCA");
}

TEST(AppCoreKtTrackerTest, DestructionReleasesTheWholeLoop)
{
    auto next = std::make_shared<RecordingTracker>();
    auto manager = std::make_shared<ProductSettingsManager>("", "");
    const std::weak_ptr<RecordingTracker> weakNext = next;
    const std::weak_ptr<ProductSettingsManager> weakManager = manager;
    auto tracker = std::make_unique<AppCoreKtTracker>(manager, next);
    next.reset();
    manager.reset();
    tracker->Track(Event{"E", {}});
    EXPECT_EQ(weakNext.lock()->events.size(), 1u);
    tracker.reset();
    // Wrapper and adapter hold each other only one way, so nothing keeps the loop alive.
    EXPECT_TRUE(weakNext.expired());
    EXPECT_TRUE(weakManager.expired());
}

TEST(AppCoreKtTrackerTest, WithoutSettingsManagerConstructionFailsAndKeepsNothing)
{
    auto next = std::make_shared<RecordingTracker>();
    const std::weak_ptr<RecordingTracker> weakNext = next;
    EXPECT_THROW(AppCoreKtTracker(nullptr, next), std::invalid_argument);
    next.reset();
    EXPECT_TRUE(weakNext.expired());
}

// --- The adapter ------------------------------------------------------------------------------

struct DefaultsRow
{
    const char* label;
    std::vector<Properties> defaultsAdded;  // in order
    bool throughInitialize;                 // the first set comes with Initialize()
    Properties eventProperties;
    Properties expected;
};

void PrintTo(const DefaultsRow& row, std::ostream* out)
{
    *out << row.label;
}

class ApplicationTrackerAdapterDefaultsTest : public testing::TestWithParam<DefaultsRow>
{
};

TEST_P(ApplicationTrackerAdapterDefaultsTest, AssignsDefaultsKeepingTheFirstOfEachKey)
{
    const DefaultsRow& row = GetParam();
    auto next = std::make_shared<RecordingTracker>();
    auto adapter = ApplicationTrackerAdapter::Create(next);
    for (std::size_t index = 0; index < row.defaultsAdded.size(); ++index)
    {
        if (index == 0 && row.throughInitialize)
        {
            EXPECT_TRUE(adapter->Initialize(row.defaultsAdded[0], "id", "/dir"));
        }
        else
        {
            adapter->AddDefaultProperties(row.defaultsAdded[index]);
        }
    }
    EXPECT_TRUE(adapter->Track("E", row.eventProperties));
    EXPECT_EQ(next->events, (std::vector<Event>{{"E", row.expected}}));
}

INSTANTIATE_TEST_SUITE_P(
    Defaults, ApplicationTrackerAdapterDefaultsTest,
    testing::Values(
        DefaultsRow{"NoDefaults", {}, false, {{"K", "v"}}, {{"K", "v"}}},
        DefaultsRow{"DefaultReplacesEventValue",
                    {{{"LANG", "en"}}},
                    false,
                    {{"LANG", "de"}},
                    {{"LANG", "en"}}},
        DefaultsRow{
            "FirstDefaultKept", {{{"LANG", "en"}}, {{"LANG", "fr"}}}, false, {}, {{"LANG", "en"}}},
        DefaultsRow{"DefaultsAddMissingKeys",
                    {{{"A", "1"}}, {{"B", "2"}}},
                    false,
                    {{"K", "v"}},
                    {{"A", "1"}, {"B", "2"}, {"K", "v"}}},
        DefaultsRow{"InitializeGivesDefaults",
                    {{{"LANG", "en"}}, {{"LANG", "fr"}, {"X", "x"}}},
                    true,
                    {{"LANG", "de"}},
                    {{"LANG", "en"}, {"X", "x"}}}),
    [](const testing::TestParamInfo<DefaultsRow>& info) { return std::string(info.param.label); });

TEST(ApplicationTrackerAdapterTest, SingleValueTrackIsAOneEntryMap)
{
    auto next = std::make_shared<RecordingTracker>();
    auto adapter = ApplicationTrackerAdapter::Create(next);
    adapter->AddDefaultProperties({{"LANG", "en"}});
    EXPECT_TRUE(adapter->Track("E", "K", "v"));
    EXPECT_EQ(next->events, (std::vector<Event>{{"E", {{"K", "v"}, {"LANG", "en"}}}}));
}

TEST(ApplicationTrackerAdapterTest, WithoutNextTrackerAnswersFalse)
{
    auto adapter = ApplicationTrackerAdapter::Create(nullptr);
    EXPECT_FALSE(adapter->Track("E", Properties{}));
}

TEST(ApplicationTrackerAdapterTest, LivesAsLongAsAReferenceAndReleasesTheNextTracker)
{
    auto next = std::make_shared<RecordingTracker>();
    const std::weak_ptr<RecordingTracker> weakNext = next;
    auto adapter = ApplicationTrackerAdapter::Create(std::move(next));
    RefPtr<Velkor::Analytics::IApplicationTracker> second = adapter;
    adapter.reset();
    EXPECT_TRUE(second->Track("E", Properties{}));
    EXPECT_FALSE(weakNext.expired());
    second.reset();
    EXPECT_TRUE(weakNext.expired());
}

}  // namespace
