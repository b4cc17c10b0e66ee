#include "sim/Commands.h"

#include "sim/BootLoader.h"
#include "sim/DeviceMemory.h"
#include "tests/sim/SensorFixture.h"

#include <QFile>

namespace sim {
namespace {

class SimCommands : public test::SensorFixture {
protected:
    void SetUp() override { Start(); }
};

TEST_F(SimCommands, SetAndGetParameters) {
    EXPECT_EQ(Run("set 40 1024"), "");
    EXPECT_EQ(Run("  get   40 "), "40 1024");
    EXPECT_EQ(Run("set 8 300"), "");
    EXPECT_EQ(Run("get 8"), "8 300");
    EXPECT_EQ(Run("set 81 -16"), "");
    EXPECT_EQ(Run("get 81"), "81 -16");
    EXPECT_EQ(Run(""), "");
}

TEST_F(SimCommands, RefuseWhatCannotBeSet) {
    EXPECT_EQ(Run("set 0 1"), "error: no parameter 0");
    EXPECT_EQ(Run("set 91 1"), "error: no parameter 91");
    EXPECT_EQ(Run("get x"), "error: no parameter x");
    EXPECT_EQ(Run("set 40 -1"), "error: bad value -1");
    EXPECT_EQ(Run("set 40 65536"), "error: bad value 65536");
    EXPECT_EQ(Run("set 40 auto"), "error: bad value auto");
    EXPECT_EQ(Run("set 66 5"), "error: bad value 5");
    EXPECT_EQ(Run("set 3 2"), "error: bad value 2");
    EXPECT_EQ(Run("get 40"), "40 0");
}

TEST_F(SimCommands, HoldAndReleaseMeasurements) {
    EXPECT_EQ(Run("set 32 1500"), "");
    EXPECT_EQ(Run("get 32"), "32 1500");
    EXPECT_EQ(Run("target auto"), "");
    EXPECT_NE(Run("get 32"), "32 1500");
    EXPECT_EQ(Run("target 15.5"), "");
    EXPECT_EQ(Run("get 32"), "32 1550");
    EXPECT_EQ(Run("set 46 777"), "");
    EXPECT_EQ(Run("get 46"), "46 777");
    EXPECT_EQ(Run("set 46 auto"), "");
    EXPECT_EQ(Run("get 46"), "46 0");
    EXPECT_EQ(Run("set 18 1"), "");
    EXPECT_EQ(Run("get 18"), "18 1");
}

TEST_F(SimCommands, SwitchTheEchoOfTheTarget) {
    EXPECT_EQ(Run("target 50"), "");
    EXPECT_EQ(Run("get 38"), "38 1");
    EXPECT_EQ(Run("set 38 0"), "");
    EXPECT_EQ(Run("get 38"), "38 0");
    EXPECT_EQ(Run("target 1"), "");
    EXPECT_EQ(Run("set 38 1"), "");
    EXPECT_EQ(Run("get 38"), "38 1");
    EXPECT_EQ(Run("set 38 auto"), "");
    EXPECT_EQ(Run("get 38"), "38 0");
}

TEST_F(SimCommands, ChangeTheFaultsOfTheLine) {
    for (const char *command :
         {"mute on", "pace on", "echo on", "drop 0.5", "corrupt 0.25", "latency 30", "exception 4"}) {
        EXPECT_EQ(Run(command), "");
    }
    const LineFaults &faults = sensor_->Faults();
    EXPECT_TRUE(faults.mute);
    EXPECT_TRUE(faults.pace);
    EXPECT_TRUE(faults.echo);
    EXPECT_EQ(faults.drop, 0.5);
    EXPECT_EQ(faults.corrupt, 0.25);
    EXPECT_EQ(faults.latencyMs, 30);
    EXPECT_EQ(faults.exception, 4);
    for (const char *command : {"mute x", "pace 1", "drop 2", "corrupt -1", "latency x", "exception 256",
                                "echo auto", "target far"}) {
        EXPECT_TRUE(sensor_->Execute(command).startsWith("error: bad value ")) << command;
    }
    EXPECT_TRUE(faults.mute);
    EXPECT_TRUE(faults.echo);
    EXPECT_EQ(faults.drop, 0.5);
    EXPECT_EQ(faults.latencyMs, 30);
    EXPECT_EQ(Run("echo off"), "");
    EXPECT_FALSE(faults.echo);
}

TEST_F(SimCommands, ChangeTheLine) {
    for (const char *command : {"baud 9600", "parity O1", "address 9", "addressing 0"}) {
        EXPECT_EQ(Run(command), "");
    }
    EXPECT_EQ(sensor_->Line().baud, 2);
    EXPECT_EQ(sensor_->Line().parity, 3);
    EXPECT_EQ(sensor_->Line().address, 9);
    EXPECT_EQ(sensor_->Line().addressing, 0);
    EXPECT_EQ(Run("get 66"), "66 2");
    for (const char *command : {"baud 1", "parity X", "address 0", "addressing 2"}) {
        EXPECT_TRUE(sensor_->Execute(command).startsWith("error: bad value ")) << command;
    }
    EXPECT_EQ(sensor_->Line().address, 9);
}

TEST_F(SimCommands, RefuseUnknownCommandsAndWrongCounts) {
    EXPECT_EQ(Run("bogus"), "error: unknown command bogus");
    EXPECT_EQ(Run("get"), "error: usage: get N");
    EXPECT_EQ(Run("set 1"), "error: usage: set N V|auto");
    EXPECT_EQ(Run("reset now"), "error: usage: reset");
    EXPECT_EQ(Run("mark 1 2"), "error: usage: mark [V]");
    EXPECT_EQ(Run("bootfault 1"), "error: usage: bootfault N drop|deaf|corrupt|cut|unplug|delay [MS]");
    EXPECT_EQ(Run("bootfault 1 delay 5 5"),
              "error: usage: bootfault N drop|deaf|corrupt|cut|unplug|delay [MS]");
}

TEST_F(SimCommands, ExplainThemselves) {
    const QString help = sensor_->Execute("help");
    EXPECT_TRUE(help.contains("set N V|auto: "));
    EXPECT_TRUE(help.contains("\nquit: "));
    EXPECT_EQ(Run("quit"), "");
}

TEST_F(SimCommands, PlugTheLine) {
    EXPECT_EQ(Run("unplug"), "");
    EXPECT_TRUE(sensor_->Path().isEmpty());
    const std::string printed = Run("plug");
    EXPECT_EQ(printed, "port " + sensor_->Path().toStdString());
    EXPECT_TRUE(sensor_->Path().startsWith("/dev/pts/"));
}

TEST_F(SimCommands, RestoreTheSavedSettingsAtAReset) {
    EXPECT_EQ(Run("set 40 7"), "");
    EXPECT_EQ(Run("set 1 1"), "");
    EXPECT_EQ(Run("set 40 8"), "");
    EXPECT_EQ(Run("reset"), "");
    EXPECT_EQ(Run("get 40"), "40 7");
}

TEST_F(SimCommands, SetTheBootMark) {
    EXPECT_EQ(Run("mark"), "mark 0");
    EXPECT_EQ(Run("mark 85"), "");
    EXPECT_EQ(Run("mark"), "mark 85");
    EXPECT_EQ(Run("mark 256"), "error: bad value 256");
    EXPECT_FALSE(sensor_->InBootMode());
    EXPECT_EQ(Run("reset"), "");
    EXPECT_TRUE(sensor_->InBootMode());
    EXPECT_EQ(Run("stats"), "requests 0 replies 0 exceptions 0 ignored 0 discarded 0 boot on exchanges 0");
    EXPECT_EQ(Run("mark 0"), "");
    EXPECT_EQ(Run("reset"), "");
    EXPECT_FALSE(sensor_->InBootMode());
}

TEST_F(SimCommands, ShowTheMemory) {
    EXPECT_EQ(Run("peek 0x800"), "000800 80 EF 04 F0 FF FF FF FF 10 00 FF FF FF FF FF FF");
    EXPECT_EQ(Run("peek 2048"), Run("peek 0X800"));
    EXPECT_EQ(Run("peek 0x200000"), "200000 5A 54 56 35 30 30 2D 31 FF FF FF FF FF FF FF FF");
    EXPECT_EQ(Run("peek 0xFFFFFF"), "FFFFFF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF");
    for (const char *command : {"peek 0x1000000", "peek -1", "peek 800h", "peek 0x"}) {
        EXPECT_TRUE(sensor_->Execute(command).startsWith("error: bad value ")) << command;
    }
}

TEST_F(SimCommands, DumpTheFlash) {
    const QString path = presets_.Folder() + "/dump";
    EXPECT_EQ(sensor_->Execute("dump " + path).toStdString(), "");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), sensor_->Memory().Read(0, DeviceMemory::programSize));
    EXPECT_TRUE(sensor_->Execute("dump /nowhere/dump").startsWith("error: /nowhere/dump: "));
}

TEST_F(SimCommands, ScheduleBootFaults) {
    for (const char *command : {"bootfault 1 drop", "bootfault 2 deaf", "bootfault 3 corrupt",
                                "bootfault 4 cut", "bootfault 5 unplug", "bootfault 6 delay 30"}) {
        EXPECT_EQ(Run(command), "") << command;
    }
    for (const BootFault::Kind kind : {BootFault::Drop, BootFault::Deaf, BootFault::Corrupt, BootFault::Cut,
                                       BootFault::Unplug, BootFault::Delay, BootFault::None}) {
        const std::vector<BootExchange> exchanges = sensor_->Boot().Receive(BootFrame(test::Hex("0002")));
        ASSERT_EQ(exchanges.size(), 1u);
        EXPECT_EQ(exchanges.front().fault.kind, kind);
        EXPECT_EQ(exchanges.front().fault.delayMs, kind == BootFault::Delay ? 30 : 0);
    }
    EXPECT_EQ(Run("bootfault 8 drop"), "");
    EXPECT_EQ(Run("bootclear"), "");
    EXPECT_EQ(sensor_->Boot().Exchanges(), 0);
}

TEST_F(SimCommands, RefuseBootFaultsThatThereAreNot) {
    for (const char *command : {"bootfault 0 drop", "bootfault x drop", "bootfault 1 explode",
                                "bootfault 1 none", "bootfault 1 delay -1", "bootfault 1 delay 60001"}) {
        EXPECT_TRUE(sensor_->Execute(command).startsWith("error: bad value ")) << command;
    }
    EXPECT_EQ(Run("bootfault 1 delay"), "error: delay takes MS, the others don't");
    EXPECT_EQ(Run("bootfault 1 drop 5"), "error: delay takes MS, the others don't");
}

TEST_F(SimCommands, PrintTheCounters) {
    EXPECT_EQ(Run("stats"), "requests 0 replies 0 exceptions 0 ignored 0 discarded 0 boot off exchanges 0");
}

} // namespace
} // namespace sim
