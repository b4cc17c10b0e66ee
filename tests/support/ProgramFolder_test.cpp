#include "support/ProgramFolder.h"

#include "tests/helpers/EnvironmentVariable.h"
#include "tests/helpers/Printers.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

TEST(ProgramFolderTest, IsTheExecutablesUnlessTheEnvironmentNamesAnother) {
    qunsetenv("ZTVLINK_HOME");
    EXPECT_EQ(ProgramFolder(), QCoreApplication::applicationDirPath());
    qputenv("ZTVLINK_HOME", "/somewhere/else");
    EXPECT_EQ(ProgramFolder(), QStringLiteral("/somewhere/else"));
    qunsetenv("ZTVLINK_HOME");
}

TEST(ProgramFolderTest, OwnFilesGoToItIfItCanBeWrittenTo) {
    const QTemporaryDir folder;
    EXPECT_EQ(FolderForOwnFiles(folder.path()), folder.path());
    EXPECT_TRUE(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST(ProgramFolderTest, OtherwiseTheyGoToTheUsersDataFolder) {
    const QTemporaryDir data;
    const EnvironmentVariable isolated("XDG_DATA_HOME", data.path());
    const QString expected = data.filePath(QStringLiteral("ZTV Link"));
    EXPECT_EQ(FolderForOwnFiles(QStringLiteral("/proc")), expected); // for root, too
    EXPECT_EQ(FolderForOwnFiles(data.filePath(QStringLiteral("none"))), expected);
    EXPECT_TRUE(QFileInfo(expected).isDir());
}

TEST(ProgramFolderTest, BackupsHaveAFolderOfTheUsersThatTheFirstOneCreates) {
    const QTemporaryDir data;
    const EnvironmentVariable isolated("XDG_DATA_HOME", data.path());
    EXPECT_EQ(BackupFolder(), data.filePath(QStringLiteral("ZTV Link/Backups")));
    EXPECT_TRUE(QDir(data.path()).isEmpty());
}

TEST(ProgramFolderTest, ARelativeOneStaysWhereItIs) {
    const QString before = QDir::currentPath();
    const EnvironmentVariable home("ZTVLINK_HOME", QStringLiteral("some/folder"));
    FixProgramFolder();
    QDir::setCurrent(QStringLiteral("/"));
    EXPECT_EQ(ProgramFolder(), before + QStringLiteral("/some/folder"));
    QDir::setCurrent(before);
    EnvironmentVariable none("ZTVLINK_HOME", QString());
    qunsetenv("ZTVLINK_HOME");
    FixProgramFolder();
    EXPECT_FALSE(qEnvironmentVariableIsSet("ZTVLINK_HOME"));
}

} // namespace ztv
