#include "sim/Transmitter.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sim {
namespace {

constexpr double nsPerMs = 1e6;
// Bytes are sent in pieces of about this length, as from a buffered port: single bytes would wake both ends
// each time.
constexpr double pieceNs = 2 * nsPerMs;

qint64 Ns(double ns) {
    return std::llround(ns);
}

} // namespace

Transmitter::Transmitter(std::function<void(const QByteArray &)> write, std::function<void()> sent)
    : write_(std::move(write)),
      sent_(std::move(sent)),
      timer_([this] { Advance(); }) {}

void Transmitter::Send(Transmission transmission) {
    if (queue_.empty() && transmission.waitMs <= 0 && transmission.characterMs <= 0 &&
        transmission.earliest <= 0) {
        write_(transmission.bytes);
        sent_();
        return;
    }
    Scheduled scheduled;
    scheduled.bytes = std::move(transmission.bytes);
    scheduled.characterNs = transmission.characterMs * nsPerMs;
    const qint64 length = Ns(static_cast<double>(scheduled.bytes.size()) * scheduled.characterNs);
    scheduled.begin =
        clock_.Reserve(PreciseTimer::Now(), Ns(transmission.waitMs * nsPerMs), length, transmission.earliest);
    scheduled.end = scheduled.begin + length;
    queue_.push_back(std::move(scheduled));
    if (queue_.size() == 1) {
        Advance();
    }
}

void Transmitter::Clear() {
    timer_.Stop();
    queue_.clear();
    clock_.Clear();
}

qsizetype Transmitter::Scheduled::DueAt(qint64 now) const {
    if (now >= end) {
        return bytes.size();
    }
    return now > begin ? static_cast<qsizetype>(static_cast<double>(now - begin) / characterNs) : 0;
}

qint64 Transmitter::Scheduled::NextWrite() const {
    if (characterNs <= 0) {
        return end;
    }
    const double piece = std::max(std::floor(pieceNs / characterNs), 1.0);
    return std::min(end, begin + Ns((static_cast<double>(written) + piece) * characterNs));
}

void Transmitter::Advance() {
    while (!queue_.empty()) {
        Scheduled &current = queue_.front();
        const qint64 now = PreciseTimer::Now();
        const qsizetype due = current.DueAt(now);
        if (due > current.written) {
            write_(current.bytes.mid(current.written, due - current.written));
            current.written = due;
        }
        if (now < current.end) {
            timer_.StartAt(current.NextWrite());
            return;
        }
        const bool paced = current.characterNs > 0;
        queue_.pop_front();
        if (queue_.empty()) {
            if (paced) {
                clock_.GivenOut(now);
            }
            sent_();
            return;
        }
    }
}

} // namespace sim
