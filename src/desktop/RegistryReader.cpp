#include "desktop/RegistryReader.h"

#include <qt_windows.h>

namespace ztv {

std::optional<RegistryValue> SystemRegistryReader::Query(RootKey root, const QString &keyName,
                                                         const QString &valueName) {
    constexpr REGSAM access = 131135; // all but deleting the key and changing its owner or its permissions
    // The system's own constants are these numbers, sign-extended.
    const auto rootKey = reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(root)));
    HKEY key = nullptr;
    if (RegOpenKeyExA(rootKey, keyName.toLocal8Bit().constData(), 0, access, &key) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    QByteArray buffer(1024, '\0');
    DWORD type = 0;
    auto length = static_cast<DWORD>(buffer.size());
    const LSTATUS status = RegQueryValueExA(key, valueName.toLocal8Bit().constData(), nullptr, &type,
                                            reinterpret_cast<BYTE *>(buffer.data()), &length);
    RegCloseKey(key);
    if (status != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return RegistryValue{type, buffer.left(static_cast<qsizetype>(length))};
}

} // namespace ztv
