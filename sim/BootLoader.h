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
        Deaf,    // not received: neither executed nor answered
        Corrupt, // one bit of the reply is damaged
        Delay,   // the reply is delayed
        Cut,     // the reply ends in the middle
        Unplug,  // executed, but the line hangs up before the reply
    };
    Kind kind = None;
    int delayMs = 0; // of Delay
};

// A received frame, and the reaction to it.
struct BootExchange {
    QByteArray answer; // a whole frame, or empty
    qsizetype requestSize = 0;
    bool restart = false; // after the answer; the loader ignores input until it is entered again
    BootFault fault;
};

// The program in the boot block. It owns the line while the sensor is in boot mode.
class BootLoader {
public:
    explicit BootLoader(DeviceMemory &memory) : memory_(memory) {}

    // Starts the loader. `version` is in hundredths.
    void Enter(int version);
    // Drops a partly received frame.
    void Discard() { reader_.Discard(); }
    std::vector<BootExchange> Receive(QByteArrayView bytes);

    // The frames received since the loader was entered, or since Clear(), including those with a fault.
    int Exchanges() const { return exchanges_; }
    // Applies the fault once, to the exchange with this number, counted from 1. None removes a fault.
    void SetFault(int exchange, BootFault fault) { faults_[exchange] = fault; }
    // Restarts the count at 1 and removes all faults.
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
