#include "link/LocalEcho.h"

#include "link/LinkStatus.h"
#include "tests/helpers/Frames.h"

#include <gtest/gtest.h>

namespace ztv {

namespace {

const ModbusFrame::Request read = {
    .slave = 1, .function = ModbusFrame::ReadHoldingRegisters, .address = 0, .quantity = 2, .words = {}};
const ModbusFrame::Request write = {
    .slave = 1, .function = ModbusFrame::WriteSingleRegister, .address = 5, .quantity = 1, .words = {7}};
const ModbusFrame::Request download = {.slave = 1,
                                       .function = ModbusFrame::WriteMultipleRegisters,
                                       .address = 0,
                                       .quantity = 2,
                                       .words = {1, 2}};

const QByteArray readReply = WithCrc("01 03 04 00 01 00 02");
const QByteArray writeReply = WithCrc("01 06 00 05 00 07");
const QByteArray downloadReply = WithCrc("01 10 00 00 00 02");

class LocalEchoTest : public testing::Test {
protected:
    // Returns the input after removal of the echo.
    QByteArray Left(const ModbusFrame::Request &request, QByteArray received) {
        echo_.RunBegins(request);
        echo_.TakeFrom(received);
        echo_.RunEnded(ModbusFrame::JudgeAtEnd(request, received), received);
        return received;
    }
    static QByteArray CopyOf(const ModbusFrame::Request &request) { return ModbusFrame::Encode(request); }

    LocalEcho echo_;
};

TEST_F(LocalEchoTest, TheFirstReadTellsThatTheAdapterGivesBackWhatIsSent) {
    EXPECT_EQ(Left(read, CopyOf(read) + readReply), readReply);
    EXPECT_TRUE(echo_.IsPresent());
    EXPECT_EQ(Left(write, CopyOf(write)), "") << "nobody received the write";
    EXPECT_EQ(Left(write, CopyOf(write) + writeReply), writeReply);
}

TEST_F(LocalEchoTest, ACopyAloneTellsItTooThoughNobodyAnswers) {
    EXPECT_EQ(Left(read, CopyOf(read)), "");
    EXPECT_TRUE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, ADownloadTellsItToo) {
    EXPECT_EQ(Left(download, CopyOf(download) + downloadReply), downloadReply);
    EXPECT_TRUE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, AnAdapterWithoutEchoLosesNoReply) {
    EXPECT_EQ(Left(write, writeReply), writeReply) << "before the first read";
    EXPECT_EQ(Left(read, readReply), readReply);
    EXPECT_EQ(Left(write, writeReply), writeReply);
    EXPECT_EQ(Left(download, downloadReply), downloadReply);
    EXPECT_FALSE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, ASilentReadTellsThatThereIsNoEcho) {
    EXPECT_EQ(Left(read, ""), "");
    EXPECT_EQ(Left(write, writeReply), writeReply);
    EXPECT_FALSE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, ADamagedCopyAtTheFirstReadConfirmsNoWrite) {
    QByteArray damaged = CopyOf(read);
    damaged[4] = 0x55;
    EXPECT_EQ(Left(read, damaged), damaged);
    EXPECT_EQ(Left(write, CopyOf(write)), "");
    EXPECT_EQ(Left(read, damaged + readReply), damaged + readReply);
    EXPECT_EQ(Left(write, CopyOf(write)), "");
    EXPECT_EQ(Left(read, readReply), readReply) << "nothing in front: there is no echo";
    EXPECT_EQ(Left(write, writeReply), writeReply);
}

TEST_F(LocalEchoTest, NoiseAfterACleanReplyCastsNoDoubt) {
    Left(read, readReply);
    Left(read, Hex("A5") + readReply);
    EXPECT_EQ(Left(write, writeReply), writeReply);
}

TEST_F(LocalEchoTest, AByteOfGarbageInFrontOfEveryReplyIsNoDamagedCopy) {
    const QByteArray garbage = Hex("FF");
    for (int run = 0; run < 3; ++run) {
        Left(read, garbage + readReply);
        EXPECT_EQ(Left(write, garbage + writeReply), garbage + writeReply) << run;
    }
    EXPECT_FALSE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, ACopyBehindAByteOfGarbageTellsOfTheEchoToo) {
    const QByteArray garbage = Hex("FF");
    Left(read, garbage + CopyOf(read) + readReply);
    EXPECT_TRUE(echo_.IsPresent());
    EXPECT_EQ(Left(write, garbage + CopyOf(write)), "") << "nobody received the write";
    EXPECT_EQ(Left(write, garbage + CopyOf(write) + writeReply), writeReply);
}

TEST_F(LocalEchoTest, AnExceptionReplyTellsThatThereIsNoEcho) {
    Left(read, WithCrc("01 83 02"));
    EXPECT_EQ(Left(write, writeReply), writeReply);
}

TEST_F(LocalEchoTest, AnEchoThatBeginsLaterIsFoundThen) {
    Left(read, readReply);
    EXPECT_EQ(Left(read, CopyOf(read) + readReply), readReply);
    EXPECT_TRUE(echo_.IsPresent());
}

TEST_F(LocalEchoTest, TheCopyIsAwaitedOnceTheEchoIsKnownAndTakenOnce) {
    echo_.RunBegins(read);
    EXPECT_FALSE(echo_.IsAwaited());
    Left(read, CopyOf(read));
    echo_.RunBegins(write);
    EXPECT_TRUE(echo_.IsAwaited());
    QByteArray received = CopyOf(write).first(5);
    EXPECT_EQ(echo_.TakeFrom(received), "");
    EXPECT_TRUE(echo_.IsAwaited());
    received = CopyOf(write) + writeReply;
    echo_.TakeFrom(received);
    EXPECT_FALSE(echo_.IsAwaited());
    echo_.TakeFrom(received);
    EXPECT_EQ(received, writeReply) << "the reply isn't a second copy";
}

TEST_F(LocalEchoTest, BytesInFrontOfTheCopyAnsweredAnEarlierRequest) {
    Left(read, CopyOf(read));
    echo_.RunBegins(read);
    QByteArray received = readReply + CopyOf(read) + readReply;
    EXPECT_EQ(echo_.TakeFrom(received), readReply);
    EXPECT_EQ(received, readReply);
}

TEST_F(LocalEchoTest, ADeviceThatCameBackIsLookedAtAnew) {
    Left(read, CopyOf(read));
    echo_.DeviceReopened();
    EXPECT_FALSE(echo_.IsPresent());
    EXPECT_EQ(Left(write, CopyOf(write)), "") << "it had an echo before";
    EXPECT_EQ(Left(read, readReply), readReply);
    EXPECT_EQ(Left(write, writeReply), writeReply);
    echo_.DeviceReopened();
    EXPECT_EQ(Left(write, writeReply), writeReply) << "it had none before";
}

TEST_F(LocalEchoTest, ClosingThePortForgetsIt) {
    Left(read, CopyOf(read));
    echo_.Clear();
    EXPECT_FALSE(echo_.IsPresent());
    EXPECT_EQ(Left(write, writeReply), writeReply);
}

} // namespace

} // namespace ztv
