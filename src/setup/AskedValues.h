#pragma once

#include "model/ClassZentrova.h"
#include "setup/WizardCalibration.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ztv {

// The values that the wizard asked a sensor for, and what became of them. The polls decide, not the replies
// to the writes: a write whose reply was lost may have been executed.
class AskedValues {
public:
    struct Value {
        ParameterValue asked;
        std::int32_t held = 0; // by the sensor
        bool isTaken = false;

        bool operator==(const Value &) const = default;
    };

    // Replaces the values of an earlier call. Leaves out commands. `serialNumber`: of the sensor that is
    // asked; none if it wasn't read yet.
    void Ask(const std::vector<ParameterValue> &values, std::optional<std::int32_t> serialNumber = {});
    void Forget();

    // Compares with a table that a poll has just filled, unless a write still waits or is under way. Forgets
    // the values once the sensor holds all of them, or once another sensor answers than the one that was
    // asked, or than at the first poll.
    void Judge(const ClassZentrova &zentrova);

    // Forgets a value in favour of another one that was written since.
    void Written(std::int16_t tag, std::int32_t value);

    // Returns the values, with at least one that the sensor didn't take; none before they are judged.
    const std::vector<Value> &Judged() const { return judged_; }

private:
    void Conclude();

    std::vector<Value> values_;
    std::vector<Value> judged_;
    std::optional<std::int32_t> serialNumber_;
};

} // namespace ztv
