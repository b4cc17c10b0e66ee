#pragma once

#include <QString>
#include <atomic>
#include <thread>
#include <vector>

namespace ztv {

// An independent Modbus RTU slave, libmodbus's, on a pseudo terminal.
class ModbusServer {
public:
    explicit ModbusServer(int slave);
    ~ModbusServer();
    ModbusServer(const ModbusServer &) = delete;
    ModbusServer &operator=(const ModbusServer &) = delete;

    // The device to open.
    QString Path() const { return path_; }

    std::uint16_t Register(int address) const;
    void SetRegister(int address, std::uint16_t value);

private:
    void Serve(int slave);

    int master_ = -1;
    int slaveEnd_ = -1;
    QString path_;
    void *mapping_ = nullptr;
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

} // namespace ztv
