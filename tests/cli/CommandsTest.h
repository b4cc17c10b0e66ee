#pragma once

#include "cli/Commands.h"
#include "sim/SimulatedSensor.h"
#include "tests/helpers/TestPresets.h"

#include <QTemporaryDir>
#include <cstdio>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace ztv {

using Writes = std::vector<std::pair<int, int>>; // parameter and value

// Returns true for the functions that write: one register, or several.
inline bool IsWrite(const QByteArray &request) {
    return request.at(1) == 6 || request.at(1) == 16;
}

// The commands against simulated sensors and a foreign slave, each on a pseudo terminal.
class CommandsTest : public testing::Test {
protected:
    CommandsTest() : previous_(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit());
    }
    ~CommandsTest() override {
        qputenv("XDG_CONFIG_HOME", previous_);
        std::fclose(results_);
        std::fclose(messages_);
    }

    sim::SimulatedSensor &StartSensor(const sim::SensorOptions &given = {}) {
        sim::SensorOptions options = given;
        options.presets = ShippedPresetsFolder() + QStringLiteral("/Presets.fil");
        sensors_.push_back(std::make_unique<sim::SimulatedSensor>(options));
        EXPECT_EQ(sensors_.back()->Start(), QString());
        device_ = sensors_.back()->Path();
        return *sensors_.back();
    }

    sim::SimulatedSensor &StartAt(int address, int addressing = 1) {
        sim::SensorOptions options;
        options.address = address;
        options.addressing = addressing;
        return StartSensor(options);
    }

    // Runs a command line, with the line's device as the port if there is one. `someoneReads`: the messages
    // go to a terminal.
    ExitStatus Ctl(std::vector<const char *> words, bool someoneReads = false) {
        const QByteArray device = device_.toLocal8Bit();
        if (!device.isEmpty()) {
            words.insert(words.begin(), {"--port", device.constData()});
        }
        words.insert(words.begin(), "ztv-ctl");
        try {
            const auto arguments = ParseArguments(static_cast<int>(words.size()), words.data());
            const SettingsStore settings(QStringLiteral("ZTV Link"));
            return RunCommand(arguments.value(),
                              {.settings = settings,
                               .programFolder = ShippedPresetsFolder(),
                               .results = results_,
                               .console = {.messages = messages_, .someoneReads = someoneReads}});
        } catch (const Failure &failure) {
            Console({.messages = messages_}, false).Fail(failure.Text());
            return failure.Status();
        }
    }

    std::string Results() { return Taken(results_); }
    std::string Messages() { return Taken(messages_); }

    std::vector<std::unique_ptr<sim::SimulatedSensor>> sensors_;
    QString device_;

private:
    // Returns what was printed since the last call.
    static std::string Taken(std::FILE *file) {
        std::rewind(file);
        std::string bytes;
        for (int letter = std::fgetc(file); letter != EOF; letter = std::fgetc(file)) {
            bytes += static_cast<char>(letter);
        }
        EXPECT_EQ(ftruncate(fileno(file), 0), 0);
        std::rewind(file);
        return bytes;
    }

    QTemporaryDir folder_;
    QByteArray previous_;
    std::FILE *results_ = std::tmpfile();
    std::FILE *messages_ = std::tmpfile();
};

} // namespace ztv
