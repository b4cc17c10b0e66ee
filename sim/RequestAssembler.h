#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

namespace sim {

// Finds whole requests in the bytes of a line, however they are cut. A frame is given out with its last byte;
// what can't be part of one is dropped.
class RequestAssembler {
public:
    std::vector<QByteArray> Append(QByteArrayView bytes, int ownAddress);

    // Bytes that may be the start of a request: the line has to fall silent to tell.
    bool Pending() const { return !buffer_.isEmpty(); }

    // The line fell silent. Returns what was thrown away.
    QByteArray Discard();

private:
    QByteArray buffer_;
};

} // namespace sim
