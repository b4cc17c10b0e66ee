#pragma once

#include "link/SerialDevice.h"

#include <QByteArray>
#include <QObject>
#include <cstdint>
#include <memory>

namespace ztv {

// One serial line. When its device goes away, closes and reports that once.
class SerialLine : public QObject {
    Q_OBJECT

public:
    explicit SerialLine(QObject *parent = nullptr) : SerialLine(NewSerialDevice(), parent) {}
    explicit SerialLine(std::unique_ptr<SerialDevice> device, QObject *parent = nullptr);

    // Returns LinkStatus::NoError, or the status of the step that was refused; the line is then closed.
    LinkStatus Open(const LineSettings &settings);
    void Close();
    bool IsOpen() const;

    // Drops the bytes received and not yet read. Leaves the output alone.
    void ClearInput();

    // Passes the bytes to the device at once. Returns false when the device doesn't accept them all.
    bool Write(const QByteArray &bytes);

    // Returns the bytes that the device has reported and that weren't read yet.
    QByteArray TakeInput();

    // The same, including bytes that the system has received but not yet reported.
    QByteArray TakeAllInput();

    // Blocks until bytes arrive, for at most `milliseconds`, and returns them. Empty when nothing arrived in
    // time or the line is no longer open.
    QByteArray WaitForInput(int milliseconds);

    // Says whether an answer is awaited. Without it, bytes may be reported some milliseconds late.
    void ExpectInput(bool expected);

Q_SIGNALS:
    // Both are emitted from the event loop, never from within a call, so a handler may close and reopen the
    // line.
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

} // namespace ztv
