#include "cli/Console.h"
#include "cli/Interruption.h"
#include "model/ClassZentrova.h"
#include "model/ParamDefines.h"
#include "tests/cli/CommandsTest.h"
#include "tests/cli/CtlProgramTest.h"
#include "tests/helpers/Files.h"
#include "tests/helpers/ModbusServer.h"
#include "tests/helpers/Printers.h"
#include "tests/helpers/SharedLine.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <algorithm>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

namespace ztv {

namespace {

using Writes = std::vector<std::pair<int, int>>;

} // namespace

class HostileUseTest : public CommandsTest {
protected:
    sim::SimulatedSensor &StartAt(int address) {
        sim::SensorOptions options;
        options.address = address;
        return StartSensor(options);
    }

    // Expects one line that contains the text, and no request.
    void ExpectWrongUse(const std::vector<const char *> &words, const std::string &text) {
        EXPECT_EQ(Ctl(words), ExitStatus::WrongUse) << text;
        const std::string messages = Messages();
        EXPECT_NE(messages.find(text), std::string::npos) << messages;
        EXPECT_EQ(std::ranges::count(messages, '\n'), 1) << messages;
        EXPECT_EQ(Results(), "");
        EXPECT_TRUE(sensors_.back()->Requests().empty()) << text;
    }

    QTemporaryDir files_;
};

// Command lines. ------------------------------------------------------------------------------------

TEST_F(HostileUseTest, ASecondCommandDoesNotReplaceTheFirst) {
    StartSensor();
    ExpectWrongUse({"set", "28=13", "store"}, "\"store\" assigns nothing");
    ExpectWrongUse({"get", "28", "info"}, "There is no parameter \"info\"");
    ExpectWrongUse({"store", "reinit"}, "store doesn't accept \"reinit\"");
}

TEST_F(HostileUseTest, AFileMayHaveTheNameOfACommand) {
    StartSensor();
    const QByteArray name = files_.filePath(QStringLiteral("store")).toLocal8Bit();
    const QString before = QDir::currentPath();
    QDir::setCurrent(files_.path());
    EXPECT_EQ(Ctl({"save", "store"}), ExitStatus::Done);
    QDir::setCurrent(before);
    EXPECT_TRUE(QFile::exists(QString::fromLocal8Bit(name) + QStringLiteral(".ztv")));
    EXPECT_TRUE(sensors_.back()->Writes().empty());
}

TEST_F(HostileUseTest, AnEmptyValueOfAnOptionIsNotTheUsualOne) {
    StartSensor();
    for (const char *option : {"--address", "--baud", "--parity", "--format"}) {
        ExpectWrongUse({option, "", "set", "28=13"}, std::string(option) + ": the value is empty");
    }
    device_.clear();
    ExpectWrongUse({"--port", "", "get", "28"}, "--port: the value is empty");
}

TEST_F(HostileUseTest, ANameInBracketsIsNoList) {
    StartSensor();
    ExpectWrongUse({"get", "[28,29]"}, "There is no parameter \"[28,29]\"");
    ExpectWrongUse({"set", "[28=13,29=300]"}, "There is no parameter \"[28\"");
    ExpectWrongUse({"info", "[a]"}, "info doesn't accept \"[a]\"");
    const QString before = QDir::currentPath();
    QDir::setCurrent(files_.path());
    EXPECT_EQ(Ctl({"save", "[line 1]"}), ExitStatus::Done);
    EXPECT_EQ(Ctl({"diff", "[line 1].ztv", "[line 1].ztv"}), ExitStatus::Done);
    QDir::setCurrent(before);
    EXPECT_TRUE(QFile::exists(files_.filePath(QStringLiteral("[line 1].ztv"))));
}

TEST_F(HostileUseTest, APercentSignInAWrongAddressIsOnlyItself) {
    StartSensor();
    ExpectWrongUse({"--address", "%2", "get"},
                   "\"%2\" is no address; use a number from 1 to 247, a list (1,5,9) or a range (1-10)");
}

TEST_F(HostileUseTest, AFailureIsOneLineAlsoWithANewlineInAName) {
    StartSensor();
    const QByteArray name = files_.filePath(QStringLiteral("two\nlines\x1b[1m.ztv")).toLocal8Bit();
    EXPECT_EQ(Ctl({"save", name.constData()}), ExitStatus::Done);
    EXPECT_EQ(Ctl({"save", name.constData()}), ExitStatus::File);
    const std::string messages = Messages();
    EXPECT_EQ(std::ranges::count(messages, '\n'), 1) << messages;
    EXPECT_EQ(messages.find('\x1b'), std::string::npos);
    EXPECT_NE(messages.find("two?lines"), std::string::npos) << messages;
}

// Writes. -------------------------------------------------------------------------------------------

TEST_F(HostileUseTest, ANearDistanceThatReturnsToItsPresentValueIsWritten) {
    sim::SimulatedSensor &sensor = StartSensor();
    ASSERT_EQ(Ctl({"set", "39=Hyperbolic", "29=300"}), ExitStatus::Done);
    ASSERT_EQ(sensor.Register(28), 28950);
    sensor.ClearRecords();
    Results();
    EXPECT_EQ(Ctl({"--format", "csv", "set", "28=20", "29=300"}), ExitStatus::Done) << Messages();
    EXPECT_EQ(sensor.Writes(), (Writes{{28, 2000}, {28, 28950}}));
    EXPECT_EQ(sensor.Register(28), 28950);
}

TEST_F(HostileUseTest, ARefusalOfARepeatedWriteIsSettledByReadingBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    int writes = 0;
    sensor.OnRequest([&](const QByteArray &request) {
        writes += IsWrite(request) ? 1 : 0;
        sensor.Faults().drop = IsWrite(request) && writes == 1 ? 1 : 0; // written, but not confirmed
        sensor.Faults().exception = IsWrite(request) && writes == 2 ? 5 : 0;
    });
    EXPECT_EQ(Ctl({"--timeout", "50", "set", "28=13"}), ExitStatus::Done) << Messages();
    EXPECT_EQ(sensor.Register(28), 1300);
}

TEST_F(HostileUseTest, ARefusalOfARepeatedLoadIsSettledByReadingBack) {
    sim::SimulatedSensor &sensor = StartSensor();
    const QByteArray file = files_.filePath(QStringLiteral("a.ztv")).toLocal8Bit();
    ASSERT_EQ(Ctl({"save", file.constData()}), ExitStatus::Done);
    sensor.SetRegister(28, 1500);
    int writes = 0;
    sensor.OnRequest([&](const QByteArray &request) {
        writes += IsWrite(request) ? 1 : 0;
        sensor.Faults().drop = IsWrite(request) && writes == 1 ? 1 : 0;
        sensor.Faults().exception = IsWrite(request) && writes == 2 ? 5 : 0;
    });
    EXPECT_EQ(Ctl({"--timeout", "50", "load", "--yes", file.constData()}), ExitStatus::Done) << Messages();
    EXPECT_EQ(sensor.Register(28), 1200);
}

TEST_F(HostileUseTest, AnAddressIsTakenAlsoIfTheSensorThereAnswersBadly) {
    using Trouble = void (*)(sim::LineFaults & faults, int request);
    const std::vector<Trouble> troubles = {
        [](sim::LineFaults &line, int request) { line.drop = request == 1 ? 1 : 0; },
        [](sim::LineFaults &line, int) { line.corrupt = 1; },
        [](sim::LineFaults &line, int) { line.exception = 2; },
    };
    for (const Trouble &trouble : troubles) {
        SharedLine line;
        line.Join(StartAt(3));
        sim::SimulatedSensor &own = *sensors_.back();
        line.Join(StartAt(5));
        sim::SimulatedSensor &other = *sensors_.back();
        int requests = 0;
        other.OnRequest([&](const QByteArray &request) {
            if (request.at(0) == 5) {
                trouble(other.Faults(), ++requests);
            }
        });
        const QByteArray file = files_.filePath(QStringLiteral("five.ztv")).toLocal8Bit();
        ClassZentrova settings(ShippedPresetsFolder());
        settings.ParamUpdate(ParamDefines::NetworkAddress, 5);
        settings.SaveFile(QString::fromLocal8Bit(file));
        device_ = line.Path();

        const char *taken = "another sensor answers";
        EXPECT_EQ(Ctl({"--address", "3", "--timeout", "50", "set", "65=5"}), ExitStatus::Refused);
        EXPECT_NE(Messages().find(taken), std::string::npos);
        requests = 0;
        EXPECT_EQ(
            Ctl({"--address", "3", "--timeout", "50", "load", "--yes", "--line-settings", file.constData()}),
            ExitStatus::Refused);
        EXPECT_NE(Messages().find(taken), std::string::npos);
        EXPECT_TRUE(own.Writes().empty());
        Results();
    }
}

TEST_F(HostileUseTest, ReinitResetsOnlyTheSensorThatWasAskedAbout) {
    sim::SimulatedSensor &sensor = StartSensor();
    sensor.SetRegister(28, 1500);
    bool isRead = false;
    sensor.OnRequest([&](const QByteArray &request) {
        const bool readsAll = request.at(1) == 3 && request.at(5) > 50;
        if (isRead && !readsAll) {
            sensor.SetRegister(ParamDefines::SerialNumber, 4711); // another one, after the answer
        }
        isRead = isRead || readsAll;
    });
    EXPECT_EQ(Ctl({"reinit", "--yes"}), ExitStatus::Refused);
    EXPECT_NE(
        Messages().find("ztv-ctl: address 1: another sensor answers there by now; nothing was written\n"),
        std::string::npos);
    EXPECT_TRUE(sensor.Writes().empty());
    EXPECT_EQ(sensor.Register(28), 1500);
}

TEST_F(HostileUseTest, ARefusalOfARepeatedStoreLeavesOpenWhetherTheFirstWasTaken) {
    sim::SimulatedSensor &sensor = StartSensor();
    int writes = 0;
    sensor.OnRequest([&](const QByteArray &request) {
        writes += IsWrite(request) ? 1 : 0;
        sensor.Faults().drop = IsWrite(request) && writes == 1 ? 1 : 0;
        sensor.Faults().exception = IsWrite(request) && writes > 1 ? 5 : 0;
    });
    EXPECT_EQ(Ctl({"--timeout", "50", "store"}), ExitStatus::NoConnection);
    EXPECT_EQ(Messages(), "ztv-ctl: address 1: no confirmation: it isn't known whether the sensor saved its "
                          "settings\n");
}

// Any words. ----------------------------------------------------------------------------------------

TEST_F(HostileUseTest, ASensorMayHoldAnyWords) {
    for (const int word : {0xFFFF, 0x8000, 0x7FFF, 0x5555}) {
        ModbusServer server(1);
        for (int address = 0; address < 100; ++address) {
            server.SetRegister(address, static_cast<std::uint16_t>(word));
        }
        device_ = server.Path();
        const QByteArray file = files_.filePath(QString::number(word)).toLocal8Bit() + ".ztv";
        for (const std::vector<const char *> &words : {std::vector<const char *>{"get"},
                                                       {"info"},
                                                       {"save", file.constData()},
                                                       {"set", "95=7", "--dry-run"},
                                                       {"reinit", "--dry-run"},
                                                       {"load", "--yes", "--dry-run", file.constData()}}) {
            EXPECT_EQ(Ctl(words), ExitStatus::Done) << word << ' ' << words.front() << Messages();
            Messages();
            Results();
        }
    }
}

// Questions and signals. ----------------------------------------------------------------------------

TEST(ConsoleTest, AnAnswerIsAWholeLine) {
    std::FILE *input = std::tmpfile();
    std::FILE *messages = std::tmpfile();
    std::fputs((std::string(99, 'n') + "y\nno\n").c_str(), input);
    std::rewind(input);
    Console console({.input = input, .messages = messages, .someoneAnswers = true}, false);
    EXPECT_THROW(console.AskToGoOn(QStringLiteral("Go on?")), Failure);
    EXPECT_THROW(console.AskToGoOn(QStringLiteral("Go on?")), Failure);
    std::fclose(input);
    std::fclose(messages);
}

TEST(InterruptionTest, ASignalCountsForItsOwnRunOnly) {
    {
        const Interruption interruption;
        std::raise(SIGTERM);
        EXPECT_THROW(ThrowIfInterrupted(), Interrupted);
    }
    EXPECT_NO_THROW(ThrowIfInterrupted());
}

// The program. --------------------------------------------------------------------------------------

class HostileShellTest : public CtlProgramTest {
protected:
    // Sends the signal as soon as a request comes that the condition holds for.
    template <typename Condition>
    int ShellInterrupted(const QString &words, const Condition &isMoment) {
        const QString pidFile = folder_.filePath(QStringLiteral("pid"));
        sensor_->OnRequest([pidFile, isMoment](const QByteArray &request) {
            if (isMoment(request)) {
                kill(ReadFile(pidFile).trimmed().toInt(), SIGINT);
            }
        });
        return Shell(
            (QStringLiteral("echo $$ > $XDG_CONFIG_HOME/pid; exec $ctl ") + words).toUtf8().constData());
    }
};

TEST_F(HostileShellTest, AClosedStreamLetsNothingPassForAReply) {
    for (const char *closed : {"2>&-", "<&- 2>&-"}) {
        EXPECT_EQ(Shell((std::string("$ctl --timeout 50 --address 9,8,1 get 28 ") + closed).c_str()), 3);
        EXPECT_EQ(results_, "1    28   Near Distance  12.00\"\n") << closed;
    }
    for (const char *closed : {">&-", "<&- >&-", "<&- >&- 2>&3"}) {
        EXPECT_EQ(Shell((std::string("exec 3>&2; $ctl set 28=13 ") + closed).c_str()), 5) << closed;
        EXPECT_NE(messages_.find("The results can't be written: Bad file descriptor"), std::string::npos)
            << messages_;
    }
}

TEST_F(HostileShellTest, ASignalLeavesOneJsonDocumentOfWhatWasDone) {
    const auto isSecond = [](const QByteArray &request) { return request.at(0) == 2; };
    EXPECT_EQ(ShellInterrupted(QStringLiteral("--format json --address 1-5 get 28"), isSecond), 128 + SIGINT);
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(results_));
    ASSERT_TRUE(document.isArray()) << results_;
    EXPECT_EQ(document.array().size(), 1);
}

TEST_F(HostileShellTest, APortThatDoesNotOpenLeavesOneJsonDocument) {
    EXPECT_EQ(Shell("${ctl% --port*} --port /dev/nothing --format json get 28"), 3);
    EXPECT_EQ(results_, "[\n]\n");
}

TEST_F(HostileShellTest, ASignalDuringAnUnconfirmedLoadLeavesNothingUnsaid) {
    const QString file = folder_.filePath(QStringLiteral("a.ztv"));
    ASSERT_EQ(Shell("$ctl save $XDG_CONFIG_HOME/a.ztv"), 0);
    sensor_->SetRegister(28, 1500);
    const auto isWrite = [this](const QByteArray &request) {
        sensor_->Faults().drop = IsWrite(request) ? 1 : sensor_->Faults().drop;
        return IsWrite(request);
    };
    EXPECT_EQ(ShellInterrupted(QStringLiteral("load --yes %1").arg(file), isWrite), 128 + SIGINT);
    EXPECT_EQ(messages_, "ztv-ctl: address 1: the settings were sent, but not read back\n");
    EXPECT_EQ(sensor_->Register(28), 1200);
}

} // namespace ztv
