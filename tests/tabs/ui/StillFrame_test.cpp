#include "tabs/ui/StillFrame.h"

#include <QImage>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace ztv {

namespace {

QImage PictureOf(QGroupBox &box) {
    return box.grab().toImage();
}

// The picture of an ordinary group box of that look.
QImage Wanted(const QGroupBox &like) {
    QGroupBox box(like.title());
    box.setFont(like.font());
    box.setPalette(like.palette());
    box.setEnabled(like.isEnabled());
    box.resize(like.size());
    return PictureOf(box);
}

// The difference per channel and pixel: translucent parts are blended in a different order.
int GreatestDifference(const QImage &a, const QImage &b) {
    int greatest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            greatest = std::max({greatest, std::abs(one.red() - other.red()),
                                 std::abs(one.green() - other.green()), std::abs(one.blue() - other.blue())});
        }
    }
    return greatest;
}

class StillFrameTest : public testing::Test {
protected:
    StillFrameTest() { frame_.resize(160, 90); }

    void ExpectLikeAnyGroupBox() {
        const QImage picture = PictureOf(frame_);
        ASSERT_EQ(picture.size(), frame_.size());
        EXPECT_LE(GreatestDifference(picture, Wanted(frame_)), 2);
    }

    StillFrame frame_{QStringLiteral("Relays")};
};

TEST_F(StillFrameTest, LooksLikeAnyGroupBox) {
    ExpectLikeAnyGroupBox();
    ExpectLikeAnyGroupBox(); // the kept picture
}

TEST_F(StillFrameTest, IsDrawnAnewInAnotherSizeFontOrColour) {
    PictureOf(frame_);
    frame_.resize(200, 70);
    ExpectLikeAnyGroupBox();
    QFont font = frame_.font();
    font.setPixelSize(19);
    frame_.setFont(font);
    ExpectLikeAnyGroupBox();
    QPalette palette = frame_.palette();
    palette.setColor(QPalette::WindowText, Qt::red);
    frame_.setPalette(palette);
    ExpectLikeAnyGroupBox();
    frame_.setEnabled(false);
    ExpectLikeAnyGroupBox();
}

} // namespace

} // namespace ztv
