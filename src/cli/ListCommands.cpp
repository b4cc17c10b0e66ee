#include "cli/Commands.h"
#include "link/SerialPorts.h"

#include <algorithm>

namespace ztv {

ExitStatus Ports(CommandRun &run) {
    const std::vector<SerialPorts::Described> devices = SerialPorts::Describe();
    qsizetype widest = 0;
    for (const SerialPorts::Described &device : devices) {
        widest = std::max(widest, device.name.size());
    }
    Report report(
        run.Format(),
        {{.key = QStringLiteral("device"), .width = widest}, {.key = QStringLiteral("description")}},
        run.Results());
    for (const SerialPorts::Described &device : devices) {
        report.Add({CellOf(device.name), CellOf(device.description)});
    }
    report.End();
    return ExitStatus::Done;
}

ExitStatus Parameters(CommandRun &run) {
    constexpr qsizetype numberWidth = 9;
    constexpr qsizetype valueWidth = 10;
    const ClassZentrova &zentrova = run.Zentrova();
    qsizetype widest = 0;
    for (const std::int16_t tag : run.AllTags()) {
        widest = std::max(widest, zentrova.ParamName(tag).size());
    }
    Report report(run.Format(),
                  {{.key = QStringLiteral("parameter"), .width = numberWidth},
                   {.key = QStringLiteral("name"), .width = widest},
                   {.key = QStringLiteral("least"), .width = valueWidth},
                   {.key = QStringLiteral("greatest"), .width = valueWidth},
                   {.key = QStringLiteral("preset"), .width = valueWidth},
                   {.key = QStringLiteral("access")}},
                  run.Results());
    report.NameColumns();
    for (const std::int16_t tag : run.AllTags()) {
        const auto text = [&](std::int32_t raw) { return CellOf(zentrova.FormatRaw(raw, tag)); };
        report.Add({CellOf(tag), CellOf(zentrova.ParamName(tag)), text(zentrova.ParamMin(tag)),
                    text(zentrova.ParamMax(tag)), text(zentrova.ParamPreset(tag)),
                    CellOf(zentrova.ParamReadOnly(tag)     ? QStringLiteral("read")
                           : ClassZentrova::IsCommand(tag) ? QStringLiteral("command")
                                                           : QStringLiteral("read and write"))});
    }
    report.End();
    return ExitStatus::Done;
}

} // namespace ztv
