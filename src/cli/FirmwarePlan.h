#pragma once

#include "firmware/FirmwareFile.h"

#include <QString>
#include <cstdint>

namespace ztv {

// The part of a firmware file that goes to a sensor.
struct FirmwarePlan {
    FirmwareFile firmware;   // as it was when it was checked
    int lines = 0;           // of 16 bytes, as they are written
    std::uint32_t first = 0; // the lowest address
    std::uint32_t last = 0;  // of the last byte
};

// Returns the text of an address of the sensor's memory.
QString Hexadecimal(std::uint32_t address);

// Checks the file. Throws a Failure (file) that says what is wrong with it.
FirmwarePlan PlanOf(const QString &file);

} // namespace ztv
