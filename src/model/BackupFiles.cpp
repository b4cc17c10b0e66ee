#include "model/BackupFiles.h"

#include "model/ParamDefines.h"
#include "support/Fault.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <functional>
#include <optional>
#include <tuple>
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
        QStringLiteral("(\\d+) (\\d{4}-\\d{2}-\\d{2} \\d{6})(?: \\((\\d{1,6})\\))?\\.ztv")));
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

QString NameOf(const QString &sensor, const QString &time, int number) {
    const QString mark = number == 1 ? QString() : QStringLiteral(" (%1)").arg(number);
    return sensor + u' ' + time + mark + QStringLiteral(".ztv");
}

// Resolves links, also in the folder of a file that doesn't exist.
QString RealNameOf(const QString &name) {
    const QFileInfo file(name);
    if (file.exists()) {
        return file.canonicalFilePath();
    }
    const QFileInfo folder(file.absolutePath());
    return folder.exists() ? folder.canonicalFilePath() + u'/' + file.fileName() : file.absoluteFilePath();
}

bool IsTaken(const QString &fileName) {
    const QFileInfo file(fileName);
    return file.exists() || file.isSymbolicLink(); // a link to nothing doesn't exist
}

} // namespace

bool BackupFiles::HasAny() const {
    return !folder_.isEmpty() && !BackupsIn(folder_).empty();
}

void BackupFiles::Spare(const QString &fileName) {
    spared_ = Contains(fileName) ? QFileInfo(RealNameOf(fileName)).fileName() : QString();
}

bool BackupFiles::Contains(const QString &fileName) const {
    return !folder_.isEmpty() &&
           QFileInfo(RealNameOf(fileName)).absolutePath() == QDir(RealNameOf(folder_)).absolutePath();
}

void BackupFiles::Save(const ClassZentrova &zentrova, std::int32_t serialNumber, const QDateTime &time,
                       const std::function<std::int32_t(std::int16_t)> &valueOf) const {
    QDir().mkpath(folder_); // a failure shows in the write
    const QString sensor = QString::number(serialNumber);
    const QString now = time.toString(QStringLiteral("yyyy-MM-dd HHmmss"));
    const QString name = TakeName(sensor, now);
    const QString fileName = QDir(folder_).filePath(name);
    try {
        zentrova.SaveCopy(fileName, [&](std::int16_t tag) {
            // The number of the file's rows, by which it is opened, whatever number the sensor reports.
            return tag == ParamDefines::ParameterCount ? zentrova.ParamCount() : valueOf(tag);
        });
    } catch (const Fault &) {
        QFile::remove(fileName);
        throw;
    }
    DeleteOldest(sensor, now, name);
}

// Numbers the backups of the same second onwards, also when the first of them are deleted. Creates the file,
// so that neither a link nor another program's file of that name is written.
QString BackupFiles::TakeName(const QString &sensor, const QString &time) const {
    int number = 1;
    for (const Backup &backup : BackupsIn(folder_)) {
        if (backup.sensor == sensor && backup.time == time) {
            number = std::max(number, backup.number + 1);
        }
    }
    for (;; ++number) {
        const QString name = NameOf(sensor, time, number);
        QFile file(QDir(folder_).filePath(name));
        if (file.open(QFile::WriteOnly | QFile::NewOnly)) {
            return name;
        }
        if (!IsTaken(file.fileName())) {
            throw Fault::File(file.fileName(), file.errorString());
        }
    }
}

// Keeps the last ones that were written also where the clock was set back: those with a later time than the
// newest are older.
void BackupFiles::DeleteOldest(const QString &sensor, const QString &now, const QString &newest) const {
    std::vector<Backup> others;
    for (Backup &backup : BackupsIn(folder_)) {
        if (backup.sensor == sensor && backup.name != newest && backup.name != spared_) {
            others.push_back(std::move(backup));
        }
    }
    const auto age = [&now](const Backup &backup) {
        return std::tuple(backup.time <= now, backup.time, backup.number);
    };
    std::ranges::sort(others, std::ranges::greater(), age);
    for (std::size_t index = MostOfASensor - 1; index < others.size(); ++index) {
        QFile::remove(QDir(folder_).filePath(others[index].name));
    }
}

} // namespace ztv
