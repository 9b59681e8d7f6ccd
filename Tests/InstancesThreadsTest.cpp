#include "Support/InstancesConfig.h"

#include "KT/CaptureInfo.h"
#include "KT/InstanceRegistry.h"
#include "KT/SettingsKinds.h"
#include "Tracking/Instances/InstancesHandler.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <thread>
#include <vector>

using namespace Velkor;
using InstancesTest::Event;

namespace
{

// Services notify on their own threads: every notification gives exactly one complete event,
// and the recording type written by starts is read safely by the other events.
TEST(InstancesThreadsTest, ConcurrentNotificationsLoseAndDoubleNothing)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 300;
    KT::InstanceRegistry registry;
    KT::HotkeySettings hotkeys;
    KT::CaptureInfo capture;
    registry.Register(&hotkeys);
    registry.Register<KT::ICaptureInfo>(&capture);
    auto tracker = std::make_shared<InstancesTest::RecordingTracker>();
    KT::Tracking::InstancesHandler handler(tracker);
    handler.SetConfig(InstancesTest::ShippedInstances());
    handler.AttachInstances();

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
    {
        threads.emplace_back(
            [&, t]
            {
                for (int i = 0; i < kRounds; ++i)
                {
                    hotkeys.Set("pauseResume", {QString("F%1").arg(t)});
                    if (t % 2 == 0)
                    {
                        capture.Start(QRect(0, 0, 10, 10), {}, {}, {});
                    }
                    else
                    {
                        capture.Pause(0);
                    }
                }
            });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    std::map<std::string, int> counts;
    std::map<std::string, int> hotkeysByValue;
    for (const Event& event : tracker->Events())
    {
        ++counts[event.name];
        if (event.name == "PREF_CHANGE")
        {
            ++hotkeysByValue[event.params.at("HOTKEY_PAUSE_RESUME")];
        }
        if (event.name == "CAPTURE_PAUSE")
        {
            const std::string type = event.params.at("CAPTURE_RECORDING_TYPE");
            EXPECT_TRUE(type.empty() || type == "CAPTURING") << type;
        }
    }
    EXPECT_EQ(counts["PREF_CHANGE"], kThreads * kRounds);
    EXPECT_EQ(counts["CAPTURE_START"], kThreads / 2 * kRounds);
    EXPECT_EQ(counts["CAPTURE_PAUSE"], kThreads / 2 * kRounds);
    for (int t = 0; t < kThreads; ++t)
    {
        EXPECT_EQ(hotkeysByValue["F" + std::to_string(t)], kRounds);
    }
}

}  // namespace
