#include "chart/ui/BasicPage.h"

#include "model/ParamDefines.h"
#include "model/ValueState.h"
#include "tabs/ui/ValueOverlay.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"
#include "tools/DarkPalette.h"
#include "widgets/Colours.h"

#include <QApplication>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTest>
#include <QToolTip>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace ztv {

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
    ScriptedDialogs dialogs_;
    EntryRules rules_{zentrova_, dialogs_};
    QWidget window_;
    ValueOverlay text1_{rules_, &window_};
    BasicPage page_{zentrova_, text1_, &window_};
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

// The chart. -----------------------------------------------------------------------------------------

class BasicChartTest : public BasicPageTest {
protected:
    BasicChartTest() {
        window_.resize(640, 420);
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        page_.ConfigureBasicTab();
    }

    void Set(std::int16_t tag, std::int32_t value) { zentrova_.ParamUpdate(tag, value); }
    bool Visible(const char *name) { return ui_.Get<QWidget>(name).isVisible(); }
    QRect Place(const char *name) { return ui_.Get<QWidget>(name).geometry(); }

    // Ticks, and the frames that are painted for them.
    std::set<std::string> PaintedByATick() {
        return PaintedBy([this] { page_.UpdateGraph(); });
    }

    template <typename Work>
    std::set<std::string> PaintedBy(const Work &work) {
        Settle();
        PaintedNames painted;
        for (QWidget *widget : page_.findChildren<QWidget *>()) {
            widget->installEventFilter(&painted);
        }
        work();
        Settle();
        return painted.names;
    }

    // Red, green and blue of the page's picture at a place of the chart, in twips.
    QColor ColourAt(double x, double y) {
        const QImage picture = page_.grab().toImage();
        const QPoint chart = ui_.Get<QWidget>("FrameGraph").mapTo(&page_, QPoint());
        return picture.pixelColor(chart + QPoint(static_cast<int>(x / 15), static_cast<int>(y / 15)));
    }

private:
    class PaintedNames : public QObject {
    public:
        bool eventFilter(QObject *watched, QEvent *event) override {
            if (event->type() == QEvent::Paint) {
                names.insert(watched->objectName().toStdString());
            }
            return false;
        }
        std::set<std::string> names;
    };
};

TEST_F(BasicChartTest, ShowsWhatBelongsToTheMode) {
    struct Row {
        std::int32_t mode;
        bool farVoltage, nearVoltage, manual, nearDistance;
    };
    const Row rows[] = {{0, false, false, true, true},
                        {1, true, true, false, true},
                        {2, true, false, false, false},
                        {7, false, false, false, true}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.mode);
        Set(ParamDefines::AnalogOutputMode, row.mode);
        page_.ConfigureBasicTab();
        EXPECT_EQ(Visible("TextParam(0)"), row.farVoltage);
        EXPECT_EQ(Visible("LabelParam(0)"), row.farVoltage);
        EXPECT_EQ(Visible("TextParam(1)"), row.nearVoltage);
        EXPECT_EQ(Visible("LabelParam(1)"), row.nearVoltage);
        EXPECT_EQ(Visible("FrameManOutput"), row.manual);
        EXPECT_EQ(ui_.Enabled("TextParam(3)"), row.nearDistance);
        EXPECT_FALSE(Visible("LabelRelayDist"));
    }
}

TEST_F(BasicChartTest, MovesItsFramesWithTheValues) {
    Set(ParamDefines::ActualDistance, 36000); // 4920 twips
    Set(ParamDefines::OutputVoltage, 1000);   // 240 twips
    page_.UpdateGraph();
    EXPECT_NEAR(Place("FrameActualDist").left(), (1560 + 4920 - 607.5 + 7) / 15, 1);
    EXPECT_NEAR(Place("FrameOutputVoltage").top(), (1080 + 240 - 480) / 15.0, 1);
    EXPECT_NEAR(Place("FrameTarget").left(), (1560 + 4920) / 15.0, 1);
    EXPECT_NEAR(Place("FrameZentrova").width(), (1560 + 4920 - 600) / 15.0, 1);
    Set(ParamDefines::EchoReceived, 0);
    page_.UpdateGraph();
    EXPECT_FALSE(Visible("FrameTarget"));
}

TEST_F(BasicChartTest, PaintsItsLinesInTheirColours) {
    Set(ParamDefines::ActualDistance, 42000);
    Set(ParamDefines::OutputVoltage, 310); // a cursor on neither rail
    page_.UpdateGraph();
    EXPECT_EQ(ColourAt(1000, 2160), QColor(0, 0, 255)); // the plateau on the near rail
    EXPECT_EQ(ColourAt(6000, 240), QColor(0, 0, 255));
    EXPECT_EQ(ColourAt(1000, 240), QColor(Qt::white));
    Set(ParamDefines::FarVoltage, 100);
    Set(ParamDefines::NearVoltage, 900);
    page_.UpdateGraph();
    EXPECT_EQ(ColourAt(1000, 2160), QColor(Qt::white)); // flipped
    EXPECT_EQ(ColourAt(1000, 240), QColor(0, 0, 255));
}

TEST_F(BasicChartTest, PaintsOnATickOnlyWhatMoved) {
    for (int tick = 0; tick < 5; ++tick) {
        page_.UpdateGraph();
    }
    EXPECT_EQ(PaintedByATick(), (std::set<std::string>{"FrameZentrova"}));
    Set(ParamDefines::OutputVoltage, 700);
    const std::set<std::string> painted = PaintedByATick();
    EXPECT_EQ(painted.count("FrameGraph"), 1U);
    EXPECT_EQ(painted.count("FrameTarget"), 0U);
    EXPECT_EQ(painted.count("TextParam(2)"), 0U);
}

TEST_F(BasicChartTest, CanBeDraggedByAMarkerWiderThanItsLine) {
    auto &marker = ui_.Get<QWidget>("PicRelay(0)");
    EXPECT_EQ(marker.cursor().shape(), Qt::SizeHorCursor);
    EXPECT_GE(marker.width(), 9);
    EXPECT_EQ(marker.y(), 7); // 100 twips
    EXPECT_EQ(marker.height(), 145);
    const auto dragTo = [&](int x) {
        QTest::mouseMove(&marker, QPoint(x - marker.x(), 50));
        Settle();
    };
    QTest::mousePress(&marker, Qt::LeftButton, {}, QPoint(1, 50)); // beside the line
    dragTo(196);                                                   // by 44 pixels, from 2333.8 to 2994 twips
    EXPECT_TRUE(Visible("LabelRelayDist"));
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 1 On Threshold\n136.58\""));
    EXPECT_EQ(zentrova_.ParamValue(56), 6000);
    dragTo(2000);
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 1 On Threshold\n136.58\""));
    QTest::mouseRelease(&marker, Qt::LeftButton, {}, QPoint(5, 50));
    EXPECT_EQ(zentrova_.ParamValue(56), 13658);
    EXPECT_FALSE(Visible("LabelRelayDist"));
}

TEST_F(BasicChartTest, IsDraggedWithTheLeftButtonAlone) {
    auto &marker = ui_.Get<QWidget>("PicRelay(0)");
    const int before = marker.x();
    QTest::mousePress(&marker, Qt::LeftButton, {}, QPoint(5, 50));
    const QPointF place(50, 50);
    QMouseEvent move(QEvent::MouseMove, place, marker.mapToGlobal(place), Qt::NoButton,
                     Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&marker, &move);
    EXPECT_EQ(marker.x(), before);
    EXPECT_FALSE(Visible("LabelRelayDist"));
    QTest::mouseRelease(&marker, Qt::LeftButton, {}, QPoint(5, 50));
}

TEST_F(BasicChartTest, TellsAThresholdWhenItsMarkerIsHovered) {
    auto &marker = ui_.Get<QWidget>("PicRelay(2)");
    EXPECT_EQ(marker.toolTip(), QStringLiteral("Relay 1 Off Threshold"));
    QTest::mouseMove(&marker, QPoint(3, 30));
    EXPECT_EQ(marker.toolTip(), QStringLiteral("Relay 1 Off Threshold=72.00\""));
    EXPECT_FALSE(Visible("LabelRelayDist"));
    QTest::mousePress(&marker, Qt::RightButton, {}, QPoint(3, 30));
    QTest::mouseMove(&marker, QPoint(100, 30));
    QTest::mouseRelease(&marker, Qt::RightButton, {}, QPoint(3, 30));
    EXPECT_EQ(zentrova_.ParamValue(58), 7200);
}

TEST_F(BasicChartTest, MovesAFocusedMarkerByTheArrowKeys) {
    auto &marker = ui_.Get<QWidget>("PicRelay(1)");
    marker.setFocus(Qt::TabFocusReason);
    const int before = marker.x();
    QTest::keyPress(&marker, Qt::Key_Right);
    QTest::keyPress(&marker, Qt::Key_Right);
    EXPECT_EQ(marker.x(), before + 2);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    EXPECT_EQ(zentrova_.ParamValue(57), 24000);
    QTest::keyRelease(&marker, Qt::Key_Right);
    EXPECT_GT(zentrova_.ParamValue(57), 24000);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    QTest::keyPress(&marker, Qt::Key_Left);
    const std::int32_t written = zentrova_.ParamValue(57);
    ui_.Get<QWidget>("PicRelay(3)").setFocus(); // with the key still down
    Settle();
    EXPECT_LT(zentrova_.ParamValue(57), written);
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 2 Off Threshold\n264.00\""));
}

// Typing. --------------------------------------------------------------------------------------------

class BasicEntryTest : public BasicChartTest {
protected:
    QLineEdit &Focus(int index) {
        auto &box = dynamic_cast<QLineEdit &>(Member("TextParam", index));
        box.setFocus(Qt::TabFocusReason);
        EXPECT_EQ(box.selectedText(), box.text());
        return box;
    }
};

TEST_F(BasicEntryTest, OpensTheEditorOverTheBoxWithTheDigitThatWasPressed) {
    for (const auto modifier : {Qt::NoModifier, Qt::KeypadModifier}) {
        for (int digit = 0; digit <= 9; ++digit) {
            QLineEdit &box = Focus(4);
            QTest::keyClick(&box, static_cast<Qt::Key>(Qt::Key_0 + digit), modifier);
            EXPECT_TRUE(text1_.isVisible());
            EXPECT_TRUE(text1_.hasFocus());
            EXPECT_EQ(text1_.text(), QString::number(digit));
            EXPECT_EQ(text1_.property("Tag").toString(), QStringLiteral("29"));
            EXPECT_EQ(text1_.geometry(), QRect(box.mapTo(&window_, QPoint()), box.size()));
            QTest::keyClick(&text1_, Qt::Key_Escape);
            EXPECT_FALSE(text1_.isVisible());
            EXPECT_TRUE(box.hasFocus());
        }
    }
    EXPECT_EQ(zentrova_.ParamValue(29), 36000);
}

TEST_F(BasicEntryTest, OpensTheEditorWithTheWholeTextByTheCursorKeys) {
    for (const auto key : {Qt::Key_Left, Qt::Key_Right}) {
        QTest::keyClick(&Focus(3), key);
        EXPECT_TRUE(text1_.isVisible());
        EXPECT_EQ(text1_.selectedText(), QStringLiteral("12.00\""));
        QTest::keyClick(&text1_, Qt::Key_Escape);
    }
}

TEST_F(BasicEntryTest, StaysHiddenForAnyOtherKey) {
    for (const auto key :
         {Qt::Key_A, Qt::Key_Minus, Qt::Key_Up, Qt::Key_F2, Qt::Key_Delete, Qt::Key_Period}) {
        QLineEdit &box = Focus(3);
        QTest::keyClick(&box, key);
        EXPECT_FALSE(text1_.isVisible());
        EXPECT_EQ(box.text(), QStringLiteral("12.00\""));
        EXPECT_EQ(text1_.property("Tag").toString(), QStringLiteral("28"));
    }
}

TEST_F(BasicEntryTest, OpensTheEditorInTheMovingFrameToo) {
    Set(ParamDefines::AnalogOutputMode, 0);
    page_.ConfigureBasicTab();
    page_.UpdateGraph();
    QLineEdit &box = Focus(8);
    QTest::keyClick(&box, Qt::Key_1);
    EXPECT_EQ(text1_.geometry(), QRect(box.mapTo(&window_, QPoint()), box.size()));
    QTest::keyClicks(&text1_, QStringLiteral("24"));
    QTest::keyClick(&text1_, Qt::Key_Return);
    EXPECT_EQ(zentrova_.ParamValue(40), 124);
    EXPECT_FALSE(text1_.isVisible());
}

TEST_F(BasicEntryTest, KeepsTheEditorOnARefusedValue) {
    QLineEdit &box = Focus(3);
    QTest::keyClick(&box, Qt::Key_3);
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""), BoxIcon::None,
                          QString());
    QTest::keyClick(&text1_, Qt::Key_Return);
    EXPECT_TRUE(text1_.isVisible());
    EXPECT_EQ(text1_.selectedText(), QStringLiteral("3"));
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""), BoxIcon::None,
                          QString());
    QTest::mouseClick(&Member("TextParam", 4), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(text1_.hasFocus());
    QTest::keyClicks(&text1_, QStringLiteral("20"));
    QTest::mouseClick(&Member("TextParam", 4), Qt::LeftButton);
    Settle();
    EXPECT_FALSE(text1_.isVisible());
    EXPECT_EQ(zentrova_.ParamValue(28), 2000);
    EXPECT_TRUE(Member("TextParam", 4).hasFocus());
    EXPECT_EQ(box.text(), QStringLiteral("12.00\"")); // until the next refresh
}

TEST_F(BasicEntryTest, TakesTheBoxsPlaceInTheTabOrder) {
    QTest::keyClick(&Focus(2), Qt::Key_7);
    QTest::keyClick(&text1_, Qt::Key_Tab);
    Settle();
    EXPECT_FALSE(text1_.isVisible());
    EXPECT_EQ(zentrova_.ParamValue(24), 700);
    EXPECT_TRUE(Member("TextParam", 3).hasFocus());
}

TEST_F(BasicEntryTest, GoesBackToTheBoxBeforeTheOneThatWasEdited) {
    for (const auto &[edited, before] : {std::pair{5, 4}, {4, 3}, {3, 2}, {2, 1}, {1, 0}}) {
        SCOPED_TRACE(edited);
        QTest::keyClick(&Focus(edited), Qt::Key_Left);
        QTest::keyClick(&text1_, Qt::Key_Backtab, Qt::ShiftModifier);
        Settle();
        EXPECT_TRUE(text1_.isHidden());
        EXPECT_TRUE(Member("TextParam", before).hasFocus());
    }
}

TEST_F(BasicEntryTest, GoesBackAndForthInTheOrderThatItWasInBefore) {
    const auto walk = [this](Qt::Key key, int steps) {
        QStringList names;
        for (int step = 0; step < steps; ++step) {
            QTest::keyClick(QApplication::focusWidget(), key);
            names << QApplication::focusWidget()->objectName();
        }
        return names;
    };
    Focus(2);
    const QStringList there = walk(Qt::Key_Tab, 9);
    const QStringList back = walk(Qt::Key_Backtab, 9);
    QTest::keyClick(&Focus(2), Qt::Key_Left);
    QTest::keyClick(&text1_, Qt::Key_Backtab);
    Settle();
    Focus(2);
    EXPECT_EQ(walk(Qt::Key_Tab, 9), there);
    EXPECT_EQ(walk(Qt::Key_Backtab, 9), back);
}

TEST_F(BasicEntryTest, LetsAnEmptyTextGo) {
    QTest::keyClick(&Focus(2), Qt::Key_7);
    QTest::keyClick(&text1_, Qt::Key_Backspace);
    QTest::keyClick(&text1_, Qt::Key_Tab);
    Settle();
    EXPECT_FALSE(text1_.isVisible());
    EXPECT_EQ(zentrova_.ParamValue(24), 600);
}

TEST_F(BasicEntryTest, SaysWhenABoxIsLeft) {
    int left = 0;
    Focus(2);
    QObject::connect(&page_, &BasicPage::ValueBoxLeft, [&left] { ++left; });
    Focus(3);
    EXPECT_EQ(left, 1);
}

TEST_F(BasicEntryTest, KeepsTheSelectionOfAFocusedBoxThatDoesNotChange) {
    QLineEdit &box = Focus(2);
    page_.UpdateDisplay();
    EXPECT_EQ(box.selectedText(), QStringLiteral("6.00\""));
}

TEST_F(BasicEntryTest, ClosesTheEditorOfABoxThatGoes) {
    QTest::keyClick(&Focus(0), Qt::Key_5);
    EXPECT_TRUE(text1_.isVisible());
    zentrova_.ParamUpdate(ParamDefines::AnalogOutputMode, 0);
    page_.ConfigureBasicTab();
    Settle();
    EXPECT_FALSE(text1_.isVisible());
}

TEST_F(BasicEntryTest, KeepsTheEditorOverABoxThatMoves) {
    QLineEdit &box = Focus(0);
    QTest::keyClick(&box, Qt::Key_5);
    zentrova_.ParamUpdate(ParamDefines::FarVoltage, 0);
    zentrova_.ParamUpdate(ParamDefines::NearVoltage, 1000);
    page_.UpdateGraph();
    EXPECT_TRUE(text1_.isVisible());
    EXPECT_EQ(text1_.text(), QStringLiteral("5"));
    EXPECT_EQ(text1_.geometry(), QRect(box.mapTo(&window_, QPoint()), box.size()));
}

TEST_F(BasicChartTest, LeavesOtherKeysToTheWindow) {
    auto &marker = ui_.Get<QWidget>("PicRelay(1)");
    const QRect before = marker.geometry();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Up, Qt::Key_A}) {
        QKeyEvent press(QEvent::KeyPress, key, {});
        QApplication::sendEvent(&marker, &press);
        EXPECT_FALSE(press.isAccepted()) << key;
    }
    EXPECT_EQ(marker.geometry(), before);
    EXPECT_FALSE(Visible("LabelRelayDist"));
}

TEST_F(BasicChartTest, WritesNothingForAKeyThatMovesNoMarker) {
    zentrova_.ParamUpdate(ParamDefines::MaxRange, 38000);
    zentrova_.ParamUpdate(57, 42000);
    page_.PositionRelayMarkers();
    auto &marker = ui_.Get<QWidget>("PicRelay(1)");
    marker.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&marker, Qt::Key_Right);
    EXPECT_EQ(zentrova_.ParamValue(57), 42000);
}

// Markers close together. ----------------------------------------------------------------------------

class BasicMarkersTest : public BasicChartTest {
protected:
    void Put(std::int32_t on, std::int32_t off) {
        Set(56, on);
        Set(58, off);
        page_.PositionRelayMarkers();
    }

    QWidget &Chart() { return ui_.Get<QWidget>("FrameGraph"); }
    QWidget &Marker(int number) { return Member("PicRelay", number); }

    // The column of the chart in which the marker paints its line: past the margin for the hand.
    int LineOf(int number) { return Marker(number).x() + 5; }

    // A place on a column of the chart, in the window's coordinates; the widget there gets the event.
    QPoint At(int column) { return Chart().mapTo(&window_, QPoint(column, 70)); }
    void Press(int column) { QTest::mousePress(window_.windowHandle(), Qt::LeftButton, {}, At(column)); }
    void Move(int column) {
        QTest::mouseMove(window_.windowHandle(), At(column));
        Settle();
    }
    void Release(int column) {
        QTest::mouseRelease(window_.windowHandle(), Qt::LeftButton, {}, At(column));
        Settle();
    }
    void Drag(int from, int to) {
        Press(from);
        Move(to);
        Release(to);
    }
    std::int32_t On() const { return zentrova_.ParamValue(56); }
    std::int32_t Off() const { return zentrova_.ParamValue(58); }
};

TEST_F(BasicMarkersTest, PaintTheirLinesInTheColumnThatIsNearestToThem) {
    Put(6000, 24000);
    const int line = LineOf(0);
    const QImage picture = Chart().grab().toImage();
    int blue = 0;
    for (int y = 20; y < 140; ++y) {
        blue += picture.pixelColor(line, y) == QColor(Qt::blue) ? 1 : 0;
        EXPECT_NE(picture.pixelColor(line + 1, y), QColor(Qt::blue)) << y;
    }
    EXPECT_GT(blue, 50);
}

TEST_F(BasicMarkersTest, AreDraggedByTheLineUnderThePointer) {
    for (const auto &[on, off] :
         {std::pair{6000, 6400}, {6400, 6000}, {6000, 7200}, {30000, 30300}, {37000, 37500}}) {
        SCOPED_TRACE(on);
        Put(on, off);
        ASSERT_NE(LineOf(0), LineOf(2));
        Drag(LineOf(0), LineOf(0) + 20);
        EXPECT_NE(On(), on);
        EXPECT_EQ(Off(), off);
        Put(on, off);
        Drag(LineOf(2), LineOf(2) - 20);
        EXPECT_EQ(On(), on);
        EXPECT_NE(Off(), off);
    }
}

TEST_F(BasicMarkersTest, TheNearestOfAllRelaysIsTaken) {
    Put(6000, 6800);
    Set(57, 6400);
    Set(59, 7200);
    page_.PositionRelayMarkers();
    for (const int number : {0, 1, 2, 3}) {
        const auto threshold = static_cast<std::int16_t>(56 + number);
        const std::int32_t before = zentrova_.ParamValue(threshold);
        Drag(LineOf(number), 300);
        EXPECT_NE(zentrova_.ParamValue(threshold), before) << number;
        Set(threshold, before);
        page_.PositionRelayMarkers();
    }
}

TEST_F(BasicMarkersTest, TheNearestTakesThePressBesideBothLines) {
    Put(6000, 7400); // eight pixels apart
    Drag(LineOf(0) + 3, LineOf(0) + 43);
    EXPECT_NE(On(), 6000);
    EXPECT_EQ(Off(), 7400);
    Put(6000, 7400);
    Drag(LineOf(2) - 3, LineOf(2) + 40);
    EXPECT_EQ(On(), 6000);
    EXPECT_NE(Off(), 7400);
}

TEST_F(BasicMarkersTest, OneOfTwoEqualOnesMovesOffTheOther) {
    Put(6000, 6000);
    const int line = LineOf(0);
    Drag(line, line + 50);
    EXPECT_EQ((On() == 6000) + (Off() == 6000), 1);
    const std::int32_t moved = On() == 6000 ? Off() : On();
    Drag(line, line + 30); // and now the other
    EXPECT_NE(On(), 6000);
    EXPECT_NE(Off(), 6000);
    EXPECT_TRUE(On() == moved || Off() == moved);
}

TEST_F(BasicMarkersTest, HoverAndToolTipTellTheLineUnderThePointer) {
    Put(6000, 6400);
    for (const auto &[number, text] :
         {std::pair{0, "Relay 1 On Threshold=60.00\""}, {2, "Relay 1 Off Threshold=64.00\""}}) {
        Move(20);
        Move(LineOf(number));
        const QImage hovered = Chart().grab().toImage();
        const QColor band = hovered.pixelColor(LineOf(number) + (number == 0 ? -2 : 2), 75);
        EXPECT_NE(band, QColor(Qt::white)) << number;
        const QColor beside = hovered.pixelColor(LineOf(number) + (number == 0 ? 4 : -4), 75);
        EXPECT_EQ(beside, QColor(Qt::white)) << number;

        QWidget *under = Chart().childAt(QPoint(LineOf(number), 70));
        ASSERT_NE(under, nullptr);
        const QPoint place(LineOf(number) - under->x(), 70);
        QHelpEvent help(QEvent::ToolTip, place, under->mapToGlobal(place));
        QApplication::sendEvent(under, &help);
        EXPECT_EQ(QToolTip::text(), QString::fromLatin1(text));
        EXPECT_EQ(Marker(number).toolTip(), QString::fromLatin1(text));

        // The tip follows the pointer to the other line over the same widget. The old tip lingers for a
        // moment.
        QMouseEvent move(QEvent::MouseMove, QPointF(LineOf(2 - number) - under->x(), 70), QPointF(),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(under, &move);
        EXPECT_TRUE(WaitUntil([] { return !QToolTip::isVisible(); }));
    }
    QToolTip::hideText();
    Move(20);
    EXPECT_EQ(Chart().grab().toImage().pixelColor(LineOf(0) - 2, 75), QColor(Qt::white));
}

TEST_F(BasicMarkersTest, APressGivesTheFocusToTheLineUnderThePointer) {
    Put(6000, 6400);
    Press(LineOf(0));
    EXPECT_TRUE(Marker(0).hasFocus());
    Release(LineOf(0));
    Press(LineOf(2));
    EXPECT_TRUE(Marker(2).hasFocus());
    Release(LineOf(2));
}

TEST_F(BasicMarkersTest, MoveByWhatThePointerMoves) {
    for (const int offset : {-5, -2, 0, 3, 5}) {
        SCOPED_TRACE(offset);
        Set(57, 24000);
        page_.PositionRelayMarkers();
        const int line = LineOf(1);
        Press(line + offset);
        Move(line + offset + 1);
        EXPECT_EQ(LineOf(1), line + 1);
        Move(line + offset + 30);
        EXPECT_EQ(LineOf(1), line + 30);
        Release(line + offset + 30);
        // 30 pixels are 450 of the 3000 twips between 12.00 and 360.00 inches; the place is a whole twip.
        EXPECT_NEAR(zentrova_.ParamValue(57), 24000 + 5220, 6);
    }
}

TEST_F(BasicMarkersTest, AMereClickWritesNothing) {
    Set(ParamDefines::MaxRange, 38000);
    for (const std::int32_t value : {500, 600, 1201, 6001, 24007, 36001, 37999, 38001, 42000}) {
        SCOPED_TRACE(value);
        Set(57, value);
        Put(9000, 9000);
        for (const int offset : {-4, 0, 4}) {
            const int column = std::max(0, std::min(LineOf(1) + offset, Chart().width() - 1));
            Press(column);
            Move(column); // desktops send a move with each press
            EXPECT_FALSE(Visible("LabelRelayDist"));
            Release(column);
            EXPECT_EQ(zentrova_.ParamValue(57), value);
            QTest::mouseDClick(window_.windowHandle(), Qt::LeftButton, {}, At(column));
            Settle();
            EXPECT_EQ(zentrova_.ParamValue(57), value);
        }
    }
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicMarkersTest, BackWhereItWasPressedAMarkerWritesNothing) {
    Set(57, 24007);
    page_.PositionRelayMarkers();
    const int line = LineOf(1);
    Press(line + 2);
    Move(line + 40);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    Move(line + 2);
    EXPECT_EQ(LineOf(1), line);
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 2 On Threshold\n240.07\""));
    Release(line + 2);
    EXPECT_FALSE(Visible("LabelRelayDist"));
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicMarkersTest, TheOneThatIsDraggedPassesTheOther) {
    Put(6000, 9000);
    Press(LineOf(0));
    for (int column = LineOf(0); column < LineOf(2) + 25; column += 3) {
        Move(column);
    }
    Release(LineOf(2) + 25);
    EXPECT_GT(On(), 9000);
    EXPECT_EQ(Off(), 9000);
}

// A box that opens during the drag, or a change of tab, swallows the release.
TEST_F(BasicMarkersTest, ADragWhoseReleaseIsLostEndsWithoutAWrite) {
    for (const bool hidden : {false, true}) {
        const int before = LineOf(1);
        Press(before);
        Move(before + 40);
        if (hidden) {
            page_.hide();
            page_.show();
        } else {
            const QPointF place(5, 70);
            QMouseEvent move(QEvent::MouseMove, place, Marker(3).mapToGlobal(place), Qt::NoButton,
                             Qt::NoButton, Qt::NoModifier);
            QApplication::sendEvent(&Marker(3), &move);
        }
        EXPECT_EQ(LineOf(1), before);
        EXPECT_FALSE(Visible("LabelRelayDist"));
        Press(LineOf(3)); // and the next one drags its own
        Move(LineOf(3) + 10);
        Release(LineOf(3));
        EXPECT_EQ(LineOf(1), before);
        EXPECT_EQ(zentrova_.ParamValue(57), 24000);
        EXPECT_NE(zentrova_.ParamValue(59), 26400);
        Set(59, 26400);
        page_.PositionRelayMarkers();
        Release(LineOf(1));
        EXPECT_EQ(zentrova_.ParamValue(57), 24000);
    }
}

// Thresholds by keyboard. ----------------------------------------------------------------------------

class BasicMarkerKeysTest : public BasicMarkersTest {
protected:
    QWidget &Focus(int number) {
        Marker(number).setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(Marker(number).hasFocus());
        return Marker(number);
    }
};

TEST_F(BasicMarkerKeysTest, ADigitOpensTheEditorForTheThreshold) {
    for (const auto modifier : {Qt::NoModifier, Qt::KeypadModifier}) {
        for (int number = 0; number < 4; ++number) {
            const auto threshold = static_cast<std::int16_t>(56 + number);
            QTest::keyClick(&Focus(number), Qt::Key_9, modifier);
            EXPECT_TRUE(text1_.hasFocus());
            EXPECT_EQ(text1_.text(), QStringLiteral("9"));
            EXPECT_EQ(text1_.property("Tag").toString(), QString::number(threshold));
            EXPECT_EQ(text1_.accessibleName(), zentrova_.ParamName(threshold));
            EXPECT_TRUE(page_.rect().contains(text1_.geometry()));
            QTest::keyClicks(&text1_, QStringLiteral("0.5"));
            QTest::keyClick(&text1_, Qt::Key_Return);
            EXPECT_TRUE(text1_.isHidden());
            EXPECT_TRUE(Marker(number).hasFocus());
            EXPECT_EQ(zentrova_.ParamValue(threshold), 9050);
            Set(threshold, 30000);
        }
    }
}

TEST_F(BasicMarkerKeysTest, EnterOpensTheEditorWithTheWholeThreshold) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&Focus(1), key);
        EXPECT_TRUE(text1_.hasFocus());
        EXPECT_EQ(text1_.selectedText(), QStringLiteral("240.00\""));
        QTest::keyClick(&text1_, Qt::Key_Escape);
        EXPECT_TRUE(Marker(1).hasFocus());
    }
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicMarkerKeysTest, ARefusedThresholdKeepsTheEditor) {
    QTest::keyClick(&Focus(1), Qt::Key_5);
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 6.00\" and 420.00\""), BoxIcon::None,
                          QString());
    QTest::keyClick(&text1_, Qt::Key_Return);
    EXPECT_TRUE(text1_.hasFocus());
    EXPECT_EQ(zentrova_.ParamValue(57), 24000);
}

TEST_F(BasicMarkerKeysTest, TheEditorStaysWithinThePageAtTheChartsEdges) {
    for (const std::int32_t value : {600, 42000}) {
        Set(57, value);
        page_.PositionRelayMarkers();
        QTest::keyClick(&Focus(1), Qt::Key_Return);
        EXPECT_TRUE(page_.rect().contains(text1_.geometry()));
        QTest::keyClick(&text1_, Qt::Key_Escape);
    }
}

TEST_F(BasicMarkerKeysTest, ShiftWithACursorKeyMovesByAHundredth) {
    QWidget &marker = Focus(1);
    QTest::keyPress(&marker, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 2 On Threshold\n240.01\""));
    EXPECT_EQ(zentrova_.ParamValue(57), 24000);
    QTest::keyPress(&marker, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyRelease(&marker, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(zentrova_.ParamValue(57), 24002);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    QTest::keyClick(&marker, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(zentrova_.ParamValue(57), 24001);
}

TEST_F(BasicMarkerKeysTest, AHundredthEndsAtTheLimitsOfTheThreshold) {
    for (const auto &[value, key] : {std::pair{600, Qt::Key_Left}, {42000, Qt::Key_Right}}) {
        Set(57, value);
        page_.PositionRelayMarkers();
        QTest::keyClick(&Focus(1), key, Qt::ShiftModifier);
        EXPECT_EQ(zentrova_.ParamValue(57), value);
    }
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicMarkerKeysTest, AHundredthMovesAThresholdThatStandsBeyondTheChart) {
    Set(ParamDefines::MaxRange, 38000);
    Set(57, 40000);
    page_.PositionRelayMarkers();
    QTest::keyClick(&Focus(1), Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(zentrova_.ParamValue(57), 39999);
}

TEST_F(BasicMarkerKeysTest, TheEditorHasItsMarkersPlaceInTheTabOrder) {
    QTest::keyClick(&Focus(1), Qt::Key_Return);
    QTest::keyClick(&text1_, Qt::Key_Backtab);
    Settle();
    EXPECT_TRUE(Marker(0).hasFocus());
    QTest::keyClick(&Focus(1), Qt::Key_Return);
    QTest::keyClick(&text1_, Qt::Key_Tab);
    Settle();
    EXPECT_TRUE(Marker(2).hasFocus());
}

// The chart and the table. ---------------------------------------------------------------------------

TEST_F(BasicMarkersTest, ARefusedThresholdIsTakenBackByTheNextRefresh) {
    const int before = LineOf(1);
    Drag(before, before - 60);
    EXPECT_EQ(LineOf(1), before - 60);
    Set(57, 24000); // as the poll reads it again
    page_.UpdateDisplay();
    EXPECT_EQ(LineOf(1), before);
}

TEST_F(BasicMarkersTest, ARefreshLeavesTheMarkerThatIsBeingDragged) {
    Press(LineOf(1));
    Move(LineOf(1) + 10);
    const int held = LineOf(1);
    Set(57, 30000);
    Set(59, 30000);
    page_.UpdateDisplay();
    EXPECT_EQ(LineOf(1), held);
    const int other = LineOf(3);
    Release(held);
    page_.UpdateDisplay();
    EXPECT_EQ(LineOf(1), held);
    Set(57, 30000);
    page_.UpdateDisplay();
    EXPECT_EQ(LineOf(1), other);
}

TEST_F(BasicMarkersTest, ARefreshLeavesAMarkerBetweenTwoStepsOfAKey) {
    Marker(1).setFocus(Qt::TabFocusReason);
    QTest::keyPress(&Marker(1), Qt::Key_Right);
    const int held = LineOf(1);
    page_.UpdateDisplay();
    EXPECT_EQ(LineOf(1), held);
    QTest::keyPress(&Marker(1), Qt::Key_Right);
    EXPECT_EQ(LineOf(1), held + 1);
    QTest::keyRelease(&Marker(1), Qt::Key_Right);
}

TEST_F(BasicChartTest, ARefreshShowsAModeThatWasWrittenElsewhere) {
    Set(ParamDefines::AnalogOutputMode, 2);
    page_.UpdateDisplay();
    EXPECT_FALSE(ui_.Enabled("TextParam(3)"));
    EXPECT_FALSE(Visible("TextParam(1)"));
    Set(ParamDefines::AnalogOutputMode, 0);
    page_.UpdateDisplay();
    EXPECT_TRUE(ui_.Enabled("TextParam(3)"));
    EXPECT_TRUE(Visible("FrameManOutput"));
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicEntryTest, ARefreshClosesTheEditorOfABoxThatGoes) {
    QTest::keyClick(&Focus(0), Qt::Key_5);
    Set(ParamDefines::AnalogOutputMode, 0);
    page_.UpdateDisplay();
    EXPECT_TRUE(text1_.isHidden());
}

TEST_F(BasicChartTest, ARefreshPaintsNothingWhereNothingHasChanged) {
    for (int tick = 0; tick < 5; ++tick) {
        page_.UpdateGraph();
    }
    Settle();
    page_.UpdateDisplay();
    EXPECT_EQ(PaintedByATick(), (std::set<std::string>{"FrameZentrova"}));
}

// Values that aren't live. ---------------------------------------------------------------------------

TEST_F(BasicPageTest, GreysTheMeasuredValuesAloneWhileTheyAreNotLive) {
    zentrova_.ParamUpdate(ParamDefines::EchoReceived, 1);
    zentrova_.ParamUpdate(ParamDefines::ActualDistance, 12000);
    page_.UpdateDisplay();
    page_.ConfigureBasicTab();
    page_.UpdateGraph();
    window_.resize(700, 450);
    window_.show();
    const QPalette light = QApplication::palette();
    for (const QPalette &desktop : {light, DarkPalette()}) {
        QApplication::setPalette(desktop);
        Settle();
        const auto textOf = [this](int index) {
            const QWidget &box = Member("TextParam", index);
            return box.palette().color(box.isEnabled() ? QPalette::Active : QPalette::Disabled,
                                       QPalette::Text);
        };
        const QColor text = desktop.color(QPalette::Text);
        const QColor grey = Colours::LegibleDisabledText(desktop);
        const auto target = [this] {
            return ui_.Get<QWidget>("FrameTarget").grab().toImage().pixelColor(40, 12);
        };
        const QStringList texts = [this] {
            QStringList all;
            for (const QLineEdit *box : page_.findChildren<QLineEdit *>()) {
                all << box->text();
            }
            return all;
        }();
        for (const ValueState state : {ValueState::NeverRead, ValueState::Stale, ValueState::Held}) {
            page_.ShowState(ValueState::Live);
            EXPECT_EQ(textOf(6), text);
            EXPECT_EQ(textOf(7), text);
            EXPECT_GT(target().saturation(), 100) << "red";
            page_.ShowState(state);
            EXPECT_EQ(textOf(6), grey);
            EXPECT_EQ(textOf(7), grey);
            EXPECT_LT(target().saturation(), 30);
            for (const int setting : {0, 1, 2, 3, 4, 5, 8}) {
                EXPECT_EQ(textOf(setting), text) << setting;
                EXPECT_TRUE(Member("TextParam", setting).isEnabled());
            }
        }
        QStringList after;
        for (const QLineEdit *box : page_.findChildren<QLineEdit *>()) {
            after << box->text();
        }
        EXPECT_EQ(after, texts) << "the last values stand";
    }
    QApplication::setPalette(light);
    Settle();
    EXPECT_EQ(Member("TextParam", 6).palette().color(QPalette::Disabled, QPalette::Text),
              Colours::LegibleDisabledText(light))
        << "follows the desktop";
}

// Relays, echo, diameter. ----------------------------------------------------------------------------

class BasicReadingsTest : public BasicChartTest {
protected:
    void Poll() {
        page_.UpdateDisplay();
        page_.UpdateGraph();
    }

    // The colour in the middle of a relay's lamp.
    QColor LampColour(int relay) {
        const QImage picture = Member("LampRelay", relay).grab().toImage();
        return picture.pixelColor(picture.height() / 2, picture.height() / 2);
    }

    QColor TextColour(const char *label) {
        return ui_.Get<QLabel>(label).palette().color(QPalette::WindowText);
    }

    // Calls `work` on a light and on a dark desktop.
    template <typename Work>
    void OnEachDesktop(const Work &work) {
        const QPalette light = QApplication::palette();
        for (const QPalette &desktop : {light, DarkPalette()}) {
            QApplication::setPalette(desktop);
            Settle();
            work(desktop);
        }
        QApplication::setPalette(light);
    }
};

TEST_F(BasicReadingsTest, ALampIsFilledInItsRelaysColourWhileTheRelayIsOn) {
    OnEachDesktop([this](const QPalette &desktop) {
        const QColor colours[] = {Colours::Of(Colours::Blue, desktop), Colours::Of(Colours::Olive, desktop)};
        for (const int states : {0, 1, 2, 3}) {
            Set(ParamDefines::Relay1State, states & 1);
            Set(ParamDefines::Relay2State, states >> 1);
            Poll();
            for (const int relay : {0, 1}) {
                const bool on = ((states >> relay) & 1) != 0;
                EXPECT_EQ(LampColour(relay), on ? colours[relay] : desktop.color(QPalette::Window)) << states;
                const QString text =
                    QStringLiteral("Relay %1 is %2").arg(relay + 1).arg(QLatin1String(on ? "on" : "off"));
                EXPECT_EQ(Member("LampRelay", relay).toolTip(), text);
                EXPECT_EQ(Member("LampRelay", relay).accessibleName(), text);
            }
        }
    });
}

TEST_F(BasicReadingsTest, TheReadingsAreGreyWhileTheyAreNotPresentOnes) {
    Set(ParamDefines::Relay1State, 1);
    Set(ParamDefines::EchoStrength, 64);
    OnEachDesktop([this](const QPalette &desktop) {
        const QColor grey = Colours::LegibleDisabledText(desktop);
        for (const ValueState state : {ValueState::NeverRead, ValueState::Stale, ValueState::Held}) {
            page_.ShowState(state);
            EXPECT_EQ(LampColour(0).rgb(), grey.rgb());
            EXPECT_EQ(LampColour(1), desktop.color(QPalette::Window)) << "hollow";
            EXPECT_EQ(TextColour("LabelEcho"), grey);
            EXPECT_EQ(TextColour("LabelDiameter"), grey);
            EXPECT_EQ(Member("LampRelay", 0).toolTip(), QStringLiteral("Relay 1: no present value"));
            page_.ShowState(ValueState::Live);
            EXPECT_EQ(LampColour(0), Colours::Of(Colours::Blue, desktop));
            EXPECT_EQ(TextColour("LabelEcho"), desktop.color(QPalette::WindowText));
            EXPECT_EQ(TextColour("LabelDiameter"), desktop.color(QPalette::WindowText));
        }
    });
}

TEST_F(BasicReadingsTest, SaysLegiblyThatThereIsNoEcho) {
    OnEachDesktop([this](const QPalette &desktop) {
        page_.ShowState(ValueState::Live);
        Set(ParamDefines::EchoReceived, 1);
        Poll();
        EXPECT_FALSE(Visible("LabelNoEcho"));
        Set(ParamDefines::EchoReceived, 0);
        Poll();
        EXPECT_TRUE(Visible("LabelNoEcho"));
        EXPECT_FALSE(Visible("FrameTarget"));
        EXPECT_EQ(ui_.Text("LabelNoEcho"), QStringLiteral("NO ECHO"));
        EXPECT_EQ(Place("LabelNoEcho").left(), Place("FrameTarget").left());
        EXPECT_EQ(TextColour("LabelNoEcho"), Colours::Of(Colours::Amber, desktop));
        EXPECT_GE(Colours::Contrast(TextColour("LabelNoEcho"), desktop.color(QPalette::Window)),
                  Colours::TextContrast);
        page_.ShowState(ValueState::Stale);
        EXPECT_FALSE(Visible("LabelNoEcho")) << "nobody knows";
    });
}

TEST_F(BasicReadingsTest, TellsTheEchoAndInTheDiametersModeTheDiameter) {
    Set(ParamDefines::EchoStrength, 64);
    Set(ParamDefines::ActualDiameter, 1234);
    Poll();
    EXPECT_EQ(ui_.Text("LabelEcho"), QStringLiteral("Echo\n64 %"));
    EXPECT_FALSE(Visible("LabelDiameter"));
    Set(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    Poll();
    EXPECT_TRUE(Visible("LabelDiameter"));
    EXPECT_EQ(ui_.Text("LabelDiameter"), QStringLiteral("Diameter 12.34\""));
    EXPECT_EQ(ui_.Get<QLabel>("LabelEcho").toolTip(), QStringLiteral("Tag=79"));
    EXPECT_EQ(ui_.Get<QLabel>("LabelDiameter").toolTip(), QStringLiteral("Tag=35"));
    EXPECT_EQ(ui_.Get<QLabel>("LabelNoEcho").toolTip(), QStringLiteral("Tag=38"));
}

TEST_F(BasicReadingsTest, EachReadingFitsIntoItsPlaceAtAnySizeOfThePageAndTheFont) {
    Set(ParamDefines::EchoStrength, 100);
    Set(ParamDefines::ActualDiameter, 65535);
    Set(ParamDefines::AnalogOutputMode, ParamDefines::HyperbolicMode);
    Set(ParamDefines::EchoReceived, 0);
    const QFont usual = QApplication::font();
    for (const int points : {9, 14}) {
        QFont font = usual;
        font.setPointSize(points);
        QApplication::setFont(font);
        for (const QSize size : {QSize(630, 389), QSize(441, 272), QSize(1300, 640), QSize(1890, 1167)}) {
            SCOPED_TRACE(size.width());
            page_.resize(size);
            Poll();
            for (const char *name : {"LabelRelays", "LabelEcho", "LabelNoEcho", "LabelDiameter"}) {
                const auto &label = ui_.Get<QLabel>(name);
                const QFontMetrics metrics(label.font());
                const QStringList lines =
                    label.text().split(label.wordWrap() ? QLatin1Char(' ') : QLatin1Char('\n'));
                for (const QString &line : lines) {
                    EXPECT_LE(metrics.horizontalAdvance(line), label.width()) << name;
                }
                EXPECT_LE(metrics.height() * lines.size(), label.height()) << name;
                EXPECT_TRUE(page_.rect().contains(QRect(label.mapTo(&page_, QPoint()), label.size())))
                    << name;
            }
            for (const int relay : {0, 1}) {
                const QWidget &lamp = Member("LampRelay", relay);
                EXPECT_TRUE(page_.rect().contains(QRect(lamp.mapTo(&page_, QPoint()), lamp.size())));
            }
        }
    }
    QApplication::setFont(usual);
}

TEST_F(BasicReadingsTest, APollPaintsAReadingOnlyWhenItChanges) {
    for (int tick = 0; tick < 5; ++tick) {
        Poll();
    }
    EXPECT_EQ(PaintedByATick(), (std::set<std::string>{"FrameZentrova"}));
    const auto paintedByAPoll = [this] { return PaintedBy([this] { page_.UpdateDisplay(); }); };
    EXPECT_EQ(paintedByAPoll(), std::set<std::string>());
    Set(ParamDefines::Relay2State, 1);
    const std::set<std::string> painted = paintedByAPoll();
    EXPECT_EQ(painted.count("LampRelay(1)"), 1U);
    EXPECT_EQ(painted.count("LampRelay(0)"), 0U);
    EXPECT_EQ(painted.count("FrameGraph"), 0U);
    EXPECT_EQ(painted.count("FrameRange"), 0U);
    EXPECT_EQ(paintedByAPoll(), std::set<std::string>());
}

// Thresholds outside the range. ----------------------------------------------------------------------

class BasicMarksTest : public BasicMarkersTest {
protected:
    BasicMarksTest() {
        Set(ParamDefines::MinRange, 800);
        Set(ParamDefines::MaxRange, 40000);
    }

    QWidget &Mark(int number) { return Member("MarkRelay", number); }
    bool ShowsAmber(int number) {
        const QImage picture = Mark(number).grab().toImage();
        return picture.pixelColor(picture.height() / 2, picture.height() * 2 / 3) ==
               QColor::fromRgb(Colours::Amber.onDark);
    }
};

TEST_F(BasicMarksTest, GiveTheReasonInATipAndToAssistiveClients) {
    Set(57, 41000);
    page_.UpdateDisplay();
    const QString reason =
        QStringLiteral("Relay 2 can't switch here: 410.00\" is beyond Max Range 400.00\".");
    EXPECT_TRUE(Mark(1).isVisible());
    EXPECT_TRUE(ShowsAmber(1));
    EXPECT_EQ(Mark(1).toolTip(), reason);
    EXPECT_EQ(Mark(1).accessibleName(), reason);
    EXPECT_EQ(Marker(1).accessibleDescription(), reason);
    EXPECT_EQ(Marker(1).accessibleName(), QStringLiteral("Relay 2 On Threshold"));
    EXPECT_EQ(Marker(3).accessibleDescription(), QString());
    Set(ParamDefines::MaxRange, 41000);
    page_.UpdateDisplay();
    EXPECT_FALSE(ShowsAmber(1));
    EXPECT_EQ(Marker(1).accessibleDescription(), QString());
}

TEST_F(BasicMarksTest, TheirTipShowsWhereTheyAre) {
    Set(57, 41000);
    page_.UpdateDisplay();
    const QPoint place = Mark(1).rect().center();
    EXPECT_EQ(Chart().childAt(Mark(1).mapToParent(place)), &Mark(1));
    QHelpEvent help(QEvent::ToolTip, place, Mark(1).mapToGlobal(place));
    QApplication::sendEvent(&Mark(1), &help);
    EXPECT_EQ(QToolTip::text(), Mark(1).toolTip());
    QToolTip::hideText();
}

TEST_F(BasicMarksTest, LeaveTheMouseToTheMarkersAndTheFocusToAll) {
    Set(57, 41000);
    page_.UpdateDisplay();
    EXPECT_EQ(Mark(1).focusPolicy(), Qt::NoFocus);
    Drag(LineOf(1), LineOf(1) - 60);
    EXPECT_LT(zentrova_.ParamValue(57), 40000);
    EXPECT_FALSE(Mark(1).isVisible());
    Set(56, 38500); // its marker stands where a mark is
    Set(59, 41000);
    page_.UpdateDisplay();
    Drag(LineOf(0), LineOf(0) - 60);
    EXPECT_LT(On(), 38500);
}

TEST_F(BasicMarksTest, KeepTheNumbersOfCollapsedThresholdsWhole) {
    for (const std::int32_t value : {600, 42000}) {
        Set(57, value);
        Set(59, value);
        Put(value, value);
        for (int one = 0; one < 4; ++one) {
            EXPECT_TRUE(Mark(one).isVisible());
            EXPECT_TRUE(Chart().rect().contains(Mark(one).geometry()));
            for (int other = 0; other < one; ++other) {
                EXPECT_FALSE(Mark(one).geometry().intersects(Mark(other).geometry())) << one << other;
            }
        }
    }
}

// A focused threshold. -------------------------------------------------------------------------------

TEST_F(BasicMarkerKeysTest, AFocusedThresholdShowsItsNameAndValueUntilTheFocusGoes) {
    const char *texts[] = {"Relay 1 On Threshold\n60.00\"", "Relay 2 On Threshold\n240.00\"",
                           "Relay 1 Off Threshold\n72.00\"", "Relay 2 Off Threshold\n264.00\""};
    QTest::keyClick(&Focus(0), Qt::Key_Backtab);
    QWidget *before = QApplication::focusWidget();
    EXPECT_FALSE(Visible("LabelRelayDist"));
    for (const char *text : texts) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_TRUE(Visible("LabelRelayDist"));
        EXPECT_EQ(ui_.Text("LabelRelayDist"), QString::fromLatin1(text));
    }
    before->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(Visible("LabelRelayDist"));
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(BasicMarkerKeysTest, TheLabelOfAFocusedThresholdFollowsThePoll) {
    Focus(1);
    const QRect before = Place("LabelRelayDist");
    Set(57, 12000);
    page_.UpdateDisplay();
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 2 On Threshold\n120.00\""));
    EXPECT_LT(Place("LabelRelayDist").left(), before.left());
}

TEST_F(BasicMarkerKeysTest, AClickedThresholdShowsItsLabelOnlyOnceAKeyMovesIt) {
    Press(LineOf(1));
    Release(LineOf(1));
    ASSERT_TRUE(Marker(1).hasFocus());
    EXPECT_FALSE(Visible("LabelRelayDist"));
    QTest::keyClick(&Marker(1), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_TRUE(Visible("LabelRelayDist"));
    EXPECT_EQ(ui_.Text("LabelRelayDist"), QStringLiteral("Relay 2 On Threshold\n240.01\""));
    Press(LineOf(1));
    Move(LineOf(1)); // desktops send a move with each press
    EXPECT_FALSE(Visible("LabelRelayDist"));
    Release(LineOf(1));
    EXPECT_FALSE(Visible("LabelRelayDist"));
}

TEST_F(BasicMarkerKeysTest, AThresholdThatTheRightButtonFocusesShowsNoLabel) {
    QTest::mouseClick(window_.windowHandle(), Qt::RightButton, {}, At(LineOf(1)));
    Settle();
    EXPECT_TRUE(Marker(1).hasFocus());
    EXPECT_FALSE(Visible("LabelRelayDist"));
}

TEST_F(BasicMarkerKeysTest, AWindowThatBecomesActiveAgainShowsTheLabelThatItShowed) {
    QWidget other;
    other.show();
    const auto leaveAndReturn = [&] {
        for (QWidget *window : {&other, &window_}) {
            window->activateWindow();
            EXPECT_TRUE(QTest::qWaitForWindowActive(window));
            Settle();
        }
    };
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    Focus(1);
    leaveAndReturn();
    EXPECT_TRUE(Marker(1).hasFocus());
    EXPECT_TRUE(Visible("LabelRelayDist"));
    for (const int clicked : {1, 3}) { // the one that has the focus, and another
        Press(LineOf(clicked));
        Release(LineOf(clicked));
        EXPECT_FALSE(Visible("LabelRelayDist"));
        leaveAndReturn();
        EXPECT_TRUE(Marker(clicked).hasFocus());
        EXPECT_FALSE(Visible("LabelRelayDist")) << clicked;
    }
}

TEST_F(BasicMarkerKeysTest, TheEditorOfAThresholdTakesTheLabelsPlace) {
    QTest::keyClick(&Focus(1), Qt::Key_Return);
    EXPECT_FALSE(Visible("LabelRelayDist"));
    QTest::keyClick(&text1_, Qt::Key_Escape);
    EXPECT_TRUE(Marker(1).hasFocus());
    EXPECT_TRUE(Visible("LabelRelayDist"));
}

TEST_F(BasicMarkerKeysTest, AHiddenPageShowsNoLabelWhenItReturns) {
    Focus(1);
    page_.hide();
    Settle();
    page_.show();
    Settle();
    EXPECT_EQ(Visible("LabelRelayDist"), Marker(1).hasFocus());
}

} // namespace ztv
