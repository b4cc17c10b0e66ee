#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

// The numbers are those of the Windows registry.
enum class RootKey : std::uint32_t {
    ClassesRoot = 0x80000000,
    CurrentUser = 0x80000001,
    LocalMachine = 0x80000002
};
enum class ValueType : std::uint32_t { Sz = 1, Dword = 4 };

// 0 when the store was made, otherwise an error of the system.
using StoreStatus = std::int32_t;

// A key that is open with all access, until it is destroyed.
class OpenKey {
public:
    virtual ~OpenKey() = default;

    // Stores the bytes as the value of this name, the empty name being the key's own value.
    virtual StoreStatus Store(const QString &valueName, ValueType type, const QByteArray &bytes) = 0;
};

// Where the system keeps the bindings of its file types: a tree of keys with values. A key path is names
// parted by backslashes.
class KeyStore {
public:
    virtual ~KeyStore() = default;

    // Nothing when the key isn't there or can't be had with all access.
    virtual std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) = 0;

    // Makes the key, with those above it, if it isn't there.
    virtual void Create(RootKey root, const QString &keyPath) = 0;
};
