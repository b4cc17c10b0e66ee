#include "support/ReplaceContent.h"

#include "support/Fault.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace ztv {

class ReplaceContentTest : public testing::Test {
protected:
    QStringList Files() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("a"));
};

TEST_F(ReplaceContentTest, ReplacesTheContent) {
    EXPECT_TRUE(TryReplaceContent(path_, "first and long"));
    EXPECT_TRUE(TryReplaceContent(path_, "second"));
    EXPECT_EQ(ReadFile(path_), QByteArray("second"));
    EXPECT_TRUE(TryReplaceContent(path_, {}));
    EXPECT_EQ(ReadFile(path_), QByteArray());
}

TEST_F(ReplaceContentTest, KeepsTheOldContentWhereTheNewDoesntFit) {
    WriteFile(path_, "old");
    const FileSizeLimit limit(8);
    EXPECT_FALSE(TryReplaceContent(path_, "a little too long"));
    EXPECT_FALSE(TryReplaceContent(path_, QByteArray(100000, 'a')));
    EXPECT_EQ(ReadFile(path_), QByteArray("old"));
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a")});
}

TEST_F(ReplaceContentTest, SaysWhatTheSystemSaysOfAWriteThatFailed) {
    const FileSizeLimit limit(8);
    try {
        ReplaceContent(path_, "a little too long");
        ADD_FAILURE() << "it fits";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Description(), path_ + QStringLiteral(": File too large."));
    }
}

TEST_F(ReplaceContentTest, FailsWhereThereIsNoFolder) {
    EXPECT_FALSE(TryReplaceContent(folder_.filePath(QStringLiteral("gone/a")), "x"));
    EXPECT_EQ(Files(), QStringList());
}

TEST(ReadOnlyFileTest, IsReplacedAllTheSame) {
    const AsNobody nobody;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    WriteFile(path, "old");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner));
    EXPECT_TRUE(TryReplaceContent(path, "new"));
    EXPECT_EQ(ReadFile(path), QByteArray("new"));
}

TEST(ReadOnlyFileTest, IsReadOnlyAgainWhereTheNewContentDoesntFit) {
    const AsNobody nobody;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    WriteFile(path, "old");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner));
    const QFile::Permissions before = QFile::permissions(path);
    {
        const FileSizeLimit limit(8);
        EXPECT_FALSE(TryReplaceContent(path, "a little too long"));
    }
    EXPECT_EQ(QFile::permissions(path).toInt(), before.toInt());
    EXPECT_FALSE(QFileInfo(path).isWritable());
    EXPECT_EQ(ReadFile(path), QByteArray("old"));
}

// Makes a file of root's in a folder that everybody may write to. Only root can make a file of another owner.
class FileOfAnotherOwnerTest : public ReplaceContentTest {
protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "there is nobody else";
        }
        WriteFile(path_, "old");
        Permit(path_, 0644);
        Permit(folder_.path(), 0777);
    }

    static void Permit(const QString &path, mode_t mode) {
        EXPECT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0);
    }
    static mode_t ModeOf(const QString &path) {
        struct stat status = {};
        EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777;
    }
    static bool ReplaceAsNobody(const QString &path) {
        const AsNobody nobody;
        return TryReplaceContent(path, "new");
    }
};

TEST_F(FileOfAnotherOwnerTest, IsReplacedWhateverItsAttributes) {
    const mode_t modes[] = {0644, 0444, 0666, 0604, 0};
    for (const mode_t mode : modes) {
        SCOPED_TRACE(mode);
        QFile::remove(path_);
        WriteFile(path_, "old");
        Permit(path_, mode);
        EXPECT_TRUE(ReplaceAsNobody(path_));
        EXPECT_EQ(ReadFile(path_), QByteArray("new"));
        EXPECT_EQ(ModeOf(path_), mode | 0600);
        EXPECT_EQ(QFileInfo(path_).ownerId(), 65534U);
    }
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a")});
}

TEST_F(FileOfAnotherOwnerTest, IsReplacedBehindALink) {
    const QString link = folder_.filePath(QStringLiteral("link"));
    const QString linkOfLink = folder_.filePath(QStringLiteral("again"));
    ASSERT_TRUE(QFile::link(QStringLiteral("a"), link)); // by its name alone
    ASSERT_TRUE(QFile::link(link, linkOfLink));
    EXPECT_TRUE(ReplaceAsNobody(linkOfLink));
    EXPECT_TRUE(QFileInfo(link).isSymbolicLink());
    EXPECT_TRUE(QFileInfo(linkOfLink).isSymbolicLink());
    EXPECT_FALSE(QFileInfo(path_).isSymbolicLink());
    EXPECT_EQ(ReadFile(path_), QByteArray("new"));
}

TEST_F(FileOfAnotherOwnerTest, LeavesItsOtherNameTheOldContent) {
    const QByteArray other = QFile::encodeName(folder_.filePath(QStringLiteral("other")));
    ASSERT_EQ(link(QFile::encodeName(path_).constData(), other.constData()), 0);
    EXPECT_TRUE(ReplaceAsNobody(path_));
    EXPECT_EQ(ReadFile(path_), QByteArray("new"));
    EXPECT_EQ(ReadFile(QFile::decodeName(other)), QByteArray("old"));
}

TEST_F(FileOfAnotherOwnerTest, StaysInAFolderWhereOnlyOwnersReplaceTheirFiles) {
    Permit(folder_.path(), 01777);
    try {
        const AsNobody nobody;
        ReplaceContent(path_, "new");
        ADD_FAILURE() << "it was replaced";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Description(),
                  path_ + QStringLiteral(
                              ": Operation not permitted. The file is somebody else's, in a folder where "
                              "only the owner of a file may replace it."));
    }
    EXPECT_EQ(ReadFile(path_), QByteArray("old"));
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a")});
}

TEST_F(FileOfAnotherOwnerTest, StaysInAFolderThatMayNotBeWritten) {
    Permit(folder_.path(), 0755);
    try {
        const AsNobody nobody;
        ReplaceContent(path_, "new");
        ADD_FAILURE() << "it was replaced";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Description(), path_ + QStringLiteral(": Permission denied."));
    }
    EXPECT_EQ(ReadFile(path_), QByteArray("old"));
}

TEST_F(ReplaceContentTest, MakesANewFileAsTheUsersMaskSays) {
    const mode_t before = umask(027);
    EXPECT_TRUE(TryReplaceContent(path_, "new"));
    umask(before);
    EXPECT_EQ(QFile::permissions(path_) & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther),
              QFile::Permissions(QFile::ReadGroup));
}

TEST_F(ReplaceContentTest, WritesWhatALinkToNothingNames) {
    const QString link = folder_.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(path_, link));
    EXPECT_TRUE(TryReplaceContent(link, "new"));
    EXPECT_EQ(ReadFile(path_), QByteArray("new"));
    EXPECT_TRUE(QFileInfo(link).isSymbolicLink());
}

TEST_F(ReplaceContentTest, FailsForALinkToItself) {
    ASSERT_TRUE(QFile::link(path_, path_));
    EXPECT_FALSE(TryReplaceContent(path_, "new"));
    EXPECT_TRUE(QFileInfo(path_).isSymbolicLink());
}

} // namespace ztv
