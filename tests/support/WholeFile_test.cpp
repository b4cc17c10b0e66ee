#include "support/WholeFile.h"

#include "tests/support/FileSizeLimit.h"
#include "tests/support/Files.h"
#include "tests/support/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

class WholeFileTest : public testing::Test {
protected:
    QStringList Files() const {
        return QDir(folder_.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("a"));
};

TEST_F(WholeFileTest, ReplacesTheContent) {
    EXPECT_TRUE(WholeFile::Write(path_, "first and long"));
    EXPECT_TRUE(WholeFile::Write(path_, "second"));
    EXPECT_EQ(ReadFile(path_), QByteArray("second"));
    EXPECT_TRUE(WholeFile::Write(path_, {}));
    EXPECT_EQ(ReadFile(path_), QByteArray());
}

TEST_F(WholeFileTest, KeepsTheOldContentWhereTheNewDoesntFit) {
    WriteFile(path_, "old");
    const FileSizeLimit limit(8);
    EXPECT_FALSE(WholeFile::Write(path_, "a little too long"));
    EXPECT_FALSE(WholeFile::Write(path_, QByteArray(100000, 'a')));
    EXPECT_EQ(ReadFile(path_), QByteArray("old"));
    EXPECT_EQ(Files(), QStringList{QStringLiteral("a")});
}

TEST_F(WholeFileTest, FailsWhereThereIsNoFolder) {
    EXPECT_FALSE(WholeFile::Write(folder_.filePath(QStringLiteral("gone/a")), "x"));
    EXPECT_EQ(Files(), QStringList());
}
