#pragma once

#include <QByteArray>

#include <utility>
#include <vector>

namespace sim {

class Registers;

// The outcome of a request. The reply is a whole frame; empty for a broadcast.
struct Outcome {
    QByteArray reply;
    bool refused = false;
    std::vector<std::pair<int, int>> writes; // parameter number and value as received, refused ones included
};

// Executes the requests for this sensor.
// REQUIRES: whole frames with a good CRC.
class ModbusSlave {
public:
    explicit ModbusSlave(Registers &registers) : registers_(registers) {}

    Outcome Execute(const QByteArray &request, int addressing);
    static QByteArray ExceptionReply(const QByteArray &request, int code);

private:
    int Read(const QByteArray &request, int addressing, QByteArray &body) const;
    int WriteOne(const QByteArray &request, int addressing, Outcome &outcome);
    int WriteMany(const QByteArray &request, int addressing, Outcome &outcome);

    Registers &registers_;
};

} // namespace sim
