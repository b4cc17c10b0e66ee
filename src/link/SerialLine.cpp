#include "link/SerialLine.h"

namespace ztv {

SerialLine::SerialLine(std::unique_ptr<SerialDevice> device, QObject *parent)
    : QObject(parent),
      device_(std::move(device)) {
    device_->OnNotice([this](SerialDevice::Notice notice) { OnNotice(notice); });
}

LinkStatus SerialLine::Open(const LineSettings &settings) {
    if (IsOpen()) {
        return LinkStatus::AlreadyOpen;
    }
    Close();
    hungUp_ = false;
    return device_->Open(settings);
}

void SerialLine::Close() {
    device_->Close();
}

bool SerialLine::IsOpen() const {
    return device_->IsOpen() && !hungUp_;
}

void SerialLine::ClearInput() {
    if (IsOpen()) {
        device_->ClearInput();
    }
}

bool SerialLine::Write(const QByteArray &bytes) {
    return IsOpen() && device_->Write(bytes) && IsOpen();
}

QByteArray SerialLine::TakeInput() {
    return IsOpen() ? device_->Read() : QByteArray();
}

QByteArray SerialLine::WaitForInput(int milliseconds) {
    QByteArray bytes = TakeInput();
    if (!bytes.isEmpty() || !IsOpen()) {
        return bytes;
    }
    device_->WaitForInput(milliseconds);
    return TakeInput();
}

QByteArray SerialLine::TakeAllInput() {
    if (IsOpen()) {
        device_->WaitForInput(0);
    }
    return TakeInput();
}

void SerialLine::ExpectInput(bool expected) {
    if (IsOpen()) {
        device_->ExpectInput(expected);
    }
}

void SerialLine::OnNotice(SerialDevice::Notice notice) {
    if (notice == SerialDevice::Notice::Input) {
        PostArrival();
    } else {
        PostHangUp();
    }
}

// Posts the arrival: a device doesn't report again while a handler of its report is running, and the handler
// may keep a box open.
void SerialLine::PostArrival() {
    if (arrivalPosted_) {
        return;
    }
    arrivalPosted_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            arrivalPosted_ = false;
            Q_EMIT BytesArrived();
        },
        Qt::QueuedConnection);
}

// Posts the hang-up once: a device that is gone reports so again and again until it is closed, and it can't
// be closed from within its report.
void SerialLine::PostHangUp() {
    if (hungUp_) {
        return;
    }
    hungUp_ = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (hungUp_) {
                Close();
                Q_EMIT HungUp();
            }
        },
        Qt::QueuedConnection);
}

} // namespace ztv
