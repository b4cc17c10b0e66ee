#pragma once

#include "sim/SimulatedSensor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <memory>

namespace ztv {

// A line between the host and one sensor, on which the test makes faults. Reports each whole request and each
// whole reply, and forwards only what the test sends.
class FaultyLine : public QObject {
    Q_OBJECT

public:
    // Gives the host's end the name `link`. REQUIRES: the sensor is started and outlives the line.
    FaultyLine(const sim::SimulatedSensor &sensor, QString link);
    ~FaultyLine() override;

    // Simulates an adapter with a local echo.
    void GiveBack(bool given) { givesBack_ = given; }

    void SendToSensor(const QByteArray &bytes);
    void SendToHost(const QByteArray &bytes);
    void SendToHostAfter(int milliseconds, const QByteArray &bytes);

    // Unplugs the host's adapter and plugs it in again; afterwards another device has the name.
    void HangUp();
    void Replug();
    bool IsPlugged() const { return master_ >= 0; }

Q_SIGNALS:
    void Request(const QByteArray &frame);
    void Reply(const QByteArray &frame);

private:
    void FromHost();
    void FromSensor();

    QString link_;
    int master_ = -1;
    int slave_ = -1; // keeps the terminal alive while the host has it closed
    int sensor_ = -1;
    std::unique_ptr<QSocketNotifier> fromHost_;
    std::unique_ptr<QSocketNotifier> fromSensor_;
    bool givesBack_ = false;
    QByteArray request_;
    QByteArray reply_;
};

} // namespace ztv
