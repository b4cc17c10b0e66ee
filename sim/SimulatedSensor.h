#pragma once

#include "sim/LineFaults.h"
#include "sim/LineSettings.h"
#include "sim/SensorOptions.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace sim {

class BootLoader;
class DeviceMemory;

struct Statistics {
    int requests = 0;   // executed
    int replies = 0;    // put on the line
    int exceptions = 0; // of these replies
    int ignored = 0;    // for another slave, with other line settings, or while mute
    int discarded = 0;  // bytes that belonged to no request
};

// The sensor as a whole: a Modbus slave and a boot loader that take turns on a pseudo terminal. It lives in
// the event loop of the thread that starts it, and does nothing between two requests. All but Start() needs a
// started sensor.
class SimulatedSensor {
public:
    explicit SimulatedSensor(SensorOptions options);
    ~SimulatedSensor();
    SimulatedSensor(const SimulatedSensor &) = delete;
    SimulatedSensor &operator=(const SimulatedSensor &) = delete;

    // Returns what went wrong, or an empty text.
    QString Start();

    // One line of the command language. Returns the text to print, "error: ..." when it was refused.
    QString Execute(const QString &commandLine);

    // The name to open: the link when there is one, else the terminal. Empty while unplugged.
    QString Path() const;
    void Unplug();
    // Returns what went wrong, or an empty text.
    QString Plug();
    // As after a loss of power: the stored set is back, and the boot mark decides what runs.
    void Reset();

    // Raw values as the parameter table has them. Setting acts as if the sensor itself had changed: it isn't
    // bound by read-only and limits, a measurement then holds its value, a command row acts. It is refused
    // where the sensor couldn't hold the value.
    int Count() const;
    int Register(int number);
    bool SetRegister(int number, int value);
    // Lets a measurement follow the model again. False when the parameter is none.
    bool Release(int number);

    // Hundredths of an inch; nothing lets the target move again.
    void HoldTarget(std::optional<int> distance);

    // The line settings in force, and the faults of the line, which can be changed at any time.
    const LineSettings &Line() const;
    LineFaults &Faults();

    bool InBootMode() const;
    BootLoader &Boot();
    DeviceMemory &Memory();
    // Writes the flash to the file of the options, if there is one. Returns what went wrong, or an empty
    // text.
    QString SaveFlash() const;

    // The last requests with a good CRC, to whatever slave, and the words of write requests to this sensor
    // (parameter number, raw value) in the order on the wire, refused ones included.
    std::vector<QByteArray> Requests() const;
    std::vector<std::pair<int, int>> Writes() const;
    void ClearRecords();
    void OnRequest(std::function<void(const QByteArray &)> callback);
    const Statistics &Stats() const;

private:
    class Private;
    std::unique_ptr<Private> d_;
};

} // namespace sim
