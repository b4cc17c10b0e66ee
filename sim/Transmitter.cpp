#include "sim/Transmitter.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace sim {

Transmitter::Transmitter(std::function<void(const QByteArray &)> write, std::function<void()> sent)
    : write_(std::move(write)),
      sent_(std::move(sent)) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Advance(); });
}

void Transmitter::Send(Transmission transmission) {
    if (queue_.empty() && transmission.waitMs <= 0 && transmission.characterMs <= 0) {
        write_(transmission.bytes);
        sent_();
        return;
    }
    queue_.push_back(std::move(transmission));
    if (queue_.size() == 1) {
        Begin();
    }
}

void Transmitter::Clear() {
    timer_.stop();
    queue_.clear();
}

void Transmitter::Begin() {
    written_ = 0;
    sinceBegin_.start();
    Advance();
}

void Transmitter::Advance() {
    const Transmission &current = queue_.front();
    const double elapsed = static_cast<double>(sinceBegin_.nsecsElapsed()) / 1e6 - current.waitMs;
    const qsizetype size = current.bytes.size();
    qsizetype due = 0;
    if (elapsed >= 0) {
        due = current.characterMs > 0 ? static_cast<qsizetype>(std::min<double>(elapsed / current.characterMs,
                                                                                static_cast<double>(size)))
                                      : size;
    }
    if (due > written_) {
        write_(current.bytes.mid(written_, due - written_));
        written_ = due;
    }
    if (elapsed < 0 || written_ < size) {
        const double next = std::ceil(static_cast<double>(written_ + 1) * current.characterMs - elapsed);
        timer_.start(std::chrono::milliseconds(std::max(1LL, static_cast<long long>(next))));
        return;
    }
    queue_.pop_front();
    if (queue_.empty()) {
        sent_();
    } else {
        Begin();
    }
}

} // namespace sim
