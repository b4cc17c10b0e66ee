#include "tests/helpers/ModbusServer.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <modbus.h>
#include <termios.h>
#include <unistd.h>

namespace ztv {

namespace {

constexpr int registerCount = 200;
constexpr int waitUs = 50'000; // the longest delay of a stop

modbus_mapping_t *Mapping(void *mapping) {
    return static_cast<modbus_mapping_t *>(mapping);
}

} // namespace

ModbusServer::ModbusServer(int slave) {
    master_ = posix_openpt(O_RDWR | O_NOCTTY);
    EXPECT_GE(master_, 0);
    EXPECT_EQ(grantpt(master_), 0);
    EXPECT_EQ(unlockpt(master_), 0);
    path_ = QString::fromLocal8Bit(ptsname(master_));
    slaveEnd_ = open(path_.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    termios raw{};
    tcgetattr(slaveEnd_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slaveEnd_, TCSANOW, &raw);
    mapping_ = modbus_mapping_new(0, 0, registerCount, 0);
    EXPECT_NE(mapping_, nullptr);
    thread_ = std::thread([this, slave] { Serve(slave); });
}

ModbusServer::~ModbusServer() {
    stop_ = true;
    thread_.join();
    modbus_mapping_free(Mapping(mapping_));
    close(slaveEnd_);
    close(master_);
}

// libmodbus can only open a device by name. So it receives the terminal's near end afterwards.
void ModbusServer::Serve(int slave) {
    modbus_t *context = modbus_new_rtu("/dev/null", 38400, 'N', 8, 2);
    modbus_set_slave(context, slave);
    modbus_set_socket(context, master_);
    modbus_set_indication_timeout(context, 0, waitUs);
    std::array<std::uint8_t, MODBUS_RTU_MAX_ADU_LENGTH> request{};
    while (!stop_) {
        const int length = modbus_receive(context, request.data());
        if (length > 0) {
            modbus_reply(context, request.data(), length, Mapping(mapping_));
        }
    }
    modbus_free(context);
}

std::uint16_t ModbusServer::Register(int address) const {
    return std::atomic_ref(Mapping(mapping_)->tab_registers[address]).load();
}

void ModbusServer::SetRegister(int address, std::uint16_t value) {
    std::atomic_ref(Mapping(mapping_)->tab_registers[address]).store(value);
}

} // namespace ztv
