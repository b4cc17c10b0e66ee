#pragma once

#include <QByteArray>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

// The serial line as the boot library uses it: its calls block.
class BootLine {
public:
    virtual ~BootLine() = default;

    // Drops what was received and not yet read.
    virtual void ClearInput() = 0;

    // False when the line doesn't take the bytes.
    virtual bool Write(const QByteArray &bytes) = 0;

    // Waits until something has come, at most so long, and returns all that has. Empty: nothing came.
    // Nothing: the line is gone.
    virtual std::optional<QByteArray> Read(int milliseconds) = 0;
};

// Opens the port of that name, "COM3", at that rate. Null when it can't be opened.
using OpenBootLine =
    std::function<std::unique_ptr<BootLine>(const QByteArray &portName, std::int32_t bitRate)>;
