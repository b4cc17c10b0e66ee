#include "tabs/ui/CheckoutPage.h"

#include "model/ValueState.h"
#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"
#include "widgets/Colours.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QRadioButton>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace ztv {

using ImageListCheckout::Key;

class CheckoutPageTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    CheckoutPageTest() {
        page_.resize(630, 389); // as in the smallest window
        page_.show();
        page_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&page_));
        zentrova_.ConnectTo(&link_);
    }

    static std::string Name(const char *array, int index) {
        return std::string(array) + "(" + std::to_string(index) + ")";
    }
    QRadioButton &Option(const char *array, int index) {
        return ui_.Get<QRadioButton>(Name(array, index).c_str());
    }

    // The index of the selected option, -1 if there is none.
    int Selected(const char *array, int count) {
        int selected = -1;
        for (int index = 0; index < count; ++index) {
            if (Option(array, index).isChecked()) {
                EXPECT_EQ(selected, -1);
                selected = index;
            }
        }
        return selected;
    }
    int SelectedOutput() { return Selected("OptionAnalogOut", 6); }
    int SelectedRange() { return Selected("OptionRange", 2); }
    QString Counter() { return ui_.Get<QPushButton>("CommandNext").property("Tag").toString(); }

    // The dot before the caption, which a user aims at.
    void ClickOption(const char *array, int index) {
        QRadioButton &option = Option(array, index);
        QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
    }

    Writes Take() {
        Settle();
        for (std::int16_t tag = 0; tag < zentrova_.ParamCount(); ++tag) {
            zentrova_.ParamWritePending(tag, false);
        }
        return std::exchange(link_.writes, {});
    }

    void Show(std::int16_t tag, std::int32_t value) {
        zentrova_.ParamUpdate(tag, value);
        page_.UpdateDisplay();
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    QLineEdit manualOutput_;
    CheckoutPage page_{zentrova_, manualOutput_, 40, nullptr};
    Form ui_{page_};
};

// Frames and controls. ------------------------------------------------------------------------------

TEST_F(CheckoutPageTest, HasItsFramesAndControlsWithTheirCaptions) {
    const std::pair<const char *, const char *> frames[] = {
        {"FrameRelays", "Relays"},
        {"FrameClkOut", "Clock Out"},
        {"FrameDigInputs", "Digital Inputs"},
        {"FrameClockSel", "Clock Select"},
        {"FrameAnalogOut", "Analog Output"},
        {"FrameAnalogInput", "Analog Input"},
        {"FrameDistance", "Distance"},
        {"FrameDistRange", "Range"},
    };
    for (const auto &[name, caption] : frames) {
        EXPECT_EQ(ui_.Get<QGroupBox>(name).title(), QString::fromLatin1(caption));
    }
    const std::pair<const char *, const char *> texts[] = {
        {"lblRelay1(0)", "1"},
        {"lblRelay1(1)", "2"},
        {"LabelInputs(0)", "Teach"},
        {"LabelInputs(1)", "Ext Clk In"},
        {"LabelInputs(2)", "Echo Received"},
        {"OptionClockSel(0)", "Internal"},
        {"OptionClockSel(1)", "External"},
        {"OptionAnalogOut(0)", "&0.0 V"},
        {"OptionAnalogOut(1)", "&2.5 V"},
        {"OptionAnalogOut(2)", "&5.0 V"},
        {"OptionAnalogOut(3)", "&7.5 V"},
        {"OptionAnalogOut(4)", "&10.0 V"},
        {"OptionAnalogOut(5)", "&Distance"},
        {"CommandNext", "&Next"},
        {"LabelDist", "420.00\""},
        {"OptionRange(0)", "60\" (5')"},
        {"OptionRange(1)", "420.00\" (35')"},
        {"CommandReInit", "Re-Initialize"},
    };
    for (const auto &[name, text] : texts) {
        EXPECT_EQ(ui_.Text(name), QString::fromLatin1(text)) << name;
    }
}

TEST_F(CheckoutPageTest, PutsEachControlIntoItsFrame) {
    const std::pair<const char *, std::vector<const char *>> homes[] = {
        {"FrameRelays", {"imgRelay(0)", "imgRelay(1)", "lblRelay1(0)", "lblRelay1(1)"}},
        {"FrameClkOut", {"imgClkOut"}},
        {"FrameDigInputs", {"ImageTeachInput", "LabelInputs(0)", "ImageExtClkInStatus", "LabelInputs(1)"}},
        {"FrameClockSel", {"OptionClockSel(0)", "OptionClockSel(1)"}},
        {"FrameAnalogOut", {"OptionAnalogOut(0)", "OptionAnalogOut(5)", "TextCheckoutVoltageOut"}},
        {"FrameAnalogInput", {"TextCheckoutVoltageIn"}},
        {"FrameDistance", {"LabelDist", "ImageNoEcho", "LabelInputs(2)", "FrameDistRange"}},
        {"FrameDistRange", {"OptionRange(0)", "OptionRange(1)"}},
        {"TabFrame(5)", {"CommandReInit"}},
    };
    for (const auto &[home, controls] : homes) {
        for (const char *control : controls) {
            EXPECT_EQ(ui_.Get<QWidget>(control).parentWidget()->objectName(), QString::fromLatin1(home))
                << control;
        }
    }
    for (const char *frame : {"FrameRelays", "FrameClkOut"}) {
        QStringList captions;
        for (const QLabel *label : ui_.Get<QWidget>(frame).findChildren<QLabel *>()) {
            captions += label->text();
        }
        const int switches = frame == std::string("FrameRelays") ? 2 : 1;
        EXPECT_EQ(captions.count(QStringLiteral("Off")), switches);
        EXPECT_EQ(captions.count(QStringLiteral("On")), switches);
    }
}

TEST_F(CheckoutPageTest, StartsWithNothingSelected) {
    EXPECT_EQ(SelectedOutput(), -1);
    EXPECT_EQ(SelectedRange(), -1);
    EXPECT_EQ(Counter(), QStringLiteral("0"));
    EXPECT_TRUE(Take().empty());
}

TEST_F(CheckoutPageTest, OnlyShowsWhatCanNotBeChanged) {
    for (const char *name :
         {"OptionClockSel(0)", "OptionClockSel(1)", "TextCheckoutVoltageOut", "TextCheckoutVoltageIn"}) {
        EXPECT_FALSE(ui_.Enabled(name)) << name;
        const QPalette palette = ui_.Get<QWidget>(name).palette();
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText}) {
            EXPECT_EQ(palette.color(QPalette::Disabled, role), palette.color(QPalette::Active, role));
        }
    }
    page_.UpdateDisplay();
    ClickOption("OptionClockSel", 1);
    EXPECT_TRUE(Option("OptionClockSel", 0).isChecked());
}

TEST_F(CheckoutPageTest, ShowsAllOfItInFullFromTheSmallestWindowOn) {
    for (const QSize size : {QSize(630, 389), QSize(1200, 700), QSize(1800, 800)}) {
        page_.resize(size);
        page_.UpdateDisplay();
        Settle();
        EXPECT_EQ(page_.size(), size);
        for (QWidget *widget : page_.findChildren<QWidget *>()) {
            if (widget->objectName() == QStringLiteral("LabelDist")) {
                continue;
            }
            const QSize needed = widget->minimumSizeHint();
            EXPECT_GE(widget->width(), needed.width()) << widget->objectName().toStdString();
            EXPECT_GE(widget->height(), needed.height()) << widget->objectName().toStdString();
            EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()))
                << widget->objectName().toStdString();
        }
        const auto &number = ui_.Get<QLabel>("LabelDist");
        EXPECT_LE(QFontMetrics(number.font()).horizontalAdvance(QStringLiteral("420.00\"")), number.width());
        EXPECT_LE(QFontMetrics(number.font()).capHeight(), number.height());
        EXPECT_GT(QFontMetrics(number.font()).capHeight(), 40);
    }
}

// The display. --------------------------------------------------------------------------------------

TEST_F(CheckoutPageTest, ShowsTheInputsInRed) {
    const std::pair<const char *, int> inputs[] = {{"ImageTeachInput", 18}, {"ImageExtClkInStatus", 19}};
    for (const auto &[name, tag] : inputs) {
        SCOPED_TRACE(name);
        const auto &picture = ui_.Get<Indicator>(name);
        for (const auto &[value, key] :
             {std::pair(1, Key::Red), {0, Key::Gray}, {1, Key::Red}, {2, Key::Gray}}) {
            Show(static_cast<std::int16_t>(tag), value);
            EXPECT_EQ(picture.Picture(), key);
        }
    }
}

TEST_F(CheckoutPageTest, ShowsTheEchoInGreen) {
    for (const auto &[value, key] : {std::pair(1, Key::Green), {0, Key::Gray}, {1, Key::Green}}) {
        Show(38, value);
        EXPECT_EQ(ui_.Get<Indicator>("ImageNoEcho").Picture(), key);
    }
}

TEST_F(CheckoutPageTest, ShowsWhatTheRelaysDoAndNotWhatTheyWereTold) {
    for (int relay = 0; relay < 2; ++relay) {
        const auto &button = ui_.Get<SwitchButton>(Name("imgRelay", relay).c_str());
        const auto state = static_cast<std::int16_t>(60 + relay);
        const auto command = static_cast<std::int16_t>(54 + relay);
        Show(state, 0);
        Show(command, 1);
        EXPECT_EQ(button.Picture(), Key::Off);
        Show(state, 1);
        EXPECT_EQ(button.Picture(), Key::On);
        Show(command, 0);
        EXPECT_EQ(button.Picture(), Key::On);
        Show(state, 2);
        EXPECT_EQ(button.Picture(), Key::Off);
    }
}

TEST_F(CheckoutPageTest, ShowsTheClockOutputAsTheTableHasIt) {
    const auto &button = ui_.Get<SwitchButton>("imgClkOut");
    for (const auto &[value, key] : {std::pair(1, Key::On), {0, Key::Off}, {1, Key::On}, {2, Key::Off}}) {
        Show(23, value);
        EXPECT_EQ(button.Picture(), key);
    }
    ui_.Press("imgClkOut");
    EXPECT_EQ(zentrova_.ParamValue(23), 0);
    ui_.Press("imgClkOut");
    EXPECT_EQ(button.Picture(), Key::Off); // until the next refresh
    page_.UpdateDisplay();
    EXPECT_EQ(button.Picture(), Key::On);
}

TEST_F(CheckoutPageTest, ShowsTheExternalClockForOneOnly) {
    for (const auto &[value, index] : {std::pair(1, 1), {0, 0}, {1, 1}, {2, 0}, {-1, 0}, {1, 1}}) {
        Show(20, value);
        EXPECT_EQ(Selected("OptionClockSel", 2), index) << value;
    }
    EXPECT_TRUE(Take().empty());
}

TEST_F(CheckoutPageTest, ShowsTheDistanceAndTheVoltages) {
    Show(32, 106);
    Show(46, 1000);
    Show(48, 5);
    EXPECT_EQ(ui_.Text("LabelDist"), QStringLiteral("1.06\""));
    EXPECT_EQ(ui_.Text("TextCheckoutVoltageOut"), QStringLiteral("10.00V"));
    EXPECT_EQ(ui_.Text("TextCheckoutVoltageIn"), QStringLiteral("0.05V"));
}

TEST_F(CheckoutPageTest, KeepsTheManualOutputOfTheBasicTabCurrent) {
    Show(40, 4095);
    EXPECT_EQ(manualOutput_.text(), QStringLiteral("4095"));
    CheckoutPage other(zentrova_, manualOutput_, 37, nullptr);
    zentrova_.ParamUpdate(37, 1000);
    other.UpdateDisplay();
    EXPECT_EQ(manualOutput_.text(), QStringLiteral("10.00V"));
}

TEST_F(CheckoutPageTest, OnlyPublishesItsStateInProperties) {
    auto &next = ui_.Get<QPushButton>("CommandNext");
    ClickOption("OptionAnalogOut", 2);
    next.setProperty("Tag", QStringLiteral("nonsense"));
    next.click();
    EXPECT_EQ(SelectedOutput(), 3);
    EXPECT_EQ(Counter(), QStringLiteral("3"));
    manualOutput_.setProperty("Tag", QStringLiteral("37"));
    Show(40, 3072);
    EXPECT_EQ(manualOutput_.text(), QStringLiteral("3072"));
}

// The analog output. --------------------------------------------------------------------------------

TEST_F(CheckoutPageTest, WritesWhatAnOptionSaysWhenItIsClicked) {
    const std::pair<int, Writes> clicks[] = {
        {1, {{39, 0}, {40, 1024}}}, {2, {{40, 2048}}}, {3, {{40, 3072}}},
        {4, {{40, 4095}}},          {0, {{40, 0}}},    {5, {{39, 1}}},
    };
    for (const auto &[index, writes] : clicks) {
        ClickOption("OptionAnalogOut", index);
        EXPECT_EQ(Take(), writes) << index;
        EXPECT_EQ(SelectedOutput(), index);
        EXPECT_EQ(Counter(), QString::number(index));
    }
}

TEST_F(CheckoutPageTest, RunsNoClickForTheOptionThatIsSelected) {
    ClickOption("OptionAnalogOut", 3);
    Take();
    zentrova_.ParamUpdate(39, 2);
    zentrova_.ParamUpdate(40, 7);
    ClickOption("OptionAnalogOut", 3);
    EXPECT_TRUE(Take().empty());
}

TEST_F(CheckoutPageTest, FollowsTheDistanceAgainWhenItIsEntered) {
    Show(39, 2);
    page_.Entered();
    EXPECT_EQ(link_.writes, (Writes{{39, 1}})); // at once
    EXPECT_EQ(Take().size(), 1U);
    EXPECT_EQ(Counter(), QStringLiteral("5"));
    zentrova_.ParamUpdate(39, 2);
    page_.Entered();
    EXPECT_TRUE(Take().empty());
    ClickOption("OptionAnalogOut", 0);
    Take();
    page_.Entered();
    EXPECT_EQ(Take(), (Writes{{39, 1}}));
}

TEST_F(CheckoutPageTest, WalksThroughTheOptions) {
    page_.Entered();
    Take();
    zentrova_.ParamUpdate(40, 7);
    const std::pair<int, Writes> steps[] = {
        {0, {{39, 0}, {40, 0}}}, {1, {{40, 1024}}}, {2, {{40, 2048}}},       {3, {{40, 3072}}},
        {4, {{40, 4095}}},       {5, {{39, 1}}},    {0, {{39, 0}, {40, 0}}},
    };
    for (const auto &[index, writes] : steps) {
        ui_.Press("CommandNext");
        EXPECT_EQ(Take(), writes) << index;
        EXPECT_EQ(SelectedOutput(), index);
        EXPECT_EQ(Counter(), QString::number(index));
    }
}

TEST_F(CheckoutPageTest, CountsFromTheDesignValueBeforeAnyOptionIsSelected) {
    ui_.Press("CommandNext");
    EXPECT_EQ(SelectedOutput(), 1);
    EXPECT_EQ(Counter(), QStringLiteral("1"));
}

// Relays, clock, range, re-initialise. --------------------------------------------------------------

TEST_F(CheckoutPageTest, TogglesTheRelays) {
    for (int relay = 0; relay < 2; ++relay) {
        const std::string name = Name("imgRelay", relay);
        ui_.Press(name.c_str());
        EXPECT_EQ(Take(), (Writes{{54 + relay, 1}}));
        ui_.Press(name.c_str());
        EXPECT_EQ(Take(), (Writes{{54 + relay, 0}}));
        zentrova_.ParamUpdate(static_cast<std::int16_t>(54 + relay), 3);
        ui_.Press(name.c_str());
        EXPECT_EQ(Take(), (Writes{{54 + relay, 0}}));
    }
    EXPECT_EQ(SelectedOutput(), -1);
}

TEST_F(CheckoutPageTest, PutsTheOutputToItsFullScaleBeforeTheClockIsSwitched) {
    page_.Entered();
    Take();
    ui_.Press("imgClkOut");
    EXPECT_EQ(Take(), (Writes{{39, 0}, {40, 4095}, {23, 1}}));
    EXPECT_EQ(SelectedOutput(), 4);
    EXPECT_EQ(Counter(), QStringLiteral("4"));
    ui_.Press("imgClkOut");
    EXPECT_EQ(Take(), (Writes{{23, 0}}));
}

TEST_F(CheckoutPageTest, SetsTheEndsOfARange) {
    ClickOption("OptionRange", 0);
    EXPECT_EQ(Take(), (Writes{{29, 6000}, {25, 6200}}));
    ClickOption("OptionRange", 1);
    EXPECT_EQ(Take(), (Writes{{25, 42000}, {29, 42000}}));
    ClickOption("OptionRange", 1);
    EXPECT_TRUE(Take().empty());
    EXPECT_EQ(SelectedRange(), 1);
}

TEST_F(CheckoutPageTest, ReinitialisesAndClearsTheRangeWithoutItsWrites) {
    page_.Entered();
    ClickOption("OptionRange", 0);
    ClickOption("OptionAnalogOut", 2);
    Take();
    ui_.Press("CommandReInit");
    EXPECT_EQ(Take(), (Writes{{39, 1}, {3, 1}}));
    EXPECT_EQ(SelectedRange(), -1);
    EXPECT_EQ(SelectedOutput(), 5);

    zentrova_.ParamUpdate(3, 0);
    ClickOption("OptionRange", 1);
    Take();
    ui_.Press("CommandReInit");
    EXPECT_EQ(Take(), (Writes{{3, 1}})); // the output follows the distance already
    EXPECT_EQ(SelectedRange(), -1);

    ClickOption("OptionRange", 0); // one at a time again
    ClickOption("OptionRange", 1);
    EXPECT_EQ(SelectedRange(), 1);
}

TEST_F(CheckoutPageTest, SendsEachOfTheClicksThatAreMadeWhileAWriteWaits) {
    page_.Entered();
    Take();
    link_.holds = true;
    ui_.Press("imgClkOut");
    ClickOption("OptionAnalogOut", 2);
    ui_.Press("imgRelay(0)");
    ui_.Press("CommandNext");
    ui_.Press("CommandReInit");
    link_.EndWrites(zentrova_);
    EXPECT_EQ(Take(),
              (Writes{{39, 0}, {40, 4095}, {23, 1}, {40, 2048}, {54, 1}, {40, 3072}, {39, 1}, {3, 1}}));
    EXPECT_EQ(SelectedOutput(), 5);
    EXPECT_EQ(Counter(), QStringLiteral("5"));
}

// Keyboard and assistive clients. -------------------------------------------------------------------

TEST_F(CheckoutPageTest, CanBeUsedByKeyboardAlone) {
    page_.Entered();
    Take();
    QStringList visited;
    ui_.Get<QWidget>("imgRelay(0)").setFocus();
    for (int i = 0; i < 7; ++i) {
        visited += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(u' '), QStringLiteral("imgRelay(0) imgRelay(1) imgClkOut OptionAnalogOut(5) "
                                                 "CommandNext OptionRange(0) CommandReInit"));
    for (const auto &[name, writes] : {std::pair("imgRelay(1)", Writes{{55, 1}}),
                                       {"imgClkOut", Writes{{39, 0}, {40, 4095}, {23, 1}}},
                                       {"OptionRange(1)", Writes{{25, 41000}, {25, 42000}, {29, 42000}}}}) {
        auto &control = ui_.Get<QWidget>(name);
        if (name == std::string("OptionRange(1)")) {
            zentrova_.ParamValue(25, 41000);
        }
        control.setFocus();
        QTest::keyClick(&control, Qt::Key_Space);
        EXPECT_EQ(Take(), writes) << name;
    }
    QTest::keyClick(&page_, Qt::Key_7, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return SelectedOutput() == 3; }));
    EXPECT_EQ(Take(), (Writes{{40, 3072}}));
}

TEST_F(CheckoutPageTest, LeavesTheRangeWithinReachOfTheKeyboardAfterItWasCleared) {
    ClickOption("OptionRange", 1);
    ui_.Press("CommandReInit");
    Take();
    ui_.Get<QWidget>("CommandNext").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("OptionRange(0)"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_EQ(SelectedRange(), 0);
}

TEST_F(CheckoutPageTest, CanBeReadOutWithoutItsPictures) {
    Show(60, 1);
    Show(61, 0);
    Show(18, 1);
    Show(19, 0);
    Show(38, 1);
    Show(23, 0);
    struct Case {
        const char *control;
        const char *name;
        const char *state;
    };
    const Case cases[] = {
        {"imgRelay(0)", "Relay 1", "on"},
        {"imgRelay(1)", "Relay 2", "off"},
        {"imgClkOut", "Clock Out", "off"},
        {"ImageTeachInput", "Teach", "on"},
        {"ImageExtClkInStatus", "Ext Clk In", "off"},
        {"ImageNoEcho", "Echo Received", "on"},
    };
    for (const Case &c : cases) {
        QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(&ui_.Get<QWidget>(c.control));
        EXPECT_EQ(seen->text(QAccessible::Name), QString::fromLatin1(c.name));
        EXPECT_EQ(seen->text(QAccessible::Description), QString::fromLatin1(c.state)) << c.control;
    }
    QAccessibleInterface *relay = QAccessible::queryAccessibleInterface(&ui_.Get<QWidget>("imgRelay(1)"));
    EXPECT_EQ(relay->role(), QAccessible::Button);
    relay->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(WaitUntil([this] { return zentrova_.ParamValue(55) == 1; }));
    QAccessibleInterface *voltage =
        QAccessible::queryAccessibleInterface(&ui_.Get<QWidget>("TextCheckoutVoltageIn"));
    EXPECT_EQ(voltage->text(QAccessible::Name), QStringLiteral("Analog Input"));
}

TEST_F(CheckoutPageTest, DrawsEachStateInAnotherShape) {
    const auto shape = [](Key key) {
        // A picture without its colours.
        return ImageListCheckout::Picture(key).pixmap(48, 48).toImage().convertToFormat(
            QImage::Format_Grayscale8);
    };
    EXPECT_NE(shape(Key::Red), shape(Key::Gray));
    EXPECT_NE(shape(Key::Green), shape(Key::Gray));
    EXPECT_NE(shape(Key::Red), shape(Key::Green));
    EXPECT_NE(shape(Key::On), shape(Key::Off));
}

namespace {

class PaintCounter : public QObject {
public:
    int paints = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

TEST_F(CheckoutPageTest, PaintsAnIndicatorOnlyWhenItChanges) {
    Show(ParamDefines::EchoReceived, 1);
    Settle();
    PaintCounter counter;
    ui_.Get<QWidget>("ImageNoEcho").installEventFilter(&counter);
    ui_.Get<QWidget>("imgRelay(0)").installEventFilter(&counter);
    page_.UpdateDisplay();
    Settle();
    EXPECT_EQ(counter.paints, 0);
    Show(ParamDefines::EchoReceived, 0);
    EXPECT_TRUE(WaitUntil([&counter] { return counter.paints == 1; }));
}

// Values that aren't live. ---------------------------------------------------------------------------

TEST_F(CheckoutPageTest, GreysWhatIsMeasuredAloneWhileItIsNotLive) {
    for (const int tag : {18, 19, 20, 23, 38, 60, 61}) {
        zentrova_.ParamUpdate(static_cast<std::int16_t>(tag), 1);
    }
    page_.UpdateDisplay();
    const auto colourful = [this](const std::string &name) {
        const QImage picture = ui_.Get<QWidget>(name.c_str()).grab().toImage();
        int most = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor pixel = picture.pixelColor(x, y);
                most = std::max(most, std::max({pixel.red(), pixel.green(), pixel.blue()}) -
                                          std::min({pixel.red(), pixel.green(), pixel.blue()}));
            }
        }
        return most > 60;
    };
    const auto textOf = [this](const char *name) {
        return ui_.Get<QLineEdit>(name).palette().color(QPalette::Disabled, QPalette::Text);
    };
    const QColor grey = Colours::LegibleDisabledText(page_.palette());
    const QColor text = page_.palette().color(QPalette::Text);
    const char *const measured[] = {"ImageTeachInput", "ImageExtClkInStatus", "ImageNoEcho", "imgRelay(0)",
                                    "imgRelay(1)"};
    const char *const voltages[] = {"TextCheckoutVoltageOut", "TextCheckoutVoltageIn"};
    for (const ValueState state : {ValueState::NeverRead, ValueState::Stale, ValueState::Held}) {
        page_.ShowState(ValueState::Live);
        for (const char *name : measured) {
            EXPECT_TRUE(colourful(name)) << name;
        }
        for (const char *name : voltages) {
            EXPECT_EQ(textOf(name), text) << name;
        }
        page_.ShowState(state);
        for (const char *name : measured) {
            EXPECT_FALSE(colourful(name)) << name;
            EXPECT_EQ(ui_.Get<QWidget>(name).accessibleDescription(), QStringLiteral("on"))
                << "the last values stand";
        }
        for (const char *name : voltages) {
            EXPECT_EQ(textOf(name), grey) << name;
        }
        EXPECT_TRUE(colourful("imgClkOut")) << "a setting";
        EXPECT_TRUE(ui_.Get<QWidget>("imgRelay(0)").isEnabled());
    }
}

} // namespace ztv
