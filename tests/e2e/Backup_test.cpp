#include "chart/ui/BasicPage.h"
#include "link/SensorBackup.h"
#include "model/ParamDefines.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QTest>

namespace ztv {

// The backups of a sensor's values before the first write, and Online's question, which tells of them.
class BackupTest : public SessionTest {
protected:
    QStringList Backups() const { return QDir(backups_).entryList(QDir::Files, QDir::Name); }
    QString Path(const QString &name) const { return QDir(backups_).filePath(name); }

    // Returns a parameter's value in a backup.
    std::int32_t Kept(const QString &name, std::int16_t tag) const {
        ClassZentrova table(ShippedPresetsFolder());
        EXPECT_EQ(table.OpenFile(Path(name)).result, FileOpened::Whole);
        return table.ParamValue(tag);
    }

    void WriteAndWait(std::int16_t tag, std::int32_t value) {
        Write(tag, value);
        EXPECT_TRUE(WaitUntil([=, this] { return sensor_->Register(tag) == value; }));
        EXPECT_TRUE(WaitForPolls(1));
    }

    // Goes online, and returns the texts of the question.
    QStringList TextsOfTheQuestion(const char *answer) {
        QStringList texts;
        WhenDialogOpens([&](QWidget &dialog) {
            for (const QLabel *label : dialog.findChildren<QLabel *>()) {
                texts << label->text();
            }
            Form(dialog).Press(answer);
        });
        Ui().Choose("Toolbar1(Online)");
        return texts;
    }

    QString StripSays() const {
        const auto &strip = Ui().Get<QWidget>("MessageStrip");
        return strip.isVisible() ? strip.accessibleName() : QString();
    }

    void Swap(int serialNumber) { sensor_->SetRegister(ParamDefines::SerialNumber, serialNumber); }
};

TEST_F(BackupTest, TheFirstWriteKeepsTheValuesReadBeforeIt) {
    StartPolling();
    sensor_->SetRegister(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::FarDistance) == 30000; }));
    EXPECT_EQ(Backups(), QStringList());
    sensor_->ClearRecords();
    Write(ParamDefines::FarDistance, 31000);
    ASSERT_EQ(Backups().size(), 1); // before the write's bytes leave
    EXPECT_EQ(sensor_->Writes(), Writes());
    const QString name = Backups().front();
    EXPECT_TRUE(name.startsWith(QStringLiteral("10427 20")) && name.endsWith(QStringLiteral(".ztv")))
        << name.toStdString();
    EXPECT_EQ(Kept(name, ParamDefines::FarDistance), 30000);
    EXPECT_TRUE(WaitUntil([this] { return sensor_->Register(ParamDefines::FarDistance) == 31000; }));
    WriteAndWait(ParamDefines::NearDistance, 2000);
    EXPECT_EQ(Backups(), QStringList{name});
    EXPECT_EQ(form_->CurrentFileName(), QString());
    EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
    EXPECT_EQ(form_->Zentrova().FileNotes(), QString());
    EXPECT_EQ(StripSays(), QString());
}

TEST_F(BackupTest, EachConnectionKeepsItsOwn) {
    StartPolling();
    WriteAndWait(ParamDefines::FarDistance, 31000);
    Ui().Choose("Toolbar1(Offline)");
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Backups().size(), 1); // reading alone keeps nothing
    WriteAndWait(ParamDefines::FarDistance, 32000);
    ASSERT_EQ(Backups().size(), 2);
}

TEST_F(BackupTest, ASensorThatTakesAnothersPlaceHasItsOwn) {
    StartPolling();
    WriteAndWait(ParamDefines::FarDistance, 31000);
    Swap(777);
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::SerialNumber) == 777; }));
    WriteAndWait(ParamDefines::FarDistance, 32000);
    WriteAndWait(ParamDefines::FarDistance, 33000);
    ASSERT_EQ(Backups().size(), 2);
    EXPECT_TRUE(Backups().at(1).startsWith(QStringLiteral("777 ")));
    EXPECT_EQ(Kept(Backups().at(1), ParamDefines::FarDistance), 31000);
}

TEST_F(BackupTest, ADownloadOnConnectKeepsTheValuesOfTheConnectionBefore) {
    StartPolling();
    const auto before = static_cast<std::int32_t>(sensor_->Register(ParamDefines::FarDistance));
    Ui().Choose("Toolbar1(Offline)");
    Write(ParamDefines::FarDistance, 31000);
    EXPECT_EQ(Backups(), QStringList());
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    GoOnline("Write");
    EXPECT_TRUE(WaitForPolls(1));
    ASSERT_EQ(Backups().size(), 1);
    EXPECT_EQ(Kept(Backups().front(), ParamDefines::FarDistance), before);
    EXPECT_EQ(sensor_->Register(ParamDefines::FarDistance), 31000);
}

// The order of the frames between probe and download is given and leaves no place for a read.
TEST_F(BackupTest, ADownloadToASensorThatWasNeverReadKeepsNothingAndTheQuestionSaysSo) {
    StartSensor();
    Start();
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    const QStringList texts = TextsOfTheQuestion("Write");
    EXPECT_TRUE(texts.join(u'\n').contains(QStringLiteral("no sensor was read yet")));
    EXPECT_TRUE(texts.join(u'\n').contains(QStringLiteral("Program (factory values) to sensor: all ")));
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(Backups(), QStringList());
    EXPECT_EQ(StripSays(), QString());
}

TEST_F(BackupTest, AFileOpenedOnlineIsPrecededByABackup) {
    const QString file = configuration_.filePath(QStringLiteral("roll.ztv"));
    ClassZentrova(ShippedPresetsFolder()).SaveFile(file);
    StartPolling();
    sensor_->SetRegister(ParamDefines::FarDistance, 30000);
    EXPECT_TRUE(WaitUntil([this] { return Value(ParamDefines::FarDistance) == 30000; }));
    ExpectLoadingQuestion();
    dialogs_.ExpectOpenFile(file);
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    Ui().Choose("mnuFileOpen");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    ASSERT_EQ(Backups().size(), 1);
    EXPECT_EQ(Kept(Backups().front(), ParamDefines::FarDistance), 30000);
    EXPECT_EQ(form_->Zentrova().FileNotes(), QStringLiteral(" "));
}

TEST_F(BackupTest, OneThatCantBeWrittenStopsNoWriteAndIsSaidOnTheStrip) {
    WriteFile(backups_, "a file in the folder's place");
    StartPolling();
    WriteAndWait(ParamDefines::FarDistance, 31000);
    EXPECT_TRUE(StripSays().startsWith(QStringLiteral("No backup of the sensor's values. ")))
        << StripSays().toStdString();
    EXPECT_FALSE(Ui().Enabled("mnuFileOpenBackup"));
    QFile::remove(backups_);
    WriteAndWait(ParamDefines::FarDistance, 32000); // its values aren't the first ones any more
    EXPECT_EQ(Backups(), QStringList());
    Ui().Choose("Toolbar1(Offline)");
    EXPECT_TRUE(WaitUntil([this] { return StripSays().startsWith(QStringLiteral("Not connected")); }));
}

TEST_F(BackupTest, AFullFolderDoesNotSlowTheWriteDown) {
    for (int minute = 10; minute < 30; ++minute) {
        WriteFile(Path(QStringLiteral("10427 2020-01-01 %1.ztv").arg(minute * 100, 6, 10, QChar(u'0'))),
                  "old");
    }
    StartPolling();
    QElapsedTimer timer;
    timer.start();
    Write(ParamDefines::FarDistance, 31000);
    RecordProperty("milliseconds", static_cast<int>(timer.elapsed()));
    EXPECT_LT(timer.elapsed(), 500); // a few on a quiet machine
    EXPECT_EQ(Backups().size(), 20);
    EXPECT_FALSE(Backups().contains(QStringLiteral("10427 2020-01-01 001000.ztv")));
    EXPECT_TRUE(WaitUntil([this] { return sensor_->Register(ParamDefines::FarDistance) == 31000; }));
}

// Open Backup. --------------------------------------------------------------------------------------

TEST_F(BackupTest, OpenBackupStandsBelowTheEntriesOfFileAndSaysWhyItIsDisabled) {
    Start();
    const QList<QAction *> entries = Ui().Get<QMenu>("mnuFile").actions();
    ASSERT_EQ(entries.size(), 7);
    EXPECT_EQ(entries.at(4)->objectName(), QStringLiteral("mnuFileExit"));
    EXPECT_TRUE(entries.at(5)->isSeparator());
    EXPECT_EQ(entries.at(6)->text(), QStringLiteral("Open &Backup..."));
    EXPECT_FALSE(entries.at(6)->isEnabled());
    WriteFile(Path(QStringLiteral("notes.ztv")), "no backup");
    Q_EMIT Ui().Get<QMenu>("mnuFile").aboutToShow();
    EXPECT_FALSE(entries.at(6)->isEnabled());
    WriteFile(Path(QStringLiteral("10427 2020-01-01 001000.ztv")), "of another run of the program");
    Q_EMIT Ui().Get<QMenu>("mnuFile").aboutToShow();
    EXPECT_TRUE(entries.at(6)->isEnabled());
}

TEST_F(BackupTest, OpenBackupOpensOneAndSaveAsksForAName) {
    StartPolling();
    const std::int32_t before = Value(ParamDefines::FarDistance);
    WriteAndWait(ParamDefines::FarDistance, 31000);
    Ui().Choose("Toolbar1(Offline)");
    dialogs_.Expect(QStringLiteral("Save changes in file ?"), BoxIcon::Question, BoxButtons::YesNoCancel,
                    BoxAnswer::No);
    const QString backup = Path(Backups().front());
    const QByteArray content = ReadFile(backup);
    dialogs_.ExpectOpenFile(backup, [this](const FileQuestion &question) {
        EXPECT_EQ(question.suggestion, backups_);
        EXPECT_EQ(question.preselectedFilter, 1U);
    });
    Ui().Choose("mnuFileOpenBackup");
    EXPECT_EQ(Value(ParamDefines::FarDistance), before);
    EXPECT_EQ(form_->windowTitle(), Backups().front() + QStringLiteral(" - ZTV Link"));
    EXPECT_TRUE(StripSays().contains(Backups().front())) << StripSays().toStdString();

    Write(ParamDefines::FarDistance, 20000);
    const QString chosen = configuration_.filePath(QStringLiteral("restored.ztv"));
    dialogs_.ExpectSaveFile(chosen, [this](const FileQuestion &question) {
        EXPECT_FALSE(question.suggestion.startsWith(backups_)) << question.suggestion.toStdString();
    });
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)");
    EXPECT_EQ(ReadFile(backup), content);
    EXPECT_EQ(form_->CurrentFileName(), chosen);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(0)"); // its name is known now
}

// The backup before the download is the 21st.
TEST_F(BackupTest, TheOldestCanBeRestoredOnlineAndStays) {
    ASSERT_TRUE(QDir().mkpath(backups_));
    for (int minute = 10; minute < 30; ++minute) {
        ClassZentrova(ShippedPresetsFolder())
            .SaveFile(Path(QStringLiteral("10427 2020-01-01 %1.ztv").arg(minute * 100, 6, 10, QChar(u'0'))));
    }
    const QString oldest = Backups().front();
    StartPolling();
    ExpectLoadingQuestion();
    dialogs_.ExpectOpenFile(Path(oldest));
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    Ui().Choose("mnuFileOpenBackup");
    EXPECT_TRUE(WaitUntil([this] { return dialogs_.AllCame(); }));
    EXPECT_EQ(Backups().size(), 21); // the last 20, and the one that is open
    EXPECT_EQ(Backups().front(), oldest);
}

TEST_F(BackupTest, ABackupOpenedByTheOrdinaryWayIsNotOverwrittenEither) {
    const QString backup = Path(QStringLiteral("10427 2020-01-01 001000.ztv"));
    ASSERT_TRUE(QDir().mkpath(backups_));
    ClassZentrova(ShippedPresetsFolder()).SaveFile(backup);
    Start();
    dialogs_.ExpectOpenFile(backup);
    Ui().Choose("mnuFileOpen");
    dialogs_.ExpectSaveFile(std::nullopt);
    Ui().Choose("mnuFileSave(0)");
}

// The question. -------------------------------------------------------------------------------------

TEST_F(BackupTest, TheQuestionNamesTheFileAndWhatWouldBeLost) {
    const QString file = configuration_.filePath(QStringLiteral("machine7.ztv"));
    ClassZentrova(ShippedPresetsFolder()).SaveFile(file);
    StartSensor();
    Start();
    dialogs_.ExpectOpenFile(file);
    Ui().Choose("mnuFileOpen");
    Write(ParamDefines::FarDistance, 31000);
    Write(ParamDefines::NearDistance, 2000);
    QStringList texts = TextsOfTheQuestion("Read");
    EXPECT_EQ(texts.value(0), QStringLiteral("Which values count?"));
    QString all = texts.join(u'\n');
    EXPECT_TRUE(all.contains(QStringLiteral("Program (machine7.ztv, 2 changes) to sensor: all 95 values are "
                                            "written, also address and line setting.")))
        << all.toStdString();
    EXPECT_TRUE(all.contains(
        QStringLiteral("2 changes that aren't in a file would be lost: Near Distance, Far Distance.")));
    EXPECT_TRUE(WaitForPolls(1));
    Ui().Choose("Toolbar1(Offline)");
    dialogs_.ExpectNotice(QStringLiteral("Parameters downloaded successfully!"));
    all = TextsOfTheQuestion("Write").join(u'\n');
    EXPECT_TRUE(all.contains(QStringLiteral("Program (values read from sensor 10427) to sensor")));
    EXPECT_TRUE(all.contains(QStringLiteral("Those last read from sensor 10427 go to a backup first.")));
    EXPECT_FALSE(all.contains(QStringLiteral("lost"))) << all.toStdString();
    EXPECT_TRUE(WaitForPolls(1));
}

TEST_F(BackupTest, TheQuestionCountsTheValuesThatTheLineCarries) {
    StartSensor();
    Start();
    const QString all = TextsOfTheQuestion("Read").join(u'\n');
    EXPECT_TRUE(WaitForPolls(1));
    const int values = form_->Zentrova().ParamCount() - 1;
    EXPECT_TRUE(all.contains(QStringLiteral("Sensor to program: %1 values are read.").arg(values)));
}

TEST_F(BackupTest, TheQuestionNamesTheFileOfTheCommandLine) {
    const QString file = configuration_.filePath(QStringLiteral("machine7.ztv"));
    ClassZentrova(ShippedPresetsFolder()).SaveFile(file);
    StartSensor();
    Start(QStringLiteral("\"%1\"").arg(file));
    EXPECT_TRUE(StripSays().contains(QStringLiteral("machine7.ztv")));
    EXPECT_TRUE(TextsOfTheQuestion("Read").join(u'\n').contains(QStringLiteral("Program (machine7.ztv) to")));
    EXPECT_TRUE(WaitForPolls(1));
}

} // namespace ztv
