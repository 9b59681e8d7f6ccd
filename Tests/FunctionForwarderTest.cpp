// The host utility the viewer relies on. Its threads are exercised through the viewer
// (DebugKtTrackerTest.ConcurrentTrackingLosesAndDoublesNothing).

#include "Util/FunctionForwarder.h"

#include "Support/QtPump.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using Velkor::Util::FunctionForwarder;

namespace
{

TEST(FunctionForwarderTest, RunsInCallOrderIncludingFunctionsQueuedWhileRunning)
{
    FunctionForwarder forwarder;
    std::vector<int> order;
    forwarder.Forward(
        [&]
        {
            order.push_back(1);
            forwarder.Forward([&] { order.push_back(4); });
        });
    forwarder.Forward([&] { order.push_back(2); });
    forwarder.Forward([&] { order.push_back(3); });
    EXPECT_TRUE(order.empty()) << "nothing runs before the event loop";
    KtTest::Pump();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
    KtTest::Pump();
    EXPECT_EQ(order.size(), 4u) << "each function runs once";
}

TEST(FunctionForwarderTest, DestroyingDiscardsWhatIsStillQueued)
{
    auto ran = std::make_shared<int>(0);
    {
        FunctionForwarder forwarder;
        forwarder.Forward([ran] { ++*ran; });
    }
    KtTest::Pump();
    EXPECT_EQ(*ran, 0);
    EXPECT_EQ(ran.use_count(), 1) << "the discarded function must be released";
}

}  // namespace
