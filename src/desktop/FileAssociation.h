#pragma once

#include "desktop/KeyStore.h"

#include <cstdint>
#include <variant>

namespace ztv {

// Binds a file type to a program in a store of keys. Reports no failure: an entry that can't be written is
// missing, and the next start tries again.
namespace FileAssociation {

using Value = std::variant<QString, std::int32_t>;

// Makes the application open the files with this extension, with or without its dot. Never changes an
// existing binding of the extension, not even for a program that has moved.
void CreateAssociation(KeyStore &store, const QString &extension, const QString &className,
                       const QString &description, const QString &application);

// Returns the key, below a class's own key, for the command that opens a file.
QString CommandKey(const QString &className);

// Returns the command that opens a file with the application.
QString Command(const QString &application);

// Returns true if the key of the classes can be opened with all access.
bool KeyExists(KeyStore &store, const QString &keyPath);

void CreateKey(KeyStore &store, const QString &keyPath, RootKey rootKey);

// Stores a value in a key of the classes.
void SetKeyValue(KeyStore &store, const QString &keyPath, const QString &valueName, const Value &value,
                 ValueType type);

// Stores a text in the local 8-bit encoding with a NUL, and a number as 4 bytes. For any other type, stores
// nothing and returns 0. For a text that isn't a 32-bit number, stores nothing and returns an error.
StoreStatus StoreValue(OpenKey &key, const QString &valueName, ValueType type, const Value &value);

} // namespace FileAssociation

} // namespace ztv
