#include "cli/Commands.h"
#include "cli/FileName.h"
#include "cli/FileSettings.h"
#include "model/ParamDefines.h"
#include "support/FileFunctions.h"
#include "support/SettingsFileType.h"

#include <QFileInfo>
#include <QSet>

namespace ztv {

namespace {

// As the program's dialog names a file to save. A folder or a device keeps its name, by which it is rejected.
QString WithSuffix(const QString &name) {
    const QFileInfo file(name);
    const bool maySave = !file.exists() || file.isFile();
    const bool hasNone = !file.fileName().isEmpty() && !file.fileName().contains(u'.');
    return maySave && hasNone ? name + SettingsFileType::Extension() : name;
}

FileName NameOf(const CommandRun &run) {
    const FileName name(run.Given().files.front());
    if (run.Addresses().size() > 1 && !name.DependsOnSensor()) {
        throw Failure(ExitStatus::WrongUse,
                      QStringLiteral("%1 sensors can't be saved to one file: put {address} or {serial} into "
                                     "\"%2\", as in line-{address}.ztv")
                          .arg(run.Addresses().size())
                          .arg(name.Text()));
    }
    return name;
}

void AskToReplace(CommandRun &run, const QString &name) {
    if (run.Given().yes || !FileFunctions::FileExists(name)) {
        return;
    }
    if (!run.Person().SomeoneAnswers()) {
        throw Failure(ExitStatus::File,
                      QStringLiteral("%1: the file exists; give --yes to replace it").arg(name));
    }
    run.Person().AskToGoOn(QStringLiteral("Replace %1?").arg(name));
}

// Fills the table as a poll does, but for the count of rows, by which the file is read.
void Take(ClassZentrova &zentrova, const SensorLine::Values &values) {
    for (const auto &[tag, value] : values) {
        zentrova.ParamUpdate(tag, tag == ParamDefines::ParameterCount ? zentrova.ParamCount() : value);
    }
}

} // namespace

ExitStatus Save(CommandRun &run) {
    constexpr qsizetype serialWidth = 6;
    const FileName name = NameOf(run);
    QSet<QString> saved;
    Report report(run.Format(),
                  {{.key = QStringLiteral("address")},
                   {.key = QStringLiteral("serial"), .width = serialWidth},
                   {.key = QStringLiteral("file")}},
                  run.Results());
    report.NameColumns();
    const ExitStatus status = run.ForEachSensor([&](SensorLine &line, std::int16_t address) {
        const SensorLine::Values values = line.Read(address, run.AllTags());
        const std::int32_t serialNumber = values.at(ParamDefines::SerialNumber);
        const QString file = WithSuffix(name.Of(address, serialNumber));
        if (saved.contains(file)) {
            throw Failure(ExitStatus::File,
                          QStringLiteral("address %1: %2 is another sensor's already; put {address} into the "
                                         "name")
                              .arg(address)
                              .arg(file));
        }
        saved.insert(file);
        if (!run.Given().dryRun) {
            AskToReplace(run, file);
            Take(run.Zentrova(), values);
            WithFile([&] { run.Zentrova().SaveFile(file); });
        }
        report.Add({CellOf(address), CellOf(serialNumber), CellOf(file)});
    });
    report.End();
    if (run.Given().dryRun) {
        run.Person().Remark(QStringLiteral("Nothing was written"));
    }
    return status;
}

} // namespace ztv
