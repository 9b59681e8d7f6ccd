#include "Tracking/NotNull.h"
#include "Tracking/Tracking.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

using Velkor::KT::Tracking::Event;
using Velkor::KT::Tracking::IKtTracker;
using Velkor::KT::Tracking::IKtTrackingEndpoint;
using Velkor::KT::Tracking::NotNull;

namespace
{

class CountingEndpoint : public IKtTrackingEndpoint
{
public:
    void Track(const Event&) override { ++count; }
    int count = 0;
};

// A stage that must not exist without its successor, the way the rule stages keep theirs.
class Stage : public IKtTracker
{
public:
    explicit Stage(const std::shared_ptr<IKtTracker>& next) : m_next(next) {}
    void Track(const Event& event) override { m_next->Track(event); }

private:
    NotNull<IKtTracker> m_next;
};

std::string ErrorText(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const std::logic_error& error)
    {
        return error.what();
    }
    return "(nothing thrown)";
}

TEST(NotNullTest, EmptyPointerThrowsLogicErrorWithItsMessage)
{
    EXPECT_EQ(ErrorText([] { NotNull<IKtTracker> holder{std::shared_ptr<IKtTracker>()}; }),
              "NotNull can not initialized by null");
    EXPECT_EQ(ErrorText([] { Stage stage{nullptr}; }), "NotNull can not initialized by null");
}

TEST(NotNullTest, HolderSharesOwnershipAndForwards)
{
    auto endpoint = std::make_shared<CountingEndpoint>();
    {
        auto stage = std::make_shared<Stage>(endpoint);
        stage->Track(Event{"X", {}});
        EXPECT_EQ(endpoint.use_count(), 2);
    }
    EXPECT_EQ(endpoint.use_count(), 1);
    EXPECT_EQ(endpoint->count, 1);
}

TEST(NotNullTest, CopyAndMoveLeaveBothHoldersSet)
{
    auto endpoint = std::make_shared<CountingEndpoint>();
    NotNull<IKtTracker> first{endpoint};
    NotNull<IKtTracker> second = first;
    NotNull<IKtTracker> third = std::move(first);
    EXPECT_EQ(first.get(), endpoint.get());  // NOLINT(bugprone-use-after-move): copy-only type
    EXPECT_EQ(second.get(), endpoint.get());
    EXPECT_EQ(third.get(), endpoint.get());
}

// Releasing the head of a chain releases every stage down to the endpoint.
TEST(ChainTest, ReleasingTheHeadReleasesTheChain)
{
    std::weak_ptr<CountingEndpoint> endpointWatch;
    std::weak_ptr<Stage> middleWatch;
    {
        auto endpoint = std::make_shared<CountingEndpoint>();
        endpointWatch = endpoint;
        auto middle = std::make_shared<Stage>(endpoint);
        middleWatch = middle;
        std::shared_ptr<IKtTracker> head = std::make_shared<Stage>(middle);
        head->Track(Event{"A", {}});
        EXPECT_EQ(endpoint->count, 1);
    }
    EXPECT_TRUE(middleWatch.expired());
    EXPECT_TRUE(endpointWatch.expired());
}

TEST(ChainTest, EndpointIsATracker)
{
    std::shared_ptr<IKtTrackingEndpoint> endpoint = std::make_shared<CountingEndpoint>();
    std::shared_ptr<IKtTracker> tracker = endpoint;
    EXPECT_NE(dynamic_cast<IKtTrackingEndpoint*>(tracker.get()), nullptr);
}

}  // namespace
