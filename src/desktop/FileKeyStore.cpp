#include "desktop/FileKeyStore.h"

#include "support/ReplaceContent.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QtEndian>
#include <array>

namespace ztv {

namespace {

constexpr StoreStatus writeFault = 29; // ERROR_WRITE_FAULT

// Returns a file name without separators and dots for any name, so that it can't lead to another folder.
QString Encoded(const QString &name) {
    return QString::fromLatin1(name.toCaseFolded().toUtf8().toPercentEncoding({}, ".~"));
}

QString RootFolder(RootKey root) {
    switch (root) {
    case RootKey::CurrentUser:
        return QStringLiteral("user");
    case RootKey::LocalMachine:
        return QStringLiteral("machine");
    case RootKey::ClassesRoot:
        break;
    }
    return QStringLiteral("classes");
}

QString ValueFile(const QString &keyFolder, const QString &valueName) {
    return keyFolder + u'/' + (valueName.isEmpty() ? QStringLiteral("@") : Encoded(valueName)) +
           QStringLiteral(".value");
}

// The header before a value's bytes in its file.
QByteArray Head(ValueType type) {
    std::array<char, sizeof(type)> bytes{};
    qToLittleEndian(static_cast<std::uint32_t>(type), bytes.data());
    return QByteArray(bytes.data(), bytes.size());
}

class KeyFolder : public OpenKey {
public:
    explicit KeyFolder(const QString &folder) : folder_(folder) {}

    StoreStatus Store(const QString &valueName, ValueType type, const QByteArray &bytes) override {
        return TryReplaceContent(ValueFile(folder_, valueName), Head(type) + bytes) ? 0 : writeFault;
    }

private:
    QString folder_;
};

} // namespace

QString FileKeyStore::UsersFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/ztv-link/keys");
}

std::unique_ptr<OpenKey> FileKeyStore::Open(RootKey root, const QString &keyPath) {
    const QString folder = FolderOf(root, keyPath);
    const QFileInfo info(folder);
    if (folder.isEmpty() || !info.isDir() || !info.isWritable()) {
        return nullptr;
    }
    return std::make_unique<KeyFolder>(folder);
}

void FileKeyStore::Create(RootKey root, const QString &keyPath) {
    if (const QString folder = FolderOf(root, keyPath); !folder.isEmpty()) {
        QDir().mkpath(folder);
    }
}

void FileKeyStore::Remove(RootKey root, const QString &keyPath) {
    if (const QString folder = FolderOf(root, keyPath); !folder.isEmpty()) {
        QDir(folder).removeRecursively();
    }
}

std::optional<QByteArray> FileKeyStore::Read(RootKey root, const QString &keyPath, const QString &valueName,
                                             ValueType type) const {
    const QString folder = FolderOf(root, keyPath);
    QFile file(ValueFile(folder, valueName));
    if (folder.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    constexpr qint64 bound = 65536; // far more than any value of the program
    const QByteArray content = file.read(bound);
    const QByteArray head = Head(type);
    if (!content.startsWith(head)) {
        return std::nullopt;
    }
    return content.mid(head.size());
}

QString FileKeyStore::FolderOf(RootKey root, const QString &keyPath) const {
    QString folder = folder_ + u'/' + RootFolder(root);
    for (const QString &name : keyPath.split(u'\\')) {
        if (name.isEmpty()) {
            return {};
        }
        folder += u'/' + Encoded(name);
    }
    return folder;
}

} // namespace ztv
