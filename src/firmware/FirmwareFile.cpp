#include "firmware/FirmwareFile.h"

#include "firmware/HexFileAccess.h"
#include "support/Fault.h"
#include "support/FileFunctions.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace ztv {

namespace {

// The defect of a file, in words before its path.
QString DefectOf(FirmwareFile::State state) {
    switch (state) {
    case FirmwareFile::State::Folder:
        return QStringLiteral("A folder, not a firmware file: ");
    case FirmwareFile::State::Special:
        return QStringLiteral("Not an ordinary file: ");
    case FirmwareFile::State::Unreadable:
        return QStringLiteral("Firmware file that can't be read: ");
    case FirmwareFile::State::Empty:
        return QStringLiteral("Firmware file without content: ");
    case FirmwareFile::State::Invalid:
        return QStringLiteral("Damaged firmware file, or none: ");
    default:
        return QStringLiteral("No firmware file there: ");
    }
}

QString Grouped(qint64 number) {
    QString text = QString::number(number);
    for (qsizetype at = text.size() - 3; at > 0; at -= 3) {
        text.insert(at, u',');
    }
    return text;
}

} // namespace

FirmwareFile::Look::Look(const QString &path) {
    const QFileInfo file(path);
    target = file.canonicalFilePath();
    bytes = file.size();
    modified = file.lastModified();
    permissions = file.permissions();
}

// Looks before it reads: a change meanwhile is seen by HasChanged.
FirmwareFile::FirmwareFile(const QString &path) : path_(path), look_(path), state_(Judge()) {}

FirmwareFile::State FirmwareFile::Judge() const {
    if (!FileFunctions::FileExists(path_)) {
        const QFileInfo file(path_);
        return file.isDir() ? State::Folder : file.exists() ? State::Special : State::Missing;
    }
    try {
        switch (HexFileAccess::CheckContent(path_)) {
        case HexFileAccess::Result::Good:
            return State::Good;
        case HexFileAccess::Result::Empty:
            return State::Empty;
        default:
            return State::Invalid;
        }
    } catch (const Fault &) { // It can't be opened.
        return State::Unreadable;
    }
}

bool FirmwareFile::HasChanged() const {
    return Look(path_) != look_;
}

QString FirmwareFile::Description() const {
    if (!IsGood()) {
        return DefectOf(state_) + path_;
    }
    QString text = QStringLiteral("Firmware file: ") + path_;
    if (QFileInfo(path_).isSymLink()) {
        text += QStringLiteral(" (a link to %1)").arg(QDir::toNativeSeparators(look_.target));
    }
    return text + QStringLiteral(", %1 bytes, %2")
                      .arg(Grouped(look_.bytes),
                           QLocale::c().toString(look_.modified.date(), QStringLiteral("d MMM yyyy")));
}

} // namespace ztv
