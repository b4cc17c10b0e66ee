#include "sim/LocalEcho.h"

#include "sim/BootFrame.h"
#include "sim/BootLoader.h"
#include "tests/helpers/Wait.h"
#include "tests/sim/SensorFixture.h"

#include <QElapsedTimer>
#include <QFile>

namespace sim {

using ztv::WaitUntil;
namespace {

using test::FrameOf;
using test::Hex;
using test::TestHost;

const QByteArray readAddress = FrameOf("01 03 0040 0001");
const QByteArray addressReply = FrameOf("01 03 02 0001");

class SimLocalEcho : public test::SensorFixture {
protected:
    SimLocalEcho() { options_.faults.echo = true; }

    // Sends the request and returns all that comes back within ample time.
    static QByteArray Exchange(const TestHost &host, const QByteArray &request, qsizetype expected) {
        host.Write(request);
        QByteArray bytes = host.Await(expected);
        WaitUntil([] { return false; }, 30);
        return bytes + host.Read();
    }
};

TEST_F(SimLocalEcho, ComesBeforeTheReply) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Exchange(host, readAddress, 15), readAddress + addressReply);
    const QByteArray write = FrameOf("01 06 0027 0007");
    EXPECT_EQ(Exchange(host, write, 16), write + write);
}

TEST_F(SimLocalEcho, IsOffUnlessAskedFor) {
    options_.faults.echo = false;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Exchange(host, readAddress, 7), addressReply);
    EXPECT_EQ(Run("echo on"), "");
    EXPECT_EQ(Exchange(host, readAddress, 15), readAddress + addressReply);
    EXPECT_EQ(Run("echo off"), "");
    EXPECT_EQ(Exchange(host, readAddress, 7), addressReply);
}

TEST_F(SimLocalEcho, GivesBackWhatTheSensorDoesNotTake) {
    Start();
    const TestHost host(sensor_->Path());
    for (const QByteArray &bytes : {FrameOf("02 03 0000 0001"), FrameOf("00 06 0027 0007"), Hex("FF"),
                                    FrameOf("01 06 0027 0007").first(3)}) {
        EXPECT_EQ(Exchange(host, bytes, bytes.size()), bytes);
    }
}

TEST_F(SimLocalEcho, NeedsNoSensorThatHears) {
    options_.faults.mute = true;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Exchange(host, readAddress, 8), readAddress);
    host.Set(B9600, CSTOPB);
    EXPECT_EQ(Exchange(host, readAddress, 8), readAddress);
}

TEST_F(SimLocalEcho, IsThereInTheLoaderToo) {
    options_.boot = true;
    Start();
    const TestHost host(sensor_->Path());
    const QByteArray version = BootFrame(Hex("0002"));
    const QByteArray reply = BootFrame(Hex("00021101"));
    EXPECT_EQ(Exchange(host, version, version.size() + reply.size()), version + reply);
    sensor_->Boot().SetFault(2, {BootFault::Deaf, 0});
    EXPECT_EQ(Exchange(host, version, version.size()), version);
    sensor_->Faults().mute = true;
    EXPECT_EQ(Exchange(host, version, version.size()), version);
}

TEST_F(SimLocalEcho, GoesOnThroughARestart) {
    options_.boot = true;
    Start();
    const TestHost host(sensor_->Path());
    const QByteArray restart = BootFrame(Hex("0000"));
    EXPECT_EQ(Exchange(host, restart, restart.size()), restart);
    sensor_->Reset();
    EXPECT_EQ(Exchange(host, restart, restart.size()), restart);
}

TEST_F(SimLocalEcho, DoesNotWaitForALateReply) {
    Start();
    sensor_->Faults().latencyMs = 100;
    const TestHost host(sensor_->Path());
    host.Write(readAddress);
    EXPECT_EQ(host.Await(8), readAddress);
    EXPECT_EQ(sensor_->Stats().replies, 1);
    const QByteArray other = FrameOf("02 03 0000 0001");
    host.Write(other);
    EXPECT_EQ(host.Await(15), other + addressReply);
}

TEST_F(SimLocalEcho, IsNeitherDroppedNorDamagedWithReplies) {
    options_.faults.corrupt = 1;
    Start();
    const TestHost host(sensor_->Path());
    const QByteArray both = Exchange(host, readAddress, 15);
    EXPECT_EQ(both.first(8), readAddress);
    EXPECT_NE(both.sliced(8), addressReply);
    sensor_->Faults().drop = 1;
    EXPECT_EQ(Exchange(host, readAddress, 8), readAddress);
}

TEST_F(SimLocalEcho, TakesTheTimeOfTheLineWhenPacedAndTheReplyNoMore) {
    options_.faults.pace = true;
    options_.baud = 2;
    options_.parity = 0;
    Start();
    const TestHost host(sensor_->Path(), B9600, 0);
    QElapsedTimer elapsed;
    elapsed.start();
    host.Write(readAddress);
    EXPECT_EQ(host.Await(8), readAddress);
    EXPECT_GE(elapsed.elapsed(), 8); // 8 characters, 10 bits each
    EXPECT_EQ(host.Await(7), addressReply);
    EXPECT_GE(elapsed.elapsed(), 18); // and 3.5 of silence, 7 of the reply
}

TEST_F(SimLocalEcho, StaysBeforeTheReplyAtLinePace) {
    options_.faults.pace = true;
    Start();
    const TestHost host(sensor_->Path());
    for (int exchange = 0; exchange < 50; ++exchange) {
        host.Write(readAddress);
        ASSERT_EQ(host.Await(15), readAddress + addressReply) << exchange;
    }
}

TEST_F(SimLocalEcho, IsPacedByTheSpeedOfTheHost) {
    options_.faults.pace = true;
    Start();
    const TestHost host(sensor_->Path(), B2400, 0);
    QElapsedTimer elapsed;
    elapsed.start();
    host.Write(readAddress);
    EXPECT_EQ(host.Await(8), readAddress);
    EXPECT_GE(elapsed.elapsed(), 33);
}

TEST_F(SimLocalEcho, EndsWithThePlug) {
    options_.faults.pace = true;
    Start();
    {
        const TestHost host(sensor_->Path(), B2400, 0);
        host.Write(readAddress);
        ASSERT_TRUE(WaitUntil([this] { return !sensor_->Requests().empty(); }));
        sensor_->Unplug();
    }
    EXPECT_EQ(sensor_->Plug().toStdString(), "");
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Exchange(host, readAddress, 15), readAddress + addressReply);
}

TEST_F(SimLocalEcho, HasAMarkOfItsOwnInTheLog) {
    options_.log = presets_.Folder() + "/log";
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Exchange(host, readAddress, 15), readAddress + addressReply);
    QFile file(options_.log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains(" ec " + readAddress.toHex(' ') + '\n'));
}

} // namespace
} // namespace sim
