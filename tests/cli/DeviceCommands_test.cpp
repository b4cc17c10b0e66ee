#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/SharedLine.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

namespace ztv {

namespace {

const char *const question =
    "Are you sure? This will reset all parameters back to the factory default values.";
const char *const header = "parameter  name                        before      value       outcome\n";

} // namespace

class DeviceCommandsTest : public CommandsTest {
protected:
    // Runs `reinit` before a person who types the answer, and leaves what was printed in `printed_`.
    ExitStatus Reinit(const char *answer, std::vector<const char *> words) {
        std::FILE *input = std::tmpfile();
        std::FILE *printed = std::tmpfile();
        std::fputs(answer, input);
        std::rewind(input);
        const QByteArray device = device_.toLocal8Bit();
        words.insert(words.begin(), {"ztv-ctl", "--port", device.constData()});
        words.push_back("reinit");
        ExitStatus status = ExitStatus::Done;
        try {
            const auto arguments = ParseArguments(static_cast<int>(words.size()), words.data());
            status = RunCommand(arguments.value(),
                                {.settings = SettingsStore(QStringLiteral("ZTV Link")),
                                 .programFolder = ShippedPresetsFolder(),
                                 .results = printed,
                                 .console = {.input = input, .messages = printed, .someoneAnswers = true}});
        } catch (const Failure &failure) {
            Console({.messages = printed}, false).Fail(failure.Text());
            status = failure.Status();
        }
        std::rewind(printed);
        printed_.clear();
        for (int letter = std::fgetc(printed); letter != EOF; letter = std::fgetc(printed)) {
            printed_ += static_cast<char>(letter);
        }
        std::fclose(input);
        std::fclose(printed);
        return status;
    }

    std::string printed_;
};

// Store. --------------------------------------------------------------------------------------------

TEST_F(DeviceCommandsTest, StoreMakesTheSensorKeepItsSettings) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartAt(1, addressing);
        sensor.SetRegister(28, 1300);
        EXPECT_EQ(Ctl({"store"}), ExitStatus::Done);
        EXPECT_EQ(Results(), "address  serial  outcome\n1        10427   saved\n");
        EXPECT_EQ(Messages(), "");
        EXPECT_EQ(sensor.Writes(), (Writes{{1, 1}}));
        sensor.Reset();
        EXPECT_EQ(sensor.Register(28), 1300);
    }
}

TEST_F(DeviceCommandsTest, WithoutStoreTheSensorForgetsWhatWasSet) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "28=13"}), ExitStatus::Done);
    sensor.Reset();
    EXPECT_EQ(sensor.Register(28), 1200);
    EXPECT_EQ(Ctl({"set", "28=13"}), ExitStatus::Done);
    EXPECT_EQ(Ctl({"store"}), ExitStatus::Done);
    sensor.Reset();
    EXPECT_EQ(sensor.Register(28), 1300);
}

TEST_F(DeviceCommandsTest, StoreRepeatsWhatWasNotConfirmed) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        sensor.Faults().drop = IsWrite(request) && sensor.Writes().size() < 2 ? 1 : 0;
    });
    EXPECT_EQ(Ctl({"--timeout", "30", "store"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{1, 1}, {1, 1}, {1, 1}}));
}

TEST_F(DeviceCommandsTest, StoreIsNotDoneWithoutAConfirmation) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().drop = IsWrite(request) ? 1 : 0; });
    EXPECT_EQ(Ctl({"--timeout", "30", "store"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "");
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: no confirmation: it isn't known whether the sensor saved its "
                          "settings\n");
    EXPECT_EQ(sensor.Writes().size(), 3U);
}

TEST_F(DeviceCommandsTest, StoreThatTheSensorRefusesIsNotRepeated) {
    sim::SimulatedSensor &sensor = StartSensor();
    int writes = 0;
    sensor.OnRequest([&](const QByteArray &request) {
        sensor.Faults().exception = IsWrite(request) ? 3 : 0;
        writes += IsWrite(request) ? 1 : 0;
    });
    EXPECT_EQ(Ctl({"store"}), ExitStatus::Refused);
    EXPECT_EQ(Messages(),
              "ztv-ctl: address 1: Slave Device Failure: the sensor refuses to save its settings\n");
    EXPECT_EQ(writes, 1);
}

TEST_F(DeviceCommandsTest, StoreGoesOnAfterASensorThatFails) {
    SharedLine line;
    for (const int address : {3, 5}) {
        line.Join(StartAt(address, address == 3 ? 0 : 1));
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3-5", "--timeout", "50", "--format", "csv", "store"}),
              ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "address,serial,outcome\n3,10427,saved\n5,10427,saved\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 4: Timeout\n");
    for (const auto &sensor : sensors_) {
        EXPECT_EQ(sensor->Writes(), (Writes{{1, 1}}));
    }
}

TEST_F(DeviceCommandsTest, ADryRunOfStoreWritesNothing) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"store", "--dry-run", "--format", "json"}), ExitStatus::Done);
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).array();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).toObject(),
              (QJsonObject{{QStringLiteral("address"), 1},
                           {QStringLiteral("serial"), 10427},
                           {QStringLiteral("outcome"), QStringLiteral("would be saved")}}));
    EXPECT_EQ(Messages(), "ztv-ctl: Nothing was written\n");
    EXPECT_FALSE(sensor.Requests().empty());
    EXPECT_TRUE(std::ranges::none_of(sensor.Requests(), IsWrite));
}

// Reinit. -------------------------------------------------------------------------------------------

TEST_F(DeviceCommandsTest, ReinitRestoresThePresetsAndSaysWhatChanged) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartAt(1, addressing);
        sensor.SetRegister(26, -150);
        sensor.SetRegister(28, 1300);
        sensor.SetRegister(95, 65535);
        EXPECT_EQ(Ctl({"reinit", "--yes"}), ExitStatus::Done);
        EXPECT_EQ(Results(), std::string(header) +
                                 "26         Distance Offset             -1.50\"      0.00\"       reset\n"
                                 "28         Near Distance               13.00\"      12.00\"      reset\n"
                                 "95         User Number                 65535       0           reset\n");
        EXPECT_EQ(Messages(), "ztv-ctl: address 1: settings that differ from their presets: 3\n");
        EXPECT_EQ(sensor.Writes(), (Writes{{3, 1}})) << addressing;
        EXPECT_EQ(sensor.Register(28), 1200);
        EXPECT_EQ(sensor.Line().addressing, addressing);
    }
}

TEST_F(DeviceCommandsTest, ReinitAsksBeforeItWrites) {
    sim::SimulatedSensor &sensor = StartAt(4);
    sensor.SetRegister(28, 1300);
    EXPECT_EQ(Reinit("n\n", {"--address", "4"}), ExitStatus::Refused);
    EXPECT_NE(printed_.find("Address 4: " + std::string(question) + " [y/N] "), std::string::npos)
        << printed_;
    EXPECT_NE(printed_.find("ztv-ctl: Nothing was written\n"), std::string::npos);
    EXPECT_EQ(sensor.Register(28), 1300);
    EXPECT_TRUE(sensor.Writes().empty());
    EXPECT_EQ(printed_.find("parameter  name"), std::string::npos) << "results follow the question";
    EXPECT_EQ(Reinit("y\n", {"--address", "4"}), ExitStatus::Done);
    EXPECT_LT(printed_.find(question), printed_.find("parameter  name"));
    EXPECT_EQ(sensor.Register(28), 1200);
}

TEST_F(DeviceCommandsTest, ReinitNeedsYesWhereNobodyAnswers) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"--quiet", "reinit"}), ExitStatus::WrongUse);
    EXPECT_EQ(Messages(), "ztv-ctl: Address 1: " + std::string(question) +
                              " Nobody can answer here; give --yes to go on\n");
    EXPECT_TRUE(sensor.Writes().empty());
}

TEST_F(DeviceCommandsTest, ReinitAsksOnceForAllSensorsBeforeTheFirstWrite) {
    SharedLine line;
    for (const int address : {3, 5, 6}) {
        line.Join(StartAt(address, address % 2));
        sensors_.back()->SetRegister(28, 1000 + address);
    }
    device_ = line.Path();
    EXPECT_EQ(Reinit("n\n", {"--address", "3-6", "--timeout", "50"}), ExitStatus::Refused);
    EXPECT_NE(printed_.find("Addresses 3, 5, 6: " + std::string(question)), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("ztv-ctl: address 4: Timeout\n"), std::string::npos);
    for (const auto &sensor : sensors_) {
        EXPECT_TRUE(sensor->Writes().empty());
    }
    EXPECT_EQ(Reinit("yes\n", {"--address", "3-6", "--timeout", "50"}), ExitStatus::NoConnection);
    EXPECT_EQ(printed_.find("address 4"), printed_.rfind("address 4")) << "asked for once";
    for (const auto &sensor : sensors_) {
        EXPECT_EQ(sensor->Writes(), (Writes{{3, 1}}));
        EXPECT_EQ(sensor->Register(28), 1200);
    }
}

TEST_F(DeviceCommandsTest, ADryRunOfReinitListsWhatWouldChange) {
    sim::SimulatedSensor &sensor = StartAt(7);
    sensor.SetRegister(28, 1300);
    EXPECT_EQ(Ctl({"--address", "7", "reinit", "--dry-run"}), ExitStatus::Done);
    EXPECT_EQ(Results(),
              std::string(header) +
                  "28         Near Distance               13.00\"      12.00\"      would be reset\n"
                  "65         Network Address             7           1           would be reset\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 7: settings that differ from their presets: 2\n"
                          "ztv-ctl: Nothing was written\n");
    EXPECT_TRUE(std::ranges::none_of(sensor.Requests(), IsWrite));
    EXPECT_EQ(Ctl({"--address", "7", "--format", "csv", "reinit", "--dry-run"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address,parameter,name,before,value,raw,outcome\n"
                         "7,28,Near Distance,\"13.00\"\"\",\"12.00\"\"\",1200,would be reset\n"
                         "7,65,Network Address,7,1,1,would be reset\n");
}

TEST_F(DeviceCommandsTest, ALostConfirmationOfReinitIsSettledByReadingBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.SetRegister(28, 1300);
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().drop = IsWrite(request) ? 1 : 0; });
    EXPECT_EQ(Ctl({"--timeout", "30", "reinit", "--yes"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{3, 1}})) << "a command acts each time";
    EXPECT_EQ(sensor.Register(28), 1200);
}

TEST_F(DeviceCommandsTest, AReinitThatTheSensorDidNotHearIsNotDone) {
    sim::SimulatedSensor &sensor = StartSensor();
    for (const int tag : {28, 29, 95, 56, 57}) {
        sensor.SetRegister(tag, 20000);
    }
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().mute = IsWrite(request); });
    EXPECT_EQ(Ctl({"--timeout", "30", "--quiet", "reinit", "--yes"}), ExitStatus::Refused);
    EXPECT_EQ(Results(), "");
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: no confirmation, and these don't hold their presets: \"Near "
                          "Distance\" (200.00\"), \"Far Distance\" (200.00\"), \"Relay 1 On Threshold\" "
                          "(200.00\") and 2 more\n");
    EXPECT_TRUE(sensor.Writes().empty());
}

TEST_F(DeviceCommandsTest, ASettingThatKeepsItsValueIsNamed) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.SetRegister(28, 1300);
    sensor.SetRegister(95, 7);
    sensor.OnRequest([&](const QByteArray &request) {
        if (!IsWrite(request) && !sensor.Writes().empty()) {
            sensor.SetRegister(28, 1300);
        }
    });
    EXPECT_EQ(Ctl({"--quiet", "--format", "csv", "reinit", "--yes"}), ExitStatus::Refused);
    EXPECT_EQ(Results(), "address,parameter,name,before,value,raw,outcome\n1,95,User Number,7,0,0,reset\n");
    EXPECT_EQ(Messages(),
              "ztv-ctl: address 1: these don't hold their presets: \"Near Distance\" (13.00\")\n");
}

TEST_F(DeviceCommandsTest, ASensorThatIsLostAfterReinitLeavesOpenWhatItHolds) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().mute |= IsWrite(request); });
    EXPECT_EQ(Ctl({"--timeout", "30", "--quiet", "reinit", "--yes"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(),
              "ztv-ctl: address 1: it can't be read back, so it isn't known whether the sensor was "
              "re-initialized\n");
}

TEST_F(DeviceCommandsTest, ARefusedReinitIsRefused) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest(
        [&](const QByteArray &request) { sensor.Faults().exception = IsWrite(request) ? 4 : 0; });
    EXPECT_EQ(Ctl({"--quiet", "reinit", "--yes"}), ExitStatus::Refused);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: Acknowledge: the sensor refuses to be re-initialized\n");
}

TEST_F(DeviceCommandsTest, ASensorThatStaysOnItsLineIsReadThere) {
    sim::SensorOptions options;
    options.address = 9;
    options.baud = 2;
    options.parity = 2;
    sim::SimulatedSensor &sensor = StartSensor(options);
    sensor.SetRegister(28, 1300);
    EXPECT_EQ(
        Ctl({"--address", "9", "--baud", "9600", "--parity", "E1", "--timeout", "100", "reinit", "--yes"}),
        ExitStatus::Done);
    EXPECT_EQ(sensor.Register(28), 1200);
    EXPECT_EQ(Messages(), "ztv-ctl: address 9: settings that differ from their presets: 4\n"
                          "ztv-ctl: address 9: the sensor still answers there; after its next restart it may "
                          "answer at address 1, 38400 N2\n");
}

TEST_F(DeviceCommandsTest, ASensorThatReturnsToItsPresetsLineIsFoundThere) {
    sim::SensorOptions options;
    options.address = 9;
    options.baud = 2;
    options.parity = 2;
    sim::SimulatedSensor &sensor = StartSensor(options);
    sensor.SetRegister(28, 1300);
    sensor.OnRequest([&](const QByteArray &request) {
        if (!IsWrite(request) && !sensor.Writes().empty() && sensor.Line().address == 9) {
            sensor.Reset();
        }
    });
    EXPECT_EQ(
        Ctl({"--address", "9", "--baud", "9600", "--parity", "E1", "--timeout", "100", "reinit", "--yes"}),
        ExitStatus::Done);
    EXPECT_EQ(Messages(), "ztv-ctl: address 9: settings that differ from their presets: 4\n"
                          "ztv-ctl: address 9: the sensor now answers at address 1, 38400 N2\n");
    const std::string printed = Results();
    EXPECT_NE(printed.find("65         Network Address             9           1           reset\n"),
              std::string::npos)
        << printed;
}

TEST_F(DeviceCommandsTest, AnotherSensorAtThePresetsAddressIsNotTakenForTheOneThatIsLost) {
    SharedLine line;
    for (const int address : {9, 1}) {
        line.Join(StartAt(address));
    }
    device_ = line.Path();
    sim::SimulatedSensor &sensor = *sensors_.front();
    sensors_.back()->SetRegister(2, 555);
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().mute |= IsWrite(request); });
    EXPECT_EQ(Ctl({"--address", "9", "--timeout", "50", "--quiet", "reinit", "--yes"}),
              ExitStatus::NoConnection);
    EXPECT_EQ(Messages(),
              "ztv-ctl: address 9: it can't be read back, so it isn't known whether the sensor was "
              "re-initialized\n");
}

// Signals. ------------------------------------------------------------------------------------------

class DeviceSignalTest : public CtlProgramTest {
protected:
    // Ends the program by a signal as soon as it writes.
    int ShellInterrupted(const std::string &command) {
        const QString pidFile = folder_.filePath(QStringLiteral("pid"));
        sensor_->OnRequest([this, pidFile](const QByteArray &request) {
            QFile file(pidFile);
            if (request.at(1) == 6 && file.open(QIODevice::ReadOnly)) {
                sensor_->Faults().drop = 1;
                kill(file.readAll().trimmed().toInt(), SIGTERM);
            }
        });
        return Shell(("echo $$ > $XDG_CONFIG_HOME/pid; exec $ctl --quiet --timeout 500 " + command).c_str());
    }
};

TEST_F(DeviceSignalTest, StoreSaysThatItIsNotKnown) {
    EXPECT_EQ(ShellInterrupted("store"), 128 + SIGTERM);
    EXPECT_EQ(messages_,
              "ztv-ctl: address 1: interrupted: it isn't known whether the sensor saved its settings\n");
    EXPECT_EQ(sensor_->Writes().size(), 1U);
}

TEST_F(DeviceSignalTest, ReinitSaysThatItWasNotReadBack) {
    EXPECT_EQ(ShellInterrupted("reinit --yes"), 128 + SIGTERM);
    EXPECT_EQ(messages_, "ztv-ctl: address 1: interrupted before the settings were read back\n");
    EXPECT_EQ(sensor_->Writes(), (Writes{{3, 1}}));
}

} // namespace ztv
