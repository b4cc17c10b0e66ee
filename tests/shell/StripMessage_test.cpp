#include "shell/StripMessage.h"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

namespace ztv {

using namespace std::chrono_literals;
using Kind = StripMessage::Kind;

class StripMessageTest : public testing::Test {
protected:
    // Online, polled a moment ago, with an echo.
    StripMessageTest() {
        facts_.isOnline = true;
        facts_.age = 0s;
        facts_.device = QStringLiteral("/dev/ttyUSB0");
    }

    void ExpectMessage(Kind kind, const char *headline, const char *detail) {
        const auto message = WorstMessage(facts_);
        ASSERT_TRUE(message);
        EXPECT_EQ(message->kind, kind);
        EXPECT_EQ(message->headline, QString::fromUtf8(headline));
        EXPECT_EQ(message->detail, QString::fromUtf8(detail));
    }
    std::vector<StripAction> Actions() const { return WorstMessage(facts_)->actions; }

    StripFacts facts_;
};

TEST_F(StripMessageTest, IsNoneWhileAllIsWell) {
    EXPECT_EQ(WorstMessage(facts_), std::nullopt);
}

TEST_F(StripMessageTest, SaysWhoseValuesTheScreenShowsWhileNotConnected) {
    facts_.isOnline = false;
    facts_.age.reset();
    ExpectMessage(Kind::NotConnected, "Not connected", "The values are the factory's, not a sensor's");
    EXPECT_EQ(Actions(), (std::vector{StripAction::Online}));
    facts_.openFile = QStringLiteral("/home/me/machines/machine 7.ztv");
    ExpectMessage(Kind::NotConnected, "Not connected", "The values are those of machine 7.ztv");
    facts_.age = 75s;
    ExpectMessage(Kind::NotConnected, "Not connected", "The values are the last ones read, 1 min 15 s ago");
}

TEST_F(StripMessageTest, SaysThatTheSensorsValuesWereNotKept) {
    facts_.notBackedUp = QStringLiteral("/backups: no space left");
    ExpectMessage(Kind::NotBackedUp, "No backup of the sensor's values", "/backups: no space left");
    EXPECT_TRUE(Actions().empty());
    facts_.echoIsReceived = false;
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::NotBackedUp);
    facts_.silence = 12s;
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::NoAnswer);
}

TEST_F(StripMessageTest, SaysThatValuesWereChangedSinceTheyCame) {
    facts_.isOnline = false;
    facts_.hasEdits = true;
    facts_.age = 75s;
    ExpectMessage(Kind::NotConnected, "Not connected",
                  "The values are the last ones read, 1 min 15 s ago, with changes");
    facts_.age.reset();
    ExpectMessage(Kind::NotConnected, "Not connected",
                  "The values are the factory's, not a sensor's, with changes");
    facts_.openFile = QStringLiteral("machine 7.ztv");
    ExpectMessage(Kind::NotConnected, "Not connected", "The values are those of machine 7.ztv, with changes");
}

TEST_F(StripMessageTest, SaysNothingOfTheEchoWhileNotConnected) {
    facts_.echoIsReceived = false;
    ExpectMessage(Kind::NoEcho, "No echo", "The sensor finds no target: distance and output say nothing");
    facts_.isOnline = false;
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::NotConnected);
}

TEST_F(StripMessageTest, NamesThePlaceOnTheLineThatDoesNotAnswer) {
    facts_.silence = 12s;
    facts_.age = 12s;
    ExpectMessage(
        Kind::NoAnswer, "No answer for 12 s",
        "Address 1 on port 1 (/dev/ttyUSB0), 38400 N2. The values are the last ones read, 12 s ago");
    EXPECT_EQ(Actions(), (std::vector{StripAction::Communications, StripAction::Search,
                                      StripAction::GoOffline, StripAction::Help}));
    facts_.age.reset();
    facts_.comm = {.port = 9, .baud = 2, .parityStop = 3, .address = 17};
    ExpectMessage(
        Kind::NoAnswer, "No answer for 12 s",
        "Address 17 on port 9 (/dev/ttyUSB0), 9600 O1. The values are the factory's, not a sensor's");
    facts_.comm = {.port = 9, .baud = 7, .parityStop = -1, .address = 17};
    ExpectMessage(Kind::NoAnswer, "No answer for 12 s",
                  "Address 17 on port 9 (/dev/ttyUSB0), ? ?. The values are the factory's, not a sensor's");
}

TEST_F(StripMessageTest, TellsADamagedLineFromASilentOne) {
    facts_.repliesAreDamaged = true;
    EXPECT_EQ(WorstMessage(facts_), std::nullopt); // good replies still come often enough
    facts_.silence = 3s;
    EXPECT_EQ(WorstMessage(facts_)->headline, QStringLiteral("Only damaged answers for 3 s"));
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::NoAnswer); // with the same ways out
}

TEST_F(StripMessageTest, SaysLongTimesInMinutesAndHours) {
    const std::pair<std::chrono::seconds, const char *> rows[] = {{0s, "No answer for 0 s"},
                                                                  {59s, "No answer for 59 s"},
                                                                  {60s, "No answer for 1 min 0 s"},
                                                                  {3599s, "No answer for 59 min 59 s"},
                                                                  {3600s, "No answer for 1 h 0 min"},
                                                                  {3660s, "No answer for 1 h 1 min"},
                                                                  {360000s, "No answer for 100 h 0 min"}};
    for (const auto &[silence, headline] : rows) {
        facts_.silence = silence;
        EXPECT_EQ(WorstMessage(facts_)->headline, QString::fromLatin1(headline));
    }
}

TEST_F(StripMessageTest, WarnsOfACounterThatWillEndTheProgram) {
    facts_.timeouts = 29999;
    EXPECT_EQ(WorstMessage(facts_), std::nullopt);
    facts_.timeouts = 30000;
    ExpectMessage(Kind::CounterNearItsEnd, "30000 time-outs counted",
                  "The program closes when the count passes 32767");
    EXPECT_EQ(Actions().front(), StripAction::ResetCounters);
    facts_.crcErrors = 32767;
    ExpectMessage(Kind::CounterNearItsEnd, "32767 CRC errors counted",
                  "The program closes when the count passes 32767");
    facts_.isOnline = false; // still there, and still to be reset
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::CounterNearItsEnd);
}

TEST_F(StripMessageTest, NamesTheFileThatCouldNotBeOpenedOrSaved) {
    facts_.notOpened = {.name = QStringLiteral("/tmp/bad.ztv"),
                        .reason = QStringLiteral("Not a settings file.")};
    ExpectMessage(Kind::NotOpened, "bad.ztv couldn't be opened", "Not a settings file.");
    EXPECT_EQ(Actions(), (std::vector{StripAction::OpenFile}));
    facts_.notSaved = {.name = QStringLiteral("roll.ztv"), .reason = QStringLiteral("Disk full.")};
    ExpectMessage(Kind::NotSaved, "roll.ztv wasn't saved", "Disk full.");
    EXPECT_EQ(Actions(), (std::vector{StripAction::SaveAs}));
}

TEST_F(StripMessageTest, NamesTheValuesOfTheWizardThatTheSensorDidNotTake) {
    const auto value = [](const char *name, int tag, const char *asked, const char *held, bool isTaken) {
        return StripFacts::WizardValue{.name = QString::fromLatin1(name),
                                       .tag = static_cast<std::int16_t>(tag),
                                       .asked = QString::fromLatin1(asked),
                                       .held = QString::fromLatin1(held),
                                       .isTaken = isTaken};
    };
    facts_.wizardValues = {value("Far Distance", 29, "200.00\"", "300.00\"", false)};
    ExpectMessage(Kind::NotTaken, "The wizard's Far Distance wasn't taken",
                  "The sensor has Far Distance (29) 300.00\", not 200.00\"");
    EXPECT_EQ(Actions(), (std::vector{StripAction::StartWizard, StripAction::Dismiss}));
    facts_.wizardValues.push_back(value("Min Range", 24, "25.00\"", "6.00\"", false));
    facts_.wizardValues.push_back(value("Far Voltage", 37, "9.50V", "9.50V", true));
    facts_.wizardValues.push_back(value("Near Voltage", 36, "0.00V", "0.00V", true));
    ExpectMessage(
        Kind::NotTaken, "2 of the wizard's values weren't taken",
        "The sensor has Far Distance (29) 300.00\", not 200.00\"; Min Range (24) 6.00\", not 25.00\". "
        "Taken: Far Voltage, Near Voltage");
    facts_.isOnline = false;
    EXPECT_EQ(WorstMessage(facts_)->kind, Kind::NotConnected);
}

// Each fact is worse than all that come before it.
TEST_F(StripMessageTest, ShowsTheWorst) {
    const std::vector<std::pair<Kind, std::function<void()>>> byRisingSeverity = {
        {Kind::NoEcho, [this] { facts_.echoIsReceived = false; }},
        {Kind::NotOpened, [this] { facts_.notOpened = {.name = QStringLiteral("a.ztv"), .reason = {}}; }},
        {Kind::NotSaved, [this] { facts_.notSaved = {.name = QStringLiteral("b.ztv"), .reason = {}}; }},
        {Kind::NotTaken, [this] { facts_.wizardValues.emplace_back(); }},
        {Kind::ValuesHeld, [this] { facts_.valuesAreHeld = true; }},
        {Kind::AnotherSensor, [this] { facts_.anotherSensorAnswers = true; }},
        {Kind::NoAnswer, [this] { facts_.silence = 3s; }},
        {Kind::PortGone, [this] { facts_.portIsGone = true; }},
        {Kind::CounterNearItsEnd, [this] { facts_.timeouts = 32000; }},
    };
    for (const auto &[kind, happen] : byRisingSeverity) {
        happen();
        const auto message = WorstMessage(facts_);
        ASSERT_TRUE(message);
        EXPECT_EQ(message->kind, kind) << message->headline.toStdString();
        EXPECT_FALSE(message->actions.empty());
    }
}

} // namespace ztv
