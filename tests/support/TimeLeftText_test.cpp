#include "support/TimeLeftText.h"

#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

TEST(TimeLeftTextTest, CountsSecondsAndNeverNoneTooEarly) {
    EXPECT_EQ(TimeLeftText(0), QStringLiteral("0 s left"));
    EXPECT_EQ(TimeLeftText(1), QStringLiteral("1 s left"));
    EXPECT_EQ(TimeLeftText(1000), QStringLiteral("1 s left"));
    EXPECT_EQ(TimeLeftText(1001), QStringLiteral("2 s left"));
    EXPECT_EQ(TimeLeftText(59000), QStringLiteral("59 s left"));
}

TEST(TimeLeftTextTest, CountsMinutesFromOneOn) {
    EXPECT_EQ(TimeLeftText(59001), QStringLiteral("1 min 0 s left"));
    EXPECT_EQ(TimeLeftText(90000), QStringLiteral("1 min 30 s left"));
    EXPECT_EQ(TimeLeftText(3600000), QStringLiteral("60 min 0 s left"));
}

} // namespace ztv
