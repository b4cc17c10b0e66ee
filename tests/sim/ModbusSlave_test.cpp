#include "sim/ModbusSlave.h"
#include "sim/Registers.h"
#include "tests/sim/TestHost.h"
#include "tests/sim/TestPresets.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

using test::FrameOf;

class SimModbusSlave : public testing::Test {
protected:
    SimModbusSlave() : loaded_(table_.Load(presets_.Path())), registers_(table_) {}

    Outcome Execute(const char *hex, int addressing = 1) {
        return ModbusSlave(registers_).Execute(FrameOf(hex), addressing);
    }
    std::string Reply(const char *hex, int addressing = 1) {
        const QByteArray reply = Execute(hex, addressing).reply;
        return reply.isEmpty() ? std::string() : reply.chopped(2).toHex().toStdString();
    }

    // Downloads the whole table with its present values.
    QByteArray Download(int addressing) const {
        QByteArray body = test::Hex("0110");
        const int quantity = test::TestPresets::count - 1;
        body.append('\0').append(static_cast<char>(1 - addressing)).append('\0');
        body.append(static_cast<char>(quantity)).append(static_cast<char>(2 * quantity));
        for (int i = 1; i <= quantity; ++i) {
            body.append(static_cast<char>(registers_.Word(i) >> 8))
                .append(static_cast<char>(registers_.Word(i)));
        }
        return body;
    }
    std::string ReplyToDownload(const QByteArray &body, int addressing) {
        return Reply(body.toHex().constData(), addressing);
    }
    static void SetWord(QByteArray &download, int number, int value) {
        download[7 + 2 * (number - 1)] = static_cast<char>(value >> 8);
        download[8 + 2 * (number - 1)] = static_cast<char>(value);
    }

    test::TestPresets presets_;
    ParameterTable table_;
    QString loaded_;
    Registers registers_;
};

TEST_F(SimModbusSlave, ReadsParametersOneBelowTheirNumberInMode1) {
    EXPECT_EQ(Reply("01 03 0041 0002"), "01030400040001");
    EXPECT_EQ(Reply("01 03 0044 0001"), "0103025555");
    EXPECT_EQ(Reply("01 03 0045 0001"), "0103020000");
}

TEST_F(SimModbusSlave, ReadsParametersAtTheirNumberInMode0) {
    EXPECT_EQ(Reply("01 03 0042 0002", 0), "01030400040001");
    EXPECT_EQ(Reply("01 03 0045 0001", 0), "0103025555");
    EXPECT_EQ(Reply("01 03 0000 0002", 0), "01030400000000");
}

TEST_F(SimModbusSlave, ReadsTheWholeTableInBothModes) {
    EXPECT_EQ(Execute("01 03 0000 005A", 1).reply.size(), 185);
    EXPECT_EQ(Execute("01 03 0000 005A", 0).reply.size(), 185);
    EXPECT_EQ(Execute("01 03 0000 005B", 0).reply.size(), 187);
}

TEST_F(SimModbusSlave, RefusesToReadBeyondTheTable) {
    EXPECT_EQ(Reply("01 03 0000 005B", 1), "018302");
    EXPECT_EQ(Reply("01 03 0000 005C", 0), "018302");
    EXPECT_EQ(Reply("01 03 005A 0001", 1), "018302");
    EXPECT_EQ(Reply("01 03 FFFF 0001", 1), "018302");
}

TEST_F(SimModbusSlave, RefusesAWrongQuantityToRead) {
    EXPECT_EQ(Reply("01 03 0000 0000"), "018303");
    EXPECT_EQ(Reply("01 03 0000 007E"), "018303");
}

TEST_F(SimModbusSlave, WritesOneRegister) {
    EXPECT_EQ(Reply("01 06 0027 0400"), "010600270400");
    EXPECT_EQ(registers_.Value(40), 1024);
    EXPECT_EQ(Reply("01 06 0028 0401", 0), "010600280401");
    EXPECT_EQ(registers_.Value(40), 1025);
    EXPECT_EQ(Reply("01 06 0050 FFF0"), "01060050fff0");
    EXPECT_EQ(registers_.Value(81), -16);
}

TEST_F(SimModbusSlave, RefusesAWriteThatCannotBe) {
    EXPECT_EQ(Reply("01 06 005A 0001"), "018602");
    EXPECT_EQ(Reply("01 06 0000 0001", 0), "018602");
    EXPECT_EQ(Reply("01 06 001F 0700"), "018602");
    EXPECT_EQ(Reply("01 06 0027 1000"), "018603");
    EXPECT_EQ(Reply("01 06 0043 0002"), "018603");
    EXPECT_EQ(registers_.Value(40), 0);
}

TEST_F(SimModbusSlave, WritesTheAddressingModeThoughItIsReadOnly) {
    EXPECT_EQ(Reply("01 06 0043 0000"), "010600430000");
    EXPECT_EQ(registers_.Value(68), 0);
}

TEST_F(SimModbusSlave, TellsTheWritesInTheOrderOfTheWire) {
    using Writes = std::vector<std::pair<int, int>>;
    EXPECT_EQ(Execute("01 06 0027 1000").writes, (Writes{{40, 4096}}));
    EXPECT_EQ(Execute("01 10 0023 0002 04 0064 FFFF").writes, (Writes{{36, 100}, {37, 65535}}));
    EXPECT_TRUE(Execute("01 03 0000 0001").writes.empty());
}

TEST_F(SimModbusSlave, WritesManyRegisters) {
    EXPECT_EQ(Reply("01 10 0023 0002 04 0064 0384"), "011000230002");
    EXPECT_EQ(registers_.Value(36), 100);
    EXPECT_EQ(registers_.Value(37), 900);
}

TEST_F(SimModbusSlave, TakesADownloadInBothModes) {
    for (const int addressing : {1, 0}) {
        QByteArray download = Download(addressing);
        SetWord(download, 40, 77 + addressing);
        SetWord(download, 69, 1);
        EXPECT_EQ(ReplyToDownload(download, addressing), addressing == 1 ? "01100000005a" : "01100001005a");
        EXPECT_EQ(registers_.Value(40), 77 + addressing);
        EXPECT_EQ(registers_.Value(69), 0x5555);
    }
}

TEST_F(SimModbusSlave, RunsNoCommandOfADownload) {
    registers_.Store(40, 5);
    QByteArray download = Download(1);
    SetWord(download, 1, 1);
    SetWord(download, 3, 99);
    EXPECT_EQ(ReplyToDownload(download, 1), "01100000005a");
    EXPECT_FALSE(registers_.TakeBootRequest());
    registers_.Restart();
    EXPECT_EQ(registers_.Value(40), 0);
}

TEST_F(SimModbusSlave, WritesNothingOfADownloadWithAValueOutOfRange) {
    QByteArray download = Download(1);
    SetWord(download, 24, 700);
    SetWord(download, 40, 4096);
    EXPECT_EQ(ReplyToDownload(download, 1), "019003");
    EXPECT_EQ(registers_.Value(24), 600);
}

TEST_F(SimModbusSlave, TakesTheAddressingModeOfADownload) {
    QByteArray download = Download(1);
    SetWord(download, 68, 0);
    EXPECT_EQ(ReplyToDownload(download, 1), "01100000005a");
    EXPECT_EQ(registers_.Value(68), 0);
    SetWord(download, 68, 2);
    EXPECT_EQ(ReplyToDownload(download, 1), "019003");
}

TEST_F(SimModbusSlave, RefusesAWrongQuantityToWrite) {
    EXPECT_EQ(Reply("01 10 0023 0000 00"), "019003");
    EXPECT_EQ(Reply("01 10 0023 0002 02 0064"), "019003");
    const QByteArray tooMany = "0110 0000 007C F8" + QByteArray(2 * 248, '0');
    EXPECT_EQ(Reply(tooMany.constData()), "019003");
}

TEST_F(SimModbusSlave, RefusesToWriteBeyondTheTable) {
    EXPECT_EQ(Reply("01 10 0059 0002 04 0000 0000"), "019002");
    EXPECT_EQ(Reply("01 10 0000 0001 02 0000", 0), "019002");
}

TEST_F(SimModbusSlave, RefusesUnknownFunctions) {
    EXPECT_EQ(Reply("01 04 0000 0001"), "018401");
    EXPECT_EQ(Reply("01 2B 0E 01 00"), "01ab01");
}

TEST_F(SimModbusSlave, ExecutesABroadcastWithoutAReply) {
    EXPECT_EQ(Reply("00 06 0027 0400"), "");
    EXPECT_EQ(registers_.Value(40), 1024);
    EXPECT_EQ(Reply("00 03 0000 0001"), "");
    EXPECT_EQ(Reply("00 06 0027 FFFF"), "");
}

} // namespace
} // namespace sim
