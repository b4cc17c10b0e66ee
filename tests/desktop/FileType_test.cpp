#include "desktop/FileType.h"

#include "desktop/FileAssociation.h"
#include "desktop/FileKeyStore.h"
#include "support/SettingsFileType.h"
#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/Wait.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

// A user and a system without settings. The desktop's tools only record their calls.
class FileTypeTest : public testing::Test {
protected:
    FileTypeTest() {
        WriteFile(Path("icon.svg"), "<svg/>");
        for (const char *tool : {"update-mime-database", "update-desktop-database"}) {
            const QByteArray done = Path(tool).toLocal8Bit();
            WriteScript(Path("bin/") + QString::fromLatin1(tool),
                        "echo noise; echo noise >&2; echo \"$*\" >> '" + done + "'\n");
        }
    }

    void Register(const char *application = "/opt/ZTV Link/ZtvLink") {
        FileType::Register(QString::fromLatin1(application), Path("icon.svg"));
    }

    QString Path(const char *name) const { return folder_.filePath(QString::fromLatin1(name)); }
    QByteArray Content(const char *name) const { return ReadFile(Path(name)); }
    static bool KeyExists() {
        FileKeyStore store(FileKeyStore::UsersFolder());
        return FileAssociation::KeyExists(store, SettingsFileType::Extension());
    }
    static QByteArray Value(const QString &keyPath) {
        const FileKeyStore store(FileKeyStore::UsersFolder());
        return store.Read(RootKey::ClassesRoot, keyPath, QString(), ValueType::Sz).value_or("none");
    }
    QByteArray Entry() const { return Content("home/applications/ztv-link.desktop"); }
    bool ToolsWereRun() const {
        return WaitUntil([this] {
            return !Content("update-mime-database").isEmpty() &&
                   !Content("update-desktop-database").isEmpty();
        });
    }

    QTemporaryDir folder_;
    EnvironmentVariable home_{"XDG_DATA_HOME", Path("home")};
    EnvironmentVariable dirs_{"XDG_DATA_DIRS", Path("system")};
    EnvironmentVariable path_{"PATH", Path("bin")};
};

TEST_F(FileTypeTest, MakesTheKeysAndPublishesWhatTheySay) {
    Register();
    EXPECT_EQ(Value(QStringLiteral(".ztv")), QByteArray("ZTV Link\0", 9));
    EXPECT_EQ(Value(QStringLiteral("ZTV Link")), QByteArray("Zentrova File\0", 14));
    EXPECT_EQ(Value(QStringLiteral("ZTV Link\\shell\\open\\command")),
              QByteArray("\"/opt/ZTV Link/ZtvLink\" \"%1\"\0", 29));
    EXPECT_TRUE(Entry().contains("\nExec=\"/opt/ZTV Link/ZtvLink\" %f\n"));
    EXPECT_TRUE(Content("home/mime/packages/ztv-link.xml").contains("<comment>Zentrova File</comment>"));
    EXPECT_EQ(Content("home/icons/hicolor/scalable/apps/ztv-link.svg"), QByteArray("<svg/>"));
    EXPECT_EQ(Content("home/icons/hicolor/scalable/mimetypes/application-x-ztv-link-settings.svg"),
              QByteArray("<svg/>"));
    EXPECT_EQ(QDir(Path("home/icons/hicolor")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("scalable")});
    ASSERT_TRUE(ToolsWereRun());
    EXPECT_EQ(Content("update-mime-database"), Path("home/mime").toLocal8Bit() + '\n');
    EXPECT_EQ(Content("update-desktop-database"), Path("home/applications").toLocal8Bit() + '\n');
}

TEST_F(FileTypeTest, SaysNothingOnTheTerminal) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Register();
    const bool run = ToolsWereRun();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(run);
}

TEST_F(FileTypeTest, DoesItOnceAndDoesntFollowAProgramThatHasMoved) {
    Register();
    ASSERT_TRUE(ToolsWereRun());
    const QByteArray before = Entry();
    Register("/elsewhere/ZtvLink");
    EXPECT_EQ(Entry(), before);
    EXPECT_TRUE(Value(QStringLiteral("ZTV Link\\shell\\open\\command")).startsWith("\"/opt/"));
    EXPECT_EQ(Content("update-mime-database").count('\n'), 1);
}

TEST_F(FileTypeTest, CostsAStartThatFindsAllDoneNextToNothing) {
    Register();
    ASSERT_TRUE(ToolsWereRun());
    constexpr int starts = 200;
    QElapsedTimer elapsed;
    elapsed.start();
    for (int i = 0; i < starts; ++i) {
        Register();
    }
    EXPECT_LT(elapsed.elapsed(), starts); // a millisecond each
}

TEST_F(FileTypeTest, LeavesABindingOfTheSystemAlone) {
    WriteFile(Path("system/mime/globs2"), "50:application/x-ztv-link-settings:*.ztv\n");
    Register();
    EXPECT_FALSE(QFileInfo::exists(Path("home")));
}

TEST_F(FileTypeTest, LeavesABindingOfTheUserAlone) {
    WriteFile(Path("home/mime/globs2"), "50:video/x-ztv:*.ztv\n");
    Register();
    EXPECT_EQ(QDir(Path("home")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList{QStringLiteral("mime")});
}

TEST_F(FileTypeTest, LeavesAnEntryThatIsThereAlone) {
    WriteFile(Path("home/applications/ztv-link.desktop"), "the user's own");
    Register();
    EXPECT_EQ(Entry(), QByteArray("the user's own"));
    EXPECT_FALSE(KeyExists());
}

TEST_F(FileTypeTest, WritesNothingForTheUserOfAnInstalledPackage) {
    const EnvironmentVariable dirs{"XDG_DATA_DIRS", Path("local") + u':' + Path("system")};
    WriteFile(Path("system/applications/ztv-link.desktop"), "the package's");
    Register();
    EXPECT_FALSE(QFileInfo::exists(Path("home")));
    QFile::remove(Path("system/applications/ztv-link.desktop"));
    Register();
    EXPECT_FALSE(Entry().isEmpty());
    EXPECT_TRUE(ToolsWereRun());
}

TEST_F(FileTypeTest, RepairsNothingWhereOnlyTheExtensionIsThere) {
    FileKeyStore(FileKeyStore::UsersFolder()).Create(RootKey::ClassesRoot, QStringLiteral(".ztv"));
    Register();
    EXPECT_EQ(Value(QStringLiteral(".ztv")), QByteArray("none"));
    EXPECT_EQ(Value(QStringLiteral("ZTV Link")), QByteArray("none"));
    EXPECT_EQ(Entry(), QByteArray());
}

TEST_F(FileTypeTest, PublishesNothingOfABindingToAnotherClass) {
    FileKeyStore store(FileKeyStore::UsersFolder());
    FileAssociation::CreateAssociation(store, QStringLiteral(".ztv"), QStringLiteral("Another"),
                                       QStringLiteral("File"), QStringLiteral("/opt/another"));
    Register();
    EXPECT_EQ(Value(QStringLiteral(".ztv")), QByteArray("Another\0", 8));
    EXPECT_EQ(Entry(), QByteArray());
}

TEST_F(FileTypeTest, GoesOnSilentlyWhereItCantWriteAndTriesAgain) {
    WriteFile(Path("home"), "in the way");
    Register();
    EXPECT_EQ(Content("home"), QByteArray("in the way"));
    QFile::remove(Path("home"));
    Register();
    EXPECT_TRUE(KeyExists());
    EXPECT_TRUE(ToolsWereRun());
}

TEST_F(FileTypeTest, LeavesNoHalfOfABindingBehind) {
    const QString blocked = Path("home/ztv-link/keys/classes/ztv%20link");
    WriteFile(blocked, "in the way");
    Register();
    EXPECT_FALSE(KeyExists());
    EXPECT_EQ(Entry(), QByteArray());
    QFile::remove(blocked);
    Register();
    EXPECT_TRUE(KeyExists());
    EXPECT_TRUE(ToolsWereRun());
}

TEST_F(FileTypeTest, TriesAgainWhenThereIsRoomOnTheDisk) {
    for (const rlim_t bytes : {0U, 15U, 20U, 30U, 200U}) { // too few for one of the files
        const FileSizeLimit limit(bytes);
        Register();
        EXPECT_EQ(Entry(), QByteArray()) << bytes;
    }
    Register();
    EXPECT_FALSE(Entry().isEmpty());
    EXPECT_TRUE(ToolsWereRun());
}

TEST_F(FileTypeTest, PublishesLaterWhatAnEarlierStartCouldnt) {
    const char *folders[] = {"home/icons", "home/mime", "home/applications"};
    for (const char *folder : folders) {
        WriteFile(Path(folder), "in the way");
    }
    for (const char *folder : folders) {
        Register();
        EXPECT_TRUE(KeyExists()) << folder;
        EXPECT_EQ(Entry(), QByteArray()) << folder;
        QFile::remove(Path(folder));
    }
    Register("/elsewhere/ZtvLink");
    EXPECT_TRUE(Entry().contains("\nExec=\"/opt/ZTV Link/ZtvLink\" %f\n"));
    EXPECT_TRUE(ToolsWereRun());
}

TEST_F(FileTypeTest, DoesWithoutTheToolsAndWithoutAnIcon) {
    path_.Set(Path("nothing"));
    FileType::Register(QStringLiteral("/opt/ZtvLink"), Path("gone.svg"));
    EXPECT_FALSE(Entry().isEmpty());
    EXPECT_FALSE(QFileInfo::exists(Path("home/icons")));
}

TEST_F(FileTypeTest, NamesTheRunningProgram) {
    EXPECT_EQ(FileType::ThisApplication(), QCoreApplication::applicationFilePath());
}

TEST(SettingsFileTypeTest, HasAnIdentifierThatReadsAsItsName) {
    const std::uint32_t id = SettingsFileType::ApplicationId;
    const char text[] = {static_cast<char>(id >> 24), static_cast<char>(id >> 16 & 255),
                         static_cast<char>(id >> 8 & 255), static_cast<char>(id & 255), 0};
    EXPECT_STREQ(text, "ZTV1");
}

} // namespace ztv
