#include "setup/ui/FormTransmitDelay.h"

#include "tests/helpers/FakeLink.h"
#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace ztv {

class FormTransmitDelayTest : public testing::Test {
protected:
    using Writes = std::vector<std::pair<int, int>>;

    FormTransmitDelayTest() { zentrova_.ConnectTo(&link_); }

    void Open(bool online = true) {
        link_.open = online;
        form_ = std::make_unique<FormTransmitDelay>(zentrova_, link_, dialogs_, help_);
        form_->show();
        form_->activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow() && Ranges().hasFocus(); }));
    }
    Form Ui() const { return Form(*form_); }
    QLineEdit &Ranges() const { return Ui().Get<QLineEdit>("TextSumOfRanges"); }
    QLineEdit &Delays() const { return Ui().Get<QLineEdit>("TextSumOfDelays"); }
    QCheckBox &Save() const { return Ui().Get<QCheckBox>("chkSaveSettings"); }

    // Replaces the text of the box that has the focus.
    static void Type(const char *text) {
        auto &box = dynamic_cast<QLineEdit &>(*QApplication::focusWidget());
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, QString::fromLatin1(text));
    }
    static void Key(Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key);
        Settle();
    }
    void ExpectResults(const char *actualDelay, const char *low, const char *high) const {
        EXPECT_EQ(Ui().Text("LabelActualDelay"), QString::fromLatin1(actualDelay));
        EXPECT_EQ(Ui().Text("TextTransmitDelayLow"), QString::fromLatin1(low));
        EXPECT_EQ(Ui().Text("TextTransmitDelayHigh"), QString::fromLatin1(high));
    }
    bool CanWrite() const { return Ui().Enabled("CommandSetTransmitDelayValues"); }
    void ExpectNotANumber(std::function<void()> whileOpen = {}) {
        dialogs_.Expect(QStringLiteral("Please enter a numeric value."), BoxIcon::Exclamation, BoxButtons::Ok,
                        BoxAnswer::Ok, std::move(whileOpen));
    }
    // Clicks on a control. A real message box opens with the press and swallows the release.
    void ExpectMessageDuringClick(const char *name) {
        QWindow *window = form_->windowHandle();
        auto &control = Ui().Get<QWidget>(name);
        const QPoint place = control.mapTo(form_.get(), control.rect().center());
        ExpectNotANumber([this, window, place] {
            QDialog message(form_.get());
            QTimer::singleShot(0, &message, [&] {
                QTest::mouseRelease(window, Qt::LeftButton, {}, place);
                message.accept();
            });
            message.exec();
        });
        QTest::mousePress(window, Qt::LeftButton, {}, place);
    }
    void ExpectQuestion(BoxAnswer answer, std::function<void()> whileOpen = {}) {
        dialogs_.Expect(QStringLiteral("Are you sure? This should only be done on the Master Unit in a "
                                       "multi-unit installation."),
                        BoxIcon::Question, BoxButtons::YesNo, answer, std::move(whileOpen));
    }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    FakeLink link_;
    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    std::unique_ptr<FormTransmitDelay> form_;
};

TEST_F(FormTransmitDelayTest, HasItsControls) {
    Open();
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("Transmit Delay Calculator"));
    const char *texts[][2] = {
        {"Label1", "Sum of  Max Range values"},
        {"Label2", "(21) Master Transmit Delay (low)"},
        {"Label3", "(22) Master Transmit Delay (high)"},
        {"Label4(0)",
         "In multi-unit installations, the Transmit Delay on the master unit must be set long enough to "
         "allow all slave units to transmit and receive before the master unit re-initiates its own "
         "transmission."},
        {"Label4(1)",
         "Add up each of the Max Range (parameter 25) values in each of the slave units and enter the total "
         "value in the field below."},
        {"Label4(2)",
         "The values below need to be entered into the Transmit Delay settings of the Master unit."},
        {"Label4(3)",
         "Add up each of the Transmit Delay Low (parameter 21) values in each of the slave units and enter "
         "the total value in the field below."},
        {"Label5", "Sum of Delay values"},
        {"TextSumOfRanges", "0.00"},
        {"TextSumOfDelays", "0"},
        {"CommandSetTransmitDelayValues", "Write above values to the Transmit Delay parameters"},
        {"chkSaveSettings", "Save Changes in Zentrova when window closes."},
        {"CommandHelp", "Help"},
        {"CommandClose", "Close"}};
    for (const auto &row : texts) {
        EXPECT_EQ(Ui().Text(row[0]), QString::fromLatin1(row[1]));
    }
    EXPECT_EQ(Save().toolTip(), QStringLiteral("Save parameter changes in Zentrova"));
    EXPECT_TRUE(Save().isChecked());
    EXPECT_FALSE(Ui().Enabled("TextTransmitDelayLow"));
    EXPECT_FALSE(Ui().Enabled("TextTransmitDelayHigh"));
    for (const char *name :
         {"TextSumOfRanges", "TextSumOfDelays", "TextTransmitDelayLow", "TextTransmitDelayHigh",
          "CommandSetTransmitDelayValues", "chkSaveSettings", "CommandHelp", "CommandClose"}) {
        EXPECT_FALSE(Ui().Get<QWidget>(name).accessibleName().isEmpty()) << name;
    }
}

TEST_F(FormTransmitDelayTest, ItsBoxesHaveUnits) {
    Open();
    const struct {
        const char *box, *shown, *spoken;
    } rows[] = {{"TextSumOfRanges", "inches", "inches"},
                {"TextSumOfDelays", "\u00b5s", "microseconds"},
                {"TextTransmitDelayLow", "\u00b5s", "microseconds"},
                {"TextTransmitDelayHigh", "\u00d7 65536 \u00b5s", "times 65536 microseconds"}};
    for (const auto &row : rows) {
        const QByteArray unit = QByteArray(row.box) + "Unit";
        EXPECT_EQ(Ui().Text(unit.constData()), QString::fromUtf8(row.shown));
        EXPECT_EQ(Ui().Get<QWidget>(row.box).accessibleDescription(), QString::fromUtf8(row.spoken));
    }
}

TEST_F(FormTransmitDelayTest, SaysWhatClosingDoes) {
    Open();
    const QSize size = form_->size();
    const auto says = [this](const char *text) {
        EXPECT_EQ(Ui().Text("LabelSaveNote"), QString::fromLatin1(text));
        EXPECT_EQ(Save().accessibleDescription(), QString::fromLatin1(text));
    };
    says("Closing this window makes the sensor save all its settings, even if nothing was written here.");
    Save().click();
    Settle();
    says("Closing this window saves nothing in the sensor.");
    EXPECT_EQ(form_->size(), size);
    Open(false);
    says("Not connected: closing this window saves nothing in a sensor.");
    EXPECT_EQ(form_->size(), size);
}

TEST_F(FormTransmitDelayTest, OpensWithTheOverheadOfOneCycle) {
    Open();
    ExpectResults("3.54 ms", "3536", "0");
    EXPECT_TRUE(CanWrite());
    EXPECT_TRUE(Save().isEnabled());
}

TEST_F(FormTransmitDelayTest, RecalculatesWithEachKey) {
    Open();
    Type("42");
    ExpectResults("9.74 ms", "9736", "0");
    QTest::keyClicks(&Ranges(), QStringLiteral("0"));
    ExpectResults("65.54 ms", "0", "1");
    Key(Qt::Key_Tab);
    Type("1000");
    ExpectResults("66.54 ms", "1000", "1");
}

TEST_F(FormTransmitDelayTest, SelectsABoxAsItGetsTheFocusAndFormatsItAsItIsLeft) {
    Open();
    EXPECT_EQ(Ranges().selectedText(), QStringLiteral("0.00"));
    Type("1.256");
    EXPECT_EQ(Ranges().text(), QStringLiteral("1.256"));
    Key(Qt::Key_Tab);
    EXPECT_EQ(Ranges().text(), QStringLiteral("1.26"));
    EXPECT_TRUE(Delays().hasFocus());
    EXPECT_EQ(Delays().selectedText(), QStringLiteral("0"));
    Type("2.5");
    Key(Qt::Key_Backtab);
    EXPECT_EQ(Delays().text(), QStringLiteral("3"));
    ExpectResults("3.73 ms", "3725", "0"); // from the present texts of the boxes
}

TEST_F(FormTransmitDelayTest, StaysAsItIsWhileAnotherWindowIsActive) {
    Open();
    Type("1.256");
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(WaitUntil([&] { return other.isActiveWindow(); }));
    EXPECT_EQ(Ranges().text(), QStringLiteral("1.256"));
    form_->activateWindow();
    EXPECT_TRUE(WaitUntil([this] { return Ranges().hasFocus(); }));
    EXPECT_EQ(Ranges().selectedText(), QString());
}

TEST_F(FormTransmitDelayTest, EmptiesTheResultsWhileEitherTextIsNoNumber) {
    Open();
    Type("420");
    Type("abc");
    ExpectResults("65.54 ms", "", "");
    EXPECT_FALSE(CanWrite());
    Type("0");
    ExpectResults("3.54 ms", "3536", "0");
    EXPECT_TRUE(CanWrite());
    Key(Qt::Key_Tab);
    Type("-");
    ExpectResults("3.54 ms", "", "");
    EXPECT_FALSE(CanWrite());
    QTest::keyClicks(&Delays(), QStringLiteral("36"));
    ExpectResults("3.50 ms", "3500", "0");
}

TEST_F(FormTransmitDelayTest, StaysEmptyUntilBothAreNumbers) {
    Open();
    Type("abc");
    ExpectNotANumber();
    Key(Qt::Key_Tab);
    Type("1000");
    ExpectResults("3.54 ms", "", "");
    EXPECT_FALSE(CanWrite());
}

TEST_F(FormTransmitDelayTest, TellsOfATextThatIsNoNumberAndLetsTheFocusLeave) {
    Open();
    Type("abc");
    ExpectNotANumber([this] { EXPECT_EQ(Ranges().text(), QStringLiteral("abc")); });
    Key(Qt::Key_Tab);
    EXPECT_TRUE(Delays().hasFocus());
    EXPECT_EQ(Ranges().text(), QStringLiteral("abc"));
    Type("");
    ExpectNotANumber();
    QTest::mouseClick(&Ranges(), Qt::LeftButton);
    Settle();
    EXPECT_TRUE(Ranges().hasFocus());
    EXPECT_EQ(Delays().text(), QString());
}

TEST_F(FormTransmitDelayTest, ActsOnTheClickThatLeavesTheBox) {
    Open();
    Type("abc");
    ExpectNotANumber();
    Ui().Press("CommandClose");
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, ActsOnAClickWhoseReleaseWentToTheMessage) {
    Open();
    Type("abc");
    ExpectMessageDuringClick("CommandClose");
    EXPECT_TRUE(WaitUntil([this] { return !form_->isVisible(); }));
    EXPECT_FALSE(Ui().Get<QPushButton>("CommandClose").isDown());
}

TEST_F(FormTransmitDelayTest, WaitsForTheReleaseThatIsStillToCome) {
    Open();
    Type("abc");
    QWindow *window = form_->windowHandle();
    auto &close = Ui().Get<QPushButton>("CommandClose");
    const QPoint place = close.mapTo(form_.get(), close.rect().center());
    ExpectNotANumber();
    QTest::mousePress(window, Qt::LeftButton, {}, place);
    Settle();
    EXPECT_TRUE(form_->isVisible());
    EXPECT_TRUE(close.isDown());
    QTest::mouseRelease(window, Qt::LeftButton, {}, place);
    Settle();
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, SelectsTheBoxThatWasClickedThoughAMessageCame) {
    Open();
    Type("abc");
    ExpectMessageDuringClick("TextSumOfDelays");
    EXPECT_TRUE(WaitUntil([this] { return Delays().hasSelectedText(); }));
    EXPECT_EQ(form_->focusWidget(), &Delays());
    EXPECT_EQ(Delays().selectedText(), QStringLiteral("0"));
}

TEST_F(FormTransmitDelayTest, AsksNothingWhenItIsClosedByEscape) {
    Open(false);
    Type("abc");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, RefusesToWriteWhatDoesNotFit) {
    Open();
    Key(Qt::Key_Tab);
    Type("-3537");
    ExpectResults("0.00 ms", "-1", "0");
    EXPECT_FALSE(CanWrite());
    Type("61999.5");
    ExpectResults("65.54 ms", "-1", "1");
    EXPECT_FALSE(CanWrite());
    Type("2147480111");
    ExpectResults("2147483.65 ms", "65535", "32767");
    EXPECT_TRUE(CanWrite());
    Type("2147480112");
    EXPECT_EQ(Ui().Text("TextTransmitDelayLow"), QString());
    EXPECT_FALSE(CanWrite());
}

TEST_F(FormTransmitDelayTest, WritesBothParametersAfterAYes) {
    Open();
    Type("420");
    QTest::keyClicks(&Ranges(), QStringLiteral(".01"));
    Save().setChecked(false);
    ExpectQuestion(BoxAnswer::Yes, [this] { EXPECT_EQ(link_.writes, Writes()); });
    Ui().Press("CommandSetTransmitDelayValues");
    EXPECT_EQ(link_.writes, (Writes{{21, 1}, {22, 1}}));
    EXPECT_TRUE(Save().isChecked());
    Ui().Press("CommandClose");
    EXPECT_EQ(link_.writes, (Writes{{21, 1}, {22, 1}, {1, 1}}));
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, SavesNothingWhenTheMarkIsTakenAwayAfterTheWrite) {
    Open();
    ExpectQuestion(BoxAnswer::Yes);
    Ui().Press("CommandSetTransmitDelayValues");
    Save().setChecked(false);
    Ui().Press("CommandClose");
    EXPECT_EQ(link_.writes, (Writes{{21, 3536}}));
}

TEST_F(FormTransmitDelayTest, WritesNothingAfterANo) {
    Open();
    for (const bool save : {true, false}) {
        Save().setChecked(save);
        ExpectQuestion(BoxAnswer::No);
        Ui().Press("CommandSetTransmitDelayValues");
        EXPECT_EQ(Save().isChecked(), save);
    }
    EXPECT_EQ(link_.writes, Writes());
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(FormTransmitDelayTest, SavesOnEveryWayOfClosing) {
    const std::function<void()> ways[] = {[this] { Ui().Press("CommandClose"); }, [] { Key(Qt::Key_Escape); },
                                          [this] { form_->close(); }};
    for (const auto &close : ways) {
        Open();
        close();
        EXPECT_FALSE(form_->isVisible());
        EXPECT_EQ(link_.writes, (Writes{{1, 1}}));
        link_.writes.clear();
        zentrova_.ParamUpdate(1, 0); // as the poll brings it back
        zentrova_.ParamWritePending(1, false);
        zentrova_.ParamUpdate(1, 0);
    }
}

TEST_F(FormTransmitDelayTest, CalculatesOffline) {
    Open(false);
    Type("420");
    ExpectResults("65.54 ms", "0", "1");
    EXPECT_FALSE(CanWrite());
    EXPECT_FALSE(Save().isEnabled());
    EXPECT_TRUE(Save().isChecked());
    Ui().Press("CommandClose");
    EXPECT_EQ(zentrova_.ParamValue(1), 0);
    EXPECT_FALSE(zentrova_.FileChangesNeedSaving());
}

TEST_F(FormTransmitDelayTest, SavesAfterTheValuesThoughItIsClosedWhileTheyWait) {
    Open();
    Type("420");
    link_.holds = true;
    ExpectQuestion(BoxAnswer::Yes);
    Ui().Press("CommandSetTransmitDelayValues");
    zentrova_.ParamValue(23, 1); // another row's write is asked for in between
    Ui().Press("CommandClose");
    EXPECT_FALSE(form_->isVisible());
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{21, 0}, {22, 1}, {23, 1}, {1, 1}}));
}

TEST_F(FormTransmitDelayTest, SavesOnceHoweverOftenItIsClosed) {
    Open();
    link_.holds = true;
    Ui().Press("CommandClose");
    form_->close();
    Ui().Get<QAbstractButton>("CommandClose").click();
    link_.EndWrites(zentrova_);
    EXPECT_EQ(link_.writes, (Writes{{1, 1}}));
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, IsNotClosedBehindItsQuestion) {
    Open();
    Type("420");
    ExpectQuestion(BoxAnswer::Yes, [this] {
        form_->close();
        Ui().Get<QAbstractButton>("CommandClose").click();
        Ui().Get<QAbstractButton>("CommandSetTransmitDelayValues").click(); // asks no second question
    });
    Ui().Press("CommandSetTransmitDelayValues");
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(link_.writes, (Writes{{21, 0}, {22, 1}}));
}

TEST_F(FormTransmitDelayTest, CanBeUsedByKeyboardAlone) {
    Open();
    std::vector<std::string> order;
    for (int i = 0; i < 7; ++i) {
        order.push_back(QApplication::focusWidget()->objectName().toStdString());
        Key(Qt::Key_Tab);
    }
    const std::vector<std::string> expected = {
        "TextSumOfRanges", "TextSumOfDelays", "CommandSetTransmitDelayValues",
        "chkSaveSettings", "CommandHelp",     "CommandClose",
        "TextSumOfRanges"};
    EXPECT_EQ(order, expected);
}

TEST_F(FormTransmitDelayTest, EnterPressesOnlyTheButtonThatHasTheFocus) {
    Open();
    Type("12");
    Key(Qt::Key_Return);
    EXPECT_TRUE(Ranges().hasFocus());
    EXPECT_EQ(Ranges().text(), QStringLiteral("12"));
    Save().setFocus();
    Key(Qt::Key_Return);
    EXPECT_TRUE(form_->isVisible());
    Ui().Get<QWidget>("CommandSetTransmitDelayValues").setFocus();
    ExpectQuestion(BoxAnswer::No);
    Key(Qt::Key_Return);
    Ui().Get<QWidget>("CommandClose").setFocus();
    Key(Qt::Key_Enter);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormTransmitDelayTest, OffersItsHelp) {
    Open(false);
    Ui().Press("CommandHelp");
    EXPECT_TRUE(help_.WasAskedFor(FormTransmitDelay::HelpContextID, *form_));
    Key(Qt::Key_F1);
    EXPECT_TRUE(help_.WasAskedFor(FormTransmitDelay::HelpContextID, *form_));
}

} // namespace ztv
