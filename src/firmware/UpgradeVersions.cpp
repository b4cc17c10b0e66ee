#include "firmware/UpgradeVersions.h"

#include "model/ParamDefines.h"

namespace ztv {

UpgradeVersions::UpgradeVersions(const LinkSession &link, const ClassZentrova &zentrova, QObject *parent)
    : QObject(parent),
      zentrova_(zentrova) {
    connect(&link, &LinkSession::FirstReadComplete, this, &UpgradeVersions::OnFirstRead);
}

void UpgradeVersions::UpgradeStarted() {
    before_ = lastRead_;
    upgraded_ = false;
    change_.clear();
}

void UpgradeVersions::UpgradeEnded(bool succeeded) {
    upgraded_ = succeeded;
}

void UpgradeVersions::OnFirstRead() {
    lastRead_ = Present();
    if (upgraded_ && before_ && before_->serialNumber == lastRead_->serialNumber) {
        upgraded_ = false;
        change_ = before_->version + QStringLiteral(" -> ") + lastRead_->version;
        Q_EMIT ChangeKnown();
    }
}

UpgradeVersions::Identity UpgradeVersions::Present() const {
    return {.serialNumber = zentrova_.ParamValue(ParamDefines::SerialNumber),
            .version = zentrova_.FormatRaw(zentrova_.ParamValue(ParamDefines::FirmwareVersion),
                                           ParamDefines::FirmwareVersion)};
}

} // namespace ztv
