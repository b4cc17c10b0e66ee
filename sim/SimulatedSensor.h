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
    int replies = 0;    // sent on the line
    int exceptions = 0; // of these replies
    int ignored = 0;    // for another slave, with other line settings, or while mute
    int discarded = 0;  // bytes that belonged to no request
};

// The whole sensor: a Modbus slave and a boot loader that share a pseudo terminal in turn. It lives in the
// event loop of the thread that starts it, and is idle between requests.
// REQUIRES: Start() before all other calls.
class SimulatedSensor {
public:
    explicit SimulatedSensor(SensorOptions options);
    ~SimulatedSensor();
    SimulatedSensor(const SimulatedSensor &) = delete;
    SimulatedSensor &operator=(const SimulatedSensor &) = delete;

    // Starts the sensor. Returns a description of the error, or an empty text.
    QString Start();

    // Executes one line of the command language. Returns the text to print; "error: ..." when it was
    // rejected.
    QString Execute(const QString &commandLine);

    // The name of the device to open: the link if there is one, otherwise the terminal. Empty while
    // unplugged.
    QString Path() const;
    void Unplug();
    // Plugs the sensor in again. Returns a description of the error, or an empty text.
    QString Plug();
    // Restarts as after a loss of power: restores the stored set; the boot mark decides what runs.
    void Reset();

    // Raw values as in the parameter table. SetRegister acts as if the sensor itself had changed: it ignores
    // read-only and limits; a measurement then holds its value; a command row executes. Returns false for a
    // parameter that doesn't exist or a value that the sensor couldn't store.
    int Count() const;
    int Register(int number);
    bool SetRegister(int number, int value);
    // Lets a measurement follow the model again. Returns false when the parameter isn't a measurement.
    bool Release(int number);

    // Fixes the target at a distance in hundredths of an inch; no value lets it move again.
    void HoldTarget(std::optional<int> distance);

    // The line settings in use, and the faults of the line, which may be changed at any time.
    const LineSettings &Line() const;
    LineFaults &Faults();

    bool InBootMode() const;
    BootLoader &Boot();
    DeviceMemory &Memory();
    // Writes the flash to the file of the options, if there is one. Returns a description of the error, or an
    // empty text.
    QString SaveFlash() const;

    // The last requests with a good CRC, to any slave, and the words of write requests to this sensor
    // (parameter number, raw value) in their order on the wire, refused ones included.
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
