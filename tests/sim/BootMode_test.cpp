#include "sim/BootFrame.h"
#include "sim/BootLoader.h"
#include "sim/DeviceMemory.h"
#include "sim/FirmwareImage.h"
#include "sim/Parameters.h"
#include "tests/helpers/Wait.h"
#include "tests/sim/SensorFixture.h"

#include <QElapsedTimer>
#include <QFile>

namespace sim {

using ztv::WaitUntil;
namespace {

using test::Hex;
using test::TestHost;

constexpr auto readAddress = "01 03 0040 0001";
constexpr auto addressReply = "0103020001";
constexpr auto enterLoader = "01 06 0002 0063";
const QByteArray version = Hex("0002");
const QByteArray versionReply = Hex("00021101");
const QByteArray restart = Hex("0000");
const QByteArray runMode = Hex("05 01 FF 7F 00 00");

class SimBootMode : public test::SensorFixture {
protected:
    void StartInLoader() {
        options_.boot = true;
        Start();
        ASSERT_TRUE(sensor_->InBootMode());
    }

    // The payload of the next answer.
    static QByteArray Answer(const TestHost &host) {
        BootFrameReader reader;
        std::vector<HeardFrame> frames;
        WaitUntil([&] {
            frames = reader.Append(host.Read());
            return !frames.empty();
        });
        return frames.empty() ? QByteArray("no answer") : frames.front().payload;
    }
    static QByteArray Send(const TestHost &host, const QByteArray &payload) {
        host.Write(BootFrame(payload));
        return Answer(host);
    }
    // Sends a packet that has no answer, and waits until the loader has received it.
    void Tell(const TestHost &host, const QByteArray &payload) {
        const int exchanges = sensor_->Boot().Exchanges();
        host.Write(BootFrame(payload));
        EXPECT_TRUE(WaitUntil([&] { return sensor_->Boot().Exchanges() != exchanges; }));
    }
    void Restart(const TestHost &host) {
        host.Write(BootFrame(restart));
        EXPECT_TRUE(WaitUntil([&] { return !sensor_->InBootMode() || sensor_->Boot().Exchanges() == 0; }));
    }
};

TEST_F(SimBootMode, BeginsWhenTheReplyToItsRequestIsOut) {
    options_.faults.latencyMs = 20;
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(sensor_->Memory().Mark(), 0);
    host.Write(test::FrameOf(enterLoader));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Requests().size() == 1; }));
    EXPECT_FALSE(sensor_->InBootMode());
    EXPECT_EQ(host.Await(8), test::FrameOf(enterLoader));
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(sensor_->Memory().Mark(), 0xFF);
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, DoesNotBeginForAnotherValue) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "01 06 0002 0000"), "010600020000");
    EXPECT_FALSE(sensor_->InBootMode());
}

TEST_F(SimBootMode, AnswersNoModbus) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    host.Write(test::FrameOf(readAddress));
    EXPECT_EQ(Send(host, version), versionReply);
    EXPECT_TRUE(sensor_->Requests().empty());
}

TEST_F(SimBootMode, SpeaksTheFramesOfTheLoader) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    host.Write(Hex("0F0F 00 02 FE 04"));
    EXPECT_EQ(host.Await(8), Hex("0F0F 00 02 11 01 EC 04"));
    host.Write(Hex("0F0F 01 0504 00 08 00 F3 04"));
    EXPECT_EQ(host.Await(15), Hex("0F0F 01 0504 00 08 00 80 EF 0504 F0 90 04"));
}

TEST_F(SimBootMode, EndsByTheMarkAndARestart) {
    Start();
    const TestHost host(sensor_->Path());
    Ask(host, enterLoader);
    EXPECT_EQ(Send(host, runMode), Hex("05"));
    EXPECT_EQ(sensor_->Memory().Mark(), 0);
    EXPECT_TRUE(sensor_->InBootMode());
    Restart(host);
    EXPECT_FALSE(sensor_->InBootMode());
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimBootMode, StaysAfterARestartWithoutTheMark) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Send(host, version), versionReply);
    Restart(host);
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(sensor_->Boot().Exchanges(), 0);
    EXPECT_EQ(Send(host, version), versionReply);
    sensor_->Reset();
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, StaysAfterARestartWithoutAnApplication) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Send(host, Hex("03 01 00 08 00")), Hex("03"));
    EXPECT_EQ(Send(host, runMode), Hex("05"));
    Restart(host);
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(Send(host, Hex("02 01 00 08 00 80EF04F0FFFFFFFF")), Hex("02"));
    Restart(host);
    EXPECT_FALSE(sensor_->InBootMode());
}

TEST_F(SimBootMode, HearsTheSpeedOfTheSensorWithAnyParity) {
    options_.parity = 2;
    StartInLoader();
    for (const tcflag_t flags : {0, CSTOPB, PARENB, PARENB | PARODD}) {
        const TestHost host(sensor_->Path(), B38400, flags);
        EXPECT_EQ(Send(host, version), versionReply);
    }
}

TEST_F(SimBootMode, HearsNothingAtAnotherSpeed) {
    StartInLoader();
    const TestHost host(sensor_->Path(), B19200);
    host.Write(BootFrame(runMode));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Stats().ignored == 1; }));
    EXPECT_EQ(host.Read(), "");
    EXPECT_EQ(sensor_->Memory().Mark(), 0xFF);
    host.Set(B38400, 0);
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, GoesOnWithTheSpeedThatTheApplicationHad) {
    Start();
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Ask(host, "01 06 0041 0002"), "010600410002");
    host.Set(B9600, CSTOPB);
    EXPECT_EQ(Ask(host, enterLoader), "010600020063");
    EXPECT_EQ(Send(host, version), versionReply);
    // It was never saved.
    EXPECT_EQ(Send(host, runMode), Hex("05"));
    Restart(host);
    host.Set(B38400, CSTOPB);
    EXPECT_EQ(Ask(host, readAddress), addressReply);
}

TEST_F(SimBootMode, LosesWhatWasNotSaved) {
    Start();
    Run("set 40 7");
    const TestHost host(sensor_->Path());
    Ask(host, enterLoader);
    Send(host, runMode);
    Restart(host);
    EXPECT_EQ(sensor_->Register(40), 0);
}

TEST_F(SimBootMode, TakesTheVersionFromTheParameter) {
    Start();
    Run("set 9 250");
    const TestHost host(sensor_->Path());
    Ask(host, enterLoader);
    EXPECT_EQ(Send(host, version), Hex("00023202"));
}

TEST_F(SimBootMode, ReplacesTheFirmware) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    for (int address = 0x0800; address <= 0xBFFF; address += 64) {
        QByteArray erase = Hex("03 01 00 00 00");
        erase[2] = static_cast<char>(address & 0xFF);
        erase[3] = static_cast<char>(address >> 8);
        ASSERT_EQ(Send(host, erase), Hex("03"));
    }
    EXPECT_FALSE(sensor_->Memory().HasApplication());
    const QByteArray image = Application(upgradeVersion, DeviceMemory::applicationSize);
    for (int offset = 0; offset < image.size(); offset += 16) {
        const int address = 0x0800 + offset;
        QByteArray header = Hex("02 02 00 00 00");
        header[2] = static_cast<char>(address & 0xFF);
        header[3] = static_cast<char>(address >> 8);
        ASSERT_EQ(Send(host, header + image.mid(offset, 16)), Hex("02"));
        header[0] = 1;
        header[1] = 16;
        ASSERT_EQ(Send(host, header), header + image.mid(offset, 16));
    }
    Send(host, runMode);
    Restart(host);
    EXPECT_EQ(Ask(host, "01 03 0007 0001"), "010302012c");
    EXPECT_EQ(sensor_->Register(parameter::FirmwareVersion), upgradeVersion);
    sensor_->Reset();
    EXPECT_EQ(sensor_->Register(parameter::FirmwareVersion), upgradeVersion);
}

TEST_F(SimBootMode, ShowsTheOldVersionOfAForeignFirmware) {
    StartInLoader();
    sensor_->Memory().Erase(DeviceMemory::applicationStart, 2);
    sensor_->Memory().Write(DeviceMemory::applicationStart, Hex("80EF04F0"));
    sensor_->Memory().SetMark(0);
    sensor_->Reset();
    EXPECT_FALSE(sensor_->InBootMode());
    EXPECT_EQ(sensor_->Register(parameter::FirmwareVersion), 214);
}

TEST_F(SimBootMode, CanLoseAReply) {
    StartInLoader();
    Run("bootfault 1 drop");
    const TestHost host(sensor_->Path());
    Tell(host, runMode);
    EXPECT_EQ(sensor_->Memory().Mark(), 0);
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, CanMissARequest) {
    StartInLoader();
    Run("bootfault 1 deaf");
    const TestHost host(sensor_->Path());
    Tell(host, runMode);
    EXPECT_EQ(sensor_->Memory().Mark(), 0xFF);
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, CanDamageOneBitOfAReply) {
    StartInLoader();
    Run("bootfault 2 corrupt");
    const TestHost host(sensor_->Path());
    EXPECT_EQ(Send(host, version), versionReply);
    host.Write(BootFrame(version));
    const QByteArray good = BootFrame(versionReply);
    const QByteArray reply = host.Await(good.size());
    ASSERT_EQ(reply.size(), good.size());
    int bits = 0;
    for (qsizetype i = 0; i < good.size(); ++i) {
        bits += qPopulationCount(static_cast<quint8>(reply.at(i) ^ good.at(i)));
    }
    EXPECT_EQ(bits, 1);
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, CanAnswerLate) {
    StartInLoader();
    Run("bootfault 1 delay 40");
    const TestHost host(sensor_->Path());
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(Send(host, version), versionReply);
    EXPECT_GE(elapsed.elapsed(), 40);
}

TEST_F(SimBootMode, CanBreakOffAReply) {
    StartInLoader();
    Run("bootfault 1 cut");
    const TestHost host(sensor_->Path());
    Tell(host, version);
    EXPECT_EQ(host.Await(4), BootFrame(versionReply).first(4));
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, CanHangUpAndIsThereAgain) {
    StartInLoader();
    Run("bootfault 1 unplug");
    {
        const TestHost host(sensor_->Path());
        host.Write(BootFrame(version));
        EXPECT_TRUE(WaitUntil([&] { return host.HangsUp(); }));
    }
    EXPECT_EQ(sensor_->Plug().toStdString(), "");
    const TestHost host(sensor_->Path());
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(Send(host, version), versionReply);
}

TEST_F(SimBootMode, CanHangUpAtARestart) {
    StartInLoader();
    sensor_->Memory().SetMark(0);
    Run("bootfault 1 unplug");
    const TestHost host(sensor_->Path());
    host.Write(BootFrame(restart));
    EXPECT_TRUE(WaitUntil([&] { return host.HangsUp(); }));
    EXPECT_FALSE(sensor_->InBootMode());
}

TEST_F(SimBootMode, HasTheFaultsOfTheLine) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    LineFaults &faults = sensor_->Faults();
    faults.mute = true;
    host.Write(BootFrame(runMode));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Stats().ignored == 1; }));
    EXPECT_EQ(sensor_->Memory().Mark(), 0xFF);
    faults.mute = false;

    faults.drop = 1;
    Tell(host, runMode);
    EXPECT_EQ(sensor_->Memory().Mark(), 0);
    faults.drop = 0;

    faults.corrupt = 1;
    host.Write(BootFrame(version));
    EXPECT_NE(host.Await(8), BootFrame(versionReply));
    faults.corrupt = 0;

    faults.latencyMs = 20;
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(Send(host, version), versionReply);
    EXPECT_GE(elapsed.elapsed(), 20);
}

TEST_F(SimBootMode, ForgetsHalfAFrameWhileItIsMute) {
    StartInLoader();
    const TestHost host(sensor_->Path());
    const QByteArray frame = BootFrame(version);
    sensor_->Faults().mute = true;
    host.Write(frame.first(3));
    ASSERT_TRUE(WaitUntil([this] { return sensor_->Stats().ignored == 1; }));
    sensor_->Faults().mute = false;
    host.Write(frame.sliced(3) + frame);
    EXPECT_EQ(Answer(host), versionReply);
    EXPECT_EQ(sensor_->Boot().Exchanges(), 1);
}

TEST_F(SimBootMode, TakesTheTimeOfTheLineWhenPaced) {
    options_.faults.pace = true;
    options_.baud = 2;
    options_.parity = 2;
    StartInLoader();
    const TestHost host(sensor_->Path(), B9600, PARENB);
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(Send(host, version), versionReply);
    // 6 characters and 8, 10 bits each.
    EXPECT_GE(elapsed.nsecsElapsed(), 14'583'000);
}

TEST_F(SimBootMode, RestartsWhenThePacedLineIsFree) {
    options_.faults.pace = true;
    StartInLoader();
    sensor_->Memory().SetMark(0);
    const TestHost host(sensor_->Path());
    host.Write(BootFrame(version) + BootFrame(restart));
    EXPECT_EQ(Answer(host), versionReply);
    EXPECT_TRUE(WaitUntil([this] { return !sensor_->InBootMode(); }));
}

TEST_F(SimBootMode, KeepsTheFlashFromRunToRun) {
    options_.flash = presets_.Folder() + "/flash";
    Start();
    EXPECT_EQ(QFile(options_.flash).size(), DeviceMemory::programSize);
    sensor_->Memory().Erase(DeviceMemory::applicationStart, 1);
    EXPECT_EQ(sensor_->SaveFlash().toStdString(), "");
    Start();
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(sensor_->Memory().Read(DeviceMemory::applicationStart, 64), QByteArray(64, '\xFF'));
}

TEST_F(SimBootMode, RefusesAFlashThatItCannotUse) {
    options_.flash = presets_.Path();
    EXPECT_TRUE(SimulatedSensor(options_).Start().contains("is no flash"));
    options_.flash = "/nowhere/flash";
    EXPECT_TRUE(SimulatedSensor(options_).Start().startsWith("/nowhere/flash: "));
    options_.flash.clear();
    Start();
    EXPECT_EQ(sensor_->SaveFlash().toStdString(), "");
}

} // namespace
} // namespace sim
