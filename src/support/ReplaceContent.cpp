#include "support/ReplaceContent.h"

#include "support/Fault.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#else
#include <unistd.h>
#endif

namespace ztv {

namespace {

#ifdef Q_OS_WIN
// Sets a file's attributes to normal, since on Windows a rename can't replace a read-only file, and restores
// them unless the file has been replaced.
class ClearedAttributes {
public:
    explicit ClearedAttributes(const QString &fileName)
        : fileName_(fileName),
          attributes_(GetFileAttributesW(NativeName())) {
        SetFileAttributesW(NativeName(), FILE_ATTRIBUTE_NORMAL);
    }
    ~ClearedAttributes() {
        if (!replaced_ && attributes_ != INVALID_FILE_ATTRIBUTES) {
            SetFileAttributesW(NativeName(), attributes_);
        }
    }
    ClearedAttributes(const ClearedAttributes &) = delete;
    ClearedAttributes &operator=(const ClearedAttributes &) = delete;

    void Replaced() { replaced_ = true; }

private:
    const wchar_t *NativeName() const { return reinterpret_cast<const wchar_t *>(fileName_.utf16()); }

    QString fileName_;
    DWORD attributes_;
    bool replaced_ = false;
};
#endif

// A new file beside the one to replace. Deletes itself unless it has taken that one's place.
class FileBeside {
public:
    explicit FileBeside(const QString &target) : target_(target) {}
    ~FileBeside() {
        file_.close();
        if (created_) {
            QFile::remove(file_.fileName());
        }
    }
    FileBeside(const FileBeside &) = delete;
    FileBeside &operator=(const FileBeside &) = delete;

    bool Create() {
        constexpr int mostTries = 100;
        for (int tries = 0; tries < mostTries; ++tries) {
            file_.setFileName(target_ + u'.' + SixLetters());
            created_ = file_.open(QFile::WriteOnly | QFile::NewOnly | QFile::Unbuffered);
            if (created_ || !file_.exists()) {
                break;
            }
        }
        return created_;
    }
    QString WhyNotCreated() const { return file_.errorString(); }

    // Copies the group and the access rights of the old file. The owner can't be kept, and read-only isn't.
    void TakeAttributesOf(const QFileInfo &old) {
#ifndef Q_OS_WIN
        // Only a group that the user belongs to can be set.
        if (fchown(file_.handle(), static_cast<uid_t>(-1), old.groupId()) != 0) {
            errno = 0;
        }
#endif
        file_.setPermissions(old.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    }

    // Writes the content and flushes it to the disk: a full disk may report the error only when the bytes
    // leave the system's buffers.
    bool Fill(const QByteArray &content) {
        if (file_.write(content) != content.size()) {
            return false;
        }
#ifdef Q_OS_WIN
        return _commit(file_.handle()) == 0;
#else
        return fsync(file_.handle()) == 0 || errno == EINVAL || errno == ENOTSUP; // some files have no fsync
#endif
    }

    std::error_code TakeItsPlace() {
        file_.close();
        std::error_code error;
        std::filesystem::rename(QFileInfo(file_).filesystemFilePath(),
                                QFileInfo(target_).filesystemFilePath(), error);
        created_ = static_cast<bool>(error);
        return error;
    }

private:
    static QString SixLetters() {
        constexpr int letters = 6;
        QString name;
        for (int i = 0; i < letters; ++i) {
            name += QChar(u'A' + QRandomGenerator::global()->bounded(u'Z' - u'A' + 1));
        }
        return name;
    }

    QString target_;
    QFile file_;
    bool created_ = false; // and not renamed yet: to be deleted
};

// Follows links, also to a file that doesn't exist yet. Returns an empty name where the links never end.
QString TargetOf(const QString &fileName) {
    constexpr int mostLinks = 40;
    QString target = fileName;
    for (int links = 0; links < mostLinks; ++links) {
        const QFileInfo file(target);
        if (!file.isSymbolicLink()) {
            return target;
        }
        target = file.symLinkTarget();
    }
    return {};
}

QString ReasonOf(const std::error_code &error, const QFileInfo &old) {
    const QString reason = QString::fromLocal8Bit(error.message().c_str());
#ifndef Q_OS_WIN
    if (error == std::errc::operation_not_permitted && old.exists() && old.ownerId() != geteuid()) {
        return reason +
               QStringLiteral(". The file is somebody else's, in a folder where only the owner of a file "
                              "may replace it");
    }
#else
    Q_UNUSED(old)
#endif
    return reason;
}

} // namespace

void ReplaceContent(const QString &fileName, const QByteArray &content) {
    const QString target = TargetOf(fileName);
    if (target.isEmpty()) {
        throw Fault::File(fileName, QStringLiteral("this names no file"));
    }
    const QFileInfo old(target);
    if (old.exists() && !old.isFile()) {
        throw Fault::File(fileName, QStringLiteral("this isn't a file that can be written"));
    }
    FileBeside file(target);
    if (!file.Create()) {
        throw Fault::File(fileName, file.WhyNotCreated());
    }
    if (old.exists()) {
        file.TakeAttributesOf(old);
    }
    if (!file.Fill(content)) {
        throw Fault::File(fileName, qt_error_string());
    }
#ifdef Q_OS_WIN
    ClearedAttributes attributes(target);
#endif
    if (const std::error_code error = file.TakeItsPlace()) {
        throw Fault::File(fileName, ReasonOf(error, old));
    }
#ifdef Q_OS_WIN
    attributes.Replaced();
#endif
}

bool TryReplaceContent(const QString &fileName, const QByteArray &content) {
    try {
        ReplaceContent(fileName, content);
        return true;
    } catch (const Fault &) {
        return false;
    }
}

} // namespace ztv
