#include "sim/Relay.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

TEST(SimRelay, ThatClosesNearKeepsItsStateBetweenTheThresholds) {
    Relay relay;
    EXPECT_FALSE(relay.Update(5500, 5000, 6000));
    EXPECT_TRUE(relay.Update(5000, 5000, 6000));
    EXPECT_TRUE(relay.Update(5999, 5000, 6000));
    EXPECT_FALSE(relay.Update(6000, 5000, 6000));
    EXPECT_FALSE(relay.Update(5001, 5000, 6000));
}

TEST(SimRelay, ThatClosesFarKeepsItsStateBetweenTheThresholds) {
    Relay relay;
    EXPECT_FALSE(relay.Update(8500, 9000, 8000));
    EXPECT_TRUE(relay.Update(9000, 9000, 8000));
    EXPECT_TRUE(relay.Update(8001, 9000, 8000));
    EXPECT_FALSE(relay.Update(8000, 9000, 8000));
    EXPECT_FALSE(relay.Update(8999, 9000, 8000));
}

TEST(SimRelay, WithEqualThresholdsClosesFar) {
    Relay relay;
    EXPECT_TRUE(relay.Update(7000, 7000, 7000));
    EXPECT_FALSE(relay.Update(6999, 7000, 7000));
}

} // namespace
} // namespace sim
