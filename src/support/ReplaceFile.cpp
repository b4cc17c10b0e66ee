#include "support/ReplaceFile.h"

#include "support/Fault.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <optional>

#ifdef Q_OS_WIN
#include <io.h>
#include <qt_windows.h>
#else
#include <unistd.h>
#endif

namespace {

// A file's attributes, normal while this lives and put back unless the file has been replaced.
class ClearedAttributes {
public:
    explicit ClearedAttributes(const QString &fileName) : file_(fileName) {
        if (!QFileInfo::exists(fileName)) {
            return;
        }
#ifdef Q_OS_WIN
        attributes_ = GetFileAttributesW(NativeName());
        SetFileAttributesW(NativeName(), FILE_ATTRIBUTE_NORMAL);
#else
        const QFile::Permissions permissions = file_.permissions();
        if (!QFileInfo(fileName).isWritable() &&
            file_.setPermissions(permissions | QFile::WriteOwner | QFile::WriteUser)) {
            permissions_ = permissions;
        }
#endif
    }
    ~ClearedAttributes() {
        if (!replaced_) {
            PutBack();
        }
    }
    ClearedAttributes(const ClearedAttributes &) = delete;
    ClearedAttributes &operator=(const ClearedAttributes &) = delete;

    void Replaced() {
        replaced_ = true;
    }

private:
    QFile file_;
    bool replaced_ = false;
#ifdef Q_OS_WIN
    const wchar_t *NativeName() const {
        return reinterpret_cast<const wchar_t *>(file_.fileName().utf16());
    }
    void PutBack() {
        if (attributes_ != INVALID_FILE_ATTRIBUTES) {
            SetFileAttributesW(NativeName(), attributes_);
        }
    }
    DWORD attributes_ = INVALID_FILE_ATTRIBUTES;
#else
    void PutBack() {
        if (permissions_) {
            file_.setPermissions(*permissions_);
        }
    }
    std::optional<QFile::Permissions> permissions_;
#endif
};

// QSaveFile's own commit overlooks what a full disk only says when the bytes leave the buffers.
bool ReachesTheDisk(QSaveFile &file) {
    if (!file.flush()) {
        return false;
    }
#ifdef Q_OS_WIN
    return _commit(file.handle()) == 0;
#else
    return fsync(file.handle()) == 0 || errno == EINVAL || errno == ENOTSUP; // there is none everywhere
#endif
}

} // namespace

void ReplaceFile(const QString &fileName, const QByteArray &content) {
    const QFileInfo old(fileName);
    if (old.exists() && !old.isFile()) {
        throw Fault::File(fileName, QStringLiteral("this isn't a file that can be written"));
    }
    ClearedAttributes attributes(fileName);
    QSaveFile file(fileName);
    if (!file.open(QFile::WriteOnly)) {
        throw Fault::File(fileName, file.errorString());
    }
    // A write that comes short knows no words of its own for all that can be wrong.
    if (file.write(content) != content.size() || !ReachesTheDisk(file)) {
        throw Fault::File(fileName, qt_error_string());
    }
    if (!file.commit()) {
        throw Fault::File(fileName, file.error() == QFile::NoError ? qt_error_string() : file.errorString());
    }
    attributes.Replaced();
}

bool TryReplaceFile(const QString &fileName, const QByteArray &content) {
    try {
        ReplaceFile(fileName, content);
        return true;
    } catch (const Fault &) {
        return false;
    }
}
