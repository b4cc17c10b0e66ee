#include "link/SerialLine.h"

#include "link/LinkStatus.h"

#include <QFileInfo>
#include <utility>

#ifdef Q_OS_UNIX
#include <poll.h>
#endif
#ifdef Q_OS_LINUX
#include <linux/serial.h>
#include <sys/ioctl.h>
#endif

namespace {

// USB adapters hold received bytes back for up to 16 ms unless told otherwise. Those that can't do it
// refuse, which costs speed and nothing else.
void AskForLowLatency([[maybe_unused]] const QSerialPort &port) {
#ifdef Q_OS_LINUX
    serial_struct serial{};
    if (ioctl(port.handle(), TIOCGSERIAL, &serial) == 0) {
        serial.flags |= ASYNC_LOW_LATENCY;
        ioctl(port.handle(), TIOCSSERIAL, &serial);
    }
#endif
}

// A pseudo terminal carries no parity bit and refuses to be set to one; what runs behind it, a simulated
// sensor or a network adapter, is reached all the same.
bool CarriesParity(const QString &device) {
    return !QFileInfo(device).canonicalFilePath().startsWith(QStringLiteral("/dev/pts/"));
}

} // namespace

SerialLine::SerialLine(QObject *parent) : QObject(parent) {
    connect(&port_, &QSerialPort::readyRead, this, &SerialLine::OnReadyRead);
    connect(&port_, &QSerialPort::errorOccurred, this, &SerialLine::OnError);
}

std::int16_t SerialLine::Open(const LineSettings &settings) {
    if (IsOpen()) {
        return LinkStatus::AlreadyOpen;
    }
    Close();
    hungUp_ = false;
    input_.clear();
    port_.setPortName(settings.device);
    // Opened with its settings, a port drops those of the opening before; set once more, each says whether
    // the device takes it.
    port_.setBaudRate(settings.bitsPerSecond);
    port_.setParity(settings.parity);
    port_.setStopBits(settings.stopBits);
    port_.setDataBits(QSerialPort::Data8);
    if (!port_.open(QIODevice::ReadWrite)) {
        return LinkStatus::OpenFailed;
    }
    std::int16_t status = LinkStatus::NoError;
    if (!port_.setBaudRate(settings.bitsPerSecond)) {
        status = LinkStatus::BaudRateRefused;
    } else if (!port_.setParity(settings.parity) && CarriesParity(settings.device)) {
        status = LinkStatus::ParityRefused;
    } else if (!port_.setStopBits(settings.stopBits)) {
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

void SerialLine::Close() {
    if (port_.isOpen()) {
        port_.close();
    }
}

bool SerialLine::IsOpen() const {
    return port_.isOpen() && !hungUp_;
}

void SerialLine::ClearInput() {
    if (IsOpen()) {
        port_.clear(QSerialPort::Input);
        input_.clear();
    }
}

bool SerialLine::Write(const QByteArray &bytes) {
    if (!IsOpen() || port_.write(bytes) != bytes.size()) {
        return false;
    }
    port_.flush();
    return IsOpen();
}

QByteArray SerialLine::TakeInput() {
    return IsOpen() ? std::exchange(input_, {}) + port_.readAll() : QByteArray();
}

QByteArray SerialLine::WaitForInput(int milliseconds) {
    QByteArray bytes = TakeInput();
    if (!bytes.isEmpty() || !IsOpen()) {
        return bytes;
    }
    port_.waitForReadyRead(milliseconds);
    return TakeInput();
}

QByteArray SerialLine::TakeAllInput() {
    if (IsOpen()) {
        port_.waitForReadyRead(0); // waits for nothing
    }
    return TakeInput();
}

// The port doesn't report again while a handler of its report is running, and that may keep a box open.
void SerialLine::OnReadyRead() {
    if (arrivalPosted_) {
        return;
    }
    arrivalPosted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            arrivalPosted_ = false;
            Q_EMIT BytesArrived();
        },
        Qt::QueuedConnection);
}

// Where input was taken or dropped between its notice and its reading, the port finds nothing to read and
// reports that as it does a device that is gone.
bool SerialLine::DeviceIsGone() const {
#ifdef Q_OS_UNIX
    pollfd state{.fd = port_.handle(), .events = POLLIN, .revents = 0};
    return poll(&state, 1, 0) < 0 || (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
#else
    return true;
#endif
}

void SerialLine::OnError(QSerialPort::SerialPortError error) {
    const bool mayBeGone = error == QSerialPort::ResourceError || error == QSerialPort::DeviceNotFoundError ||
                           error == QSerialPort::PermissionError || error == QSerialPort::ReadError ||
                           error == QSerialPort::WriteError;
    if (!mayBeGone || !port_.isOpen() || hungUp_) {
        return;
    }
    if (!DeviceIsGone()) {
        port_.clearError();
        input_ += port_.readAll(); // the port listens again once it is read from
        return;
    }
    // A hung-up port reports the same error without end until it is closed, and it can't be closed from
    // within its own report.
    hungUp_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (hungUp_) {
                Close();
                Q_EMIT HungUp();
            }
        },
        Qt::QueuedConnection);
}
