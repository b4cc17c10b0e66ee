#include "tabs/ui/BasicPage.h"

#include "model/ParamDefines.h"
#include "tests/support/Form.h"
#include "tests/support/Printers.h"
#include "tests/support/TestPresets.h"

#include <QFontMetrics>
#include <QStyle>
#include <QStyleOptionFrame>
#include <gtest/gtest.h>
#include <string>

class BasicPageTest : public testing::Test {
protected:
    BasicPageTest() {
        page_.resize(630, 389); // as in the smallest window
        page_.UpdateDisplay();
    }

    QWidget &Member(const char *array, int index) {
        return ui_.Get<QWidget>((std::string(array) + "(" + std::to_string(index) + ")").c_str());
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    BasicPage page_{zentrova_, nullptr};
    Form ui_{page_};
};

struct FieldCase {
    int index;
    int tag;
    const char *caption;
    int left, top, labelLeft, labelTop; // twips; -1: inside a moving frame
};

const FieldCase fields[] = {
    {0, 37, "Far Voltage", 600, 1200, 480, 960},     {1, 36, "Near Voltage", 600, 3120, 480, 2880},
    {2, 24, "Min Range", 1200, 3960, 1080, 3720},    {3, 28, "Near Distance", 3120, 3960, 2880, 3720},
    {4, 29, "Far Distance", 6120, 3960, 6000, 3720}, {5, 25, "Max Range", 8040, 3960, 7920, 3720},
    {6, 32, "Actual Distance", -1, -1, -1, -1},      {7, 46, "Output Voltage", -1, -1, -1, -1},
    {8, 40, "Manual Output", -1, -1, -1, -1},
};

TEST_F(BasicPageTest, HasABoxAndALabelForEachParameter) {
    for (const FieldCase &field : fields) {
        SCOPED_TRACE(field.caption);
        auto &box = dynamic_cast<QLineEdit &>(Member("TextParam", field.index));
        auto &label = dynamic_cast<QLabel &>(Member("LabelParam", field.index));
        const auto tag = static_cast<std::int16_t>(field.tag);
        EXPECT_EQ(box.property("Tag").toString(), QString::number(field.tag));
        EXPECT_EQ(label.text(), QString::fromLatin1(field.caption));
        EXPECT_EQ(label.toolTip(), QStringLiteral("Tag=%1").arg(field.tag));
        EXPECT_EQ(box.accessibleName(), label.text());
        EXPECT_EQ(box.text(), zentrova_.FormatRaw(zentrova_.ParamValue(tag), tag));
        EXPECT_EQ(box.isEnabled(), field.index != 6 && field.index != 7);
    }
    EXPECT_EQ(ui_.Get<QLabel>("LabelMode").toolTip(), QStringLiteral("Tag=39"));
}

TEST_F(BasicPageTest, PutsThemAtTheirPlaces) {
    for (const FieldCase &field : fields) {
        if (field.left < 0) {
            continue;
        }
        SCOPED_TRACE(field.caption);
        QWidget &box = Member("TextParam", field.index);
        EXPECT_EQ(box.parentWidget()->objectName(), QStringLiteral("FrameGraphGroup"));
        EXPECT_EQ(box.pos(), QPoint(field.left / 15, field.top / 15));
        EXPECT_EQ(box.size(), QSize(735 / 15, 285 / 15));
        EXPECT_EQ(Member("LabelParam", field.index).pos(), QPoint(field.labelLeft / 15, field.labelTop / 15));
    }
    EXPECT_EQ(Member("TextParam", 6).parentWidget()->objectName(), QStringLiteral("FrameActualDist"));
    EXPECT_EQ(Member("TextParam", 7).parentWidget()->objectName(), QStringLiteral("FrameOutputVoltage"));
    EXPECT_EQ(Member("TextParam", 8).parentWidget()->objectName(), QStringLiteral("FrameManOutput"));
}

TEST_F(BasicPageTest, PutsTheFramesAtTheirPlaces) {
    const std::pair<const char *, QRect> frames[] = {
        {"FrameGraphGroup", {0, 8, 657, 289}},      {"FrameGraph", {104, 72, 457, 153}},
        {"FrameOutputVoltage", {560, 120, 81, 49}}, {"FrameManOutput", {24, 120, 81, 57}},
        {"FrameActualDist", {296, 16, 81, 57}},
    };
    for (const auto &[name, place] : frames) {
        EXPECT_EQ(ui_.Get<QFrame>(name).geometry(), place) << name;
    }
    EXPECT_EQ(ui_.Get<QLabel>("LabelMode").pos(), QPoint(8, 16));
}

TEST_F(BasicPageTest, ShowsEachTextInFull) {
    for (const FieldCase &field : fields) {
        SCOPED_TRACE(field.caption);
        auto &box = dynamic_cast<QLineEdit &>(Member("TextParam", field.index));
        auto &label = dynamic_cast<QLabel &>(Member("LabelParam", field.index));
        const auto tag = static_cast<std::int16_t>(field.tag);
        const QString longest = zentrova_.FormatRaw(zentrova_.ParamMax(tag), tag);
        EXPECT_LE(QFontMetrics(box.font()).horizontalAdvance(longest), box.width() - 6);
        EXPECT_LE(label.sizeHint().height(), label.height() + 8); // the hint of a wrapped label is generous
        const QRect within(QPoint(), page_.size());
        const int textWidth =
            label.wordWrap() ? label.width() : QFontMetrics(label.font()).horizontalAdvance(label.text());
        EXPECT_LE(textWidth, label.width());
        EXPECT_TRUE(within.contains(QRect(label.mapTo(&page_, QPoint()), label.size())));
        EXPECT_TRUE(within.contains(QRect(box.mapTo(&page_, QPoint()), box.size())));
    }
}

TEST_F(BasicPageTest, FollowsTheTable) {
    zentrova_.ParamUpdate(ParamDefines::ActualDistance, 106);
    zentrova_.ParamUpdate(ParamDefines::OutputVoltage, 1000);
    zentrova_.ParamUpdate(ParamDefines::AnalogOutputMode, 2);
    page_.UpdateDisplay();
    EXPECT_EQ(ui_.Text("TextParam(6)"), QStringLiteral("1.06\""));
    EXPECT_EQ(ui_.Text("TextParam(7)"), QStringLiteral("10.00V"));
    EXPECT_EQ(ui_.Text("LabelMode"), QStringLiteral("Mode: Hyperbolic"));
}
