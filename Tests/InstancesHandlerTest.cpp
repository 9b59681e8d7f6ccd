#include "Support/InstancesConfig.h"

#include "KT/CaptureInfo.h"
#include "KT/InstanceRegistry.h"
#include "KT/Scheduler.h"
#include "KT/Service/SharingManager.h"
#include "KT/SettingsKinds.h"
#include "Module/Editing/IVECommunicationObserver.h"
#include "Tracking/InstancesHandler.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>

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

TEST_F(InstancesHandlerTest, NullTrackerIsRefused)
{
    EXPECT_THROW(InstancesHandler(nullptr), std::logic_error);
}

TEST_F(InstancesHandlerTest, AttachingTwiceObservesOnce)
{
    CountingScheduler scheduler;
    registry.Register<KT::IScheduler>(&scheduler);
    auto handler = MakeHandler(kSchedulerSection);
    handler->AttachInstances();
    handler->AttachInstances();
    EXPECT_EQ(scheduler.ObserverCount(), 1u);
    scheduler.StartScheduledCapture();
    ASSERT_EQ(tracker->Events().size(), 1u);
    EXPECT_EQ(tracker->Events()[0],
              (InstancesTest::Event{"SCHEDULER_START", {{"METHOD", "SCHEDULER"}}}));
    handler.reset();
    EXPECT_EQ(scheduler.removals, 1);
    EXPECT_EQ(scheduler.ObserverCount(), 0u);
}

TEST_F(InstancesHandlerTest, EachHandlerDetachesItsOwnObserverOnce)
{
    CountingScheduler scheduler;
    registry.Register<KT::IScheduler>(&scheduler);
    auto first = MakeHandler(kSchedulerSection);
    auto second = MakeHandler(kSchedulerSection);
    first->AttachInstances();
    second->AttachInstances();
    scheduler.StartScheduledCapture();
    EXPECT_EQ(tracker->Events().size(), 2u);
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
    registry.Register<KT::IScheduler>(&early);
    auto handler = MakeHandler(kSchedulerSection);
    handler->AttachInstances();
    handler->SetConfig(
        InstancesTest::InstancesFromText(R"(<IScheduler><start event="RENAMED"/></IScheduler>)"));
    KT::Scheduler late;
    registry.Register<KT::IScheduler>(&late);
    early.StartScheduledCapture();
    late.StartScheduledCapture();
    EXPECT_EQ(tracker->Names(), (std::vector<std::string>{"SCHEDULER_START", "RENAMED"}));
    registry.Unregister<KT::IScheduler>(&late);
    registry.Unregister<KT::IScheduler>(&early);
}

TEST(InstancesHandlerWithoutRegistryTest, AttachesNothingAndFailsNowhere)
{
    ASSERT_EQ(InstanceRegistry::Instance(), nullptr);
    auto tracker = std::make_shared<RecordingTracker>();
    KT::Scheduler scheduler;
    {
        InstancesHandler handler(tracker);
        handler.SetConfig(InstancesTest::InstancesFromText(kSchedulerSection));
        handler.AttachInstances();
    }
    EXPECT_EQ(scheduler.ObserverCount(), 0u);
}

// `cancel` alone attaches no observer, so its events are lost until another callback is set.
struct CancelRow
{
    const char* label;
    const char* section;
    std::vector<std::string> expected;
};

void PrintTo(const CancelRow& row, std::ostream* out)
{
    *out << row.label;
}

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
    registry.Unregister<KT::ICaptureInfo>(&capture);
}

INSTANTIATE_TEST_SUITE_P(
    Sections, CancelOnlyTest,
    testing::Values(
        CancelRow{"CancelAlone", R"(<ICaptureInfo><cancel event="CANCEL"/></ICaptureInfo>)", {}},
        CancelRow{"CancelAndError",
                  R"(<ICaptureInfo><cancel event="CANCEL"/><error event="ERROR"/></ICaptureInfo>)",
                  {"CANCEL", "ERROR"}},
        CancelRow{"CancelAndStart",
                  R"(<ICaptureInfo><start event="START"/><cancel event="CANCEL"/></ICaptureInfo>)",
                  {"CANCEL"}},
        CancelRow{"EmptySection", R"(<ICaptureInfo/>)", {}}),
    [](const testing::TestParamInfo<CancelRow>& info) { return info.param.label; });

// Objects registered after AttachInstances(), with the shipped configuration: observed at once,
// except the two settings kinds that only an explicit attach reaches.
struct LateRow
{
    const char* label;
    // Registers a new object, returns a function that makes it notify once, and unregisters it
    // when the returned holder dies.
    std::function<std::shared_ptr<std::function<void()>>(InstanceRegistry&)> make;
    bool observedAtOnce;
};

void PrintTo(const LateRow& row, std::ostream* out)
{
    *out << row.label;
}

template <class Interface, class Object, class Notify>
std::shared_ptr<std::function<void()>> Registered(InstanceRegistry& registry, Notify notify)
{
    auto object = std::make_shared<Object>();
    registry.Register<Interface>(object.get());
    auto trigger = std::shared_ptr<std::function<void()>>(
        new std::function<void()>([object, notify] { notify(*object); }),
        [object, &registry](std::function<void()>* function)
        {
            registry.Unregister<Interface>(object.get());
            delete function;
        });
    return trigger;
}

template <class Settings>
LateRow SettingsRow(const char* label, const char* field, QVariantList value, bool atOnce)
{
    return LateRow{label,
                   [field, value](InstanceRegistry& registry)
                   {
                       return Registered<Settings, Settings>(
                           registry, [field, value](Settings& s) { s.Set(field, value); });
                   },
                   atOnce};
}

class LateRegistrationTest : public InstancesHandlerTest,
                             public testing::WithParamInterface<LateRow>
{
};

TEST_P(LateRegistrationTest, ObservedAtOnceOrAtNextAttach)
{
    InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::ShippedInstances());
    handler.AttachInstances();
    const auto trigger = GetParam().make(registry);
    (*trigger)();
    EXPECT_EQ(tracker->Events().size(), GetParam().observedAtOnce ? 1u : 0u);
    handler.AttachInstances();
    tracker->Clear();
    (*trigger)();
    EXPECT_EQ(tracker->Events().size(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, LateRegistrationTest,
    testing::Values(
        LateRow{"Scheduler",
                [](InstanceRegistry& r)
                {
                    return Registered<KT::IScheduler, KT::Scheduler>(
                        r, [](KT::Scheduler& s) { s.StartScheduledCapture(); });
                },
                true},
        LateRow{"VideoEditorPublisher",
                [](InstanceRegistry&)
                {
                    // Files itself in the registry while it lives.
                    auto publisher =
                        std::make_shared<Module::Editing::VECommunicationEventPublisher>();
                    return std::make_shared<std::function<void()>>(
                        [publisher] {
                            publisher->Publish(
                                &Module::Editing::IVECommunicationObserver::OnExportRequested);
                        });
                },
                true},
        SettingsRow<KT::HotkeySettings>("Hotkeys", "startStop", {QString("F9")}, true),
        SettingsRow<KT::CaptureCursorSettings>("Cursor", "volumeClick", {4}, true),
        SettingsRow<KT::CaptureStreamingSettings>("Streaming", "serverName", {QString("eu")},
                                                  false),
        SettingsRow<KT::CaptureFinishActionSettings>("FinishAction", "finishAction", {2}, false)),
    [](const testing::TestParamInfo<LateRow>& info) { return info.param.label; });

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
    registry.Unregister<KT::Service::Sharing::AbstractSharingManager>(&manager);
}

}  // namespace
