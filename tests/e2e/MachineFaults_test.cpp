#include "model/ParamDefines.h"
#include "shell/Application.h"
#include "shell/Program.h"
#include "support/ProgramFolder.h"
#include "tests/e2e/Session.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QDir>
#include <cerrno>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztv {

namespace {

constexpr std::int32_t changedTo = 4321;

void Permit(const QString &path, mode_t mode) {
    EXPECT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0) << path.toStdString();
}

// Mounts a small disk for one test, if the machine permits it.
class SmallDisk {
public:
    SmallDisk() : mounted_(mount("tmpfs", Name().constData(), "tmpfs", 0, "size=16k") == 0) {}
    ~SmallDisk() {
        if (mounted_) {
            umount2(Name().constData(), MNT_DETACH);
        }
    }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    bool IsThere() const { return mounted_; }
    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }

private:
    QByteArray Name() const { return QFile::encodeName(folder_.path()); }

    QTemporaryDir folder_;
    bool mounted_;
};

QString CouldNotBeOpened() {
    return QStringLiteral(
        "Error 47. The com port could not be opened.  The port does not exist or is in use by "
        "another application.");
}

} // namespace

// Denies the program what a machine may deny, and checks what the user sees of it.
class MachineFaultsTest : public SessionTest {
protected:
    MachineFaultsTest() {
        Permit(configuration_.path(), 0755);
        dynamic_cast<Application &>(*qApp).OnFault([this](const Fault &fault) {
            ++faults_;
            ShowFault(dialogs_, fault, form_.get());
        });
    }
    ~MachineFaultsTest() override {
        dynamic_cast<Application &>(*qApp).OnFault(
            [](const Fault &fault) { ADD_FAILURE() << "fault: " << fault.what(); });
    }

    // Saves under this name, then changes a value.
    void SaveAndChange(const QString &file) {
        Write(ParamDefines::NearDistance, 1500);
        dialogs_.ExpectSaveFile(file);
        dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
        Ui().Choose("mnuFileSave(1)");
        Write(ParamDefines::NearDistance, changedTo);
    }

    std::int32_t ValueInFile(const QString &file) {
        ClassZentrova table(ShippedPresetsFolder());
        EXPECT_EQ(table.OpenFile(file).result, FileOpened::Whole);
        return table.ParamValue(ParamDefines::NearDistance);
    }

    QStringList Rescued() const {
        return QDir(data_.path() + QStringLiteral("/ZTV Link")).entryList({QStringLiteral("Rescued *.ztv")});
    }

    // Expects that a plain save ends in a fatal box that names the file with the changes.
    void ExpectFatalSave(const QString &reason) {
        dialogs_.ExpectTextWith(reason + QStringLiteral("\n\nYour unsaved changes are in the file\n") +
                                    QDir(data_.path()).filePath(QStringLiteral("ZTV Link/Rescued ")),
                                BoxIcon::Critical);
    }

    QTemporaryDir data_;
    EnvironmentVariable dataHome_{"XDG_DATA_HOME", data_.path()};
    int faults_ = 0;
};

TEST_F(MachineFaultsTest, RescuesTheChangesThatAFullDiskDidntTake) {
    const SmallDisk disk;
    if (!disk.IsThere()) {
        GTEST_SKIP() << "this machine mounts nothing";
    }
    Start();
    const QString file = disk.Path("line.ztv");
    SaveAndChange(file);
    QFile filler(disk.Path("filler"));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(1024, 'f')) > 0) {
    }
    ExpectFatalSave(file + QStringLiteral(": No space left on device."));
    Ui().Choose("mnuFileSave(0)");
    EXPECT_EQ(faults_, 1);
    EXPECT_EQ(ValueInFile(file), 1500); // the old one is whole
    ASSERT_EQ(Rescued().size(), 1);
    EXPECT_EQ(ValueInFile(data_.path() + QStringLiteral("/ZTV Link/") + Rescued().front()), changedTo);
}

TEST_F(MachineFaultsTest, SaysSoWhenNoDiskTakesTheChanges) {
    Start();
    const QString file = configuration_.filePath(QStringLiteral("line.ztv"));
    SaveAndChange(file);
    dialogs_.ExpectTextWith(
        QStringLiteral("line.ztv: File too large.\n\nYour unsaved changes couldn't be saved: "),
        BoxIcon::Critical);
    {
        const FileSizeLimit limit(5000);
        Ui().Choose("mnuFileSave(0)");
    }
    EXPECT_EQ(faults_, 1);
    EXPECT_EQ(ValueInFile(file), 1500);
    EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(MachineFaultsTest, RescuesTheChangesThatAReadOnlyFolderDidntTake) {
    Start();
    const QString folder = configuration_.filePath(QStringLiteral("shared"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/line.ztv");
    SaveAndChange(file);
    Permit(file, 0444);
    Permit(folder, 0555);
    Permit(data_.path(), 0777);
    ExpectFatalSave(file + QStringLiteral(": Permission denied."));
    {
        const AsNobody nobody;
        Ui().Choose("mnuFileSave(0)");
    }
    Permit(folder, 0755);
    EXPECT_EQ(faults_, 1);
    EXPECT_EQ(ValueInFile(file), 1500);
    ASSERT_EQ(Rescued().size(), 1);
    EXPECT_EQ(ValueInFile(data_.path() + QStringLiteral("/ZTV Link/") + Rescued().front()), changedTo);
}

TEST_F(MachineFaultsTest, SavesOverAColleaguesFile) {
    Start();
    const QString folder = configuration_.filePath(QStringLiteral("shared"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/line.ztv");
    SaveAndChange(file);
    Permit(file, 0644);
    Permit(folder, 0777);
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    {
        const AsNobody nobody;
        Ui().Choose("mnuFileSave(0)");
    }
    EXPECT_EQ(faults_, 0);
    EXPECT_EQ(ValueInFile(file), changedTo);
    EXPECT_FALSE(form_->Zentrova().FileChangesNeedSaving());
}

TEST_F(MachineFaultsTest, RescuesTheChangesThatAColleaguesFolderDidntTake) {
    Start();
    const QString folder = configuration_.filePath(QStringLiteral("shared"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString file = folder + QStringLiteral("/line.ztv");
    SaveAndChange(file);
    if (geteuid() != 0) {
        GTEST_SKIP() << "there is no colleague";
    }
    Permit(folder, 01777); // where only its owner may replace a file
    Permit(data_.path(), 0777);
    ExpectFatalSave(file +
                    QStringLiteral(": Operation not permitted. The file is somebody else's, in a folder "
                                   "where only the owner of a file may replace it."));
    {
        const AsNobody nobody;
        Ui().Choose("mnuFileSave(0)");
    }
    EXPECT_EQ(faults_, 1);
    EXPECT_EQ(ValueInFile(file), 1500);
    ASSERT_EQ(Rescued().size(), 1);
    EXPECT_EQ(ValueInFile(data_.path() + QStringLiteral("/ZTV Link/") + Rescued().front()), changedTo);
}

TEST_F(MachineFaultsTest, KeepsTheChangesWhenASaveAsFails) {
    Start();
    Write(ParamDefines::NearDistance, changedTo);
    for (const char *file : {"/proc/line.ztv", "/dev/null", "/there/is/no/such/folder/line.ztv"}) {
        dialogs_.ExpectSaveFile(QString::fromLatin1(file));
        Ui().Choose("mnuFileSave(1)");
        EXPECT_TRUE(form_->Zentrova().FileChangesNeedSaving());
        EXPECT_EQ(Value(ParamDefines::NearDistance), changedTo);
    }
    dialogs_.ExpectSaveFile(configuration_.filePath(QStringLiteral("line.ztv")));
    dialogs_.ExpectNotice(QStringLiteral("File saved successfully."), BoxIcon::Information);
    Ui().Choose("mnuFileSave(1)");
    EXPECT_EQ(ValueInFile(configuration_.filePath(QStringLiteral("line.ztv"))), changedTo);
}

TEST_F(MachineFaultsTest, TellsOfAStoreThatTakesNoSettingsOnceAndUsesThemMeanwhile) {
    const EnvironmentVariable noFolder("XDG_CONFIG_HOME", QStringLiteral("/dev/null"));
    StartSensor();
    const QString device = qEnvironmentVariable("ZTVLINK_PORT_1");
    qunsetenv("ZTVLINK_PORT_1");
    Start();
    EXPECT_FALSE(settings_.Write(QStringLiteral("Ports"), QStringLiteral("1"), device)); // as the dialog does
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    dialogs_.ExpectNotice(QStringLiteral("The settings couldn't be stored in\n/dev/null/ZTV Link.conf"));
    form_->close();
    EXPECT_FALSE(form_->isVisible());
}

TEST_F(MachineFaultsTest, LeavesTheSettingsThatItCantReplaceAsTheyAre) {
    settings_.Write(QStringLiteral("Options"), QStringLiteral("NetworkAddress"), QStringLiteral("17"));
    const QString file = settings_.Place();
    Permit(file, 0444);
    Permit(configuration_.path(), 0555);
    const QByteArray before = ReadFile(file);
    {
        const AsNobody nobody;
        dialogs_.Expect(QStringLiteral("Clear all ZTV Link Registry Settings?"), BoxIcon::Question,
                        BoxButtons::YesNo, BoxAnswer::Yes);
        dialogs_.ExpectNotice(QStringLiteral("The settings couldn't be cleared. They are in\n") + file);
        Start(QStringLiteral("/CLEARREG"));
        EXPECT_EQ(form_->ModbusAddress(), 1); // cleared for this run
        form_->Link().ModbusAddress(18);
        dialogs_.ExpectNotice(QStringLiteral("The settings couldn't be stored in\n") + file);
        form_->close();
    }
    Permit(configuration_.path(), 0755);
    EXPECT_EQ(ReadFile(file), before);
}

TEST_F(MachineFaultsTest, KeepsTheStoreOfAFullDiskWhole) {
    Start();
    form_->close();
    const QString file = settings_.Place();
    const QByteArray before = ReadFile(file);
    ASSERT_FALSE(before.isEmpty());
    Start();
    form_->Link().ModbusAddress(99);
    dialogs_.ExpectNotice(QStringLiteral("The settings couldn't be stored in\n") + file);
    {
        const FileSizeLimit limit(8);
        form_->close();
    }
    EXPECT_EQ(ReadFile(file), before);
}

TEST_F(MachineFaultsTest, GoesOnWithoutAProgramFolder) {
    StartSensor();
    const QString folder = configuration_.filePath(QStringLiteral("program"));
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::copy(ShippedPresetsFolder() + QStringLiteral("/Presets.fil"),
                            folder + QStringLiteral("/Presets.fil")));
    presets_ = folder;
    Start();
    ASSERT_TRUE(QDir(folder).removeRecursively());
    GoOnline();
    EXPECT_TRUE(WaitForPolls(2));
    SaveAndChange(configuration_.filePath(QStringLiteral("line.ztv")));
    EXPECT_TRUE(WaitForPolls(2));
    EXPECT_EQ(sensor_->Register(ParamDefines::NearDistance), changedTo);
    EXPECT_EQ(FolderForOwnFiles(folder), UserDataFolder()); // the folder of the memory images in that case
    EXPECT_EQ(faults_, 0);
}

TEST_F(MachineFaultsTest, SaysWhichPresetsItMayNotRead) {
    const ChangedPresets presets("SELECT 1");
    Permit(presets.Folder(), 0755);
    Permit(presets.Folder() + QStringLiteral("/Presets.fil"), 0);
    dialogs_.ExpectTextWith(presets.Folder() + QStringLiteral("/Presets.fil: "), BoxIcon::Critical);
    const AsNobody nobody;
    EXPECT_EQ(RunProgram({.dialogs = dialogs_,
                          .settings = settings_,
                          .helpEngine = help_,
                          .programFolder = presets.Folder(),
                          .arguments = {}},
                         [](FormMain &) { ADD_FAILURE() << "it runs"; }),
              1);
}

TEST_F(MachineFaultsTest, TellsWhoMayUseAPortThatItMayNot) {
    StartSensor();
    const QString port = QFileInfo(sensor_->Path()).canonicalFilePath();
    Start();
    Permit(port, 0600);
    if (geteuid() != 0) {
        Permit(port, 0);
    }
    dialogs_.ExpectTextWith(CouldNotBeOpened() + QStringLiteral("\n\nYou have no permission to use ") +
                                sensor_->Path(),
                            BoxIcon::Exclamation);
    {
        const AsNobody nobody;
        GoOnline();
    }
    EXPECT_FALSE(form_->Link().PortIsOpen());
    EXPECT_TRUE(Ui().Enabled("Toolbar1(Online)"));
    Permit(port, 0600);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
}

TEST_F(MachineFaultsTest, KeepsOffAPortThatAnotherProgramHasAndKeepsItsOwn) {
    StartSensor();
    const QString port = QFileInfo(sensor_->Path()).canonicalFilePath();
    Permit(port, 0666);
    Start();
    const auto open = [&port] { return ::open(QFile::encodeName(port).constData(), O_RDWR | O_NOCTTY); };
    const int other = open();
    ASSERT_GE(other, 0);
    ASSERT_EQ(ioctl(other, TIOCEXCL), 0);
    const AsNobody nobody; // an administrator's program ignores permissions
    dialogs_.ExpectNotice(CouldNotBeOpened());
    GoOnline();
    EXPECT_FALSE(form_->Link().PortIsOpen());
    ASSERT_EQ(ioctl(other, TIOCNXCL), 0);
    close(other);
    GoOnline();
    EXPECT_TRUE(WaitForPolls(1));
    EXPECT_EQ(open(), -1);
    EXPECT_EQ(errno, EBUSY);
}

} // namespace ztv
