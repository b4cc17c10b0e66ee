#include "tests/soak/FaultyLine.h"

#include <QFile>
#include <QTimer>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace ztv {

namespace {

constexpr qsizetype requestLength = 8; // of a read and of the write of one register
constexpr qsizetype exceptionLength = 5;
constexpr quint8 exceptionBit = 0x80;
constexpr quint8 readFunction = 3;

QByteArray TakeFrom(int descriptor) {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    return count > 0 ? QByteArray(buffer.data(), count) : QByteArray();
}

void PutTo(int descriptor, const QByteArray &bytes) {
    EXPECT_EQ(write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
}

bool IsWholeReply(const QByteArray &bytes) {
    if (bytes.size() < exceptionLength) {
        return false;
    }
    const auto function = static_cast<quint8>(bytes[1]);
    if ((function & exceptionBit) != 0) {
        return true;
    }
    return bytes.size() >= (function == readFunction ? exceptionLength + static_cast<quint8>(bytes[2]) : 8);
}

} // namespace

FaultyLine::FaultyLine(const sim::SimulatedSensor &sensor, QString link) : link_(std::move(link)) {
    sensor_ = open(QFile::encodeName(sensor.Path()).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_GE(sensor_, 0);
    fromSensor_ = std::make_unique<QSocketNotifier>(sensor_, QSocketNotifier::Read);
    connect(fromSensor_.get(), &QSocketNotifier::activated, this, [this] { FromSensor(); });
    Replug();
}

FaultyLine::~FaultyLine() {
    HangUp();
    fromSensor_.reset();
    close(sensor_);
}

void FaultyLine::Replug() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_GE(master_, 0);
    EXPECT_EQ(grantpt(master_), 0);
    EXPECT_EQ(unlockpt(master_), 0);
    const char *name = ptsname(master_);
    slave_ = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios raw{};
    EXPECT_EQ(tcgetattr(slave_, &raw), 0);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    EXPECT_EQ(symlink(name, QFile::encodeName(link_).constData()), 0);
    fromHost_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    connect(fromHost_.get(), &QSocketNotifier::activated, this, [this] { FromHost(); });
}

void FaultyLine::HangUp() {
    if (!IsPlugged()) {
        return;
    }
    // Not deleted at once: the call may come from the notifier itself.
    fromHost_->setEnabled(false);
    fromHost_.release()->deleteLater();
    QFile::remove(link_);
    close(std::exchange(slave_, -1));
    close(std::exchange(master_, -1));
    request_.clear();
}

void FaultyLine::SendToSensor(const QByteArray &bytes) {
    termios settings{};
    tcgetattr(slave_, &settings);
    tcsetattr(sensor_, TCSANOW, &settings);
    PutTo(sensor_, bytes);
}

void FaultyLine::SendToHost(const QByteArray &bytes) {
    if (IsPlugged()) {
        PutTo(master_, bytes);
    }
}

void FaultyLine::SendToHostAfter(int milliseconds, const QByteArray &bytes) {
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, this, [this, bytes] { SendToHost(bytes); });
}

void FaultyLine::FromHost() {
    const QByteArray sent = TakeFrom(master_);
    if (givesBack_) {
        SendToHost(sent);
    }
    request_ += sent;
    while (request_.size() >= requestLength) {
        const QByteArray request = request_.first(requestLength);
        request_.remove(0, requestLength);
        Q_EMIT Request(request);
    }
}

void FaultyLine::FromSensor() {
    reply_ += TakeFrom(sensor_);
    if (IsWholeReply(reply_)) {
        Q_EMIT Reply(std::exchange(reply_, {}));
    }
}

} // namespace ztv
