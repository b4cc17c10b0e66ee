#include "cli/Failure.h"
#include "sim/SimulatedSensor.h"
#include "support/ProgramVersion.h"
#include "tests/helpers/TestPresets.h"
#include "tests/helpers/Wait.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace ztv {

// The program as a shell runs it.
class CtlProgramTest : public testing::Test {
protected:
    void SetUp() override {
        sim::SensorOptions options;
        options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
        sensor_.emplace(options);
        ASSERT_EQ(sensor_->Start(), QString());
    }

    // Runs a line of shell, in which "$ctl" is the program with the sensor's port.
    int Shell(const char *line) {
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), folder_.path());
        environment.insert(QStringLiteral("ctl"),
                           QStringLiteral(ZTV_BIN_DIR "/ztv-ctl --port ") + sensor_->Path());
        shell.setProcessEnvironment(environment);
        shell.start(QStringLiteral("bash"), {QStringLiteral("-c"), QString::fromLatin1(line)});
        EXPECT_TRUE(
            WaitUntil([&] { return shell.state() == QProcess::NotRunning; })); // the sensor needs this loop
        results_ = shell.readAllStandardOutput().toStdString();
        messages_ = shell.readAllStandardError().toStdString();
        return shell.exitCode();
    }

    std::optional<sim::SimulatedSensor> sensor_;
    QTemporaryDir folder_;
    std::string results_;
    std::string messages_;
};

TEST_F(CtlProgramTest, PrintsResultsAndMessagesApart) {
    EXPECT_EQ(Shell("$ctl --address 1,2 get 28"), static_cast<int>(ExitStatus::NoConnection));
    EXPECT_EQ(results_, "1    28   Near Distance  12.00\"\n");
    EXPECT_EQ(messages_, "ztv-ctl: address 2: Timeout\n");
}

TEST_F(CtlProgramTest, TellsAScriptHowItEnded) {
    EXPECT_EQ(Shell("$ctl get 28"), 0);
    EXPECT_EQ(Shell("$ctl get nothing"), 2);
    EXPECT_EQ(Shell("$ctl --address 9 get 28"), 3);
    sensor_->Execute(QStringLiteral("exception 2"));
    EXPECT_EQ(Shell("$ctl get 28"), 4);
}

TEST_F(CtlProgramTest, EndsQuietlyWhenItsReaderIsGone) {
    EXPECT_EQ(Shell("$ctl get | head -n 1"), 0);
    EXPECT_EQ(results_, "1    Save Command                0\n");
    EXPECT_EQ(messages_, "");
}

TEST_F(CtlProgramTest, PrintsItsVersionAndTheHelpOfEachCommand) {
    EXPECT_EQ(Shell("$ctl --version"), 0);
    EXPECT_EQ(results_, "ztv-ctl " + ProgramVersion().toStdString() + "\n");
    for (const char *command : {"ports", "info", "get"}) {
        EXPECT_EQ(Shell(("$ctl " + std::string(command) + " --help").c_str()), 0);
        EXPECT_NE(results_.find("Examples:\n  ztv-ctl "), std::string::npos) << command;
    }
}

} // namespace ztv
