#pragma once

#include "cli/CommandRun.h"
#include "cli/Failure.h"
#include "cli/FileName.h"
#include "cli/SensorLine.h"
#include "support/Fault.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The part of the table that files and sensors have in common: what the user sets.
namespace SettingsRows {

// Returns the settings; those of the line only if the arguments ask for them.
std::vector<std::int16_t> Compared(const CommandRun &run);

// As above, without the addressing mode: a request that is repeated after the sensor has taken another mode
// would write to the neighbours of the registers that it means.
std::vector<std::int16_t> Loaded(const CommandRun &run);

} // namespace SettingsRows

// The settings of a file, each limited to its row's range, and only those that are wanted and there.
struct FileSettings {
    // Remarks on values that are limited and rows that the file lacks. Throws a Failure (file).
    FileSettings(const QString &file, const std::vector<std::int16_t> &tags, CommandRun &run);

    QString name;
    SensorLine::Values values;
    SensorLine::Values leftOut; // settings of the line that aren't wanted
};

// The settings file of each sensor. It is read at once if it is the same one for all.
class FileOfSensor {
public:
    // REQUIRES: `run` outlives this.
    FileOfSensor(const QString &name, const std::vector<std::int16_t> &tags, CommandRun &run);

    // Returns the file for all sensors; null if each has its own.
    const FileSettings *Shared() const { return shared_ ? &*shared_ : nullptr; }

    // Returns the file of the sensor at `address`, which has these values.
    FileSettings Of(std::int16_t address, const SensorLine::Values &sensor) const;

private:
    FileName name_;
    std::vector<std::int16_t> tags_;
    CommandRun &run_;
    std::optional<FileSettings> shared_;
};

// Runs work on a file. Throws a Failure (file) for its fault.
template <typename Work>
void WithFile(const Work &work) {
    try {
        work();
    } catch (const Fault &fault) {
        QString text = fault.Description().simplified();
        if (text.endsWith(u'.')) { // a box shows sentences, a message is a line
            text.chop(1);
        }
        throw Failure(ExitStatus::File, text);
    }
}

} // namespace ztv
