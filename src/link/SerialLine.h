#pragma once

#include "link/SerialDevice.h"

#include <QByteArray>
#include <QObject>
#include <cstdint>
#include <memory>

// One serial line. When its device goes away it is closed at once and reported once.
class SerialLine : public QObject {
    Q_OBJECT

public:
    explicit SerialLine(QObject *parent = nullptr) : SerialLine(NewSerialDevice(), parent) {}
    explicit SerialLine(std::unique_ptr<SerialDevice> device, QObject *parent = nullptr);

    // LinkStatus::NoError, or the status code of the step that was refused; the line is then closed.
    std::int16_t Open(const LineSettings &settings);
    void Close();
    bool IsOpen() const;

    // Drops the bytes received and not yet read. Leaves the output alone.
    void ClearInput();

    // Hands the bytes to the device at once. False when it doesn't take them.
    bool Write(const QByteArray &bytes);

    // The bytes that have come.
    QByteArray TakeInput();

    // The same with those that the system still holds.
    QByteArray TakeAllInput();

    // Blocks until bytes have come, at most so long, and returns them. Empty when nothing came in time or the
    // line is no longer open.
    QByteArray WaitForInput(int milliseconds);

Q_SIGNALS:
    // Both come from the event loop, never from within a call, so a handler may close and reopen the line.
    void BytesArrived();
    void HungUp();

private:
    void OnNotice(SerialDevice::Notice notice);
    void PostArrival();
    void PostHangUp();

    std::unique_ptr<SerialDevice> device_;
    bool hungUp_ = false;
    bool arrivalPosted_ = false;
};
