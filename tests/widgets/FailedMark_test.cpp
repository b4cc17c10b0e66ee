#include "widgets/FailedMark.h"

#include "tests/helpers/Wait.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

namespace ztv {

class FailedMarkTest : public testing::Test {
protected:
    FailedMarkTest() {
        box_.setAccessibleDescription(QStringLiteral("Near"));
        box_.resize(80, 24);
        box_.show();
    }

    QLineEdit box_;
};

TEST_F(FailedMarkTest, CoversTheControlIsReadOutAndGoesWithoutATrace) {
    const QImage before = box_.grab().toImage();
    FailedMark::Show(box_, false);
    EXPECT_EQ(box_.findChild<FailedMark *>(), nullptr);
    FailedMark::Show(box_, true);
    FailedMark::Show(box_, true);
    ASSERT_EQ(box_.findChildren<FailedMark *>().size(), 1);
    EXPECT_EQ(box_.accessibleDescription(), QStringLiteral("The sensor hasn't confirmed this value"));
    EXPECT_NE(box_.grab().toImage(), before);
    box_.resize(160, 48);
    EXPECT_EQ(box_.findChild<FailedMark *>()->geometry(), box_.rect());
    box_.resize(80, 24);
    FailedMark::Show(box_, false);
    EXPECT_EQ(box_.findChild<FailedMark *>(), nullptr);
    EXPECT_EQ(box_.accessibleDescription(), QStringLiteral("Near"));
    EXPECT_EQ(box_.grab().toImage(), before);
}

TEST_F(FailedMarkTest, KeepsADescriptionThatTheControlGetsMeanwhile) {
    FailedMark::Show(box_, true);
    box_.setAccessibleDescription(QStringLiteral("Outside the range"));
    FailedMark::Show(box_, true); // as the next refresh does
    EXPECT_EQ(box_.accessibleDescription(), QStringLiteral("The sensor hasn't confirmed this value"));
    FailedMark::Show(box_, false);
    EXPECT_EQ(box_.accessibleDescription(), QStringLiteral("Outside the range"));
    FailedMark::Show(box_, true);
    box_.setAccessibleDescription(QString());
    FailedMark::Show(box_, false);
    EXPECT_EQ(box_.accessibleDescription(), QString());
}

TEST_F(FailedMarkTest, LeavesTheControlItsClicks) {
    FailedMark::Show(box_, true);
    box_.setText(QStringLiteral("300.00"));
    QTest::mouseDClick(&box_, Qt::LeftButton, {}, QPoint(12, 12));
    EXPECT_FALSE(box_.selectedText().isEmpty());
}

} // namespace ztv
