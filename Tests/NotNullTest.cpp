// A stage or service that needs a collaborator refuses to exist without it, with NotNull's error.

#include "Tracking/Events/NotNull_p.h"
#include "Tracking/Tracking.h"

#include "Support/RecordingTracker.h"
#include "Support/Table.h"

#include "Analytics/ApplicationTrackerFactory.h"
#include "App/CustomizationManager.h"
#include "App/SessionId.h"
#include "App/ioPath.h"
#include "KT/ProductSettings.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

using namespace Velkor::KT::Tracking;
using Velkor::Analytics::ScopedApplicationTrackerCreator;

namespace
{

struct NullRow
{
    const char* label;
    std::function<void()> construct;
};

using NullCollaboratorTest = KtTest::Table<NullRow>;

TEST_P(NullCollaboratorTest, ThrowsNotNullsLogicError)
{
    try
    {
        GetParam().construct();
        FAIL() << "constructed without a collaborator";
    }
    catch (const std::logic_error& error)
    {
        EXPECT_STREQ(error.what(), "NotNull can not initialized by null");
    }
}

KT_ROWS(NullCollaboratorTest,
        {{"EmptyPointer", [] { NotNull<IKtTracker> holder{std::shared_ptr<IKtTracker>()}; }},
         {"FilterSuccessor", [] { FilterKtTracker filter{nullptr}; }},
         {"GuiHandlerTracker", [] { GuiHandler handler{nullptr}; }},
         {"AggregatorSuccessor", [] { AggregatorKtTracker aggregator{nullptr}; }},
         {"InstancesHandlerTracker", [] { InstancesHandler handler{nullptr}; }},
         // Refused before the analytics tracker is asked for.
         {"ForwardProductSettings", []
          {
              ScopedApplicationTrackerCreator creator(
                  []
                  {
                      ADD_FAILURE() << "the analytics factory was asked";
                      return Velkor::Analytics::RefPtr<Velkor::Analytics::IApplicationTracker>();
                  });
              ForwardKtTracker tracker(
                  std::make_shared<Velkor::App::CustomizationManager>("recorder", ""), nullptr,
                  std::make_shared<Velkor::App::SessionId>("S1"), Velkor::App::ioPath("/d"), {});
          }}});

// Releasing the head of a chain releases every stage down to the endpoint.
TEST(ChainTest, ReleasingTheHeadReleasesTheChain)
{
    auto endpoint = std::make_shared<KtTest::RecordingTracker>();
    const std::weak_ptr<KtTest::RecordingTracker> endpointWatch = endpoint;
    auto middle = std::make_shared<AggregatorKtTracker>(endpoint);
    const std::weak_ptr<AggregatorKtTracker> middleWatch = middle;
    auto head = std::make_shared<FilterKtTracker>(middle);
    endpoint.reset();
    middle.reset();
    head->Track(Event{"A", {}});
    EXPECT_EQ(endpointWatch.lock()->Names(), std::vector<std::string>{"A"});
    head.reset();
    EXPECT_TRUE(middleWatch.expired());
    EXPECT_TRUE(endpointWatch.expired());
}

}  // namespace
