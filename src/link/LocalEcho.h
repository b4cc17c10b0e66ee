#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>

namespace ztv {

// Detects whether the adapter echoes what is sent through it, as two-wire adapters may, and removes the copy
// of each request from the input. The good reply to a single write equals its request, so that a copy would
// otherwise confirm a write that no device received. Pure.
class LocalEcho {
public:
    // Forgets what was detected.
    void Clear() { state_ = State::Unknown; }

    // Records that the device came back, perhaps with another adapter.
    void DeviceReopened();

    bool IsPresent() const { return state_ == State::Present; }

    // Records that a request is sent.
    void RunBegins(const ModbusFrame::Request &request);

    // Removes the copy of the request from `received`, along with the bytes before it: nothing answers a
    // request before its end. Returns those bytes.
    QByteArray TakeFrom(QByteArray &received);

    // True while the copy must arrive before any input is judged.
    bool IsAwaited() const { return IsPresent() && !taken_; }

    // Records the end of a run and the verdict on what was received besides the copy.
    // REQUIRES: the device didn't fail.
    void RunEnded(const ModbusFrame::Verdict &verdict, const QByteArray &received);

private:
    // Unclear: bytes arrived that may have been a damaged copy, or a device with an echo came back.
    enum class State { Unknown, Unclear, Absent, Present };

    State state_ = State::Unknown;
    QByteArray frame_; // of the request
    ModbusFrame::Request request_;
    bool taken_ = false;
};

} // namespace ztv
