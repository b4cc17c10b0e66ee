#include "shell/StatusCells.h"

#include "shell/LinkWords.h"

#include <QFileInfo>
#include <algorithm>

namespace ztv {

namespace {

using Cell = StatusCell;
using Kind = StatusCell::Kind;
using Shape = StatusCell::Shape;
using Tone = StatusCell::Tone;
using MaybeCell = std::optional<StatusCell>;

constexpr int goodLine = 99; // percent
constexpr int poorLine = 90;

const QString opensCommunications = QStringLiteral("Opens Communications Setup");

// Shortens a long name in its middle, since its end tells it apart.
QString Shortened(const QString &name, qsizetype length) {
    if (name.size() <= length) {
        return name;
    }
    const qsizetype begin = (length - 1) / 2;
    return name.left(begin) + QStringLiteral("…") + name.right(length - 1 - begin);
}

Tone ToneOfValue(const StatusFacts &facts, Tone whenLive = Tone::Plain) {
    return facts.state == ValueState::Live ? whenLive : Tone::Dimmed;
}

Cell StateCell(Tone tone, Shape shape, const QString &text, const QString &spoken) {
    return {.kind = Kind::State,
            .tone = tone,
            .shape = shape,
            .text = text,
            .spoken = spoken,
            .action = opensCommunications,
            .widest = QStringLiteral("STALE 00 s")};
}

Cell LiveCell(std::optional<int> tenths) {
    if (!tenths) {
        return StateCell(Tone::Good, Shape::Circle, QStringLiteral("LIVE"),
                         QStringLiteral("Live: the values are the sensor's"));
    }
    constexpr int perSecond = 10;
    const QString time = QStringLiteral("%1.%2 s").arg(*tenths / perSecond).arg(*tenths % perSecond);
    return StateCell(Tone::Good, Shape::Circle, QStringLiteral("LIVE ") + time,
                     QStringLiteral("Live: the last two polls were %1 apart").arg(time));
}

MaybeCell OfState(const StatusFacts &facts) {
    if (!facts.isOnline) {
        return StateCell(Tone::Dimmed, Shape::Square, QStringLiteral("OFFLINE"),
                         QStringLiteral("Offline: the values aren't read"));
    }
    switch (facts.state) {
    case ValueState::Live:
        return LiveCell(facts.tenthsBetweenPolls);
    case ValueState::Stale: {
        const QString age = LinkWords::Duration(facts.age.value_or(std::chrono::seconds(0)));
        return StateCell(Tone::Warning, Shape::Triangle, QStringLiteral("STALE ") + age,
                         QStringLiteral("Stale: the values are %1 old").arg(age));
    }
    case ValueState::Held:
        return StateCell(Tone::Warning, Shape::Bars, QStringLiteral("HELD"),
                         QStringLiteral("Held: the sensor answers, but its values aren't shown"));
    default:
        return StateCell(Tone::Warning, Shape::Triangle, QStringLiteral("NOT READ"),
                         QStringLiteral("Online, but the sensor hasn't been read"));
    }
}

MaybeCell OfUnsaved(const StatusFacts &facts) {
    if (facts.unsaved == 0) {
        return std::nullopt;
    }
    return Cell{.kind = Kind::NotSaved,
                .tone = Tone::Warning,
                .text = QStringLiteral("%1 not saved").arg(facts.unsaved),
                .spoken = UnsavedWords(facts.unsaved),
                .action = QStringLiteral("Lists them")};
}

MaybeCell OfOutput(const StatusFacts &facts) {
    if (!facts.sensor || !facts.sensor->outputIsForced) {
        return std::nullopt;
    }
    return Cell{.kind = Kind::OutputForced,
                .tone = Tone::Warning,
                .text = QStringLiteral("output forced"),
                .spoken = QStringLiteral("The analog output is set by hand: it doesn't follow the distance"),
                .action = QStringLiteral("Shows the tab that sets it")};
}

MaybeCell OfLineQuality(const StatusFacts &facts) {
    if (!facts.isOnline || !facts.lineQuality) {
        return std::nullopt;
    }
    const int percent = *facts.lineQuality;
    const Tone tone = percent < poorLine ? Tone::Alarm : percent < goodLine ? Tone::Warning : Tone::Plain;
    return Cell{.kind = Kind::LineQuality,
                .tone = tone,
                .text = QStringLiteral("Line %1 %").arg(percent),
                .spoken = QStringLiteral("Line quality: %1 % of the last %2 exchanges were answered well")
                              .arg(percent)
                              .arg(facts.exchanges),
                .action = opensCommunications,
                .widest = QStringLiteral("Line 100 %")};
}

MaybeCell OfAddress(const StatusFacts &facts) {
    return Cell{.kind = Kind::Address,
                .text = QStringLiteral("Addr %1").arg(facts.comm.address),
                .spoken = QStringLiteral("Network address %1").arg(facts.comm.address),
                .action = opensCommunications};
}

MaybeCell OfDevice(const StatusFacts &facts) {
    constexpr qsizetype mostLetters = 20;
    QString name = facts.device.section(u'/', -1);
    if (std::ranges::all_of(name, [](QChar letter) { return letter.isDigit(); })) {
        name = facts.device.section(u'/', -2); // pts/0, for example, says more
    }
    return Cell{.kind = Kind::Device,
                .text = QStringLiteral("%1: %2").arg(facts.comm.port).arg(Shortened(name, mostLetters)),
                .spoken = QStringLiteral("Port %1, %2").arg(facts.comm.port).arg(facts.device),
                .action = opensCommunications};
}

MaybeCell OfLineSetting(const StatusFacts &facts) {
    const QString setting = LinkWords::LineSetting(facts.comm);
    return Cell{.kind = Kind::LineSetting,
                .text = setting,
                .spoken = QStringLiteral("Line setting %1").arg(setting),
                .action = opensCommunications};
}

MaybeCell OfSensor(const StatusFacts &facts) {
    if (!facts.sensor) {
        return std::nullopt;
    }
    const StatusFacts::Sensor &sensor = *facts.sensor;
    return Cell{.kind = Kind::Sensor,
                .tone = ToneOfValue(facts),
                .text = QStringLiteral("#%1 FW %2").arg(sensor.serialNumber).arg(sensor.firmware),
                .spoken = QStringLiteral("Serial number %1, firmware version %2")
                              .arg(sensor.serialNumber)
                              .arg(sensor.firmware),
                .action = QStringLiteral("Opens About")};
}

MaybeCell OfEcho(const StatusFacts &facts) {
    if (!facts.sensor) {
        return std::nullopt;
    }
    const StatusFacts::Sensor &sensor = *facts.sensor;
    Cell cell{.kind = Kind::Echo,
              .tone = ToneOfValue(facts),
              .text = QStringLiteral("Echo %1 %").arg(sensor.echoStrength),
              .spoken = QStringLiteral("Echo strength %1 %").arg(sensor.echoStrength),
              .action = QStringLiteral("Shows the Distance tab"),
              .widest = QStringLiteral("Echo 100 %")};
    if (!sensor.echoIsReceived) {
        cell.tone = ToneOfValue(facts, Tone::Warning);
        cell.text = QStringLiteral("No echo");
        cell.spoken = QStringLiteral("No echo: the sensor finds no target");
    }
    return cell;
}

MaybeCell OfFile(const StatusFacts &facts) {
    constexpr qsizetype mostLetters = 28;
    const QString name = QFileInfo(facts.openFile).fileName();
    const bool isOpen = !facts.openFile.isEmpty();
    QString spoken = isOpen ? QStringLiteral("Settings file %1").arg(facts.openFile)
                            : QStringLiteral("No settings file is open");
    if (facts.fileChangesNeedSaving) {
        spoken += QStringLiteral("; there are changes that no file has");
    }
    return Cell{.kind = Kind::File,
                .text = (isOpen ? Shortened(name, mostLetters) : QStringLiteral("No file")) +
                        (facts.fileChangesNeedSaving ? QStringLiteral(" *") : QString()),
                .spoken = spoken,
                .action = QStringLiteral("Saves to a file: Save As...")};
}

} // namespace

std::vector<StatusCell> CellsOf(const StatusFacts &facts) {
    std::vector<StatusCell> cells;
    for (const auto cellOf : {OfState, OfUnsaved, OfOutput, OfLineQuality, OfAddress, OfDevice, OfLineSetting,
                              OfSensor, OfEcho, OfFile}) {
        if (MaybeCell cell = cellOf(facts)) {
            cells.push_back(*std::move(cell));
        }
    }
    return cells;
}

std::size_t CellsThatFit(const std::vector<int> &widths, int gap, int room) {
    std::size_t count = 0;
    int taken = 0;
    for (const int width : widths) {
        taken += width + (count == 0 ? 0 : gap);
        if (taken > room) {
            break;
        }
        ++count;
    }
    return count;
}

QString UnsavedWords(std::size_t count) {
    if (count == 0) {
        return {};
    }
    return count == 1 ? QStringLiteral("1 change not saved in the sensor")
                      : QStringLiteral("%1 changes not saved in the sensor").arg(count);
}

} // namespace ztv
