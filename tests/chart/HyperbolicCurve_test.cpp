#include "chart/HyperbolicCurve.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace Drawing;

class HyperbolicCurveTest : public testing::Test {
protected:
    void Roll(std::int32_t core, std::int32_t max) {
        zentrova_.ParamUpdate(ParamDefines::CoreDiameter, core);
        zentrova_.ParamUpdate(ParamDefines::MaxDiameter, max);
    }

    std::array<Point, 100> Points(float coreHeight = 240, float rollHeight = 2160) const {
        const Line coreRail{{"Line10V"}, ControlId::FrameGraph, 4920, coreHeight, 6840, coreHeight};
        const Line rollRail{{"Line0V"}, ControlId::FrameGraph, 0, rollHeight, 1920, rollHeight};
        return HyperbolicCurve::Points(zentrova_, coreRail, rollRail);
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
};

TEST_F(HyperbolicCurveTest, RunsFromTheFarEndInEqualStepsAndJumpsToTheLeftEdge) {
    Roll(300, 2400);
    const auto points = Points();
    for (std::size_t i = 0; i <= 98; ++i) {
        EXPECT_EQ(points[i].x, 4920 - 30 * static_cast<float>(i)) << i;
    }
    EXPECT_EQ(points[98].x, 1980);
    EXPECT_EQ(points[99].x, 0);
}

TEST_F(HyperbolicCurveTest, FallsAsCoreByDiameter) {
    Roll(100, 10100); // point i is the diameter i + 1 at a core of 1
    const auto points = Points();
    EXPECT_EQ(points[0].y, 240);
    EXPECT_EQ(points[1].y, 1200);
    EXPECT_EQ(points[3].y, 1680);
    EXPECT_EQ(points[4].y, 1776);
    EXPECT_EQ(points[7].y, 1920);
    EXPECT_EQ(points[9].y, 1968);
}

// 240 + 1920 x (1 - 3 / (0.21 i + 3)), each step rounded to single precision. In double precision 28 of
// these would end in another digit.
const float heights[98] = {
    365.607483F, 475.78949F,  573.223206F, 660,         737.777832F, 807.887451F, 871.409363F, 929.230713F,
    982.085815F, 1030.58813F, 1075.25427F, 1116.52173F, 1154.7644F,  1190.30298F, 1223.41455F, 1254.33948F,
    1283.2876F,  1310.4425F,  1335.9657F,  1360,        1382.672F,   1404.09448F, 1424.3678F,  1443.58203F,
    1461.81812F, 1479.14893F, 1495.64014F, 1511.35132F, 1526.33667F, 1540.64502F, 1554.32178F, 1567.40735F,
    1579.93958F, 1591.95264F, 1603.47827F, 1614.54541F, 1625.18103F, 1635.40979F, 1645.25464F, 1654.73682F,
    1663.87598F, 1672.69031F, 1681.19702F, 1689.41174F, 1697.34937F, 1705.02368F, 1712.44751F, 1719.63306F,
    1726.59143F, 1733.33337F, 1739.86877F, 1746.20691F, 1752.35669F, 1758.32629F, 1764.12366F, 1769.75598F,
    1775.23047F, 1780.55322F, 1785.73108F, 1790.76917F, 1795.67371F, 1800.44946F, 1805.10168F, 1809.63501F,
    1814.05408F, 1818.36292F, 1822.56592F, 1826.66663F, 1830.66895F, 1834.57629F, 1838.39197F, 1842.11914F,
    1845.76099F, 1849.32031F, 1852.80005F, 1856.20251F, 1859.53052F, 1862.78638F, 1865.97241F, 1869.09094F,
    1872.14392F, 1875.13354F, 1878.06165F, 1880.93018F, 1883.74097F, 1886.49573F, 1889.19604F, 1891.84351F,
    1894.43982F, 1896.98633F, 1899.48438F, 1901.93555F, 1904.34082F, 1906.7019F,  1909.01965F, 1911.29541F,
    1913.53015F, 1915.72522F};

TEST_F(HyperbolicCurveTest, IsWorkedOutInSinglePrecision) {
    Roll(300, 2400);
    const auto points = Points();
    for (std::size_t i = 1; i <= 98; ++i) {
        EXPECT_EQ(points[i].y, heights[i - 1]) << i;
    }
}

TEST_F(HyperbolicCurveTest, EndsFlatAtTheHeightOfTheLastPointButOne) {
    Roll(300, 2400);
    EXPECT_EQ(Points()[99].y, 1915.72522F);
}

TEST_F(HyperbolicCurveTest, TurnsWithTheRails) {
    Roll(300, 2400);
    const auto points = Points(2160, 240);
    EXPECT_EQ(points[0].y, 2160);
    EXPECT_EQ(points[1].y, 2034.39246F);
    EXPECT_EQ(points[10].y, 1369.41187F);
    EXPECT_EQ(points[50].y, 666.666626F);
    EXPECT_EQ(points[98].y, 484.274841F);
    EXPECT_EQ(points[99].y, 484.274841F);
}

TEST_F(HyperbolicCurveTest, StaysOnTheCoresRailForARollThatIsOnlyCore) {
    Roll(300, 300);
    for (const Point &point : Points()) {
        EXPECT_EQ(point.y, 240);
    }
}

TEST_F(HyperbolicCurveTest, IsClippedAtTheCoresRailForARollBelowItsCore) {
    Roll(300, 200);
    EXPECT_EQ(Points()[50].y, 240);
}

TEST_F(HyperbolicCurveTest, DropsToTheOtherRailForARollWithoutACore) {
    Roll(0, 2400);
    const auto points = Points();
    EXPECT_EQ(points[0].y, 240);
    EXPECT_EQ(points[1].y, 2160);
    EXPECT_EQ(points[98].y, 2160);
}

TEST_F(HyperbolicCurveTest, FaultsOnARollWithoutADiameter) {
    Roll(0, 0);
    try {
        Points();
        ADD_FAILURE() << "no fault";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::DivisionByZero);
    }
}

} // namespace ztv
