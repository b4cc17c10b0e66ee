#pragma once

#include "link/ModbusFrame.h"

#include <QByteArray>

// Finds out whether the adapter gives back what is sent through it, as adapters for two wires may, and takes
// the copy of each request out of the input. The good reply to a single write equals its request, so that a
// copy would otherwise confirm a write that nobody received. Pure.
class LocalEcho {
public:
    // Forgets what was found.
    void Clear() { state_ = State::Unknown; }

    // The device came back: perhaps behind another adapter.
    void DeviceReopened();

    bool IsPresent() const { return state_ == State::Present; }

    // A request is sent.
    void RunBegins(const ModbusFrame::Request &request);

    // Removes the copy of the request from the head of `received`, and with it what came before it: nothing
    // answers a request before its end. Returns those bytes.
    QByteArray TakeFrom(QByteArray &received);

    // The copy has to come before anything is judged.
    bool IsAwaited() const { return IsPresent() && !taken_; }

    // The run ended with that verdict of what came besides the copy, the device being there.
    void RunEnded(const ModbusFrame::Verdict &verdict, const QByteArray &received);

private:
    // Unclear: bytes came that may have been a damaged copy.
    enum class State { Unknown, Unclear, Absent, Present };

    State state_ = State::Unknown;
    QByteArray frame_; // of the request
    ModbusFrame::Request request_;
    bool taken_ = false;
};
