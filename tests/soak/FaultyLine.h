#pragma once

#include "sim/SimulatedSensor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <functional>
#include <memory>

namespace ztv {

// A line between the host and one sensor on which anything can go wrong. It does nothing of its own accord:
// whoever uses it is told each request and each reply, whole, and says what goes on to the other end.
class FaultyLine : public QObject {
    Q_OBJECT

public:
    // The host's end has this name. The sensor has been started, and outlives the line.
    FaultyLine(const sim::SimulatedSensor &sensor, QString link);
    ~FaultyLine() override;

    // The host's adapter gives back what is sent through it.
    void GiveBack(bool given) { givesBack_ = given; }

    void SendToSensor(const QByteArray &bytes);
    void SendToHost(const QByteArray &bytes);
    void SendToHostAfter(int milliseconds, const QByteArray &bytes);

    // The host's adapter is pulled and put back; another device then bears the name.
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
    int slave_ = -1; // keeps the terminal while the host doesn't have it open
    int sensor_ = -1;
    std::unique_ptr<QSocketNotifier> fromHost_;
    std::unique_ptr<QSocketNotifier> fromSensor_;
    bool givesBack_ = false;
    QByteArray request_;
    QByteArray reply_;
};

} // namespace ztv
