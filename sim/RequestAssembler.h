#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace sim {

// Finds whole requests in the bytes of a line, however the bytes are split. Returns a frame as soon as its
// last byte arrives. Drops bytes that can't be part of a frame.
class RequestAssembler {
public:
    std::vector<QByteArray> Append(QByteArrayView bytes, int ownAddress);

    // True while there are bytes that may be the start of a request: only silence on the line decides.
    bool Pending() const { return !buffer_.isEmpty(); }

    // Drops the bytes received so far and returns them, for use when the line has fallen silent.
    QByteArray Discard();

private:
    QByteArray buffer_;
};

} // namespace sim
