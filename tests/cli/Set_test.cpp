#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/ModbusServer.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/SharedLine.h"
#include "tests/soak/FaultyLine.h"
#include "tests/soak/LineFault.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

namespace ztv {

namespace {

const char *const remark = "ztv-ctl: A sensor keeps new values only until it loses power; \"ztv-ctl "
                           "store\" saves them\n";

} // namespace

class SetTest : public CommandsTest {
protected:
    // Expects a line and no write.
    void ExpectRefused(const std::vector<const char *> &words, ExitStatus status, const std::string &line) {
        EXPECT_EQ(Ctl(words), status) << line;
        EXPECT_EQ(Messages(), "ztv-ctl: " + line + "\n");
        Results();
        EXPECT_TRUE(sensors_.back()->Writes().empty()) << line;
    }
};

// Writes. -------------------------------------------------------------------------------------------

TEST_F(SetTest, WritesReadsBackAndSaysWhatTheSensorHolds) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartAt(1, addressing);
        EXPECT_EQ(Ctl({"set", "near distance=13", "29=350\""}), ExitStatus::Done);
        EXPECT_EQ(Results(), "parameter  name           before      value       outcome\n"
                             "28         Near Distance  12.00\"      13.00\"      written\n"
                             "29         Far Distance   360.00\"     350.00\"     written\n");
        EXPECT_EQ(Messages(), remark);
        EXPECT_EQ(sensor.Writes(), (Writes{{28, 1300}, {29, 35000}})) << addressing;
        EXPECT_EQ(sensor.Register(28), 1300);
        EXPECT_EQ(sensor.Register(29), 35000);
        const std::vector<QByteArray> requests = sensor.Requests();
        const auto lastWrite = std::find_if(requests.rbegin(), requests.rend(), IsWrite);
        EXPECT_NE(lastWrite, requests.rbegin()) << "it read back";
    }
}

TEST_F(SetTest, WritesNegativeValuesAndThoseAbove32767) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartAt(1, addressing);
        EXPECT_EQ(Ctl({"--format", "csv", "set", "Distance Offset=-1.5", "User Number=65535", "29=400",
                       "71=-0.1", "22=32768"}),
                  ExitStatus::Done);
        EXPECT_EQ(Results(), "address,parameter,name,before,value,raw,outcome\n"
                             "1,26,Distance Offset,\"0.00\"\"\",\"-1.50\"\"\",-150,written\n"
                             "1,95,User Number,0,65535,65535,written\n"
                             "1,29,Far Distance,\"360.00\"\"\",\"400.00\"\"\",40000,written\n"
                             "1,71,Temperature Offset (Deg F),0.0,-0.1,-1,written\n"
                             "1,22,Transmit Delay High,0,32768,32768,written\n");
        EXPECT_EQ(sensor.Writes(), (Writes{{26, -150}, {95, 65535}, {29, 40000}, {71, -1}, {22, 32768}}));
    }
}

TEST_F(SetTest, TakesTheTextOrTheNumberOfAValueThatIsShownAsAText) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "Clock Select=external", "39=2", "43= fixed  output ", "23=1"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{20, 1}, {39, 2}, {43, 3}, {23, 1}}));
    EXPECT_NE(Results().find("39         Analog Output Mode  Linear      Hyperbolic  written\n"),
              std::string::npos);
}

TEST_F(SetTest, SplitsAtTheFirstEqualsSign) {
    StartSensor();
    ExpectRefused({"set", "28=1=3"}, ExitStatus::Refused,
                  "address 1: Near Distance: Please enter a value between 6.00\" and 420.00\"");
}

TEST_F(SetTest, LeavesAValueThatTheSensorHolds) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "28=12", "29=350"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "parameter  name           before      value       outcome\n"
                         "28         Near Distance  12.00\"      12.00\"      held\n"
                         "29         Far Distance   360.00\"     350.00\"     written\n");
    EXPECT_EQ(sensor.Writes(), (Writes{{29, 35000}}));
    Messages();
    EXPECT_EQ(Ctl({"set", "28=12", "29=350"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes().size(), 1U);
    EXPECT_EQ(Messages(), "") << "nothing was written, so nothing can be lost";
}

TEST_F(SetTest, DragsTheNearDistanceAfterTheFarOneInTheHyperbolicMode) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "39=Hyperbolic", "29=300", "95=7"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{39, 2}, {29, 30000}, {28, 28950}, {95, 7}}));
    const std::string printed = Results();
    EXPECT_NE(printed.find("29         Far Distance        360.00\"     300.00\"     written\n"
                           "28         Near Distance       12.00\"      289.50\"     written\n"),
              std::string::npos)
        << printed;
    Messages();
    sensor.ClearRecords();
    EXPECT_EQ(Ctl({"set", "29=100"}), ExitStatus::Done) << "a far distance below the near one";
    EXPECT_EQ(sensor.Writes(), (Writes{{29, 10000}, {28, 8950}}));
    sensor.ClearRecords();
    Messages();
    ExpectRefused({"set", "29=12"}, ExitStatus::Refused,
                  "address 1: Far Distance: \"Near Distance\" would follow to 1.50\", but must be between "
                  "6.00\" and 420.00\"");
}

TEST_F(SetTest, KeepsToTheOrderTyped) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "29=350", "28=100", "25=350", "24=90"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{29, 35000}, {28, 10000}, {25, 35000}, {24, 9000}}));
}

// Refusals. -----------------------------------------------------------------------------------------

TEST_F(SetTest, WrongUseReachesNoSensor) {
    const sim::SimulatedSensor &sensor = StartSensor();
    const std::vector<std::pair<std::vector<const char *>, std::string>> wrong = {
        {{"set", "28"}, "\"28\" assigns nothing; write PARAMETER=VALUE, such as \"Near Distance=12.5\""},
        {{"set", "29=300", "Near Distanze=13"},
         "There is no parameter \"Near Distanze\": did you mean \"Near Distance\"?"},
        {{"set", "=13"}, "There is no parameter \"\"; \"ztv-ctl parameters\" lists them"},
        {{"set", "96=1"}, "There is no parameter 96; they are 1 to 95"},
        {{"set", "28=13", "near d=14"}, "\"Near Distance\" is given twice; give it one value"},
        {{"set", "1=1"}, "\"Save Command\" is a command: use \"ztv-ctl store\""},
        {{"set", "Re-Init=1"}, "\"Re-Initialize Command\" is a command: use \"ztv-ctl reinit\""},
        {{"--address", "1,2", "set", "28=13", "65=5"},
         "Several sensors can't have the same address; name one with --address"},
        {{"set", "32=5", "nothing=1"},
         "There is no parameter \"nothing\"; \"ztv-ctl parameters\" lists them"},
    };
    for (const auto &[words, line] : wrong) {
        ExpectRefused(words, ExitStatus::WrongUse, line);
    }
    EXPECT_TRUE(sensor.Requests().empty());
}

TEST_F(SetTest, ARowOrATextThatCannotBeReachesNoSensor) {
    const sim::SimulatedSensor &sensor = StartSensor();
    ExpectRefused({"set", "28=13", "Actual Distance=5"}, ExitStatus::Refused,
                  "\"Actual Distance\" can only be read");
    ExpectRefused({"set", "20=Extrenal"}, ExitStatus::Refused,
                  "Clock Select: \"Extrenal\" is no value: did you mean \"External\"?");
    for (const char *word : {"20=2", "20=-1", "20=1.0", "20=", "20=on"}) {
        ExpectRefused({"set", word}, ExitStatus::Refused,
                      "Clock Select: \"" + std::string(word).substr(3) +
                          "\" is no value: use one of Internal, External");
    }
    EXPECT_TRUE(sensor.Requests().empty());
}

TEST_F(SetTest, ChecksAllBesideThePresentValuesBeforeTheFirstWrite) {
    sim::SimulatedSensor &sensor = StartSensor();
    ExpectRefused({"set", "95=1", "28=5.99"}, ExitStatus::Refused,
                  "address 1: Near Distance: Please enter a value between 6.00\" and 420.00\"");
    ExpectRefused({"set", "95=1", "28=abc"}, ExitStatus::Refused,
                  "address 1: Near Distance: Please enter a value between 6.00\" and 420.00\"");
    ExpectRefused({"set", "95=1", "28=361"}, ExitStatus::Refused,
                  "address 1: Near Distance: The Near Distance must be less than the Far Distance.");
    ExpectRefused({"set", "95=1", "24=11"}, ExitStatus::Refused,
                  "address 1: Min Range: The Min Range must be at least 1.06\" less than the Near Distance "
                  "value. Please enter a value of 10.94\" or lesser for Min Range or increase the Near "
                  "Distance value.");
    sensor.SetRegister(29, 20000);
    ExpectRefused({"set", "28=201"}, ExitStatus::Refused,
                  "address 1: Near Distance: The Near Distance must be less than the Far Distance.");
}

TEST_F(SetTest, ChecksEachBesideTheOnesBeforeIt) {
    sim::SimulatedSensor &sensor = StartSensor();
    ExpectRefused({"set", "28=361", "29=400"}, ExitStatus::Refused,
                  "address 1: Near Distance: The Near Distance must be less than the Far Distance.");
    EXPECT_EQ(Ctl({"set", "29=400", "28=361"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{29, 40000}, {28, 36100}}));
    sensor.ClearRecords();
    Messages();
    ExpectRefused({"set", "28=100", "29=90"}, ExitStatus::Refused,
                  "address 1: Far Distance: The Far Distance must be greater than the Near Distance.");
}

TEST_F(SetTest, ARefusalOfTheSensorNamesTheValueAndWhatWasWrittenBefore) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        sensor.Faults().exception = IsWrite(request) && request.at(3) == 28 ? 3 : 0; // row 29
    });
    EXPECT_EQ(Ctl({"set", "28=13", "29=350", "95=1"}), ExitStatus::Refused);
    EXPECT_EQ(
        Messages(),
        "ztv-ctl: address 1: Slave Device Failure: the sensor refuses 350.00\" for \"Far "
        "Distance\"; confirmed, but not read back: \"Near Distance\"; not written: \"Far Distance\", \"User "
        "Number\"\n" +
            std::string(remark));
    EXPECT_EQ(Results(), "");
    EXPECT_EQ(sensor.Register(28), 1300);
    EXPECT_EQ(sensor.Register(95), 0);
    sensor.OnRequest(
        [&](const QByteArray &request) { sensor.Faults().exception = IsWrite(request) ? 3 : 0; });
    EXPECT_EQ(Ctl({"set", "29=350"}), ExitStatus::Refused);
    EXPECT_EQ(Messages().find("store"), std::string::npos) << "nothing was written";
}

TEST_F(SetTest, AValueThatTheSensorConfirmsButDoesNotHoldIsNoWrite) {
    sim::SimulatedSensor &sensor = StartSensor();
    bool isWritten = false;
    sensor.OnRequest([&](const QByteArray &request) {
        if (!IsWrite(request) && isWritten) {
            sensor.SetRegister(28, 1250);
        }
        isWritten = isWritten || IsWrite(request);
    });
    EXPECT_EQ(Ctl({"--format", "csv", "set", "28=13", "29=350"}), ExitStatus::Refused);
    EXPECT_EQ(Results(), "address,parameter,name,before,value,raw,outcome\n"
                         "1,29,Far Distance,\"360.00\"\"\",\"350.00\"\"\",35000,written\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: \"Near Distance\" holds 12.50\", not 13.00\" as asked\n" +
                              std::string(remark));
}

// Lost confirmations. -------------------------------------------------------------------------------

TEST_F(SetTest, ALostConfirmationIsSettledByReadingBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().drop = IsWrite(request) ? 1 : 0; });
    EXPECT_EQ(Ctl({"--timeout", "30", "set", "28=13", "29=350"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Register(28), 1300);
    EXPECT_EQ(sensor.Register(29), 35000);
}

TEST_F(SetTest, ALostRequestIsSettledByReadingBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().mute = IsWrite(request); });
    EXPECT_EQ(Ctl({"--timeout", "30", "set", "28=13", "29=350"}), ExitStatus::Refused);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: \"Near Distance\" holds 12.00\", not 13.00\" as asked; not "
                          "written: \"Near Distance\", \"Far Distance\"\n");
}

TEST_F(SetTest, ALostSensorLeavesOpenWhatItHolds) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().mute |= IsWrite(request); });
    EXPECT_EQ(Ctl({"--timeout", "30", "set", "28=13", "29=350"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: it can't be read back, so it isn't known whether \"Near "
                          "Distance\" was written; not known: \"Near Distance\"; not written: \"Far "
                          "Distance\"\n" +
                              std::string(remark));
    EXPECT_EQ(Results(), "");
}

TEST_F(SetTest, ALineThatBreaksAfterTheWritesLeavesOpenWhatTheSensorHolds) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        sensor.Faults().mute = !IsWrite(request) && !sensor.Writes().empty();
    });
    EXPECT_EQ(Ctl({"--timeout", "30", "set", "28=13", "29=350"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: it can't be read back, so it isn't known whether \"Near "
                          "Distance\", \"Far Distance\" were written\n" +
                              std::string(remark));
}

// The line's own settings. --------------------------------------------------------------------------

TEST_F(SetTest, FollowsASensorThatMoves) {
    for (const int addressing : {0, 1}) {
        for (const int baud : {4, 2, 0}) {
            sim::SensorOptions options;
            options.address = 9;
            options.addressing = addressing;
            options.baud = baud;
            options.parity = 2;
            sim::SimulatedSensor &sensor = StartSensor(options);
            const char *rate = baud == 4 ? "38400" : baud == 2 ? "9600" : "2400";
            EXPECT_EQ(Ctl({"--address", "9", "--baud", rate, "--parity", "E1", "--timeout", "100", "set",
                           "Baud Rate=19200", "28=13", "65=17", "67=o1", "29=350"}),
                      ExitStatus::Done);
            EXPECT_EQ(sensor.Writes(), (Writes{{28, 1300}, {29, 35000}, {66, 3}, {65, 17}, {67, 3}}))
                << "those that move the sensor come last";
            EXPECT_EQ(sensor.Line().address, 17);
            EXPECT_EQ(sensor.Line().baud, 3);
            EXPECT_EQ(sensor.Line().parity, 3);
            EXPECT_EQ(Messages(), "ztv-ctl: address 9: the sensor now answers at address 17, 19200 O1\n" +
                                      std::string(remark));
            EXPECT_NE(Results().find("65         Network Address       9           17          written\n"),
                      std::string::npos);
        }
    }
}

TEST_F(SetTest, WritesTheAddressingModeUnderTheOldOne) {
    for (const int addressing : {0, 1}) {
        sim::SimulatedSensor &sensor = StartAt(1, addressing);
        const QByteArray other = QByteArray("68=") + char('1' - addressing);
        EXPECT_EQ(Ctl({"set", other.constData(), "28=13", "66=4"}), ExitStatus::Done);
        EXPECT_EQ(sensor.Writes(), (Writes{{68, 1 - addressing}, {28, 1300}}));
        EXPECT_EQ(sensor.Line().addressing, 1 - addressing);
        EXPECT_EQ(sensor.Register(28), 1300);
    }
}

TEST_F(SetTest, LooksForAMovedSensorAtBothPlacesWhenTheConfirmationIsLost) {
    for (const char *word : {"65=17", "66=2", "67=0", "68=0"}) {
        sim::SimulatedSensor &sensor = StartSensor();
        sensor.OnRequest([&](const QByteArray &request) { sensor.Faults().drop = IsWrite(request) ? 1 : 0; });
        EXPECT_EQ(Ctl({"--timeout", "30", "set", "28=13", word}), ExitStatus::Done) << word << Messages();
        EXPECT_EQ(sensor.Writes().front(), std::pair(28, 1300));
        EXPECT_EQ(sensor.Writes().back().first, std::atoi(word));
        sensor.ClearRecords();

        sim::SimulatedSensor &deaf = StartSensor();
        deaf.OnRequest([&](const QByteArray &request) { deaf.Faults().mute = IsWrite(request); });
        EXPECT_EQ(Ctl({"--timeout", "30", "--format", "csv", "set", word}), ExitStatus::Refused) << word;
        EXPECT_NE(Messages().find(" as asked; not written: \""), std::string::npos);
        EXPECT_TRUE(deaf.Writes().empty());
        Results();
    }
}

TEST_F(SetTest, AForeignSlaveIsWrittenToo) {
    ModbusServer server(9);
    device_ = server.Path();
    server.SetRegister(69, 21845);
    server.SetRegister(29, 36000);
    EXPECT_EQ(Ctl({"--address", "9", "--format", "csv", "set", "28=13", "26=-1", "66=2400"}),
              ExitStatus::Done);
    EXPECT_EQ(server.Register(28), 1300);
    EXPECT_EQ(server.Register(26), 65436);
    EXPECT_EQ(Results(), "address,parameter,name,before,value,raw,outcome\n"
                         "9,28,Near Distance,\"0.00\"\"\",\"13.00\"\"\",1300,written\n"
                         "9,26,Distance Offset,\"0.00\"\"\",\"-1.00\"\"\",-100,written\n"
                         "9,66,Baud Rate,2400,2400,0,held\n");
}

TEST_F(SetTest, SendsAWriteThatMovesTheSensorOnceAtEachPlace) {
    sim::SimulatedSensor &sensor = StartAt(1, 1);
    int writes = 0;
    sensor.OnRequest([&](const QByteArray &request) {
        writes += IsWrite(request) ? 1 : 0;
        sensor.Faults().mute = IsWrite(request) && writes == 1; // the first is lost
        sensor.Faults().drop = IsWrite(request) ? 1 : 0;
    });
    EXPECT_EQ(Ctl({"--timeout", "30", "set", "68=0"}), ExitStatus::Done);
    EXPECT_EQ(sensor.Writes(), (Writes{{68, 0}})) << "a repetition would have been for the parity";
    EXPECT_EQ(sensor.Line().parity, 1);
}

TEST_F(SetTest, LeavesAnAddressAtWhichAnotherSensorAnswers) {
    SharedLine line;
    for (const int address : {3, 5}) {
        line.Join(StartAt(address));
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3", "--timeout", "50", "set", "95=1", "65=5"}), ExitStatus::Refused);
    EXPECT_EQ(Messages(), "ztv-ctl: address 3: another sensor answers at address 5; give a free address\n");
    EXPECT_TRUE(sensors_.front()->Writes().empty());
    EXPECT_EQ(Ctl({"--address", "3", "--timeout", "50", "set", "65=6"}), ExitStatus::Done);
    EXPECT_EQ(sensors_.front()->Line().address, 6);
    EXPECT_EQ(sensors_.back()->Line().address, 5);
}

// Several sensors. ----------------------------------------------------------------------------------

TEST_F(SetTest, ASensorThatFailsDoesNotStopTheOthers) {
    SharedLine line;
    for (const int address : {3, 5, 6}) {
        line.Join(StartAt(address, address % 2));
    }
    device_ = line.Path();
    sensors_[1]->SetRegister(29, 1250); // too near for the value
    EXPECT_EQ(Ctl({"--address", "3-6", "--timeout", "50", "set", "28=13"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "address  parameter  name           before      value       outcome\n"
                         "3        28         Near Distance  12.00\"      13.00\"      written\n"
                         "6        28         Near Distance  12.00\"      13.00\"      written\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 4: Timeout\n"
                          "ztv-ctl: address 5: Near Distance: The Near Distance must be less than the Far "
                          "Distance.\n" +
                              std::string(remark));
    EXPECT_EQ(sensors_[0]->Register(28), 1300);
    EXPECT_EQ(sensors_[1]->Register(28), 1200);
    EXPECT_EQ(sensors_[2]->Register(28), 1300);
}

TEST_F(SetTest, ReturnsToTheCommandsLineForTheNextSensor) {
    SharedLine line;
    for (const int address : {3, 5}) {
        line.Join(StartAt(address));
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3,5", "--timeout", "50", "--quiet", "set", "66=9600"}), ExitStatus::Done);
    EXPECT_EQ(sensors_[0]->Line().baud, 2);
    EXPECT_EQ(sensors_[1]->Line().baud, 2);
    EXPECT_EQ(Messages(), "");
}

// --dry-run and the formats. ------------------------------------------------------------------------

TEST_F(SetTest, ADryRunChecksAndWritesNothing) {
    sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"set", "--dry-run", "39=2", "29=300", "95=0", "65=17"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "parameter  name                before      value       outcome\n"
                         "39         Analog Output Mode  Linear      Hyperbolic  would be written\n"
                         "29         Far Distance        360.00\"     300.00\"     would be written\n"
                         "28         Near Distance       12.00\"      289.50\"     would be written\n"
                         "95         User Number         0           0           held\n"
                         "65         Network Address     1           17          would be written\n");
    EXPECT_EQ(Messages(), "ztv-ctl: Nothing was written\n");
    EXPECT_EQ(Ctl({"set", "--dry-run", "28=361"}), ExitStatus::Refused);
    EXPECT_TRUE(std::ranges::none_of(sensor.Requests(), IsWrite));
}

TEST_F(SetTest, PrintsOneJsonDocument) {
    StartSensor();
    EXPECT_EQ(Ctl({"--format", "json", "set", "28=13", "26=-0.5"}), ExitStatus::Done);
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).array();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows.at(0).toObject(), (QJsonObject{{QStringLiteral("address"), 1},
                                                  {QStringLiteral("parameter"), 28},
                                                  {QStringLiteral("name"), QStringLiteral("Near Distance")},
                                                  {QStringLiteral("before"), QStringLiteral("12.00\"")},
                                                  {QStringLiteral("value"), QStringLiteral("13.00\"")},
                                                  {QStringLiteral("raw"), 1300},
                                                  {QStringLiteral("outcome"), QStringLiteral("written")}}));
    EXPECT_EQ(rows.at(1).toObject().value(QStringLiteral("raw")).toInt(), -50);
}

TEST_F(SetTest, PrintsCsvThatAnotherParserReads) {
    StartSensor();
    EXPECT_EQ(Ctl({"--format", "csv", "set", "28=13"}), ExitStatus::Done);
    QProcess python;
    python.start(QStringLiteral("python3"),
                 {QStringLiteral("-c"), QStringLiteral("import csv, sys\n"
                                                       "for row in csv.DictReader(sys.stdin):\n"
                                                       "    print(row['name'], row['before'], row['value'], "
                                                       "row['raw'], row['outcome'], sep='|')")});
    python.write(QByteArray::fromStdString(Results()));
    python.closeWriteChannel();
    ASSERT_TRUE(python.waitForFinished());
    EXPECT_EQ(python.readAllStandardOutput().toStdString(), "Near Distance|12.00\"|13.00\"|1300|written\n");
}

// Signals. ------------------------------------------------------------------------------------------

class SetSignalTest : public CtlProgramTest {
protected:
    // Sends the signal as soon as the program writes.
    int ShellInterrupted(double drop) {
        const QString pidFile = folder_.filePath(QStringLiteral("pid"));
        sensor_->OnRequest([this, pidFile, drop](const QByteArray &request) {
            QFile file(pidFile);
            if (IsWrite(request) && file.open(QIODevice::ReadOnly)) {
                sensor_->Faults().drop = drop;
                kill(file.readAll().trimmed().toInt(), SIGINT);
            }
        });
        return Shell("echo $$ > $XDG_CONFIG_HOME/pid; exec $ctl --timeout 500 set 28=13 29=350 95=1");
    }
};

TEST_F(SetSignalTest, SetSaysWhatWasWrittenAndWhatWasNot) {
    EXPECT_EQ(ShellInterrupted(0), 128 + SIGINT);
    EXPECT_EQ(messages_, "ztv-ctl: address 1: interrupted; confirmed, but not read back: \"Near Distance\"; "
                         "not written: \"Far Distance\", \"User Number\"\n");
    EXPECT_EQ(sensor_->Writes(), (Writes{{28, 1300}}));
}

TEST_F(SetSignalTest, SetSaysWhichWriteIsNotKnown) {
    EXPECT_EQ(ShellInterrupted(1), 128 + SIGINT);
    EXPECT_EQ(messages_, "ztv-ctl: address 1: interrupted; not known: \"Near Distance\"; not written: \"Far "
                         "Distance\", \"User Number\"\n");
    EXPECT_EQ(sensor_->Writes(), (Writes{{28, 1300}}));
}

// Faults of the line. -------------------------------------------------------------------------------

class SetOverFaultyLineTest : public CommandsTest {
protected:
    static constexpr int timeoutMs = 20;

    // Runs `set` with a fault at the request of this number, from 0 on, or from that request on.
    struct Trial {
        LineFault fault;
        int at;
        bool forEver = false;
        bool givesBack = false;
    };

    ExitStatus Set(const Trial &trial, const std::vector<const char *> &assignments) {
        sensors_.clear();
        sensor_ = &StartSensor();
        const QString link = links_.filePath(QStringLiteral("line"));
        QFile::remove(link);
        line_ = std::make_unique<FaultyLine>(*sensor_, link);
        line_->GiveBack(trial.givesBack);
        device_ = link;
        trial_ = trial;
        count_ = 0;
        late_.clear();
        QObject::connect(line_.get(), &FaultyLine::Request, line_.get(),
                         [this](const QByteArray &request) { Forward(request); });
        QObject::connect(line_.get(), &FaultyLine::Reply, line_.get(),
                         [this](const QByteArray &reply) { Return(reply); });
        std::vector<const char *> words = {"--timeout", "20", "--format", "csv", "--quiet", "set"};
        words.insert(words.end(), assignments.begin(), assignments.end());
        const ExitStatus status = Ctl(words);
        line_.reset();
        return status;
    }

    sim::SimulatedSensor *sensor_ = nullptr;

private:
    void Forward(const QByteArray &request) {
        const int number = count_++;
        const bool applies = trial_.forEver ? number >= trial_.at : number == trial_.at;
        fault_ = applies ? trial_.fault : LineFault::None;
        if (!late_.isEmpty()) {
            line_->SendToHost(std::exchange(late_, {}));
            if (trial_.fault == LineFault::LateAlone) {
                return;
            }
        }
        sensor_->Faults().exception = fault_ == LineFault::Exception         ? 4
                                      : fault_ == LineFault::ExceptionBeyond ? 9
                                                                             : 0;
        switch (fault_) {
        case LineFault::LostRequest:
            break;
        case LineFault::DamagedRequest:
            line_->SendToSensor(damage_.WithFlippedBits(request));
            break;
        case LineFault::HangUp:
            line_->SendToSensor(request);
            line_->HangUp();
            break;
        default:
            line_->SendToSensor(request);
        }
    }

    void Return(const QByteArray &reply) {
        const qsizetype half = reply.size() / 2;
        switch (fault_) {
        case LineFault::LostReply:
        case LineFault::HangUp:
            break;
        case LineFault::DamagedReply:
            line_->SendToHost(damage_.WithFlippedBits(reply));
            break;
        case LineFault::ShortReply:
            line_->SendToHost(damage_.CutShort(reply));
            break;
        case LineFault::ReplyInPieces:
            line_->SendToHost(reply.first(half));
            line_->SendToHostAfter(2, reply.sliced(half));
            break;
        case LineFault::SlowReply:
            line_->SendToHostAfter(timeoutMs / 2, reply);
            break;
        case LineFault::LateReply:
            line_->SendToHostAfter(timeoutMs + 5, reply);
            break;
        case LineFault::LateBeforeOwn:
        case LineFault::LateAlone:
            late_ = reply;
            break;
        case LineFault::GarbageBefore:
            line_->SendToHost(damage_.Garbage() + reply);
            break;
        case LineFault::GarbageAfter:
            line_->SendToHost(reply + damage_.Garbage());
            break;
        case LineFault::ForeignBefore:
            line_->SendToHost(damage_.ForeignFrame() + reply);
            break;
        case LineFault::ForeignAfter:
            line_->SendToHost(reply + damage_.ForeignFrame());
            break;
        case LineFault::ForeignInstead:
            line_->SendToHost(damage_.ForeignFrame());
            break;
        case LineFault::DoubledReply:
            line_->SendToHost(reply + reply);
            break;
        case LineFault::HangUpInReply:
            line_->SendToHost(reply.first(half));
            line_->HangUp();
            break;
        case LineFault::HangUpAfter:
            line_->SendToHost(reply);
            line_->HangUp();
            break;
        default:
            line_->SendToHost(reply);
        }
    }

    QTemporaryDir links_;
    std::unique_ptr<FaultyLine> line_;
    Damage damage_{1};
    Trial trial_ = {};
    LineFault fault_ = LineFault::None;
    QByteArray late_;
    int count_ = 0;
};

class SetUnderEachFaultTest : public SetOverFaultyLineTest, public testing::WithParamInterface<std::size_t> {
protected:
    LineFault Fault() const { return static_cast<LineFault>(GetParam()); }

    bool Wrote(int tag) const {
        return std::ranges::any_of(sensor_->Writes(), [&](const auto &write) { return write.first == tag; });
    }

    // Compares all that was said with what the sensor holds.
    void ExpectTheTruth(const Trial &trial) {
        SCOPED_TRACE(testing::Message() << LineFaultTable.at(GetParam()).name << " at " << trial.at);
        const ExitStatus status = Set(trial, {"28=13", "29=350"});
        const std::string printed = Results();
        const std::string messages = Messages();
        const auto prints = [&](const char *text) { return printed.find(text) != std::string::npos; };
        const auto says = [&](const char *text) { return messages.find(text) != std::string::npos; };
        if (status == ExitStatus::Done) {
            EXPECT_TRUE(prints("13.00\"\"\",1300,written\n") && prints("350.00\"\"\",35000,written\n"));
            EXPECT_EQ(messages, "");
            EXPECT_EQ(sensor_->Register(28), 1300);
            EXPECT_EQ(sensor_->Register(29), 35000);
            return;
        }
        EXPECT_FALSE(prints("written")) << printed;
        EXPECT_EQ(std::ranges::count(messages, '\n'), 1) << messages;
        if (says("; confirmed, but not read back: \"Near Distance\"")) {
            EXPECT_EQ(sensor_->Register(28), 1300) << messages;
        }
        if (says("\"Near Distance\" holds 12.00\"") || says("not written: \"Near Distance\"")) {
            EXPECT_EQ(sensor_->Register(28), 1200) << messages;
        }
        if (says("\"Far Distance\" holds 360.00\"") || says("not written: \"Far Distance\"") ||
            says("not written: \"Near Distance\", \"Far Distance\"")) {
            EXPECT_EQ(sensor_->Register(29), 36000) << messages;
        }
        if (Wrote(28) && sensor_->Register(28) == 1300) {
            EXPECT_TRUE(says("\"Near Distance\"")) << messages;
        }
        if (Wrote(29) && sensor_->Register(29) == 35000) {
            EXPECT_TRUE(says("\"Far Distance\"")) << messages;
        }
    }
};

TEST_P(SetUnderEachFaultTest, SaysOfEachWriteOnlyWhatTheSensorHolds) {
    constexpr int requests = 8; // find, read, two writes, find and read back, and one more
    for (int at = 0; at < requests; ++at) {
        ExpectTheTruth({.fault = Fault(), .at = at});
    }
    for (int at = 2; at < 4; ++at) {
        ExpectTheTruth({.fault = Fault(), .at = at, .forEver = true});
    }
    ExpectTheTruth({.fault = Fault(), .at = 2, .givesBack = true});
}

TEST_P(SetUnderEachFaultTest, SaysOfAMoveOnlyWhatTheSensorHolds) {
    for (const auto &[word, tag, raw] : {std::tuple{"65=17", 65, 17}, std::tuple{"66=9600", 66, 2}}) {
        for (int at = 2; at < 6; ++at) {
            SCOPED_TRACE(testing::Message() << LineFaultTable.at(GetParam()).name << " at " << at);
            const ExitStatus status = Set({.fault = Fault(), .at = at}, {word});
            const std::string printed = Results();
            const std::string messages = Messages();
            if (status == ExitStatus::Done) {
                EXPECT_EQ(sensor_->Register(tag), raw);
            } else if (messages.find("isn't known") == std::string::npos) {
                EXPECT_NE(sensor_->Register(tag), raw) << messages;
            }
            EXPECT_EQ(printed.find(",written") != std::string::npos, status == ExitStatus::Done) << printed;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Line, SetUnderEachFaultTest, testing::Range<std::size_t>(1, LineFaultTable.size()),
                         [](const testing::TestParamInfo<std::size_t> &row) {
                             std::string name = LineFaultTable.at(row.param).name;
                             std::erase_if(name, [](char letter) {
                                 return std::isalnum(static_cast<unsigned char>(letter)) == 0;
                             });
                             return name;
                         });

} // namespace ztv
