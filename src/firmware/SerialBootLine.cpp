#include "firmware/SerialBootLine.h"

#include "link/LinkStatus.h"

namespace ztv {

std::unique_ptr<BootLine> SerialBootLine::Open(const QString &device, std::int32_t bitRate) {
    std::unique_ptr<SerialBootLine> opened(new SerialBootLine);
    const LinkStatus status = opened->line_.Open(
        {.device = device, .bitsPerSecond = bitRate, .parity = Parity::None, .stopBits = StopBits::One});
    return status == LinkStatus::NoError ? std::move(opened) : nullptr;
}

OpenBootLine SerialBootLine::Opener(std::function<QString(std::int16_t)> deviceOfPort) {
    return [deviceOfPort = std::move(deviceOfPort)](const QByteArray &portName,
                                                    std::int32_t bitRate) -> std::unique_ptr<BootLine> {
        const QByteArray prefix = QByteArrayLiteral("COM");
        bool isNumber = false;
        const std::int16_t number = portName.mid(prefix.size()).toShort(&isNumber);
        if (!portName.startsWith(prefix) || !isNumber) {
            return nullptr;
        }
        return Open(deviceOfPort(number), bitRate);
    };
}

void SerialBootLine::ClearInput() {
    line_.ClearInput();
}

bool SerialBootLine::Write(const QByteArray &bytes) {
    return line_.Write(bytes);
}

std::optional<QByteArray> SerialBootLine::Read(int milliseconds) {
    QByteArray bytes = line_.WaitForInput(milliseconds);
    if (bytes.isEmpty() && !line_.IsOpen()) {
        return std::nullopt;
    }
    return bytes;
}

} // namespace ztv
