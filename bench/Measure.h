#pragma once

#include <vector>

namespace ztv {

// What the measurements read off the machine.
namespace Measure {

// A clock that all processes share.
double NowMs();

// The processor time that this process has used since its start.
double ProcessorMs();

double ResidentMiB();

double Median(std::vector<double> values);

// Turns the event loop for so long.
void Idle(int milliseconds);

} // namespace Measure

} // namespace ztv
