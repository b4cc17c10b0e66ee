#include "bench/Masters.h"

#include "link/Mbaxp.h"

#include <QModbusDataUnit>
#include <QModbusReply>
#include <QModbusRtuSerialClient>
#include <QSerialPort>
#include <QVariant>
#include <array>
#include <modbus.h>

namespace ztv {

namespace {

constexpr int slave = 1;
constexpr int bitsPerSecond = 38400;
constexpr int timeoutMs = 2000; // long enough that a busy machine doesn't cause a timeout

class OurMaster : public Master {
public:
    OurMaster() {
        mbaxp_.BaudCode(8);
        mbaxp_.StopBitsCode(1);
        mbaxp_.ResponseTimeout(timeoutMs);
        QObject::connect(&mbaxp_, &Mbaxp::TransactionDone, &mbaxp_, [this] { done_(true); });
        QObject::connect(&mbaxp_, &Mbaxp::TransactionFailed, &mbaxp_, [this] { done_(false); });
    }

    QString Name() const override { return QStringLiteral("Mbaxp"); }
    bool Open(const QString &device) override {
        device_ = device;
        return mbaxp_.OpenPort() && mbaxp_.DefineReadRegisters(transaction, slave, 0, RegisterCount, 1);
    }
    void Close() override { mbaxp_.ClosePort(); }
    void Read(std::function<void(bool)> done) override {
        done_ = std::move(done);
        mbaxp_.TriggerOnce(transaction);
    }

private:
    static constexpr std::int16_t transaction = 1;

    QString device_;
    std::function<void(bool)> done_;
    Mbaxp mbaxp_{[this](std::int16_t) { return device_; }};
};

class LibmodbusMaster : public Master {
public:
    ~LibmodbusMaster() override { Close(); }

    QString Name() const override { return QStringLiteral("libmodbus"); }
    bool Open(const QString &device) override {
        context_ = modbus_new_rtu(device.toLocal8Bit().constData(), bitsPerSecond, 'N', 8, 2);
        return context_ != nullptr && modbus_set_slave(context_, slave) == 0 &&
               modbus_set_response_timeout(context_, timeoutMs / 1000, 0) == 0 &&
               modbus_connect(context_) == 0;
    }
    void Close() override {
        if (context_ != nullptr) {
            modbus_close(context_);
            modbus_free(context_);
            context_ = nullptr;
        }
    }
    void Read(std::function<void(bool)> done) override {
        std::array<std::uint16_t, RegisterCount> words{};
        done(modbus_read_registers(context_, 0, RegisterCount, words.data()) == RegisterCount);
    }

private:
    modbus_t *context_ = nullptr;
};

class QtMaster : public Master {
public:
    QtMaster() {
        client_.setConnectionParameter(QModbusDevice::SerialBaudRateParameter, bitsPerSecond);
        client_.setConnectionParameter(QModbusDevice::SerialDataBitsParameter, QSerialPort::Data8);
        client_.setConnectionParameter(QModbusDevice::SerialParityParameter, QSerialPort::NoParity);
        client_.setConnectionParameter(QModbusDevice::SerialStopBitsParameter, QSerialPort::TwoStop);
        client_.setTimeout(timeoutMs);
        client_.setNumberOfRetries(0);
    }

    QString Name() const override { return QStringLiteral("Qt serial bus client"); }
    bool Open(const QString &device) override {
        client_.setConnectionParameter(QModbusDevice::SerialPortNameParameter, device);
        return client_.connectDevice();
    }
    void Close() override { client_.disconnectDevice(); }
    void Read(std::function<void(bool)> done) override {
        QModbusReply *reply =
            client_.sendReadRequest({QModbusDataUnit::HoldingRegisters, 0, RegisterCount}, slave);
        if (reply == nullptr) {
            done(false);
            return;
        }
        QObject::connect(reply, &QModbusReply::finished, reply, [reply, done = std::move(done)] {
            reply->deleteLater();
            done(reply->error() == QModbusDevice::NoError && reply->result().valueCount() == RegisterCount);
        });
    }

private:
    QModbusRtuSerialClient client_;
};

} // namespace

std::vector<std::unique_ptr<Master>> AllMasters() {
    std::vector<std::unique_ptr<Master>> masters;
    masters.push_back(std::make_unique<OurMaster>());
    masters.push_back(std::make_unique<LibmodbusMaster>());
    masters.push_back(std::make_unique<QtMaster>());
    return masters;
}

} // namespace ztv
