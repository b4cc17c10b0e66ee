#pragma once

#include <QString>
#include <cstdint>

namespace ztv {

// The FILE of a command, in which {address} and {serial} stand for the sensor's.
class FileName {
public:
    // Throws a Failure (wrong use) if the text is empty or has another word in braces.
    explicit FileName(const QString &text);

    const QString &Text() const { return text_; }
    bool DependsOnSensor() const;

    // Returns the name for a sensor.
    QString Of(std::int16_t address, std::int32_t serialNumber) const;

private:
    QString text_;
};

} // namespace ztv
