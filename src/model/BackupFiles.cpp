#include "model/BackupFiles.h"

#include "model/ParamDefines.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace ztv {

namespace {

// Backups of the same second have a number behind the time.
struct Backup {
    QString sensor;
    QString time;
    int number = 1;
    QString name;
};

std::optional<Backup> BackupOf(const QString &name) {
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        QStringLiteral("(\\d+) (\\d{4}-\\d{2}-\\d{2} \\d{6})(?: \\((\\d+)\\))?\\.ztv")));
    const QRegularExpressionMatch match = pattern.match(name);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    constexpr int time = 2;
    constexpr int number = 3;
    return Backup{.sensor = match.captured(1),
                  .time = match.captured(time),
                  .number = match.captured(number).isEmpty() ? 1 : match.captured(number).toInt(),
                  .name = name};
}

std::vector<Backup> BackupsIn(const QString &folder) {
    std::vector<Backup> backups;
    for (const QString &name : QDir(folder).entryList(QDir::Files | QDir::NoSymLinks)) {
        if (std::optional<Backup> backup = BackupOf(name)) {
            backups.push_back(std::move(*backup));
        }
    }
    return backups;
}

} // namespace

bool BackupFiles::HasAny() const {
    return !folder_.isEmpty() && !BackupsIn(folder_).empty();
}

void BackupFiles::Spare(const QString &fileName) {
    spared_ = Contains(fileName) ? QFileInfo(fileName).fileName() : QString();
}

bool BackupFiles::Contains(const QString &fileName) const {
    return !folder_.isEmpty() && QFileInfo(fileName).absolutePath() == QDir(folder_).absolutePath();
}

void BackupFiles::Save(const ClassZentrova &zentrova, std::int32_t serialNumber, const QDateTime &time,
                       const std::function<std::int32_t(std::int16_t)> &valueOf) const {
    QDir().mkpath(folder_); // a failure shows in the write
    const QString name =
        NewName(QString::number(serialNumber), time.toString(QStringLiteral("yyyy-MM-dd HHmmss")));
    zentrova.SaveCopy(QDir(folder_).filePath(name), [&](std::int16_t tag) {
        // The number of the file's rows, by which it is opened, whatever number the sensor reports.
        return tag == ParamDefines::ParameterCount ? zentrova.ParamCount() : valueOf(tag);
    });
    DeleteOldest(serialNumber, name);
}

// Numbers the backups of the same second onwards, also when the first of them are deleted.
QString BackupFiles::NewName(const QString &sensor, const QString &time) const {
    int number = 1;
    for (const Backup &backup : BackupsIn(folder_)) {
        if (backup.sensor == sensor && backup.time == time) {
            number = std::max(number, backup.number + 1);
        }
    }
    const QString mark = number == 1 ? QString() : QStringLiteral(" (%1)").arg(number);
    return sensor + u' ' + time + mark + QStringLiteral(".ztv");
}

// Keeps the new backup even where the clock was set back, which makes it the oldest by its name.
void BackupFiles::DeleteOldest(std::int32_t serialNumber, const QString &newest) const {
    std::vector<Backup> others;
    for (Backup &backup : BackupsIn(folder_)) {
        if (backup.sensor == QString::number(serialNumber) && backup.name != newest &&
            backup.name != spared_) {
            others.push_back(std::move(backup));
        }
    }
    const auto isNewer = [](const Backup &one, const Backup &other) {
        return std::pair(one.time, one.number) > std::pair(other.time, other.number);
    };
    std::sort(others.begin(), others.end(), isNewer);
    for (std::size_t index = MostOfASensor - 1; index < others.size(); ++index) {
        QFile::remove(QDir(folder_).filePath(others[index].name));
    }
}

} // namespace ztv
