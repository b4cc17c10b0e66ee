#include "sim/LineReader.h"

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

namespace sim {

LineReader::LineReader(int descriptor, std::function<void(const QByteArray &)> onLine)
    : onLine_(std::move(onLine)),
      notifier_(descriptor, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] { Read(); });
}

void LineReader::Read() {
    std::array<char, 4096> bytes{};
    const ssize_t count = read(static_cast<int>(notifier_.socket()), bytes.data(), bytes.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (count > 0) {
        buffer_.append(bytes.data(), count);
    } else {
        notifier_.setEnabled(false);
    }
    for (qsizetype end = buffer_.indexOf('\n'); end >= 0; end = buffer_.indexOf('\n')) {
        const QByteArray line = buffer_.first(end);
        buffer_.remove(0, end + 1);
        onLine_(line);
    }
    if (count <= 0 && !buffer_.isEmpty()) {
        onLine_(std::exchange(buffer_, {}));
    }
}

} // namespace sim
