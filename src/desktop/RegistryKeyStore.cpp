#include "desktop/RegistryKeyStore.h"

#include <qt_windows.h>

namespace ztv {

namespace {

class OpenRegistryKey : public OpenKey {
public:
    explicit OpenRegistryKey(HKEY key) : key_(key) {}
    ~OpenRegistryKey() override { RegCloseKey(key_); }
    OpenRegistryKey(const OpenRegistryKey &) = delete;
    OpenRegistryKey &operator=(const OpenRegistryKey &) = delete;

    StoreStatus Store(const QString &valueName, ValueType type, const QByteArray &bytes) override {
        return RegSetValueExA(key_, valueName.toLocal8Bit().constData(), 0, static_cast<DWORD>(type),
                              reinterpret_cast<const BYTE *>(bytes.constData()),
                              static_cast<DWORD>(bytes.size()));
    }

private:
    HKEY key_;
};

HKEY HandleOf(RootKey root) {
    switch (root) {
    case RootKey::CurrentUser:
        return HKEY_CURRENT_USER;
    case RootKey::LocalMachine:
        return HKEY_LOCAL_MACHINE;
    case RootKey::ClassesRoot:
        break;
    }
    return HKEY_CLASSES_ROOT;
}

} // namespace

std::unique_ptr<OpenKey> RegistryKeyStore::Open(RootKey root, const QString &keyPath) {
    HKEY key = nullptr;
    if (RegOpenKeyExA(HandleOf(root), keyPath.toLocal8Bit().constData(), 0, KEY_ALL_ACCESS, &key) !=
        ERROR_SUCCESS) {
        return nullptr;
    }
    return std::make_unique<OpenRegistryKey>(key);
}

void RegistryKeyStore::Create(RootKey root, const QString &keyPath) {
    HKEY key = nullptr;
    if (RegCreateKeyExA(HandleOf(root), keyPath.toLocal8Bit().constData(), 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, nullptr) == ERROR_SUCCESS) {
        RegCloseKey(key);
    }
}

} // namespace ztv
