#include "firmware/UpgradeVersions.h"

#include "model/ParamDefines.h"

namespace ztv {

UpgradeVersions::UpgradeVersions(const LinkSession &link, const ClassZentrova &zentrova, QObject *parent)
    : QObject(parent),
      zentrova_(zentrova) {
    connect(&link, &LinkSession::FirstReadComplete, this, &UpgradeVersions::OnFirstRead);
}

void UpgradeVersions::UpgradeStarted() {
    state_ = State::Upgrading;
    before_.reset();
    change_.clear();
}

void UpgradeVersions::UpgradeEnded(bool succeeded) {
    state_ = succeeded ? State::Upgraded : State::Idle;
}

QString UpgradeVersions::Before() const {
    return before_ ? before_->version : QString();
}

void UpgradeVersions::OnFirstRead() {
    const Identity present = Present();
    if (state_ == State::Upgrading) {
        before_ = present;
    } else if (state_ == State::Upgraded && before_ && before_->serialNumber == present.serialNumber) {
        state_ = State::Idle;
        change_ = before_->version + QStringLiteral(" -> ") + present.version;
        Q_EMIT ChangeKnown();
    }
}

UpgradeVersions::Identity UpgradeVersions::Present() const {
    return {.serialNumber = zentrova_.ParamValue(ParamDefines::SerialNumber),
            .version = zentrova_.FormatRaw(zentrova_.ParamValue(ParamDefines::FirmwareVersion),
                                           ParamDefines::FirmwareVersion)};
}

} // namespace ztv
