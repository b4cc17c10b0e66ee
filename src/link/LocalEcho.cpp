#include "link/LocalEcho.h"

namespace {

// The reply to a read or to a write of several registers never equals its request.
bool ReplyMayEqual(const ModbusFrame::Request &request) {
    return request.function == ModbusFrame::WriteSingleRegister;
}

} // namespace

void LocalEcho::DeviceReopened() {
    state_ = IsPresent() ? State::Unclear : State::Unknown;
}

void LocalEcho::RunBegins(const ModbusFrame::Request &request) {
    request_ = request;
    frame_ = ModbusFrame::Encode(request);
    taken_ = false;
}

QByteArray LocalEcho::TakeFrom(QByteArray &received) {
    if (taken_) {
        return {};
    }
    const bool isExpected = state_ == State::Present || (state_ == State::Unclear && ReplyMayEqual(request_));
    const qsizetype at = isExpected ? received.indexOf(frame_) : 0;
    if (at < 0 || !received.sliced(at).startsWith(frame_) || (!isExpected && ReplyMayEqual(request_))) {
        return {};
    }
    taken_ = true;
    if (!ReplyMayEqual(request_)) {
        state_ = State::Present;
    }
    const QByteArray before = received.first(at);
    received.remove(0, at + frame_.size());
    return before;
}

void LocalEcho::RunEnded(const ModbusFrame::Verdict &verdict, const QByteArray &received) {
    const bool isUndecided = state_ == State::Unknown || state_ == State::Unclear;
    if (!isUndecided || ReplyMayEqual(request_)) {
        return;
    }
    const QByteArray mayBeCopy = verdict.end > 0 ? received.first(verdict.begin) : received;
    if (mayBeCopy.contains(frame_)) {
        state_ = State::Present; // after garbage
        return;
    }
    // An adapter that garbles the line when it switches direction does so at each exchange.
    const bool isGarbage = verdict.end > 0 && mayBeCopy.size() < frame_.size() / 2;
    state_ = isGarbage || mayBeCopy.isEmpty() ? State::Absent : State::Unclear;
}
