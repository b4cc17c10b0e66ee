#include "link/LineTap.h"

#include <QMetaMethod>

namespace ztv {

void LineTap::Report(LineFrame::Kind kind, const QByteArray &bytes, std::int32_t status,
                     std::optional<LinkTransaction> transaction) {
    static const QMetaMethod frameSeen = QMetaMethod::fromSignal(&LineTap::FrameSeen);
    if (isSignalConnected(frameSeen)) {
        Q_EMIT FrameSeen({.kind = kind,
                          .time = std::chrono::system_clock::now(),
                          .bytes = bytes,
                          .status = status,
                          .transaction = transaction});
    }
}

} // namespace ztv
