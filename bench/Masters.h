#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

namespace ztv {

// A Modbus master that reads 90 registers of slave 1 at 38400 baud, 8N2.
class Master {
public:
    static constexpr int RegisterCount = 90;

    virtual ~Master() = default;

    virtual QString Name() const = 0;
    virtual bool Open(const QString &device) = 0;
    virtual void Close() = 0;

    // Sends one request. Calls `done` with whether the registers came, possibly before returning.
    virtual void Read(std::function<void(bool)> done) = 0;
};

// The program's own master, then the peers.
std::vector<std::unique_ptr<Master>> AllMasters();

} // namespace ztv
