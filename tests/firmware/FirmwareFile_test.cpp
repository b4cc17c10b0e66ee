#include "firmware/FirmwareFile.h"

#include "tests/helpers/AsNobody.h"
#include "tests/helpers/Printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace ztv {

namespace {

using State = FirmwareFile::State;

constexpr auto record = ":10080000000102030405060708090A0B0C0D0E0F70\r\n";
constexpr auto good = ":10080000000102030405060708090A0B0C0D0E0F70\r\n:00000001FF\r\n";

class FirmwareFileTest : public testing::Test {
protected:
    QString Path(const char *name) const { return folder_.filePath(QString::fromUtf8(name)); }
    QString Make(const char *name, const QByteArray &content) const {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QFile::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
        return Path(name);
    }
    static void DateOf(const QString &path, const QDateTime &modified) {
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::ReadWrite));
        ASSERT_TRUE(file.setFileTime(modified, QFile::FileModificationTime));
    }
    State StateOf(const char *name, const QByteArray &content) const {
        return FirmwareFile(Make(name, content)).FileState();
    }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(FirmwareFileTest, NamesAGoodFileWithItsSizeAndDate) {
    QByteArray content;
    while (content.size() < 132000) {
        content += record;
    }
    const QString path = Make("B70214.hex", content + ":00000001FF\r\n");
    DateOf(path, QDateTime(QDate(2026, 11, 2), QTime(23, 59, 59)));
    const FirmwareFile file(path);
    EXPECT_TRUE(file.IsGood());
    EXPECT_EQ(file.Path(), path);
    EXPECT_EQ(file.Description(), QStringLiteral("Firmware file: %1, 132,043 bytes, 2 Nov 2026").arg(path));
}

TEST_F(FirmwareFileTest, GroupsTheDigitsOfTheSize) {
    const auto sizeIn = [this](qsizetype bytes) {
        const QString path = Make("x.hex", QByteArray(good) + QByteArray(bytes - 58, ' '));
        EXPECT_EQ(QFile(path).size(), bytes);
        return FirmwareFile(path).Description().section(QStringLiteral(".hex, "), 1).section(u' ', 0, 0);
    };
    EXPECT_EQ(sizeIn(58), QStringLiteral("58"));
    EXPECT_EQ(sizeIn(999), QStringLiteral("999"));
    EXPECT_EQ(sizeIn(1000), QStringLiteral("1,000"));
    EXPECT_EQ(sizeIn(123456), QStringLiteral("123,456"));
    EXPECT_EQ(sizeIn(1234567), QStringLiteral("1,234,567"));
}

TEST_F(FirmwareFileTest, AFileThatIsntThereIsMissing) {
    for (const char *name : {"B70214.hex", "Firmware/B70214.hex"}) {
        const FirmwareFile file(Path(name));
        EXPECT_EQ(file.FileState(), State::Missing);
        EXPECT_EQ(file.Description(), QStringLiteral("No firmware file there: ") + Path(name));
    }
}

TEST_F(FirmwareFileTest, AFolderIsNoFile) {
    const FirmwareFile file(folder_.path());
    EXPECT_EQ(file.FileState(), State::Folder);
    EXPECT_EQ(file.Description(), QStringLiteral("A folder, not a firmware file: ") + folder_.path());
}

// Opening it would wait for a writer.
TEST_F(FirmwareFileTest, APipeIsntOpened) {
    ASSERT_EQ(mkfifo(QFile::encodeName(Path("pipe")).constData(), 0600), 0);
    const FirmwareFile file(Path("pipe"));
    EXPECT_EQ(file.FileState(), State::Special);
    EXPECT_EQ(file.Description(), QStringLiteral("Not an ordinary file: ") + Path("pipe"));
}

TEST_F(FirmwareFileTest, AFileThatMayNotBeReadIsUnreadable) {
    const QString path = Make("B70214.hex", good);
    ASSERT_TRUE(QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755)));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::Permissions()));
    const AsNobody nobody;
    const FirmwareFile file(path);
    EXPECT_EQ(file.FileState(), State::Unreadable);
    EXPECT_EQ(file.Description(), QStringLiteral("Firmware file that can't be read: ") + path);
}

TEST_F(FirmwareFileTest, AnEmptyFileIsEmpty) {
    const FirmwareFile file(Make("B70214.hex", ""));
    EXPECT_EQ(file.FileState(), State::Empty);
    EXPECT_EQ(file.Description(), QStringLiteral("Firmware file without content: ") + file.Path());
}

TEST_F(FirmwareFileTest, OtherContentIsInvalid) {
    EXPECT_EQ(StateOf("text", "hello\r\n"), State::Invalid);
    EXPECT_EQ(StateOf("blank", "\r\n"), State::Invalid);
    EXPECT_EQ(StateOf("half", record), State::Invalid) << "without its end record";
    EXPECT_EQ(StateOf("sum", ":10080000000102030405060708090A0B0C0D0E0F71\r\n:00000001FF\r\n"),
              State::Invalid);
    const FirmwareFile file(Path("sum"));
    EXPECT_EQ(file.Description(), QStringLiteral("Damaged firmware file, or none: ") + Path("sum"));
}

TEST_F(FirmwareFileTest, ALinkIsFollowedAndNamed) {
    const QString path = Make("B70300.hex", good);
    DateOf(path, QDateTime(QDate(2026, 1, 31), QTime(12, 0)));
    ASSERT_TRUE(QFile::link(path, Path("B70214.hex")));
    const FirmwareFile file(Path("B70214.hex"));
    EXPECT_EQ(file.Description(), QStringLiteral("Firmware file: %1 (a link to %2), 58 bytes, 31 Jan 2026")
                                      .arg(Path("B70214.hex"), QFileInfo(path).canonicalFilePath()));
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(file.HasChanged());
    EXPECT_EQ(FirmwareFile(Path("B70214.hex")).FileState(), State::Missing);
}

TEST_F(FirmwareFileTest, NoticesEachChange) {
    const QString path = Path("B70214.hex");
    const FirmwareFile missing(path);
    EXPECT_FALSE(missing.HasChanged());
    Make("B70214.hex", "");
    EXPECT_TRUE(missing.HasChanged());
    const FirmwareFile empty(path);
    EXPECT_FALSE(empty.HasChanged());
    Make("B70214.hex", good);
    EXPECT_TRUE(empty.HasChanged());
    const FirmwareFile file(path);
    DateOf(path, QDateTime(QDate(2026, 11, 2), QTime(12, 0)));
    EXPECT_TRUE(file.HasChanged()) << "another date alone";
    const FirmwareFile dated(path);
    EXPECT_FALSE(dated.HasChanged());
    ASSERT_TRUE(QFile::setPermissions(path, QFile::WriteOwner));
    EXPECT_TRUE(dated.HasChanged()) << "other permissions alone";
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_TRUE(dated.HasChanged());
    EXPECT_FALSE(FirmwareFile(path).HasChanged());
}

TEST_F(FirmwareFileTest, NoticesALinkThatLeadsToAnotherFile) {
    const QDateTime date(QDate(2026, 1, 31), QTime(12, 0));
    for (const char *name : {"one.hex", "two.hex"}) {
        DateOf(Make(name, good), date);
    }
    ASSERT_TRUE(QFile::link(Path("one.hex"), Path("B70214.hex")));
    const FirmwareFile file(Path("B70214.hex"));
    ASSERT_TRUE(QFile::remove(Path("B70214.hex")));
    ASSERT_TRUE(QFile::link(Path("two.hex"), Path("B70214.hex")));
    EXPECT_TRUE(file.HasChanged());
}

TEST_F(FirmwareFileTest, LeavesTheCurrentFolderAsItIs) {
    const QString before = QDir::currentPath();
    const FirmwareFile file(Make("B70214.hex", good));
    EXPECT_TRUE(file.IsGood());
    EXPECT_EQ(QDir::currentPath(), before);
}

} // namespace ztv
