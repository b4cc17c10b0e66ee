#include "cli/FileSettings.h"

#include "cli/Failure.h"
#include "cli/SensorPlace.h"
#include "model/ParamDefines.h"
#include "model/SettingsFile.h"
#include "model/ValueFormat.h"
#include "support/SettingsFileType.h"

#include <QFileInfo>
#include <algorithm>

namespace ztv {

namespace {

// Without the unit, which may have no text for a value beyond the range.
QString NumberOf(const ClassZentrova &zentrova, std::int16_t tag, std::int32_t raw) {
    return ValueFormat::Scaled(raw, zentrova.ParamDecimalPlaces(tag));
}

QString LimitedText(const ClassZentrova &zentrova, std::int16_t tag, std::int32_t inFile) {
    return QStringLiteral("parameter %1 (%2) is %3, which is beyond its limits; %4 is used")
        .arg(QString::number(tag), zentrova.ParamName(tag), NumberOf(zentrova, tag, inFile),
             NumberOf(zentrova, tag, zentrova.Limited(tag, inFile)));
}

// A file is saved with a suffix that nobody needs to type, but opened by its exact name.
void RejectForgottenSuffix(const QString &name) {
    const QString meant = name + SettingsFileType::Extension();
    if (!QFileInfo::exists(name) && QFileInfo::exists(meant)) {
        throw Failure(ExitStatus::File,
                      QStringLiteral("%1: there is no such file; did you mean \"%2\"?").arg(name, meant));
    }
}

} // namespace

std::vector<std::int16_t> SettingsRows::Compared(const CommandRun &run) {
    std::vector<std::int16_t> tags = run.AllTags();
    std::erase_if(tags, [&](std::int16_t tag) {
        return run.Zentrova().ParamReadOnly(tag) || ClassZentrova::IsCommand(tag) ||
               (ChangesTheWay(tag) && !run.Given().lineSettings);
    });
    return tags;
}

std::vector<std::int16_t> SettingsRows::Loaded(const CommandRun &run) {
    std::vector<std::int16_t> tags = Compared(run);
    std::erase(tags, ParamDefines::AddressingMode);
    return tags;
}

FileSettings::FileSettings(const QString &file, const std::vector<std::int16_t> &tags, CommandRun &run)
    : name(file) {
    const ClassZentrova &zentrova = run.Zentrova();
    const auto remark = [&](const QString &text) {
        run.Person().Remark(QStringLiteral("%1: %2").arg(name, text));
    };
    RejectForgottenSuffix(file);
    WithFile([&] {
        SettingsFileReader reader(file);
        const std::int16_t count = std::min(reader.Count(), zentrova.ParamCount());
        reader.ForEachValue(count, [&](std::int16_t tag, std::int32_t inFile) {
            const std::int32_t value = zentrova.Limited(tag, inFile);
            if (std::ranges::find(tags, tag) != tags.end()) {
                values[tag] = value;
                if (value != inFile) {
                    remark(LimitedText(zentrova, tag, inFile));
                }
            } else if (ChangesTheWay(tag)) {
                leftOut[tag] = value;
            }
        });
        reader.Notes(); // the program reads no file without them
        if (count < zentrova.ParamCount()) {
            remark(
                QStringLiteral("the file ends with parameter %1; those after it don't count").arg(count - 1));
        }
    });
    if (values.empty()) {
        throw Failure(ExitStatus::File, QStringLiteral("%1: the file has no settings").arg(name));
    }
}

FileOfSensor::FileOfSensor(const QString &name, const std::vector<std::int16_t> &tags, CommandRun &run)
    : name_(name),
      tags_(tags),
      run_(run) {
    if (!name_.DependsOnSensor()) {
        shared_.emplace(name, tags, run);
    }
}

FileSettings FileOfSensor::Of(std::int16_t address, const SensorLine::Values &sensor) const {
    return shared_ ? *shared_
                   : FileSettings(name_.Of(address, sensor.at(ParamDefines::SerialNumber)), tags_, run_);
}

} // namespace ztv
