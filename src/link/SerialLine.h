#pragma once

#include <QByteArray>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <cstdint>

struct LineSettings {
    QString device;
    int bitsPerSecond = 38400;
    QSerialPort::Parity parity = QSerialPort::NoParity;
    QSerialPort::StopBits stopBits = QSerialPort::TwoStop;
};

// One serial device with 8 data bits. When the device goes away it is closed at once and reported once.
class SerialLine : public QObject {
    Q_OBJECT

public:
    explicit SerialLine(QObject *parent = nullptr);

    // LinkStatus::NoError, or the status code of the step that was refused; the line is then closed.
    std::int16_t Open(const LineSettings &settings);
    void Close();
    bool IsOpen() const;

    // Drops what was received and not yet read. Leaves the output alone.
    void ClearInput();

    // Hands the bytes to the device at once. False when it doesn't take them.
    bool Write(const QByteArray &bytes);

    // The bytes that have come.
    QByteArray TakeInput();

    // The same with those that the system still holds.
    QByteArray TakeAllInput();

    // Blocks until something has come, at most so long, and returns it. Empty when nothing came in time or
    // the line is no longer open.
    QByteArray WaitForInput(int milliseconds);

Q_SIGNALS:
    // Both come from the event loop, never from within a call, so a handler may close and reopen the line.
    void BytesArrived();
    void HungUp();

private:
    void OnReadyRead();
    void OnError(QSerialPort::SerialPortError error);
    bool DeviceIsGone() const;

    QSerialPort port_;
    QByteArray input_; // taken from the port and not yet asked for
    bool hungUp_ = false;
    bool arrivalPosted_ = false;
};
