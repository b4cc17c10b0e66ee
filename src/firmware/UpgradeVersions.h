#pragma once

#include "link/LinkSession.h"
#include "model/ClassZentrova.h"

#include <QObject>
#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// The versions of the firmware before and after the last upgrade. The sensor reports its version only when it
// is read. The upgrade itself doesn't read: the version before is that of the last time online, the version
// after that of the next time, if both have the same serial number.
class UpgradeVersions : public QObject {
    Q_OBJECT

public:
    // REQUIRES: both outlive this.
    UpgradeVersions(const LinkSession &link, const ClassZentrova &zentrova, QObject *parent = nullptr);

    void UpgradeStarted();
    void UpgradeEnded(bool succeeded);

    // Both versions, such as "2.14 -> 3.00". Empty unless both are known.
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

    const ClassZentrova &zentrova_;
    std::optional<Identity> lastRead_;
    std::optional<Identity> before_;
    bool upgraded_ = false; // and not read since
    QString change_;
};

} // namespace ztv
