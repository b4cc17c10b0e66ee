#include "sim/DeviceMemory.h"

#include "tests/sim/TestHost.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace sim {
namespace {

using test::Hex;

constexpr int start = DeviceMemory::applicationStart;
constexpr int end = DeviceMemory::programSize;

class SimDeviceMemory : public testing::Test {
protected:
    DeviceMemory memory_{214};
};

TEST_F(SimDeviceMemory, LeavesTheFactoryWithAnApplication) {
    EXPECT_TRUE(memory_.HasApplication());
    EXPECT_EQ(memory_.ApplicationVersion(), 214);
    EXPECT_EQ(memory_.Mark(), 0);
    EXPECT_TRUE(memory_.StartsApplication());
    EXPECT_EQ(memory_.Read(0, end), DeviceMemory(214).Read(0, end));
    EXPECT_NE(memory_.Read(start, end - start), DeviceMemory(215).Read(start, end - start));
    EXPECT_NE(memory_.Read(0, start), QByteArray(start, '\xFF'));
    EXPECT_TRUE(memory_.Read(DeviceMemory::idStart, 16).startsWith("ZTV500-1"));
    EXPECT_NE(memory_.Read(DeviceMemory::configStart, 16), QByteArray(16, '\xFF'));
}

TEST_F(SimDeviceMemory, ReadsErasedBeyondItsAreas) {
    const QByteArray last = memory_.Read(end - 1, 1);
    EXPECT_EQ(memory_.Read(end - 1, 4), last + Hex("FFFFFF"));
    EXPECT_EQ(memory_.Read(end, 255), QByteArray(255, '\xFF'));
    EXPECT_EQ(memory_.Read(0x1FFFFE, 4).toHex(), "ffff5a54");
    EXPECT_EQ(memory_.Read(0x20000E, 4), Hex("FFFFFFFF"));
    EXPECT_EQ(memory_.Read(0x2FFFFF, 2), Hex("FF") + memory_.Read(0x300000, 1));
    EXPECT_EQ(memory_.Read(0x30000F, 3), memory_.Read(0x30000F, 1) + Hex("FFFF"));
    EXPECT_EQ(memory_.Read(0xFFFFFF, 255), QByteArray(255, '\xFF'));
    EXPECT_EQ(memory_.Read(0, 0), "");
}

TEST_F(SimDeviceMemory, ErasesWholeBlocksAndNothingElse) {
    const QByteArray before = memory_.Read(0x0A00, 64);
    const QByteArray after = memory_.Read(0x0A80, 64);
    memory_.Erase(0x0A4F, 1); // within the block
    EXPECT_EQ(memory_.Read(0x0A40, 64), QByteArray(64, '\xFF'));
    EXPECT_EQ(memory_.Read(0x0A00, 64), before);
    EXPECT_EQ(memory_.Read(0x0A80, 64), after);
    memory_.Erase(0x0A00, 3);
    EXPECT_EQ(memory_.Read(0x0A00, 192), QByteArray(192, '\xFF'));
    memory_.Erase(0x0B00, 0);
    EXPECT_NE(memory_.Read(0x0B00, 64), QByteArray(64, '\xFF'));
}

TEST_F(SimDeviceMemory, ClearsBitsButSetsNone) {
    memory_.Erase(0x1000, 1);
    memory_.Write(0x1008, Hex("F0 FF 00 55 AA 0F 12 34"));
    EXPECT_EQ(memory_.Read(0x1008, 8), Hex("F0 FF 00 55 AA 0F 12 34"));
    memory_.Write(0x1008, Hex("0F 0F FF FF 0F FF FF FF"));
    EXPECT_EQ(memory_.Read(0x1008, 8), Hex("00 0F 00 55 0A 0F 12 34"));
    EXPECT_EQ(memory_.Read(0x1000, 8), QByteArray(8, '\xFF'));
    EXPECT_EQ(memory_.Read(0x1010, 8), QByteArray(8, '\xFF'));
}

TEST_F(SimDeviceMemory, ProtectsAllButTheApplication) {
    const QByteArray bootBlock = memory_.Read(0, start);
    const QByteArray ids = memory_.Read(DeviceMemory::idStart, 16);
    const QByteArray config = memory_.Read(DeviceMemory::configStart, 16);
    memory_.Erase(0, 32);
    memory_.Write(1, QByteArray(16, '\0'));
    memory_.Erase(DeviceMemory::idStart, 255);
    memory_.Write(DeviceMemory::idStart, QByteArray(16, '\0'));
    memory_.Erase(DeviceMemory::configStart, 255);
    memory_.Write(DeviceMemory::configStart, QByteArray(16, '\0'));
    memory_.Erase(0xFFFFFF, 255);
    memory_.Write(0xFFFFFF, QByteArray(255, '\0'));
    EXPECT_EQ(memory_.Read(0, start), bootBlock);
    EXPECT_EQ(memory_.Read(DeviceMemory::idStart, 16), ids);
    EXPECT_EQ(memory_.Read(DeviceMemory::configStart, 16), config);
    EXPECT_TRUE(memory_.HasApplication());
}

TEST_F(SimDeviceMemory, IsProtectedToTheByte) {
    const QByteArray before = memory_.Read(start - 4, 4);
    memory_.Write(start - 4, QByteArray(8, '\0'));
    EXPECT_EQ(memory_.Read(start - 4, 8), before + QByteArray(4, '\0'));
    memory_.Write(end - 2, QByteArray(4, '\0'));
    EXPECT_EQ(memory_.Read(end - 2, 4), Hex("0000FFFF"));
    memory_.Erase(start - 64, 2);
    EXPECT_EQ(memory_.Read(start - 4, 4), before);
    EXPECT_EQ(memory_.Read(start, 64), QByteArray(64, '\xFF'));
    memory_.Erase(end - 64, 255);
    EXPECT_EQ(memory_.Read(end - 64, 64), QByteArray(64, '\xFF'));
}

TEST_F(SimDeviceMemory, WrapsTheAddressesOfTheEeprom) {
    memory_.WriteEeprom(0x3FE, Hex("01 02 03"));
    EXPECT_EQ(memory_.ReadEeprom(0x3FE, 3), Hex("01 02 03"));
    EXPECT_EQ(memory_.ReadEeprom(0, 1), Hex("03"));
    EXPECT_EQ(memory_.Mark(), 2);
    memory_.WriteEeprom(0x7FFF, Hex("00"));
    EXPECT_EQ(memory_.Mark(), 0);
    EXPECT_EQ(memory_.ReadEeprom(0xFFFFFE, 3), Hex("01 00 03"));
    EXPECT_EQ(memory_.ReadEeprom(0, 1024).size(), 1024);
    EXPECT_EQ(memory_.ReadEeprom(0, 255), memory_.ReadEeprom(1024, 255));
}

TEST_F(SimDeviceMemory, StaysInTheLoaderForAnyMarkBut0) {
    for (int mark = 1; mark < 256; ++mark) {
        memory_.SetMark(mark);
        ASSERT_EQ(memory_.Mark(), mark);
        ASSERT_FALSE(memory_.StartsApplication());
    }
    memory_.SetMark(0);
    EXPECT_TRUE(memory_.StartsApplication());
}

TEST_F(SimDeviceMemory, StaysInTheLoaderWithoutAnApplication) {
    memory_.Erase(start, 1);
    EXPECT_FALSE(memory_.HasApplication());
    EXPECT_FALSE(memory_.StartsApplication());
    EXPECT_EQ(memory_.ApplicationVersion(), std::nullopt);
    memory_.Write(start, Hex("FF EF"));
    EXPECT_TRUE(memory_.HasApplication());
    EXPECT_TRUE(memory_.StartsApplication());
}

TEST_F(SimDeviceMemory, KeepsItsFlashInAFile) {
    const QTemporaryDir folder;
    const QString file = folder.filePath("flash");
    memory_.Erase(start, 1);
    EXPECT_EQ(memory_.Save(file).toStdString(), "");
    DeviceMemory other(1);
    EXPECT_EQ(other.Load(file).toStdString(), "");
    EXPECT_EQ(other.Read(0, end), memory_.Read(0, end));
    EXPECT_FALSE(other.HasApplication());
}

TEST_F(SimDeviceMemory, RefusesAFileThatIsNoFlash) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("flash");
    const QByteArray before = memory_.Read(0, end);
    for (const int size : {0, end - 1, end + 1}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArray(size, '\0'));
        file.close();
        EXPECT_EQ(memory_.Load(path).toStdString(),
                  path.toStdString() + " is no flash: it hasn't 49152 bytes");
    }
    EXPECT_TRUE(memory_.Load(folder.filePath("none")).contains("none: "));
    EXPECT_TRUE(memory_.Load(folder.path()).contains(folder.path()));
    EXPECT_TRUE(memory_.Save(folder.filePath("no/where")).contains("no/where: "));
    EXPECT_EQ(memory_.Read(0, end), before);
}

} // namespace
} // namespace sim
