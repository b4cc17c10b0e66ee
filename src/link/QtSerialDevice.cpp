#include "link/SerialDevice.h"

#include <QFileInfo>
#include <QSerialPort>
#include <utility>

#ifdef Q_OS_UNIX
#include <poll.h>
#endif
#ifdef Q_OS_LINUX
#include <linux/serial.h>
#include <sys/ioctl.h>
#endif

namespace ztv {

namespace {

QSerialPort::Parity PortParity(Parity parity) {
    switch (parity) {
    case Parity::Odd:
        return QSerialPort::OddParity;
    case Parity::Even:
        return QSerialPort::EvenParity;
    default:
        return QSerialPort::NoParity;
    }
}

QSerialPort::StopBits PortStopBits(StopBits stopBits) {
    return stopBits == StopBits::Two ? QSerialPort::TwoStop : QSerialPort::OneStop;
}

// Asks the adapter to deliver bytes at once: by default USB adapters delay received bytes by up to 16 ms. An
// adapter that can't do it refuses, which costs speed and nothing else.
void AskForLowLatency([[maybe_unused]] const QSerialPort &port) {
#ifdef Q_OS_LINUX
    serial_struct serial{};
    if (ioctl(port.handle(), TIOCGSERIAL, &serial) == 0) {
        serial.flags |= ASYNC_LOW_LATENCY;
        ioctl(port.handle(), TIOCSSERIAL, &serial);
    }
#endif
}

// Returns false for a pseudo terminal, which carries no parity bit and refuses to be set to one. Its sensor,
// simulated or on a network adapter, is reached all the same.
bool CarriesParity(const QString &device) {
    return !QFileInfo(device).canonicalFilePath().startsWith(QStringLiteral("/dev/pts/"));
}

class QtSerialDevice : public SerialDevice {
public:
    QtSerialDevice() {
        QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] { Notify(Notice::Input); });
        QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                         [this](QSerialPort::SerialPortError error) { OnError(error); });
    }

    LinkStatus Open(const LineSettings &settings) override;
    void Close() override;
    bool IsOpen() const override { return port_.isOpen(); }
    void ClearInput() override;
    bool Write(const QByteArray &bytes) override;
    QByteArray Read() override { return std::exchange(input_, {}) + port_.readAll(); }
    void WaitForInput(int milliseconds) override { port_.waitForReadyRead(milliseconds); }

private:
    void OnError(QSerialPort::SerialPortError error);
    bool IsGone() const;

    QSerialPort port_;
    QByteArray input_; // taken from the port, not yet returned by Read
};

LinkStatus QtSerialDevice::Open(const LineSettings &settings) {
    input_.clear();
    port_.setPortName(settings.device);
    // Set before opening, or QSerialPort applies the previous settings. Set again afterwards: only then does
    // each call report whether the device accepts it.
    const QSerialPort::Parity parity = PortParity(settings.parity);
    const QSerialPort::StopBits stopBits = PortStopBits(settings.stopBits);
    port_.setBaudRate(settings.bitsPerSecond);
    port_.setParity(parity);
    port_.setStopBits(stopBits);
    port_.setDataBits(QSerialPort::Data8);
    if (!port_.open(QIODevice::ReadWrite)) {
        return LinkStatus::OpenFailed;
    }
    LinkStatus status = LinkStatus::NoError;
    if (!port_.setBaudRate(settings.bitsPerSecond)) {
        status = LinkStatus::BaudRateRefused;
    } else if (!port_.setParity(parity) && CarriesParity(settings.device)) {
        status = LinkStatus::ParityRefused;
    } else if (!port_.setStopBits(stopBits)) {
        status = LinkStatus::StopBitsRefused;
    } else if (!port_.setDataBits(QSerialPort::Data8)) {
        status = LinkStatus::DataBitsRefused;
    }
    if (status != LinkStatus::NoError) {
        Close();
        return status;
    }
    AskForLowLatency(port_);
    return status;
}

void QtSerialDevice::Close() {
    if (port_.isOpen()) {
        port_.close();
    }
}

void QtSerialDevice::ClearInput() {
    port_.clear(QSerialPort::Input);
    input_.clear();
}

bool QtSerialDevice::Write(const QByteArray &bytes) {
    if (port_.write(bytes) != bytes.size()) {
        return false;
    }
    port_.flush();
    return true;
}

// Distinguishes a device that is gone from an empty read: where input was read or dropped between its notice
// and its reading, the port finds nothing to read and reports the same error as for a device that is gone.
bool QtSerialDevice::IsGone() const {
#ifdef Q_OS_UNIX
    pollfd state{.fd = port_.handle(), .events = POLLIN, .revents = 0};
    return poll(&state, 1, 0) < 0 || (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
#else
    return true;
#endif
}

void QtSerialDevice::OnError(QSerialPort::SerialPortError error) {
    const bool mayBeGone = error == QSerialPort::ResourceError || error == QSerialPort::DeviceNotFoundError ||
                           error == QSerialPort::PermissionError || error == QSerialPort::ReadError ||
                           error == QSerialPort::WriteError;
    if (!mayBeGone || !port_.isOpen()) {
        return;
    }
    if (IsGone()) {
        Notify(Notice::Gone);
        return;
    }
    port_.clearError();
    input_ += port_.readAll(); // the port notifies again only after a read
}

} // namespace

std::unique_ptr<SerialDevice> NewSerialDevice() {
    return std::make_unique<QtSerialDevice>();
}

} // namespace ztv
