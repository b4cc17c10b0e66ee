#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

namespace ztv {

// The numbers are those of the Windows registry.
enum class RootKey : std::uint32_t {
    ClassesRoot = 0x80000000,
    CurrentUser = 0x80000001,
    LocalMachine = 0x80000002
};
enum class ValueType : std::uint32_t { Sz = 1, Dword = 4 };

// 0 if the value was stored, otherwise an error code of the system.
using StoreStatus = std::int32_t;

// A key, open with all access until this is destroyed.
class OpenKey {
public:
    virtual ~OpenKey() = default;

    // Stores the bytes as the value of this name, the empty name being the key's own value.
    virtual StoreStatus Store(const QString &valueName, ValueType type, const QByteArray &bytes) = 0;
};

// The system's store for the bindings of file types: a tree of keys with values. A key path is a sequence of
// names separated by backslashes.
class KeyStore {
public:
    virtual ~KeyStore() = default;

    // Returns null if the key doesn't exist or can't be opened with all access.
    virtual std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) = 0;

    // Creates the key, and those above it, if it doesn't exist.
    virtual void Create(RootKey root, const QString &keyPath) = 0;
};

} // namespace ztv
