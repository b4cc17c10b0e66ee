#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/SharedLine.h"

#include <QRegularExpression>
#include <algorithm>

namespace ztv {

namespace {

// A sensor whose registers have the numbers of its parameters.
sim::SensorOptions NumberedLikeParameters() {
    sim::SensorOptions options;
    options.addressing = 0;
    return options;
}

// The lines without their times.
QStringList Frames(const std::string &text) {
    static const QRegularExpression time(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d\\.\\d{3}  "));
    static const QRegularExpression delay(QStringLiteral("^(<-    )\\d+\\.\\d +"));
    QStringList frames;
    for (QString line : QString::fromStdString(text).split(u'\n', Qt::SkipEmptyParts)) {
        EXPECT_TRUE(line.contains(time)) << line.toStdString();
        frames.append(line.remove(time).replace(delay, QStringLiteral("\\1")));
    }
    return frames;
}

} // namespace

TEST_F(CommandsTest, TraceOfACommandGoesToItsMessages) {
    StartSensor(NumberedLikeParameters());
    EXPECT_EQ(Ctl({"--trace", "get", "28"}), ExitStatus::Done);
    EXPECT_EQ(Results(), "28   Near Distance  12.00\"\n");
    const QStringList frames = Frames(Messages());
    ASSERT_EQ(frames.size(), 4);
    EXPECT_EQ(frames.at(0).toStdString(), ("->            01 03 00 45 00 01 95 DF  read 1 register from 69"));
    EXPECT_EQ(frames.at(1).toStdString(), ("<-    01 03 02 55 55 47 2B     69 = 21845"));
    EXPECT_EQ(
        frames.at(2),
        QStringLiteral("->            01 03 00 1C 00 01 45 CC  read 1 register from 28 (Near Distance)"));
    EXPECT_TRUE(frames.at(3).endsWith(QStringLiteral("28 = 1200")));
}

TEST_F(CommandsTest, TraceNamesRegistersAsTheSensorNumbersThem) {
    SharedLine line;
    for (const int address : {3, 5}) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = address == 3 ? 0 : 1;
        StartSensor(options).SetRegister(53, -400);
        line.Join(*sensors_.back());
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3,5", "--quiet", "trace", "air", "--every", "800", "--for", "1"}),
              ExitStatus::Done);
    const QStringList frames = Frames(Results());
    ASSERT_EQ(frames.size(), 12);
    EXPECT_TRUE(frames.at(2).endsWith(QStringLiteral("read 1 register from 53 (Air Temperature (Deg F))")));
    EXPECT_TRUE(frames.at(3).endsWith(QStringLiteral("53 = -400")));
    EXPECT_TRUE(frames.at(6).endsWith(QStringLiteral("read 1 register from 52 (Air Temperature (Deg F))")));
    EXPECT_TRUE(frames.at(7).endsWith(QStringLiteral("52 = -400")));
}

TEST_F(CommandsTest, TraceNamesNoRegisterThatAWriteMayHaveRenumbered) {
    StartSensor(NumberedLikeParameters());
    for (const char *assignment : {"Addressing Mode=1", "Addressing Mode=0"}) {
        EXPECT_EQ(Ctl({"--quiet", "--trace", "set", assignment}), ExitStatus::Done) << Messages();
        const QStringList frames = Frames(Messages());
        const auto written =
            std::ranges::find_if(frames, [](const QString &frame) { return frame.contains(u"written: "); });
        ASSERT_GT(frames.end() - written, 3);
        EXPECT_TRUE((written + 1)->endsWith(QStringLiteral("read 1 register from 69")))
            << (written + 1)->toStdString();
        EXPECT_TRUE((written + 3)->endsWith(QStringLiteral("(Serial Number)")))
            << (written + 3)->toStdString();
    }
}

TEST_F(CommandsTest, TracePollsTheWholeTableInOneRequest) {
    StartSensor(NumberedLikeParameters());
    EXPECT_EQ(Ctl({"--quiet", "trace", "--every", "800", "--for", "1"}), ExitStatus::Done);
    const QStringList frames = Frames(Results());
    ASSERT_EQ(frames.size(), 6);
    EXPECT_TRUE(frames.at(2).endsWith(QStringLiteral("read 95 registers from 1 (Save Command)")));
    EXPECT_TRUE(frames.at(3).contains(QStringLiteral(" ... (195 bytes)  1 = 0, 2 = 10427, ")));
    EXPECT_TRUE(frames.at(3).endsWith(QStringLiteral("8 = 214 and 87 more")));
}

TEST_F(CommandsTest, TraceShowsWhatWentWrong) {
    sim::SimulatedSensor &sensor = StartSensor(NumberedLikeParameters());
    sensor.Execute(QStringLiteral("exception 2"));
    EXPECT_EQ(Ctl({"--trace", "get", "28"}), ExitStatus::Refused);
    EXPECT_NE(Messages().find("01 83 02 C0 F1           exception 2 Illegal Data Address\n"),
              std::string::npos);
    sensor.Execute(QStringLiteral("exception 0"));
    sensor.Execute(QStringLiteral("corrupt 1"));
    EXPECT_EQ(Ctl({"--trace", "--timeout", "50", "get", "28"}), ExitStatus::NoConnection);
    const std::string damaged = Messages();
    EXPECT_EQ(damaged.find(" = "), std::string::npos) << damaged;
    sensor.Execute(QStringLiteral("corrupt 0"));
    sensor.Execute(QStringLiteral("mute on"));
    EXPECT_EQ(Ctl({"--trace", "--timeout", "50", "get", "28"}), ExitStatus::NoConnection);
    EXPECT_NE(Messages().find("  no reply\n"), std::string::npos);
}

TEST_F(CommandsTest, TraceShowsAnEchoApart) {
    StartSensor(NumberedLikeParameters()).Execute(QStringLiteral("echo on"));
    EXPECT_EQ(Ctl({"--trace", "get", "28"}), ExitStatus::Done);
    const QStringList frames = Frames(Messages());
    ASSERT_EQ(frames.size(), 6);
    EXPECT_TRUE(frames.at(1).startsWith(QStringLiteral("echo          01 03 00 45 00 01 95 DF")));
    EXPECT_TRUE(frames.at(5).endsWith(QStringLiteral("28 = 1200")));
}

TEST_F(CommandsTest, TraceForAnotherProgramIsWhole) {
    sim::SensorOptions options = NumberedLikeParameters();
    options.address = 7;
    StartSensor(options);
    EXPECT_EQ(Ctl({"--address", "7", "--quiet", "--format", "csv", "trace", "--every", "800", "--for", "1"}),
              ExitStatus::Done);
    const QStringList lines = QString::fromStdString(Results()).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.at(0), QStringLiteral("time,direction,address,milliseconds,bytes,meaning"));
    EXPECT_EQ(lines.at(1).section(u',', 1).toStdString(),
              std::string("request,7,,07 03 00 45 00 01 95 B9,read 1 register from 69"));
    EXPECT_EQ(lines.at(4).section(u',', 4, 4).size(), 195 * 3 - 1);
    EXPECT_TRUE(lines.at(4).endsWith(QStringLiteral(", 95 = 0\""))) << lines.at(4).toStdString();
}

TEST_F(CtlProgramTest, TraceEndsQuietlyWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("$ctl --quiet trace | head -n 1 | wc -l"), 0);
    EXPECT_EQ(results_, "1\n");
    EXPECT_EQ(messages_, "");
    EXPECT_EQ(Shell("$ctl trace > /dev/full"), 5);
}

} // namespace ztv
