#pragma once

namespace sim {

class Registers;

// The output in hundredths of a volt at a distance in hundredths of an inch.
int OutputVoltage(const Registers &registers, int distance);

} // namespace sim
