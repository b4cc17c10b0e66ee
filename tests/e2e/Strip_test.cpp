#include "link/ui/FormComms.h"
#include "model/ParamDefines.h"
#include "shell/StripMessage.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/Files.h"

#include <QElapsedTimer>
#include <QFile>
#include <SQLiteCpp/SQLiteCpp.h>
#include <algorithm>
#include <functional>

namespace ztv {

// The strip below the pages, on a real line.
class StripTest : public SessionTest {
protected:
    QWidget &Strip() const { return Ui().Get<QWidget>("MessageStrip"); }
    QString Says() const { return Strip().isVisible() ? Strip().accessibleName() : QString(); }
    bool WaitForHeadline(const char *beginning, int deadlineMs = 10'000) const {
        return WaitUntil([&] { return Says().startsWith(QString::fromLatin1(beginning)); }, deadlineMs);
    }
};

TEST_F(StripTest, SaysThatNothingIsConnectedUntilASensorIsRead) {
    StartSensor();
    Start();
    EXPECT_EQ(Says(), QStringLiteral("Not connected. The values are the factory's, not a sensor's."));
    WhenDialogOpens([](QWidget &dialog) { Form(dialog).Press("Read"); });
    Ui().Press("StripOnline");
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Says(), QString());
    Ui().Choose("Toolbar1(Offline)");
    EXPECT_TRUE(WaitForHeadline("Not connected. The values are the last ones read, "));
}

TEST_F(StripTest, NamesTheFileWhoseValuesShow) {
    const QString file = configuration_.filePath(QStringLiteral("machine 7.ztv"));
    ASSERT_FALSE(ClassZentrova(ShippedPresetsFolder()).SaveFile(file));
    Start();
    dialogs_.ExpectOpenFile(file);
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitForHeadline("Not connected. The values are those of machine 7.ztv."));
}

TEST_F(StripTest, SaysThatValuesWereChangedOffline) {
    Start();
    Write(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(
        WaitForHeadline("Not connected. The values are the factory's, not a sensor's, with changes."));
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    dialogs_.ExpectSaveFile(file);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)");
    EXPECT_TRUE(WaitForHeadline("Not connected. The values are those of roll.ztv."));
}

TEST_F(StripTest, SaysForHowLongTheSensorHasBeenSilentAndGoesByItself) {
    StartPolling();
    EXPECT_EQ(Says(), QString());
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitForHeadline("No answer for 2 s. Address 1 on port 1 ("));
    EXPECT_TRUE(WaitForHeadline("No answer for 3 s."));
    EXPECT_TRUE(Says().contains(sensor_->Path()));
    EXPECT_TRUE(Says().contains(QStringLiteral("38400 N2")));
    sensor_->Execute(QStringLiteral("mute off"));
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
}

// Compares the times that show with those since the last answer, from the second on. A busy machine may delay
// a change of the text, but not each.
class StripTimesTest : public StripTest {
protected:
    void StartPollingAndTiming() {
        StartPolling();
        QObject::connect(&form_->Link().Mbaxp1(), &Mbaxp::TransactionDone, form_.get(),
                         [this](LinkTransaction) { sinceAnswer_.start(); });
        EXPECT_TRUE(WaitForPolls(2));
    }
    void ExpectRightTimes(const char *text) {
        qint64 leastDelay = 1000;
        for (int seconds = 2; seconds <= 5; ++seconds) {
            const QString shown = QString::fromLatin1(text).arg(seconds);
            ASSERT_TRUE(WaitUntil([&] { return Says().contains(shown); })) << seconds;
            const qint64 delay = sinceAnswer_.elapsed() - seconds * qint64{1000};
            EXPECT_GE(delay, -1); // never a longer time than has gone by
            leastDelay = std::min(leastDelay, delay);
        }
        EXPECT_LT(leastDelay, 100);
    }

    QElapsedTimer sinceAnswer_;
};

TEST_F(StripTimesTest, AreRightToATenthOfASecondWhileNoAnswerComes) {
    StartPollingAndTiming();
    sensor_->Execute(QStringLiteral("mute on"));
    ExpectRightTimes("No answer for %1 s.");
}

TEST_F(StripTimesTest, AreRightToATenthOfASecondWhileOffline) {
    StartPollingAndTiming();
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitUntil([this] { return sinceAnswer_.elapsed() >= 450; })); // out of step with the seconds
    Ui().Choose("Toolbar1(Offline)");
    ExpectRightTimes("the last ones read, %1 s ago");
}

TEST_F(StripTest, SaysThatOnlyDamagedAnswersCome) {
    StartPolling();
    sensor_->Execute(QStringLiteral("corrupt 1"));
    EXPECT_TRUE(WaitForHeadline("Only damaged answers for 2 s. Address 1 on port 1 ("));
    sensor_->Execute(QStringLiteral("corrupt 0"));
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
    sensor_->Execute(QStringLiteral("mute on"));
    EXPECT_TRUE(WaitForHeadline("No answer for 2 s."));
}

TEST_F(StripTest, SaysNothingWhileAFileIsLoadedIntoASensorThatAnswers) {
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    ASSERT_FALSE(ClassZentrova(ShippedPresetsFolder()).SaveFile(file));
    StartPolling();
    EXPECT_TRUE(WaitForPolls(12)); // longer than a silence that it would report
    bool hasShown = false;
    QObject::connect(&form_->Link(), &LinkSession::ValueStateChanged, form_.get(),
                     [&] { hasShown = hasShown || !Says().isEmpty(); });
    ExpectLoadingQuestion();
    dialogs_.ExpectOpenFile(file);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_FALSE(hasShown);
    EXPECT_EQ(Says(), QString());
}

TEST_F(StripTest, SaysSoWhenNoSensorEverAnswers) {
    StartSensor();
    sensor_->Execute(QStringLiteral("mute on"));
    Start();
    GoOnline();
    EXPECT_EQ(Says(), QString()); // it has its time to answer
    EXPECT_TRUE(WaitForHeadline("No answer for 2 s."));
    EXPECT_TRUE(Says().endsWith(QStringLiteral("The values are the factory's, not a sensor's.")));
    Ui().Press("StripOffline");
    Settle();
    EXPECT_EQ(Says(), QStringLiteral("Not connected. The values are the factory's, not a sensor's."));
}

TEST_F(StripTest, LeadsToCommunicationsAndSearch) {
    StartSensor();
    sensor_->Execute(QStringLiteral("mute on"));
    Start();
    GoOnline();
    EXPECT_TRUE(WaitForHeadline("No answer for 2 s."));
    QString opened;
    WhenDialogOpens([&](QWidget &dialog) {
        opened = dialog.objectName();
        dialog.close();
    });
    Ui().Press("StripCommunications");
    EXPECT_TRUE(WaitUntil([&] { return opened == QStringLiteral("FormComms"); }));
    EXPECT_TRUE(form_->Link().PortIsOpen());
    opened.clear();
    // Waits for the search, then closes it and the form that it was opened from.
    const std::function<void(QWidget &)> closeBoth = [&](QWidget &dialog) {
        if (dialog.objectName() != QStringLiteral("FormSearch")) {
            WhenDialogOpens(closeBoth);
            return;
        }
        opened = dialog.objectName();
        QMetaObject::invokeMethod(dialog.parentWidget(), &QWidget::close, Qt::QueuedConnection);
        dialog.close();
    };
    WhenDialogOpens(closeBoth);
    Ui().Press("StripSearch");
    EXPECT_TRUE(WaitUntil([&] { return opened == QStringLiteral("FormSearch"); }));
    EXPECT_FALSE(form_->Link().PortIsOpen());
}

TEST_F(StripTest, SaysThatThePortIsGoneAndResumes) {
    StartPolling();
    sensor_->Execute(QStringLiteral("unplug"));
    EXPECT_TRUE(WaitForHeadline("The serial port is gone. Plug the adapter of port 1 ("));
    sensor_->Execute(QStringLiteral("plug"));
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
}

TEST_F(StripTest, SaysThatAnotherSensorAnswers) {
    StartPolling();
    sensor_->Execute(QStringLiteral("addressing 0"));
    EXPECT_TRUE(
        WaitForHeadline("Another sensor answers. Its values aren't shown, and nothing is written to it"));
    sensor_->Execute(QStringLiteral("addressing 1"));
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
}

TEST_F(StripTest, SaysThatTheValuesAreHeldSinceAFileFault) {
    const QString file = configuration_.filePath(QStringLiteral("damaged.ztv"));
    ASSERT_FALSE(ClassZentrova(ShippedPresetsFolder()).SaveFile(file));
    SQLite::Database(file.toStdString(), SQLite::OPEN_READWRITE)
        .exec("UPDATE Settings SET Value = 'x' WHERE Tag = 27");
    StartPolling();
    ExpectLoadingQuestion();
    dialogs_.ExpectOpenFile(file);
    dialogs_.ExpectTextWith(QStringLiteral("record 27"), BoxIcon::None, QString());
    dialogs_.ExpectNotice(QStringLiteral("Error opening file!"));
    Ui().Choose("Toolbar1(Open File)");
    EXPECT_TRUE(WaitForHeadline("The values aren't read. A file couldn't be opened or sent"));
    Ui().Press("StripOffline");
    GoOnline();
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
}

TEST_F(StripTest, SaysThatThereIsNoEcho) {
    StartPolling();
    sensor_->Execute(QStringLiteral("set 38 0"));
    EXPECT_TRUE(WaitForHeadline("No echo. "));
    sensor_->Execute(QStringLiteral("set 38 1"));
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
}

TEST_F(StripTest, WarnsOfACounterNearItsEndAndResetsIt) {
    StartPolling();
    form_->Link().TimeoutCount(30500);
    EXPECT_TRUE(WaitForHeadline("30500 time-outs counted."));
    Ui().Press("StripReset");
    EXPECT_TRUE(WaitUntil([this] { return Says().isEmpty(); }));
    EXPECT_EQ(form_->TimeoutCount(), 0);
}

TEST_F(StripTest, NamesTheFileOfTheCommandLineThatCouldNotBeOpened) {
    const QString bad = configuration_.filePath(QStringLiteral("bad.ztv"));
    QFile file(bad);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no database");
    file.close();
    Start(QStringLiteral("\"%1\"").arg(bad));
    EXPECT_TRUE(Says().startsWith(QStringLiteral("bad.ztv couldn't be opened. ")));
    const QString good = configuration_.filePath(QStringLiteral("good.ztv"));
    ASSERT_FALSE(ClassZentrova(ShippedPresetsFolder()).SaveFile(good));
    dialogs_.ExpectOpenFile(good);
    Ui().Press("StripOpen");
    EXPECT_TRUE(WaitForHeadline("Not connected. The values are those of good.ztv."));
}

TEST_F(StripTest, SaysThatSaveAsFailed) {
    Start();
    dialogs_.ExpectSaveFile(configuration_.filePath(QStringLiteral("missing folder/roll.ztv")));
    Ui().Choose("mnuFileSave(1)");
    EXPECT_TRUE(WaitForHeadline("roll.ztv wasn't saved. "));
    dialogs_.ExpectSaveFile(configuration_.filePath(QStringLiteral("roll.ztv")));
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Press("StripSaveAs");
    EXPECT_TRUE(WaitForHeadline("Not connected. The values are those of roll.ztv."));
}

TEST_F(StripTest, LiesInTheBandBelowThePages) {
    Start();
    for (const QSize size : {form_->minimumSize(), QSize(1366, 700), QSize(1900, 1000)}) {
        form_->resize(size);
        Settle();
        const QRect strip = Strip().geometry();
        const QRect tabs = Ui().Get<QWidget>("TabStrip1").geometry();
        EXPECT_GT(strip.top(), tabs.bottom());
        EXPECT_EQ(strip.left(), tabs.left());
        EXPECT_EQ(strip.width(), tabs.width());
        EXPECT_LT(strip.bottom(), form_->centralWidget()->height());
        EXPECT_GE(strip.height(), 30);
    }
}

} // namespace ztv
