#include "widgets/PageScale.h"

#include "tests/helpers/Printers.h"
#include "widgets/Controls.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace ztv {

TEST(PageScaleTest, TheSmallerOfWidthAndHeightDecides) {
    EXPECT_EQ(PageScale::Fitting({630, 389}).Factor(), 1);
    EXPECT_EQ(PageScale::Fitting({1260, 389}).Factor(), 1);
    EXPECT_EQ(PageScale::Fitting({630, 778}).Factor(), 1);
    EXPECT_EQ(PageScale::Fitting({1260, 2000}).Factor(), 2);
    EXPECT_EQ(PageScale::Fitting({5000, 778}).Factor(), 2);
    EXPECT_DOUBLE_EQ(PageScale::Fitting({850, 493}).Factor(), 493 / 389.0);
}

TEST(PageScaleTest, TheFactorIsFromSevenTenthsToThree) {
    EXPECT_EQ(PageScale::Fitting({10, 10}).Factor(), 0.7);
    EXPECT_EQ(PageScale::Fitting({0, 389}).Factor(), 0.7);
    EXPECT_EQ(PageScale::Fitting({5000, 5000}).Factor(), 3);
    EXPECT_EQ(PageScale(0.1).Factor(), 0.7);
    EXPECT_EQ(PageScale(9).Factor(), 3);
}

TEST(PageScaleTest, ConvertsBothWays) {
    for (const double factor : {0.7, 1.0, 1.44, 2.0, 3.0}) {
        const PageScale scale(factor);
        EXPECT_DOUBLE_EQ(scale.ToPixels(1500), 100 * factor);
        for (const double pixels : {0.0, 1.0, 33.5, -7.0}) {
            EXPECT_NEAR(scale.ToPixels(scale.ToTwips(pixels)), pixels, 1e-9);
        }
    }
    EXPECT_EQ(PageScale(2).Rounded(22), 3);
    EXPECT_EQ(PageScale(2).Pixels(5), 10);
    EXPECT_EQ(PageScale(1.5).Pixels(QSize(40, 24)), QSize(60, 36));
}

TEST(PageScaleTest, FactorOneIsThatOfTheOtherForms) {
    for (int left = 0; left < 40; ++left) {
        EXPECT_EQ(PageScale().FromTwips(left, 7 + left, 735, 285),
                  Controls::FromTwips(left, 7 + left, 735, 285));
    }
    EXPECT_EQ(PageScale().FromTwips(240, 345, 735, 285), QRect(16, 23, 49, 19));
}

TEST(PageScaleTest, NeighboursMeetAtAnyFactor) {
    for (double factor = 0.7; factor < 3; factor += 0.013) {
        const PageScale scale(factor);
        const QRect first = scale.FromTwips(100, 50, 735, 285);
        const QRect right = scale.FromTwips(835, 50, 400, 285);
        const QRect below = scale.FromTwips(100, 335, 735, 100);
        EXPECT_EQ(first.right() + 1, right.left());
        EXPECT_EQ(first.bottom() + 1, below.top());
    }
}

TEST(PageScaleTest, AFontGrowsByTheFactorAndStaysAsItIsAtOne) {
    const QFont font = QGuiApplication::font();
    const int pixels = QFontInfo(font).pixelSize();
    EXPECT_EQ(PageScale().Font(font), font);
    EXPECT_EQ(QFontInfo(PageScale(2).Font(font)).pixelSize(), 2 * pixels);
    EXPECT_LT(QFontInfo(PageScale(0.7).Font(font)).pixelSize(), pixels);
    QFont bold = font;
    bold.setBold(true);
    EXPECT_TRUE(PageScale(2).Font(bold).bold());
}

TEST(PageScaleTest, CentresTheContent) {
    EXPECT_EQ(PageScale().Corner({630, 389}), QPoint(0, 0));
    EXPECT_EQ(PageScale(2).Corner({1300, 778}), QPoint(20, 0));
    EXPECT_EQ(PageScale(2).Corner({1260, 798}), QPoint(0, 10));
    EXPECT_EQ(PageScale(0.7).Corner({10, 10}), QPoint(0, 0));
}

} // namespace ztv
