#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/Failure.h"
#include "cli/Report.h"
#include "cli/SensorLine.h"
#include "cli/Tracer.h"
#include "link/CommSettings.h"
#include "link/LineTap.h"
#include "model/ClassZentrova.h"
#include "support/SettingsStore.h"

#include <QString>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace ztv {

// The settings, files and streams around a command.
struct Surroundings {
    const SettingsStore &settings; // for what the arguments leave out
    QString programFolder;         // of Presets.fil
    std::FILE *results = stdout;
    Console::Streams console = {};
};

// One run of a command over the sensors that it names.
class CommandRun {
public:
    // Throws a Failure (wrong use) if there is no such port, and a Fault if the presets or the settings can't
    // be read. REQUIRES: both outlive the run.
    CommandRun(const Arguments &arguments, const Surroundings &around);

    const Arguments &Given() const { return arguments_; }
    std::FILE *Results() const { return around_.results; }
    const QString &ProgramFolder() const { return around_.programFolder; }
    std::FILE *Messages() const { return around_.console.messages; }
    Console &Person() { return console_; }

    // The table as the presets describe it. A command may fill it.
    ClassZentrova &Zentrova() { return zentrova_; }
    const ClassZentrova &Zentrova() const { return zentrova_; }

    // The line of the command: the options, and the program's settings for what they leave out. The device is
    // what to open; its number in `Comm` counts only for those who name ports by numbers.
    const QString &Device() const { return device_; }
    const CommSettings &Comm() const { return comm_; }
    const std::vector<std::int16_t> &Addresses() const { return addresses_; }

    ReportFormat Format(ReportFormat usual = ReportFormat::Text) const {
        return arguments_.format.value_or(usual);
    }

    // Why the device can't be opened, and which would be right.
    Failure PortFailure() const;

    // Says which line was tried, unless the arguments name the device: it may be another than the user
    // thinks.
    void RemarkOnStoredPort();

    // Says that a change is lost with the power.
    void RemarkOnUnsavedChange();

    // A person needs the address only where there are several.
    Report::Column AddressColumn() const;

    // Returns the parameters that the arguments name, or those of `otherwise` if they name none.
    std::vector<std::int16_t> WantedTags(const std::vector<std::int16_t> &otherwise) const;

    // Returns all rows but 0.
    std::vector<std::int16_t> AllTags() const;

    // Prints each frame of the line from now on if the arguments ask for it. REQUIRES: the line closes before
    // this.
    void Watch(LineTap &tap);

    // Throws what kept a frame from being printed, where the frames are the results.
    void ThrowIfUntraced() const { tracer_.ThrowIfFailed(); }

    // Opens the port. Throws a Failure (no connection).
    std::unique_ptr<SensorLine> OpenLine();

    // Does the work for each sensor. A failure of one is reported and doesn't stop the others; the status is
    // that of the first.
    using SensorWork = std::function<void(SensorLine &line, std::int16_t address)>;
    ExitStatus ForEachSensor(const SensorWork &work);

    // As above, on a line that is open already, and for these sensors.
    ExitStatus ForEachSensor(SensorLine &line, const std::vector<std::int16_t> &addresses,
                             const SensorWork &work);

private:
    const Arguments &arguments_;
    const Surroundings &around_;
    Console console_;
    ClassZentrova zentrova_;
    CommSettings comm_;
    QString device_;
    std::vector<std::int16_t> addresses_;
    Tracer tracer_;
};

} // namespace ztv
