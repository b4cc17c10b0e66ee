#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Printers.h"

#include <QApplication>
#include <QDialog>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

namespace ztv {

// Asks for further writes while one is on the line, at a real line with a sensor that may be slow or dead.
class WaitingWritesTest : public SessionTest {
protected:
    // Expects that many failures, each in a box of its own that is the only one.
    void ExpectFailures(int count) {
        for (int failure = 0; failure < count; ++failure) {
            dialogs_.ExpectNotice(QStringLiteral("Error writing parameter"), BoxIcon::Exclamation,
                                  ApplicationTitle(), [this] {
                                      EXPECT_EQ(++open_, 1);
                                      ++failures_;
                                      QDialog box(form_.get());
                                      QTimer::singleShot(150, &box, &QDialog::close); // after a time-out
                                      box.exec();
                                      --open_;
                                  });
        }
    }
    void ExpectQuestion(BoxAnswer answer) {
        dialogs_.Expect(
            QStringLiteral("The currently open file has been changed. Do you want to save the changes?"),
            BoxIcon::Question, BoxButtons::YesNoCancel, answer);
    }
    bool AllCame() {
        return WaitUntil([this] { return dialogs_.AllCame(); }, 20'000);
    }
    bool AllSent() {
        return WaitUntil(
            [this] { return !form_->Zentrova().WritesWait() && !form_->Link().WriteIsUnderWay(); }, 20'000);
    }
    void FallSilent() { sensor_->Execute(QStringLiteral("mute on")); }

    int open_ = 0;
    int failures_ = 0;
};

TEST_F(WaitingWritesTest, ClosesAfterTheFailuresOfADeadSensor) {
    StartPolling();
    FallSilent();
    ExpectFailures(2);
    ExpectQuestion(BoxAnswer::No);
    Write(28, 1300);
    Write(29, 30000);
    Write(25, 40000);
    EXPECT_FALSE(form_->close());
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(WaitUntil([this] { return !form_->isVisible(); }));
}

TEST_F(WaitingWritesTest, ShowsOneBoxAtATimeHoweverAThresholdIsMovedOnADeadLine) {
    StartPolling();
    FallSilent();
    form_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(form_.get()));
    auto &marker = Ui().Get<QWidget>("PicRelay(0)");
    marker.setFocus();
    ExpectFailures(2);
    for (int key = 0; key < 40; ++key) {
        QTest::keyClick(&marker, Qt::Key_Right); // pressed and released
    }
    QTest::keyPress(&marker, Qt::Key_Right);
    EXPECT_TRUE(AllCame());
    QTest::keyRelease(&marker, Qt::Key_Right);
    EXPECT_TRUE(WaitUntil([this] { return failures_ >= 2; }));
}

TEST_F(WaitingWritesTest, LooksAtBasicOnADeadLineInHyperbolicModeForOneBox) {
    StartPolling();
    Write(39, 2);
    EXPECT_TRUE(AllSent());
    EXPECT_TRUE(WaitForPolls(2));
    FallSilent();
    ExpectFailures(1);
    for (int tab = 0; tab < 20; ++tab) {
        Ui().Get<QTabWidget>("TabStrip1").setCurrentIndex(tab % 4);
        QTest::qWait(20);
    }
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(AllSent());
    EXPECT_EQ(failures_, 1);
}

TEST_F(WaitingWritesTest, FollowsTheSensorThroughEachOfItsNewSettingsInOrder) {
    StartPolling();
    sensor_->ClearRecords();
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    Write(28, 1300);
    Write(65, 9);
    Write(29, 30000);
    Write(66, 2);
    Write(25, 40000);
    Write(67, 2);
    Write(24, 700);
    Write(1, 1);
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(),
              (Writes{{28, 1300}, {65, 9}, {29, 30000}, {66, 2}, {25, 40000}, {67, 2}, {24, 700}, {1, 1}}));
    EXPECT_EQ(form_->ModbusAddress(), 9);
    EXPECT_EQ(form_->BaudRate(), 2);
    EXPECT_EQ(form_->ParityStop(), 2);
}

TEST_F(WaitingWritesTest, SendsNothingOfBeforeAfterAReconnectByTheUser) {
    StartPolling();
    sensor_->Execute(QStringLiteral("latency 60"));
    EXPECT_TRUE(WaitForPolls(1));
    sensor_->ClearRecords();
    Write(28, 1300);
    Write(29, 30000);
    Write(1, 1);
    form_->GoOffline();
    EXPECT_FALSE(form_->Zentrova().WritesWait());
    EXPECT_EQ(Value(29), 30000);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), Writes());
    EXPECT_NE(Value(29), 30000); // what the sensor has
    Write(29, 31000);
    EXPECT_TRUE(AllSent());
    EXPECT_EQ(sensor_->Writes(), (Writes{{29, 31000}}));
}

TEST_F(WaitingWritesTest, ReinitialisesAndSavesInTheOrderAskedFor) {
    StartPolling();
    sensor_->ClearRecords();
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    Write(28, 1300);
    Write(3, 1);
    Write(28, 1400);
    Write(1, 1);
    Write(28, 1500);
    Write(1, 1);
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Writes(), (Writes{{28, 1300}, {3, 1}, {28, 1400}, {1, 1}, {28, 1500}, {1, 1}}));
    EXPECT_EQ(Value(28), 1500);
}

TEST_F(WaitingWritesTest, OpensAFileWhileWritesWait) {
    StartPolling();
    const QString file = configuration_.filePath(QStringLiteral("file.ztv"));
    form_->Zentrova().SaveFile(file);
    sensor_->ClearRecords();
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"), BoxIcon::Exclamation,
                          ApplicationTitle(), [] { QTest::qWait(100); });
    dialogs_.ExpectNotice(QStringLiteral("Parameters saved successfully!"));
    const std::int32_t before = Value(29);
    Write(28, 1300);
    Write(29, 30000);
    Write(1, 1);
    EXPECT_EQ(form_->Zentrova().OpenFile(file).result, FileOpened::Whole);
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(AllSent());
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Register(29), before);
    EXPECT_EQ(Value(29), before);
}

TEST_F(WaitingWritesTest, KeepsTheLastOfManyValuesAtEveryLatency) {
    StartPolling();
    for (const char *latency : {"latency 0", "latency 20", "latency 70"}) {
        sensor_->Execute(QString::fromLatin1(latency));
        EXPECT_TRUE(WaitForPolls(1));
        for (int value = 1300; value < 1340; ++value) {
            Write(28, value);
            Write(29, 30000 + value);
            Settle();
        }
        EXPECT_TRUE(AllSent());
        EXPECT_TRUE(WaitForPolls(2));
        EXPECT_EQ(sensor_->Register(28), 1339);
        EXPECT_EQ(sensor_->Register(29), 31339);
        EXPECT_EQ(Value(28), 1339);
    }
}

TEST_F(WaitingWritesTest, EndsWithCallsLeft) {
    StartPolling();
    FallSilent();
    bool called = false;
    Write(28, 1300);
    Write(29, 30000);
    form_->Zentrova().WhenWritesAreSent([&called] { called = true; });
    EXPECT_FALSE(form_->close());
    form_.reset();
    EXPECT_FALSE(called);
}

TEST_F(WaitingWritesTest, ThePulledCableEndsTheWaitOfTheWindowThatCloses) {
    StartPolling();
    Write(28, 1300);
    Write(29, 30000);
    Write(25, 40000);
    sensor_->Unplug();
    ExpectFailures(3);
    ExpectQuestion(BoxAnswer::No);
    EXPECT_FALSE(form_->close());
    EXPECT_TRUE(AllCame());
    EXPECT_TRUE(WaitUntil([this] { return !form_->isVisible(); }));
}

} // namespace ztv
