#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

namespace ztv {

// Runs the transmit delay calculator against a sensor and compares the writes in their order on the wire.
class TransmitDelaySessionTest : public SessionTest {
protected:
    // Opens the calculator from the menu, calls `work` with it and returns when it is closed.
    void WithCalculator(std::function<void(const Form &)> work) {
        bool closed = false;
        WhenDialogOpens([&](QWidget &dialog) {
            QObject::connect(&dialog, &QObject::destroyed, form_.get(), [&closed] { closed = true; });
            EXPECT_EQ(dialog.objectName(), QStringLiteral("FormTransmitDelay"));
            work(Form(dialog));
        });
        Ui().Choose("mnuTransmitDelayCalc");
        EXPECT_TRUE(WaitUntil([&closed] { return closed; }));
    }

    static void Enter(const Form &ui, const char *box, const char *text) {
        QTest::mouseClick(&ui.Get<QLineEdit>(box), Qt::LeftButton);
        ui.Get<QLineEdit>(box).selectAll();
        QTest::keyClicks(&ui.Get<QLineEdit>(box), QString::fromLatin1(text));
    }

    void ExpectQuestion(BoxAnswer answer) {
        dialogs_.Expect(QStringLiteral("Are you sure? This should only be done on the Master Unit in a "
                                       "multi-unit installation."),
                        BoxIcon::Question, BoxButtons::YesNo, answer);
    }
    void ExpectSaved() { dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!")); }

    // Expects exactly these writes.
    void ExpectWrites(const Writes &expected) {
        EXPECT_TRUE(WaitUntil([&] { return sensor_->Writes().size() >= expected.size(); }));
        EXPECT_TRUE(WaitForPolls(2));
        EXPECT_EQ(sensor_->Writes(), expected);
    }
};

TEST_F(TransmitDelaySessionTest, WritesBothWordsThenSavesOnClosing) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectQuestion(BoxAnswer::Yes);
    ExpectSaved();
    WithCalculator([this](const Form &ui) {
        Enter(ui, "TextSumOfRanges", "840");
        Enter(ui, "TextSumOfDelays", "2000");
        ui.Press("CommandSetTransmitDelayValues");
        ExpectWrites({{21, 64000}, {22, 1}});
        EXPECT_TRUE(ui.Get<QCheckBox>("chkSaveSettings").isChecked());
        ui.Press("CommandClose");
    });
    ExpectWrites({{21, 64000}, {22, 1}, {1, 1}});
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(Value(21), 64000);
    EXPECT_EQ(Value(22), 1);
}

TEST_F(TransmitDelaySessionTest, SendsOnlyTheWordThatDiffers) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectQuestion(BoxAnswer::Yes);
    WithCalculator([](const Form &ui) {
        ui.Press("CommandSetTransmitDelayValues");
        ui.Get<QCheckBox>("chkSaveSettings").setChecked(false);
        ui.Press("CommandClose");
    });
    ExpectWrites({{21, 3536}});
}

TEST_F(TransmitDelaySessionTest, SavesLastWhenItIsClosedDuringTheWrite) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectQuestion(BoxAnswer::Yes);
    ExpectSaved();
    WithCalculator([this](const Form &ui) {
        Enter(ui, "TextSumOfRanges", "420");
        // The first word is under way, and the second waits for it.
        QObject::connect(
            &form_->Link(), &LinkSession::TableRefreshed, &ui.Get<QWidget>("CommandClose"),
            [ui] { ui.Get<QAbstractButton>("CommandClose").click(); }, Qt::SingleShotConnection);
        ui.Press("CommandSetTransmitDelayValues");
    });
    ExpectWrites({{21, 0}, {22, 1}, {1, 1}});
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
}

TEST_F(TransmitDelaySessionTest, SavesOnClosingThoughNothingWasWritten) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectSaved();
    WithCalculator([](const Form &ui) { ui.Press("CommandClose"); });
    ExpectWrites({{1, 1}});
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
}

TEST_F(TransmitDelaySessionTest, SendsNothingAfterANoAndWithoutTheMark) {
    StartPolling();
    sensor_->ClearRecords();
    ExpectQuestion(BoxAnswer::No);
    WithCalculator([](const Form &ui) {
        ui.Get<QCheckBox>("chkSaveSettings").setChecked(false);
        ui.Press("CommandSetTransmitDelayValues");
        EXPECT_FALSE(ui.Get<QCheckBox>("chkSaveSettings").isChecked());
        ui.Press("CommandClose");
    });
    ExpectWrites({});
}

TEST_F(TransmitDelaySessionTest, CalculatesOfflineAndChangesNothing) {
    Start();
    WithCalculator([](const Form &ui) {
        Enter(ui, "TextSumOfRanges", "420");
        EXPECT_EQ(ui.Text("TextTransmitDelayHigh"), QStringLiteral("1"));
        EXPECT_FALSE(ui.Enabled("CommandSetTransmitDelayValues"));
        EXPECT_FALSE(ui.Enabled("chkSaveSettings"));
        ui.Press("CommandClose");
    });
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
    EXPECT_EQ(Value(1), 0);
}

TEST_F(TransmitDelaySessionTest, StartsFreshEachTime) {
    Start();
    for (int time = 0; time < 2; ++time) {
        WithCalculator([](const Form &ui) {
            EXPECT_EQ(ui.Text("TextSumOfRanges"), QStringLiteral("0.00"));
            EXPECT_EQ(ui.Text("TextSumOfDelays"), QStringLiteral("0"));
            Enter(ui, "TextSumOfRanges", "420");
            ui.Press("CommandClose");
        });
    }
}

} // namespace ztv
