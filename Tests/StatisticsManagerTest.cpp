#include "Support/EventText.h"
#include "Support/InstancesConfig.h"
#include "Support/LaunchAndCrashDoubles.h"
#include "Support/LogCapture.h"
#include "Support/Table.h"

#include "Analytics/AnalyticsConstants.h"
#include "App/ILaunchTypeProcessor.h"
#include "App/LookAndFeelManager.h"
#include "KT/ConvertationSettings.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "Tracking/Manager/StatisticsManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QWidget>

#include <functional>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace Velkor;
using InstancesTest::RecordingTracker;
using KT::Tracking::Event;
using KT::Tracking::FillerTypes;
using KT::Tracking::StatisticsManager;
using KtTest::FixedLaunchType;
using KtTest::ListCrashTracker;

namespace
{

// A tracker that runs a function when a given event arrives.
class HookTracker : public RecordingTracker
{
public:
    void Track(const Event& event) override
    {
        RecordingTracker::Track(event);
        if (event.name == hookEvent && hook)
        {
            hook();
        }
    }

    std::string hookEvent;
    std::function<void()> hook;
};

const char kGuiDocument[] = R"(<ktmstat><gui>
    <widget id="MainWindow"><button id="stopButton"><clicked-event event="STOP"/></button></widget>
</gui><instances>
    <IScheduler><start event="SCHEDULER_START"/></IScheduler>
</instances></ktmstat>)";

const char kInstancesOnlyDocument[] = R"(<ktmstat><instances>
    <IScheduler><start event="SCHEDULER_START_2"/></IScheduler>
</instances></ktmstat>)";

// A registered scheduler, for the instances side of a configuration.
class StatisticsManagerTest : public testing::Test
{
protected:
    StatisticsManagerTest() { registry.Register<KT::IScheduler>(&scheduler); }
    ~StatisticsManagerTest() override { registry.Unregister<KT::IScheduler>(&scheduler); }

    std::unique_ptr<StatisticsManager> Make(const std::vector<FillerTypes>& fillers,
                                            int launchType = App::ILaunchTypeProcessor::EveryStart,
                                            std::vector<std::string> failed = {})
    {
        return std::make_unique<StatisticsManager>(
            tracker, language, nullptr, nullptr, std::make_shared<FixedLaunchType>(launchType),
            std::make_shared<ListCrashTracker>(std::move(failed)), convertation, fillers);
    }

    // A top-level window "MainWindow" with "stopButton".
    std::unique_ptr<QWidget> MakeWindow()
    {
        auto window = std::make_unique<QWidget>();
        window->setObjectName("MainWindow");
        auto* button = new QPushButton(window.get());
        button->setObjectName("stopButton");
        return window;
    }

    // Attaches a new window and the instances, then clicks the stop button and starts the
    // scheduler: the events that gives.
    std::vector<std::string> AttachAndPoke(StatisticsManager& manager)
    {
        auto window = MakeWindow();
        manager.AttachQObject(window.get());
        manager.AttachInstances();
        tracker->Clear();
        StopButton(window.get())->click();
        scheduler.StartScheduledCapture();
        return tracker->Names();
    }

    static QPushButton* StopButton(QWidget* window)
    {
        return window->findChild<QPushButton*>("stopButton");
    }

    KT::InstanceRegistry registry;
    KT::Scheduler scheduler;
    std::shared_ptr<HookTracker> tracker = std::make_shared<HookTracker>();
    std::shared_ptr<App::LookAndFeelManager> language =
        std::make_shared<App::LookAndFeelManager>("de");
    std::shared_ptr<KT::ConvertationSettings> convertation =
        std::make_shared<KT::ConvertationSettings>();
};

template <class Row>
class StatisticsManagerTable : public StatisticsManagerTest, public testing::WithParamInterface<Row>
{
};

// --- start events -------------------------------------------------------------------------------

struct StartRow
{
    const char* label;
    int launchType;
    std::vector<FillerTypes> fillers;
    std::string expectedName;
    std::string keys;  // "+KEY" present, "-KEY" absent, blank-separated
};

using StartEventTest = StatisticsManagerTable<StartRow>;

TEST_P(StartEventTest, OneStartEventNamedByLaunchType)
{
    const StartRow& row = GetParam();
    auto manager = Make(row.fillers, row.launchType);

    const auto events = tracker->Events();
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].name, row.expectedName);
    std::istringstream keys(row.keys);
    for (std::string key; keys >> key;)
    {
        EXPECT_EQ(events[0].params.count(key.substr(1)), key[0] == '+' ? 1u : 0u) << key;
    }
    if (row.fillers.empty())
    {
        EXPECT_TRUE(events[0].params.empty());
    }
}

const std::vector<FillerTypes> kCountryAndLanguage = {FillerTypes::CountryName,
                                                      FillerTypes::AppLanguage};
constexpr int kMinor = App::ILaunchTypeProcessor::FirstStartAfterMinorUpdate;

KT_ROWS(StartEventTest,
        {{"NoFillers", 2, {}, Analytics::APP_EVERY_START, ""},
         {"FirstStartHasCountry", 1, kCountryAndLanguage, Analytics::APP_FIRST_START,
          "+COUNTRY_NAME +APP_LANGUAGE"},
         {"EveryStartHasNoCountry", 2, kCountryAndLanguage, Analytics::APP_EVERY_START,
          "+APP_LANGUAGE -COUNTRY_NAME"},
         {"MinorUpdateHasCountry", kMinor, kCountryAndLanguage,
          Analytics::APP_FIRST_START_AFTER_MINOR_UPDATE, "+COUNTRY_NAME +APP_LANGUAGE"},
         {"UnknownTypeIsOrdinary", 42, kCountryAndLanguage, Analytics::APP_EVERY_START,
          "+APP_LANGUAGE -COUNTRY_NAME"},
         {"UnrequestedFillersNeverRun",
          1,
          {FillerTypes::AppConfig},
          Analytics::APP_FIRST_START,
          "+APP_BITS -APP_LANGUAGE -COUNTRY_NAME -MONITORS_COUNT -HP_ENABLED"}});

// --- failures -----------------------------------------------------------------------------------

// The HyperPass filler reads the settings when a failure is sent.
TEST_F(StatisticsManagerTest, FailuresInCrashTrackerOrderBeforeTheStart)
{
    convertation->SetHyperPassEnabled(true);
    auto manager = Make({FillerTypes::AppLanguage, FillerTypes::HyperPass},
                        App::ILaunchTypeProcessor::EveryStart, {"session-b", "session-a"});

    const std::string failure =
        "APP_FAILED{APP_LANGUAGE=de,EXCEPTION_MESSAGE=,EXCEPTION_STACKTRACE=,EXCEPTION_TYPE=,"
        "HP_ENABLED=YES,SID=";
    EXPECT_EQ(KtTest::EventsText(tracker->Events()),
              failure + "session-b} " + failure + "session-a} APP_EVERY_START{APP_LANGUAGE=de}");
}

TEST_F(StatisticsManagerTest, FailureOfTheTrackerReachesTheHost)
{
    tracker->hookEvent = Analytics::APP_FAILED;
    tracker->hook = [] { throw std::runtime_error("chain broke"); };
    EXPECT_THROW(Make({}, 2, {"s"}), std::runtime_error);
}

struct NullRow
{
    const char* label;
    bool tracker, launchType, crashTracker, convertation;
    std::vector<FillerTypes> fillers;
    bool throws;
};

using NullCollaboratorTest = StatisticsManagerTable<NullRow>;

TEST_P(NullCollaboratorTest, RequiredCollaboratorsAreChecked)
{
    const NullRow& row = GetParam();
    auto make = [&]
    {
        StatisticsManager manager(
            row.tracker ? tracker : nullptr, nullptr, nullptr, nullptr,
            row.launchType ? std::make_shared<FixedLaunchType>(2) : nullptr,
            row.crashTracker ? std::make_shared<ListCrashTracker>(std::vector<std::string>{})
                             : nullptr,
            row.convertation ? convertation : nullptr, row.fillers);
    };
    if (row.throws)
    {
        EXPECT_THROW(make(), std::logic_error);
        EXPECT_TRUE(tracker->Events().empty());
    }
    else
    {
        EXPECT_NO_THROW(make());
        // Start and exit; a missing look and feel only leaves the language out.
        ASSERT_EQ(tracker->Events().size(), 2u);
        EXPECT_EQ(tracker->Events()[0].params.count("APP_LANGUAGE"), 0u);
    }
}

KT_ROWS(
    NullCollaboratorTest,
    {{"NoTracker", false, true, true, true, {}, true},
     {"NoLaunchType", true, false, true, true, {}, true},
     {"NoCrashTracker", true, true, false, true, {}, true},
     {"NoSettingsWithHyperPass", true, true, true, false, {FillerTypes::HyperPass}, true},
     // Without the look and feel of every row: only the language is left out.
     {"NoSettingsWithoutHyperPass", true, true, true, false, {FillerTypes::AppLanguage}, false}});

// --- exit ---------------------------------------------------------------------------------------

TEST_F(StatisticsManagerTest, ExitEventGoesOutWhileBothHandlersStillTrack)
{
    auto window = MakeWindow();
    auto manager = Make({});
    manager->SetConfig(kGuiDocument);
    manager->AttachQObject(window.get());
    manager->AttachInstances();

    // While the exit event is on its way, both sources must still be hooked.
    tracker->hookEvent = Analytics::APP_EXIT;
    tracker->hook = [&]
    {
        StopButton(window.get())->click();
        scheduler.StartScheduledCapture();
    };
    tracker->Clear();
    manager.reset();
    EXPECT_EQ(tracker->Names(),
              (std::vector<std::string>{Analytics::APP_EXIT, "STOP", "SCHEDULER_START"}));

    // And afterwards nothing is hooked any more.
    tracker->Clear();
    StopButton(window.get())->click();
    scheduler.StartScheduledCapture();
    EXPECT_TRUE(tracker->Events().empty());
}

TEST_F(StatisticsManagerTest, ExitEventFailureIsLoggedNotThrown)
{
    auto manager = Make({});
    tracker->hookEvent = Analytics::APP_EXIT;
    tracker->hook = [] { throw std::runtime_error("chain broke"); };
    KtTest::LogCapture log;
    EXPECT_NO_THROW(manager.reset());
    ASSERT_EQ(log.Messages().size(), 1u);
    EXPECT_EQ(log.Messages()[0], "Can't send the exit event: chain broke");
}

// --- configuration ------------------------------------------------------------------------------

// A second document over kGuiDocument: one that cannot be read is logged and leaves both
// handlers with the first document; a readable one replaces both sections, even one it lacks.
struct SecondDocumentRow
{
    const char* label;
    std::string document;
    bool refused;
    std::vector<std::string> events;  // of a stop button's click and the scheduler's start
};

using SecondDocumentTest = StatisticsManagerTable<SecondDocumentRow>;

TEST_P(SecondDocumentTest, ReplacesTheConfigurationOnlyWhenRead)
{
    auto manager = Make({});
    manager->SetConfig(kGuiDocument);
    KtTest::LogCapture log;
    EXPECT_NO_THROW(manager->SetConfig(GetParam().document));
    const int refusals = GetParam().refused ? 1 : 0;
    EXPECT_EQ(log.Count(google::GLOG_ERROR, "Can't read configuration: "), refusals);
    EXPECT_EQ(log.Lines().size(), static_cast<std::size_t>(refusals));
    EXPECT_EQ(AttachAndPoke(*manager), GetParam().events);
}

KT_ROWS(
    SecondDocumentTest,
    {{"Empty", "", true, {"STOP", "SCHEDULER_START"}},
     {"BadBoolean",
      R"(<ktmstat><gui><widget id="w" idIsRoot="maybe"/></gui></ktmstat>)",
      true,
      {"STOP", "SCHEDULER_START"}},
     {"OnlyInstancesEmptiesTheGuiSection", kInstancesOnlyDocument, false, {"SCHEDULER_START_2"}}});

TEST_F(StatisticsManagerTest, RootAndTargetAttachOnlyTheTarget)
{
    auto manager = Make({});
    manager->SetConfig(kGuiDocument);
    auto window = MakeWindow();
    auto* other = new QPushButton(window.get());
    other->setObjectName("otherButton");

    manager->AttachQObject(window.get(), other);
    tracker->Clear();
    StopButton(window.get())->click();
    EXPECT_TRUE(tracker->Events().empty());

    manager->AttachQObject(window.get(), StopButton(window.get()));
    StopButton(window.get())->click();
    EXPECT_EQ(tracker->Names(), (std::vector<std::string>{"STOP"}));
}

// --- all top-level windows ----------------------------------------------------------------------

// Counts every AttachQObject call, as a host's subclass could.
class CountingManager : public StatisticsManager
{
public:
    using StatisticsManager::AttachQObject;
    using StatisticsManager::StatisticsManager;
    void AttachQObject(QObject* root) override
    {
        attached.push_back(root);
        StatisticsManager::AttachQObject(root);
    }
    std::vector<QObject*> attached;
};

// The pass over the windows' actions is the GUI handler's (AttachReportTest, GuiHandlerActionTest).
TEST_F(StatisticsManagerTest, EveryTopLevelWindowGoesThroughTheVirtualAttach)
{
    CountingManager manager(
        tracker, language, nullptr, nullptr, std::make_shared<FixedLaunchType>(2),
        std::make_shared<ListCrashTracker>(std::vector<std::string>{}), convertation, {});
    manager.SetConfig(kGuiDocument);

    auto first = MakeWindow();
    auto second = MakeWindow();
    manager.AttachAllTopLevelWindows();

    // Every top-level widget went through the virtual attach; ours among them.
    EXPECT_THAT(manager.attached, testing::IsSupersetOf<QObject*>({first.get(), second.get()}));

    tracker->Clear();
    StopButton(first.get())->click();
    StopButton(second.get())->click();
    EXPECT_EQ(tracker->Names(), (std::vector<std::string>{"STOP", "STOP"}));
}

}  // namespace
