#include "cli/Tracer.h"

namespace ztv {

void Tracer::Watch(LineTap &tap) {
    QObject::connect(&tap, &LineTap::FrameSeen, [this](const LineFrame &frame) { Print(frame); });
}

void Tracer::Print(const LineFrame &frame) {
    std::fputs((frame.bytes.toHex(' ') + '\n').constData(), stream_);
}

} // namespace ztv
