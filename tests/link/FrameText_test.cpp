#include "link/FrameText.h"

#include "link/ModbusFrame.h"
#include "tests/helpers/Frames.h"
#include "tests/helpers/TestPresets.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace ztv {

namespace {

class FrameTextTest : public testing::Test {
protected:
    FrameText::Names Names(std::optional<int> mode, qsizetype mostWords = 8) const {
        return {.table = table_, .addressingMode = mode, .mostWords = mostWords};
    }
    std::string Request(const char *frame, std::optional<int> mode) const {
        const auto request = FrameText::RequestOf(WithCrc(Hex(frame)));
        return request ? FrameText::OfRequest(*request, Names(mode)).toStdString() : "none";
    }
    std::string Reply(const char *request, const char *reply, LinkStatus status,
                      std::optional<int> mode) const {
        return FrameText::OfReply(FrameText::RequestOf(WithCrc(Hex(request))).value(),
                                  *reply == '\0' ? QByteArray() : WithCrc(Hex(reply)), status, Names(mode))
            .toStdString();
    }
    static std::optional<int> Mode(const char *request, const char *reply) {
        return FrameText::AddressingModeIn(FrameText::RequestOf(WithCrc(Hex(request))).value(),
                                           WithCrc(Hex(reply)));
    }

    ClassZentrova table_{ShippedPresetsFolder()};
};

} // namespace

TEST_F(FrameTextTest, ARequestNamesItsFirstRegisterIfTheNumberingIsKnown) {
    struct Row {
        const char *frame;
        std::optional<int> mode;
        const char *text;
    };
    for (const Row &row : {
             Row{"01 03 00 1C 00 01", 0, "read 1 register from 28 (Near Distance)"},
             {"01 03 00 1B 00 01", 1, "read 1 register from 27 (Near Distance)"},
             {"01 03 00 1B 00 02", std::nullopt, "read 2 registers from 27"},
             {"01 03 00 00 00 01", 0, "read 1 register from 0"},
             {"01 03 00 5F 00 01", 1, "read 1 register from 95"},
             {"01 03 FF FF 00 01", 1, "read 1 register from 65535"},
             {"F7 06 00 1C 04 D2", 0, "write 1 register from 28 (Near Distance): 28 = 1234"},
             {"01 06 00 1A FF FF", 0, "write 1 register from 26 (Distance Offset): 26 = -1"},
             {"01 06 00 1A FF FF", std::nullopt, "write 1 register from 26: 26 = 65535"},
             {"01 10 00 1C 00 02 04 00 01 00 02", 0,
              "write 2 registers from 28 (Near Distance): 28 = 1, 29 = 2"},
         }) {
        EXPECT_EQ(Request(row.frame, row.mode), row.text);
    }
}

TEST_F(FrameTextTest, BytesThatAreNoRequestAreNone) {
    for (const char *frame :
         {"01", "01 03", "01 03 00 1C 00 00", "01 03 00 1C 00 7E", "01 03 FF FF 00 02", "01 04 00 1C 00 01",
          "01 10 00 1C 00 02 04 00 01 00", "01 10 00 1C 00 02 05 00 01 00 02", "01 10 00 1C 00 00 00",
          "01 03 00 1C 00 01 00"}) {
        EXPECT_EQ(Request(frame, 0), "none") << frame;
    }
    EXPECT_FALSE(FrameText::RequestOf(Hex("01 03 00 1C 00 01 45 CD")));
    EXPECT_FALSE(FrameText::RequestOf({}));
}

TEST_F(FrameTextTest, AReplySaysWhatItBrings) {
    struct Row {
        const char *request;
        const char *reply;
        LinkStatus status;
        std::optional<int> mode;
        const char *text;
    };
    for (const Row &row : {
             Row{"01 03 00 1C 00 01", "01 03 02 04 B0", LinkStatus::NoError, 0, "28 = 1200"},
             {"01 03 00 35 00 01", "01 03 02 FF FF", LinkStatus::NoError, 0, "53 = -1"},
             {"01 03 00 34 00 01", "01 03 02 FF FF", LinkStatus::NoError, 1, "52 = -1"},
             {"01 03 00 34 00 01", "01 03 02 FF FF", LinkStatus::NoError, std::nullopt, "52 = 65535"},
             {"01 06 00 1C 04 D2", "01 06 00 1C 04 D2", LinkStatus::NoError, 0, "written: 28 = 1234"},
             {"01 03 00 1C 00 01", "01 83 02", LinkStatus::IllegalDataAddress, 0,
              "exception 2 Illegal Data Address"},
             {"01 03 00 1C 00 01", "", LinkStatus::Timeout, 0, "no reply"},
             {"01 03 00 1C 00 01", "01 03 02 04 B0", LinkStatus::CrcError, 0, "CRC error"},
             {"01 03 00 1C 00 01", "01 03 02 04", LinkStatus::MissingBytes, 0,
              "Expected amount of bytes not received"},
             {"01 03 00 1C 00 01", "01 03 04 04 B0 00 00", LinkStatus::NoError, 0, "not understood"},
         }) {
        EXPECT_EQ(Reply(row.request, row.reply, row.status, row.mode), row.text);
    }
}

TEST_F(FrameTextTest, ALongReplyIsCutForAPerson) {
    const auto request = FrameText::RequestOf(WithCrc(Hex("01 03 00 01 00 03"))).value();
    const QByteArray reply = WithCrc(Hex("01 03 06 00 01 00 02 00 03"));
    EXPECT_EQ(FrameText::OfReply(request, reply, LinkStatus::NoError, Names(0, 2)).toStdString(),
              "1 = 1, 2 = 2 and 1 more");
    EXPECT_EQ(FrameText::OfReply(request, reply, LinkStatus::NoError, Names(0, 3)).toStdString(),
              "1 = 1, 2 = 2, 3 = 3");
}

TEST_F(FrameTextTest, OnlyTheWordOfRegister69ShowsTheNumbering) {
    EXPECT_EQ(Mode("01 03 00 45 00 01", "01 03 02 55 55"), 0);
    EXPECT_EQ(Mode("01 03 00 45 00 01", "01 03 02 00 02"), 1);
    EXPECT_EQ(Mode("01 03 00 44 00 02", "01 03 04 55 55 00 02"), 1);
    EXPECT_EQ(Mode("01 03 00 44 00 02", "01 03 04 00 01 55 55"), 0);
    EXPECT_EQ(Mode("01 03 00 44 00 01", "01 03 02 55 55"), std::nullopt);
    EXPECT_EQ(Mode("01 03 00 46 00 01", "01 03 02 55 55"), std::nullopt);
    EXPECT_EQ(Mode("01 03 00 45 00 01", "01 83 02"), std::nullopt);
    EXPECT_EQ(Mode("01 06 00 45 55 55", "01 06 00 45 55 55"), std::nullopt);
}

TEST_F(FrameTextTest, HostileBytesGetAText) {
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 40), '\0');
        for (char &byte : bytes) {
            byte = static_cast<char>(random() % 4 == 0 ? random() : random() % 20);
        }
        const QByteArray frame = WithCrc(bytes);
        for (const QByteArray &request : {bytes, frame}) {
            if (const auto known = FrameText::RequestOf(request)) {
                EXPECT_FALSE(FrameText::OfRequest(*known, Names(1)).isEmpty());
            }
        }
        const auto asked = FrameText::RequestOf(WithCrc(Hex("01 03 00 45 00 02"))).value();
        FrameText::AddressingModeIn(asked, frame);
        EXPECT_FALSE(FrameText::OfReply(asked, frame, LinkStatus::NoError, Names(0)).isEmpty());
    }
}

} // namespace ztv
