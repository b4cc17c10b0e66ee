#include "tabs/ui/DistancePage.h"

#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"
#include "widgets/Colours.h"

#include <QFontMetrics>
#include <QLabel>
#include <QProgressBar>
#include <gtest/gtest.h>

namespace ztv {

class DistancePageTest : public testing::Test {
protected:
    void Show(std::int32_t distance) {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, distance);
        page_.UpdateDisplay();
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    DistancePage page_{zentrova_, nullptr};
    Form ui_{page_};
};

TEST_F(DistancePageTest, StartsWithItsFixedTexts) {
    EXPECT_EQ(ui_.Text("LabelLargeLength"), QStringLiteral("420.00\""));
    EXPECT_EQ(ui_.Text("LabelMin"), QStringLiteral("6.00\""));
    EXPECT_EQ(ui_.Text("Label1"), QStringLiteral("240.00\""));
    EXPECT_EQ(ui_.Text("LabelDistanceDesc"),
              QStringLiteral(
                  "This large distance display is useful for debugging when your computer is not located "
                  "near the Zentrova."));
    EXPECT_EQ(ui_.Get<QProgressBar>("ProgressBar1").minimum(), 600);
    EXPECT_EQ(ui_.Get<QProgressBar>("ProgressBar1").maximum(), 42000);
}

TEST_F(DistancePageTest, ShowsTheDistanceAndLeavesTheBarOutsideItsRange) {
    auto &bar = ui_.Get<QProgressBar>("ProgressBar1");
    Show(42000);
    EXPECT_EQ(bar.value(), 42000);
    Show(600);
    EXPECT_EQ(bar.value(), 600);
    Show(12345);
    Show(599);
    EXPECT_EQ(bar.value(), 12345);
    EXPECT_EQ(ui_.Text("LabelLargeLength"), QStringLiteral("5.99\""));
    Show(42001);
    EXPECT_EQ(bar.value(), 12345);
    EXPECT_EQ(ui_.Text("LabelLargeLength"), QStringLiteral("420.01\""));
    EXPECT_EQ(ui_.Text("Label1"), QStringLiteral("240.00\""));
}

TEST_F(DistancePageTest, KeepsTheLongestNumberInViewAtAnySize) {
    page_.show();
    for (const QSize size : {QSize(630, 389), QSize(1600, 500), QSize(700, 1200)}) {
        page_.resize(size);
        const auto &label = ui_.Get<QLabel>("LabelLargeLength");
        const QFontMetrics metrics(label.font());
        EXPECT_LE(metrics.horizontalAdvance(QStringLiteral("420.00\"")), label.width());
        EXPECT_LE(metrics.capHeight(), label.height());
        EXPECT_GT(metrics.capHeight(), 50); // must be readable from afar
    }
}

TEST_F(DistancePageTest, GreysTheNumberAndTheBarWhileTheyAreNotLive) {
    page_.resize(630, 389);
    page_.show();
    Show(12345);
    const QColor grey = Colours::LegibleDisabledText(page_.palette(), Colours::LargeContrast);
    const auto &label = ui_.Get<QLabel>("LabelLargeLength");
    const auto &bar = ui_.Get<QProgressBar>("ProgressBar1");
    const auto has = [](const QWidget &widget, const QColor &colour) {
        const QImage picture = const_cast<QWidget &>(widget).grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y).rgb() == colour.rgb()) {
                    return true;
                }
            }
        }
        return false;
    };
    for (const ValueState state : {ValueState::NeverRead, ValueState::Stale, ValueState::Held}) {
        page_.ShowState(ValueState::Live);
        EXPECT_TRUE(has(label, page_.palette().color(QPalette::WindowText)));
        EXPECT_FALSE(has(bar, grey));
        page_.ShowState(state);
        EXPECT_FALSE(has(label, page_.palette().color(QPalette::WindowText)));
        EXPECT_TRUE(has(label, grey));
        EXPECT_TRUE(has(bar, grey));
        EXPECT_EQ(ui_.Text("LabelLargeLength"), QStringLiteral("123.45\""));
    }
}

} // namespace ztv
