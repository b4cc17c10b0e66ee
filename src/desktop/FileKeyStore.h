#pragma once

#include "desktop/KeyStore.h"

#include <memory>
#include <optional>

namespace ztv {

// A store of keys for systems that have none: a key is a folder, a value a file in it. Names are
// case-insensitive, as in the registry. A path with an empty name isn't a key.
class FileKeyStore : public KeyStore {
public:
    explicit FileKeyStore(const QString &folder) : folder_(folder) {}

    // Returns the folder of the user's own keys.
    static QString UsersFolder();

    std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) override;
    void Create(RootKey root, const QString &keyPath) override;

    // Deletes the key with its values and the keys below it.
    void Remove(RootKey root, const QString &keyPath);

    // Returns the stored bytes; none if there is no value of this name and type.
    std::optional<QByteArray> Read(RootKey root, const QString &keyPath, const QString &valueName,
                                   ValueType type) const;

private:
    QString FolderOf(RootKey root, const QString &keyPath) const;

    QString folder_;
};

} // namespace ztv
