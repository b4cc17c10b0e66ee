#include "tabs/ui/FormEdit.h"

#include "tests/helpers/Form.h"
#include "tests/helpers/HelpOfForm.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/ScriptedDialogs.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace ztv {

class FormEditTest : public testing::Test {
protected:
    FormEditTest() {
        QObject::connect(&rules_, &EntryRules::Written, [this] { ++written_; });
    }

    void Open(const char *text = "0", int rawMin = 0, int rawMax = 4095) {
        form_ = std::make_unique<FormEdit>(rules_, dialogs_, help_);
        form_->SetEntry(QString::fromLatin1(text), QStringLiteral(" 85"));
        form_->RawMin = static_cast<std::int16_t>(rawMin);
        form_->RawMax = static_cast<std::int16_t>(rawMax);
        form_->EngMin = 0;
        form_->EngMax = 10;
        form_->show();
        form_->activateWindow();
        EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow() && Raw().hasFocus(); }));
    }
    Form Ui() const { return Form(*form_); }
    QLineEdit &Raw() const { return Ui().Get<QLineEdit>("TextDataVal(0)"); }
    QLineEdit &Volts() const { return Ui().Get<QLineEdit>("TextDataVal(1)"); }

    // Replaces the text of the box that has the focus.
    static void Type(const char *text) {
        auto &box = dynamic_cast<QLineEdit &>(*QApplication::focusWidget());
        box.selectAll();
        QTest::keyClicks(&box, QString::fromLatin1(text));
    }
    static void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        Settle();
    }
    void ChooseVolts() {
        auto &option = Ui().Get<QRadioButton>("OptionDataType(1)");
        QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(8, option.height() / 2));
        Settle();
        EXPECT_TRUE(Volts().hasFocus());
    }
    int Value() const { return zentrova_.ParamValue(85); }

    ClassZentrova zentrova_{ShippedPresetsFolder()};
    ScriptedDialogs dialogs_;
    HelpOfForm help_;
    EntryRules rules_{zentrova_, dialogs_};
    std::unique_ptr<FormEdit> form_;
    int written_ = 0;
};

TEST_F(FormEditTest, OpensForTheRawValueAndShowsItsVolts) {
    Open("2048");
    EXPECT_EQ(form_->windowTitle(), QStringLiteral("Enter Value"));
    EXPECT_EQ(Ui().Text("OptionDataType(0)"), QStringLiteral("&Raw"));
    EXPECT_EQ(Ui().Text("OptionDataType(1)"), QStringLiteral("&Volts"));
    EXPECT_EQ(Ui().Text("CommandOK"), QStringLiteral("&OK"));
    EXPECT_EQ(Ui().Text("CommandCancel"), QStringLiteral("&Cancel"));
    EXPECT_TRUE(Ui().Get<QRadioButton>("OptionDataType(0)").isChecked());
    EXPECT_TRUE(Raw().isEnabled());
    EXPECT_FALSE(Volts().isEnabled());
    EXPECT_EQ(Raw().text(), QStringLiteral("2048"));
    EXPECT_EQ(Raw().selectedText(), QStringLiteral("2048"));
    EXPECT_EQ(Raw().property("Tag").toString(), QStringLiteral(" 85"));
    EXPECT_EQ(Volts().text(), QStringLiteral("5.00"));
}

TEST_F(FormEditTest, SwitchingMovesTheFocusToTheOtherBoxWithItsTextSelected) {
    Open("1024");
    ChooseVolts();
    EXPECT_EQ(Volts().selectedText(), QStringLiteral("2.50"));
    EXPECT_FALSE(Raw().isEnabled());
    EXPECT_EQ(Raw().text(), QStringLiteral("1024")); // still shows its value
    Key(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return Raw().hasFocus(); }));
    EXPECT_FALSE(Volts().isEnabled());
    Key(Qt::Key_V, Qt::AltModifier);
    EXPECT_TRUE(WaitUntil([this] { return Volts().hasFocus(); }));
    EXPECT_EQ(Volts().selectedText(), Volts().text());
}

TEST_F(FormEditTest, ConvertsFromTheRawBoxAsItIsLeft) {
    Open();
    for (const auto &[raw, volts] : {std::pair{"2048", "5.00"},
                                     {"0", "0.00"},
                                     {"4095", "10.00"},
                                     {"1", "0.00"},
                                     {"3", "0.01"},
                                     {"2047.5", "5.00"},
                                     {"1.024e3", "2.50"}}) {
        Type(raw);
        Key(Qt::Key_Tab);
        EXPECT_FALSE(Raw().hasFocus());
        EXPECT_EQ(Volts().text(), QString::fromLatin1(volts)) << raw;
        EXPECT_EQ(Raw().text(), QString::fromLatin1(raw));
        Raw().setFocus();
    }
}

TEST_F(FormEditTest, ConvertsFromTheVoltsBoxAsItIsLeft) {
    Open();
    ChooseVolts();
    for (const auto &[volts, raw, shown] : {std::tuple{"5", "2047.5", "5.00"},
                                            {"0", "0", "0.00"},
                                            {"10", "4095", "10.00"},
                                            {"2.5", "1023.75", "2.50"},
                                            {"3.336", "1366.092", "3.34"},
                                            {" 1 ", "409.5", "1.00"}}) {
        Type(volts);
        Key(Qt::Key_Tab);
        EXPECT_EQ(Raw().text(), QString::fromLatin1(raw)) << volts;
        EXPECT_EQ(Volts().text(), QString::fromLatin1(shown));
        Volts().setFocus();
    }
    EXPECT_EQ(written_, 0);
}

TEST_F(FormEditTest, ClipsToOneValueWhereTheRangeIsEmpty) {
    Open("7", 7, 7);
    EXPECT_EQ(Volts().text(), QStringLiteral("0.00"));
    ChooseVolts();
    Type("4");
    Key(Qt::Key_Tab);
    EXPECT_EQ(Raw().text(), QStringLiteral("7"));
}

TEST_F(FormEditTest, KeepsAnInvalidEntryInItsBox) {
    Open("12");
    const QString message =
        QStringLiteral("Please enter a numeric value between\n0 and 4095 for the raw value.");
    for (const char *text : {"4096", "-1", "abc"}) {
        Type(text);
        dialogs_.ExpectNotice(message);
        Key(Qt::Key_Tab);
        EXPECT_TRUE(Raw().hasFocus());
        EXPECT_EQ(Raw().selectedText(), QString::fromLatin1(text));
        EXPECT_EQ(Volts().text(), QStringLiteral("0.03"));
    }
    dialogs_.ExpectNotice(message);
    Ui().Press("CommandOK");
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(written_, 0);
    Type("0");

    ChooseVolts();
    const QString voltsMessage =
        QStringLiteral("Please enter a numeric value between\n0 and 10 for the formatted value.");
    for (const char *text : {"10.001", "-0.01", "5V"}) {
        Type(text);
        dialogs_.ExpectNotice(voltsMessage);
        Key(Qt::Key_Tab);
        EXPECT_TRUE(Volts().hasFocus());
        EXPECT_EQ(Volts().selectedText(), QString::fromLatin1(text));
        EXPECT_EQ(Raw().text(), QStringLiteral("0"));
    }
    Key(Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(FormEditTest, WritesTheRawValue) {
    for (const bool byKey : {false, true}) {
        Open();
        Type(byKey ? "77" : "78");
        if (byKey) {
            Key(Qt::Key_Return);
        } else {
            Ui().Press("CommandOK");
        }
        EXPECT_FALSE(form_->isVisible());
        EXPECT_EQ(Value(), byKey ? 77 : 78);
    }
    EXPECT_EQ(written_, 2);
}

TEST_F(FormEditTest, WritesTheRoundedRawValueOfVolts) {
    for (const auto &[volts, raw] : {std::pair{"5", 2048}, {"1", 410}, {"3", 1229}, {"10", 4095}}) {
        for (const bool byKey : {false, true}) {
            Open();
            zentrova_.ParamUpdate(85, 0);
            ChooseVolts();
            Type(volts);
            if (byKey) {
                Key(Qt::Key_Return);
            } else {
                Ui().Press("CommandOK");
            }
            EXPECT_FALSE(form_->isVisible());
            EXPECT_EQ(Value(), raw) << volts;
        }
    }
}

TEST_F(FormEditTest, StaysOpenWhenTheRowRefuses) {
    Open("0", 0, 5000); // wider than the row
    Type("4096");
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 0 and 4095"), BoxIcon::None,
                          QString());
    Ui().Press("CommandOK");
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(Raw().selectedText(), QStringLiteral("4096"));
    EXPECT_EQ(Value(), 2048);
}

// A sensor with other firmware may have such a value.
TEST_F(FormEditTest, OpensOnAValueOutsideTheRawRange) {
    for (const auto &[text, rawMin, volts] :
         {std::tuple{"5000", 0, "10.00"}, {"4096", 0, "10.00"}, {"3", 100, "0.00"}, {"-1", 0, "0.00"}}) {
        Open(text, rawMin);
        EXPECT_EQ(Raw().selectedText(), QString::fromLatin1(text));
        EXPECT_EQ(Volts().text(), QString::fromLatin1(volts));
        const QString refusal =
            QStringLiteral("Please enter a numeric value between\n%1 and 4095 for the raw value.")
                .arg(rawMin);
        dialogs_.ExpectNotice(refusal);
        Key(Qt::Key_Tab); // the box can't be left
        EXPECT_TRUE(Raw().hasFocus());
        dialogs_.ExpectNotice(refusal);
        QTest::mouseClick(&Ui().Get<QRadioButton>("OptionDataType(1)"), Qt::LeftButton, {}, QPoint(8, 8));
        Settle();
        EXPECT_TRUE(Ui().Get<QRadioButton>("OptionDataType(0)").isChecked());
        EXPECT_EQ(Value(), 2048);
        Type("200");
        Key(Qt::Key_Return);
        EXPECT_FALSE(form_->isVisible());
        EXPECT_EQ(Value(), 200);
        zentrova_.ParamUpdate(85, 2048);
    }
    EXPECT_EQ(written_, 4);
}

TEST_F(FormEditTest, ClosesOnAValueOutsideTheRawRangeWithoutWritingIt) {
    Open("5000");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(form_->isVisible());
    Open("5000");
    dialogs_.ExpectNotice(QStringLiteral("Please enter a value between 0 and 4095"), BoxIcon::None,
                          QString());
    Form(*form_).Get<QPushButton>("CommandOK").click(); // pressed as an assistive client does
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(written_, 0);
    EXPECT_EQ(Value(), 2048);
}

TEST_F(FormEditTest, CancelWritesNothing) {
    Open("2048");
    Type("77");
    Key(Qt::Key_Tab);
    Ui().Press("CommandCancel");
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(Value(), 2048);
    EXPECT_EQ(written_, 0);
}

TEST_F(FormEditTest, CanBeReachedByKeyboardAlone) {
    Open();
    std::vector<std::string> order;
    for (int i = 0; i < 5; ++i) {
        order.push_back(QApplication::focusWidget()->objectName().toStdString());
        Key(Qt::Key_Tab);
    }
    const std::vector<std::string> expected = {"TextDataVal(0)", "CommandOK", "CommandCancel",
                                               "OptionDataType(0)", "TextDataVal(0)"};
    EXPECT_EQ(order, expected);
}

// Presses as an assistive client does, which leaves the focus in the box.
TEST_F(FormEditTest, ChecksAndConvertsABoxThatIsPressedPast) {
    Open("0");
    ChooseVolts();
    Type("5");
    Ui().Get<QPushButton>("CommandOK").click();
    EXPECT_FALSE(form_->isVisible());
    EXPECT_EQ(Value(), 2048);

    Open("0");
    ChooseVolts();
    Type("11");
    dialogs_.ExpectNotice(
        QStringLiteral("Please enter a numeric value between\n0 and 10 for the formatted value."));
    Ui().Get<QPushButton>("CommandOK").click();
    EXPECT_TRUE(form_->isVisible());
    EXPECT_EQ(Volts().selectedText(), QStringLiteral("11"));
    EXPECT_EQ(Value(), 2048);
}

// Two decimals are shown, all are written.
TEST_F(FormEditTest, ConvertsVoltsOnceForTheButton) {
    for (const bool byKey : {false, true}) {
        Open("0");
        zentrova_.ParamUpdate(85, 0);
        ChooseVolts();
        Type("5.123"); // 2097.87; 5.12 would be 2096.64
        if (byKey) {
            Key(Qt::Key_Return);
        } else {
            Ui().Press("CommandOK");
        }
        EXPECT_EQ(Value(), 2098);
    }
}

TEST_F(FormEditTest, ConvertsNothingOfARowThatIsNoPlainNumber) {
    Open("1 of 4");
    EXPECT_EQ(Raw().text(), QStringLiteral("1 of 4"));
    EXPECT_EQ(Volts().text(), QString());
}

TEST_F(FormEditTest, ComesBackFromBeingMinimisedWithWhatIsTyped) {
    Open("1024");
    ChooseVolts();
    Type("7");
    form_->showMinimized();
    Settle();
    form_->showNormal();
    form_->activateWindow();
    EXPECT_TRUE(WaitUntil([this] { return form_->isActiveWindow() && Volts().hasFocus(); }));
    EXPECT_EQ(Volts().text(), QStringLiteral("7"));
    EXPECT_EQ(Raw().text(), QStringLiteral("1024"));
}

} // namespace ztv
