#include "Tracking/Tracking.h"

#include "Tracking/Delivery/ApplicationTrackerAdapter_p.h"

#include "App/ProductSettingsManager.h"
#include "KT/ProductSettings.h"

#include "Support/EventPrinting.h"
#include "Support/EventText.h"
#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include <gtest/gtest.h>

#include <memory>
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

using KtTest::RecordingTracker;

// --- Through the application core -------------------------------------------------------------

struct PassageRow
{
    const char* label;
    std::string productName;
    std::string productVersion;
    std::string locale;  // would be added by the wrapper's own fillers, which are off
    std::string in;      // events as KtTest::EventsFrom reads them
    std::string out;
};

using AppCoreKtTrackerPassageTest = KtTest::Table<PassageRow>;

TEST_P(AppCoreKtTrackerPassageTest, ReachesTheNextTrackerOnceWithTheCoresProperties)
{
    const PassageRow& row = GetParam();
    auto settings = std::make_shared<ProductSettings>();
    settings->SetCurrentLocale(row.locale);
    auto next = std::make_shared<RecordingTracker>();
    AppCoreKtTracker tracker(
        std::make_shared<ProductSettingsManager>(row.productName, row.productVersion, settings),
        next);
    tracker.Track(KtTest::EventsFrom(row.in).at(0));
    EXPECT_EQ(next->Events(), KtTest::EventsFrom(row.out));
}

KT_ROWS(AppCoreKtTrackerPassageTest, {{"WrapperAddsNothing", "", "", "", "E{K=v,A=}", "E{K=v,A=}"},
                                      {"NoParams", "", "", "", "E{}", "E{}"},
                                      {"AddsProductKeys", "Recorder", "5.1", "", "E{K=v}",
                                       "E{K=v,PRODUCT_NAME=Recorder,PRODUCT_VERSION=5.1}"},
                                      {"ReplacesEventValueUnderSameKey", "", "5.1", "",
                                       "E{PRODUCT_VERSION=0.9}", "E{PRODUCT_VERSION=5.1}"},
                                      {"OwnFillersStayOff", "", "", "de_DE", "E{K=v}", "E{K=v}"}});

// Events pass in order, and destruction releases the whole loop.
TEST(AppCoreKtTrackerTest, KeepsTheOrderAndReleasesTheWholeLoop)
{
    auto next = std::make_shared<RecordingTracker>();
    auto manager = std::make_shared<ProductSettingsManager>("", "");
    const std::weak_ptr<RecordingTracker> weakNext = next;
    const std::weak_ptr<ProductSettingsManager> weakManager = manager;
    auto tracker = std::make_unique<AppCoreKtTracker>(manager, next);
    next.reset();
    manager.reset();
    for (const char* name : {"A", "B", "C", "A"})
    {
        tracker->Track(Event{name, {}});
    }
    EXPECT_EQ(weakNext.lock()->Names(), (std::vector<std::string>{"A", "B", "C", "A"}));
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

// Defaults, from Initialize() and later sets, replace the event's own values; of each key the
// first default given stays.
TEST(ApplicationTrackerAdapterTest, AssignsDefaultsKeepingTheFirstOfEachKey)
{
    auto next = std::make_shared<RecordingTracker>();
    auto adapter = ApplicationTrackerAdapter::Create(next);
    EXPECT_TRUE(adapter->Initialize({{"LANG", "en"}}, "id", "/dir"));
    adapter->AddDefaultProperties({{"LANG", "fr"}, {"X", "x"}});
    adapter->AddDefaultProperties({{"B", "2"}});
    EXPECT_TRUE(adapter->Track("E", {{"LANG", "de"}, {"K", "v"}}));
    EXPECT_TRUE(adapter->Track("F", "X", "own"));
    EXPECT_EQ(next->Events(), KtTest::EventsFrom("E{B=2,K=v,LANG=en,X=x} F{B=2,LANG=en,X=x}"));
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
