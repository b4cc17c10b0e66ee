#pragma once

#include "desktop/KeyStore.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <optional>

namespace ztv {

// A value as it is stored in the registry.
struct RegistryValue {
    std::uint32_t type = 0; // a ValueType or another type
    QByteArray bytes;
};

// Reads the registry of Windows.
class RegistryReader {
public:
    virtual ~RegistryReader() = default;

    // Returns none if the key can't be opened or has no such value of at most 1024 bytes.
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

} // namespace ztv
