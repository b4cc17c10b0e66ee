#pragma once

#include "cli/SensorLine.h"
#include "link/CommSettings.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// True for the rows by which a sensor moves to another address, baud rate or parity, at once.
bool MovesSensor(std::int16_t tag);

// True for those rows and the addressing mode, which moves all registers by one.
bool ChangesTheWay(std::int16_t tag);

// Returns where a sensor answers after it has taken a value. The port's number doesn't count.
CommSettings PlaceAfter(const CommSettings &place, std::int16_t tag, std::int32_t raw);

// Returns a line setting in words: "38400 N2".
QString LineText(const CommSettings &comm);

// Returns a place in words: "address 1, 38400 N2".
QString PlaceText(const CommSettings &place);

struct FoundSensor {
    CommSettings place;
    SensorLine::Values values;
};

// Reads rows from the first of the places at which the sensor with this serial number answers, and leaves the
// line as it is there. Returns none if it answers at none of them.
std::optional<FoundSensor> FindSensor(SensorLine &line, const std::vector<CommSettings> &places,
                                      std::int32_t serialNumber, std::vector<std::int16_t> tags);

} // namespace ztv
