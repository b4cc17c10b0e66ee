#include "chart/BasicLayout.h"
#include "chart/ui/BasicPage.h"
#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tabs/ui/ValueOverlay.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"
#include "widgets/Colours.h"
#include "widgets/PageScale.h"

#include <QApplication>
#include <QFontInfo>
#include <QFontMetrics>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace ztv {

namespace {

constexpr std::int16_t onThreshold = 56;

// The sizes of a page in forms of 476x417, 680x596, 900x700, 700x900, 1366x768, 1920x1080 and 2560x1440
// pixels, and those of the whole factors 2 and 3.
const QSize pageSizes[] = {{441, 272},  {630, 389},   {850, 493},  {650, 693},  {1316, 561},
                           {1870, 873}, {2510, 1233}, {1260, 778}, {1890, 1167}};

} // namespace

class BasicScaleTest : public testing::Test {
protected:
    BasicScaleTest() {
        zentrova_.ParamUpdate(ParamDefines::ActualDistance, 20000);
        zentrova_.ParamUpdate(ParamDefines::OutputVoltage, 500);
        zentrova_.ParamUpdate(ParamDefines::EchoReceived, 1);
        page_.resize(PageScale::LeastPage);
        window_.resize(2600, 1300);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        page_.UpdateDisplay();
        page_.ConfigureBasicTab();
    }

    void Resize(const QSize &size) {
        page_.resize(size);
        page_.UpdateGraph();
        Settle();
    }

    QWidget &Member(const char *array, int index) {
        return ui_.Get<QWidget>((std::string(array) + "(" + std::to_string(index) + ")").c_str());
    }
    QWidget &Chart() { return ui_.Get<QWidget>("FrameGraph"); }
    QWidget &Marker(int number) { return Member("PicRelay", number); }
    PageScale Scale() const { return page_.Scale(); }

    // The column of the chart in which the marker's line is.
    int LineOf(int number) {
        return Marker(number).x() + Marker(number).width() / 2 - Scale().Rounded(BasicLayout::RelayWidth) / 2;
    }

    QPoint At(int column) { return Chart().mapTo(&window_, QPoint(column, Chart().height() / 2)); }
    void Press(int column) { QTest::mousePress(window_.windowHandle(), Qt::LeftButton, {}, At(column)); }
    void Move(int column) {
        QTest::mouseMove(window_.windowHandle(), At(column));
        Settle();
    }
    void Release(int column) {
        QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, {}, At(column));
        Settle();
    }
    void Put(int number, std::int32_t value) {
        zentrova_.ParamUpdate(static_cast<std::int16_t>(onThreshold + number), value);
        page_.PositionRelayMarkers();
    }
    std::int32_t Threshold(int number) const {
        return zentrova_.ParamValue(static_cast<std::int16_t>(onThreshold + number));
    }

    // The value that a drag by so many twips gives by the model alone, which knows no pixels.
    static std::int32_t DraggedBy(int number, std::int32_t from, float twips) {
        ClassZentrova zentrova(ShippedPresetsFolder());
        const auto tag = static_cast<std::int16_t>(onThreshold + number);
        zentrova.ParamUpdate(tag, from);
        BasicDrawing drawing;
        BasicGraph graph(zentrova, drawing);
        graph.PositionRelayMarkers();
        RelayDrag drag(zentrova, drawing);
        drag.MouseDown(number, true, 0);
        drag.MouseMove(number, true, twips);
        drag.MouseUp(number, true);
        return zentrova.ParamValue(tag);
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    ScriptedDialogs dialogs_;
    EntryRules rules_{zentrova_, dialogs_};
    QWidget window_;
    ValueOverlay text1_{rules_, &window_};
    BasicPage page_{zentrova_, text1_, &window_};
    Form ui_{page_};
};

TEST_F(BasicScaleTest, TheLeastPageIsAsItIsLaidOut) {
    const std::pair<const char *, QRect> places[] = {
        {"FrameGraphGroup", {0, 8, 657, 289}}, {"FrameGraph", {104, 72, 457, 153}},
        {"FrameManOutput", {24, 120, 81, 57}}, {"FrameRange", {0, 296, 657, 105}},
        {"FrameTransducer", {2, 48, 33, 33}},  {"LabelMode", {8, 16, 280, 16}},
        {"Label2", {605, 16, 43, 16}},         {"Label3", {605, 32, 43, 16}},
        {"LabelTarget", {4, 32, 73, 16}},      {"TextParam(0)", {40, 80, 49, 19}},
        {"TextParam(1)", {40, 208, 49, 19}},   {"TextParam(2)", {80, 264, 49, 19}},
        {"TextParam(3)", {208, 264, 49, 19}},  {"TextParam(4)", {408, 264, 49, 19}},
        {"TextParam(5)", {536, 264, 49, 19}},  {"TextParam(6)", {16, 16, 49, 19}},
        {"TextParam(7)", {16, 23, 49, 19}},    {"TextParam(8)", {7, 23, 49, 19}},
        {"LabelParam(0)", {32, 64, 65, 16}},   {"LabelParam(3)", {192, 248, 81, 16}},
        {"LabelParam(6)", {0, 0, 81, 16}},     {"LabelParam(7)", {11, 0, 59, 23}},
        {"PicRelay(0)", {151, 7, 11, 145}},
    };
    // There and back again: nothing of the larger page remains.
    for (int round = 0; round < 2; ++round) {
        for (const auto &[name, place] : places) {
            EXPECT_EQ(ui_.Get<QWidget>(name).geometry(), place) << name;
        }
        EXPECT_EQ(Scale().Factor(), 1.0);
        // Texts are as large as the desktop's, or as large as fits.
        const int desktop = QFontInfo(page_.font()).pixelSize();
        EXPECT_LE(QFontInfo(Member("TextParam", 0).font()).pixelSize(), desktop);
        EXPECT_EQ(QFontInfo(ui_.Get<QLabel>("LabelMode").font()).pixelSize(), desktop);
        Resize({1890, 1167});
        Resize(PageScale::LeastPage);
    }
}

TEST_F(BasicScaleTest, EachPageShowsAllOfItAtItsFactor) {
    for (const QSize &size : pageSizes) {
        SCOPED_TRACE(std::to_string(size.width()) + "x" + std::to_string(size.height()));
        Resize(size);
        const double factor = std::clamp(std::min(size.width() / 630.0, size.height() / 389.0), 0.7, 3.0);
        EXPECT_DOUBLE_EQ(Scale().Factor(), factor);
        EXPECT_NEAR(Chart().width(), 457 * factor, 1);
        EXPECT_NEAR(Chart().height(), 153 * factor, 1);
        const QRect within = page_.rect();
        for (int index = 0; index < 9; ++index) {
            if (index == 8) {
                continue; // hidden in this mode
            }
            SCOPED_TRACE(index);
            auto &box = dynamic_cast<QLineEdit &>(Member("TextParam", index));
            auto &label = dynamic_cast<QLabel &>(Member("LabelParam", index));
            for (const QWidget *widget : {static_cast<QWidget *>(&box), static_cast<QWidget *>(&label)}) {
                EXPECT_TRUE(within.contains(QRect(widget->mapTo(&page_, QPoint()), widget->size())));
            }
            const auto tag = BasicPage::ValueTag(static_cast<std::size_t>(index));
            const QString longest = zentrova_.FormatRaw(zentrova_.ParamMax(tag), tag);
            EXPECT_LE(QFontMetrics(box.font()).horizontalAdvance(longest), box.width() - 6);
            if (!label.wordWrap()) {
                EXPECT_LE(label.sizeHint().width(), label.width());
            }
            EXPECT_LE(QFontMetrics(label.font()).height(), label.height() + 1);
        }
        // Centred: as much room on the left as on the right, and above as below.
        const QPoint corner = ui_.Get<QWidget>("FrameGraphGroup").mapTo(&page_, QPoint());
        EXPECT_NEAR(corner.x(), std::max(0.0, size.width() - 630 * factor) / 2, 1);
        EXPECT_NEAR(corner.y() - 8 * factor, std::max(0.0, size.height() - 389 * factor) / 2, 1);
    }
}

TEST_F(BasicScaleTest, TextsGrowWithThePage) {
    Resize(PageScale::LeastPage);
    const auto pixels = [this](const char *name) {
        return QFontInfo(ui_.Get<QWidget>(name).font()).pixelSize();
    };
    for (const char *name : {"TextParam(4)", "LabelParam(4)", "LabelMode", "Label2", "LabelTarget"}) {
        Resize(PageScale::LeastPage);
        const int before = pixels(name);
        Resize({1260, 778});
        EXPECT_GE(pixels(name), 2 * before - 1) << name;
        Resize({1890, 1167});
        EXPECT_GE(pixels(name), 3 * before - 2) << name;
    }
}

TEST_F(BasicScaleTest, ADragBySoManyTwipsGivesTheSameValueAtEachFactor) {
    for (const int factor : {1, 2, 3}) {
        Resize(PageScale::LeastPage * factor);
        for (const int number : {0, 1, 2, 3}) {
            for (const int twips : {15, 660, -300}) {
                SCOPED_TRACE(std::to_string(factor) + " " + std::to_string(number) + " " +
                             std::to_string(twips));
                for (int other = 0; other < 4; ++other) {
                    Put(other, 12000 + 6000 * other);
                }
                const std::int32_t before = Threshold(number);
                const int from = LineOf(number);
                const int to = from + factor * twips / 15;
                Press(from);
                Move(to);
                Release(to);
                EXPECT_EQ(Threshold(number), DraggedBy(number, before, static_cast<float>(twips)));
                EXPECT_NE(Threshold(number), before);
            }
        }
    }
}

TEST_F(BasicScaleTest, ADragByPixelsGivesTheValueOfTheirTwipsAtEachSize) {
    for (const QSize &size : pageSizes) {
        Resize(size);
        for (const int pixels : {1, 7, -20, 44}) {
            SCOPED_TRACE(std::to_string(size.width()) + " " + std::to_string(pixels));
            Put(1, 24000);
            const int from = LineOf(1);
            Press(from);
            Move(from + pixels);
            Release(from + pixels);
            const auto twips = static_cast<float>(Scale().ToTwips(pixels));
            EXPECT_NEAR(Threshold(1), DraggedBy(1, 24000, twips), 12); // a twip: the offset of the press
            EXPECT_NE(Threshold(1), 24000);
        }
    }
}

TEST_F(BasicScaleTest, AMarkerIsGrabbedOnBothSidesOfItsLineAtEachSize) {
    for (const QSize &size : pageSizes) {
        Resize(size);
        const int reach = static_cast<int>(std::max(4.0, std::floor(4 * Scale().Factor())));
        for (const int offset : {-reach, 0, reach}) {
            SCOPED_TRACE(std::to_string(size.width()) + " " + std::to_string(offset));
            Put(1, 24000);
            Put(3, 40000);
            const int from = LineOf(1) + offset;
            Press(from);
            Move(from + 10);
            Release(from + 10);
            EXPECT_NE(Threshold(1), 24000);
            EXPECT_EQ(Threshold(3), 40000);
        }
    }
}

TEST_F(BasicScaleTest, AThresholdAtAnEndOfTheRangeIsSeenAtEachSize) {
    const QColor olive = Colours::Of(Colours::Olive, page_.palette());
    for (int width = 441; width < 1900; width += 7) {
        for (const std::int32_t value : {600, 42000}) {
            Put(1, value);
            Resize({width, 1200});
            const QImage picture = Chart().grab().toImage();
            const auto hasLine = [&](int column) {
                for (int row = picture.height() / 3; row < picture.height() * 2 / 3; ++row) {
                    if (picture.pixelColor(column, row) == olive) {
                        return true;
                    }
                }
                return false;
            };
            bool seen = false;
            const int reach = static_cast<int>(std::ceil(4 * picture.devicePixelRatio()));
            for (int inwards = 0; inwards < reach; ++inwards) {
                seen = seen || hasLine(value == 600 ? inwards : picture.width() - 1 - inwards);
            }
            EXPECT_TRUE(seen) << width << " " << value;
        }
    }
}

TEST_F(BasicScaleTest, AStepByKeyIsTheSameAtEachSize) {
    for (const QSize &size : pageSizes) {
        Resize(size);
        Put(1, 24000);
        Marker(1).setFocus(Qt::TabFocusReason);
        QTest::keyClick(&Marker(1), Qt::Key_Right);
        EXPECT_EQ(Threshold(1), DraggedBy(1, 24000, 15)) << size.width();
        Put(1, 24000);
        QTest::keyClick(&Marker(1), Qt::Key_Right, Qt::ShiftModifier);
        EXPECT_EQ(Threshold(1), 24001) << size.width();
    }
}

TEST_F(BasicScaleTest, AnOpenEditorStaysOverItsBox) {
    Resize(PageScale::LeastPage);
    auto &box = ui_.Get<QLineEdit>("TextParam(4)");
    box.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&box, Qt::Key_5);
    for (const QSize &size : pageSizes) {
        Resize(size);
        EXPECT_TRUE(text1_.isVisible());
        EXPECT_EQ(text1_.text(), QStringLiteral("5"));
        EXPECT_EQ(text1_.geometry(), QRect(box.mapTo(&window_, QPoint()), box.size()));
        EXPECT_EQ(text1_.font(), box.font());
    }
}

TEST_F(BasicScaleTest, AnOpenEditorStaysBelowItsMarker) {
    Resize(PageScale::LeastPage);
    Marker(1).setFocus(Qt::TabFocusReason);
    QTest::keyClick(&Marker(1), Qt::Key_Return);
    for (const QSize &size : pageSizes) {
        Resize(size);
        EXPECT_TRUE(text1_.isVisible());
        const QPoint line = Chart().mapTo(&window_, QPoint(LineOf(1), Chart().height()));
        EXPECT_NEAR(text1_.geometry().center().x(), line.x(), 2);
        EXPECT_NEAR(text1_.y(), line.y(), 1 + Scale().Factor());
        EXPECT_EQ(text1_.height(), Scale().Rounded(BasicFields::BoxHeight));
        EXPECT_EQ(text1_.font(), Marker(1).font());
    }
}

// From two metres, digits of 30 pixels are read.
TEST_F(BasicScaleTest, DistanceAndOutputAreReadFromAfarOnAFullScreen) {
    for (const QSize &size : {QSize(1870, 873), QSize(1870, 850), QSize(2510, 1233)}) {
        Resize(size);
        for (const int index : {6, 7}) {
            EXPECT_GE(QFontMetrics(Member("TextParam", index).font()).capHeight(), 30) << size.height();
        }
        EXPECT_EQ(Member("TextParam", 6).font(), Member("TextParam", 7).font());
        EXPECT_LT(QFontInfo(Member("TextParam", 4).font()).pixelSize(),
                  QFontInfo(Member("TextParam", 6).font()).pixelSize());
    }
    Resize(PageScale::LeastPage);
    EXPECT_EQ(Member("TextParam", 6).font(), Member("TextParam", 4).font());
}

TEST_F(BasicScaleTest, TheLargeReadingsCoverNothing) {
    const auto place = [this](const QWidget &widget) {
        return QRect(widget.mapTo(&page_, QPoint()), widget.size());
    };
    for (const QSize &size : pageSizes) {
        if (PageScale::Fitting(size).Factor() == 1) {
            continue; // as laid out
        }
        for (const std::int32_t distance : {600, 1200, 12000, 30000, 39000, 41000, 42000}) {
            for (const std::int32_t output : {0, 500, 1000}) {
                zentrova_.ParamUpdate(ParamDefines::ActualDistance, distance);
                zentrova_.ParamUpdate(ParamDefines::OutputVoltage, output);
                page_.UpdateDisplay();
                Resize(size);
                SCOPED_TRACE(std::to_string(size.width()) + " " + std::to_string(distance) + " " +
                             std::to_string(output));
                for (const int index : {6, 7}) {
                    QWidget &box = Member("TextParam", index);
                    EXPECT_TRUE(box.parentWidget()->rect().contains(box.geometry()));
                    EXPECT_TRUE(page_.rect().contains(place(box)));
                    EXPECT_LE(QFontMetrics(box.font()).capHeight(), box.height() - 6);
                    EXPECT_LE(
                        QFontMetrics(box.font()).horizontalAdvance(dynamic_cast<QLineEdit &>(box).text()),
                        box.width() - 4);
                    for (const char *other :
                         {"Label2", "Label3", "LabelParam(0)", "LabelParam(1)", "LabelParam(4)",
                          "LabelParam(5)", "TextParam(0)", "LabelMode"}) {
                        QWidget &label = ui_.Get<QWidget>(other);
                        QRect text = place(label);
                        if (label.objectName() == QStringLiteral("LabelMode")) {
                            text.setWidth(label.sizeHint().width());
                        }
                        EXPECT_FALSE(text.intersects(place(box))) << other << index;
                    }
                }
                EXPECT_FALSE(place(Member("TextParam", 6)).intersects(place(Member("TextParam", 7))));
                EXPECT_FALSE(place(Member("TextParam", 6)).intersects(place(Member("LabelParam", 7))));
                EXPECT_FALSE(place(Member("TextParam", 7)).intersects(place(Chart())));
                if (PageScale::Fitting(size).Factor() > 1.1) { // the legend's samples begin there
                    const QWidget &group = ui_.Get<QWidget>("FrameGraphGroup");
                    EXPECT_LE(place(Member("TextParam", 6)).right(),
                              place(group).left() + Scale().Rounded(8640));
                }
            }
        }
    }
}

TEST_F(BasicScaleTest, TheTransducerHasItsOutlineAtEachSize) {
    for (int width = 441; width < 1890; width += 23) {
        page_.resize(width, 1200);
        const QImage picture = ui_.Get<QWidget>("FrameTransducer").grab().toImage();
        const QColor inside = picture.pixelColor(picture.width() / 4, picture.height() / 2);
        const auto isOutline = [&](int x, int y) {
            const QColor colour = picture.pixelColor(x, y);
            return colour != inside && colour.lightness() < 120;
        };
        // The frame may be a pixel larger than the shape.
        const int reach = static_cast<int>(std::ceil(2 * picture.devicePixelRatio()));
        bool below = false;
        bool beside = false;
        for (int inwards = 1; inwards <= reach; ++inwards) {
            below = below || isOutline(picture.width() / 4, picture.height() - inwards);
            beside = beside || isOutline(picture.width() - inwards, picture.height() / 2);
        }
        EXPECT_TRUE(below) << width;
        EXPECT_TRUE(beside) << width;
    }
}

// A line covers whole pixels of the device at any factor and any ratio of pixels.
TEST_F(BasicScaleTest, LinesAreCrispAtEachSize) {
    for (const QSize &size : pageSizes) {
        Resize(size);
        SCOPED_TRACE(size.width());
        const QImage picture = Chart().grab().toImage();
        const double ratio = picture.devicePixelRatio();
        const int column = static_cast<int>(Scale().ToPixels(900) * ratio);
        const auto expected = std::max(1.0, std::round(2 * Scale().Factor() * ratio));
        int blue = 0;
        int between = 0;
        for (int row = static_cast<int>(Scale().ToPixels(1900) * ratio);
             row < Scale().ToPixels(2280) * ratio - 3 * ratio; ++row) {
            const QColor colour = picture.pixelColor(column, row);
            const bool isLine = colour == QColor(Qt::blue);
            const bool isGround = colour == page_.palette().color(QPalette::Base);
            blue += isLine ? 1 : 0;
            between += isLine || isGround ? 0 : 1;
        }
        EXPECT_EQ(blue, expected); // the plateau
        EXPECT_EQ(between, 0);
    }
}

// Where the chart itself begins within a pixel of the device, too.
TEST_F(BasicScaleTest, LinesAreCrispInTheWindowAtEachRatioOfPixels) {
    const auto isPure = [this](const QColor &colour) {
        return colour == QColor(Qt::blue) || colour == page_.palette().color(QPalette::Base);
    };
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (const QSize &size : pageSizes) {
            Put(0, 60000); // away from the plateau
            Resize(size);
            SCOPED_TRACE(std::to_string(ratio) + " " + std::to_string(size.width()));
            QImage picture(page_.size() * ratio, QImage::Format_RGB32);
            picture.setDevicePixelRatio(ratio);
            page_.render(&picture);
            const QPointF chart = Chart().mapTo(&page_, QPointF(0, 0));
            const int column = static_cast<int>((chart.x() + Scale().ToPixels(900)) * ratio);
            const int first = static_cast<int>((chart.y() + Scale().ToPixels(2050)) * ratio);
            const int last = static_cast<int>((chart.y() + Scale().ToPixels(2250)) * ratio);
            int blue = 0;
            for (int row = first; row <= last; ++row) {
                const QColor colour = picture.pixelColor(column, row);
                EXPECT_TRUE(isPure(colour)) << row << colour.name().toStdString();
                blue += colour == QColor(Qt::blue) ? 1 : 0;
            }
            EXPECT_EQ(blue, std::max(1.0, std::round(2 * Scale().Factor() * ratio)));
        }
    }
}

} // namespace ztv
