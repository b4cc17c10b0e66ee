#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/SharedLine.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace ztv {

TEST_F(CommandsTest, SearchPrintsEachSensorOnTheLine) {
    SharedLine line;
    for (const int address : {3, 5, 6}) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = address % 2;
        StartSensor(options);
        line.Join(*sensors_.back());
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"search", "--from", "2", "--to", "7"}), ExitStatus::Done);
    EXPECT_EQ(Results(),
              "address  baud   parity\n3        38400  N2\n5        38400  N2\n6        38400  N2\n");
    EXPECT_EQ(Messages(), "");
    EXPECT_EQ(Ctl({"--format", "csv", "search", "--from", "4", "--to", "5"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address,baud,parity\n5,38400,N2\n");
}

TEST_F(CommandsTest, SearchPrintsOneJsonObjectALine) {
    sim::SensorOptions options;
    options.address = 2;
    options.baud = 2;
    options.parity = 3;
    StartSensor(options);
    EXPECT_EQ(Ctl({"--format", "json", "search", "--from", "1", "--to", "3", "--all-settings"}),
              ExitStatus::Done);
    const QJsonObject found = QJsonDocument::fromJson(QByteArray::fromStdString(Results())).object();
    EXPECT_EQ(found, (QJsonObject{{QStringLiteral("address"), 2},
                                  {QStringLiteral("baud"), 9600},
                                  {QStringLiteral("parity"), QStringLiteral("O1")}}));
}

TEST_F(CommandsTest, SearchOnTheGivenSettingFindsOnlyWhatIsThere) {
    sim::SensorOptions options;
    options.baud = 3;
    StartSensor(options);
    EXPECT_EQ(Ctl({"search", "--to", "2"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: No sensor answered on " + device_.toStdString() + "\n");
    EXPECT_EQ(Ctl({"--baud", "19200", "search", "--to", "2"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "address  baud   parity\n1        19200  N2\n");
}

TEST_F(CommandsTest, SearchWaitsAsLongAsIsAsked) {
    StartSensor().Execute(QStringLiteral("latency 80"));
    EXPECT_EQ(Ctl({"search", "--to", "1"}), ExitStatus::NoConnection);
    EXPECT_EQ(Ctl({"--timeout", "500", "search", "--to", "1"}), ExitStatus::Done);
}

TEST_F(CommandsTest, SearchRefusesWhatHasNoMeaning) {
    const sim::SimulatedSensor &sensor = StartSensor();
    EXPECT_EQ(Ctl({"search", "--from", "9", "--to", "3"}), ExitStatus::WrongUse);
    EXPECT_EQ(Messages(), "ztv-ctl: --from 9 is above --to 3; give the lower address first\n");
    EXPECT_EQ(Ctl({"--address", "3", "search"}), ExitStatus::WrongUse);
    EXPECT_EQ(Messages(), "ztv-ctl: search has no --address; use --from and --to for its range\n");
    EXPECT_EQ(Ctl({"search", "--from", "0"}), ExitStatus::WrongUse);
    EXPECT_EQ(Ctl({"search", "--to", "248"}), ExitStatus::WrongUse);
    EXPECT_EQ(Results(), "");
    EXPECT_TRUE(sensor.Requests().empty());
    device_ = QStringLiteral("/dev/nothing");
    Messages();
    EXPECT_EQ(Ctl({"search"}), ExitStatus::NoConnection);
    EXPECT_EQ(
        Messages(),
        "ztv-ctl: /dev/nothing can't be opened: there is no such device; \"ztv-ctl ports\" lists them\n");
}

TEST_F(CommandsTest, ALostAdapterBreaksASearchOff) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.OnRequest([&](const QByteArray &request) {
        if (request.at(0) == 3) {
            sensor.Unplug();
        }
    });
    EXPECT_EQ(Ctl({"search", "--to", "9"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "address  baud   parity\n1        38400  N2\n");
    EXPECT_EQ(Messages(), "ztv-ctl: address 3 at 38400 N2: Read Error\n");
}

TEST_F(CommandsTest, SearchShowsHowFarItIsWhereSomeoneReads) {
    StartSensor();
    EXPECT_EQ(Ctl({"search", "--to", "4"}, true), ExitStatus::Done);
    const std::string messages = Messages();
    EXPECT_NE(messages.find("\raddress 1 at 38400 N2, 0 found, 1 s left"), std::string::npos) << messages;
    EXPECT_NE(messages.find("\raddress 4 at 38400 N2, 1 found, 1 s left"), std::string::npos) << messages;
    EXPECT_TRUE(messages.ends_with(" \r")); // nothing stays on the screen
}

TEST_F(CommandsTest, SearchShowsItsFrames) {
    StartSensor();
    EXPECT_EQ(Ctl({"--trace", "search", "--to", "2"}), ExitStatus::Done);
    const std::string frames = Messages();
    EXPECT_EQ(std::ranges::count(frames, '\n'), 4);
    EXPECT_NE(frames.find("01 03 00 01 00 01 D5 CA  read 1 register from 1\n"), std::string::npos) << frames;
    EXPECT_NE(frames.find("no reply\n"), std::string::npos);
}

TEST_F(CtlProgramTest, ASignalEndsASearchAndWhatWasFoundStands) {
    EXPECT_EQ(Shell("coproc $ctl --format csv --timeout 300 search --from 1; read -r h <&${COPROC[0]}; "
                    "read -r r <&${COPROC[0]}; kill -INT $COPROC_PID; wait $COPROC_PID; echo $? $r"),
              0);
    EXPECT_EQ(results_, "130 1,38400,N2\n");
    EXPECT_EQ(messages_, "");
}

TEST_F(CtlProgramTest, SearchEndsWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("$ctl --format csv search --from 1 --to 100 > /dev/full"), 5);
    EXPECT_EQ(messages_, "ztv-ctl: The results can't be written: No space left on device\n");
}

} // namespace ztv
