#pragma once

#include "firmware/BootLine.h"
#include "link/SerialLine.h"

#include <QString>

// A serial device as the boot library uses it: 8 data bits, no parity, one stop bit.
class SerialBootLine : public BootLine {
public:
    // Null when the device can't be opened.
    static std::unique_ptr<BootLine> Open(const QString &device, std::int32_t bitRate);

    // Opens the device behind the number of a port that is named "COM3".
    static OpenBootLine Opener(std::function<QString(std::int16_t)> deviceOfPort);

    void ClearInput() override;
    bool Write(const QByteArray &bytes) override;
    std::optional<QByteArray> Read(int milliseconds) override;

private:
    SerialBootLine() = default;

    SerialLine line_;
};
