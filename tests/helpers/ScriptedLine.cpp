#include "tests/helpers/ScriptedLine.h"

#include <QTimer>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <termios.h>
#include <unistd.h>

namespace ztv {

ScriptedLine::ScriptedLine() {
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    EXPECT_GE(master_, 0);
    EXPECT_EQ(grantpt(master_), 0);
    EXPECT_EQ(unlockpt(master_), 0);
    path_ = QString::fromLocal8Bit(ptsname(master_));
    slave_ = open(path_.toLocal8Bit().constData(),
                  O_RDWR | O_NOCTTY); // keeps the terminal alive while the program has it closed
    termios raw{};
    tcgetattr(slave_, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave_, TCSANOW, &raw);
    notifier_ = std::make_unique<QSocketNotifier>(master_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { OnReadable(); });
}

ScriptedLine::~ScriptedLine() {
    HangUp();
}

void ScriptedLine::HangUp() {
    notifier_.reset();
    for (int *end : {&slave_, &master_}) {
        if (*end >= 0) {
            close(*end);
            *end = -1;
        }
    }
}

void ScriptedLine::Answer(std::vector<Chunk> chunks) {
    script_.push_back(std::move(chunks));
}

void ScriptedLine::Send(const QByteArray &bytes) {
    if (master_ >= 0) {
        EXPECT_EQ(write(master_, bytes.constData(), static_cast<size_t>(bytes.size())), bytes.size());
    }
}

void ScriptedLine::OnReadable() {
    std::array<char, 1024> buffer{};
    const ssize_t count = read(master_, buffer.data(), buffer.size());
    if (count <= 0) {
        return;
    }
    requests_.emplace_back(buffer.data(), count);
    times_.push_back(std::chrono::steady_clock::now());
    if (givesBack_) {
        Send(requests_.back());
    }
    std::vector<Chunk> answer;
    if (!script_.empty()) {
        answer = std::move(script_.front());
        script_.pop_front();
    } else if (!always_.isEmpty()) {
        answer = {{always_, 0}};
    }
    int delay = 0;
    for (const Chunk &chunk : answer) {
        delay += chunk.afterMs;
        if (delay == 0) {
            Send(chunk.bytes);
        } else {
            QTimer::singleShot(delay, Qt::PreciseTimer, notifier_.get(),
                               [this, bytes = chunk.bytes] { Send(bytes); });
        }
    }
}

} // namespace ztv
