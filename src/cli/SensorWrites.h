#pragma once

#include "cli/Console.h"
#include "cli/SensorLine.h"
#include "cli/SetPlan.h"
#include "link/CommSettings.h"
#include "model/ClassZentrova.h"

#include <QString>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace ztv {

// Sends the writes of a plan to one sensor, follows it where they move it, and reads back what it holds then.
class SensorWrites {
public:
    // `place` is where the sensor answers; it was read last. REQUIRES: all outlive this.
    SensorWrites(SensorLine &line, const ClassZentrova &zentrova, const SetPlan &plan,
                 const CommSettings &place);

    // Returns the values of the plan's rows, as the sensor holds them. Throws a Failure where the sensor
    // refuses a value or holds another (refused), or where it isn't known what it holds (no connection).
    SensorLine::Values Send();

    // Returns where the sensor answers now.
    const CommSettings &Place() const { return place_; }

    // Returns true once a write was sent.
    bool HasBegun() const { return taken_ > 0 || isInDoubt_; }

    // Says how far the writes came: "; confirmed, but not read back: ...; not known: ...; not written: ...".
    QString Progress() const;

private:
    void SendOne(const SetPlan::Write &write);
    std::int32_t HeldAfter(const SetPlan::Write &write);
    bool IsConfirmed(const SetPlan::Write &write);
    SensorLine::Values Find(const std::vector<CommSettings> &places, const std::vector<std::int16_t> &tags);
    Failure NotKnown(std::size_t first, std::size_t last) const;
    QString Named() const;
    QStringList Names(std::size_t first, std::size_t last) const;

    SensorLine &line_;
    const ClassZentrova &zentrova_;
    const SetPlan &plan_;
    CommSettings place_;
    std::int16_t address_;   // by which the user knows the sensor
    std::size_t taken_ = 0;  // writes that the sensor took
    bool isInDoubt_ = false; // the write after them
};

} // namespace ztv
