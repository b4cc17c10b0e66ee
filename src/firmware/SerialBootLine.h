#pragma once

#include "firmware/BootLine.h"
#include "link/SerialLine.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace ztv {

// A serial device for the boot library: 8 data bits, no parity, one stop bit.
class SerialBootLine : public BootLine {
public:
    // Returns null when the device can't be opened.
    static std::unique_ptr<BootLine> Open(const QString &device, std::int32_t bitRate);

    // Returns a function that opens the device of a port named "COM" and a number.
    static OpenBootLine Opener(std::function<QString(std::int16_t)> deviceOfPort);

    void ClearInput() override;
    bool Write(const QByteArray &bytes) override;
    std::optional<QByteArray> Read(int milliseconds) override;

private:
    SerialBootLine() = default;

    SerialLine line_;
};

} // namespace ztv
