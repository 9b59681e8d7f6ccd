#include "Support/InstancesConfig.h"

#include "KT/CaptureInfo.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "KT/Service/SharingManager.h"
#include "KT/SettingsKinds.h"
#include "Module/Editing/IVECommunicationObserver.h"
#include "Tracking/Instances/InstancesHandler.h"

#include "Support/Table.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <utility>

using namespace Velkor;
using InstancesTest::RecordingTracker;
using KT::InstanceRegistry;
using KT::Tracking::InstancesHandler;

namespace
{

// A scheduler that counts how often observers are removed from it.
class CountingScheduler : public KT::Scheduler
{
public:
    void RemoveObserver(KT::ISchedulerObserver* observer) override
    {
        ++removals;
        Scheduler::RemoveObserver(observer);
    }

    int removals = 0;
};

const char* const kSchedulerSection =
    R"(<IScheduler><start event="SCHEDULER_START"><param key="METHOD" value="SCHEDULER"/></start></IScheduler>)";

class InstancesHandlerTest : public testing::Test
{
protected:
    std::unique_ptr<InstancesHandler> MakeHandler(const std::string& section)
    {
        auto handler = std::make_unique<InstancesHandler>(tracker);
        handler->SetConfig(InstancesTest::InstancesFromText(section));
        return handler;
    }

    InstanceRegistry registry;
    std::shared_ptr<RecordingTracker> tracker = std::make_shared<RecordingTracker>();
};

// Attaching twice observes once; each handler detaches its own observer, once.
TEST_F(InstancesHandlerTest, EachHandlerObservesOnceAndDetachesItsOwnObserver)
{
    CountingScheduler scheduler;
    registry.Register<KT::IScheduler>(&scheduler);
    auto first = MakeHandler(kSchedulerSection);
    auto second = MakeHandler(kSchedulerSection);
    first->AttachInstances();
    first->AttachInstances();
    second->AttachInstances();
    EXPECT_EQ(scheduler.ObserverCount(), 2u);
    scheduler.StartScheduledCapture();
    EXPECT_EQ(tracker->Events(), (std::vector<InstancesTest::Event>(
                                     2, {"SCHEDULER_START", {{"METHOD", "SCHEDULER"}}})));
    first.reset();
    EXPECT_EQ(scheduler.removals, 1);
    scheduler.StartScheduledCapture();
    EXPECT_EQ(tracker->Events().size(), 3u);
    second.reset();
    EXPECT_EQ(scheduler.removals, 2);
    EXPECT_EQ(scheduler.ObserverCount(), 0u);
}

// The object is destroyed after its unregistration: touching it at the handler's destruction
// would be a use after free (AddressSanitizer builds).
TEST_F(InstancesHandlerTest, UnregisteredObjectIsNeverDetached)
{
    auto scheduler = std::make_unique<CountingScheduler>();
    CountingScheduler survivor;
    registry.Register<KT::IScheduler>(scheduler.get());
    registry.Register<KT::IScheduler>(&survivor);
    auto handler = MakeHandler(kSchedulerSection);
    handler->AttachInstances();
    registry.Unregister<KT::IScheduler>(scheduler.get());
    EXPECT_EQ(scheduler->removals, 0);
    scheduler.reset();
    handler.reset();
    EXPECT_EQ(survivor.removals, 1);
}

TEST_F(InstancesHandlerTest, ConfigurationChangeDoesNotReachExistingObservers)
{
    KT::Scheduler early;
    KT::Scheduler late;
    registry.Register<KT::IScheduler>(&early);
    auto handler = MakeHandler(kSchedulerSection);
    handler->AttachInstances();
    handler->SetConfig(
        InstancesTest::InstancesFromText(R"(<IScheduler><start event="RENAMED"/></IScheduler>)"));
    registry.Register<KT::IScheduler>(&late);
    early.StartScheduledCapture();
    late.StartScheduledCapture();
    EXPECT_EQ(tracker->Names(), (std::vector<std::string>{"SCHEDULER_START", "RENAMED"}));
}

// Attaching and the handler's end must not reach for a registry that does not exist.
TEST(InstancesHandlerWithoutRegistryTest, AttachesNothingAndFailsNowhere)
{
    ASSERT_EQ(InstanceRegistry::Instance(), nullptr);
    InstancesHandler handler(std::make_shared<RecordingTracker>());
    handler.SetConfig(InstancesTest::InstancesFromText(kSchedulerSection));
    handler.AttachInstances();
}

// `cancel` alone attaches no observer, so its events are lost until another callback is set.
struct CancelRow
{
    const char* label;
    const char* section;
    std::vector<std::string> expected;
};

class CancelOnlyTest : public InstancesHandlerTest, public testing::WithParamInterface<CancelRow>
{
};

TEST_P(CancelOnlyTest, CancelNeedsAnotherCallback)
{
    KT::CaptureInfo capture;
    registry.Register<KT::ICaptureInfo>(&capture);
    auto handler = MakeHandler(GetParam().section);
    handler->AttachInstances();
    capture.Stop(KT::kCaptureCanceled, {}, {});
    capture.Fail();
    EXPECT_EQ(tracker->Names(), GetParam().expected);
}

KT_ROWS(CancelOnlyTest,
        {{"CancelAlone", R"(<ICaptureInfo><cancel event="CANCEL"/></ICaptureInfo>)", {}},
         {"CancelAndError",
          R"(<ICaptureInfo><cancel event="CANCEL"/><error event="ERROR"/></ICaptureInfo>)",
          {"CANCEL", "ERROR"}},
         {"CancelAndStart",
          R"(<ICaptureInfo><start event="START"/><cancel event="CANCEL"/></ICaptureInfo>)",
          {"CANCEL"}},
         {"EmptySection", R"(<ICaptureInfo/>)", {}}});

// Objects registered after AttachInstances(), with the shipped configuration, are observed at
// once, except the settings kinds that only an explicit attach reaches; never twice.
TEST_F(InstancesHandlerTest, LateObjectsObservedAtOnceOrAtTheNextAttach)
{
    KT::Scheduler scheduler;
    KT::HotkeySettings hotkeys;
    KT::CaptureStreamingSettings streaming;
    KT::CaptureFinishActionSettings finish;
    InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::ShippedInstances());
    handler.AttachInstances();
    registry.Register<KT::IScheduler>(&scheduler);
    registry.Register(&hotkeys);
    registry.Register(&streaming);
    registry.Register(&finish);
    Module::Editing::VECommunicationEventPublisher publisher;  // files itself while it lives
    const std::vector<std::pair<bool, std::function<void()>>> late = {
        {true, [&] { scheduler.StartScheduledCapture(); }},
        {true,
         [&] { publisher.Publish(&Module::Editing::IVECommunicationObserver::OnExportRequested); }},
        {true, [&] { hotkeys.Set("startStop", {QString("F9")}); }},
        {false, [&] { streaming.Set("serverName", {QString("eu")}); }},
        {false, [&] { finish.Set("finishAction", {2}); }}};
    for (const bool attachedAgain : {false, true})
    {
        for (std::size_t i = 0; i < late.size(); ++i)
        {
            tracker->Clear();
            late[i].second();
            EXPECT_EQ(tracker->Events().size(), attachedAgain || late[i].first ? 1u : 0u) << i;
        }
        handler.AttachInstances();
    }
}

TEST_F(InstancesHandlerTest, SharingIsObservedThroughItsSignal)
{
    KT::Service::Sharing::SharingManager manager(4);
    registry.Register<KT::Service::Sharing::AbstractSharingManager>(&manager);
    {
        InstancesHandler handler(tracker);
        handler.SetConfig(InstancesTest::ShippedInstances());
        handler.AttachInstances();
        manager.Finish(App::ioPath("/home/u/Videos/Clip.MP4"), true);
        manager.Finish(App::ioPath("/home/u/notes"), false);
    }
    manager.Finish(App::ioPath("/home/u/after.mp4"), true);
    const std::vector<InstancesTest::Event> expected = {
        {"SHARING_FINISH", {{"METHOD", "YOUTUBE"}, {"RESULT", "SUCCESS"}, {"TYPE", ".mp4"}}},
        {"SHARING_FINISH", {{"METHOD", "YOUTUBE"}, {"RESULT", "FAILURE"}, {"TYPE", ""}}},
    };
    EXPECT_EQ(tracker->Events(), expected);
}

}  // namespace
