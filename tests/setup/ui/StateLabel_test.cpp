#include "setup/ui/StateLabel.h"

#include "tests/helpers/Wait.h"
#include "tools/DarkPalette.h"
#include "widgets/Colours.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace ztv {

using Tone = LiveReading::Tone;

class StateLabelTest : public testing::Test {
protected:
    StateLabelTest() {
        label_.show();
        label_.resize(label_.sizeHint());
    }
    ~StateLabelTest() override { QApplication::setPalette(palette_); }

    const QPalette palette_ = QApplication::palette();
    StateLabel label_{QStringLiteral("moving \u00b1327.7\"")};
};

TEST_F(StateLabelTest, IsLegibleInEachToneOnLightAndDark) {
    for (const QPalette &desktop : {palette_, DarkPalette(), palette_}) {
        QApplication::setPalette(desktop);
        for (const Tone tone : {Tone::Good, Tone::Caution, Tone::Bad}) {
            label_.Show(tone, QStringLiteral("steady"));
            const QColor text = label_.palette().color(QPalette::WindowText);
            EXPECT_GE(Colours::Contrast(text, desktop.color(QPalette::Window)), Colours::TextContrast)
                << text.name().toStdString();
        }
    }
}

TEST_F(StateLabelTest, TakesTheColoursOfAChangedDesktop) {
    label_.Show(Tone::Bad, QStringLiteral("no echo"));
    const QColor onLight = label_.palette().color(QPalette::WindowText);
    QApplication::setPalette(DarkPalette());
    Settle();
    const QColor onDark = label_.palette().color(QPalette::WindowText);
    EXPECT_NE(onDark, onLight);
    EXPECT_GE(Colours::Contrast(onDark, DarkPalette().color(QPalette::Window)), Colours::TextContrast);
}

TEST_F(StateLabelTest, DiffersByShapeToo) {
    const auto mark = [this](Tone tone) {
        label_.Show(tone, QStringLiteral("x"));
        const QImage picture = label_.grab().toImage();
        int painted = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.height() * 2 / 3; ++x) {
                painted += picture.pixelColor(x, y) != picture.pixelColor(0, 0) ? 1 : 0;
            }
        }
        return painted;
    };
    EXPECT_LT(mark(Tone::Caution), mark(Tone::Good));
    EXPECT_LT(mark(Tone::Good), mark(Tone::Bad));
}

TEST_F(StateLabelTest, SaysInItsToolTipWhatItHasNoRoomFor) {
    label_.Show(Tone::Caution, QStringLiteral("moving \u00b1327.7\""));
    EXPECT_EQ(label_.toolTip(), QString());
    EXPECT_EQ(label_.accessibleName(), label_.text());
    label_.resize(label_.width() / 2, label_.height());
    EXPECT_EQ(label_.toolTip(), label_.text());
    label_.Show(Tone::Bad, QString());
    EXPECT_EQ(label_.toolTip(), QString());
}

TEST_F(StateLabelTest, KeepsTheRoomOfItsLongestText) {
    const QSize size = label_.sizeHint();
    label_.Show(Tone::Good, QStringLiteral("steady"));
    EXPECT_EQ(label_.sizeHint(), size);
    QFont large = label_.font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    label_.setFont(large);
    EXPECT_GT(label_.sizeHint().width(), size.width());
}

} // namespace ztv
