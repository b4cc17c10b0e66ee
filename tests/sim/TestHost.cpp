#include "tests/sim/TestHost.h"

#include "sim/Crc.h"
#include "tests/helpers/Wait.h"

#include <QFile>

#include <array>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace sim {

using ztv::WaitUntil;

namespace test {

QByteArray Hex(const char *text) {
    return QByteArray::fromHex(text);
}

QByteArray FrameOf(const char *hexWithoutCrc) {
    return WithCrc(Hex(hexWithoutCrc));
}

TestHost::TestHost(const QString &path, speed_t speed, tcflag_t flags)
    : descriptor_(open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (IsOpen()) {
        Set(speed, flags);
    }
}

TestHost::~TestHost() {
    if (IsOpen()) {
        close(descriptor_);
    }
}

void TestHost::Set(speed_t speed, tcflag_t flags) const {
    termios settings{};
    tcgetattr(descriptor_, &settings);
    cfmakeraw(&settings);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSTOPB | PARENB | PARODD);
    settings.c_cflag |= flags;
    cfsetspeed(&settings, speed);
    tcsetattr(descriptor_, TCSANOW, &settings);
}

void TestHost::Write(const QByteArray &bytes) const {
    [[maybe_unused]] const ssize_t written =
        write(descriptor_, bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QByteArray TestHost::Read() const {
    std::array<char, 512> buffer;
    const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
    return count > 0 ? QByteArray(buffer.data(), count) : QByteArray();
}

QByteArray TestHost::Await(qsizetype size) const {
    QByteArray bytes;
    WaitUntil([&] {
        bytes += Read();
        return bytes.size() >= size;
    });
    return bytes;
}

bool TestHost::HangsUp() const {
    pollfd state{descriptor_, POLLIN, 0};
    return poll(&state, 1, 0) == 1 && (state.revents & POLLHUP) != 0;
}

} // namespace test

} // namespace sim
