#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>

namespace ztv {

// Frames of the boot line in words. Pure. Accepts any bytes.
namespace BootFrameText {

QString OfRequest(const QByteArray &frame);

// `received` is all that came for the request, `result` 0 or a BootResult.
QString OfReply(const QByteArray &request, const QByteArray &received, std::int32_t result);

} // namespace BootFrameText

} // namespace ztv
