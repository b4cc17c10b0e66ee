#pragma once

#include "link/LinkSession.h"
#include "model/BackupFiles.h"
#include "model/ClassZentrova.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <set>

namespace ztv {

// Keeps the values that a sensor had before the first write of a connection: saves those read from it to a
// backup file, at the latest before the write's bytes leave.
class SensorBackup : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<QDateTime()>;

    // REQUIRES: `link` and `zentrova` outlive this.
    SensorBackup(LinkSession &link, const ClassZentrova &zentrova, BackupFiles files,
                 Clock now = QDateTime::currentDateTime);

    const BackupFiles &Files() const { return files_; }

    // Keeps a file that is opened from being deleted by the backup before its download.
    void Spare(const QString &fileName) { files_.Spare(fileName); }

    // Returns why the last backup couldn't be written; empty since one could, or since the link went online
    // or offline.
    const QString &Failure() const { return failure_; }

Q_SIGNALS:
    void Ended(); // a backup was written, or couldn't be

private:
    void Connected();
    void Save();

    LinkSession &link_;
    const ClassZentrova &zentrova_;
    BackupFiles files_;
    Clock now_;
    std::set<std::int32_t> saved_; // the sensors of this connection that have their backup, or had their try
    QString failure_;
};

} // namespace ztv
