#pragma once

#include "cli/Failure.h"
#include "sim/SimulatedSensor.h"
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

} // namespace ztv
