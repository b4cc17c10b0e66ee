#pragma once

#include "link/LinkSession.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// The versions of the firmware before and after the last upgrade. The sensor reports its version only when it
// is read: before, when the upgrade goes online; after, at the next first read.
class UpgradeVersions : public QObject {
    Q_OBJECT

public:
    // REQUIRES: both outlive this.
    UpgradeVersions(const LinkSession &link, const ClassZentrova &zentrova, QObject *parent = nullptr);

    void UpgradeStarted();
    void UpgradeEnded(bool succeeded);

    // The version before, such as "2.14". Empty if it isn't known, as with a sensor that was in its boot
    // loader already.
    QString Before() const;
    // Both versions, such as "2.14 -> 3.00". Empty unless both are known, of the same sensor.
    QString Change() const { return change_; }

Q_SIGNALS:
    void ChangeKnown();

private:
    struct Identity {
        std::int32_t serialNumber;
        QString version;
    };

    void OnFirstRead();
    Identity Present() const;

    enum class State { Idle, Upgrading, Upgraded };

    const ClassZentrova &zentrova_;
    State state_ = State::Idle;
    std::optional<Identity> before_;
    QString change_;
};

} // namespace ztv
