#pragma once

#include "sim/Relay.h"

#include <QtGlobal>

#include <array>
#include <map>
#include <optional>

namespace sim {

class Registers;

// The measured quantities of the sensor. Nothing changes by itself: the state follows from the requested
// time.
class SensorModel {
public:
    explicit SensorModel(quint32 seed);

    // Fixes the target at a distance in hundredths of an inch; no value lets it move again.
    void HoldTarget(std::optional<int> distance);
    int TargetAt(qint64 ms) const;

    // Measures: the parameter is a measurement. A held measurement keeps its value instead of following the
    // model.
    static bool Measures(int number);
    void Hold(int number, int value);
    void Release(int number);

    void Update(Registers &registers, qint64 ms);

private:
    void Measure(Registers &registers, int number, int value) const;
    void MeasureFromDistance(Registers &registers) const;

    double periodMs_;
    double phase_;
    std::optional<int> target_;
    std::map<int, int> held_;
    std::array<Relay, 2> relays_;
};

} // namespace sim
