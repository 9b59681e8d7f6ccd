#include "Util/FunctionForwarder.h"

#include "Support/QtPump.h"

#include <gtest/gtest.h>

#include <QThread>

#include <atomic>
#include <memory>
#include <thread>
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

TEST(FunctionForwarderTest, RunsOnTheOwningThreadWhateverThreadQueues)
{
    FunctionForwarder forwarder;
    const auto owner = QThread::currentThread();
    constexpr int kThreads = 4;
    constexpr int kPerThread = 2000;
    std::vector<std::vector<int>> seen(kThreads);
    std::atomic<int> wrongThread{0};
    int total = 0;

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
    {
        threads.emplace_back(
            [&, t]
            {
                for (int i = 0; i < kPerThread; ++i)
                {
                    forwarder.Forward(
                        [&, t, i]
                        {
                            if (QThread::currentThread() != owner)
                            {
                                ++wrongThread;
                            }
                            seen[t].push_back(i);
                            ++total;
                        });
                }
            });
    }
    for (auto& thread : threads)
    {
        thread.join();
    }
    ASSERT_TRUE(KtTest::PumpUntil([&] { return total == kThreads * kPerThread; }));
    EXPECT_EQ(wrongThread.load(), 0);
    for (int t = 0; t < kThreads; ++t)
    {
        ASSERT_EQ(seen[t].size(), static_cast<size_t>(kPerThread)) << "thread " << t;
        for (int i = 0; i < kPerThread; ++i)
        {
            ASSERT_EQ(seen[t][i], i) << "thread " << t << " out of order";
        }
    }
}

}  // namespace
