#pragma once

#include "link/LinkTransaction.h"

#include <QByteArray>
#include <QObject>
#include <chrono>
#include <cstdint>
#include <optional>

namespace ztv {

// Consecutive bytes on the line that belong together.
struct LineFrame {
    enum class Kind {
        Request,
        Echo,      // the adapter's copy of the request
        LateReply, // to an earlier request
        Reply      // all that was received for the request; may be empty
    };

    Kind kind = Kind::Request;
    std::chrono::system_clock::time_point time; // of the end of the exchange for a reply, else of the frame
    QByteArray bytes;
    std::int32_t status = 0; // of a reply: 0 is good; the code of a LinkStatus, or a BootResult below 0
    std::optional<LinkTransaction> transaction; // of the master's; none on the boot line
};

// Reports every frame sent or received on a line. Costs nothing measurable without a listener.
class LineTap : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    void Report(LineFrame::Kind kind, const QByteArray &bytes, std::int32_t status = 0,
                std::optional<LinkTransaction> transaction = std::nullopt);

Q_SIGNALS:
    // The handler must neither turn the event loop nor close the line.
    void FrameSeen(const LineFrame &frame);
};

} // namespace ztv
