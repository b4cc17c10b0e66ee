#pragma once

namespace sim {

class Registers;

// Returns the output in hundredths of a volt at a distance in hundredths of an inch.
int OutputVoltage(const Registers &registers, int distance);

// Returns the diameter of the roll at that distance, in hundredths of an inch.
int RollDiameter(const Registers &registers, int distance);

} // namespace sim
