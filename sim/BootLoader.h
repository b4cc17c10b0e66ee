#pragma once

#include "sim/BootFrame.h"
#include "sim/DeviceMemory.h"

#include <QByteArray>
#include <QByteArrayView>

#include <map>
#include <vector>

namespace sim {

// The fault of one exchange on the boot line.
struct BootFault {
    enum Kind : int {
        None,
        Drop,    // executed, but the reply is lost
        Deaf,    // not heard: neither executed nor answered
        Corrupt, // one bit of the reply is damaged
        Delay,   // the reply comes late
        Cut,     // the reply ends in the middle
        Unplug,  // executed, but the line hangs up before the reply
    };
    Kind kind = None;
    int delayMs = 0; // of Delay
};

// A frame that came in, and what is to happen on the line.
struct BootExchange {
    QByteArray answer; // a whole frame, or nothing
    qsizetype requestSize = 0;
    bool restart = false; // after the answer; the loader hears nothing more until it is entered again
    BootFault fault;
};

// The program in the boot block, which owns the line while the sensor is in boot mode.
class BootLoader {
public:
    explicit BootLoader(DeviceMemory &memory) : memory_(memory) {}

    // The version in hundredths.
    void Enter(int version);
    // Drops a frame received in part.
    void Discard() { reader_.Discard(); }
    std::vector<BootExchange> Receive(QByteArrayView bytes);

    // The frames heard since the loader was entered, or since Clear(), the faulty ones included.
    int Exchanges() const { return exchanges_; }
    // The exchange with this number, counted from 1, gets the fault, once. None takes a fault back.
    void SetFault(int exchange, BootFault fault) { faults_[exchange] = fault; }
    // Counts from 1 again and forgets the faults.
    void Clear();

private:
    BootExchange Exchange(const HeardFrame &frame);
    QByteArray Execute(const QByteArray &payload, bool &restart);

    DeviceMemory &memory_;
    BootFrameReader reader_;
    std::map<int, BootFault> faults_;
    int version_ = 0;
    int exchanges_ = 0;
    bool restarting_ = false;
};

} // namespace sim
