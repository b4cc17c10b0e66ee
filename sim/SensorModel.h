#pragma once

#include "sim/Relay.h"

#include <QtGlobal>

#include <array>
#include <map>
#include <optional>

namespace sim {

class Registers;

// The measured quantities of the sensor. Nothing moves by itself: the state follows from the time asked for.
class SensorModel {
public:
    explicit SensorModel(quint32 seed);

    // Hundredths of an inch; nothing lets the target move again.
    void HoldTarget(std::optional<int> distance);
    int TargetAt(qint64 ms) const;

    // A measurement that holds its value instead of following the model.
    static bool Measures(int number);
    void Hold(int number, int value);
    void Release(int number);

    void Update(Registers &registers, qint64 ms);

private:
    void Measure(Registers &registers, int number, int value) const;

    double periodMs_;
    double phase_;
    std::optional<int> target_;
    std::map<int, int> held_;
    std::array<Relay, 2> relays_;
};

} // namespace sim
