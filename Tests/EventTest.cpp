#include "Tracking/Tracking.h"

#include <gtest/gtest.h>

using Velkor::KT::Tracking::Event;

namespace
{

// Every test that compares events relies on equality seeing both the name and every property.
TEST(EventTest, EqualOnlyWithTheSameNameAndProperties)
{
    const Event event{"A", {{"K", "1"}}};
    EXPECT_EQ(event, (Event{"A", {{"K", "1"}}}));
    EXPECT_NE(event, (Event{"B", {{"K", "1"}}}));
    EXPECT_NE(event, (Event{"A", {{"K", "2"}}}));
    EXPECT_NE(event, (Event{"A", {{"K", "1"}, {"L", ""}}}));
    EXPECT_NE(event, (Event{"A", {}}));
}

}  // namespace
