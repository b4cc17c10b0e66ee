#include "sim/RequestAssembler.h"
#include "tests/sim/TestHost.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

using test::FrameOf;
using test::Hex;

using Frames = std::vector<QByteArray>;

class SimRequestAssembler : public testing::Test {
protected:
    Frames Append(const QByteArray &bytes) { return assembler_.Append(bytes, 0x11); }

    const QByteArray read_ = Hex("1103006B00037687");
    const QByteArray write_ = Hex("1110000100020 4000A0102C6F0");
    RequestAssembler assembler_;
};

TEST_F(SimRequestAssembler, GivesAWholeRequestAtOnce) {
    EXPECT_EQ(Append(read_), Frames{read_});
    EXPECT_EQ(Append(Hex("1106000100039A9B")), Frames{Hex("1106000100039A9B")});
    EXPECT_EQ(Append(write_), Frames{write_});
    EXPECT_FALSE(assembler_.Pending());
}

TEST_F(SimRequestAssembler, JoinsARequestThatComesByteByByte) {
    for (qsizetype i = 0; i + 1 < write_.size(); ++i) {
        EXPECT_TRUE(Append(write_.mid(i, 1)).empty());
        EXPECT_TRUE(assembler_.Pending());
    }
    EXPECT_EQ(Append(write_.right(1)), Frames{write_});
}

TEST_F(SimRequestAssembler, SeparatesTwoRequestsInOnePiece) {
    EXPECT_EQ(Append(read_ + write_ + read_.first(3)), (Frames{read_, write_}));
    EXPECT_EQ(Append(read_.sliced(3)), Frames{read_});
}

TEST_F(SimRequestAssembler, FindsARequestBehindGarbage) {
    EXPECT_EQ(Append(Hex("FF") + read_), Frames{read_});
    EXPECT_EQ(Append(Hex("110300") + read_), Frames{read_});
    EXPECT_EQ(Append(Hex("1110FFFF") + write_), Frames{write_});
    EXPECT_FALSE(assembler_.Pending());
}

TEST_F(SimRequestAssembler, GivesNothingForABadCrcAndDropsItAfterSilence) {
    QByteArray damaged = read_;
    damaged[7] = 0;
    EXPECT_TRUE(Append(damaged).empty());
    EXPECT_EQ(assembler_.Discard(), damaged);
    EXPECT_FALSE(assembler_.Pending());
    EXPECT_EQ(Append(read_), Frames{read_});
}

TEST_F(SimRequestAssembler, GivesARequestRightAfterADamagedOne) {
    QByteArray damaged = read_;
    damaged[3] = 0;
    EXPECT_EQ(Append(damaged + read_), Frames{read_});
}

TEST_F(SimRequestAssembler, GivesRequestsOfOtherSlavesAndUnknownFunctions) {
    const QByteArray other = FrameOf("05 03 0000 0001");
    const QByteArray unknown = FrameOf("11 2B 0E 01 00");
    EXPECT_EQ(Append(other + unknown), (Frames{other, unknown}));
}

TEST_F(SimRequestAssembler, DoesNotTakeTheDataOfALongRequestForARequest) {
    const QByteArray inner = FrameOf("05 06 0001 0003");
    const QByteArray outer = FrameOf(QByteArray("11 10 0001 0004 08 " + inner.toHex()).constData());
    EXPECT_TRUE(Append(outer.first(outer.size() - 1)).empty());
    EXPECT_EQ(Append(outer.right(1)), Frames{outer});
}

TEST_F(SimRequestAssembler, KeepsEndlessGarbageBounded) {
    for (int i = 0; i < 100; ++i) {
        Append(QByteArray(100, '\x55'));
    }
    EXPECT_LE(assembler_.Discard().size(), 256);
}

} // namespace
} // namespace sim
