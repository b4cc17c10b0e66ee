#pragma once

#include "desktop/KeyStore.h"

#include <variant>

// Binds a file type to a program in a store of keys. No failure is reported: what can't be written doesn't
// appear, and the next start tries again.
namespace FileAssociation {

using Value = std::variant<QString, std::int32_t>;

// Has the files with this extension opened by the application, unless the extension is bound already: that
// is never touched, not even to follow a program that has moved. The extension's point may be missing.
void CreateAssociation(KeyStore &store, const QString &extension, const QString &className,
                       const QString &description, const QString &application);

// The key, below a class's own, that holds the command which opens a file.
QString CommandKey(const QString &className);

// The command that opens a file with the application.
QString Command(const QString &application);

// True when the key of the classes can be opened with all access.
bool KeyExists(KeyStore &store, const QString &keyPath);

void CreateKey(KeyStore &store, const QString &keyPath, RootKey rootKey);

// Stores a value in a key of the classes.
void SetKeyValue(KeyStore &store, const QString &keyPath, const QString &valueName, const Value &value,
                 ValueType type);

// Stores a text as its 8-bit characters and a NUL, a number as 4 bytes. Any other type stores nothing and
// gives 0. A text that is no such number isn't stored either.
StoreStatus StoreValue(OpenKey &key, const QString &valueName, ValueType type, const Value &value);

} // namespace FileAssociation
