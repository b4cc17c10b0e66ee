#include "sim/BootLoader.h"

#include "tests/sim/TestHost.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace sim {
namespace {

using test::Hex;

constexpr int mostBytes = 255;

class SimBootLoader : public testing::Test {
protected:
    SimBootLoader() { loader_.Enter(117); }

    std::vector<BootExchange> Hear(const QByteArray &payload) { return loader_.Receive(BootFrame(payload)); }

    // The payload of the answer in hexadecimal; empty if there was none.
    std::string Ask(const QByteArray &payload) {
        const std::vector<BootExchange> exchanges = Hear(payload);
        EXPECT_EQ(exchanges.size(), 1u);
        BootFrameReader reader;
        for (const HeardFrame &frame : reader.Append(exchanges.front().answer)) {
            return frame.payload.toHex().toStdString();
        }
        return {};
    }
    std::string Ask(const char *hex) { return Ask(Hex(hex)); }

    DeviceMemory memory_{214};
    BootLoader loader_{memory_};
};

TEST_F(SimBootLoader, TellsItsVersion) {
    EXPECT_EQ(Ask("00 02"), "00021101");
    loader_.Enter(100);
    EXPECT_EQ(Ask("00 02"), "00020001");
    loader_.Enter(0);
    EXPECT_EQ(Ask("00 02"), "00020000");
    loader_.Enter(405); // 4.05: both bytes are marks of the frame
    EXPECT_EQ(Ask("00 02"), "00020504");
}

TEST_F(SimBootLoader, RestartsWithoutAnAnswerAndHearsNothingMore) {
    const std::vector<BootExchange> exchanges =
        loader_.Receive(BootFrame(Hex("0002")) + BootFrame(Hex("0000")) + BootFrame(Hex("0002")));
    ASSERT_EQ(exchanges.size(), 2u);
    EXPECT_FALSE(exchanges.at(0).restart);
    EXPECT_TRUE(exchanges.at(1).restart);
    EXPECT_EQ(exchanges.at(1).answer, "");
    EXPECT_TRUE(Hear(Hex("0002")).empty());
    loader_.Enter(100);
    EXPECT_EQ(Hear(Hex("0002")).size(), 1u);
}

TEST_F(SimBootLoader, ReadsProgramIdsAndConfiguration) {
    EXPECT_EQ(Ask("01 04 00 08 00"), "0104000800"
                                     "80ef04f0");
    EXPECT_EQ(Ask("01 08 00 00 20"), "0108000020"
                                     "5a54563530302d31");
    EXPECT_EQ(Ask("01 10 00 00 30"), "0110000030" + memory_.Read(0x300000, 16).toHex().toStdString());
    EXPECT_EQ(Ask("01 80 00 08 00"), "0180000800" + memory_.Read(0x800, 128).toHex().toStdString());
    // Longer than the longest packet that the loader can receive.
    EXPECT_EQ(Hear(Hex("01 FF 00 10 00")).front().answer,
              BootFrame(Hex("01 FF 00 10 00") + memory_.Read(0x1000, 255)));
    EXPECT_EQ(Ask("01 00 00 08 00"), "0100000800");
}

TEST_F(SimBootLoader, TakesTheAddressLowByteFirst) {
    EXPECT_EQ(Ask("01 01 0F 05 04"), "01010f0504ff");
    EXPECT_EQ(Ask("01 02 04 0F 00"), "0102040f00" + memory_.Read(0x0F04, 2).toHex().toStdString());
    EXPECT_EQ(Ask("01 02 05 04 00"), "0102050400" + memory_.Read(0x0405, 2).toHex().toStdString());
}

TEST_F(SimBootLoader, ErasesAndWritesBlocks) {
    EXPECT_EQ(Ask("03 01 00 10 00"), "03");
    EXPECT_EQ(memory_.Read(0x1000, 64), QByteArray(64, '\xFF'));
    EXPECT_EQ(Ask("02 02 10 10 00 04050F0405040F05 0506070809 0A0B0C"), "02");
    EXPECT_EQ(memory_.Read(0x1010, 16), Hex("04050F0405040F05 0506070809 0A0B0C"));
    EXPECT_EQ(Ask("02 01 10 10 00 FFFFFFFFFFFF00FF"), "02");
    EXPECT_EQ(memory_.Read(0x1010, 8), Hex("04050F0405040005"));
    EXPECT_EQ(Ask("03 02 80 BF 00"), "03");
    EXPECT_EQ(memory_.Read(0xBF80, 128), QByteArray(128, '\xFF'));
}

TEST_F(SimBootLoader, AcknowledgesWhatItProtects) {
    const QByteArray before = memory_.Read(0, 0x800);
    EXPECT_EQ(Ask("03 20 00 00 00"), "03");
    EXPECT_EQ(Ask(Hex("02 02 01 00 00") + QByteArray(16, '\0')), "02");
    EXPECT_EQ(Ask("03 FF FF FF FF"), "03");
    EXPECT_EQ(Ask("02 01 FF FF FF 0000000000000000"), "02");
    EXPECT_EQ(memory_.Read(0, 0x800), before);
}

TEST_F(SimBootLoader, ReadsAndWritesTheEeprom) {
    EXPECT_EQ(Ask("05 03 10 00 00 040F05"), "05");
    EXPECT_EQ(Ask("04 03 10 00 00"), "0403100000040f05");
    EXPECT_EQ(Ask("04 01 FE 03 00"), "0401fe0300ff");
    EXPECT_EQ(Ask("05 01 FF 7F 00 55"), "05");
    EXPECT_EQ(memory_.Mark(), 0x55);
    EXPECT_EQ(Ask("05 01 FF 7F 00 00"), "05");
    EXPECT_EQ(Ask("04 01 FF 03 00"), "0401ff030000");
    EXPECT_EQ(Ask("04 02 FF 7F 00"), "0402ff7f0000" + memory_.ReadEeprom(0, 1).toHex().toStdString());
    EXPECT_EQ(Ask("04 80 80 03 00").size(), 2u * (5 + 128));
}

TEST_F(SimBootLoader, LeavesUnansweredWhatIsNoCommand) {
    const QByteArray before = memory_.Read(0, 0xC000);
    for (const char *payload : {"00",
                                "00 01",
                                "00 03",
                                "00 02 00",
                                "00 00 00",
                                "01",
                                "01 01 00 00",
                                "01 01 00 00 00 00",
                                "02 01 00 10 00",
                                "02 01 00 10 00 00",
                                "02 02 00 10 00 0000000000000000",
                                "02 00 00 10 00 00",
                                "03 01 00 10",
                                "03 01 00 10 00 00",
                                "04 01 00 00",
                                "04 01 00 00 00 00",
                                "05 01 FF 03 00",
                                "05 01 FF 03 00 FFFF",
                                "05 02 FF 03 00 FF",
                                "06 00 00 00 00",
                                "FF",
                                "FF 01 00 00 00"}) {
        EXPECT_EQ(Ask(payload), "") << payload;
    }
    EXPECT_EQ(memory_.Read(0, 0xC000), before);
    EXPECT_EQ(memory_.Mark(), 0);
    EXPECT_EQ(Ask("00 02"), "00021101");
}

TEST_F(SimBootLoader, StandsWhateverAPacketHolds) {
    std::mt19937 random(7);
    const auto byte = [&random] { return static_cast<char>(random() & 0xFF); };
    for (int i = 0; i < 20000; ++i) {
        QByteArray payload(1, static_cast<char>(random() % 7));
        for (int size = static_cast<int>(random() % 40); size > 0; --size) {
            payload.append(byte());
        }
        // In most cases the length is the one that the write announces, so that it's executed.
        if (payload.size() > 5 && payload.at(0) == 5) {
            payload[1] = static_cast<char>(payload.size() - 5);
        } else if (payload.size() > 5 && payload.at(0) == 2) {
            payload[1] = static_cast<char>((payload.size() - 5) / 8);
            payload.truncate(5 + (payload.size() - 5) / 8 * 8);
        }
        for (const BootExchange &exchange : Hear(payload)) {
            ASSERT_LE(exchange.answer.size(), 3 + 2 * (5 + mostBytes + 1));
        }
        loader_.Enter(100);
    }
    EXPECT_EQ(memory_.Read(0, 0x800), DeviceMemory(214).Read(0, 0x800));
    EXPECT_EQ(memory_.ReadEeprom(0, 1024).size(), 1024);
}

TEST_F(SimBootLoader, CountsWhatItHears) {
    EXPECT_EQ(loader_.Exchanges(), 0);
    Ask("00 02");
    Ask("00 01");
    loader_.Receive(Hex("0F0F 00 02 FF 04"));
    EXPECT_EQ(loader_.Exchanges(), 2);
    loader_.Enter(100);
    EXPECT_EQ(loader_.Exchanges(), 0);
    Ask("00 02");
    loader_.Clear();
    EXPECT_EQ(loader_.Exchanges(), 0);
}

TEST_F(SimBootLoader, GivesAnExchangeItsFaultOnce) {
    loader_.SetFault(2, {BootFault::Delay, 30});
    loader_.Enter(100); // a fault may be set for the loader
    EXPECT_EQ(Hear(Hex("0002")).front().fault.kind, BootFault::None);
    const std::vector<BootExchange> second = Hear(Hex("0002"));
    EXPECT_EQ(second.front().fault.kind, BootFault::Delay);
    EXPECT_EQ(second.front().fault.delayMs, 30);
    EXPECT_NE(second.front().answer, "");
    loader_.Enter(100);
    Ask("00 02");
    EXPECT_EQ(Hear(Hex("0002")).front().fault.kind, BootFault::None);
}

TEST_F(SimBootLoader, ForgetsFaultsThatAreTakenBack) {
    loader_.SetFault(1, {BootFault::Drop});
    loader_.SetFault(1, {});
    EXPECT_EQ(Hear(Hex("0002")).front().fault.kind, BootFault::None);
    loader_.SetFault(2, {BootFault::Drop});
    loader_.Clear();
    Ask("00 02");
    EXPECT_EQ(Hear(Hex("0002")).front().fault.kind, BootFault::None);
}

TEST_F(SimBootLoader, NeitherExecutesNorAnswersWhatItDoesNotHear) {
    loader_.SetFault(1, {BootFault::Deaf});
    loader_.SetFault(2, {BootFault::Deaf});
    EXPECT_EQ(Ask("05 01 FF 7F 00 55"), "");
    EXPECT_EQ(memory_.Mark(), 0);
    EXPECT_FALSE(Hear(Hex("0000")).front().restart);
    EXPECT_EQ(Ask("00 02"), "00021101");
}

TEST_F(SimBootLoader, ExecutesWhatItsOtherFaultsHide) {
    for (const BootFault::Kind kind :
         {BootFault::Drop, BootFault::Corrupt, BootFault::Delay, BootFault::Cut, BootFault::Unplug}) {
        memory_.SetMark(0);
        loader_.Clear();
        loader_.SetFault(1, {kind});
        EXPECT_EQ(Ask("05 01 FF 7F 00 55"), "05");
        EXPECT_EQ(memory_.Mark(), 0x55);
    }
}

TEST_F(SimBootLoader, HearsNothingBehindAHangUp) {
    loader_.SetFault(1, {BootFault::Unplug});
    EXPECT_EQ(loader_.Receive(BootFrame(Hex("0002")) + BootFrame(Hex("050100000000"))).size(), 1u);
    EXPECT_EQ(loader_.Exchanges(), 1);
}

} // namespace
} // namespace sim
