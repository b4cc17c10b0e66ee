#include "sim/SimulatedSensor.h"

#include "sim/Crc.h"
#include "tests/helpers/Wait.h"
#include "tests/sim/SensorFixture.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <ctime>

namespace sim {

using ztv::WaitUntil;
namespace {

using test::FrameOf;
using test::Hex;
using test::TestHost;

constexpr auto readAddress = "01 03 0040 0001";
constexpr auto addressReply = "0103020001";

class SimSensor : public test::SensorFixture {};

TEST_F(SimSensor, AnswersARead) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, readAddress), addressReply);
    EXPECT_EQ(Ask(host, "01 03 0044 0001"), "0103025555");
    EXPECT_EQ(sensor_->Stats().requests, 2);
    EXPECT_EQ(sensor_->Stats().replies, 2);
}

TEST_F(SimSensor, AnswersTheWholeTable) {
    Start();
    const TestHost host(sensor_->Path());
    host.Write(FrameOf("01 03 0000 005A"));
    const QByteArray reply = host.Await(185);
    EXPECT_EQ(reply.size(), 185);
    EXPECT_EQ(Crc16(reply), 0);
}

TEST_F(SimSensor, TakesItsLineFromTheOptions) {
    options_.address = 9;
    options_.baud = 1;
    options_.parity = 3;
    options_.addressing = 0;
    Start();
    const TestHost host(sensor_->Path(), B4800, PARENB | PARODD);
    EXPECT_EQ(Ask(host, "09 03 0041 0004"), "0903080009000100030000");
}

TEST_F(SimSensor, RefusesPresetsThatItCannotWorkWith) {
    presets_.Change("UPDATE Parameters SET Preset = 9 WHERE rowid = 67");
    SimulatedSensor sensor(options_);
    EXPECT_EQ(sensor.Start().toStdString(), "parameter 66 can't be 9");
    options_.presets = "/nowhere";
    EXPECT_TRUE(SimulatedSensor(options_).Start().contains("does not exist"));
}

TEST_F(SimSensor, KeepsSilentWithOtherLineSettings) {
    Start();
    const TestHost host(sensor_->Path());
    host.Set(B19200, CSTOPB);
    EXPECT_EQ(Ask(host, readAddress), "");
    host.Set(B38400, 0);
    EXPECT_EQ(Ask(host, readAddress), "");
    host.Set(B38400, CSTOPB | PARENB | PARODD);
    EXPECT_EQ(Ask(host, readAddress), "");
    EXPECT_EQ(sensor_->Stats().ignored, 3);
    host.Set(B38400, CSTOPB);
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimSensor, ExecutesNothingWithOtherLineSettings) {
    Start();
    const TestHost host(sensor_->Path(), B2400);
    EXPECT_EQ(Ask(host, "01 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 0);
}

TEST_F(SimSensor, KeepsSilentForOtherSlavesAndBroadcasts) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "02 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 0);
    EXPECT_EQ(Ask(host, "00 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 7);
}

TEST_F(SimSensor, RecordsWhatWentOverTheWire) {
    Start();
    std::vector<QByteArray> called;
    sensor_->OnRequest([&](const QByteArray &request) { called.push_back(request); });
    const TestHost host(sensor_->Path());
    Ask(host, "02 03 0000 0001");
    Ask(host, "01 06 0027 0007");
    Ask(host, "01 06 0027 FFFF");
    Ask(host, "01 10 0023 0002 04 0064 0065");
    EXPECT_EQ(sensor_->Requests().size(), 4u);
    EXPECT_EQ(sensor_->Requests().front(), FrameOf("02 03 0000 0001"));
    EXPECT_EQ(called, sensor_->Requests());
    EXPECT_EQ(sensor_->Writes(),
              (std::vector<std::pair<int, int>>{{40, 7}, {40, 65535}, {36, 100}, {37, 101}}));
    sensor_->ClearRecords();
    EXPECT_TRUE(sensor_->Requests().empty());
    EXPECT_TRUE(sensor_->Writes().empty());
}

TEST_F(SimSensor, AnswersWithTheOldSettingsBeforeItTakesTheNew) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "01 06 0040 0009"), "010600400009");
    EXPECT_EQ(Ask(host, readAddress), "");
    EXPECT_EQ(Ask(host, "09 06 0041 0002"), "090600410002");
    EXPECT_EQ(Ask(host, "09 03 0040 0001"), "");
    host.Set(B9600, CSTOPB);
    EXPECT_EQ(Ask(host, "09 06 0042 0000"), "090600420000");
    EXPECT_EQ(Ask(host, "09 03 0040 0001"), "");
    host.Set(B9600, 0);
    EXPECT_EQ(Ask(host, "09 06 0043 0000"), "090600430000");
    EXPECT_EQ(Ask(host, "09 03 0041 0004"), "0903080009000200000000");
}

TEST_F(SimSensor, KeepsTheOldSettingsUntilADelayedReplyIsOut) {
    options_.faults.latencyMs = 20;
    Start();
    const TestHost host(sensor_->Path());
    host.Write(FrameOf("01 06 0040 0009"));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Requests().size() == 1; }));
    EXPECT_EQ(sensor_->Line().address, 1);
    EXPECT_EQ(host.Await(8), FrameOf("01 06 0040 0009"));
    EXPECT_EQ(sensor_->Line().address, 9);
}

TEST_F(SimSensor, TakesTheLineSettingsOfADownloadAfterItsReply) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "01 10 0040 0004 08 0009 0002 0000 0000"), "011000400004");
    EXPECT_EQ(sensor_->Line().address, 9);
    EXPECT_EQ(sensor_->Line().addressing, 0);
    host.Set(B9600, 0);
    EXPECT_EQ(Ask(host, "09 03 0041 0001"), "0903020009");
}

TEST_F(SimSensor, SavesAndReinitialises) {
    Start();
    const TestHost host(sensor_->Path());
    Ask(host, "01 06 0027 0007");
    EXPECT_EQ(Ask(host, "01 06 0000 0001"), "010600000001");
    EXPECT_EQ(Ask(host, "01 03 0000 0001"), "0103020000");
    EXPECT_EQ(Ask(host, "01 06 0002 0001"), "010600020001");
    EXPECT_EQ(Ask(host, "01 03 0002 0001"), "0103020000");
    EXPECT_EQ(sensor_->Register(40), 0);
}

TEST_F(SimSensor, TakesTheCommunicationPresetsAtTheNextReset) {
    options_.address = 9;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "09 06 0002 0001"), "090600020001");
    EXPECT_EQ(Ask(host, "09 03 0040 0001"), "0903020009");
    sensor_->Reset();
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimSensor, FindsItsWayBackAfterHalfARequest) {
    Start();
    const TestHost host(sensor_->Path());
    host.Write(Hex("0110 0000 005A B4 00"));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Stats().discarded == 8; }));
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimSensor, AnswersBehindGarbage) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(AskFrame(host, Hex("FF00") + FrameOf(readAddress)), addressReply);
}

TEST_F(SimSensor, HearsNothingWhileMute) {
    Start();
    const TestHost host(sensor_->Path());
    sensor_->Faults().mute = true;
    EXPECT_EQ(Ask(host, "01 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 0);
    sensor_->Faults().mute = false;
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimSensor, ExecutesWhatItDropsTheReplyOf) {
    options_.faults.drop = 1;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "01 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 7);
}

TEST_F(SimSensor, DamagesOneBitOfAReply) {
    options_.faults.corrupt = 1;
    Start();
    const TestHost host(sensor_->Path());
    host.Write(FrameOf("01 06 0027 0007"));
    const QByteArray reply = host.Await(8);
    const QByteArray good = FrameOf("01 06 0027 0007");
    ASSERT_EQ(reply.size(), good.size());
    int bits = 0;
    for (qsizetype i = 0; i < good.size(); ++i) {
        bits += qPopulationCount(static_cast<quint8>(reply.at(i) ^ good.at(i)));
    }
    EXPECT_EQ(bits, 1);
}

TEST_F(SimSensor, AnswersEverythingWithTheChosenException) {
    options_.faults.exception = 6;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, readAddress), "018306");
    EXPECT_EQ(Ask(host, "01 06 0027 0007"), "018606");
    EXPECT_EQ(Ask(host, "00 06 0027 0007"), "");
    EXPECT_EQ(sensor_->Register(40), 0);
    EXPECT_EQ(sensor_->Stats().exceptions, 2);
}

TEST_F(SimSensor, TakesTheTimeOfTheLineWhenPaced) {
    options_.faults.pace = true;
    options_.baud = 2;
    options_.parity = 0;
    Start();
    const TestHost host(sensor_->Path(), B9600, 0);
    QElapsedTimer elapsed;
    elapsed.start();
    host.Write(FrameOf(readAddress));
    EXPECT_EQ(host.Await(7), FrameOf(addressReply));
    // 8 characters of the request, 3.5 of silence, 7 of the reply, 10 bits each.
    EXPECT_GE(elapsed.elapsed(), 18);
}

TEST_F(SimSensor, HangsUpWhenUnpluggedAndIsThereAgainWhenPlugged) {
    options_.link = presets_.Folder() + "/port";
    Start();
    EXPECT_EQ(sensor_->Path(), options_.link);
    {
        const TestHost host(options_.link);
        sensor_->Unplug();
        EXPECT_TRUE(host.HangsUp());
        EXPECT_FALSE(QFileInfo(options_.link).isSymLink());
    }
    EXPECT_EQ(sensor_->Plug().toStdString(), "");
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimSensor, MayBeUnpluggedInTheMiddleOfARequest) {
    Start();
    const TestHost host(sensor_->Path());
    sensor_->OnRequest([this](const QByteArray &) { sensor_->Unplug(); });
    host.Write(FrameOf(readAddress) + FrameOf(readAddress));
    ASSERT_TRUE(WaitUntil([&] { return host.HangsUp(); }));
    sensor_->OnRequest({});
    EXPECT_EQ(sensor_->Plug().toStdString(), "");
    const TestHost again(sensor_->Path());
    EXPECT_EQ(Ask(again, readAddress), addressReply);
}

TEST_F(SimSensor, RestsWhileNothingHappens) {
    Start();
    { const TestHost host(sensor_->Path()); }
    timespec before{};
    timespec after{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &before);
    EXPECT_FALSE(WaitUntil([] { return false; }, 200));
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &after);
    const double usedMs = static_cast<double>(after.tv_sec - before.tv_sec) * 1e3 +
                          static_cast<double>(after.tv_nsec - before.tv_nsec) / 1e6;
    EXPECT_LT(usedMs, 100);
}

TEST_F(SimSensor, LogsTheFramesOfBothWays) {
    options_.log = presets_.Folder() + "/log";
    Start();
    const TestHost host(sensor_->Path());
    Ask(host, readAddress);
    QFile file(options_.log);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).endsWith(" rx " + FrameOf(readAddress).toHex(' ')));
    EXPECT_TRUE(lines.at(1).endsWith(" tx " + FrameOf(addressReply).toHex(' ')));
}

} // namespace
} // namespace sim
