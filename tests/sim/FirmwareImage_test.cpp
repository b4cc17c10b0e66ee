#include "sim/FirmwareImage.h"

#include "sim/DeviceMemory.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>

namespace sim {
namespace {

constexpr int start = DeviceMemory::applicationStart;
constexpr int size = DeviceMemory::applicationSize;

TEST(SimFirmwareImage, CarriesItsVersion) {
    for (const int version : {0, 214, upgradeVersion, 65535}) {
        EXPECT_EQ(VersionOf(Application(version, size)), version);
    }
}

TEST(SimFirmwareImage, HasItsVersionAtAFixedPlace) {
    EXPECT_EQ(Application(0x1234, size).mid(0x20, 8), QByteArray("ZTVSIM\x34\x12"));
}

TEST(SimFirmwareImage, IsTheSameForTheSameVersion) {
    EXPECT_EQ(Application(300, size), Application(300, size));
    EXPECT_NE(Application(300, size).last(16), Application(214, size).last(16));
    EXPECT_EQ(Application(300, size).size(), size);
}

TEST(SimFirmwareImage, HasNoVersionOfAForeignApplication) {
    EXPECT_EQ(VersionOf(QByteArray(size, '\xFF')), std::nullopt);
    EXPECT_EQ(VersionOf(QByteArray(size, '\0')), std::nullopt);
    EXPECT_EQ(VersionOf(Application(300, size).first(0x27)), std::nullopt);
    EXPECT_EQ(VersionOf({}), std::nullopt);
}

TEST(SimFirmwareImage, ExercisesEveryByteOnTheLine) {
    const QByteArray bytes = Application(upgradeVersion, size);
    for (int value = 0; value < 256; ++value) {
        EXPECT_GT(bytes.count(static_cast<char>(value)), 0) << value;
    }
}

TEST(SimFirmwareImage, IsWrittenInRecords) {
    EXPECT_EQ(HexFile(0x0800, "\x01\x02"), ":020000040000FA\r\n:020800000102F3\r\n:00000001FF\r\n");
    EXPECT_EQ(HexFile(0, {}), ":020000040000FA\r\n:00000001FF\r\n");
    const QList<QByteArray> lines = HexFile(start, Application(upgradeVersion, size)).split('\n');
    ASSERT_EQ(lines.size(), size / 16 + 3);
    EXPECT_TRUE(lines.at(1).startsWith(":10080000"));
    EXPECT_TRUE(lines.at(size / 16).startsWith(":10BFF000"));
    EXPECT_TRUE(std::all_of(lines.begin() + 1, lines.end() - 2,
                            [](const QByteArray &line) { return line.size() == 44; }));
}

TEST(SimFirmwareImage, IsReadBackByAnotherProgram) {
    const QTemporaryDir folder;
    QFile file(folder.filePath("hex"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(HexFile(start, Application(upgradeVersion, size)));
    file.close();
    QProcess reader;
    reader.start("srec_cat", {file.fileName(), "-intel", "-offset", QString::number(-start), "-o",
                              folder.filePath("binary"), "-binary"});
    ASSERT_TRUE(reader.waitForFinished()) << "srec_cat (package srecord) is missing";
    EXPECT_EQ(reader.readAllStandardError().toStdString(), "");
    ASSERT_EQ(reader.exitCode(), 0);
    QFile binary(folder.filePath("binary"));
    ASSERT_TRUE(binary.open(QIODevice::ReadOnly));
    EXPECT_EQ(binary.readAll(), Application(upgradeVersion, size));
}

} // namespace
} // namespace sim
