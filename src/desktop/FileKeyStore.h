#pragma once

#include "desktop/KeyStore.h"

#include <optional>

// A store of keys where the system has none: a key is a folder, a value a file in it. As in the registry,
// the case of a name's letters doesn't count. A path with an empty name is no key.
class FileKeyStore : public KeyStore {
public:
    explicit FileKeyStore(const QString &folder) : folder_(folder) {}

    // Where the user's own keys are.
    static QString UsersFolder();

    std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) override;
    void Create(RootKey root, const QString &keyPath) override;

    // Deletes the key with its values and those below it.
    void Remove(RootKey root, const QString &keyPath);

    // The bytes that were stored, or nothing where there is no value of this name and type.
    std::optional<QByteArray> Read(RootKey root, const QString &keyPath, const QString &valueName,
                                   ValueType type) const;

private:
    QString FolderOf(RootKey root, const QString &keyPath) const;

    QString folder_;
};
