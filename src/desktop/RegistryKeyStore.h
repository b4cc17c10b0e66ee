#pragma once

#include "desktop/KeyStore.h"

#include <memory>

namespace ztv {

// The registry of Windows.
class RegistryKeyStore : public KeyStore {
public:
    std::unique_ptr<OpenKey> Open(RootKey root, const QString &keyPath) override;
    void Create(RootKey root, const QString &keyPath) override;
};

} // namespace ztv
