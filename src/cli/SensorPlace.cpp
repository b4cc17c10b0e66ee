#include "cli/SensorPlace.h"

#include "cli/Failure.h"
#include "model/LineTables.h"
#include "model/ParamDefines.h"

#include <algorithm>
#include <cstddef>

namespace ztv {

namespace {

std::optional<SensorLine::Values> ReadAt(SensorLine &line, const CommSettings &place,
                                         const std::vector<std::int16_t> &tags) {
    try {
        line.SetLine(place);
        return line.Read(place.address, tags);
    } catch (const Failure &) {
        return std::nullopt;
    }
}

} // namespace

bool MovesSensor(std::int16_t tag) {
    return tag == ParamDefines::NetworkAddress || tag == ParamDefines::BaudRateCode ||
           tag == ParamDefines::ParityStopCode;
}

bool ChangesTheWay(std::int16_t tag) {
    return MovesSensor(tag) || tag == ParamDefines::AddressingMode;
}

CommSettings PlaceAfter(const CommSettings &place, std::int16_t tag, std::int32_t raw) {
    CommSettings after = place;
    const auto value = static_cast<std::int16_t>(raw);
    switch (tag) {
    case ParamDefines::NetworkAddress:
        after.address = value;
        break;
    case ParamDefines::BaudRateCode:
        after.baud = value;
        break;
    case ParamDefines::ParityStopCode:
        after.parityStop = value;
        break;
    default:
        break;
    }
    return after;
}

QString LineText(const CommSettings &comm) {
    return QStringLiteral("%1 %2").arg(
        QString::fromLatin1(BaudTable.at(static_cast<std::size_t>(comm.baud)).text),
        QString::fromLatin1(ParityStopTable.at(static_cast<std::size_t>(comm.parityStop)).text));
}

QString PlaceText(const CommSettings &place) {
    return QStringLiteral("address %1, %2").arg(QString::number(place.address), LineText(place));
}

std::optional<FoundSensor> FindSensor(SensorLine &line, const std::vector<CommSettings> &places,
                                      std::int32_t serialNumber, std::vector<std::int16_t> tags) {
    tags.push_back(ParamDefines::SerialNumber);
    for (auto place = places.begin(); place != places.end(); ++place) {
        if (std::find(places.begin(), place, *place) != place) {
            continue; // asked already
        }
        const std::optional<SensorLine::Values> values = ReadAt(line, *place, tags);
        if (values && values->at(ParamDefines::SerialNumber) == serialNumber) {
            return FoundSensor{.place = *place, .values = *values};
        }
    }
    return std::nullopt;
}

} // namespace ztv
