#include "support/ReplaceFile.h"

#include "support/Fault.h"
#include "tests/support/AsNobody.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Files.h"
#include "tests/support/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

class ReplaceFileTest : public testing::Test {
protected:
    QStringList Files() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("a"));
};

TEST_F(ReplaceFileTest, ReplacesTheContent) {
    EXPECT_TRUE(TryReplaceFile(path_, "first and long"));
    EXPECT_TRUE(TryReplaceFile(path_, "second"));
    EXPECT_EQ(ReadFile(path_), QByteArray("second"));
    EXPECT_TRUE(TryReplaceFile(path_, {}));
    EXPECT_EQ(ReadFile(path_), QByteArray());
}

TEST_F(ReplaceFileTest, KeepsTheOldContentWhereTheNewDoesntFit) {
    WriteFile(path_, "old");
    const FileSizeLimit limit(8);
    EXPECT_FALSE(TryReplaceFile(path_, "a little too long"));
    EXPECT_FALSE(TryReplaceFile(path_, QByteArray(100000, 'a')));
    EXPECT_EQ(ReadFile(path_), QByteArray("old"));
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a")});
}

TEST_F(ReplaceFileTest, SaysWhatTheSystemSaysOfAWriteThatFailed) {
    const FileSizeLimit limit(8);
    try {
        ReplaceFile(path_, "a little too long");
        ADD_FAILURE() << "it fits";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Description(), path_ + QStringLiteral(": File too large."));
    }
}

TEST_F(ReplaceFileTest, FailsWhereThereIsNoFolder) {
    EXPECT_FALSE(TryReplaceFile(folder_.filePath(QStringLiteral("gone/a")), "x"));
    EXPECT_EQ(Files(), QStringList());
}

TEST(ReadOnlyFileTest, IsReplacedAllTheSame) {
    const AsNobody nobody;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    WriteFile(path, "old");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner));
    EXPECT_TRUE(TryReplaceFile(path, "new"));
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
        EXPECT_FALSE(TryReplaceFile(path, "a little too long"));
    }
    EXPECT_EQ(QFile::permissions(path).toInt(), before.toInt());
    EXPECT_FALSE(QFileInfo(path).isWritable());
    EXPECT_EQ(ReadFile(path), QByteArray("old"));
}
