#include "sim/Commands.h"

#include "tests/sim/SensorFixture.h"

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

TEST_F(SimCommands, SwitchTheEcho) {
    EXPECT_EQ(Run("target 50"), "");
    EXPECT_EQ(Run("get 38"), "38 1");
    EXPECT_EQ(Run("echo off"), "");
    EXPECT_EQ(Run("get 38"), "38 0");
    EXPECT_EQ(Run("target 1"), "");
    EXPECT_EQ(Run("echo on"), "");
    EXPECT_EQ(Run("get 38"), "38 1");
    EXPECT_EQ(Run("echo auto"), "");
    EXPECT_EQ(Run("get 38"), "38 0");
}

TEST_F(SimCommands, ChangeTheFaultsOfTheLine) {
    for (const char *command :
         {"mute on", "pace on", "drop 0.5", "corrupt 0.25", "latency 30", "exception 4"}) {
        EXPECT_EQ(Run(command), "");
    }
    const LineFaults &faults = sensor_->Faults();
    EXPECT_TRUE(faults.mute);
    EXPECT_TRUE(faults.pace);
    EXPECT_EQ(faults.drop, 0.5);
    EXPECT_EQ(faults.corrupt, 0.25);
    EXPECT_EQ(faults.latencyMs, 30);
    EXPECT_EQ(faults.exception, 4);
    for (const char *command : {"mute x", "pace 1", "drop 2", "corrupt -1", "latency x", "exception 256",
                                "echo maybe", "target far"}) {
        EXPECT_TRUE(sensor_->Execute(command).startsWith("error: bad value ")) << command;
    }
    EXPECT_TRUE(faults.mute);
    EXPECT_EQ(faults.drop, 0.5);
    EXPECT_EQ(faults.latencyMs, 30);
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

TEST_F(SimCommands, PrintTheCounters) {
    EXPECT_EQ(Run("stats"), "requests 0 replies 0 exceptions 0 ignored 0 discarded 0");
}

} // namespace
} // namespace sim
