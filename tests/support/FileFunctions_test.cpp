#include "support/FileFunctions.h"

#include "tests/helpers/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace ztv {

class FileFunctionsTest : public testing::Test {
protected:
    bool Exists(const QString &name) const { return FileFunctions::FileExists(folder_.filePath(name)); }
    void Make(const QString &name) const { WriteFile(folder_.filePath(name), {}); }

    QTemporaryDir folder_;
};

TEST_F(FileFunctionsTest, FindsAnOrdinaryFile) {
    Make(QStringLiteral("a b\u00e4.hex"));
    EXPECT_TRUE(Exists(QStringLiteral("a b\u00e4.hex")));
    EXPECT_FALSE(Exists(QStringLiteral("other.hex")));
    EXPECT_FALSE(Exists(QStringLiteral("missing/a.hex")));
}

TEST_F(FileFunctionsTest, FindsAFileThatCantBeWritten) {
    Make(QStringLiteral("a.hex"));
    QFile::setPermissions(folder_.filePath(QStringLiteral("a.hex")), QFile::ReadOwner);
    EXPECT_TRUE(Exists(QStringLiteral("a.hex")));
}

TEST_F(FileFunctionsTest, FindsAFileByARelativePath) {
    Make(QStringLiteral("a.hex"));
    const QString previous = QDir::currentPath();
    QDir::setCurrent(folder_.path());
    EXPECT_TRUE(FileFunctions::FileExists(QStringLiteral("a.hex")));
    EXPECT_TRUE(FileFunctions::FileExists(QStringLiteral("./a.hex")));
    QDir::setCurrent(previous);
}

TEST_F(FileFunctionsTest, DoesntTakeAFolderForAFile) {
    QDir(folder_.path()).mkdir(QStringLiteral("folder.hex"));
    EXPECT_FALSE(Exists(QStringLiteral("folder.hex")));
    EXPECT_FALSE(Exists(QStringLiteral("folder.hex/")));
    EXPECT_FALSE(Exists(QStringLiteral(".")));
    EXPECT_FALSE(FileFunctions::FileExists(QStringLiteral("/")));
}

TEST_F(FileFunctionsTest, FindsNothingForTextsThatNameNoFile) {
    EXPECT_FALSE(FileFunctions::FileExists(QString()));
    EXPECT_FALSE(FileFunctions::FileExists(QStringLiteral(" ")));
    Make(QStringLiteral("a.hex"));
    EXPECT_FALSE(Exists(QStringLiteral("a.hex") + QChar::Null + QStringLiteral(".txt")));
    EXPECT_FALSE(Exists(QStringLiteral("a.hex/")));
    EXPECT_FALSE(Exists(QString(5000, u'a')));
}

TEST_F(FileFunctionsTest, TakesAPatternForTheNameThatItIs) {
    Make(QStringLiteral("a.hex"));
    EXPECT_FALSE(Exists(QStringLiteral("*.hex")));
    EXPECT_FALSE(Exists(QStringLiteral("?.hex")));
}

#ifdef Q_OS_UNIX
TEST_F(FileFunctionsTest, FollowsALinkToItsFile) {
    Make(QStringLiteral("a.hex"));
    QFile::link(folder_.filePath(QStringLiteral("a.hex")), folder_.filePath(QStringLiteral("link.hex")));
    QFile::link(folder_.filePath(QStringLiteral("gone.hex")), folder_.filePath(QStringLiteral("broken.hex")));
    EXPECT_TRUE(Exists(QStringLiteral("link.hex")));
    EXPECT_FALSE(Exists(QStringLiteral("broken.hex")));
}

TEST_F(FileFunctionsTest, FindsAFileWhoseNameStartsWithAPoint) {
    Make(QStringLiteral(".a.hex"));
    EXPECT_TRUE(Exists(QStringLiteral(".a.hex")));
}

TEST_F(FileFunctionsTest, DoesntTakeADeviceForAFile) {
    EXPECT_FALSE(FileFunctions::FileExists(QStringLiteral("/dev/null")));
}
#endif

} // namespace ztv
