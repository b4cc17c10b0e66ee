#include "firmware/TextFileWriter.h"

#include "support/Fault.h"
#include "tests/helpers/FileSizeLimit.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztv {

class TextFileWriterTest : public testing::Test {
protected:
    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("a.hex"));
};

TEST_F(TextFileWriterTest, EndsEachLineWithCarriageReturnAndLineFeed) {
    TextFileWriter writer(path_);
    writer.WriteLine("one");
    writer.WriteLine("");
    writer.WriteLine("two");
    writer.Close();
    EXPECT_EQ(ReadFile(path_), QByteArray("one\r\n\r\ntwo\r\n"));
}

TEST_F(TextFileWriterTest, DiscardsWhatTheFileHeld) {
    WriteFile(path_, "a long old content");
    TextFileWriter writer(path_);
    EXPECT_EQ(ReadFile(path_), QByteArray());
    writer.Close();
    EXPECT_EQ(ReadFile(path_), QByteArray());
}

TEST_F(TextFileWriterTest, WritesManyLines) {
    TextFileWriter writer(path_);
    QByteArray expected;
    for (int number = 0; number < 50000; ++number) {
        const QByteArray line = QByteArray::number(number);
        writer.WriteLine(line);
        expected += line + "\r\n";
    }
    writer.Close();
    EXPECT_TRUE(ReadFile(path_) == expected);
}

TEST_F(TextFileWriterTest, RefusesWhatCantBeAFile) {
    const QString pipe = folder_.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    const QString nul = QStringLiteral("a") + QChar::Null;
    const QString noFolder = folder_.filePath(QStringLiteral("gone/a"));
    for (const QString &path :
         {folder_.path(), pipe, QStringLiteral("/dev/full"), QString(), nul, noFolder}) {
        try {
            const TextFileWriter writer(path);
            ADD_FAILURE() << "created " << path.toStdString();
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_TRUE(fault.Description().startsWith(path + QStringLiteral(": ")));
        }
    }
}

TEST_F(TextFileWriterTest, SaysAtTheEndThatThereIsNoRoom) {
    const FileSizeLimit limit(3);
    TextFileWriter writer(path_);
    writer.WriteLine("one");
    try {
        writer.Close();
        FAIL() << "there is room";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::File);
        EXPECT_EQ(fault.Description(), path_ + QStringLiteral(": File too large."));
    }
}

TEST_F(TextFileWriterTest, SaysOnTheWayThatThereIsNoRoom) {
    const FileSizeLimit limit(1000);
    TextFileWriter writer(path_);
    const auto writeMuch = [&writer] {
        for (int line = 0; line < 10000; ++line) {
            writer.WriteLine(QByteArray(100, 'x'));
        }
    };
    EXPECT_THROW(writeMuch(), Fault);
}

TEST_F(TextFileWriterTest, SaysWhenTheFileCantBeClosed) {
    const int lowest = dup(STDIN_FILENO); // the one that the file gets
    ASSERT_EQ(close(lowest), 0);
    TextFileWriter writer(path_);
    ASSERT_EQ(close(lowest), 0); // so that the system refuses the write, as on a full network drive
    try {
        writer.Close();
        FAIL() << "it is closed";
    } catch (const Fault &fault) {
        EXPECT_EQ(fault.Cause(), Fault::Kind::File);
        EXPECT_EQ(fault.Description(), path_ + QStringLiteral(": Bad file descriptor."));
    }
}

} // namespace ztv
