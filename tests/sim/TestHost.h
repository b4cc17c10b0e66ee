#pragma once

#include <QByteArray>
#include <QString>

#include <termios.h>

namespace sim {

namespace test {

QByteArray Hex(const char *text);
QByteArray FrameOf(const char *hexWithoutCrc);

// The other end of the line.
class TestHost {
public:
    explicit TestHost(const QString &path, speed_t speed = B38400, tcflag_t flags = CSTOPB);
    ~TestHost();
    TestHost(const TestHost &) = delete;
    TestHost &operator=(const TestHost &) = delete;

    bool IsOpen() const { return descriptor_ >= 0; }
    void Set(speed_t speed, tcflag_t flags) const;
    void Write(const QByteArray &bytes) const;
    // Reads the bytes received so far.
    QByteArray Read() const;
    // Waits for that many bytes and reads them.
    QByteArray Await(qsizetype size) const;
    bool HangsUp() const;

private:
    int descriptor_ = -1;
};

} // namespace test

} // namespace sim
