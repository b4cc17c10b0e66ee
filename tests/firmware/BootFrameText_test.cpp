#include "firmware/BootFrameText.h"

#include "firmware/BootFrame.h"
#include "firmware/BootLibrary.h"
#include "tests/helpers/Frames.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace ztv {

namespace {

std::string Request(const char *payload) {
    return BootFrameText::OfRequest(BootFrame::Encode(Hex(payload))).toStdString();
}

std::string Reply(const char *request, const char *reply, std::int32_t result = 0) {
    return BootFrameText::OfReply(BootFrame::Encode(Hex(request)),
                                  *reply == '\0' ? QByteArray() : BootFrame::Encode(Hex(reply)), result)
        .toStdString();
}

} // namespace

TEST(BootFrameText, NamesEachCommand) {
    EXPECT_EQ(Request("00 02"), "read version");
    EXPECT_EQ(Request("00 00"), "reset");
    EXPECT_EQ(Request("01 80 00 08 00"), "read program memory: 128 bytes from 0x000800");
    EXPECT_EQ(Request("02 01 08 BF 00 01 02 03 04 05 06 07 08"),
              "write program memory: 8 bytes from 0x00BF08");
    EXPECT_EQ(Request("03 01 40 08 00"), "erase program memory: 1 block from 0x000840");
    EXPECT_EQ(Request("04 01 FF 03 00"), "read EEPROM: 1 byte from 0x0003FF");
    EXPECT_EQ(Request("05 01 FF 7F 00 00"), "write EEPROM: 1 byte from 0x007FFF");
    EXPECT_EQ(Request("01 10 00 00 30"), "read program memory: 16 bytes from 0x300000");
}

TEST(BootFrameText, SaysWhatAReplyBrings) {
    EXPECT_EQ(Reply("00 02", "00 02 05 01"), "version 1.5");
    EXPECT_EQ(Reply("01 02 00 08 00", "01 02 00 08 00 AA BB"), "2 bytes");
    EXPECT_EQ(Reply("03 01 40 08 00", "03"), "done");
    EXPECT_EQ(Reply("05 01 FF 7F 00 00", "05"), "done");
    EXPECT_EQ(Reply("00 02", "", BootResult::NoAnswer), "no reply");
    EXPECT_EQ(Reply("00 02", "00 02 05 01", BootResult::DamagedAnswer), "checksum error");
    EXPECT_EQ(Reply("00 02", "", -99), "error -99");
    EXPECT_EQ(Reply("03 01 40 08 00", "05"), "not understood");
}

TEST(BootFrameText, HostileBytesGetAText) {
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 12), '\0');
        for (char &byte : bytes) {
            byte = static_cast<char>(random() % 3 == 0 ? random() : random() % 16);
        }
        const QByteArray frame = BootFrame::Encode(bytes);
        EXPECT_FALSE(BootFrameText::OfRequest(bytes).isEmpty());
        EXPECT_FALSE(BootFrameText::OfRequest(frame).isEmpty());
        EXPECT_FALSE(BootFrameText::OfReply(frame, bytes, 0).isEmpty());
        EXPECT_FALSE(BootFrameText::OfReply(frame, frame, 0).isEmpty());
    }
}

} // namespace ztv
