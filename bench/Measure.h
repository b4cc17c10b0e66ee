#pragma once

#include <vector>

namespace ztv {

// Clocks of the measurements.
namespace Measure {

// The time of a clock that all processes share.
double NowMs();

// The processor time that this process has used since its start.
double ProcessorMs();

double ResidentMiB();

double Median(std::vector<double> values);

// Runs the event loop for that time.
void Idle(int milliseconds);

} // namespace Measure

} // namespace ztv
