#include "shell/StatusCells.h"

#include <gtest/gtest.h>
#include <ostream>
#include <utility>

namespace ztv {

using namespace std::chrono_literals;
using Kind = StatusCell::Kind;
using Shape = StatusCell::Shape;
using Tone = StatusCell::Tone;

void PrintTo(Tone tone, std::ostream *out) {
    const char *const names[] = {"Plain", "Dimmed", "Good", "Warning", "Alarm"};
    *out << names[static_cast<int>(tone)];
}

class StatusCellsTest : public testing::Test {
protected:
    // Online, polled a moment ago, with an echo.
    StatusCellsTest() {
        facts_.isOnline = true;
        facts_.state = ValueState::Live;
        facts_.tenthsBetweenPolls = 2;
        facts_.device = QStringLiteral("/dev/ttyUSB0");
        facts_.sensor = {.serialNumber = 10427,
                         .firmware = QStringLiteral("2.14"),
                         .echoStrength = 64,
                         .echoIsReceived = true,
                         .outputIsForced = false};
        facts_.lineQuality = 100;
        facts_.exchanges = 100;
    }

    std::optional<StatusCell> Find(Kind kind) const {
        for (const StatusCell &cell : CellsOf(facts_)) {
            if (cell.kind == kind) {
                return cell;
            }
        }
        return std::nullopt;
    }
    void ExpectCell(Kind kind, Tone tone, const char *text, const char *spoken) const {
        const auto cell = Find(kind);
        ASSERT_TRUE(cell) << text;
        EXPECT_EQ(cell->text, QString::fromUtf8(text));
        EXPECT_EQ(cell->spoken, QString::fromUtf8(spoken));
        EXPECT_EQ(cell->tone, tone) << text;
        EXPECT_FALSE(cell->action.isEmpty());
    }
    std::vector<std::string> Texts() const {
        std::vector<std::string> texts;
        for (const StatusCell &cell : CellsOf(facts_)) {
            texts.push_back(cell.text.toStdString());
        }
        return texts;
    }

    StatusFacts facts_;
};

using Texts = std::vector<std::string>;

TEST_F(StatusCellsTest, ComeByWorthSoThatWarningsOutliveHarmlessFacts) {
    EXPECT_EQ(Texts(), (ztv::Texts{"LIVE 0.2 s", "Line 100 %", "Addr 1", "1: ttyUSB0", "38400 N2",
                                   "#10427 FW 2.14", "Echo 64 %", "No file"}));
    facts_.unsaved = 3;
    facts_.sensor->outputIsForced = true;
    facts_.openFile = QStringLiteral("/home/me/roll.ztv");
    EXPECT_EQ(Texts(), (ztv::Texts{"LIVE 0.2 s", "3 not saved", "output forced", "Line 100 %", "Addr 1",
                                   "1: ttyUSB0", "38400 N2", "#10427 FW 2.14", "Echo 64 %", "roll.ztv"}));
}

TEST_F(StatusCellsTest, SayByWordShapeAndColourHowTheValuesRelateToTheSensor) {
    ExpectCell(Kind::State, Tone::Good, "LIVE 0.2 s", "Live: the last two polls were 0.2 s apart");
    EXPECT_EQ(Find(Kind::State)->shape, Shape::Circle);
    facts_.tenthsBetweenPolls = 15;
    ExpectCell(Kind::State, Tone::Good, "LIVE 1.5 s", "Live: the last two polls were 1.5 s apart");
    facts_.tenthsBetweenPolls.reset();
    ExpectCell(Kind::State, Tone::Good, "LIVE", "Live: the values are the sensor's");
    facts_.state = ValueState::Stale;
    facts_.age = 12s;
    ExpectCell(Kind::State, Tone::Warning, "STALE 12 s", "Stale: the values are 12 s old");
    EXPECT_EQ(Find(Kind::State)->shape, Shape::Triangle);
    facts_.age = 3700s;
    ExpectCell(Kind::State, Tone::Warning, "STALE 1 h 1 min", "Stale: the values are 1 h 1 min old");
    facts_.state = ValueState::Held;
    ExpectCell(Kind::State, Tone::Warning, "HELD", "Held: the sensor answers, but its values aren't shown");
    EXPECT_EQ(Find(Kind::State)->shape, Shape::Bars);
    facts_.state = ValueState::NeverRead;
    ExpectCell(Kind::State, Tone::Warning, "NOT READ", "Online, but the sensor hasn't been read");
    facts_.isOnline = false;
    for (const ValueState state : {ValueState::NeverRead, ValueState::Stale}) {
        facts_.state = state;
        ExpectCell(Kind::State, Tone::Dimmed, "OFFLINE", "Offline: the values aren't read");
        EXPECT_EQ(Find(Kind::State)->shape, Shape::Square);
    }
}

TEST_F(StatusCellsTest, CountTheChangesThatAreNotSaved) {
    EXPECT_FALSE(Find(Kind::NotSaved));
    facts_.unsaved = 1;
    ExpectCell(Kind::NotSaved, Tone::Warning, "1 not saved", "1 change not saved in the sensor");
    facts_.unsaved = 78;
    ExpectCell(Kind::NotSaved, Tone::Warning, "78 not saved", "78 changes not saved in the sensor");
}

TEST_F(StatusCellsTest, WarnOfAnOutputThatDoesNotFollowTheDistanceAlsoOffline) {
    EXPECT_FALSE(Find(Kind::OutputForced));
    facts_.sensor->outputIsForced = true;
    facts_.isOnline = false;
    facts_.state = ValueState::Stale;
    ExpectCell(Kind::OutputForced, Tone::Warning, "output forced",
               "The analog output is set by hand: it doesn't follow the distance");
    facts_.sensor.reset();
    EXPECT_FALSE(Find(Kind::OutputForced));
}

TEST_F(StatusCellsTest, RateTheLine) {
    const std::pair<int, Tone> rows[] = {{100, Tone::Plain},  {99, Tone::Plain}, {98, Tone::Warning},
                                         {90, Tone::Warning}, {89, Tone::Alarm}, {0, Tone::Alarm}};
    for (const auto &[percent, tone] : rows) {
        facts_.lineQuality = percent;
        ExpectCell(
            Kind::LineQuality, tone, qPrintable(QStringLiteral("Line %1 %").arg(percent)),
            qPrintable(QStringLiteral("Line quality: %1 % of the last 100 exchanges were answered well")
                           .arg(percent)));
    }
    facts_.lineQuality.reset();
    EXPECT_FALSE(Find(Kind::LineQuality));
    facts_.lineQuality = 50;
    facts_.isOnline = false;
    EXPECT_FALSE(Find(Kind::LineQuality));
}

TEST_F(StatusCellsTest, NameThePlaceOnTheLine) {
    facts_.comm = {.port = 9, .baud = 2, .parityStop = 3, .address = 17};
    ExpectCell(Kind::Address, Tone::Plain, "Addr 17", "Network address 17");
    ExpectCell(Kind::Device, Tone::Plain, "9: ttyUSB0", "Port 9, /dev/ttyUSB0");
    facts_.device = QStringLiteral("/dev/pts/0");
    ExpectCell(Kind::Device, Tone::Plain, "9: pts/0", "Port 9, /dev/pts/0");
    facts_.device = QStringLiteral("COM12");
    ExpectCell(Kind::Device, Tone::Plain, "9: COM12", "Port 9, COM12");
    ExpectCell(Kind::LineSetting, Tone::Plain, "9600 O1", "Line setting 9600 O1");
    facts_.device = QStringLiteral("/dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0");
    ExpectCell(Kind::Device, Tone::Plain, "9: usb-FTDI_…if00-port0",
               "Port 9, /dev/serial/by-id/usb-FTDI_FT232R_USB_UART_A50285BI-if00-port0");
    facts_.device = QStringLiteral("COM9");
    ExpectCell(Kind::Device, Tone::Plain, "9: COM9", "Port 9, COM9");
}

TEST_F(StatusCellsTest, NameTheSensorAndItsEchoOnceItWasReadAndDimThemWhileStale) {
    ExpectCell(Kind::Sensor, Tone::Plain, "#10427 FW 2.14", "Serial number 10427, firmware version 2.14");
    ExpectCell(Kind::Echo, Tone::Plain, "Echo 64 %", "Echo strength 64 %");
    facts_.sensor->echoIsReceived = false;
    ExpectCell(Kind::Echo, Tone::Warning, "No echo", "No echo: the sensor finds no target");
    facts_.state = ValueState::Stale;
    ExpectCell(Kind::Sensor, Tone::Dimmed, "#10427 FW 2.14", "Serial number 10427, firmware version 2.14");
    ExpectCell(Kind::Echo, Tone::Dimmed, "No echo", "No echo: the sensor finds no target");
    facts_.sensor.reset();
    EXPECT_FALSE(Find(Kind::Sensor));
    EXPECT_FALSE(Find(Kind::Echo));
}

TEST_F(StatusCellsTest, NameTheFileAndMarkChangesThatNoFileHas) {
    ExpectCell(Kind::File, Tone::Plain, "No file", "No settings file is open");
    facts_.fileChangesNeedSaving = true;
    ExpectCell(Kind::File, Tone::Plain, "No file *",
               "No settings file is open; there are changes that no file has");
    facts_.openFile = QStringLiteral("/home/me/machine 7.ztv");
    ExpectCell(Kind::File, Tone::Plain, "machine 7.ztv *",
               "Settings file /home/me/machine 7.ztv; there are changes that no file has");
    facts_.fileChangesNeedSaving = false;
    ExpectCell(Kind::File, Tone::Plain, "machine 7.ztv", "Settings file /home/me/machine 7.ztv");
    facts_.openFile = QStringLiteral("/home/me/a very long name of a machine in hall 7.ztv");
    ExpectCell(Kind::File, Tone::Plain, "a very long n… in hall 7.ztv",
               "Settings file /home/me/a very long name of a machine in hall 7.ztv");
}

TEST_F(StatusCellsTest, KeepRoomSoThatNumbersMoveNothing) {
    for (const auto &[kind, widest] :
         {std::pair(Kind::State, "STALE 00 s"), std::pair(Kind::LineQuality, "Line 100 %"),
          std::pair(Kind::Echo, "Echo 100 %")}) {
        EXPECT_EQ(Find(kind)->widest, QString::fromLatin1(widest));
    }
}

TEST(CellsThatFitTest, TheLastGoFirst) {
    const std::vector<int> widths = {100, 50, 60, 10};
    const std::pair<int, std::size_t> rows[] = {{-1, 0},  {0, 0},   {99, 0},  {100, 1}, {152, 1}, {153, 2},
                                                {215, 2}, {216, 3}, {228, 3}, {229, 4}, {5000, 4}};
    for (const auto &[room, count] : rows) {
        EXPECT_EQ(CellsThatFit(widths, 3, room), count) << room;
    }
    EXPECT_EQ(CellsThatFit({}, 3, 100), 0U);
}

TEST(UnsavedWordsTest, CountInWords) {
    EXPECT_EQ(UnsavedWords(0), QString());
    EXPECT_EQ(UnsavedWords(1), QStringLiteral("1 change not saved in the sensor"));
    EXPECT_EQ(UnsavedWords(2), QStringLiteral("2 changes not saved in the sensor"));
}

} // namespace ztv
