#include "tabs/DistanceReading.h"

#include "model/ParamDefines.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

class DistanceReadingTest : public testing::Test {
protected:
    DistanceReading At(std::int32_t distance) {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, distance);
        return ReadDistance(zentrova_, 600, 42000);
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(DistanceReadingTest, ShowsTheFormattedDistance) {
    EXPECT_EQ(At(42000).caption, QStringLiteral("420.00\""));
    EXPECT_EQ(At(106).caption, QStringLiteral("1.06\""));
}

TEST_F(DistanceReadingTest, MovesTheBarBetweenItsEndsInclusive) {
    EXPECT_EQ(At(600).barValue, 600);
    EXPECT_EQ(At(42000).barValue, 42000);
    EXPECT_EQ(At(599).barValue, std::nullopt);
    EXPECT_EQ(At(42001).barValue, std::nullopt);
}

TEST(DistanceReadingPattern, FormatsATextThatIsAPlainNumber) {
    const ChangedPresets presets("UPDATE Parameters SET Units = 0, DecimalPlaces = 3 WHERE rowid = 1 + 32");
    ClassZentrova zentrova(presets.Folder());
    zentrova.ParamUpdate(ParamDefines::ActualDistance, 12345);
    EXPECT_EQ(ReadDistance(zentrova, 600, 42000).caption, QStringLiteral("12.35"));
}

} // namespace ztv
