#include "cli/Commands.h"
#include "cli/Difference.h"
#include "cli/FileSettings.h"

namespace ztv {

namespace {

ExitStatus StatusOf(bool differs) {
    return differs ? ExitStatus::Differs : ExitStatus::Done;
}

ExitStatus DiffFiles(CommandRun &run) {
    const std::vector<std::int16_t> tags = SettingsRows::Compared(run);
    const QStringList &files = run.Given().files;
    for (const QString &file : files) {
        if (FileName(file).DependsOnSensor()) {
            throw Failure(ExitStatus::WrongUse,
                          QStringLiteral("\"%1\" names a sensor's file, but two files are compared without "
                                         "a sensor; give the whole name")
                              .arg(file));
        }
    }
    const FileSettings first(files.at(0), tags, run);
    const FileSettings second(files.at(1), tags, run);
    const std::vector<Difference> differences = DifferencesOf(first.values, second.values);
    DifferenceReport report(run, QStringLiteral("first"), QStringLiteral("second"), false);
    report.Add(differences);
    report.End();
    return StatusOf(!differences.empty());
}

ExitStatus DiffSensors(CommandRun &run) {
    const FileOfSensor files(run.Given().files.front(), SettingsRows::Compared(run), run);
    DifferenceReport report(run, QStringLiteral("sensor"), QStringLiteral("file"), true);
    bool differs = false;
    const ExitStatus status = run.ForEachSensor([&](SensorLine &line, std::int16_t address) {
        const SensorLine::Values sensor = line.Read(address, run.AllTags());
        const std::vector<Difference> differences = DifferencesOf(sensor, files.Of(address, sensor).values);
        differs = differs || !differences.empty();
        report.Add(differences, address);
    });
    report.End();
    return status == ExitStatus::Done ? StatusOf(differs) : status;
}

} // namespace

ExitStatus Diff(CommandRun &run) {
    return run.Given().files.size() > 1 ? DiffFiles(run) : DiffSensors(run);
}

} // namespace ztv
