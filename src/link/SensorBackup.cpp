#include "link/SensorBackup.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"

#include <utility>

namespace ztv {

SensorBackup::SensorBackup(LinkSession &link, const ClassZentrova &zentrova, BackupFiles files, Clock now)
    : link_(link),
      zentrova_(zentrova),
      files_(std::move(files)),
      now_(std::move(now)) {
    connect(&link, &LinkSession::OnlineChanged, this, &SensorBackup::Connected);
    connect(&link, &LinkSession::AboutToWrite, this, &SensorBackup::Save);
}

void SensorBackup::Connected() {
    saved_.clear();
    failure_.clear();
}

// Deliberate: a download on connect follows the probe at once, without a read. It is preceded by a backup
// only if a sensor was read before.
//
// A sensor may replace another while the link stays online, so that each has its own backup. A failure is not
// repeated at the next write: the values before the first one are gone by then.
void SensorBackup::Save() {
    const SensorValues &sensor = link_.Sensor();
    const std::optional<std::int32_t> serialNumber = sensor.Value(ParamDefines::SerialNumber);
    if (files_.Folder().isEmpty() || !serialNumber || !saved_.insert(*serialNumber).second) {
        return;
    }
    try {
        files_.Save(zentrova_, *serialNumber, now_(), [&](std::int16_t tag) {
            return tag == 0 ? zentrova_.ParamValue(0) : *sensor.Value(tag);
        });
        failure_.clear();
    } catch (const Fault &fault) {
        failure_ = fault.Description();
    }
    Q_EMIT Ended();
}

} // namespace ztv
