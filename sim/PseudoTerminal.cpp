#include "sim/PseudoTerminal.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

namespace sim {
namespace {

QString SystemError(const char *what) {
    return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
}

QString LinkTarget(const QString &link) {
    std::array<char, 256> target{};
    const ssize_t length = readlink(QFile::encodeName(link).constData(), target.data(), target.size());
    return length > 0 ? QFile::decodeName(QByteArray(target.data(), length)) : QString();
}

} // namespace

QString PseudoTerminal::Open(const QString &link) {
    Close();
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 128> name{};
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0 ||
        ptsname_r(master_, name.data(), name.size()) != 0) {
        const QString error = SystemError("no pseudo terminal");
        Close();
        return error;
    }
    name_ = QString::fromLatin1(name.data());
    slave_ = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (slave_ < 0 || tcgetattr(slave_, &settings) != 0) {
        const QString error = SystemError(name.data());
        Close();
        return error;
    }
    cfmakeraw(&settings);
    tcsetattr(slave_, TCSANOW, &settings);

    const QString error = link.isEmpty() ? QString() : MakeLink(link);
    if (!error.isEmpty()) {
        Close();
    }
    return error;
}

// Replaces a link left by a sensor that was killed. Anything else isn't ours to remove.
QString PseudoTerminal::MakeLink(const QString &link) {
    const QFileInfo info(link);
    if (info.isSymLink() && LinkTarget(link).startsWith(QLatin1String("/dev/pts/"))) {
        QFile::remove(link);
    } else if (info.exists() || info.isSymLink()) {
        return QStringLiteral("%1 exists and is no link to a pseudo terminal").arg(link);
    }
    if (symlink(QFile::encodeName(name_).constData(), QFile::encodeName(link).constData()) != 0) {
        return SystemError(QFile::encodeName(link).constData());
    }
    link_ = link;
    return {};
}

void PseudoTerminal::Close() {
    if (!link_.isEmpty() && LinkTarget(link_) == name_) {
        QFile::remove(link_);
    }
    if (slave_ >= 0) {
        close(slave_);
    }
    if (master_ >= 0) {
        close(master_);
    }
    slave_ = master_ = -1;
    name_.clear();
    link_.clear();
}

bool PseudoTerminal::Settings(termios &settings) const {
    return slave_ >= 0 && tcgetattr(slave_, &settings) == 0;
}

void PseudoTerminal::Write(QByteArrayView bytes) const {
    while (IsOpen() && !bytes.isEmpty()) {
        const ssize_t written = write(master_, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return;
        }
        bytes = bytes.sliced(written);
    }
}

} // namespace sim
