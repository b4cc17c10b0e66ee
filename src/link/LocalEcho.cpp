#include "link/LocalEcho.h"

namespace ztv {

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
    const bool mayBeReply = ReplyMayEqual(request_);
    const bool isExpected = state_ == State::Present || (state_ == State::Unclear && mayBeReply);
    if (taken_ || (mayBeReply && !isExpected)) {
        return {};
    }
    const qsizetype at = received.indexOf(frame_);
    if (at < 0 || (at > 0 && !isExpected)) {
        return {};
    }
    taken_ = true;
    if (!mayBeReply) {
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

} // namespace ztv
