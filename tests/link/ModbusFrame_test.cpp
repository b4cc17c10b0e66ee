#include "link/ModbusFrame.h"

#include "tests/helpers/Frames.h"
#include "tests/helpers/Printers.h"

#include <gtest/gtest.h>

namespace ztv {

using namespace ModbusFrame;
using Kind = Verdict::Kind;

namespace {

Request Read(std::uint8_t slave, std::uint16_t start, std::uint16_t quantity) {
    return {.slave = slave,
            .function = ReadHoldingRegisters,
            .address = start,
            .quantity = quantity,
            .words = {}};
}

Request WriteOne(std::uint8_t slave, std::uint16_t address, std::int16_t word) {
    return {
        .slave = slave, .function = WriteSingleRegister, .address = address, .quantity = 1, .words = {word}};
}

Request WriteMany(std::uint8_t slave, std::uint16_t start, std::vector<std::int16_t> words) {
    const auto quantity = static_cast<std::uint16_t>(words.size());
    return {.slave = slave,
            .function = WriteMultipleRegisters,
            .address = start,
            .quantity = quantity,
            .words = std::move(words)};
}

const Request twoRegisters = Read(1, 0, 2);
const QByteArray goodReply = WithCrc("01 03 04 12 34 FF FE");

void ExpectComplete(const Verdict &verdict, const std::vector<std::int16_t> &words = {}) {
    EXPECT_EQ(verdict.kind, Kind::Complete);
    EXPECT_EQ(verdict.words, words);
}

// Expects this failure at the deadline and no verdict before, however the bytes are split.
void ExpectFailsAtEnd(const Request &request, const QByteArray &received, int status) {
    EXPECT_EQ(Judge(request, received).kind, Kind::NeedMore);
    const Verdict verdict = JudgeAtEnd(request, received);
    EXPECT_EQ(verdict.kind, Kind::Failed);
    EXPECT_EQ(verdict.status, status);
}

} // namespace

TEST(Crc, HasThePublishedValues) {
    EXPECT_EQ(Crc("123456789"), 0x4B37);
    EXPECT_EQ(Crc(QByteArray()), 0xFFFF);
    EXPECT_EQ(WithCrc("02 07"), Hex("02 07 41 12"));
}

TEST(Crc, IsZeroOverEachPublishedFrame) {
    for (const char *frame :
         {"02 07 41 12", "11 03 00 6B 00 03 76 87", "11 03 06 02 2B 00 00 00 64 C8 BA",
          "11 03 06 AE 41 56 52 43 40 49 AD", "11 06 00 01 00 03 9A 9B",
          "11 10 00 01 00 02 04 00 0A 01 02 C6 F0", "11 10 00 01 00 02 12 98", "11 83 02 C1 34",
          "0A 81 02 B0 53", "01 03 00 12 00 08 E4 09", "01 06 00 12 00 01 E8 0F",
          "2A 03 06 12 34 56 78 23 45 30 60", "2A 10 00 10 00 02 46 16"}) {
        EXPECT_EQ(Crc(Hex(frame)), 0) << frame;
    }
}

TEST(Encode, MakesThePublishedRequests) {
    EXPECT_EQ(Encode(Read(0x11, 0x6B, 3)), Hex("11 03 00 6B 00 03 76 87"));
    EXPECT_EQ(Encode(Read(1, 0x12, 8)), Hex("01 03 00 12 00 08 E4 09"));
    EXPECT_EQ(Encode(WriteOne(0x11, 1, 3)), Hex("11 06 00 01 00 03 9A 9B"));
    EXPECT_EQ(Encode(WriteOne(1, 0x12, 1)), Hex("01 06 00 12 00 01 E8 0F"));
    EXPECT_EQ(Encode(WriteMany(0x11, 1, {0x0A, 0x102})), Hex("11 10 00 01 00 02 04 00 0A 01 02 C6 F0"));
}

TEST(Encode, SendsNegativeWordsAsTwosComplement) {
    EXPECT_EQ(Encode(WriteOne(1, 2, -2)), WithCrc("01 06 00 02 FF FE"));
}

TEST(Judge, TakesThePublishedReplies) {
    ExpectComplete(Judge(Read(0x11, 0x6B, 3), Hex("11 03 06 02 2B 00 00 00 64 C8 BA")), {0x22B, 0, 0x64});
    ExpectComplete(Judge(Read(0x11, 0x6B, 3), Hex("11 03 06 AE 41 56 52 43 40 49 AD")),
                   {static_cast<std::int16_t>(0xAE41), 0x5652, 0x4340});
    ExpectComplete(Judge(Read(0x2A, 0, 3), Hex("2A 03 06 12 34 56 78 23 45 30 60")),
                   {0x1234, 0x5678, 0x2345});
    ExpectComplete(Judge(WriteOne(0x11, 1, 3), Hex("11 06 00 01 00 03 9A 9B")));
    ExpectComplete(Judge(WriteMany(0x11, 1, {0x0A, 0x102}), Hex("11 10 00 01 00 02 12 98")));
    ExpectComplete(Judge(WriteMany(0x2A, 0x10, {1, 2}), Hex("2A 10 00 10 00 02 46 16")));
}

TEST(Judge, NeedsEachByteOfTheReply) {
    for (qsizetype length = 0; length < goodReply.size(); ++length) {
        const Verdict verdict = Judge(twoRegisters, goodReply.first(length));
        EXPECT_EQ(verdict.kind, Kind::NeedMore) << length;
        EXPECT_EQ(verdict.end, 0) << length << ": there is no reply yet";
    }
    ExpectComplete(Judge(twoRegisters, goodReply), {0x1234, -2});
    ExpectComplete(JudgeAtEnd(twoRegisters, goodReply), {0x1234, -2});
}

TEST(Judge, PassesExceptionCodesOneToSevenThrough) {
    for (int code = 0; code <= 255; ++code) {
        QByteArray reply = Hex("01 83");
        reply.append(static_cast<char>(code));
        const Verdict verdict = Judge(twoRegisters, WithCrc(reply));
        EXPECT_EQ(verdict.kind, Kind::Failed);
        EXPECT_EQ(verdict.status, code >= 1 && code <= 7 ? code : 12) << code;
    }
    EXPECT_EQ(Judge(Read(0x11, 0, 1), Hex("11 83 02 C1 34")).status, 2);
}

TEST(Judge, FindsTheReplyBehindGarbage) {
    for (const char *garbage : {"00", "01", "01 03", "01 03 04", "01 83", "FF FF FF", "01 06 00"}) {
        ExpectComplete(JudgeAtEnd(twoRegisters, Hex(garbage) + goodReply), {0x1234, -2});
    }
    ExpectComplete(Judge(twoRegisters, Hex("00") + goodReply), {0x1234, -2});
    ExpectComplete(Judge(twoRegisters, Hex("01") + goodReply), {0x1234, -2});
}

TEST(Judge, TakesNoNoticeOfWhatFollowsTheReply) {
    ExpectComplete(Judge(twoRegisters, goodReply + Hex("00")), {0x1234, -2});
    ExpectComplete(Judge(twoRegisters, goodReply + goodReply), {0x1234, -2});
}

TEST(Judge, PassesAnotherSlavesReplyOver) {
    const QByteArray other = WithCrc("02 03 04 00 01 00 02");
    EXPECT_EQ(Judge(twoRegisters, other).kind, Kind::NeedMore);
    ExpectComplete(Judge(twoRegisters, other + goodReply), {0x1234, -2});
    ExpectFailsAtEnd(twoRegisters, other, 12);
}

TEST(Judge, MistakesNoDataOfAGrowingReplyForAnException) {
    const Request request = Read(1, 0, 4);
    const QByteArray exception = WithCrc("01 83 02");
    const QByteArray reply = WithCrc(Hex("01 03 08") + exception + Hex("00 00 00"));
    EXPECT_EQ(Judge(request, reply.first(9)).kind, Kind::NeedMore);
    EXPECT_EQ(Judge(request, reply).kind, Kind::Complete);
}

TEST(JudgeAtEnd, ReportsSilenceAsATimeout) {
    ExpectFailsAtEnd(twoRegisters, QByteArray(), 10);
}

TEST(JudgeAtEnd, ReportsAShortFrame) {
    for (qsizetype length = 1; length < goodReply.size(); ++length) {
        ExpectFailsAtEnd(twoRegisters, goodReply.first(length), 13);
    }
}

TEST(JudgeAtEnd, ReportsABadCrc) {
    for (qsizetype at = 0; at < goodReply.size(); ++at) {
        QByteArray damaged = goodReply;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x40);
        const Verdict verdict = JudgeAtEnd(twoRegisters, damaged);
        EXPECT_EQ(verdict.kind, Kind::Failed);
        EXPECT_EQ(verdict.status, 11) << at;
    }
}

TEST(JudgeAtEnd, ReportsAByteCountDamagedUpwardsAsACrcError) {
    QByteArray damaged = goodReply;
    damaged[2] = 0x24;
    ExpectFailsAtEnd(twoRegisters, damaged, 11);
}

TEST(JudgeAtEnd, ReportsWhatIsGoodButNotTheReply) {
    ExpectFailsAtEnd(twoRegisters, WithCrc("01 04 04 12 34 FF FE"), 12); // another function
    ExpectFailsAtEnd(twoRegisters, WithCrc("01 41 12"), 12);             // a function without a known length
    ExpectFailsAtEnd(twoRegisters, WithCrc("01 03 02 12 34"), 12);       // fewer registers
    ExpectFailsAtEnd(twoRegisters, WithCrc("01 03 06 12 34 FF FE 00 00"), 12); // more
    ExpectFailsAtEnd(twoRegisters, WithCrc("01 86 02"), 12); // an exception to something else
}

TEST(JudgeAtEnd, TellsWhetherTheReplyMayStillCome) {
    const auto stillOwed = [](const QByteArray &received) {
        return JudgeAtEnd(twoRegisters, received).stillOwed;
    };
    EXPECT_TRUE(stillOwed({}));
    EXPECT_TRUE(stillOwed(Hex("55")));
    EXPECT_TRUE(stillOwed(WithCrc("02 03 04 12 34 FF FE"))); // another slave's
    EXPECT_TRUE(stillOwed(WithCrc("01 06 00 05 00 07")));    // the reply to an earlier write
    EXPECT_FALSE(stillOwed(goodReply));
    EXPECT_FALSE(stillOwed(goodReply.first(5)));
    EXPECT_FALSE(stillOwed(Hex("55") + goodReply.first(5)));
    EXPECT_FALSE(stillOwed(goodReply.chopped(1) + Hex("00"))); // damaged
    EXPECT_FALSE(stillOwed(WithCrc("01 83 02")));
    EXPECT_FALSE(stillOwed(WithCrc("01 83 0B"))); // an exception with an unknown code
}

TEST(JudgeAtEnd, ReportsAnEchoThatDiffers) {
    ExpectFailsAtEnd(WriteOne(1, 5, 7), WithCrc("01 06 00 05 00 08"), 12);
    ExpectFailsAtEnd(WriteOne(1, 5, 7), WithCrc("01 06 00 06 00 07"), 12);
    ExpectFailsAtEnd(WriteMany(1, 5, {1, 2}), WithCrc("01 10 00 05 00 01"), 12);
    ExpectFailsAtEnd(WriteMany(1, 5, {1, 2}), WithCrc("01 10 00 06 00 02"), 12);
}

TEST(JudgeAtEnd, TakesTheRightEchoBehindALateOne) {
    ExpectComplete(Judge(WriteOne(1, 5, 7), WithCrc("01 06 00 05 00 08") + WithCrc("01 06 00 05 00 07")));
}

TEST(JudgeAtEnd, KeepsTheCrcErrorOfADamagedLongReply) {
    // Some of the many parts of a long reply have a good CRC by chance. They aren't frames.
    const Request request = Read(1, 0, 95);
    QByteArray reply = Hex("01 03 BE");
    for (int k = 0; k < 190; ++k) {
        reply.append(static_cast<char>(k * 37 + k / 7));
    }
    reply = WithCrc(reply);
    for (qsizetype at = 0; at < reply.size(); ++at) {
        QByteArray damaged = reply;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x08);
        EXPECT_EQ(JudgeAtEnd(request, damaged).status, 11) << at;
    }
}

TEST(ReplyLength, ComesFromTheRequest) {
    EXPECT_EQ(ReplyLength(Read(1, 0, 1)), 7);
    EXPECT_EQ(ReplyLength(Read(1, 0, 125)), 255);
    EXPECT_EQ(ReplyLength(WriteOne(1, 0, 1)), 8);
    EXPECT_EQ(ReplyLength(WriteMany(1, 0, {1, 2, 3})), 8);
}

} // namespace ztv
