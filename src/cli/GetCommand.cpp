#include "cli/Commands.h"
#include "cli/SensorPlace.h"
#include "model/ParamDefines.h"

#include <algorithm>

namespace ztv {

namespace {

constexpr qsizetype numberWidth = 3;

} // namespace

ExitStatus Get(CommandRun &run) {
    const ClassZentrova &zentrova = run.Zentrova();
    const bool raw = run.Given().raw;
    const std::vector<std::int16_t> tags = run.WantedTags(run.AllTags());
    qsizetype widest = 0;
    for (const std::int16_t tag : tags) {
        widest = std::max(widest, zentrova.ParamName(tag).size());
    }
    Report report(run.Format(),
                  {run.AddressColumn(),
                   {.key = QStringLiteral("parameter"), .width = numberWidth},
                   {.key = QStringLiteral("name"), .width = widest},
                   {.key = QStringLiteral("value"), .isForText = !raw},
                   {.key = QStringLiteral("raw"), .isForText = raw}},
                  run.Results());
    const ExitStatus status = run.ForEachSensor([&](SensorLine &line, std::int16_t address) {
        const SensorLine::Values values = line.Read(address, tags);
        for (const std::int16_t tag : tags) {
            const std::int32_t value = values.at(tag);
            report.Add({CellOf(address), CellOf(tag), CellOf(zentrova.ParamName(tag)),
                        CellOf(zentrova.FormatRaw(value, tag)), CellOf(value)});
        }
    });
    report.End();
    return status;
}

ExitStatus Info(CommandRun &run) {
    constexpr std::int16_t modelNumber = 4;
    constexpr std::int16_t modelVariant = 5;
    constexpr qsizetype modelWidth = 10;
    constexpr qsizetype versionWidth = 5;
    constexpr qsizetype lineWidth = 8;
    const ClassZentrova &zentrova = run.Zentrova();
    const std::vector<std::int16_t> tags = {ParamDefines::SerialNumber, modelNumber, modelVariant,
                                            ParamDefines::FirmwareVersion, ParamDefines::BootVersion};
    Report report(run.Format(),
                  {{.key = QStringLiteral("address")},
                   {.key = QStringLiteral("model"), .width = modelWidth},
                   {.key = QStringLiteral("serial")},
                   {.key = QStringLiteral("firmware")},
                   {.key = QStringLiteral("boot"), .width = versionWidth},
                   {.key = QStringLiteral("line"), .width = lineWidth},
                   {.key = QStringLiteral("addressing")}},
                  run.Results());
    report.NameColumns();
    const ExitStatus status = run.ForEachSensor([&](SensorLine &line, std::int16_t address) {
        const SensorLine::Values values = line.Read(address, tags);
        const auto text = [&](std::int16_t tag) { return zentrova.FormatRaw(values.at(tag), tag); };
        report.Add({CellOf(address),
                    CellOf(QStringLiteral("ZTV%1-%2").arg(text(modelNumber), text(modelVariant))),
                    CellOf(values.at(ParamDefines::SerialNumber)),
                    CellOf(text(ParamDefines::FirmwareVersion)), CellOf(text(ParamDefines::BootVersion)),
                    CellOf(LineText(run.Comm())), CellOf(line.AddressingMode())});
    });
    report.End();
    return status;
}

} // namespace ztv
