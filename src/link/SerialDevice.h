#pragma once

#include "link/LinkStatus.h"
#include "model/LineTables.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace ztv {

// A serial device and its line, with 8 data bits.
struct LineSettings {
    QString device;
    int bitsPerSecond = 38400;
    Parity parity = Parity::None;
    StopBits stopBits = StopBits::Two;
};

// A serial device of the system. The build selects the implementation.
class SerialDevice {
public:
    enum class Notice {
        Input, // bytes have arrived
        Gone   // the device failed for good; it may report so again until it is closed
    };

    virtual ~SerialDevice() = default;
    SerialDevice() = default;
    SerialDevice(const SerialDevice &) = delete;
    SerialDevice &operator=(const SerialDevice &) = delete;

    // Called from the event loop or from within any call below. It must not close the device.
    void OnNotice(std::function<void(Notice)> handler) { notice_ = std::move(handler); }

    // Returns LinkStatus::NoError, or the status of the step that was refused; the device is then
    // closed.
    // REQUIRES: the device is closed.
    virtual LinkStatus Open(const LineSettings &settings) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;

    // Drops the bytes received and not yet read. Leaves the output alone.
    virtual void ClearInput() = 0;

    // Passes the bytes to the device at once. Returns false when the device doesn't accept them all.
    virtual bool Write(const QByteArray &bytes) = 0;

    // Returns the bytes that the device has reported and that weren't read yet.
    virtual QByteArray Read() = 0;

    // Blocks until bytes arrive, for at most `milliseconds`. 0 only collects bytes that the system has
    // already received.
    virtual void WaitForInput(int milliseconds) = 0;

    // Says whether an answer is awaited: a device that has to look for bytes looks often then.
    virtual void ExpectInput(bool /*expected*/) {}

protected:
    void Notify(Notice notice) const {
        if (notice_) {
            notice_(notice);
        }
    }

private:
    std::function<void(Notice)> notice_;
};

std::unique_ptr<SerialDevice> NewSerialDevice();

} // namespace ztv
