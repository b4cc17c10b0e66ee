#include "sim/BootFrame.h"

#include "tests/sim/TestHost.h"

#include <gtest/gtest.h>

#include <string>

namespace sim {
namespace {

using test::Hex;

class SimBootFrame : public testing::Test {
protected:
    // The received payloads in hexadecimal, each followed by a comma.
    std::string Hear(const QByteArray &bytes) {
        std::string heard;
        for (const HeardFrame &frame : reader_.Append(bytes)) {
            heard += frame.payload.toHex().toStdString() + ',';
        }
        return heard;
    }
    std::string Hear(const char *hex) { return Hear(Hex(hex)); }

    BootFrameReader reader_;
};

TEST_F(SimBootFrame, SurroundsThePayloadWithMarksAndAChecksum) {
    EXPECT_EQ(BootFrame(Hex("0002")), Hex("0F0F 00 02 FE 04"));
    EXPECT_EQ(BootFrame(Hex("0300")), Hex("0F0F 03 00 FD 04"));
    EXPECT_EQ(BootFrame(Hex("FF01")), Hex("0F0F FF 01 00 04"));
}

TEST_F(SimBootFrame, EscapesMarksInThePayload) {
    EXPECT_EQ(BootFrame(Hex("04050F")), Hex("0F0F 0504 0505 050F E8 04"));
}

TEST_F(SimBootFrame, EscapesMarksInTheChecksum) {
    EXPECT_EQ(BootFrame(Hex("01FB")), Hex("0F0F 01 FB 0504 04"));
    EXPECT_EQ(BootFrame(Hex("01FA")), Hex("0F0F 01 FA 0505 04"));
    EXPECT_EQ(BootFrame(Hex("01F0")), Hex("0F0F 01 F0 050F 04"));
}

TEST_F(SimBootFrame, IsHeardAsItWasSent) {
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            QByteArray payload(3, static_cast<char>(first));
            payload[1] = static_cast<char>(second);
            const QByteArray frame = BootFrame(payload);
            const std::vector<HeardFrame> heard = reader_.Append(frame);
            ASSERT_EQ(heard.size(), 1u);
            ASSERT_EQ(heard.front().payload, payload);
            ASSERT_EQ(heard.front().size, frame.size());
        }
    }
}

TEST_F(SimBootFrame, IsHeardHoweverItIsCut) {
    for (const char byte : BootFrame(Hex("04050F")).chopped(1)) {
        EXPECT_EQ(Hear(QByteArray(1, byte)), "");
    }
    EXPECT_EQ(Hear("04"), "04050f,");
    EXPECT_EQ(Hear(BootFrame(Hex("0002")) + BootFrame(Hex("0000"))), "0002,0000,");
}

TEST_F(SimBootFrame, IsHeardBehindGarbage) {
    EXPECT_EQ(Hear("01 04 05 FF 0F0F 00 02 FE 04"), "0002,");
    EXPECT_EQ(Hear("0F 0F0F 00 02 FE 04"), "0002,");
    EXPECT_EQ(Hear("0F 01 0F0F 00 02 FE 04"), "0002,");
    EXPECT_EQ(Hear("0F0F 04 0F0F 00 02 FE 04"), "0002,");
}

TEST_F(SimBootFrame, MeasuresOnlyItself) {
    const std::vector<HeardFrame> heard = reader_.Append(Hex("AABBCC 0F0F 01 0F0F 00 02 FE 04"));
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard.front().size, 6);
}

TEST_F(SimBootFrame, BeginsAnewInTheMiddleOfADamagedOne) {
    EXPECT_EQ(Hear("0F0F 01 10 20 0F0F 00 02 FE 04"), "0002,");
    // The frame breaks off after an escape, and after an escaped mark.
    EXPECT_EQ(Hear("0F0F 01 05 0F0F 00 02 FE 04"), "0002,");
    EXPECT_EQ(Hear("0F0F 01 050F 0F0F 00 02 FE 04"), "0002,");
    EXPECT_EQ(Hear("0F0F 01 0F 02 FE 04 0F0F 00 02 FE 04"), "0002,");
}

TEST_F(SimBootFrame, WithADamagedByteIsDropped) {
    EXPECT_EQ(Hear("0F0F 00 02 FF 04"), "");
    EXPECT_EQ(Hear("0F0F 00 03 FE 04"), "");
    EXPECT_EQ(Hear("0F00 00 02 FE 04"), "");
    EXPECT_EQ(Hear("0F0F 00 02 FE 04"), "0002,");
}

TEST_F(SimBootFrame, WithMarksOutOfPlaceIsDropped) {
    EXPECT_EQ(Hear("0F0F 04"), "");
    EXPECT_EQ(Hear("0F0F 00 04"), "");       // without a payload
    EXPECT_EQ(Hear("0F0F 05FF 01 04"), "");  // an escape where none is due
    EXPECT_EQ(Hear("0F0F 01 0F F0 04"), ""); // a mark that isn't escaped
    EXPECT_EQ(Hear("00 02 FE 04"), "");      // no start
    EXPECT_EQ(Hear("0F0F 00 02 FE 04"), "0002,");
}

TEST_F(SimBootFrame, IsDroppedWhenTheLoaderHasNoRoomForIt) {
    const QByteArray longest(BootFrameReader::longest - 1, '\x01');
    EXPECT_EQ(Hear(BootFrame(longest)), longest.toHex().toStdString() + ',');
    EXPECT_EQ(Hear(BootFrame(longest + '\x01')), "");
    EXPECT_EQ(Hear(BootFrame(QByteArray(100000, '\x0F'))), "");
    EXPECT_EQ(Hear("0F0F 00 02 FE 04"), "0002,");
}

TEST_F(SimBootFrame, IsForgottenWhenHalfHeard) {
    EXPECT_EQ(Hear("0F0F 00 02"), "");
    reader_.Discard();
    EXPECT_EQ(Hear("FE 04"), "");
}

} // namespace
} // namespace sim
