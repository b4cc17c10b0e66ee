#pragma once

#include "desktop/KeyStore.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

// A value of the registry as it lies there.
struct RegistryValue {
    std::uint32_t type = 0; // of ValueType, or another one
    QByteArray bytes;
};

// Reads the registry of Windows.
class RegistryReader {
public:
    virtual ~RegistryReader() = default;

    // Nothing when the key can't be opened, or has no such value of at most 1024 bytes.
    virtual std::optional<RegistryValue> Query(RootKey root, const QString &keyName,
                                               const QString &valueName) = 0;
};

#ifdef Q_OS_WIN
class SystemRegistryReader : public RegistryReader {
public:
    std::optional<RegistryValue> Query(RootKey root, const QString &keyName,
                                       const QString &valueName) override;
};
#endif
