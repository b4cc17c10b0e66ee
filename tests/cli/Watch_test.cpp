#include "cli/Duration.h"
#include "cli/LocalTime.h"
#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/SharedLine.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace ztv {

namespace {

constexpr int measured = 32;

QStringList LinesOf(const std::string &text) {
    return QString::fromStdString(text).split(u'\n', Qt::SkipEmptyParts);
}

struct WatchedRow {
    std::string cells; // without the time and the count
    int lost;
};

// The rows of a CSV, without its header.
std::vector<WatchedRow> RowsOf(const std::string &csv) {
    std::vector<WatchedRow> rows;
    for (const QString &line : LinesOf(csv).mid(1)) {
        rows.push_back(
            {.cells = line.section(u',', 1, -2).toStdString(), .lost = line.section(u',', -1).toInt()});
    }
    return rows;
}

} // namespace

TEST(Duration, IsANumberWithAUnit) {
    using namespace std::chrono_literals;
    EXPECT_EQ(DurationOf(QStringLiteral("90")), 90s);
    EXPECT_EQ(DurationOf(QStringLiteral("90s")), 90s);
    EXPECT_EQ(DurationOf(QStringLiteral("10m")), 10min);
    EXPECT_EQ(DurationOf(QStringLiteral("8h")), 8h);
    EXPECT_EQ(DurationOf(QStringLiteral("7d")), 7 * 24h);
    EXPECT_EQ(DurationOf(QStringLiteral("3650d")), 3650 * 24h);
}

TEST(Duration, OfNothingOrTooLongIsWrongUse) {
    for (const char *text : {"", "0", "0d", "-1", "s", "1.5h", "10 m", "3651d", "999999999d",
                             "99999999999999999999s", "7w", "1h30m"}) {
        try {
            DurationOf(QString::fromLatin1(text));
            ADD_FAILURE() << text;
        } catch (const Failure &failure) {
            EXPECT_EQ(failure.Status(), ExitStatus::WrongUse);
            EXPECT_TRUE(failure.Text().contains(QStringLiteral("90s, 10m, 8h or 7d"))) << text;
        }
    }
}

TEST(LocalTime, HasMillisecondsAndTheOffset) {
    using namespace std::chrono_literals;
    const std::chrono::system_clock::time_point time(1'793'459'225'123ms); // 31 October 2026, 15:07:05 UTC
    const QByteArray previous = qgetenv("TZ");
    const auto in = [&](const char *zone) {
        qputenv("TZ", zone);
        tzset();
        return IsoTime(time).toStdString() + " " + TimeOfDay(time).toStdString();
    };
    EXPECT_EQ(in("UTC0"), "2026-10-31T15:07:05.123+00:00 15:07:05.123");
    EXPECT_EQ(in("XXX-1"), "2026-10-31T16:07:05.123+01:00 16:07:05.123");
    EXPECT_EQ(in("XXX9:30"), "2026-10-31T05:37:05.123-09:30 05:37:05.123");
    previous.isNull() ? qunsetenv("TZ") : qputenv("TZ", previous);
    tzset();
}

class WatchTest : public CommandsTest {
protected:
    // Gives the sensor another distance for each request that it hears: 1001, 1002 and so on.
    void CountInDistance(sim::SimulatedSensor &sensor) {
        sensor.OnRequest([this, &sensor](const QByteArray &) {
            sensor.SetRegister(measured, 1000 + ++requests_);
            if (whenAsked_) {
                whenAsked_();
            }
        });
    }

    // Expects that each printed distance is of that round's own request. A round sends one request, and one
    // more for the addressing mode at the start and after a loss.
    void ExpectNoOldValue(const std::vector<WatchedRow> &rows) const {
        int last = 0;
        bool goodBefore = false;
        for (const WatchedRow &row : rows) {
            const QString cell = QString::fromStdString(row.cells).section(u',', 1);
            if (!cell.isEmpty()) {
                const int value = cell.toInt();
                EXPECT_TRUE(goodBefore ? value == last + 1 : value >= last + 2 || last == 0) << value << last;
                last = value;
            }
            goodBefore = !cell.isEmpty();
        }
        EXPECT_LE(last, 1000 + requests_);
    }

    int requests_ = 0;
    std::function<void()> whenAsked_;
};

TEST_F(WatchTest, PrintsARowEachRoundAndSumsUp) {
    for (const auto &[addressing, baud] : {std::pair{0, 0}, {1, 2}, {0, 4}}) {
        sim::SensorOptions options;
        options.addressing = addressing;
        options.baud = baud;
        sim::SimulatedSensor &sensor = StartSensor(options);
        sensor.HoldTarget(2345);
        for (const auto &[tag, value] : {std::pair{32, 2345}, {38, 1}, {46, 512}, {60, 1}, {61, 0}}) {
            EXPECT_TRUE(sensor.SetRegister(tag, value));
        }
        const std::vector<const char *> rates = {"2400", "4800", "9600", "19200", "38400"};
        EXPECT_EQ(
            Ctl({"--baud", rates[static_cast<std::size_t>(baud)], "watch", "--every", "300", "--for", "1"}),
            ExitStatus::Done);
        const std::string printed = Results();
        const QStringList lines = LinesOf(printed);
        ASSERT_EQ(lines.size(), 1 + 4);
        EXPECT_EQ(lines.at(0), QStringLiteral("time,address,Actual Distance,Echo Received,Output Voltage,"
                                              "Relay 1 State,Relay 2 State,lost"));
        static const QRegularExpression row(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}[+-]\\d\\d:\\d\\d,1,23.45,"
                           "Yes,5.12,On,Off,0$"));
        EXPECT_TRUE(row.match(lines.at(1)).hasMatch()) << lines.at(1).toStdString();
        EXPECT_NE(Messages().find("ztv-ctl: 4 rounds, 0 of 9 replies lost (0 damaged), "), std::string::npos);
    }
}

TEST_F(WatchTest, PrintsRawNumbersAndTextWithUnits) {
    StartSensor();
    EXPECT_EQ(Ctl({"watch", "--raw", "29", "28", "29", "--every", "700", "--for", "1"}), ExitStatus::Done);
    const std::string raw = Results();
    EXPECT_EQ(LinesOf(raw).at(0), QStringLiteral("time,address,Far Distance,Near Distance,lost"));
    EXPECT_EQ(RowsOf(raw).at(1).cells, "1,36000,1200");
    EXPECT_EQ(Ctl({"--format", "text", "watch", "29", "clock out", "--every", "700", "--for", "1"}),
              ExitStatus::Done);
    const QStringList lines = LinesOf(Results());
    EXPECT_EQ(lines.at(0), QStringLiteral("time                           Far Distance  Clock Out  lost"));
    EXPECT_EQ(lines.at(1).mid(31), QStringLiteral("360.00\"       Off        0"));
}

TEST_F(WatchTest, PrintsOneJsonObjectALine) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] { sensor.Faults().drop = requests_ == 3 ? 1 : 0; };
    EXPECT_EQ(
        Ctl({"--format", "json", "--timeout", "50", "watch", "32", "38", "--every", "300", "--for", "1"}),
        ExitStatus::Done);
    const QStringList lines = LinesOf(Results());
    ASSERT_EQ(lines.size(), 4);
    const auto object = [&](int line) { return QJsonDocument::fromJson(lines.at(line).toUtf8()).object(); };
    EXPECT_EQ(object(0).value(QStringLiteral("Actual Distance")), QJsonValue(10.02));
    EXPECT_EQ(object(0).value(QStringLiteral("lost")), QJsonValue(0));
    EXPECT_TRUE(object(1).value(QStringLiteral("Actual Distance")).isNull());
    EXPECT_TRUE(object(1).value(QStringLiteral("Echo Received")).isNull());
    EXPECT_EQ(object(1).value(QStringLiteral("lost")), QJsonValue(1));
    EXPECT_EQ(object(2).value(QStringLiteral("Actual Distance")), QJsonValue(10.05)); // asked the mode first
}

TEST_F(WatchTest, ALostReplyOfTwoEmptiesOnlyItsOwnCells) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] { sensor.Faults().drop = requests_ == 5 ? 1 : 0; }; // the mode, two, one, and this one
    EXPECT_EQ(Ctl({"--timeout", "50", "watch", "--raw", "32", "95", "--every", "300", "--for", "1"}),
              ExitStatus::Done);
    const std::vector<WatchedRow> rows = RowsOf(Results());
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(rows[0].cells, "1,1002,0");
    EXPECT_EQ(rows[1].cells, "1,1004,");
    EXPECT_EQ(rows[1].lost, 1);
    EXPECT_EQ(rows[2].cells, "1,1007,0");
    EXPECT_EQ(rows[3].lost, 1);
}

TEST_F(WatchTest, ARowHasTheTimeOfItsReply) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] { sensor.Faults().drop = requests_ == 5 ? 1 : 0; };
    EXPECT_EQ(Ctl({"--timeout", "2000", "watch", "--raw", "32", "95", "--every", "300", "--for", "1"}),
              ExitStatus::Done);
    const QStringList lines = LinesOf(Results());
    const auto time = [&](int line) {
        return QDateTime::fromString(lines.at(line).section(u',', 0, 0), Qt::ISODateWithMs);
    };
    ASSERT_EQ(lines.size(), 1 + 2); // the second round took longer than it all was to
    EXPECT_LT(time(1).msecsTo(time(2)), 2000);
}

TEST_F(WatchTest, NeverPrintsAnOldOrWrongValueOnABadLine) {
    for (const std::vector<const char *> &faults : {std::vector{"drop 0.3"},
                                                    {"corrupt 0.3"},
                                                    {"drop 0.2", "corrupt 0.2"},
                                                    {"latency 25"},
                                                    {"latency 45"},
                                                    {"echo on"},
                                                    {"echo on", "corrupt 0.2"},
                                                    {"pace on", "drop 0.2"}}) {
        requests_ = 0;
        sim::SensorOptions options;
        options.addressing = static_cast<int>(sensors_.size() % 2);
        sim::SimulatedSensor &sensor = StartSensor(options);
        CountInDistance(sensor);
        for (const char *fault : faults) {
            EXPECT_EQ(sensor.Execute(QString::fromLatin1(fault)), QString());
        }
        Ctl({"--timeout", "30", "watch", "--raw", "32", "--every", "0", "--for", "1"});
        ExpectNoOldValue(RowsOf(Results()));
        Messages();
    }
}

TEST_F(WatchTest, ASensorThatFallsSilentLeavesEmptyRows) {
    for (const char *fault : {"mute on", "baud 9600", "parity E1", "address 7"}) {
        requests_ = 0;
        sim::SimulatedSensor &sensor = StartSensor();
        CountInDistance(sensor);
        whenAsked_ = [&] {
            if (requests_ == 4) {
                sensor.Execute(QString::fromLatin1(fault));
            }
        };
        EXPECT_EQ(Ctl({"--timeout", "30", "watch", "--raw", "32", "--every", "100", "--for", "1"}),
                  ExitStatus::Done);
        const std::vector<WatchedRow> rows = RowsOf(Results());
        ASSERT_GE(rows.size(), 5U);
        EXPECT_EQ(rows[1].cells, "1,1003") << fault;
        EXPECT_EQ(rows.back().cells, "1,") << fault;
        ExpectNoOldValue(rows);
        whenAsked_ = nullptr;
    }
}

TEST_F(WatchTest, FollowsASensorThatNumbersItsRegistersDifferently) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] {
        if (requests_ == 3) {
            sensor.Execute(QStringLiteral("addressing 1"));
            sensor.Faults().drop = 1; // as another sensor is plugged in
        } else {
            sensor.Faults().drop = 0;
        }
    };
    EXPECT_EQ(Ctl({"--timeout", "30", "watch", "--raw", "32", "--every", "200", "--for", "1"}),
              ExitStatus::Done);
    const std::vector<WatchedRow> rows = RowsOf(Results());
    ASSERT_EQ(rows.size(), 5U);
    EXPECT_EQ(rows[1].cells, "1,");
    EXPECT_EQ(rows[2].cells, "1,1005");
}

TEST_F(WatchTest, ALongPeriodAsksForTheAddressingModeEachTime) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    EXPECT_EQ(Ctl({"watch", "--raw", "32", "--every", "2100", "--for", "3"}), ExitStatus::Done);
    EXPECT_EQ(RowsOf(Results()).at(1).cells, "1,1004");
}

TEST_F(WatchTest, SurvivesAPulledAdapter) {
    sim::SensorOptions options;
    const QTemporaryDir folder;
    options.link = folder.filePath(QStringLiteral("port"));
    sim::SimulatedSensor &sensor = StartSensor(options);
    device_ = options.link;
    CountInDistance(sensor);
    QTimer again;
    again.setSingleShot(true);
    QObject::connect(&again, &QTimer::timeout, [&] { EXPECT_EQ(sensor.Plug(), QString()); });
    whenAsked_ = [&] {
        if (requests_ == 4) {
            sensor.Unplug();
            again.start(700);
        }
    };
    EXPECT_EQ(Ctl({"watch", "--raw", "32", "--every", "0", "--for", "2"}), ExitStatus::Done);
    const std::vector<WatchedRow> rows = RowsOf(Results());
    const auto empty = std::ranges::count(rows, "1,", &WatchedRow::cells);
    EXPECT_GE(empty, 2);
    EXPECT_LE(empty, 10); // a gone device takes no time, but a round does
    EXPECT_EQ(rows[1].cells, "1,1003");
    EXPECT_EQ(rows[2].cells, "1,");
    EXPECT_EQ(rows.back().cells, "1," + std::to_string(1000 + requests_));
    ExpectNoOldValue(rows);
}

TEST_F(WatchTest, ReadsSeveralSensorsEachRound) {
    SharedLine line;
    for (const int address : {3, 5}) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = address == 3 ? 0 : 1;
        StartSensor(options).SetRegister(28, 1000 + address);
        line.Join(*sensors_.back());
    }
    device_ = line.Path();
    EXPECT_EQ(Ctl({"--address", "3-5", "--timeout", "50", "watch", "28", "--every", "600", "--for", "1"}),
              ExitStatus::NoConnection);
    const std::vector<WatchedRow> rows = RowsOf(Results());
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[3].cells, "3,10.03");
    EXPECT_EQ(rows[4].cells, "4,");
    EXPECT_EQ(rows[4].lost, 2);
    EXPECT_EQ(rows[5].cells, "5,10.05");
    EXPECT_EQ(rows[5].lost, 0);
    EXPECT_NE(Messages().find("address 4: no good reply, but: Timeout\n"), std::string::npos);
}

TEST_F(WatchTest, ARefusalIsAnEmptyRowOfItsOwn) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] { sensor.Faults().exception = requests_ == 3 ? 2 : 0; };
    EXPECT_EQ(Ctl({"watch", "--raw", "32", "--every", "300", "--for", "1"}), ExitStatus::Done);
    const std::vector<WatchedRow> rows = RowsOf(Results());
    EXPECT_EQ(rows.at(1).cells, "1,");
    EXPECT_EQ(rows.at(1).lost, 0);
    EXPECT_EQ(rows.at(2).cells, "1,1004");
    EXPECT_NE(Messages().find("0 of 5 replies lost (0 damaged), 1 refused"), std::string::npos);
    whenAsked_ = nullptr;
    sensor.Faults().exception = 2;
    EXPECT_EQ(Ctl({"watch", "--every", "600", "--for", "1"}), ExitStatus::Refused);
}

TEST_F(WatchTest, DamageIsCountedAmongTheLost) {
    sim::SimulatedSensor &sensor = StartSensor();
    CountInDistance(sensor);
    whenAsked_ = [&] { sensor.Faults().corrupt = requests_ == 3 ? 1 : 0; };
    EXPECT_EQ(Ctl({"watch", "--raw", "32", "--every", "400", "--for", "1"}), ExitStatus::Done);
    EXPECT_EQ(RowsOf(Results()).at(1).cells, "1,");
    EXPECT_NE(Messages().find("3 rounds, 1 of 5 replies lost (1 damaged), "), std::string::npos);
}

TEST_F(WatchTest, ShowsTheTimeLeftWhereSomeoneReads) {
    StartSensor();
    EXPECT_EQ(Ctl({"watch", "--every", "400", "--for", "1"}, true), ExitStatus::Done);
    EXPECT_EQ(LinesOf(Results()).size(), 1 + 3);
    EXPECT_NE(Messages().find("\r1 rounds, 1 s left"), std::string::npos);
    EXPECT_EQ(Ctl({"--quiet", "watch", "--every", "400", "--for", "1"}, true), ExitStatus::Done);
    EXPECT_EQ(Messages(), "");
    EXPECT_EQ(Ctl({"watch", "--every", "400", "--for", "1"}), ExitStatus::Done);
    EXPECT_EQ(Messages().find('\r'), std::string::npos);
}

TEST_F(WatchTest, WrongUseSaysWhatWouldBeRight) {
    const sim::SimulatedSensor &sensor = StartSensor();
    for (const std::vector<const char *> &words : {std::vector{"watch", "--for", "0"},
                                                   {"watch", "--for", "soon"},
                                                   {"watch", "--every", "-1"},
                                                   {"watch", "--every", "fast"},
                                                   {"watch", "Near Distanze"},
                                                   {"trace", "--for", "99999999999d"}}) {
        EXPECT_EQ(Ctl(words), ExitStatus::WrongUse);
        EXPECT_EQ(std::ranges::count(std::string(Messages()), '\n'), 1);
        EXPECT_EQ(Results(), "");
    }
    EXPECT_TRUE(sensor.Requests().empty());
    device_ = QStringLiteral("/dev/nothing");
    EXPECT_EQ(Ctl({"watch"}), ExitStatus::NoConnection);
    EXPECT_EQ(Results(), "");
}

TEST_F(CtlProgramTest, WatchEndsInGoodOrderBySignals) {
    for (const char *signal : {"INT", "TERM", "HUP"}) {
        const std::string line = std::string("coproc $ctl watch --every 50; read -r h <&${COPROC[0]}; "
                                             "read -r r <&${COPROC[0]}; kill -") +
                                 signal +
                                 " $COPROC_PID; cat <&${COPROC[0]} > /dev/null; wait $COPROC_PID; echo $?";
        EXPECT_EQ(Shell(line.c_str()), 0);
        EXPECT_EQ(results_, "0\n") << signal;
        EXPECT_NE(messages_.find(" rounds, 0 of "), std::string::npos) << messages_;
    }
}

TEST_F(CtlProgramTest, WatchThatNeverGotAReplyHadNoConnection) {
    EXPECT_EQ(Shell("$ctl --address 9 watch --for 1"), 3);
    EXPECT_EQ(Shell("$ctl --address 9 --quiet watch --for 1 > /dev/null"), 3);
    EXPECT_EQ(messages_, "ztv-ctl: address 9: no good reply, but: Timeout\n");
}

TEST_F(CtlProgramTest, WatchEndsQuietlyWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("$ctl watch --every 50 | head -n 3 | wc -l"), 0);
    EXPECT_EQ(results_, "3\n");
    EXPECT_EQ(messages_, "");
}

TEST_F(CtlProgramTest, WatchEndsBeforeItsNextRowWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("for command in watch trace; do "
                    "timeout 4 $ctl --format csv $command 28 --every 3600000 | head -n 2 | wc -l; "
                    "echo ${PIPESTATUS[0]}; done"),
              0);
    EXPECT_EQ(results_, "2\n141\n2\n141\n");
    EXPECT_EQ(messages_, "");
}

TEST_F(CtlProgramTest, WatchShowsNoProgressAmongItsRows) {
    const std::string onTerminal = "python3 -c 'import pty,sys; pty.spawn([\"sh\", \"-c\", sys.argv[1]])' ";
    EXPECT_EQ(Shell((onTerminal + "\"$ctl watch --every 400 --for 1\"").c_str()), 0);
    EXPECT_NE(results_.find(",lost\r\n"), std::string::npos) << results_ << messages_;
    EXPECT_EQ(results_.find(" s left"), std::string::npos) << results_;
    EXPECT_EQ(Shell((onTerminal + "\"$ctl watch --every 400 --for 1 > /dev/null\"").c_str()), 0);
    EXPECT_NE(results_.find("1 rounds, 1 s left"), std::string::npos) << results_;
}

TEST_F(CtlProgramTest, WatchOnAFullDiskFailsByFile) {
    EXPECT_EQ(Shell("$ctl watch > /dev/full"), 5);
    EXPECT_EQ(messages_, "ztv-ctl: The results can't be written: No space left on device\n");
}

TEST_F(CtlProgramTest, AnotherParserReadsWhatWatchAndTracePrint) {
    EXPECT_EQ(Shell("$ctl --format json --quiet watch --every 100 --for 1 | python3 -c 'import json,sys; "
                    "rows=[json.loads(l) for l in sys.stdin]; print(rows[0][\"address\"], len(rows[0]), "
                    "all(isinstance(r[\"Output Voltage\"], (int, float)) for r in rows))'"),
              0);
    EXPECT_EQ(results_, "1 8 True\n") << messages_;
    EXPECT_EQ(Shell("$ctl --quiet watch --every 100 --for 1 | python3 -c 'import csv,sys,datetime; "
                    "rows=list(csv.DictReader(sys.stdin)); "
                    "datetime.datetime.fromisoformat(rows[0][\"time\"]); print(rows[0][\"lost\"], "
                    "float(rows[0][\"Output Voltage\"]) >= 0)'"),
              0);
    EXPECT_EQ(results_, "0 True\n") << messages_;
    EXPECT_EQ(
        Shell("$ctl --format json --quiet trace 28 --for 1 | python3 -c 'import json,sys; "
              "rows=[json.loads(l) for l in sys.stdin]; print(rows[3][\"meaning\"], rows[2][\"bytes\"], "
              "rows[2][\"milliseconds\"])'"),
        0);
    EXPECT_EQ(results_, "27 = 1200 01 03 00 1B 00 01 F4 0D None\n") << messages_;
}

} // namespace ztv
