#include "firmware/TimeLeft.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(TimeLeftTest, FollowsThePaceSoFar) {
    EXPECT_EQ(TimeLeft(10000, 0.5), QStringLiteral("10 s left"));
    EXPECT_EQ(TimeLeft(1000, 1.0 / 60), QStringLiteral("59 s left"));
    EXPECT_EQ(TimeLeft(10000, 0.1), QStringLiteral("1 min 30 s left"));
    EXPECT_EQ(TimeLeft(1000, 1.0 / 61), QStringLiteral("1 min 0 s left"));
    EXPECT_EQ(TimeLeft(50000, 1), QStringLiteral("0 s left"));
    EXPECT_EQ(TimeLeft(10000, 0.999), QStringLiteral("1 s left")); // reaches 0 only at the end
}

TEST(TimeLeftTest, IsNotGuessedFromNothing) {
    EXPECT_EQ(TimeLeft(999, 0.5), QString());
    EXPECT_EQ(TimeLeft(5000, 0), QString());
}

} // namespace ztv
