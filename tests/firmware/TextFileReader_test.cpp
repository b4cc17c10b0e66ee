#include "firmware/TextFileReader.h"

#include "support/Fault.h"
#include "tests/helpers/AsNobody.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/Printers.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztv {

class TextFileReaderTest : public testing::Test {
protected:
    QList<QByteArray> Lines(const QByteArray &content, qsizetype longest = 100) const {
        WriteFile(path_, content);
        TextFileReader reader(path_, longest);
        QList<QByteArray> lines;
        while (!reader.AtEnd()) {
            lines.append(reader.ReadLine().toByteArray());
        }
        EXPECT_TRUE(reader.ReadLine().isEmpty());
        EXPECT_TRUE(reader.AtEnd());
        return lines;
    }

    void ExpectFault(const QString &path, const QString &reason) const {
        try {
            const TextFileReader reader(path, 10);
            FAIL() << "opened " << path.toStdString();
        } catch (const Fault &fault) {
            EXPECT_EQ(fault.Cause(), Fault::Kind::File);
            EXPECT_EQ(fault.Description(), QStringLiteral("%1: %2.").arg(path, reason));
        }
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("a.hex"));
};

TEST_F(TextFileReaderTest, TakesEveryLineEnd) {
    const QList<QByteArray> lines = {"one", "two", "three"};
    EXPECT_EQ(Lines("one\r\ntwo\r\nthree\r\n"), lines);
    EXPECT_EQ(Lines("one\ntwo\nthree\n"), lines);
    EXPECT_EQ(Lines("one\rtwo\rthree\r"), lines);
    EXPECT_EQ(Lines("one\rtwo\nthree\r\n"), lines);
}

TEST_F(TextFileReaderTest, TakesALastLineWithoutAnEnd) {
    EXPECT_EQ(Lines("one\r\ntwo"), (QList<QByteArray>{"one", "two"}));
    EXPECT_EQ(Lines("one"), QList<QByteArray>{"one"});
}

TEST_F(TextFileReaderTest, GivesEmptyLines) {
    EXPECT_EQ(Lines(""), QList<QByteArray>());
    EXPECT_EQ(Lines("\n"), QList<QByteArray>{""});
    EXPECT_EQ(Lines("\r\n\r\n"), (QList<QByteArray>{"", ""}));
    EXPECT_EQ(Lines("\r\r\n\n"), (QList<QByteArray>{"", "", ""}));
    EXPECT_EQ(Lines("\n\r"), (QList<QByteArray>{"", ""}));
}

TEST_F(TextFileReaderTest, KeepsTheStartOfALongLine) {
    EXPECT_EQ(Lines("0123456789\r\nabc\n", 4), (QList<QByteArray>{"0123", "abc"}));
    EXPECT_EQ(Lines("0123\r\n4567", 4), (QList<QByteArray>{"0123", "4567"}));
    EXPECT_EQ(Lines(QByteArray(300000, 'x') + "\r\n" + QByteArray(200000, 'y') + "\nz", 4),
              (QList<QByteArray>{"xxxx", "yyyy", "z"}));
}

TEST_F(TextFileReaderTest, TakesLinesAndTheirEndsWhereverAReadStops) {
    for (qsizetype length = 65400; length < 65700; ++length) {
        const QByteArray start(length, 'x');
        const QList<QByteArray> lines = Lines(start + "\r\n01234567\r\n\r\nlast\r", 100);
        EXPECT_EQ(lines, (QList<QByteArray>{start.left(100), "01234567", "", "last"})) << length;
    }
}

TEST_F(TextFileReaderTest, TakesManyLinesOfEveryLength) {
    QByteArray content;
    QList<QByteArray> expected;
    for (int number = 0; number < 5000; ++number) {
        expected.append(QByteArray(number % 90, 'a') + QByteArray::number(number));
        content += expected.back() + "\r\n";
    }
    EXPECT_EQ(Lines(content), expected);
}

TEST_F(TextFileReaderTest, JudgesNoMoreOfALineThanItsStart) {
    // A sparse file that would take minutes to read.
    QFile file(path_);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(Q_INT64_C(1) << 40));
    TextFileReader reader(path_, 100);
    EXPECT_EQ(reader.ReadLine(), QByteArrayView(QByteArray(100, '\0')));
}

TEST_F(TextFileReaderTest, RefusesWhatIsntAFile) {
    const QString folder = folder_.path();
    const QString pipe = folder_.filePath(QStringLiteral("pipe"));
    ASSERT_EQ(mkfifo(qPrintable(pipe), 0600), 0);
    for (const QString &path : {folder, pipe, QStringLiteral("/dev/zero")}) {
        ExpectFault(path, QStringLiteral("this isn't a file that can be read"));
    }
}

TEST_F(TextFileReaderTest, RefusesAFileThatIsntThere) {
    const QString nul = QStringLiteral("a") + QChar::Null;
    for (const QString &path : {folder_.filePath(QStringLiteral("gone")), QString(), nul}) {
        ExpectFault(path, QStringLiteral("there is no such file"));
    }
}

TEST_F(TextFileReaderTest, RefusesAFileThatMayNotBeRead) {
    const AsNobody nobody;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.hex"));
    WriteFile(path, "a");
    ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
    ExpectFault(path, QStringLiteral("Permission denied"));
}

TEST_F(TextFileReaderTest, SaysWhenReadingFails) {
    const QString path = QStringLiteral("/proc/self/mem"); // its start isn't mapped
    TextFileReader reader(path, 10);
    EXPECT_THROW(reader.AtEnd(), Fault);
}

TEST_F(TextFileReaderTest, TellsThatTheFileWasWrittenTo) {
    WriteFile(path_, "abcd\nefgh\n");
    TextFileReader reader(path_, 10);
    reader.ReadLine();
    EXPECT_FALSE(reader.HasChanged());
    QFile file(path_);
    ASSERT_TRUE(file.open(QFile::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(1), QFile::FileModificationTime));
    EXPECT_TRUE(reader.HasChanged()); // though it is as long as before
    TextFileReader another(path_, 10);
    EXPECT_FALSE(another.HasChanged());
    ASSERT_TRUE(file.resize(3));
    EXPECT_TRUE(another.HasChanged());
}

TEST_F(TextFileReaderTest, TellsHowMuchOfTheFileIsRead) {
    WriteFile(path_, "abcd\nefgh\n");
    TextFileReader reader(path_, 10);
    EXPECT_EQ(reader.Fraction(), 0);
    reader.ReadLine();
    EXPECT_FALSE(reader.AtEnd());
    EXPECT_EQ(reader.Fraction(), 0.5);
    ASSERT_EQ(::truncate(path_.toUtf8().constData(), 2), 0);
    EXPECT_EQ(reader.Fraction(), 1);
    WriteFile(path_, {});
    EXPECT_EQ(TextFileReader(path_, 10).Fraction(), 1);
}

} // namespace ztv
