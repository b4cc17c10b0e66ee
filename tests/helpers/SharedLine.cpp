#include "tests/helpers/SharedLine.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

namespace ztv {

namespace {

QByteArray TakeFrom(int descriptor) {
    std::array<char, 1024> buffer{};
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    return count > 0 ? QByteArray(buffer.data(), count) : QByteArray();
}

void PutTo(int descriptor, const QByteArray &bytes) {
    EXPECT_EQ(write(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())), bytes.size());
}

std::unique_ptr<QSocketNotifier> Watch(int descriptor, const std::function<void()> &work) {
    auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(), work);
    return notifier;
}

} // namespace

SharedLine::SharedLine() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    EXPECT_GE(master_, 0);
    EXPECT_EQ(grantpt(master_), 0);
    EXPECT_EQ(unlockpt(master_), 0);
    path_ = QString::fromLocal8Bit(ptsname(master_));
    slave_ = open(path_.toLocal8Bit().constData(), O_RDWR | O_NOCTTY);
    termios raw{};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    notifier_ = Watch(master_, [this] { FromHost(); });
}

SharedLine::~SharedLine() {
    notifier_.reset();
    for (Branch &branch : branches_) {
        branch.notifier.reset();
        close(branch.descriptor);
    }
    close(slave_);
    close(master_);
}

void SharedLine::Join(const sim::SimulatedSensor &sensor) {
    const int descriptor = open(sensor.Path().toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(descriptor, 0);
    branches_.push_back({.descriptor = descriptor,
                         .notifier = Watch(descriptor, [this, descriptor] { FromSensor(descriptor); })});
}

void SharedLine::FromHost() {
    const QByteArray bytes = TakeFrom(master_);
    termios settings{};
    tcgetattr(slave_, &settings);
    for (const Branch &branch : branches_) {
        tcsetattr(branch.descriptor, TCSANOW, &settings);
        PutTo(branch.descriptor, bytes);
    }
}

void SharedLine::FromSensor(int descriptor) {
    PutTo(master_, TakeFrom(descriptor));
}

} // namespace ztv
