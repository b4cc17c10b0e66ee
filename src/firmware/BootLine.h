#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace ztv {

// The serial line as the boot library uses it. Its calls block.
class BootLine {
public:
    virtual ~BootLine() = default;

    // Drops the bytes received and not yet read.
    virtual void ClearInput() = 0;

    // Returns false when the line doesn't accept the bytes.
    virtual bool Write(const QByteArray &bytes) = 0;

    // Waits until bytes arrive, for at most `milliseconds`, and returns all of them. Empty: none arrived.
    // Nothing: the line is gone.
    virtual std::optional<QByteArray> Read(int milliseconds) = 0;
};

// Opens the port of that name, such as "COM3", at that rate. Returns null when it can't be opened.
using OpenBootLine =
    std::function<std::unique_ptr<BootLine>(const QByteArray &portName, std::int32_t bitRate)>;

} // namespace ztv
