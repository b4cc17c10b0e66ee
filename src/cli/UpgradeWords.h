#pragma once

#include "cli/Failure.h"
#include "cli/SensorUpgrade.h"

#include <QString>

namespace ztv {

// Says where the sensor is and how to go on. `again` is the way to repeat the command for it.
QString WordsOf(SensorState state, const QString &again);

// Why an upgrade that didn't reach its end failed.
struct UpgradeFailure {
    ExitStatus status;
    QString text;
};
UpgradeFailure FailureOf(const UpgradeResult &result);

} // namespace ztv
