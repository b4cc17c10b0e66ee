#pragma once

#include "model/ClassZentrova.h"

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <utility>

namespace ztv {

// The folder of the backups: settings files named by a sensor's serial number and the time, such as
// "10427 2026-11-22 051033.ztv". Files with other names are left alone.
class BackupFiles {
public:
    static constexpr int MostOfASensor = 20;

    // `folder` is created by the first backup. An empty name stands for no folder: no backups are kept.
    explicit BackupFiles(QString folder) : folder_(std::move(folder)) {}

    const QString &Folder() const { return folder_; }

    // True while the folder has a backup of any sensor.
    bool HasAny() const;

    // Keeps a file from being deleted as the oldest: the one that is being opened, which may be restored.
    // Replaces an earlier one.
    void Spare(const QString &fileName);

    // True for a file in this folder, whatever its name, also by a link.
    bool Contains(const QString &fileName) const;

    // Writes a backup of the values that `valueOf` gives for each row, and deletes the oldest backups of that
    // sensor beyond MostOfASensor. Fault (file, database) if it can't be written; then none is deleted.
    void Save(const ClassZentrova &zentrova, std::int32_t serialNumber, const QDateTime &time,
              const std::function<std::int32_t(std::int16_t)> &valueOf) const;

private:
    QString TakeName(const QString &sensor, const QString &time) const;
    void DeleteOldest(const QString &sensor, const QString &now, const QString &newest) const;

    QString folder_;
    QString spared_; // a name in the folder; empty for none
};

} // namespace ztv
