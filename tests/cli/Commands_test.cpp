#include "tests/cli/CommandsTest.h"
#include "tests/helpers/ModbusServer.h"
#include "tests/helpers/SharedLine.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <string>
#include <vector>

namespace ztv {

TEST_F(CommandsTest, GetPrintsFormattedValuesByNumberAndName) {
    StartSensor();
    EXPECT_EQ(Ctl({"get", "28", "far distance", "near v"}), ExitStatus::Done);
    EXPECT_EQ(Results(),
              "28   Near Distance  12.00\"\n29   Far Distance   360.00\"\n36   Near Voltage   0.00V\n");
    EXPECT_EQ(Messages(), "");
}

TEST_F(CommandsTest, GetPrintsRawNumbers) {
    StartSensor();
    EXPECT_EQ(Ctl({"get", "--raw", "29"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "29   Far Distance  36000\n");
}

TEST_F(CommandsTest, GetWithoutNamesPrintsAllRows) {
    for (const int addressing : {0, 1}) {
        sim::SensorOptions options;
        options.addressing = addressing;
        sim::SimulatedSensor &sensor = StartSensor(options);
        EXPECT_EQ(Ctl({"--format", "csv", "get"}), ExitStatus::Done);
        const QStringList lines = QString::fromStdString(Results()).trimmed().split(u'\n');
        ASSERT_EQ(lines.size(), 1 + 95);
        EXPECT_EQ(lines.at(0), QStringLiteral("address,parameter,name,value,raw"));
        EXPECT_EQ(lines.at(29), QStringLiteral("1,29,Far Distance,\"360.00\"\"\",36000")) << addressing;
        for (qsizetype tag = 65; tag <= 70; ++tag) {
            EXPECT_EQ(lines.at(tag).section(u',', -1).toInt(), sensor.Register(static_cast<int>(tag))) << tag;
        }
    }
}

TEST_F(CommandsTest, GetPrintsOneJsonDocument) {
    StartSensor();
    EXPECT_EQ(Ctl({"get", "28", "2", "--format", "json"}), ExitStatus::Done);
    const QJsonArray rows = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).array();
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows.at(0).toObject(), (QJsonObject{{QStringLiteral("address"), 1},
                                                  {QStringLiteral("parameter"), 28},
                                                  {QStringLiteral("name"), QStringLiteral("Near Distance")},
                                                  {QStringLiteral("value"), QStringLiteral("12.00\"")},
                                                  {QStringLiteral("raw"), 1200}}));
    EXPECT_EQ(rows.at(1).toObject().value(QStringLiteral("raw")).toInt(), 10427);
}

TEST_F(CommandsTest, OneSensorThatFailsDoesNotStopTheOthers) {
    SharedLine line;
    for (const int address : {3, 5}) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = address == 3 ? 0 : 1;
        StartSensor(options).SetRegister(28, 1000 + address);
        line.Join(*sensors_.back());
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3-5", "get", "28"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "3    28   Near Distance  10.03\"\n5    28   Near Distance  10.05\"\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 4: Timeout\n");
    EXPECT_EQ(Ctl({"--address", "4", "--quiet", "--format", "json", "get", "28"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "[\n]\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 4: Timeout\n");
}

TEST_F(CommandsTest, InfoSaysWhichSensorAnswers) {
    sim::SensorOptions options;
    options.addressing = 1;
    StartSensor(options);
    EXPECT_EQ(Ctl({"info"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address  model       serial  firmware  boot   line      addressing\n"
                         "1        ZTV500-100  10427   2.14      1.00   38400 N2  1\n");
}

TEST_F(CommandsTest, ALostOrDamagedReplyIsAskedForAgain) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.Execute(QStringLiteral("drop 0.3"));
    sensor.Execute(QStringLiteral("corrupt 0.2"));
    for (int run = 0; run < 20; ++run) {
        const ExitStatus status = Ctl({"--timeout", "20", "get", "29"});
        const std::string printed = Results();
        if (status == ExitStatus::Done) {
            EXPECT_EQ(printed, "29   Far Distance  360.00\"\n");
        } else {
            EXPECT_EQ(status, ExitStatus::NoConnection);
            EXPECT_EQ(printed, "");
        }
    }
}

TEST_F(CommandsTest, ARefusalOfTheSensorIsNoLostConnection) {
    StartSensor().Execute(QStringLiteral("exception 2"));
    EXPECT_EQ(Ctl({"get", "28"}), ExitStatus::Refused);
    EXPECT_EQ(Results(), "");
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: Illegal Data Address\n");
}

TEST_F(CommandsTest, AForeignSlaveIsReadToo) {
    ModbusServer server(9);
    device_ = server.Path();
    server.SetRegister(69, 21845);
    server.SetRegister(28, 4321);
    EXPECT_EQ(Ctl({"--address", "9", "get", "28"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "28   Near Distance  43.21\"\n");
}

TEST_F(CommandsTest, WhatIsNotGivenComesFromTheProgramsSettings) {
    sim::SensorOptions options;
    options.address = 17;
    options.baud = 2;
    StartSensor(options);
    SettingsStore settings(QStringLiteral("ZTV Link"));
    settings.Write(QStringLiteral("Options"), QStringLiteral("NetworkAddress"), QStringLiteral("17"));
    settings.Write(QStringLiteral("Options"), QStringLiteral("BaudRate"), QStringLiteral("2"));
    qputenv("ZTVLINK_PORT_7", device_.toLocal8Bit());
    device_ = QStringLiteral("7");
    EXPECT_EQ(Ctl({"--format", "csv", "get", "28"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address,parameter,name,value,raw\n"
                         "17,28,Near Distance,\"12.00\"\"\",1200"
                         "\n");
    EXPECT_EQ(Ctl({"--baud", "38400", "--timeout", "50", "get", "28"}), ExitStatus::NoConnection);
    qunsetenv("ZTVLINK_PORT_7");
}

TEST_F(CommandsTest, APortThatIsNotThereIsNamed) {
    device_ = QStringLiteral("/dev/nothing");
    EXPECT_EQ(Ctl({"get", "28"}), ExitStatus::NoConnection);
    EXPECT_EQ(
        Messages(),
        "ztv-ctl: /dev/nothing can't be opened: there is no such device; \"ztv-ctl ports\" lists them\n");
    device_ = QStringLiteral("256");
    EXPECT_EQ(Ctl({"get", "28"}), ExitStatus::WrongUse);
    EXPECT_EQ(Messages(), "ztv-ctl: There is no port 256; they are 1 to 255\n");
}

TEST_F(CommandsTest, ALineOfTheProgramsSettingsIsNamedWhenNobodyAnswers) {
    sim::SimulatedSensor &sensor = StartSensor();
    qputenv("ZTVLINK_PORT_1", device_.toLocal8Bit());
    const std::string device = device_.toStdString();
    device_.clear();
    EXPECT_EQ(Ctl({"--address", "9", "--timeout", "40", "get", "28"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(),
              "ztv-ctl: address 9: Timeout\nztv-ctl: No sensor answered on " + device +
                  " (from the program's settings) at 38400 N2; --port, --baud and --parity choose "
                  "another line, and \"ztv-ctl search\" looks for sensors\n");
    EXPECT_EQ(Ctl({"--address", "1,9", "--timeout", "40", "get", "28"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 9: Timeout\n") << "the line is the right one";
    sensor.Unplug();
    EXPECT_EQ(Ctl({"get", "28"}), ExitStatus::NoConnection);
    EXPECT_TRUE(
        Messages().starts_with("ztv-ctl: " + device + " (from the program's settings) can't be opened: "));
    qunsetenv("ZTVLINK_PORT_1");
}

TEST_F(CommandsTest, AskedForHelpInAnyWayItGivesIt) {
    for (const std::vector<const char *> &words :
         {std::vector{"ztv-ctl", "help", "get"}, {"ztv-ctl", "get", "--help"}, {"ztv-ctl", "get", "-h"}}) {
        testing::internal::CaptureStdout();
        EXPECT_FALSE(ParseArguments(static_cast<int>(words.size()), words.data()));
        EXPECT_TRUE(
            testing::internal::GetCapturedStdout().starts_with("Prints parameters by number or name"));
    }
    for (const char *word : {"help", "--help", "-V", "--version"}) {
        const std::vector<const char *> words = {"ztv-ctl", word};
        testing::internal::CaptureStdout();
        EXPECT_FALSE(ParseArguments(2, words.data())) << word;
        EXPECT_NE(testing::internal::GetCapturedStdout().find("ztv-ctl"), std::string::npos);
    }
}

TEST_F(CommandsTest, AMistakeOnTheCommandLineIsAnsweredWithWhatIsRight) {
    struct Case {
        std::vector<const char *> words;
        const char *message;
    };
    const Case cases[] = {
        {{"get", "--rwa"}, "There is no option \"--rwa\": did you mean \"--raw\"?"},
        {{"get", "--frob"}, "There is no option \"--frob\"; \"ztv-ctl get --help\" lists the options"},
        {{"frob"}, "There is no command \"frob\"; \"ztv-ctl --help\" lists the commands"},
        {{"info", "28"}, "info doesn't accept \"28\"; \"ztv-ctl info --help\" shows its use"},
        {{"set"}, "PARAMETER=VALUE is required; \"ztv-ctl set --help\" shows its use"},
        {{"get", "--baud"}, "--baud needs one value; \"ztv-ctl get --help\" shows its use"},
        {{"--timeout", "soon", "get"}, "--timeout: \"soon\" is no whole number from 1 to 32000"},
        {{"watch", "--every", "1.5"}, "--every: \"1.5\" is no whole number from 0 to 86400000"},
    };
    for (const Case &mistake : cases) {
        EXPECT_EQ(Ctl(mistake.words), ExitStatus::WrongUse);
        EXPECT_EQ(Messages(), std::string("ztv-ctl: ") + mistake.message + '\n');
    }
}

TEST_F(CommandsTest, WrongUseGetsOneLineAndNothingOnTheLine) {
    const sim::SimulatedSensor &sensor = StartSensor();
    for (const std::vector<const char *> &words : {std::vector{"get", "Near Distanze"},
                                                   {"--baud", "1200", "get"},
                                                   {"--parity", "M1", "get"},
                                                   {"--address", "0", "get"},
                                                   {"--timeout", "0", "get"},
                                                   {"--timeout", "soon", "get"},
                                                   {"--format", "xml", "get"},
                                                   {"--frob", "get"},
                                                   {"frob"},
                                                   {}}) {
        EXPECT_EQ(Ctl(words), ExitStatus::WrongUse) << (words.empty() ? "" : words.front());
        EXPECT_EQ(std::ranges::count(std::string(Messages()), '\n'), 1);
        EXPECT_EQ(Results(), "");
    }
    EXPECT_TRUE(sensor.Requests().empty());
}

} // namespace ztv
