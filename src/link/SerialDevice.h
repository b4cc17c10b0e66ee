#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

enum class Parity : std::int16_t { None = 0, Odd = 1, Even = 2 };
enum class StopBits : std::int16_t { One = 0, Two = 1 };

// A serial device and its line, with 8 data bits.
struct LineSettings {
    QString device;
    int bitsPerSecond = 38400;
    Parity parity = Parity::None;
    StopBits stopBits = StopBits::Two;
};

// A serial device of the system. The build chooses which implementation there is.
class SerialDevice {
public:
    enum class Notice {
        Input, // bytes have come
        Gone   // the device failed for good; it may report so again until it is closed
    };

    virtual ~SerialDevice() = default;
    SerialDevice() = default;
    SerialDevice(const SerialDevice &) = delete;
    SerialDevice &operator=(const SerialDevice &) = delete;

    // Called from the event loop or from within any call below. It must not close the device.
    void OnNotice(std::function<void(Notice)> handler) { notice_ = std::move(handler); }

    // LinkStatus::NoError, or the status code of the step that was refused; the device is then closed.
    // REQUIRES: it is closed.
    virtual std::int16_t Open(const LineSettings &settings) = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;

    // Drops the bytes received and not yet read. Leaves the output alone.
    virtual void ClearInput() = 0;

    // Hands the bytes to the device at once. False when it doesn't take them.
    virtual bool Write(const QByteArray &bytes) = 0;

    // The bytes that the device has reported.
    virtual QByteArray Read() = 0;

    // Blocks until bytes have come, at most so long. 0 only looks for those that the system still holds.
    virtual void WaitForInput(int milliseconds) = 0;

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
